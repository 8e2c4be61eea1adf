// The keyword test's shape, searched for directly on ASCII text.
#include "text/detail/word_literal.h"

#include <cstdint>
#include <cstring>

namespace talvor::text::detail {
namespace {

constexpr std::string_view NonWordOnce = "[\\W]{1}";

constexpr bool IsWordByte(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Per byte: its lower case, and whether it is a word byte; one load each in the search loop.
struct ByteTables {
    unsigned char lower[256];
    bool word[256];
    constexpr ByteTables() : lower(), word() {
        for (int c = 0; c < 256; ++c) {
            lower[c] = static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c);
            word[c] = IsWordByte(static_cast<unsigned char>(c));
        }
    }
};
constexpr ByteTables Tables;

bool IsAscii(std::string_view text) {
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t block;
        std::memcpy(&block, text.data() + i, 8);
        if ((block & 0x8080808080808080ull) != 0)
            return false;
    }
    for (; i < text.size(); ++i)
        if (static_cast<unsigned char>(text[i]) >= 0x80)
            return false;
    return true;
}

} // namespace

std::optional<std::string_view> WordLiteralOf(std::string_view pattern) {
    if (pattern.size() <= 2 * NonWordOnce.size() || !pattern.starts_with(NonWordOnce) ||
        !pattern.ends_with(NonWordOnce))
        return std::nullopt;
    const std::string_view word =
        pattern.substr(NonWordOnce.size(), pattern.size() - 2 * NonWordOnce.size());
    for (const char c : word)
        if (!IsWordByte(static_cast<unsigned char>(c)) && c != ' ')
            return std::nullopt;
    return word;
}

std::optional<bool> TestWordLiteral(std::string_view word, std::string_view text, bool ignoreCase,
                                    bool asciiOnly) {
    if (asciiOnly && !IsAscii(text))
        return std::nullopt;
    const std::size_t n = word.size();
    if (text.size() < n + 2)
        return false;
    const auto* t = reinterpret_cast<const unsigned char*>(text.data());
    const auto* w = reinterpret_cast<const unsigned char*>(word.data());
    // The word starts at p, with a byte before it and one behind it.
    const std::size_t last = text.size() - n - 1;
    if (!ignoreCase) {
        for (std::size_t p = 1; p <= last; ++p)
            if (t[p] == w[0] && !Tables.word[t[p - 1]] && !Tables.word[t[p + n]] &&
                std::memcmp(t + p + 1, w + 1, n - 1) == 0)
                return true;
        return false;
    }
    const unsigned char first = Tables.lower[w[0]];
    for (std::size_t p = 1; p <= last; ++p) {
        if (Tables.lower[t[p]] != first || Tables.word[t[p - 1]] || Tables.word[t[p + n]])
            continue;
        std::size_t k = 1;
        while (k < n && Tables.lower[t[p + k]] == Tables.lower[w[k]])
            ++k;
        if (k == n)
            return true;
    }
    return false;
}

} // namespace talvor::text::detail
