// What counts as a number, per language: a hexadecimal prefix where the language has one,
// otherwise the decimal rule.
#include "syntax/syntax.h"

#include "syntax/detail/word_tests.h"

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
    const std::size_t length = word.size();
    if (length == 0 || language == 35)
        return false;
    // The prefixes are exact: "&h" or "0X" is no prefix, and such a word fails the decimal rule.
    switch (language) {
    case 3:
        if (length >= 3 && word[0] == '&' && (word[1] == 'O' || word[1] == 'H'))
            return AllHex(word.substr(2));
        break;
    case 8:
        if (length >= 3 && word[0] == '0' && word[1] == 'x')
            return AllHex(word.substr(2));
        break;
    case 14:
        if (length >= 3 && word[0] == '#')
            return AllHex(word.substr(1));
        break;
    case 21:
        if (word[0] == '$')
            return AllHex(word.substr(1)); // "$" alone is a number
        break;
    default:
        break;
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

int CTalvorSyntax::IsNumber(CString& strWord) {
    return talvor::syntax::detail::IsNumberIn(m_nLanguage, strWord.View()) ? 1 : 0;
}
