// The binary search of the keyword array, the parsers' most frequent question. Its probes are
// the documented ones (they decide the answer if a host leaves the array unsorted); what is
// made fast is each comparison: no calls, and a word folded to lower case only once.
#include "syntax/detail/word_tests.h"

#include "platform/code_page.h"

#include <array>

namespace talvor::syntax::detail {
namespace {

// The exact comparison: bytes as unsigned values, a prefix before the longer text.
int CompareBytes(std::string_view a, std::string_view b) {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(a[i]);
        const auto y = static_cast<unsigned char>(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

constexpr std::array<unsigned char, 256> AsciiLowerTable = [] {
    std::array<unsigned char, 256> table{};
    for (int c = 0; c < 256; ++c)
        table[static_cast<std::size_t>(c)] =
            static_cast<unsigned char>((c >= 'A' && c <= 'Z') ? c - 'A' + 'a' : c);
    return table;
}();

// Words longer than this are searched with the code page's comparison; no keyword is as long.
constexpr std::size_t FoldedWordRoom = 64;

// The comparison that ignores case, for a word of ASCII bytes already folded to lower case:
// entry bytes are folded, and both compared as bytes. An entry with a byte above 0x7F is left
// to the code page's comparison, which folds whole characters; up to that byte both agree.
int CompareFoldedAscii(std::string_view folded, std::string_view word, std::string_view entry) {
    const std::size_t common = folded.size() < entry.size() ? folded.size() : entry.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto y = static_cast<unsigned char>(entry[i]);
        if (y >= 0x80)
            return platform::CompareNoCase(word, entry);
        const auto x = static_cast<unsigned char>(folded[i]);
        const unsigned char z = AsciiLowerTable[y];
        if (x != z)
            return x < z ? -1 : 1;
    }
    return folded.size() == entry.size() ? 0 : (folded.size() < entry.size() ? -1 : 1);
}

// Folds an ASCII word into room; false when the word has other bytes or does not fit.
bool FoldAscii(std::string_view word, char* room) {
    if (word.size() > FoldedWordRoom)
        return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const auto c = static_cast<unsigned char>(word[i]);
        if (c >= 0x80)
            return false;
        room[i] = static_cast<char>(AsciiLowerTable[c]);
    }
    return true;
}

} // namespace

bool IsKeyword(const CStringArray& keywords, bool exactCase, std::string_view word) {
    const CString* entries = keywords.GetData();
    INT_PTR low = 0;
    INT_PTR high = keywords.GetSize() - 1;
    char room[FoldedWordRoom];
    const bool asciiWord = !exactCase && FoldAscii(word, room);
    const std::string_view folded(room, asciiWord ? word.size() : 0);
    while (low <= high) {
        const INT_PTR middle = (low + high) / 2;
        const std::string_view entry = entries[middle].View();
        const int order = exactCase   ? CompareBytes(word, entry)
                          : asciiWord ? CompareFoldedAscii(folded, word, entry)
                                      : platform::CompareNoCase(word, entry);
        if (order < 0)
            high = middle - 1;
        else if (order > 0)
            low = middle + 1;
        else
            return true;
    }
    return false;
}

} // namespace talvor::syntax::detail
