// The framework's drawing types and constants, with their published names and values: points,
// sizes and rectangles (with the CPoint/CSize/CRect helpers), LOGFONT, TEXTMETRIC, BITMAP, and
// the flags of text output, pens, background modes and raster operations.
#pragma once

#include "platform/core/win_types.h"

#include <algorithm>

constexpr COLORREF CLR_INVALID = 0xFFFFFFFFu;

struct POINT {
    LONG x;
    LONG y;
};
struct SIZE {
    LONG cx;
    LONG cy;
};
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPPOINT = POINT*;

class CPoint : public POINT {
public:
    CPoint() : POINT{0, 0} {}
    CPoint(int x, int y) : POINT{x, y} {}
    CPoint(POINT p) : POINT(p) {}
    void Offset(int dx, int dy) {
        x += dx;
        y += dy;
    }
    bool operator==(const POINT& p) const { return x == p.x && y == p.y; }
    bool operator!=(const POINT& p) const { return !(*this == p); }
    CPoint operator+(const POINT& p) const { return CPoint(x + p.x, y + p.y); }
    CPoint operator-(const POINT& p) const { return CPoint(x - p.x, y - p.y); }
};

class CSize : public SIZE {
public:
    CSize() : SIZE{0, 0} {}
    CSize(int cx, int cy) : SIZE{cx, cy} {}
    CSize(SIZE s) : SIZE(s) {}
    bool operator==(const SIZE& s) const { return cx == s.cx && cy == s.cy; }
    bool operator!=(const SIZE& s) const { return !(*this == s); }
};

// Rectangles are half open, as everywhere in the framework: right and bottom lie outside.
class CRect : public RECT {
public:
    CRect() : RECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) : RECT{l, t, r, b} {}
    CRect(const RECT& r) : RECT(r) {}
    CRect(POINT topLeft, SIZE size)
        : RECT{topLeft.x, topLeft.y, topLeft.x + size.cx, topLeft.y + size.cy} {}
    CRect(POINT topLeft, POINT bottomRight)
        : RECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    // Empty when it has no area: a zero or negative width or height.
    BOOL IsRectEmpty() const { return right <= left || bottom <= top; }
    BOOL IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    BOOL PtInRect(POINT p) const {
        return p.x >= left && p.x < right && p.y >= top && p.y < bottom;
    }
    void SetRect(int l, int t, int r, int b) {
        left = l;
        top = t;
        right = r;
        bottom = b;
    }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void OffsetRect(int dx, int dy) {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
    }
    void OffsetRect(POINT p) { OffsetRect(p.x, p.y); }
    void InflateRect(int dx, int dy) {
        left -= dx;
        right += dx;
        top -= dy;
        bottom += dy;
    }
    void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    void NormalizeRect() {
        if (left > right)
            std::swap(left, right);
        if (top > bottom)
            std::swap(top, bottom);
    }
    // The common part; an empty rectangle (all zero) and FALSE when they do not overlap.
    BOOL IntersectRect(LPCRECT a, LPCRECT b) {
        CRect r(std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                std::min(a->bottom, b->bottom));
        if (r.IsRectEmpty()) {
            SetRectEmpty();
            return FALSE;
        }
        *this = r;
        return TRUE;
    }
    // The smallest rectangle holding both; an empty one does not count.
    BOOL UnionRect(LPCRECT a, LPCRECT b) {
        const CRect ra(*a), rb(*b);
        if (ra.IsRectEmpty()) {
            *this = rb;
        } else if (rb.IsRectEmpty()) {
            *this = ra;
        } else {
            SetRect(std::min(ra.left, rb.left), std::min(ra.top, rb.top),
                    std::max(ra.right, rb.right), std::max(ra.bottom, rb.bottom));
        }
        return !IsRectEmpty();
    }
    bool operator==(const RECT& r) const {
        return left == r.left && top == r.top && right == r.right && bottom == r.bottom;
    }
    bool operator!=(const RECT& r) const { return !(*this == r); }
    operator LPRECT() { return this; }
    operator LPCRECT() const { return this; }
};

constexpr int LF_FACESIZE = 32;

