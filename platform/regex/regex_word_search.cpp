// The direct scan for the keyword test's pattern. \W is every code unit but the ASCII word
// characters, also when ignoring case; a letter ignoring case matches its ASCII other case
// alone, as the translation spells it for PCRE2.
#include "platform/regex/detail/regex_word_search.h"

#include "platform/core/ascii.h"

namespace talvor::platform::detail {
namespace {

using talvor::platform::IsAsciiDigit;
using talvor::platform::IsAsciiLetter;

constexpr std::u16string_view NonWord = u"[\\W]{1}";

bool IsWordChar(char16_t c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c) || c == u'_';
}

} // namespace

bool WordSearch::Recognise(std::u16string_view pattern, bool ignoreCase, WordSearch& out) {
    if (pattern.size() <= 2 * NonWord.size() || !pattern.starts_with(NonWord) ||
        !pattern.ends_with(NonWord))
        return false;
    const std::u16string_view word =
        pattern.substr(NonWord.size(), pattern.size() - 2 * NonWord.size());
    for (char16_t c : word)
        if (!IsWordChar(c) && c != u' ')
            return false;
    out.m_word.assign(word);
    if (ignoreCase)
        for (char16_t& c : out.m_word)
            if (IsAsciiLetter(c))
                c = static_cast<char16_t>(c | 0x20);
    out.m_ignoreCase = ignoreCase;
    return true;
}

bool WordSearch::Find(std::u16string_view text, std::size_t start, std::size_t& matchStart,
                      std::size_t& matchEnd) const {
    const std::size_t length = m_word.size() + 2;
    if (text.size() < length)
        return false;
    // Most positions fail at the word's first character, so that is asked first.
    const char16_t first = m_word[0];
    const char16_t firstOther =
        m_ignoreCase && IsAsciiLetter(first) ? static_cast<char16_t>(first ^ 0x20) : first;
    for (std::size_t at = start; at + length <= text.size(); ++at) {
        const char16_t c = text[at + 1];
        if ((c != first && c != firstOther) || IsWordChar(text[at]) ||
            IsWordChar(text[at + length - 1]))
            continue;
        std::size_t i = 1;
        for (; i < m_word.size(); ++i) {
            const char16_t want = m_word[i];
            const char16_t got = text[at + 1 + i];
            if (got != want && !(m_ignoreCase && IsAsciiLetter(want) && got == (want ^ 0x20)))
                break;
        }
        if (i == m_word.size()) {
            matchStart = at;
            matchEnd = at + length;
            return true;
        }
    }
    return false;
}

} // namespace talvor::platform::detail
