// Text output and measurement: glyphs from the selected font's cache, blended in the text
// colour by their coverage over what is already there.
#include "platform/draw/dc.h"

#include "platform/draw/detail/font_face.h"
#include "platform/draw/detail/text_layout.h"

#include <algorithm>
#include <cstring>

using talvor::platform::PixelFromColor;
using talvor::platform::draw_detail::FontFace;
using talvor::platform::draw_detail::Glyph;

namespace {

// The face of a context that never selected a font: the framework's default, here 13 pixels
// of the last-resort monospace face.
FontFace* DefaultFace() {
    static const std::shared_ptr<FontFace> face = FontFace::ForLogFont(LOGFONT{});
    return face.get();
}

int TextLength(const char* text, int count) {
    if (!text)
        return 0;
    if (count < 0)
        return static_cast<int>(std::strlen(text));
    return count;
}

} // namespace

FontFace* CDC::Face() const {
    return m_state.face ? m_state.face.get() : DefaultFace();
}

void CDC::Layout(const char* text, int count, const int* widths, TextLayout& layout) const {
    talvor::platform::draw_detail::DecodeText(text, count, layout.codePoints, &layout.byteLengths);
    FontFace* face = Face();
    const std::size_t n = layout.codePoints.size();
    layout.glyphs.resize(n);
    layout.positions.resize(n);
    long long pen = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const Glyph& glyph = face->GlyphFor(layout.codePoints[i]);
        layout.glyphs[i] = &glyph;
        layout.positions[i] = static_cast<int>(std::clamp<long long>(pen, -(1 << 30), 1 << 30));
        pen += widths ? widths[i] : glyph.advance;
    }
    layout.width = static_cast<int>(std::clamp<long long>(pen, -(1 << 30), 1 << 30));
}

void CDC::PaintText(int x, int y, const TextLayout& layout, const CRect& deviceClip,
                    int underlineIndex) {
    if (deviceClip.IsRectEmpty())
        return;
    FontFace* face = Face();
    const auto& metrics = face->Metrics();
    const long long left = static_cast<long long>(x) + m_state.origin.x;
    const long long baseline = static_cast<long long>(y) + m_state.origin.y + metrics.ascent;
    const COLORREF color = m_state.textColor;
    const std::uint32_t solid = PixelFromColor(color);
    const std::uint32_t textRB = solid & 0x00FF00FFu, textG = solid & 0x0000FF00u;
    talvor::platform::Raster& raster = *m_state.raster;

    for (std::size_t i = 0; i < layout.glyphs.size(); ++i) {
        const Glyph& glyph = face->Inked(*layout.glyphs[i]);
        const long long gx = left + layout.positions[i] + glyph.left;
        const long long gy = baseline - glyph.top;
        if (glyph.width == 0 || gx >= deviceClip.right || gx + glyph.width <= deviceClip.left ||
            gy >= deviceClip.bottom || gy + glyph.rows <= deviceClip.top)
            continue;
        const int col0 = static_cast<int>(std::max<long long>(0, deviceClip.left - gx));
        const int col1 = static_cast<int>(std::min<long long>(glyph.width, deviceClip.right - gx));
        const int row0 = static_cast<int>(std::max<long long>(0, deviceClip.top - gy));
        const int row1 = static_cast<int>(std::min<long long>(glyph.rows, deviceClip.bottom - gy));
        for (int row = row0; row < row1; ++row) {
            const std::uint8_t* coverage =
                glyph.coverage.data() + static_cast<std::size_t>(row) * glyph.width;
            std::uint32_t* out =
                raster.pixels.data() + static_cast<std::size_t>(gy + row) * raster.width + gx;
            for (int col = col0; col < col1; ++col) {
                const int a = coverage[col];
                if (a == 0)
                    continue;
                if (a == 255) {
                    out[col] = solid;
                    continue;
                }
                // Both packed halves at once: red and blue 16 bits apart, green alone; each
                // sum is at most 255 * 255, so channels never spill into each other. The
                // division by 255 is rounded and exact over that range.
                const std::uint32_t d = out[col];
                const std::uint32_t ia = 255 - a;
                std::uint32_t rb = (textRB * a + (d & 0x00FF00FFu) * ia) + 0x00800080u;
                rb = ((rb + ((rb >> 8) & 0x00FF00FFu)) >> 8) & 0x00FF00FFu;
                std::uint32_t g = (textG * a + (d & 0x0000FF00u) * ia) + 0x00008000u;
                g = ((g + ((g >> 8) & 0x00FFFF00u)) >> 8) & 0x0000FF00u;
                out[col] = rb | g;
            }
        }
    }

    // Underline and strike out of the font, and the underline of a mnemonic character.
    const long long cellLeft = static_cast<long long>(x) + m_state.origin.x;
    auto bar = [&](long long from, long long to, long long top, int thickness) {
        CRect r(static_cast<LONG>(std::clamp<long long>(from, -(1 << 30), 1 << 30)),
                static_cast<LONG>(std::clamp<long long>(top, -(1 << 30), 1 << 30)),
                static_cast<LONG>(std::clamp<long long>(to, -(1 << 30), 1 << 30)),
                static_cast<LONG>(std::clamp<long long>(top + thickness, -(1 << 30), 1 << 30)));
        if (r.IntersectRect(&r, &deviceClip))
            for (int py = r.top; py < r.bottom; ++py)
                std::fill(
                    raster.pixels.data() + static_cast<std::size_t>(py) * raster.width + r.left,
                    raster.pixels.data() + static_cast<std::size_t>(py) * raster.width + r.right,
                    solid);
    };
    const int underlineTop = metrics.underlinePosition - metrics.underlineThickness / 2;
    if (m_state.logFont.lfUnderline)
        bar(cellLeft, cellLeft + layout.width, baseline + underlineTop, metrics.underlineThickness);
    if (m_state.logFont.lfStrikeOut)
        bar(cellLeft, cellLeft + layout.width, baseline - metrics.strikeoutPosition,
            metrics.underlineThickness);
    if (underlineIndex >= 0 && underlineIndex < static_cast<int>(layout.glyphs.size())) {
        const long long from = cellLeft + layout.positions[underlineIndex];
        bar(from, from + layout.glyphs[underlineIndex]->advance, baseline + underlineTop,
            metrics.underlineThickness);
    }
}

