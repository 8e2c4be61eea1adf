// The line parser: one pass over the bytes of a line, driven by the rule set and the keyword
// array, giving colour runs and the cookie at the line's end. It never looks at other lines.
#include "syntax/syntax.h"

#include "syntax/detail/language_rows.h"
#include "syntax/detail/number_rules.h"
#include "syntax/detail/prepared_rules.h"
#include "syntax/detail/run_list.h"
#include "syntax/keyword_cache.h"

#include <string_view>

using namespace talvor::syntax::detail;

namespace {

// The colour a run takes when it starts behind a closed construct or word.
int ColourOfState(unsigned long cookie) {
    if (cookie & (COOKIE_LINE_COMMENT | COOKIE_BLOCK_COMMENT))
        return COLOR_COMMENT;
    if (cookie & COOKIE_STRING)
        return COLOR_STRING;
    return COLOR_NORMAL; // a character literal too
}

} // namespace

unsigned long CTalvorSyntax::ParseLine(unsigned long dwCookie, CString& strLine, COLORINFO* pBuf,
                                       int& nActualItems) {
    const LanguageRow* language = FindLanguageRow(m_nLanguage);
    if (language != nullptr && language->parser == LineParser::Tags)
        return ParseLineForHtml(dwCookie, strLine, pBuf, nActualItems);
    const int length = strLine.GetLength();
    if (length == 0)
        return dwCookie;

    const PreparedRules rules(*this);
    talvor::syntax::KeywordCache& keywords = talvor::syntax::KeywordCacheIn(m_keywordCache);
    keywords.Update(m_arrKeyWords, m_bCase != 0);
    RunList runs(pBuf, nActualItems);
    const char* line = strLine.GetString();
    const auto* bytes = reinterpret_cast<const unsigned char*>(line);
    const bool escapes = m_bEscape != 0;

    unsigned long cookie = dwCookie;
    int wordStart = -1;
    bool redefine = true;
    bool backStep = false;
    bool escaped = false;
    int floor = 0; // end of the last multi-byte character; no match starts before it
    int i = 0;

    auto closeWord = [&](int end) {
        if (!runs.Kept())
            return; // a word's colour never changes the cookie
        const std::string_view word(line + wordStart, static_cast<std::size_t>(end - wordStart));
        if (keywords.Lookup(m_arrKeyWords, word))
            runs.Add(wordStart, COLOR_KEYWORD);
        else if (IsNumberIn(language, word))
            runs.Add(wordStart, COLOR_NUMBER);
    };

    for (;;) {
        if (redefine) {
            runs.Add(backStep ? i - 1 : i, ColourOfState(cookie));
            redefine = false;
            backStep = false;
        }
        if (i >= length)
            break;
        const unsigned char b = bytes[i];
        const unsigned char byteClass = rules.byteClass[b];

        // A multi-byte character changes no state: it is never part of a match, and an open
        // word simply takes it in.
        if (byteClass & MaybeLead) {
            if (int n = MultiByteLength(line, length, i)) {
                i += n;
                floor = i;
                continue;
            }
        }

        if (cookie & COOKIE_LINE_COMMENT) {
            runs.Add(i, COLOR_COMMENT);
            break; // the rest of the line is not read
        }

        if (cookie & (COOKIE_STRING | COOKIE_CHAR)) {
            if (escapes && i > 0) {
                // A backslash escapes the next byte; a pair of them escapes nothing. The trail
                // byte of a double-byte character is no backslash, whatever its value.
                const bool previousIsBackslash = line[i - 1] == '\\' && floor != i;
                if (!previousIsBackslash)
                    escaped = b == '\\';
                else if (b == '\\')
                    escaped = !escaped;
            }
            if (!escaped) {
                // The closer keeps the construct's colour; the next run starts behind it.
                if ((cookie & COOKIE_STRING) && RuleEndsAt(rules.endString, line, i, floor)) {
                    cookie &= ~COOKIE_STRING;
                    redefine = true;
                }
                if ((cookie & COOKIE_CHAR) && RuleEndsAt(rules.endChar, line, i, floor)) {
                    cookie &= ~COOKIE_CHAR;
                    redefine = true;
                }
            }
            ++i;
            // Bytes that can end no closer, escape nothing and start no character change
            // nothing: the escape flag is worked out afresh from the byte before each byte.
            if (!redefine) {
                while (i < length &&
                       (rules.byteClass[bytes[i]] & (EndsCloser | Backslash | MaybeLead)) == 0)
                    ++i;
            }
            continue;
        }

        if (cookie & COOKIE_BLOCK_COMMENT) {
            // Any closer ends the comment, whichever opener began it.
            if (FirstRuleEndingAt(rules.endComment, rules.endCommentCount, line, i, floor)) {
                cookie &= ~COOKIE_BLOCK_COMMENT;
                redefine = true;
            }
            ++i;
            if (!redefine) {
                while (i < length && (rules.byteClass[bytes[i]] & (EndsCloser | MaybeLead)) == 0)
                    ++i;
            }
            continue;
        }

        if (byteClass & EndsOpener) {
            // An opener does not close an open word: the word is tried when it ends later.
            if (byteClass & EndsLineComment) {
                if (const RuleText* rule = FirstRuleEndingAt(
                        rules.lineComment, rules.lineCommentCount, line, i, floor)) {
                    runs.Add(i - rule->length + 1, COLOR_COMMENT);
                    cookie |= COOKIE_LINE_COMMENT;
                    break;
                }
            }
            if ((byteClass & EndsString) && RuleEndsAt(rules.beginString, line, i, floor)) {
                runs.Add(i - rules.beginString.length + 1, COLOR_STRING);
                cookie |= COOKIE_STRING;
                ++i;
                continue;
            }
            if ((byteClass & EndsChar) && RuleEndsAt(rules.beginChar, line, i, floor)) {
                runs.Add(i - rules.beginChar.length + 1, COLOR_CHAR);
                cookie |= COOKIE_CHAR;
                ++i;
                continue;
            }
            if (byteClass & EndsBlockComment) {
                if (const RuleText* rule = FirstRuleEndingAt(
                        rules.beginComment, rules.beginCommentCount, line, i, floor)) {
                    runs.Add(i - rule->length + 1, COLOR_COMMENT);
                    cookie |= COOKIE_BLOCK_COMMENT;
                    ++i;
                    if (rule->length > 1) {
                        // The character behind a longer opener is skipped, so "/*/" does not
                        // close the comment it opens.
                        if (i >= length)
                            break;
                        const int n = (rules.byteClass[bytes[i]] & MaybeLead)
                                          ? MultiByteLength(line, length, i)
                                          : 0;
                        i += n > 0 ? n : 1;
                        if (n > 0)
                            floor = i;
                    }
                    continue;
                }
            }
        }

        if (byteClass & WordByte) {
            if (wordStart < 0)
                wordStart = i;
            ++i;
            // The rest of the word: bytes that are word bytes and nothing else.
            while (i < length && rules.byteClass[bytes[i]] == WordByte)
                ++i;
            continue;
        }
        if (wordStart >= 0) {
            closeWord(i);
            // The next run starts at the byte that ended the word.
            redefine = true;
            backStep = true;
            wordStart = -1;
            ++i;
            continue;
        }
        ++i;
        // Bytes that neither open, close, nor belong to a word change nothing.
        while (i < length && rules.byteClass[bytes[i]] == 0)
            ++i;
    }

    if (wordStart >= 0)
        closeWord(i < length ? i : length);
    return cookie;
}
