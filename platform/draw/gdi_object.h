// The framework's drawing objects that carry only a few values: the common base CGdiObject,
// pens, brushes and rectangular clip regions. A device context copies what it needs when one is
// selected, so an object deleted while selected leaves the context drawing as before.
#pragma once

#include "platform/draw/gdi_types.h"

class CGdiObject {
public:
    CGdiObject() = default;
    virtual ~CGdiObject() = default;
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    // Non-null while the object holds something (the framework's handle test).
    const void* GetSafeHandle() const { return m_created ? this : nullptr; }
    virtual BOOL DeleteObject() {
        const BOOL was = m_created;
        m_created = false;
        return was;
    }

protected:
    bool m_created = false;
};

class CPen : public CGdiObject {
public:
    CPen() = default;
    CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
    // Any style outside PS_SOLID..PS_INSIDEFRAME gives FALSE and leaves the pen as it was.
    // A width below 1 draws one pixel wide, as the framework's cosmetic pens do.
    BOOL CreatePen(int style, int width, COLORREF color);
    int GetStyle() const { return m_style; }
    int GetWidth() const { return m_width; }
    COLORREF GetColor() const { return m_color; }

private:
    int m_style = PS_SOLID;
    int m_width = 1;
    COLORREF m_color = RGB(0, 0, 0);
};

class CBrush : public CGdiObject {
public:
    CBrush() = default;
    explicit CBrush(COLORREF color) { CreateSolidBrush(color); }
    BOOL CreateSolidBrush(COLORREF color);
    // A brush that paints nothing (the stock NULL_BRUSH).
    BOOL CreateHollowBrush();
    bool IsHollow() const { return m_hollow; }
    COLORREF GetColor() const { return m_color; }

private:
    COLORREF m_color = RGB(255, 255, 255);
    bool m_hollow = false;
};

// A clip region of one rectangle, in device coordinates.
class CRgn : public CGdiObject {
public:
    BOOL CreateRectRgn(int left, int top, int right, int bottom);
    BOOL CreateRectRgnIndirect(LPCRECT rect) {
        return rect ? CreateRectRgn(rect->left, rect->top, rect->right, rect->bottom) : FALSE;
    }
    int GetRgnBox(LPRECT rect) const;

private:
    CRect m_box;
};

namespace talvor::platform {
// The process-wide stock objects of the framework (GetStockObject): WHITE_BRUSH to NULL_PEN;
// null for any other index.
CGdiObject* StockObject(int index);
} // namespace talvor::platform
