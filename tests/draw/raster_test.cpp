// Fills, pixels, clipping, block copies and saved states of a memory device context.
#include "platform/draw/dc.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

constexpr COLORREF White = RGB(255, 255, 255);
constexpr COLORREF Red = RGB(255, 0, 0);
constexpr COLORREF Blue = RGB(0, 0, 255);
constexpr COLORREF Green = RGB(0, 160, 0);

// A memory context on a bitmap of the given size filled white.
struct Canvas {
    CBitmap bitmap;
    CDC dc;
    Canvas(int width, int height) {
        dc.CreateCompatibleDC(nullptr);
        bitmap.CreateFilledBitmap(width, height, White);
        dc.SelectObject(&bitmap);
    }
    int Count(COLORREF color) const {
        int n = 0;
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            for (int x = 0; x < bitmap.GetWidth(); ++x)
                n += bitmap.GetPixelColor(x, y) == color;
        return n;
    }
};

} // namespace

TEST(CBitmap, PixelLayoutIsRedInTheHighByte) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateFilledBitmap(2, 1, RGB(0x12, 0x34, 0x56)));
    EXPECT_EQ(bitmap.GetPixels()[0], 0x00123456u);
    EXPECT_EQ(bitmap.GetPixelColor(1, 0), RGB(0x12, 0x34, 0x56));
    EXPECT_EQ(bitmap.GetPixelColor(2, 0), CLR_INVALID);
    BITMAP info{};
    ASSERT_NE(bitmap.GetBitmap(&info), 0);
    EXPECT_EQ(info.bmWidth, 2);
    EXPECT_EQ(info.bmBitsPixel, 32);
    EXPECT_EQ(info.bmWidthBytes, 8);
}

TEST(CBitmap, RejectsSizesOutsideTheLimitsAndKeepsWhatItHad) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(nullptr, 3, 2));
    EXPECT_EQ(bitmap.GetPixelColor(2, 1), RGB(0, 0, 0)); // compatible bitmaps start black
    for (auto [w, h] : {std::pair{0, 5}, {5, -1}, {CBitmap::MaxSide + 1, 1}, {30000, 30000}}) {
        SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
        EXPECT_FALSE(bitmap.CreateCompatibleBitmap(nullptr, w, h));
        EXPECT_EQ(bitmap.GetWidth(), 3);
    }
}

TEST(CDC, FilledRectangleCoversExactlyItsHalfOpenArea) {
    Canvas c(20, 20);
    c.dc.FillSolidRect(CRect(3, 4, 9, 12), Red);
    EXPECT_EQ(c.dc.GetPixel(3, 4), Red);
    EXPECT_EQ(c.dc.GetPixel(8, 11), Red);
    EXPECT_EQ(c.dc.GetPixel(2, 4), White);
    EXPECT_EQ(c.dc.GetPixel(9, 4), White);
    EXPECT_EQ(c.dc.GetPixel(3, 3), White);
    EXPECT_EQ(c.dc.GetPixel(3, 12), White);
    EXPECT_EQ(c.Count(Red), 6 * 8);
    // The framework's fill also leaves its colour as the background colour.
    EXPECT_EQ(c.dc.GetBkColor(), Red);

    c.dc.FillSolidRect(15, 15, -3, -2, Blue); // negative extents count backwards
    EXPECT_EQ(c.Count(Blue), 6);
    EXPECT_EQ(c.dc.GetPixel(12, 13), Blue);
    EXPECT_EQ(c.dc.GetPixel(15, 15), White);
}

TEST(CDC, NothingIsWrittenOutsideTheRasterWhateverTheCoordinates) {
    Canvas c(8, 8);
    c.dc.FillSolidRect(CRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), Red);
    EXPECT_EQ(c.Count(Red), 64);
    c.dc.SetViewportOrg(INT_MAX, INT_MIN);
    c.dc.FillSolidRect(CRect(INT_MIN, INT_MAX - 5, INT_MAX, INT_MAX), Blue);
    EXPECT_EQ(c.dc.SetPixel(INT_MAX, INT_MAX, Blue), CLR_INVALID);
    c.dc.MoveTo(INT_MIN, INT_MIN);
    c.dc.LineTo(INT_MAX, INT_MAX);
    c.dc.TextOut(INT_MAX - 3, INT_MIN, "far away", 8);
    EXPECT_EQ(c.Count(Red), 64);
    EXPECT_EQ(c.dc.GetPixel(-1, 0), CLR_INVALID);

    CDC bare; // no bitmap selected: a 1x1 raster, never more
    bare.CreateCompatibleDC(nullptr);
    bare.FillSolidRect(CRect(-5, -5, 50, 50), Red);
    EXPECT_EQ(bare.GetPixel(0, 0), Red);
    EXPECT_EQ(bare.GetPixel(1, 0), CLR_INVALID);
}

