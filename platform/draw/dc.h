// CDC: a device context drawing into the 32-bit raster of the bitmap it selects (the memory
// contexts of double-buffered painting; a window's context selects the window's raster).
// Coordinates are logical: device = logical + viewport origin. Every operation is clipped to
// the clip rectangle and to the raster, whatever coordinates come in (sums beyond the 32-bit
// range wrap, as in the window system, and are clipped like any other); without a bitmap nothing is
// drawn. Selected objects are copied or shared when selected, so the previous object returned by
// SelectObject is only a name for reselecting it.
#pragma once

#include "platform/draw/bitmap.h"
#include "platform/draw/font.h"
#include "platform/strings/cstring.h"

#include <memory>
#include <string>
#include <vector>

class CDC;
using HDC = CDC*;

constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int BITSPIXEL = 12;
constexpr int PLANES = 14;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;

class CDC {
public:
    CDC();
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // A memory context with a 1x1 bitmap, the default font, a black pen and a white brush.
    // Any context, or none, may be given.
    BOOL CreateCompatibleDC(CDC* pDC);
    BOOL DeleteDC();
    HDC GetSafeHdc() const { return m_hDC; }
    HDC m_hDC = nullptr;

    // Each returns the object selected before (the context's own default the first time), or
    // null for a null or never created object, which leaves the selection as it was.
    CBitmap* SelectObject(CBitmap* pBitmap);
    CFont* SelectObject(CFont* pFont);
    CPen* SelectObject(CPen* pPen);
    CBrush* SelectObject(CBrush* pBrush);
    // WHITE_BRUSH..NULL_BRUSH, WHITE_PEN..NULL_PEN; the previous pen or brush, or null.
    CGdiObject* SelectStockObject(int index);
    CBitmap* GetCurrentBitmap() const { return m_state.bitmap; }
    CFont* GetCurrentFont() const { return m_state.font; }

    // 96 for LOGPIXELSX/Y, the raster size for HORZRES/VERTRES, 32 for BITSPIXEL, 1 for PLANES.
    int GetDeviceCaps(int index) const;

    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT p) { return SetViewportOrg(p.x, p.y); }
    CPoint OffsetViewportOrg(int dx, int dy);
    CPoint GetViewportOrg() const { return m_state.origin; }

    // Clipping to one rectangle. The region is in device coordinates; null removes the clip.
    int SelectClipRgn(CRgn* pRgn);
    int IntersectClipRect(int left, int top, int right, int bottom);
    int IntersectClipRect(LPCRECT rect);
    // The visible part, in logical coordinates.
    int GetClipBox(LPRECT rect) const;

    COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const { return m_state.textColor; }
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const { return m_state.bkColor; }
    // TRANSPARENT or OPAQUE; another value gives 0 and changes nothing.
    int SetBkMode(int mode);
    int GetBkMode() const { return m_state.bkMode; }

    // Fills with a colour. As in the framework, this also makes the colour the background colour.
    void FillSolidRect(LPCRECT rect, COLORREF color);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF color);
    // Fills with a brush; a hollow or null brush fills nothing.
    void FillRect(LPCRECT rect, CBrush* pBrush);
    // A one pixel frame: top and left in one colour, bottom and right in the other.
    void Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight);
    void Draw3dRect(int x, int y, int cx, int cy, COLORREF topLeft, COLORREF bottomRight);
    // BLACKNESS, WHITENESS, DSTINVERT or PATCOPY (the selected brush).
    BOOL PatBlt(int x, int y, int width, int height, DWORD rop);

    // The colour set, or CLR_INVALID when the point is clipped away.
    COLORREF SetPixel(int x, int y, COLORREF color);
    COLORREF SetPixel(POINT p, COLORREF color) { return SetPixel(p.x, p.y, color); }
    BOOL SetPixelV(int x, int y, COLORREF color) { return SetPixel(x, y, color) != CLR_INVALID; }
    // CLR_INVALID outside the clip or the raster.
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(POINT p) const { return GetPixel(p.x, p.y); }

    // Lines with the selected pen, from the current position up to but not including the end
    // point, which becomes the current position. A styled pen's pattern runs on from line to
    // line and starts again at MoveTo; its gaps take the background colour in OPAQUE mode.
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT p) { return MoveTo(p.x, p.y); }
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT p) { return LineTo(p.x, p.y); }
    CPoint GetCurrentPosition() const { return m_state.position; }
    // Outline with the pen, inside filled with the brush; right and bottom lie outside.
    BOOL Rectangle(int left, int top, int right, int bottom);
    BOOL Rectangle(LPCRECT rect);

    // Copies a block from another context's raster (the same one may be given): SRCCOPY,
    // SRCPAINT, SRCAND, SRCINVERT, NOTSRCCOPY, and the raster operations of PatBlt. Pixels whose
    // source lies outside the source raster are left alone. FALSE for an unknown operation or a
    // missing source.
    BOOL BitBlt(int x, int y, int width, int height, CDC* pSrcDC, int xSrc, int ySrc, DWORD rop);

    // Text in the system code page, from the top left of its cell, in the text colour; in OPAQUE
    // mode the cell (extent by font height) is first filled with the background colour.
    BOOL TextOut(int x, int y, LPCTSTR text, int count);
    BOOL TextOut(int x, int y, const CString& text);
    // ETO_OPAQUE fills the rectangle with the background colour; ETO_CLIPPED keeps the text
    // inside it. widths, when given, holds the advance of each character.
    BOOL ExtTextOut(int x, int y, UINT options, LPCRECT rect, LPCTSTR text, UINT count,
                    const int* widths);
    BOOL ExtTextOut(int x, int y, UINT options, LPCRECT rect, const CString& text,
                    const int* widths);
    // Formatted text in a rectangle: DT_LEFT/DT_CENTER/DT_RIGHT, DT_TOP/DT_VCENTER/DT_BOTTOM
    // (vertical placement with DT_SINGLELINE), DT_SINGLELINE, DT_WORDBREAK, DT_EXPANDTABS,
    // DT_NOCLIP, DT_NOPREFIX (else "&x" underlines x and "&&" gives "&"), DT_HIDEPREFIX,
    // DT_END_ELLIPSIS, DT_CALCRECT (measures only: right and bottom of the rectangle are set).
    // A count of -1 takes the text up to its end. Returns the height of the text, or with
    // DT_VCENTER/DT_BOTTOM the offset from the rectangle's top to the text's bottom.
    int DrawText(LPCTSTR text, int count, LPRECT rect, UINT format);
    int DrawText(const CString& text, LPRECT rect, UINT format);

    // Width: the sum of the characters' advances, the very ones drawing uses. Height: the
    // font's cell height.
    CSize GetTextExtent(LPCTSTR text, int count) const;
    CSize GetTextExtent(const CString& text) const;
    BOOL GetTextExtentPoint32(LPCTSTR text, int count, SIZE* size) const;
    BOOL GetTextMetrics(LPTEXTMETRIC metrics) const;

    // Saves the whole state (objects, colours, modes, clip, origin, position); returns its
    // number from 1. RestoreDC(-1) takes the last, RestoreDC(n) the n-th, dropping the later ones.
    int SaveDC();
    BOOL RestoreDC(int saved);

