// Drives a device context with drawing operations whose coordinates, sizes, styles, flags and
// texts all come from the input. Besides staying inside the raster (the sanitizers watch), every
// operation must leave each pixel outside the clip rectangle as it was.
#include "platform/draw/dc.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int Width = 48;
constexpr int Height = 32;

int Coordinate(FuzzedDataProvider& in) {
    // Mostly near the raster, sometimes anywhere in the 32-bit range.
    return in.ConsumeBool() ? in.ConsumeIntegralInRange<int>(-80, 80) : in.ConsumeIntegral<int>();
}

COLORREF Color(FuzzedDataProvider& in) {
    return in.ConsumeIntegral<std::uint32_t>();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    CBitmap bitmap, other;
    bitmap.CreateFilledBitmap(Width, Height, RGB(255, 255, 255));
    other.CreateFilledBitmap(17, 9, RGB(1, 2, 3));
    CDC dc, source;
    dc.CreateCompatibleDC(nullptr);
    source.CreateCompatibleDC(nullptr);
    dc.SelectObject(&bitmap);
    source.SelectObject(&other);
    CFont font;
    LOGFONT lf{};
    lf.lfHeight = in.ConsumeIntegralInRange<int>(-40, 40);
    lf.lfWeight = in.ConsumeBool() ? FW_BOLD : FW_NORMAL;
    lf.lfItalic = in.ConsumeBool();
    lf.lfUnderline = in.ConsumeBool();
    lf.lfStrikeOut = in.ConsumeBool();
    font.CreateFontIndirect(&lf);
    dc.SelectObject(&font);
    if (in.ConsumeBool())
        dc.IntersectClipRect(Coordinate(in), Coordinate(in), Coordinate(in), Coordinate(in));

    std::vector<std::uint32_t> before;
    for (int step = 0; step < 32 && in.remaining_bytes() > 0; ++step) {
        CRect clip;
        dc.GetClipBox(&clip);
        clip.OffsetRect(dc.GetViewportOrg().x, dc.GetViewportOrg().y);
        before.assign(bitmap.GetPixels(), bitmap.GetPixels() + Width * Height);
        const CRect r(Coordinate(in), Coordinate(in), Coordinate(in), Coordinate(in));
        const std::string text = in.ConsumeRandomLengthString(40);
        switch (in.ConsumeIntegralInRange<int>(0, 12)) {
        case 0:
            dc.FillSolidRect(r, Color(in));
            break;
        case 1:
            dc.SetPixel(r.left, r.top, Color(in));
            break;
        case 2: {
            CPen pen(in.ConsumeIntegralInRange<int>(0, 6), in.ConsumeIntegralInRange<int>(0, 9),
                     Color(in));
            CPen* old = dc.SelectObject(&pen);
            dc.SetBkMode(in.ConsumeBool() ? OPAQUE : TRANSPARENT);
            dc.MoveTo(r.left, r.top);
            dc.LineTo(r.right, r.bottom);
            dc.Rectangle(r.left, r.bottom, r.right, r.top);
            dc.SelectObject(old);
            break;
        }
        case 3:
            dc.TextOut(r.left, r.top, text.c_str(), static_cast<int>(text.size()));
            break;
        case 4: {
            std::vector<int> widths(text.size());
            for (int& w : widths)
                w = in.ConsumeIntegralInRange<int>(-100, 100);
            dc.ExtTextOut(r.left, r.top, in.ConsumeIntegral<UINT>(), &r, text.c_str(),
                          static_cast<UINT>(text.size()),
                          in.ConsumeBool() ? widths.data() : nullptr);
            break;
        }
        case 5: {
            CRect box = r;
            dc.DrawText(text.c_str(), in.ConsumeBool() ? -1 : static_cast<int>(text.size()), &box,
                        in.ConsumeIntegral<UINT>());
            break;
        }
        case 6:
            dc.BitBlt(r.left, r.top, r.right, r.bottom, in.ConsumeBool() ? &dc : &source,
                      Coordinate(in), Coordinate(in),
                      in.PickValueInArray<DWORD>({SRCCOPY, SRCPAINT, SRCAND, SRCINVERT, NOTSRCCOPY,
                                                  DSTINVERT, PATCOPY, BLACKNESS, WHITENESS}));
            break;
        case 7:
            dc.SetViewportOrg(Coordinate(in), Coordinate(in));
            break;
        case 8:
            dc.Draw3dRect(&r, Color(in), Color(in));
            break;
        case 9:
            dc.SetTextColor(Color(in));
            dc.SetBkColor(Color(in));
            dc.SetBkMode(in.ConsumeBool() ? OPAQUE : TRANSPARENT);
            break;
        case 10:
            dc.IntersectClipRect(&r);
            break;
        case 11:
            source.SetViewportOrg(Coordinate(in), Coordinate(in));
            break;
        default: {
            CBrush brush(Color(in));
            dc.SelectObject(&brush);
            dc.PatBlt(r.left, r.top, r.right, r.bottom, PATCOPY);
            dc.FillRect(&r, &brush);
            dc.SelectStockObject(WHITE_BRUSH);
            break;
        }
        }
        for (int y = 0; y < Height; ++y)
            for (int x = 0; x < Width; ++x)
                if (!clip.PtInRect(CPoint(x, y)) &&
                    bitmap.GetPixels()[y * Width + x] !=
                        before[static_cast<std::size_t>(y) * Width + x])
                    std::abort(); // drawn outside the clip rectangle
    }
    return 0;
}
