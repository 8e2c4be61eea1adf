// The keyword test's pattern, "[\W]{1}" + word + "[\W]{1}", matched by comparing code units:
// it has one possible match at each position (the word between two non-word characters), so
// the leftmost match is the first position where that holds, which a scan finds in a few
// nanoseconds where starting PCRE2 costs more than the match itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace talvor::platform::detail {

class WordSearch {
public:
    // True, with out set, when pattern has that form with a word of ASCII letters, digits,
    // "_" and blanks; other patterns are left to PCRE2.
    static bool Recognise(std::u16string_view pattern, bool ignoreCase, WordSearch& out);

    // The leftmost match that starts at or after start, as its start and end.
    bool Find(std::u16string_view text, std::size_t start, std::size_t& matchStart,
              std::size_t& matchEnd) const;

private:
    std::u16string m_word; // letters in lower case when ignoring case
    bool m_ignoreCase = false;
};

} // namespace talvor::platform::detail
