// What counts as a number, per language: a hexadecimal prefix where the language's row has
// one, otherwise the decimal rule.
#include "syntax/detail/number_rules.h"

#include "platform/core/ascii.h"

namespace talvor::syntax::detail {
namespace {

bool AllHex(std::string_view digits) {
    for (char c : digits) {
        if (platform::HexDigitValue(c) < 0)
            return false;
    }
    return true;
}

bool IsDecimalDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

bool IsNumberIn(UINT language, std::string_view word) {
    return IsNumberIn(FindLanguageRow(language), word);
}

bool IsNumberWithPrefixesIn(const LanguageRow* row, std::string_view word) {
    const std::size_t length = word.size();
    if (length == 0)
        return false;
    // Codes above plain text have no row and only the decimal rule.
    if (row != nullptr) {
        if (!row->numbers)
            return false;
        // The prefixes are exact: "&h" or "0X" is no prefix, and such a word fails the decimal
        // rule. A prefix alone is a number when the row allows so short a word ("$").
        // Most words start with a letter that begins no prefix: one compare per prefix.
        const HexNumbers& hex = row->hexNumbers;
        if (length >= hex.minLength) {
            for (std::string_view prefix : hex.prefixes) {
                if (!prefix.empty() && prefix[0] == word[0] && word.starts_with(prefix))
                    return AllHex(word.substr(prefix.size()));
            }
        }
    }
    if (!IsDecimalDigit(word[0]))
        return false;
    for (std::size_t i = 1; i < length; ++i) {
        char c = word[i];
        if (!IsDecimalDigit(c) && c != '+' && c != '-' && c != '.' && c != 'e' && c != 'E')
            return false;
    }
    return true;
}

} // namespace talvor::syntax::detail
