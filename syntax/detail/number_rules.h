// The number question of a closed word, on a view into the line so that no word is copied.
#pragma once

#include "platform/core/win_types.h"
#include "syntax/detail/language_rows.h"

#include <string_view>

namespace talvor::syntax::detail {

// The number rule of the language: its hexadecimal prefixes where its row has them ("&H"/"&O"
// in Basic, "0x" in C++, "#" in HTML, "$" in Object Pascal), else a decimal digit followed by
// digits, signs, points and exponent letters. Plain text has no numbers.
bool IsNumberIn(UINT language, std::string_view word);
// The same with the language's row looked up once per line; null for codes above plain text.
// Inline for its usual answer: a word that starts with a letter beginning no prefix is none.
bool IsNumberWithPrefixesIn(const LanguageRow* row, std::string_view word);
inline bool IsNumberIn(const LanguageRow* row, std::string_view word) {
    if (word.empty())
        return false;
    const char first = word[0];
    if (first >= '0' && first <= '9')
        return IsNumberWithPrefixesIn(row, word);
    if (row == nullptr)
        return false;
    for (std::string_view prefix : row->hexNumbers.prefixes) {
        if (!prefix.empty() && prefix[0] == first)
            return IsNumberWithPrefixesIn(row, word);
    }
    return false;
}

} // namespace talvor::syntax::detail