TEST(CDC, ClipRectanglesIntersectAndSavedStatesComeBack) {
    Canvas c(30, 30);
    c.dc.IntersectClipRect(5, 5, 20, 20);
    c.dc.IntersectClipRect(CRect(10, 0, 30, 12));
    CRect box;
    EXPECT_EQ(c.dc.GetClipBox(&box), SIMPLEREGION);
    EXPECT_EQ(box, CRect(10, 5, 20, 12));

    const int saved = c.dc.SaveDC();
    c.dc.SetViewportOrg(2, 3); // clip stays where it is on the device
    c.dc.SetTextColor(Blue);
    c.dc.FillSolidRect(CRect(0, 0, 30, 30), Red);
    EXPECT_EQ(c.Count(Red), 10 * 7);
    EXPECT_EQ(c.bitmap.GetPixelColor(10, 5), Red);
    EXPECT_EQ(c.bitmap.GetPixelColor(9, 5), White);
    EXPECT_EQ(c.bitmap.GetPixelColor(19, 11), Red);
    EXPECT_EQ(c.bitmap.GetPixelColor(20, 11), White);
    EXPECT_EQ(c.dc.GetPixel(0, 0), CLR_INVALID); // clipped away: none to read
    EXPECT_EQ(c.dc.GetPixel(8, 2), Red);         // device (10, 5)

    ASSERT_TRUE(c.dc.RestoreDC(saved));
    EXPECT_EQ(c.dc.GetViewportOrg(), CPoint(0, 0));
    EXPECT_EQ(c.dc.GetTextColor(), RGB(0, 0, 0));
    EXPECT_FALSE(c.dc.RestoreDC(-1)); // nothing left to restore

    CRgn region;
    region.CreateRectRgn(0, 25, 30, 40);
    EXPECT_EQ(c.dc.SelectClipRgn(&region), SIMPLEREGION); // replaces, not intersects
    c.dc.FillSolidRect(CRect(0, 0, 30, 30), Blue);
    EXPECT_EQ(c.Count(Blue), 30 * 5);
    c.dc.SelectClipRgn(nullptr);
    c.dc.FillSolidRect(CRect(0, 0, 1, 1), Green);
    EXPECT_EQ(c.dc.GetPixel(0, 0), Green);
    c.dc.IntersectClipRect(40, 40, 50, 50);
    EXPECT_EQ(c.dc.GetClipBox(&box), NULLREGION);
}

TEST(CDC, RestoreDCByNumberDropsTheLaterStates) {
    Canvas c(4, 4);
    const int first = c.dc.SaveDC();
    c.dc.SetBkMode(TRANSPARENT);
    c.dc.SaveDC();
    c.dc.SetBkColor(Red);
    c.dc.SaveDC();
    EXPECT_TRUE(c.dc.RestoreDC(first));
    EXPECT_EQ(c.dc.GetBkMode(), OPAQUE);
    EXPECT_EQ(c.dc.GetBkColor(), White);
    EXPECT_FALSE(c.dc.RestoreDC(2));
    EXPECT_FALSE(c.dc.RestoreDC(0));
}

TEST(CDC, BitBltCopiesWithOffsetsAndClipsToBothRasters) {
    Canvas source(10, 10);
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x)
            source.dc.SetPixel(x, y, RGB(x * 20, y * 20, 7));
    Canvas target(12, 12);
    ASSERT_TRUE(target.dc.BitBlt(1, 2, 5, 4, &source.dc, 3, 4, SRCCOPY));
    EXPECT_EQ(target.dc.GetPixel(1, 2), RGB(60, 80, 7));
    EXPECT_EQ(target.dc.GetPixel(5, 5), RGB(140, 140, 7));
    EXPECT_EQ(target.dc.GetPixel(0, 2), White);
    EXPECT_EQ(target.dc.GetPixel(6, 2), White);
    EXPECT_EQ(target.dc.GetPixel(1, 6), White);
    EXPECT_EQ(target.Count(White), 144 - 20);

    // Source partly outside its raster: only the part that exists is copied.
    Canvas partial(12, 12);
    partial.dc.BitBlt(0, 0, 12, 12, &source.dc, -2, 7, SRCCOPY);
    EXPECT_EQ(partial.dc.GetPixel(2, 0), RGB(0, 140, 7));
    EXPECT_EQ(partial.dc.GetPixel(1, 0), White);
    EXPECT_EQ(partial.dc.GetPixel(2, 3), White);
    EXPECT_EQ(partial.Count(White), 144 - 10 * 3);

    // Origins of both contexts count.
    Canvas shifted(12, 12);
    shifted.dc.SetViewportOrg(4, 4);
    source.dc.SetViewportOrg(-1, -1);
    shifted.dc.BitBlt(0, 0, 1, 1, &source.dc, 3, 3, SRCCOPY);
    EXPECT_EQ(shifted.bitmap.GetPixelColor(4, 4), RGB(40, 40, 7));

    EXPECT_FALSE(target.dc.BitBlt(0, 0, 1, 1, nullptr, 0, 0, SRCCOPY));
    EXPECT_FALSE(target.dc.BitBlt(0, 0, 1, 1, &source.dc, 0, 0, 0x12345678));
}

