// The reference line parser, step by step as the rules are written; numbered comments follow
// the steps of the parser's description.
#include "tests/reference/reference_line_parser.h"

#include "platform/codepage/code_page.h"
#include "syntax/languages.h"

#include <cstring>

namespace talvor::testing {

bool ReferenceIsKeyword(const CTalvorSyntax& syntax, const std::string& word) {
    INT_PTR low = 0, high = syntax.m_arrKeyWords.GetSize() - 1;
    while (low <= high) {
        const INT_PTR middle = (low + high) / 2;
        const std::string& entry = syntax.m_arrKeyWords.GetAt(middle).Str();
        const int order = syntax.m_bCase ? platform::CompareExact(word, entry)
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

bool ReferenceIsNumber(UINT language, const std::string& w) {
    auto hex = [](const std::string& digits) {
        return digits.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    };
    using syntax::CodeOf;
    using syntax::Language;
    const std::size_t n = w.size();
    if (n == 0 || language == CodeOf(Language::PlainText))
        return false;
    if (language == CodeOf(Language::Basic) && n >= 3 && w[0] == '&' &&
        (w[1] == 'O' || w[1] == 'H'))
        return hex(w.substr(2));
    if (language == CodeOf(Language::Cpp) && n >= 3 && w[0] == '0' && w[1] == 'x')
        return hex(w.substr(2));
    if (language == CodeOf(Language::Html) && n >= 3 && w[0] == '#')
        return hex(w.substr(1));
    if (language == CodeOf(Language::ObjectPascal) && w[0] == '$')
        return hex(w.substr(1));
    return w[0] >= '0' && w[0] <= '9' &&
           w.find_first_not_of("0123456789+-.eE") == std::string::npos;
}

ReferenceResult ReferenceParseLine(const CTalvorSyntax& syntax, unsigned long cookie,
                                   const std::string& line) {
    ReferenceResult result{{}, cookie};
    const int length = static_cast<int>(line.size());
    if (length == 0)
        return result;

    auto append = [&](int start, int colour) {
        if (result.runs.empty() || result.runs.back().m_nCharPos <= start)
            result.runs.push_back({start, colour});
    };
    auto clip = [](int count, int most) { return count < 0 ? 0 : (count > most ? most : count); };
    int lastMultiByteEnd = 0;
    // A rule matches at i when its bytes end there and none lies inside a multi-byte character.
    auto matches = [&](const char* rule, int i) {
        if (rule == nullptr || rule[0] == '\0')
            return false;
        const int n = static_cast<int>(std::strlen(rule));
        const int start = i - n + 1;
        return start >= 0 && start >= lastMultiByteEnd &&
               line.compare(static_cast<std::size_t>(start), static_cast<std::size_t>(n), rule) ==
                   0;
    };
    auto leadLength = [&](int i) {
        if (!platform::IsLeadByte(static_cast<unsigned char>(line[static_cast<std::size_t>(i)])))
            return 0;
        const std::size_t n = platform::CharLengthAt(line, static_cast<std::size_t>(i));
        return n > 1 ? static_cast<int>(n) : 1;
    };
    auto isWordByte = [&](unsigned char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' ||
               syntax.m_strInString.Str().find(static_cast<char>(c)) != std::string::npos;
    };
    const int lineComments = clip(syntax.m_nLineCommentCount, 2);
    const int beginComments = clip(syntax.m_nBeginCommentExCount, 2);
    const int endComments = clip(syntax.m_nEndCommentExCount, 2);
    const char* beginString = syntax.m_nBeginStringCount > 0 ? syntax.m_pszBeginString : nullptr;
    const char* endString = syntax.m_nEndStringCount > 0 ? syntax.m_pszEndString : nullptr;
    const char* beginChar = syntax.m_nBeginCharCount > 0 ? syntax.m_pszBeginChar : nullptr;
    const char* endChar = syntax.m_nEndCharCount > 0 ? syntax.m_pszEndChar : nullptr;

    int wordStart = -1;
    bool redefine = true, backStep = false, escaped = false;
    int i = 0;
    auto closeWord = [&](int end) {
        const std::string word = line.substr(static_cast<std::size_t>(wordStart),
                                             static_cast<std::size_t>(end - wordStart));
        if (ReferenceIsKeyword(syntax, word))
            append(wordStart, COLOR_KEYWORD);
        else if (ReferenceIsNumber(syntax.m_nLanguage, word))
            append(wordStart, COLOR_NUMBER);
    };
    for (;;) {
        if (redefine) { // step 4
            int colour = COLOR_NORMAL;
            if (result.cookie & (COOKIE_LINE_COMMENT | COOKIE_BLOCK_COMMENT))
                colour = COLOR_COMMENT;
            else if (result.cookie & COOKIE_STRING)
                colour = COLOR_STRING;
            append(backStep ? i - 1 : i, colour);
            redefine = backStep = false;
        }
        if (i >= length)
            break;
        const auto b = static_cast<unsigned char>(line[static_cast<std::size_t>(i)]);
        if (int n = leadLength(i)) { // step 6
            i += n;
            lastMultiByteEnd = i;
            continue;
        }
        if (result.cookie & COOKIE_LINE_COMMENT) { // step 7
            append(i, COLOR_COMMENT);
            break;
        }
        if (result.cookie & (COOKIE_STRING | COOKIE_CHAR)) { // step 8
            if (syntax.m_bEscape && i > 0) {
                const bool previousBackslash =
                    line[static_cast<std::size_t>(i - 1)] == '\\' && lastMultiByteEnd != i;
                if (!previousBackslash)
                    escaped = b == '\\';
                else if (b == '\\')
                    escaped = !escaped;
            }
            if (!escaped && (result.cookie & COOKIE_STRING) && matches(endString, i)) {
                result.cookie &= ~COOKIE_STRING;
                redefine = true;
            }
            if (!escaped && (result.cookie & COOKIE_CHAR) && matches(endChar, i)) {
                result.cookie &= ~COOKIE_CHAR;
                redefine = true;
            }
            ++i;
            continue;
        }
        if (result.cookie & COOKIE_BLOCK_COMMENT) { // step 9
            for (int slot = 0; slot < endComments; ++slot) {
                if (matches(syntax.m_pszEndCommentEx[slot], i)) {
                    result.cookie &= ~COOKIE_BLOCK_COMMENT;
                    redefine = true;
                }
            }
            ++i;
            continue;
        }
        bool lineComment = false; // step 10
        for (int slot = 0; slot < lineComments && !lineComment; ++slot) {
            if (matches(syntax.m_pszLineComment[slot], i)) {
                append(i - static_cast<int>(std::strlen(syntax.m_pszLineComment[slot])) + 1,
                       COLOR_COMMENT);
                result.cookie |= COOKIE_LINE_COMMENT;
                lineComment = true;
            }
        }
        if (lineComment)
            break;
        if (matches(beginString, i)) {
            append(i - static_cast<int>(std::strlen(beginString)) + 1, COLOR_STRING);
            result.cookie |= COOKIE_STRING;
            ++i;
            continue;
        }
        if (matches(beginChar, i)) {
            append(i - static_cast<int>(std::strlen(beginChar)) + 1, COLOR_CHAR);
            result.cookie |= COOKIE_CHAR;
            ++i;
            continue;
        }
        int opener = -1;
        for (int slot = 0; slot < beginComments && opener < 0; ++slot) {
            if (matches(syntax.m_pszBeginCommentEx[slot], i))
                opener = slot;
        }
        if (opener >= 0) {
            const int n = static_cast<int>(std::strlen(syntax.m_pszBeginCommentEx[opener]));
            append(i - n + 1, COLOR_COMMENT);
            result.cookie |= COOKIE_BLOCK_COMMENT;
            ++i;
            if (n > 1) {
                if (i >= length)
                    break;
                const int skip = leadLength(i);
                i += skip > 0 ? skip : 1;
                if (skip > 0)
                    lastMultiByteEnd = i;
            }
            continue;
        }
        if (isWordByte(b)) { // step 11
            if (wordStart < 0)
                wordStart = i;
            ++i;
            continue;
        }
        if (wordStart >= 0) { // step 12
            closeWord(i);
            redefine = backStep = true;
            wordStart = -1;
        }
        ++i;
    }
    if (wordStart >= 0) // steps 13 and 14
        closeWord(i < length ? i : length);
    return result;
}

} // namespace talvor::testing
