// CVPAuxData: data the maker library shares with everything it serves, among them the font
// of its user interface. A host sets the font; the default is a fixed-pitch face, the one the
// drawing layer falls back to.
#pragma once

#include "platform/draw/gdi_types.h"

class CVPAuxData {
public:
    // The process-wide data.
    static CVPAuxData& Get();
    // The user interface font's description (only its face is read by the editor).
    LOGFONT m_lfFont;
    void SetFontFace(const char* face);

private:
    CVPAuxData();
};
