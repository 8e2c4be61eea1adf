// CFont: a font made from a LOGFONT. The face is matched by fontconfig; a face name that no
// installed family carries falls back by the pitch and family bits (fixed pitch or FF_MODERN to
// monospace, FF_SWISS to sans-serif, FF_ROMAN to serif), and to DejaVu Sans Mono when they say
// nothing. Heights follow the framework: a negative lfHeight is the character height (em) in
// pixels, a positive one the cell height (ascent plus descent), 0 a default of 13 pixels
// (10 points); points are at 96 dots per inch. Glyphs are drawn anti-aliased by FreeType and
// cached with the face, which all fonts of the same description share.
#pragma once

#include "platform/draw/gdi_object.h"

#include <memory>

class CDC;

namespace talvor::platform::draw_detail {
class FontFace;
}

class CFont : public CGdiObject {
public:
    CFont() = default;

    // FALSE for a null LOGFONT. A face that can't be loaded at all still gives a font: it
    // measures every character as zero wide and draws nothing.
    BOOL CreateFontIndirect(const LOGFONT* logFont);
    // nPointSize in tenths of a point, at 96 dots per inch (the context is not consulted).
    BOOL CreatePointFont(int nPointSize, LPCTSTR faceName, CDC* pDC = nullptr);
    BOOL CreatePointFontIndirect(const LOGFONT* logFont, CDC* pDC = nullptr);
    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                    BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision,
                    BYTE clipPrecision, BYTE quality, BYTE pitchAndFamily, LPCTSTR faceName);
    BOOL DeleteObject() override;

    // The LOGFONT the font was made from (lfFaceName as given, or empty); 0 when not created.
    int GetLogFont(LOGFONT* logFont) const;

    const std::shared_ptr<talvor::platform::draw_detail::FontFace>& Face() const { return m_face; }

private:
    LOGFONT m_logFont{};
    std::shared_ptr<talvor::platform::draw_detail::FontFace> m_face;
};

namespace talvor::platform {
// The LOGFONT of a font of the given size in tenths of a point at 96 dots per inch:
// lfHeight = -(points * 96 / 72), rounded, normal weight.
LOGFONT PointFontLogFont(int tenthsOfPoint, const char* faceName);
// Family and file of the face a font resolved to (empty when none could be loaded).
const char* FontFamilyName(const CFont& font);
const char* FontFilePath(const CFont& font);
} // namespace talvor::platform