BOOL CDC::TextOut(int x, int y, LPCTSTR text, int count) {
    return ExtTextOut(x, y, 0, nullptr, text, static_cast<UINT>(std::max(0, count)), nullptr);
}

BOOL CDC::TextOut(int x, int y, const CString& text) {
    return TextOut(x, y, text.GetString(), text.GetLength());
}

BOOL CDC::ExtTextOut(int x, int y, UINT options, LPCRECT rect, LPCTSTR text, UINT count,
                     const int* widths) {
    if (!m_state.raster)
        return FALSE;
    if (!text)
        count = 0;
    const int length = static_cast<int>(std::min<UINT>(count, 1u << 30));
    CRect clip = DeviceBounds();
    if (rect) {
        CRect deviceRect = ToDevice(*rect);
        deviceRect.NormalizeRect();
        if (options & ETO_OPAQUE)
            FillDevice(deviceRect, m_state.bkColor);
        if ((options & ETO_CLIPPED) && !clip.IntersectRect(&clip, &deviceRect))
            return TRUE;
    }
    if (length == 0)
        return TRUE;
    thread_local TextLayout layout;
    Layout(text, length, widths, layout);
    if (m_state.bkMode == OPAQUE) {
        const auto& metrics = Face()->Metrics();
        CRect cell = ToDevice(CRect(x, y, x, y));
        cell.right = static_cast<LONG>(std::clamp<long long>(
            static_cast<long long>(cell.left) + layout.width, -(1 << 30), 1 << 30));
        cell.bottom = cell.top + metrics.ascent + metrics.descent;
        CRect visible;
        if (visible.IntersectRect(&cell, &clip))
            FillDevice(visible, m_state.bkColor);
    }
    PaintText(x, y, layout, clip, -1);
    return TRUE;
}

BOOL CDC::ExtTextOut(int x, int y, UINT options, LPCRECT rect, const CString& text,
                     const int* widths) {
    return ExtTextOut(x, y, options, rect, text.GetString(), static_cast<UINT>(text.GetLength()),
                      widths);
}

CSize CDC::GetTextExtent(LPCTSTR text, int count) const {
    thread_local TextLayout layout;
    Layout(text, TextLength(text, count), nullptr, layout);
    const auto& metrics = Face()->Metrics();
    return CSize(layout.width, metrics.ascent + metrics.descent);
}

CSize CDC::GetTextExtent(const CString& text) const {
    return GetTextExtent(text.GetString(), text.GetLength());
}

BOOL CDC::GetTextExtentPoint32(LPCTSTR text, int count, SIZE* size) const {
    if (!size || count < 0)
        return FALSE;
    *size = GetTextExtent(text, count);
    return TRUE;
}

BOOL CDC::GetTextMetrics(LPTEXTMETRIC metrics) const {
    if (!metrics)
        return FALSE;
    const FontFace* face = Face();
    const auto& m = face->Metrics();
    TEXTMETRIC tm{};
    tm.tmAscent = m.ascent;
    tm.tmDescent = m.descent;
    tm.tmHeight = m.ascent + m.descent;
    tm.tmInternalLeading = m.internalLeading;
    tm.tmExternalLeading = m.externalLeading;
    tm.tmAveCharWidth = m.aveCharWidth;
    tm.tmMaxCharWidth = m.maxCharWidth;
    tm.tmWeight = face->Weight();
    tm.tmDigitizedAspectX = 96;
    tm.tmDigitizedAspectY = 96;
    tm.tmFirstChar = 0x20;
    tm.tmLastChar = 0xFF;
    tm.tmDefaultChar = '?';
    tm.tmBreakChar = ' ';
    tm.tmItalic = face->Italic() ? 1 : 0;
    tm.tmUnderlined = m_state.logFont.lfUnderline ? 1 : 0;
    tm.tmStruckOut = m_state.logFont.lfStrikeOut ? 1 : 0;
    tm.tmPitchAndFamily = static_cast<BYTE>(
        (m.fixedPitch ? FF_MODERN : FF_SWISS | TMPF_FIXED_PITCH) | TMPF_VECTOR | TMPF_TRUETYPE);
    tm.tmCharSet =
        m_state.logFont.lfCharSet == DEFAULT_CHARSET ? ANSI_CHARSET : m_state.logFont.lfCharSet;
    *metrics = tm;
    return TRUE;
}
