// Pens, brushes, rectangular regions and the stock objects.
#include "platform/draw/gdi_object.h"

BOOL CPen::CreatePen(int style, int width, COLORREF color) {
    if (style < PS_SOLID || style > PS_INSIDEFRAME)
        return FALSE;
    m_style = style;
    m_width = width < 1 ? 1 : width;
    m_color = color & 0x00FFFFFFu;
    m_created = true;
    return TRUE;
}

BOOL CBrush::CreateSolidBrush(COLORREF color) {
    m_color = color & 0x00FFFFFFu;
    m_hollow = false;
    m_created = true;
    return TRUE;
}

BOOL CBrush::CreateHollowBrush() {
    m_hollow = true;
    m_created = true;
    return TRUE;
}

BOOL CRgn::CreateRectRgn(int left, int top, int right, int bottom) {
    m_box = CRect(left, top, right, bottom);
    m_box.NormalizeRect();
    m_created = true;
    return TRUE;
}

int CRgn::GetRgnBox(LPRECT rect) const {
    if (!m_created)
        return ERROR;
    if (rect)
        *rect = m_box;
    return m_box.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

namespace talvor::platform {

namespace {

struct StockObjects {
    CBrush brushes[NULL_BRUSH + 1];
    CPen pens[3];
    StockObjects() {
        brushes[WHITE_BRUSH].CreateSolidBrush(RGB(255, 255, 255));
        brushes[LTGRAY_BRUSH].CreateSolidBrush(RGB(192, 192, 192));
        brushes[GRAY_BRUSH].CreateSolidBrush(RGB(128, 128, 128));
        brushes[DKGRAY_BRUSH].CreateSolidBrush(RGB(64, 64, 64));
        brushes[BLACK_BRUSH].CreateSolidBrush(RGB(0, 0, 0));
        brushes[NULL_BRUSH].CreateHollowBrush();
        pens[0].CreatePen(PS_SOLID, 1, RGB(255, 255, 255));
        pens[1].CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
        pens[2].CreatePen(PS_NULL, 1, RGB(0, 0, 0));
    }
};

} // namespace

CGdiObject* StockObject(int index) {
    static StockObjects stock;
    if (index >= WHITE_BRUSH && index <= NULL_BRUSH)
        return &stock.brushes[index];
    if (index >= WHITE_PEN && index <= NULL_PEN)
        return &stock.pens[index - WHITE_PEN];
    return nullptr;
}

} // namespace talvor::platform
