// CFont over the shared faces.
#include "platform/draw/font.h"

#include "platform/draw/detail/font_face.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using talvor::platform::draw_detail::FontFace;

BOOL CFont::CreateFontIndirect(const LOGFONT* logFont) {
    if (!logFont)
        return FALSE;
    m_logFont = *logFont;
    m_logFont.lfFaceName[LF_FACESIZE - 1] = '\0';
    m_face = FontFace::ForLogFont(m_logFont);
    m_created = true;
    return TRUE;
}

BOOL CFont::CreatePointFont(int nPointSize, LPCTSTR faceName, CDC*) {
    const LOGFONT logFont = talvor::platform::PointFontLogFont(nPointSize, faceName);
    return CreateFontIndirect(&logFont);
}

BOOL CFont::CreatePointFontIndirect(const LOGFONT* logFont, CDC*) {
    if (!logFont)
        return FALSE;
    LOGFONT scaled = *logFont;
    scaled.lfHeight = talvor::platform::PointFontLogFont(logFont->lfHeight, nullptr).lfHeight;
    return CreateFontIndirect(&scaled);
}

BOOL CFont::CreateFont(int height, int width, int escapement, int orientation, int weight,
                       BYTE italic, BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision,
                       BYTE clipPrecision, BYTE quality, BYTE pitchAndFamily, LPCTSTR faceName) {
    LOGFONT logFont{};
    logFont.lfHeight = height;
    logFont.lfWidth = width;
    logFont.lfEscapement = escapement;
    logFont.lfOrientation = orientation;
    logFont.lfWeight = weight;
    logFont.lfItalic = italic;
    logFont.lfUnderline = underline;
    logFont.lfStrikeOut = strikeOut;
    logFont.lfCharSet = charSet;
    logFont.lfOutPrecision = outPrecision;
    logFont.lfClipPrecision = clipPrecision;
    logFont.lfQuality = quality;
    logFont.lfPitchAndFamily = pitchAndFamily;
    if (faceName)
        std::strncpy(logFont.lfFaceName, faceName, LF_FACESIZE - 1);
    return CreateFontIndirect(&logFont);
}

BOOL CFont::DeleteObject() {
    m_face.reset();
    m_logFont = LOGFONT{};
    return CGdiObject::DeleteObject();
}

int CFont::GetLogFont(LOGFONT* logFont) const {
    if (!m_created || !logFont)
        return 0;
    *logFont = m_logFont;
    return sizeof(LOGFONT);
}

namespace talvor::platform {

LOGFONT PointFontLogFont(int tenthsOfPoint, const char* faceName) {
    LOGFONT logFont{};
    // Tenths of a point to pixels at 96 dots per inch, rounded as the framework's MulDiv does.
    const long long tenths =
        tenthsOfPoint < 0 ? -static_cast<long long>(tenthsOfPoint) : tenthsOfPoint;
    logFont.lfHeight = -static_cast<LONG>(std::min<long long>((tenths * 96 + 360) / 720, 1 << 20));
    logFont.lfWeight = FW_NORMAL;
    logFont.lfCharSet = DEFAULT_CHARSET;
    if (faceName)
        std::strncpy(logFont.lfFaceName, faceName, LF_FACESIZE - 1);
    return logFont;
}

const char* FontFamilyName(const CFont& font) {
    return font.Face() ? font.Face()->Family().c_str() : "";
}

const char* FontFilePath(const CFont& font) {
    return font.Face() ? font.Face()->FilePath().c_str() : "";
}

} // namespace talvor::platform
