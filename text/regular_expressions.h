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

namespace talvor::platform {
class RegExpEngine;
}

// One match: FirstIndex, Length (in wide characters) and Value of the match.
struct tagREGEXPINFO {
    LONG nFirstIndex = 0;
    LONG nLength = 0;
    CString strValue;
};

// The matcher singleton: owns the regular expression engine object, whose Pattern, Global
// and IgnoreCase every facade call sets before it uses them, so nothing carries over from one
// call to the next. Compiled patterns are kept in a bounded cache behind it.
class CTalvorRegExp {
public:
    virtual ~CTalvorRegExp();
    // The one matcher of the process, built on first use. It is never destroyed, so a call at
    // process end (from another object's destructor) still works. After TVPfxRegExpRelease
    // the next call builds a new engine object.
    static CTalvorRegExp& GetRegExp();
    // The engine object; null only between TVPfxRegExpRelease and the next GetRegExp().
    talvor::platform::RegExpEngine* Engine() const { return m_pRegExp; }
    // Gives up the engine object and the cached patterns. Calling it again does nothing.
    void Release();

private:
    CTalvorRegExp();
    CTalvorRegExp(const CTalvorRegExp&) = delete;
    CTalvorRegExp& operator=(const CTalvorRegExp&) = delete;

    talvor::platform::RegExpEngine* m_pRegExp = nullptr;
};

// 1 if pattern matches somewhere in text, else 0. A failure gives 0 after its message box.
int TVPfxTestByRegExp(CString pattern, CString text, short global, short ignoreCase);

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

// Gives up the engine object and the compiled patterns. The host calls it once at the end.
// A later facade call does not fail: it builds a new engine object, as the first call did; a
// second release does nothing.
void TVPfxRegExpRelease();
