// The paint manager: the theme of all painting, and the caption helper that drops mnemonic
// marks ("&File" shows as "File").
#pragma once

#include "platform/strings/cstring.h"

enum VTPaintTheme { vtThemeOffice2000 = 0, vtThemeOfficeXP = 1, vtThemeOffice2003 = 2 };

class CVTPaintManager {
public:
    int GetTheme() const { return m_nTheme; }
    void SetTheme(int theme) { m_nTheme = theme; }
    // The text without its mnemonic marks: a single "&" goes, "&&" becomes "&", and a
    // bracketed mark at the end such as "(&F)" goes with its brackets.
    static CString StripMnemonics(const CString& text);

private:
    int m_nTheme = vtThemeOffice2000;
};
