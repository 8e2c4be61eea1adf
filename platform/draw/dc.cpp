// CDC: selection of objects, colours and modes, clipping, saved states, fills, pixels and
// block copies.
#include "platform/draw/dc.h"

#include "platform/draw/detail/font_face.h"

#include <algorithm>
#include <cstring>

using talvor::platform::ColorFromPixel;
using talvor::platform::PixelFromColor;

namespace {

// Coordinates from callers may be anything; device arithmetic is done in 64 bits and clamped,
// so an origin plus a far coordinate never overflows.
LONG Clamp64(long long v) {
    return static_cast<LONG>(std::clamp<long long>(v, -(1ll << 30), 1ll << 30));
}

} // namespace

CDC::CDC() {
    Reset();
}

CDC::~CDC() = default;

void CDC::Reset() {
    m_defaultBitmap.CreateFilledBitmap(1, 1, RGB(0, 0, 0));
    m_defaultPen.CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
    m_defaultBrush.CreateSolidBrush(RGB(255, 255, 255));
    m_state = State{};
    m_saved.clear();
    m_state.bitmap = &m_defaultBitmap;
    m_state.raster = m_defaultBitmap.Raster();
    m_state.pen = &m_defaultPen;
    m_state.brush = &m_defaultBrush;
    m_state.font = &m_defaultFont;
}

BOOL CDC::CreateCompatibleDC(CDC*) {
    Reset();
    m_hDC = this;
    return TRUE;
}

BOOL CDC::DeleteDC() {
    if (!m_hDC)
        return FALSE;
    Reset();
    m_hDC = nullptr;
    return TRUE;
}

CBitmap* CDC::SelectObject(CBitmap* pBitmap) {
    if (!pBitmap || !pBitmap->Raster())
        return nullptr;
    CBitmap* previous = m_state.bitmap;
    m_state.bitmap = pBitmap;
    m_state.raster = pBitmap->Raster();
    return previous;
}

CFont* CDC::SelectObject(CFont* pFont) {
    if (!pFont || (!pFont->GetSafeHandle() && pFont != &m_defaultFont))
        return nullptr;
    CFont* previous = m_state.font;
    m_state.font = pFont;
    m_state.face = pFont->Face();
    m_state.logFont = LOGFONT{};
    pFont->GetLogFont(&m_state.logFont);
    return previous;
}

CPen* CDC::SelectObject(CPen* pPen) {
    if (!pPen || !pPen->GetSafeHandle())
        return nullptr;
    CPen* previous = m_state.pen;
    m_state.pen = pPen;
    m_state.penState = PenState{pPen->GetStyle(), pPen->GetWidth(), pPen->GetColor()};
    return previous;
}

CBrush* CDC::SelectObject(CBrush* pBrush) {
    if (!pBrush || !pBrush->GetSafeHandle())
        return nullptr;
    CBrush* previous = m_state.brush;
    m_state.brush = pBrush;
    m_state.brushState = BrushState{pBrush->IsHollow(), pBrush->GetColor()};
    return previous;
}

CGdiObject* CDC::SelectStockObject(int index) {
    CGdiObject* stock = talvor::platform::StockObject(index);
    if (auto* pen = dynamic_cast<CPen*>(stock))
        return SelectObject(pen);
    if (auto* brush = dynamic_cast<CBrush*>(stock))
        return SelectObject(brush);
    return nullptr;
}

int CDC::GetDeviceCaps(int index) const {
    switch (index) {
    case LOGPIXELSX:
    case LOGPIXELSY:
        return 96;
    case HORZRES:
        return m_state.raster ? m_state.raster->width : 0;
    case VERTRES:
        return m_state.raster ? m_state.raster->height : 0;
    case BITSPIXEL:
        return 32;
    case PLANES:
        return 1;
    default:
        return 0;
    }
}

CPoint CDC::SetViewportOrg(int x, int y) {
    const CPoint previous = m_state.origin;
    m_state.origin = CPoint(Clamp64(x), Clamp64(y));
    return previous;
}

CPoint CDC::OffsetViewportOrg(int dx, int dy) {
    const CPoint previous = m_state.origin;
    m_state.origin = CPoint(Clamp64(static_cast<long long>(previous.x) + dx),
                            Clamp64(static_cast<long long>(previous.y) + dy));
    return previous;
}

CRect CDC::ToDevice(const RECT& r) const {
    return CRect(Clamp64(static_cast<long long>(r.left) + m_state.origin.x),
                 Clamp64(static_cast<long long>(r.top) + m_state.origin.y),
                 Clamp64(static_cast<long long>(r.right) + m_state.origin.x),
                 Clamp64(static_cast<long long>(r.bottom) + m_state.origin.y));
}

CRect CDC::DeviceBounds() const {
    if (!m_state.raster)
        return CRect();
    CRect bounds(0, 0, m_state.raster->width, m_state.raster->height);
    if (m_state.clipped && !bounds.IntersectRect(&bounds, &m_state.clip))
        return CRect();
    return bounds;
}