TEST(CDC, BitBltWithinOneRasterReadsTheSourceBeforeWriting) {
    Canvas c(8, 1);
    for (int x = 0; x < 8; ++x)
        c.dc.SetPixel(x, 0, RGB(x, 0, 0));
    c.dc.BitBlt(2, 0, 6, 1, &c.dc, 0, 0, SRCCOPY);
    for (int x = 2; x < 8; ++x)
        EXPECT_EQ(c.dc.GetPixel(x, 0), RGB(x - 2, 0, 0)) << x;
}

TEST(CDC, RasterOperationsCombinePixels) {
    Canvas source(1, 1), c(1, 1);
    source.dc.SetPixel(0, 0, RGB(0xF0, 0x0F, 0x55));
    struct Case {
        DWORD rop;
        COLORREF before, after;
    } const cases[] = {
        {SRCPAINT, RGB(0x0F, 0x00, 0xAA), RGB(0xFF, 0x0F, 0xFF)},
        {SRCAND, RGB(0xFF, 0x03, 0x0F), RGB(0xF0, 0x03, 0x05)},
        {SRCINVERT, RGB(0xFF, 0xFF, 0x55), RGB(0x0F, 0xF0, 0x00)},
        {NOTSRCCOPY, White, RGB(0x0F, 0xF0, 0xAA)},
        {DSTINVERT, RGB(1, 2, 3), RGB(254, 253, 252)},
        {BLACKNESS, Red, RGB(0, 0, 0)},
        {WHITENESS, Red, White},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.rop);
        c.dc.SetPixel(0, 0, k.before);
        EXPECT_TRUE(c.dc.BitBlt(0, 0, 1, 1, &source.dc, 0, 0, k.rop));
        EXPECT_EQ(c.dc.GetPixel(0, 0), k.after);
    }
    CBrush brush(Green);
    c.dc.SelectObject(&brush);
    EXPECT_TRUE(c.dc.PatBlt(0, 0, 1, 1, PATCOPY));
    EXPECT_EQ(c.dc.GetPixel(0, 0), Green);
    EXPECT_FALSE(c.dc.PatBlt(0, 0, 1, 1, SRCCOPY));
}

TEST(CDC, SelectObjectReturnsThePreviousAndSurvivesDeletedObjects) {
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CBitmap* original = dc.GetCurrentBitmap();
    ASSERT_NE(original, nullptr);
    {
        CBitmap bitmap;
        bitmap.CreateFilledBitmap(5, 5, White);
        EXPECT_EQ(dc.SelectObject(&bitmap), original);
        EXPECT_EQ(dc.GetDeviceCaps(HORZRES), 5);
        CBitmap never;
        EXPECT_EQ(dc.SelectObject(&never), nullptr); // not created: selection kept
        EXPECT_EQ(dc.GetCurrentBitmap(), &bitmap);
    }
    // The raster of a destroyed bitmap stays with the context until another is selected.
    dc.FillSolidRect(CRect(0, 0, 5, 5), Red);
    EXPECT_EQ(dc.GetPixel(4, 4), Red);
    dc.SelectObject(original);
    EXPECT_EQ(dc.GetDeviceCaps(HORZRES), 1);

    CPen pen(PS_SOLID, 1, Red);
    CPen* firstPen = dc.SelectObject(&pen);
    ASSERT_NE(firstPen, nullptr);
    EXPECT_EQ(dc.SelectObject(firstPen), &pen);
    EXPECT_NE(dc.SelectStockObject(NULL_BRUSH), nullptr);
    EXPECT_EQ(dc.SelectStockObject(99), nullptr);
}

TEST(CDC, Draw3dRectFramesWithTwoColours) {
    Canvas c(10, 10);
    c.dc.SetBkColor(Green);
    c.dc.Draw3dRect(CRect(1, 1, 6, 5), Red, Blue);
    EXPECT_EQ(c.dc.GetPixel(1, 1), Red);
    EXPECT_EQ(c.dc.GetPixel(4, 1), Red);
    EXPECT_EQ(c.dc.GetPixel(1, 3), Red);
    EXPECT_EQ(c.dc.GetPixel(5, 1), Blue); // top right corner belongs to the right edge
    EXPECT_EQ(c.dc.GetPixel(1, 4), Blue); // bottom left to the bottom edge
    EXPECT_EQ(c.dc.GetPixel(5, 4), Blue);
    EXPECT_EQ(c.dc.GetPixel(3, 3), White);
    EXPECT_EQ(c.dc.GetPixel(6, 1), White);
    EXPECT_EQ(c.Count(Red) + c.Count(Blue), 14);
    EXPECT_EQ(c.dc.GetBkColor(), Green);
}

TEST(CRect, IntersectionAndUnionOfEmptyRectangles) {
    CRect r;
    EXPECT_FALSE(r.IntersectRect(CRect(0, 0, 5, 5), CRect(5, 0, 9, 5))); // edges only touch
    EXPECT_TRUE(r.IsRectNull());
    EXPECT_TRUE(r.UnionRect(CRect(2, 2, 2, 9), CRect(1, 1, 3, 3))); // the empty one is ignored
    EXPECT_EQ(r, CRect(1, 1, 3, 3));
}