struct LOGFONT {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char lfFaceName[LF_FACESIZE];
};
using LOGFONTA = LOGFONT;
using LPLOGFONT = LOGFONT*;

struct TEXTMETRIC {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};
using LPTEXTMETRIC = TEXTMETRIC*;

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    void* bmBits;
};

// Font weights.
constexpr LONG FW_DONTCARE = 0;
constexpr LONG FW_THIN = 100;
constexpr LONG FW_EXTRALIGHT = 200;
constexpr LONG FW_LIGHT = 300;
constexpr LONG FW_NORMAL = 400;
constexpr LONG FW_MEDIUM = 500;
constexpr LONG FW_SEMIBOLD = 600;
constexpr LONG FW_BOLD = 700;
constexpr LONG FW_EXTRABOLD = 800;
constexpr LONG FW_HEAVY = 900;

// Character sets.
constexpr BYTE ANSI_CHARSET = 0;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SYMBOL_CHARSET = 2;
constexpr BYTE SHIFTJIS_CHARSET = 128;
constexpr BYTE HANGUL_CHARSET = 129;
constexpr BYTE GB2312_CHARSET = 134;
constexpr BYTE CHINESEBIG5_CHARSET = 136;
constexpr BYTE OEM_CHARSET = 255;

// Precision, quality, pitch and family.
constexpr BYTE OUT_DEFAULT_PRECIS = 0;
constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
constexpr BYTE DEFAULT_QUALITY = 0;
constexpr BYTE ANTIALIASED_QUALITY = 4;
constexpr BYTE CLEARTYPE_QUALITY = 5;
constexpr BYTE DEFAULT_PITCH = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;
constexpr BYTE FF_ROMAN = 0x10;
constexpr BYTE FF_SWISS = 0x20;
constexpr BYTE FF_MODERN = 0x30;
constexpr BYTE FF_SCRIPT = 0x40;
constexpr BYTE FF_DECORATIVE = 0x50;
// Set in tmPitchAndFamily for a font that is NOT of fixed pitch (the framework's odd sense).
constexpr BYTE TMPF_FIXED_PITCH = 0x01;
constexpr BYTE TMPF_VECTOR = 0x02;
constexpr BYTE TMPF_TRUETYPE = 0x04;

// ExtTextOut options.
constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;

// Background modes.
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;

// Pen styles.
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;
constexpr int PS_STYLE_MASK = 0x0F;

// Stock objects.
constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int HOLLOW_BRUSH = NULL_BRUSH;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;

// Raster operations of BitBlt and PatBlt.
constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr DWORD SRCPAINT = 0x00EE0086;
constexpr DWORD SRCAND = 0x008800C6;
constexpr DWORD SRCINVERT = 0x00660046;
constexpr DWORD NOTSRCCOPY = 0x00330008;
constexpr DWORD DSTINVERT = 0x00550009;
constexpr DWORD PATCOPY = 0x00F00021;
constexpr DWORD BLACKNESS = 0x00000042;
constexpr DWORD WHITENESS = 0x00FF0062;

// DrawText formats.
constexpr UINT DT_TOP = 0x00000000;
constexpr UINT DT_LEFT = 0x00000000;
constexpr UINT DT_CENTER = 0x00000001;
constexpr UINT DT_RIGHT = 0x00000002;
constexpr UINT DT_VCENTER = 0x00000004;
constexpr UINT DT_BOTTOM = 0x00000008;
constexpr UINT DT_WORDBREAK = 0x00000010;
constexpr UINT DT_SINGLELINE = 0x00000020;
constexpr UINT DT_EXPANDTABS = 0x00000040;
constexpr UINT DT_NOCLIP = 0x00000100;
constexpr UINT DT_CALCRECT = 0x00000400;
constexpr UINT DT_NOPREFIX = 0x00000800;
constexpr UINT DT_END_ELLIPSIS = 0x00008000;
constexpr UINT DT_HIDEPREFIX = 0x00100000;
constexpr UINT DT_PREFIXONLY = 0x00200000;

// Region results of clipping calls.
constexpr int ERROR = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;