int CDC::SelectClipRgn(CRgn* pRgn) {
    if (!pRgn) {
        m_state.clipped = false;
        return SIMPLEREGION;
    }
    CRect box;
    if (pRgn->GetRgnBox(&box) == ERROR)
        return ERROR;
    m_state.clipped = true;
    m_state.clip = box;
    return DeviceBounds().IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

int CDC::IntersectClipRect(int left, int top, int right, int bottom) {
    CRect wanted = ToDevice(CRect(left, top, right, bottom));
    wanted.NormalizeRect();
    if (m_state.clipped)
        m_state.clip.IntersectRect(&m_state.clip, &wanted);
    else
        m_state.clip = wanted;
    m_state.clipped = true;
    return DeviceBounds().IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

int CDC::IntersectClipRect(LPCRECT rect) {
    return rect ? IntersectClipRect(rect->left, rect->top, rect->right, rect->bottom) : ERROR;
}

int CDC::GetClipBox(LPRECT rect) const {
    CRect box = DeviceBounds();
    if (!box.IsRectEmpty())
        box.OffsetRect(-m_state.origin.x, -m_state.origin.y);
    if (rect)
        *rect = box;
    return box.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

COLORREF CDC::SetTextColor(COLORREF color) {
    const COLORREF previous = m_state.textColor;
    m_state.textColor = color & 0x00FFFFFFu;
    return previous;
}

COLORREF CDC::SetBkColor(COLORREF color) {
    const COLORREF previous = m_state.bkColor;
    m_state.bkColor = color & 0x00FFFFFFu;
    return previous;
}

int CDC::SetBkMode(int mode) {
    if (mode != TRANSPARENT && mode != OPAQUE)
        return 0;
    const int previous = m_state.bkMode;
    m_state.bkMode = mode;
    return previous;
}

int CDC::SaveDC() {
    m_saved.push_back(m_state);
    return static_cast<int>(m_saved.size());
}

BOOL CDC::RestoreDC(int saved) {
    const int count = static_cast<int>(m_saved.size());
    const int index = saved < 0 ? count + saved : saved - 1;
    if (saved == 0 || index < 0 || index >= count)
        return FALSE;
    m_state = m_saved[index];
    m_saved.resize(index);
    return TRUE;
}

void CDC::FillDevice(const CRect& deviceRect, COLORREF color) {
    CRect r;
    const CRect bounds = DeviceBounds();
    if (!r.IntersectRect(&deviceRect, &bounds))
        return;
    const std::uint32_t pixel = PixelFromColor(color);
    talvor::platform::Raster& raster = *m_state.raster;
    for (int y = r.top; y < r.bottom; ++y) {
        std::uint32_t* row = raster.pixels.data() + static_cast<std::size_t>(y) * raster.width;
        std::fill(row + r.left, row + r.right, pixel);
    }
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF color) {
    SetBkColor(color);
    if (rect) {
        CRect r = ToDevice(*rect);
        r.NormalizeRect();
        FillDevice(r, color);
    }
}

void CDC::FillSolidRect(int x, int y, int cx, int cy, COLORREF color) {
    const CRect r(x, y, Clamp64(static_cast<long long>(x) + cx),
                  Clamp64(static_cast<long long>(y) + cy));
    FillSolidRect(&r, color);
}

void CDC::FillRect(LPCRECT rect, CBrush* pBrush) {
    if (!rect || !pBrush || !pBrush->GetSafeHandle() || pBrush->IsHollow())
        return;
    FillDevice(ToDevice(*rect), pBrush->GetColor());
}

void CDC::Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight) {
    if (!rect)
        return;
    const CRect r(*rect);
    Draw3dRect(r.left, r.top, r.Width(), r.Height(), topLeft, bottomRight);
}

void CDC::Draw3dRect(int x, int y, int cx, int cy, COLORREF topLeft, COLORREF bottomRight) {
    const COLORREF bk = m_state.bkColor; // these fills are not meant to change it
    FillSolidRect(x, y, cx - 1, 1, topLeft);
    FillSolidRect(x, y, 1, cy - 1, topLeft);
    FillSolidRect(x + cx, y, -1, cy, bottomRight);
    FillSolidRect(x, y + cy, cx, -1, bottomRight);
    SetBkColor(bk);
}

COLORREF CDC::SetPixel(int x, int y, COLORREF color) {
    const long long dx = static_cast<long long>(x) + m_state.origin.x;
    const long long dy = static_cast<long long>(y) + m_state.origin.y;
    const CRect bounds = DeviceBounds();
    if (dx < bounds.left || dx >= bounds.right || dy < bounds.top || dy >= bounds.bottom)
        return CLR_INVALID;
    m_state.raster->pixels[static_cast<std::size_t>(dy) * m_state.raster->width + dx] =
        PixelFromColor(color);
    return color & 0x00FFFFFFu;
}

COLORREF CDC::GetPixel(int x, int y) const {
    const long long dx = static_cast<long long>(x) + m_state.origin.x;
    const long long dy = static_cast<long long>(y) + m_state.origin.y;
    const CRect bounds = DeviceBounds();
    if (dx < bounds.left || dx >= bounds.right || dy < bounds.top || dy >= bounds.bottom)
        return CLR_INVALID;
    return ColorFromPixel(
        m_state.raster->pixels[static_cast<std::size_t>(dy) * m_state.raster->width + dx]);
}

namespace {

bool NeedsSource(DWORD rop) {
    return rop == SRCCOPY || rop == SRCPAINT || rop == SRCAND || rop == SRCINVERT ||
           rop == NOTSRCCOPY;
}

std::uint32_t Apply(DWORD rop, std::uint32_t dst, std::uint32_t src, std::uint32_t pattern) {
    switch (rop) {
    case SRCCOPY:
        return src;
    case SRCPAINT:
        return dst | src;
    case SRCAND:
        return dst & src;
    case SRCINVERT:
        return dst ^ src;
    case NOTSRCCOPY:
        return ~src & 0x00FFFFFFu;
    case DSTINVERT:
        return ~dst & 0x00FFFFFFu;
    case PATCOPY:
        return pattern;
    case BLACKNESS:
        return 0;
    default: // WHITENESS
        return 0x00FFFFFFu;
    }
}

} // namespace

BOOL CDC::PatBlt(int x, int y, int width, int height, DWORD rop) {
    if (NeedsSource(rop))
        return FALSE;
    return BitBlt(x, y, width, height, nullptr, 0, 0, rop);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* pSrcDC, int xSrc, int ySrc, DWORD rop) {
    const bool needsSource = NeedsSource(rop);
    if (!needsSource && rop != DSTINVERT && rop != PATCOPY && rop != BLACKNESS && rop != WHITENESS)
        return FALSE;
    if (needsSource && (!pSrcDC || !pSrcDC->m_state.raster))
        return FALSE;
    if (width <= 0 || height <= 0 || !m_state.raster)
        return TRUE;
    if (rop == PATCOPY && m_state.brushState.hollow)
        return TRUE;

    CRect dst = ToDevice(CRect(x, y, Clamp64(static_cast<long long>(x) + width),
                               Clamp64(static_cast<long long>(y) + height)));
    // Source offset: device source = device destination + shift.
    long long shiftX = 0, shiftY = 0;
    if (needsSource) {
        shiftX = static_cast<long long>(xSrc) + pSrcDC->m_state.origin.x - dst.left;
        shiftY = static_cast<long long>(ySrc) + pSrcDC->m_state.origin.y - dst.top;
        const talvor::platform::Raster& source = *pSrcDC->m_state.raster;
        const CRect sourceInDst(Clamp64(-shiftX), Clamp64(-shiftY), Clamp64(source.width - shiftX),
                                Clamp64(source.height - shiftY));
        if (!dst.IntersectRect(&dst, &sourceInDst))
            return TRUE;
    }
    const CRect bounds = DeviceBounds();
    if (!dst.IntersectRect(&dst, &bounds))
        return TRUE;

    talvor::platform::Raster& target = *m_state.raster;
    const std::uint32_t pattern = PixelFromColor(m_state.brushState.color);
    std::vector<std::uint32_t> copy; // the source block when it overlaps the target
    const std::uint32_t* src = nullptr;
    std::size_t srcStride = 0;
    if (needsSource) {
        const talvor::platform::Raster& source = *pSrcDC->m_state.raster;
        const std::size_t first = static_cast<std::size_t>(dst.top + shiftY) * source.width +
                                  static_cast<std::size_t>(dst.left + shiftX);
        src = source.pixels.data() + first;
        srcStride = source.width;
        if (&source == &target) {
            copy.resize(static_cast<std::size_t>(dst.Width()) * dst.Height());
            for (int row = 0; row < dst.Height(); ++row)
                std::memcpy(&copy[static_cast<std::size_t>(row) * dst.Width()],
                            src + row * srcStride, sizeof(std::uint32_t) * dst.Width());
            src = copy.data();
            srcStride = dst.Width();
        }
    }
    for (int row = 0; row < dst.Height(); ++row) {
        std::uint32_t* out = target.pixels.data() +
                             static_cast<std::size_t>(dst.top + row) * target.width + dst.left;
        if (rop == SRCCOPY) {
            std::memcpy(out, src + row * srcStride, sizeof(std::uint32_t) * dst.Width());
            continue;
        }
        for (int col = 0; col < dst.Width(); ++col)
            out[col] = Apply(rop, out[col], src ? src[row * srcStride + col] : 0, pattern);
    }
    return TRUE;
}

BOOL GetTextExtentPoint32(HDC dc, LPCSTR text, int count, SIZE* size) {
    return dc ? dc->GetTextExtentPoint32(text, count, size) : FALSE;
}
