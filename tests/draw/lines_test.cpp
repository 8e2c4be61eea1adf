// Lines and rectangles with pens: end points, styled patterns and their gaps, far coordinates.
#include "platform/draw/dc.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <string>

namespace {

constexpr COLORREF White = RGB(255, 255, 255);
constexpr COLORREF Red = RGB(255, 0, 0);
constexpr COLORREF Yellow = RGB(255, 255, 0);

struct Canvas {
    CBitmap bitmap;
    CDC dc;
    Canvas(int width, int height) {
        dc.CreateCompatibleDC(nullptr);
        bitmap.CreateFilledBitmap(width, height, White);
        dc.SelectObject(&bitmap);
    }
    // One row as text: '#' for the colour, '.' for white, '?' for anything else.
    std::string Row(int y, COLORREF ink, int from = 0, int to = -1) const {
        std::string out;
        for (int x = from; x < (to < 0 ? bitmap.GetWidth() : to); ++x) {
            const COLORREF c = bitmap.GetPixelColor(x, y);
            out += c == ink ? '#' : c == White ? '.' : '?';
        }
        return out;
    }
};

} // namespace

TEST(CDC, LineStopsBeforeItsEndPointWhichBecomesTheCurrentPosition) {
    Canvas c(12, 12);
    CPen pen(PS_SOLID, 1, Red);
    c.dc.SelectObject(&pen);
    c.dc.MoveTo(2, 3);
    c.dc.LineTo(8, 3);
    EXPECT_EQ(c.Row(3, Red), "..######....");
    EXPECT_EQ(c.dc.GetCurrentPosition(), CPoint(8, 3));
    c.dc.LineTo(8, 6); // on from the current position
    EXPECT_EQ(c.Row(3, Red), "..#######...");
    EXPECT_EQ(c.dc.GetPixel(8, 5), Red);
    EXPECT_EQ(c.dc.GetPixel(8, 6), White);

    c.dc.MoveTo(0, 11); // a diagonal touches one pixel per column
    c.dc.LineTo(4, 7);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(c.dc.GetPixel(i, 11 - i), Red) << i;
    EXPECT_EQ(c.dc.GetPixel(4, 7), White);
}

TEST(CDC, DottedPenAlternatesThreeOnThreeOffAndRunsOnAcrossLines) {
    Canvas c(24, 4);
    CPen dotted(PS_DOT, 1, Red);
    c.dc.SelectObject(&dotted);
    c.dc.SetBkMode(TRANSPARENT);
    c.dc.MoveTo(0, 0);
    c.dc.LineTo(20, 0);
    EXPECT_EQ(c.Row(0, Red), "###...###...###...##....");

    c.dc.MoveTo(0, 1); // the pattern goes on from where the last line stopped
    c.dc.LineTo(4, 1);
    c.dc.LineTo(11, 1);
    EXPECT_EQ(c.Row(1, Red), "###...###...............");

    c.dc.SetBkMode(OPAQUE); // gaps take the background colour
    c.dc.SetBkColor(Yellow);
    c.dc.MoveTo(0, 2);
    c.dc.LineTo(8, 2);
    EXPECT_EQ(c.Row(2, Red, 0, 9), "###???##.");
    EXPECT_EQ(c.dc.GetPixel(3, 2), Yellow);
}

TEST(CDC, RectangleOutlinesWithThePenAndFillsWithTheBrush) {
    Canvas c(10, 8);
    CPen pen(PS_SOLID, 1, Red);
    CBrush brush(Yellow);
    c.dc.SelectObject(&pen);
    c.dc.SelectObject(&brush);
    c.dc.Rectangle(1, 1, 7, 6);
    EXPECT_EQ(c.Row(0, Red), "..........");
    EXPECT_EQ(c.Row(1, Red), ".######...");
    EXPECT_EQ(c.Row(2, Red), ".#????#...");
    EXPECT_EQ(c.dc.GetPixel(3, 3), Yellow);
    EXPECT_EQ(c.Row(5, Red), ".######...");
    EXPECT_EQ(c.Row(6, Red), "..........");

    Canvas hollow(10, 8);
    hollow.dc.SelectStockObject(NULL_BRUSH);
    hollow.dc.SelectObject(&pen);
    hollow.dc.Rectangle(CRect(7, 6, 1, 1)); // corners in any order
    EXPECT_EQ(hollow.Row(3, Red), ".#....#...");

    Canvas noPen(10, 8);
    noPen.dc.SelectStockObject(NULL_PEN);
    noPen.dc.SelectObject(&brush);
    noPen.dc.Rectangle(1, 1, 7, 6); // without a pen the fill stops one short
    EXPECT_EQ(noPen.dc.GetPixel(5, 4), Yellow);
    EXPECT_EQ(noPen.dc.GetPixel(6, 4), White);
    EXPECT_EQ(noPen.dc.GetPixel(5, 5), White);
}

TEST(CDC, WidePenCoversItsWidthAroundTheLine) {
    Canvas c(10, 10);
    CPen wide(PS_SOLID, 3, Red);
    c.dc.SelectObject(&wide);
    c.dc.MoveTo(2, 5);
    c.dc.LineTo(7, 5);
    EXPECT_EQ(c.Row(3, Red), "..........");
    EXPECT_EQ(c.Row(4, Red), ".#######..");
    EXPECT_EQ(c.Row(5, Red), ".#######..");
    EXPECT_EQ(c.Row(6, Red), ".#######..");
    EXPECT_EQ(c.Row(7, Red), "..........");
}

TEST(CDC, FarLinesDrawOnlyTheirVisiblePartAndReturnAtOnce) {
    Canvas c(16, 16);
    CPen pen(PS_SOLID, 1, Red);
    c.dc.SelectObject(&pen);
    const auto start = std::chrono::steady_clock::now();
    c.dc.MoveTo(INT_MIN, 8);
    c.dc.LineTo(INT_MAX, 8);
    c.dc.MoveTo(-2000000000, -2000000000);
    c.dc.LineTo(2000000000, 2000000000);
    const auto took = std::chrono::steady_clock::now() - start;
    // Not a speed measurement: stepping every one of the 2^32 far pixels would take many
    // seconds, visiting only the visible ones takes microseconds.
    EXPECT_LT(took, std::chrono::seconds(2));
    EXPECT_EQ(c.Row(8, Red), std::string(16, '#'));
    EXPECT_EQ(c.dc.GetPixel(0, 0), Red);
    EXPECT_EQ(c.dc.GetPixel(15, 15), Red);
    EXPECT_EQ(c.dc.GetPixel(3, 4), White);
}
