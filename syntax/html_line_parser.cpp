// The line parser of HTML and XML: only the inside of tags is examined, text between tags stays
// normal, and the body of a script element is one block in the string colour.
#include "syntax/syntax.h"

#include "syntax/detail/language_rows.h"
#include "syntax/detail/number_rules.h"
#include "syntax/detail/prepared_rules.h"
#include "syntax/detail/run_list.h"
#include "syntax/keyword_cache.h"

#include "platform/core/ascii.h"

#include <string_view>

using namespace talvor::syntax::detail;

namespace {

int ColourOfState(unsigned long cookie) {
    if (cookie & COOKIE_BLOCK_COMMENT)
        return COLOR_COMMENT;
    if (cookie & (COOKIE_STRING | COOKIE_SCRIPT))
        return COLOR_STRING;
    return COLOR_NORMAL;
}

bool IsScriptWord(std::string_view word) {
    constexpr std::string_view script = "script";
    if (word.size() != script.size())
        return false;
    for (std::size_t i = 0; i < script.size(); ++i) {
        if (talvor::platform::AsciiLower(word[i]) != script[i])
            return false;
    }
    return true;
}

} // namespace

unsigned long CTalvorSyntax::ParseLineForHtml(unsigned long dwCookie, CString& strLine,
                                              COLORINFO* pBuf, int& nActualItems) {
    if (m_nBeginCommentExCount == 0 && pBuf == nullptr)
        return dwCookie;
    const int length = strLine.GetLength();
    if (length == 0)
        return dwCookie;

    const PreparedRules rules(*this);
    talvor::syntax::KeywordCache& keywords = talvor::syntax::KeywordCacheIn(m_keywordCache);
    const LanguageRow* language = FindLanguageRow(m_nLanguage);
    keywords.Update(m_arrKeyWords, m_bCase != 0);
    RunList runs(pBuf, nActualItems);
    const char* line = strLine.GetString();
    const auto* bytes = reinterpret_cast<const unsigned char*>(line);

    unsigned long cookie = dwCookie;
    int wordStart = -1;
    bool redefine = true;
    bool backStep = false; // outlives a cancelled redefine: a '>' clears only redefine
    int floor = 0;
    int i = 0;

    auto before = [&](int pos, char c) { return pos >= 0 && line[pos] == c; };

    for (;;) {
        if (redefine) {
            runs.Add(backStep ? i - 1 : i, ColourOfState(cookie));
            redefine = false;
            backStep = false;
        }
        if (i >= length)
            break;
        const unsigned char b = bytes[i];
        if (rules.byteClass[b] & MaybeLead) {
            if (int n = MultiByteLength(line, length, i)) {
                i += n;
                floor = i;
                continue;
            }
        }

        // A script body is skipped up to its closing tag, which needs all of "</script" in the
        // line; only then is the tag read as usual.
        if ((cookie & COOKIE_SCRIPT) && !(cookie & COOKIE_TAG)) {
            if (i + 7 < length && b == '<' && line[i + 1] == '/' &&
                IsScriptWord(std::string_view(line + i + 2, 6))) {
                cookie &= ~COOKIE_SCRIPT;
            } else {
                ++i;
                continue;
            }
        }

        // A '<' opens a tag in every state that gets here, inside a comment or string too.
        if (b == '<') {
            cookie |= COOKIE_TAG;
            runs.Add(i, COLOR_KEYWORD);
        }

        if (cookie & COOKIE_TAG) {
            // Inside a string, literal or comment only the closer counts; a '>' ends nothing.
            if (cookie & (COOKIE_STRING | COOKIE_CHAR | COOKIE_BLOCK_COMMENT)) {
                if (cookie & COOKIE_STRING) {
                    if (RuleEndsAt(rules.endString, line, i, floor)) {
                        cookie &= ~COOKIE_STRING;
                        redefine = true;
                    }
                } else if (cookie & COOKIE_CHAR) {
                    if (RuleEndsAt(rules.endChar, line, i, floor)) {
                        cookie &= ~COOKIE_CHAR;
                        redefine = true;
                    }
                } else if (FirstRuleEndingAt(rules.endComment, rules.endCommentCount, line, i,
                                             floor)) {
                    cookie &= ~COOKIE_BLOCK_COMMENT;
                    redefine = true;
                }
                ++i;
                continue;
            }

            if (RuleEndsAt(rules.beginString, line, i, floor)) {
                runs.Add(i - rules.beginString.length + 1, COLOR_STRING);
                cookie |= COOKIE_STRING;
                ++i;
                continue;
            }
            if (RuleEndsAt(rules.beginChar, line, i, floor)) {
                runs.Add(i - rules.beginChar.length + 1, COLOR_CHAR);
                cookie |= COOKIE_CHAR;
                ++i;
                continue;
            }
            if (const RuleText* rule = FirstRuleEndingAt(rules.beginComment,
                                                         rules.beginCommentCount, line, i, floor)) {
                // The comment takes the place of the keyword run of the '<' that begins it. An
                // open word stays open over the comment.
                runs.RemoveLast();
                runs.Add(i - rule->length + 1, COLOR_COMMENT);
                cookie |= COOKIE_BLOCK_COMMENT;
                ++i;
                continue;
            }

            if (rules.byteClass[b] & WordByte) {
                if (wordStart < 0)
                    wordStart = i;
            } else if (wordStart >= 0) {
                // Inside a tag a word is a name or a value; the keyword list is not asked.
                const std::string_view word(line + wordStart,
                                            static_cast<std::size_t>(i - wordStart));
                if (IsNumberIn(language, word)) {
                    runs.Add(wordStart, COLOR_NUMBER);
                } else {
                    if (IsScriptWord(word)) {
                        if (before(wordStart - 1, '<')) {
                            cookie |= COOKIE_SCRIPT;
                        } else if (before(wordStart - 1, '/') && before(wordStart - 2, '<')) {
                            cookie &= ~COOKIE_SCRIPT;
                            runs.Add(wordStart - 2, COLOR_KEYWORD);
                        }
                    }
                    // A word behind '=' is an unquoted attribute value.
                    runs.Add(wordStart, before(wordStart - 1, '=') ? COLOR_NORMAL : COLOR_KEYWORD);
                }
                redefine = true;
                backStep = true;
                wordStart = -1;
            }
        }

        if (b == '>') {
            cookie &= ~COOKIE_TAG;
            redefine = false;
            runs.Add(i, COLOR_KEYWORD);
            if (cookie & COOKIE_SCRIPT)
                runs.Add(i + 1, COLOR_STRING); // the script body starts
            else if (i > 1 && line[i - 1] == '-' && line[i - 2] == '-')
                runs.Add(i, COLOR_COMMENT);
            else
                runs.Add(i + 1, COLOR_NORMAL);
        }
        ++i;
    }

    // A word still open at the line end: only here does the keyword list decide.
    if (!(cookie & COOKIE_TAG) || wordStart < 0)
        return cookie;
    const int end = i < length ? i : length;
    const std::string_view word(line + wordStart, static_cast<std::size_t>(end - wordStart));
    if (keywords.Lookup(m_arrKeyWords, word)) {
        runs.Add(before(wordStart - 1, '/') ? wordStart - 1 : wordStart, COLOR_KEYWORD);
        if (IsScriptWord(word)) {
            if (before(wordStart - 1, '<')) {
                cookie |= COOKIE_SCRIPT;
            } else if (before(wordStart - 1, '/') && before(wordStart - 2, '<')) {
                cookie &= ~COOKIE_SCRIPT;
                runs.Add(wordStart - 2, COLOR_NORMAL);
            }
        }
    } else if (IsNumberIn(language, word)) {
        runs.Add(wordStart, COLOR_NUMBER);
    }
    return cookie;
}
