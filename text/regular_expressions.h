// The regular expression facade: every text question of the script engine and the alias
// store is asked through these four functions, of one process-wide matcher. Patterns are
// VBScript regular expressions; positions and lengths count characters of the wide (UTF-16)
// form of the text. `global` and `ignoreCase` are component-model booleans: 0 off, -1 on (any
// other non-zero value counts as on).
//
// A pattern the engine rejects, or a match that exceeds the engine's backtracking limit, shows
// one message box (OK button) with the failure's text, such as "Syntax error in regular
// expression" or "Expected ')' in regular expression", and the function gives 0; the next
// call works as usual. No exception leaves these functions.
#pragma once

#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"
#include "text/regex_matcher.h" // CTalvorRegExp and TVPfxRegExpRelease

// One match: FirstIndex, Length (in wide characters) and Value of the match.
struct tagREGEXPINFO {
    LONG nFirstIndex = 0;
    LONG nLength = 0;
    CString strValue;
};

// 1 if pattern matches somewhere in text, else 0. A failure gives 0 after its message box.
int TVPfxTestByRegExp(CString pattern, CString text, short global, short ignoreCase);

namespace talvor::text {
// TVPfxTestByRegExp without copies of its arguments, for callers inside the library that ask
// many questions (the engine's keyword tests): the same matcher, cache and results.
int TestByRegExp(std::string_view pattern, std::string_view text, short global, short ignoreCase);
} // namespace talvor::text

// Empties matches, then fills it with every match in text order (the first alone with global
// off) and returns 1; 0 with matches empty when nothing matches. On a failure: message box,
// 0, and matches keeps what was already appended.
int TVPfxGetInfoByRegExp(CString pattern, CString text,
                         CArray<tagREGEXPINFO, tagREGEXPINFO>& matches, short global,
                         short ignoreCase);

// When pattern matches: result = text with the matches (all, or the first with global off)
// replaced by replacement ("$&", "$1" and the like stand for the match and its groups), and 1.
// Otherwise, and on a failure (after its message box), 0 and result untouched.
int TVPfxReplaceByRegExp(CString pattern, CString text, CString replacement, CString& result,
                         short global, short ignoreCase);