private:
    struct PenState {
        int style = PS_SOLID;
        int width = 1;
        COLORREF color = RGB(0, 0, 0);
    };
    struct BrushState {
        bool hollow = false;
        COLORREF color = RGB(255, 255, 255);
    };
    struct State {
        std::shared_ptr<talvor::platform::Raster> raster;
        CBitmap* bitmap = nullptr;
        CFont* font = nullptr;
        std::shared_ptr<talvor::platform::draw_detail::FontFace> face;
        LOGFONT logFont{}; // of the selected font: underline, strike out, character set
        CPen* pen = nullptr;
        PenState penState;
        CBrush* brush = nullptr;
        BrushState brushState;
        COLORREF textColor = RGB(0, 0, 0);
        COLORREF bkColor = RGB(255, 255, 255);
        int bkMode = OPAQUE;
        bool clipped = false;
        CRect clip; // device coordinates, when clipped
        CPoint origin;
        CPoint position;
        int patternPos = 0; // position within the styled pen's pattern
    };

    struct TextLayout;
    void Reset();
    // The part of the raster that may be drawn into, in device coordinates.
    CRect DeviceBounds() const;
    CRect ToDevice(const RECT& r) const;
    void FillDevice(const CRect& deviceRect, COLORREF color);
    void PlotDevice(int x, int y, COLORREF color, const CRect& bounds);
    void StrokeLine(CPoint from, CPoint to);
    talvor::platform::draw_detail::FontFace* Face() const;
    void Layout(const char* text, int count, const int* widths, TextLayout& layout) const;
    void PaintText(int x, int y, const TextLayout& layout, const CRect& deviceClip,
                   int underlineIndex);
    void LayoutExpanded(const std::string& line, bool expandTabs, TextLayout& layout) const;

    State m_state;
    std::vector<State> m_saved;
    CBitmap m_defaultBitmap;
    CFont m_defaultFont;
    CPen m_defaultPen;
    CBrush m_defaultBrush;
};

// The framework's free function over a context.
BOOL GetTextExtentPoint32(HDC dc, LPCSTR text, int count, SIZE* size);
