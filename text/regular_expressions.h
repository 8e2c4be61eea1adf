// The regular expression facade: every text question of the script engine and the alias
// store is asked through these four functions, of one process-wide matcher. Patterns are
// VBScript regular expressions; positions and lengths count characters of the wide (UTF-16)
// form of the text. `global` and `ignoreCase` are component-model booleans: 0 off, -1 on.
#pragma once

#include "platform/arrays.h"
#include "platform/cstring.h"

// One match: FirstIndex, Length (in wide characters) and Value of the match.
struct tagREGEXPINFO {
    LONG nFirstIndex = 0;
    LONG nLength = 0;
    CString strValue;
};

class RegExpEngine;

// The matcher singleton, reached only through GetRegExp().
class CTalvorRegExp {
public:
    virtual ~CTalvorRegExp();
    // The one matcher of the process, built on first use.
    static CTalvorRegExp& GetRegExp();
    // The engine object; null after TVPfxRegExpRelease.
    RegExpEngine* Engine() const { return m_pRegExp; }
    void Release();

private:
    CTalvorRegExp();
    RegExpEngine* m_pRegExp = nullptr;
};

// 1 if pattern matches somewhere in text, else 0. A pattern the engine rejects shows a message
// box and gives 0.
int TVPfxTestByRegExp(CString pattern, CString text, short global, short ignoreCase);

// Empties matches, then fills it with every match in text order (the first alone with global
// off) and returns 1; 0 with matches empty when nothing matches. On an engine failure: message
// box, 0, and matches keeps what was already appended.
int TVPfxGetInfoByRegExp(CString pattern, CString text, CArray<tagREGEXPINFO, tagREGEXPINFO>& matches,
                         short global, short ignoreCase);

// When pattern matches: result = text with the matches (all, or the first with global off)
// replaced by replacement, and 1. Otherwise 0 and result untouched.
int TVPfxReplaceByRegExp(CString pattern, CString text, CString replacement, CString& result,
                         short global, short ignoreCase);

// Gives up the engine object. The host calls it once at the end.
void TVPfxRegExpRelease();
