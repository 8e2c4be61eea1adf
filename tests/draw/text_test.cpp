// Fonts and text: face matching, heights and metrics, measured widths against painted pixels,
// background cells, clipping, anti-aliasing, bold, DrawText's formats, and the code page.
#include "platform/codepage/code_page.h"
#include "platform/draw/dc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

constexpr COLORREF White = RGB(255, 255, 255);
constexpr COLORREF Black = RGB(0, 0, 0);
constexpr COLORREF Red = RGB(255, 0, 0);
constexpr COLORREF Navy = RGB(0, 0, 128);
constexpr COLORREF Yellow = RGB(255, 255, 0);

LOGFONT Font(const char* face, LONG height, LONG weight = FW_NORMAL) {
    LOGFONT lf{};
    lf.lfHeight = height;
    lf.lfWeight = weight;
    std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
    return lf;
}

struct Canvas {
    CBitmap bitmap;
    CDC dc;
    CFont font;
    Canvas(int width, int height, const LOGFONT& lf) {
        dc.CreateCompatibleDC(nullptr);
        bitmap.CreateFilledBitmap(width, height, White);
        dc.SelectObject(&bitmap);
        font.CreateFontIndirect(&lf);
        dc.SelectObject(&font);
    }
    // Columns [first, last] holding any pixel other than white; first > last when none.
    std::pair<int, int> InkColumns() const {
        int first = bitmap.GetWidth(), last = -1;
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            for (int x = 0; x < bitmap.GetWidth(); ++x)
                if (bitmap.GetPixelColor(x, y) != White) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
        return {first, last};
    }
    long Darkness() const { // sum of 255 minus the green channel: more ink, more darkness
        long sum = 0;
        for (int y = 0; y < bitmap.GetHeight(); ++y)
            for (int x = 0; x < bitmap.GetWidth(); ++x)
                sum += 255 - GetGValue(bitmap.GetPixelColor(x, y));
        return sum;
    }
};

} // namespace

TEST(CFont, FacesMatchByNameAndFallBackToMonospace) {
    struct Case {
        const char* asked;
        BYTE pitchAndFamily;
        const char* family;
    } const cases[] = {
        {"DejaVu Sans", 0, "DejaVu Sans"},
        {"dejavu serif", 0, "DejaVu Serif"},
        {"No Such Face 123", 0, "DejaVu Sans Mono"},
        {"", 0, "DejaVu Sans Mono"},
        {"Courier New", 0, "DejaVu Sans Mono"},
        {"No Such Face 123", FF_SWISS | VARIABLE_PITCH, "DejaVu Sans"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.asked);
        LOGFONT lf = Font(c.asked, -13);
        lf.lfPitchAndFamily = c.pitchAndFamily;
        CFont font;
        ASSERT_TRUE(font.CreateFontIndirect(&lf));
        EXPECT_STREQ(talvor::platform::FontFamilyName(font), c.family);
        LOGFONT back{};
        ASSERT_NE(font.GetLogFont(&back), 0);
        EXPECT_STREQ(back.lfFaceName, c.asked); // what was asked, not what was found
    }
    CFont none;
    LOGFONT back{};
    EXPECT_EQ(none.GetLogFont(&back), 0);
    EXPECT_FALSE(none.CreateFontIndirect(nullptr));
}

TEST(CFont, HeightsFollowTheFramework) {
    // Negative: the em in pixels, so the cell is taller; positive: the cell itself.
    for (LONG height : {8, 13, 16, 20, 33}) {
        SCOPED_TRACE(height);
        Canvas cell(4, 4, Font("DejaVu Sans Mono", height));
        TEXTMETRIC tm{};
        ASSERT_TRUE(cell.dc.GetTextMetrics(&tm));
        EXPECT_EQ(tm.tmHeight, height);
        EXPECT_EQ(tm.tmAscent + tm.tmDescent, tm.tmHeight);

        Canvas em(4, 4, Font("DejaVu Sans Mono", -height));
        ASSERT_TRUE(em.dc.GetTextMetrics(&tm));
        EXPECT_EQ(tm.tmHeight - tm.tmInternalLeading, height);
        EXPECT_GT(tm.tmInternalLeading, 0);
        EXPECT_EQ(tm.tmPitchAndFamily & TMPF_FIXED_PITCH, 0); // set means variable pitch
    }
    // 10 points at 96 dots per inch: 13.33 pixels, rounded.
    CFont point;
    ASSERT_TRUE(point.CreatePointFont(100, "DejaVu Sans Mono"));
    LOGFONT lf{};
    point.GetLogFont(&lf);
    EXPECT_EQ(lf.lfHeight, -13);
    EXPECT_EQ(talvor::platform::PointFontLogFont(90, "x").lfHeight, -12);
    EXPECT_EQ(talvor::platform::PointFontLogFont(120, "x").lfHeight, -16);
}

TEST(CDC, TextMetricsOfAMonospaceFontAgreeWithItsExtents) {
    Canvas c(10, 10, Font("DejaVu Sans Mono", -13));
    TEXTMETRIC tm{};
    ASSERT_TRUE(c.dc.GetTextMetrics(&tm));
    EXPECT_EQ(tm.tmAveCharWidth, 8); // 1233/2048 of 13 pixels, rounded
    EXPECT_EQ(tm.tmMaxCharWidth, tm.tmAveCharWidth);
    EXPECT_EQ(tm.tmWeight, FW_NORMAL);
    const CSize one = c.dc.GetTextExtent("W", 1);
    EXPECT_EQ(one.cx, tm.tmAveCharWidth);
    EXPECT_EQ(one.cy, tm.tmHeight);
    const std::string line = "If x > 0 Then MsgBox \"positive\" ' comment";
    EXPECT_EQ(c.dc.GetTextExtent(line.c_str(), static_cast<int>(line.size())).cx,
              tm.tmAveCharWidth * static_cast<int>(line.size()));
    SIZE size{};
    EXPECT_TRUE(GetTextExtentPoint32(&c.dc, "abc", 3, &size));
    EXPECT_EQ(size.cx, 3 * tm.tmAveCharWidth);
    EXPECT_FALSE(c.dc.GetTextExtentPoint32("abc", -1, &size));
    EXPECT_EQ(c.dc.GetTextExtent(CString()).cx, 0);
}

TEST(CDC, ProportionalExtentsAreTheSumOfTheCharacters) {
    Canvas c(10, 10, Font("DejaVu Sans", -15));
    const char* text = "Tell me, Muse";
    int sum = 0;
    for (const char* p = text; *p; ++p)
        sum += c.dc.GetTextExtent(p, 1).cx;
    EXPECT_EQ(c.dc.GetTextExtent(text, static_cast<int>(std::strlen(text))).cx, sum);
    EXPECT_LT(c.dc.GetTextExtent("i", 1).cx, c.dc.GetTextExtent("M", 1).cx);
}

TEST(CDC, TextLandsInsideItsExtentAndTheOpaqueCellCoversItExactly) {
    for (const char* face : {"DejaVu Sans Mono", "DejaVu Sans"}) {
        SCOPED_TRACE(face);
        Canvas c(200, 40, Font(face, -16));
        const char* text = "Dim nValue";
        const int length = static_cast<int>(std::strlen(text));
        const CSize extent = c.dc.GetTextExtent(text, length);

        c.dc.SetBkMode(TRANSPARENT);
        c.dc.SetTextColor(Black);
        c.dc.TextOut(17, 5, text, length);
        const auto [first, last] = c.InkColumns();
        EXPECT_GE(first, 17);
        EXPECT_LT(last, 17 + extent.cx);
        EXPECT_LE(first, 19); // 'D' starts near the pen
        EXPECT_GE(last, 17 + extent.cx - 4);

        // Opaque: exactly the cell of the extent, the font's height tall, is background.
        Canvas o(200, 40, Font(face, -16));
        o.dc.SetBkColor(Yellow);
        o.dc.SetTextColor(Navy);
        o.dc.TextOut(17, 5, text, length);
        int outside = 0, inside = 0;
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 200; ++x) {
                const bool inCell = x >= 17 && x < 17 + extent.cx && y >= 5 && y < 5 + extent.cy;
                const COLORREF p = o.bitmap.GetPixelColor(x, y);
                outside += !inCell && p != White;
                inside += inCell && p == White;
            }
        EXPECT_EQ(outside, 0);
        EXPECT_EQ(inside, 0);
        EXPECT_EQ(o.dc.GetPixel(17, 5), Yellow);
        EXPECT_EQ(o.dc.GetPixel(16 + extent.cx, 4 + extent.cy), Yellow);
    }
}

TEST(CDC, GlyphsAreAntiAliasedBetweenTextAndBackground) {
    Canvas c(80, 30, Font("DejaVu Sans", -18));
    c.dc.SetTextColor(Black);
    c.dc.SetBkColor(White);
    c.dc.TextOut(2, 2, "Sov", 3);
    int ink = 0, between = 0;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 80; ++x) {
            const COLORREF p = c.bitmap.GetPixelColor(x, y);
            ink += p == Black;
            const int g = GetGValue(p);
            between += g > 0 && g < 255;
            // Grey only: the coverage blends each channel alike.
            EXPECT_TRUE(GetRValue(p) == g && GetBValue(p) == g) << x << "," << y;
        }
    EXPECT_GT(ink, 0);
    EXPECT_GT(between, 10);
}

TEST(CDC, BoldIsDarkerThanNormal) {
    for (const char* face : {"DejaVu Sans Mono", "DejaVu Sans"}) {
        SCOPED_TRACE(face);
        Canvas normal(200, 30, Font(face, -14, FW_NORMAL));
        Canvas bold(200, 30, Font(face, -14, FW_BOLD));
        for (Canvas* c : {&normal, &bold}) {
            c->dc.SetBkMode(TRANSPARENT);
            c->dc.TextOut(0, 0, "Hello, world", 12);
        }
        EXPECT_GT(bold.Darkness(), normal.Darkness() * 11 / 10);
        EXPECT_GE(bold.dc.GetTextExtent("Hello, world", 12).cx,
                  normal.dc.GetTextExtent("Hello, world", 12).cx);
        TEXTMETRIC tm{};
        bold.dc.GetTextMetrics(&tm);
        EXPECT_EQ(tm.tmWeight, FW_BOLD);
    }
}

TEST(CDC, ExtTextOutFillsAndClipsToItsRectangle) {
    Canvas c(100, 30, Font("DejaVu Sans Mono", -16));
    c.dc.SetBkColor(Yellow);
    c.dc.SetTextColor(Navy);
    c.dc.SetBkMode(TRANSPARENT);
    const CRect box(10, 4, 30, 24);
    c.dc.ExtTextOut(12, 6, ETO_OPAQUE | ETO_CLIPPED, box, "WWWWWWWW", 8, nullptr);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 100; ++x) {
            const COLORREF p = c.bitmap.GetPixelColor(x, y);
            if (box.PtInRect(CPoint(x, y)))
                EXPECT_NE(p, White) << x << "," << y;
            else
                EXPECT_EQ(p, White) << x << "," << y;
        }
    EXPECT_EQ(c.dc.GetPixel(10, 4), Yellow);

    // A count of zero with ETO_OPAQUE is the framework's way of filling a rectangle.
    c.dc.SetBkColor(Red);
    c.dc.ExtTextOut(0, 0, ETO_OPAQUE, CRect(50, 0, 60, 5), "", 0, nullptr);
    EXPECT_EQ(c.dc.GetPixel(59, 4), Red);
    EXPECT_EQ(c.dc.GetPixel(60, 4), White);
}

TEST(CDC, ExtTextOutPlacesCharactersAtTheGivenAdvances) {
    Canvas c(120, 20, Font("DejaVu Sans Mono", -13));
    c.dc.SetBkMode(TRANSPARENT);
    const int widths[] = {30, 30, 30};
    c.dc.ExtTextOut(0, 0, 0, nullptr, "|||", 3, widths);
    int columns = 0; // a vertical bar is a few columns wide at each of 0, 30, 60
    for (int x = 0; x < 120; ++x) {
        bool inked = false;
        for (int y = 0; y < 20; ++y)
            inked |= c.bitmap.GetPixelColor(x, y) != White;
        if (inked) {
            EXPECT_TRUE(x % 30 < 8) << x;
            ++columns;
        }
    }
    EXPECT_GT(columns, 2);
}

TEST(CDC, ClipRectangleCutsTextAtItsEdge) {
    Canvas c(100, 30, Font("DejaVu Sans Mono", -16));
    c.dc.SetBkColor(Yellow);
    c.dc.IntersectClipRect(0, 0, 23, 30);
    c.dc.TextOut(0, 0, "MMMMMMMM", 8);
    const auto [first, last] = c.InkColumns();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 22);
}

TEST(CDC, TextOfTheSystemCodePageIsDecodedToItsCharacters) {
    const unsigned saved = talvor::platform::SystemCodePage();
    Canvas utf8(60, 20, Font("DejaVu Sans", -16));
    Canvas western(60, 20, Font("DejaVu Sans", -16));
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(talvor::platform::CodePageUtf8));
    utf8.dc.TextOut(0, 0, "\xC3\xA9t\xC3\xA9", 5); // "été"
    const int utf8Width = utf8.dc.GetTextExtent("\xC3\xA9t\xC3\xA9", 5).cx;
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(talvor::platform::CodePageWestern));
    western.dc.TextOut(0, 0, "\xE9t\xE9", 3);
    const int westernWidth = western.dc.GetTextExtent("\xE9t\xE9", 3).cx;
    talvor::platform::SetSystemCodePage(saved);
    EXPECT_EQ(utf8Width, westernWidth);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 60; ++x)
            ASSERT_EQ(utf8.bitmap.GetPixelColor(x, y), western.bitmap.GetPixelColor(x, y))
                << x << "," << y;
}

TEST(CDC, DrawTextAlignsMeasuresAndUnderlinesTheMnemonic) {
    Canvas c(200, 60, Font("DejaVu Sans Mono", -13));
    TEXTMETRIC tm{};
    c.dc.GetTextMetrics(&tm);
    const int w = tm.tmAveCharWidth;

    CRect calc(10, 10, 11, 11);
    EXPECT_EQ(c.dc.DrawText("&File", -1, calc, DT_LEFT | DT_SINGLELINE | DT_CALCRECT), tm.tmHeight);
    EXPECT_EQ(calc, CRect(10, 10, 10 + 4 * w, 10 + tm.tmHeight)); // the prefix takes no room
    EXPECT_EQ(c.InkColumns().second, -1);                         // measuring draws nothing
    CRect doubled(0, 0, 0, 0);
    c.dc.DrawText("A&&B", -1, doubled, DT_SINGLELINE | DT_CALCRECT);
    EXPECT_EQ(doubled.Width(), 3 * w);
    CRect plain(0, 0, 0, 0);
    c.dc.DrawText("A&&B", -1, plain, DT_SINGLELINE | DT_CALCRECT | DT_NOPREFIX);
    EXPECT_EQ(plain.Width(), 4 * w);
    CRect lines(0, 0, 0, 0);
    EXPECT_EQ(c.dc.DrawText("one\r\nthree\nx", -1, lines, DT_CALCRECT), 3 * tm.tmHeight);
    EXPECT_EQ(lines.Width(), 5 * w);

    // Centred vertically in a 40 pixel box: the text's rows lie in the middle.
    c.dc.SetBkMode(TRANSPARENT);
    CRect box(0, 0, 200, 40);
    const int bottom = c.dc.DrawText("&File", -1, box, DT_LEFT | DT_SINGLELINE | DT_VCENTER);
    const int top = (40 - tm.tmHeight) / 2;
    EXPECT_EQ(bottom, top + tm.tmHeight);
    int firstRow = 60, lastRow = -1;
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 200; ++x)
            if (c.bitmap.GetPixelColor(x, y) != White) {
                firstRow = std::min(firstRow, y);
                lastRow = std::max(lastRow, y);
            }
    EXPECT_GE(firstRow, top);
    EXPECT_LT(lastRow, top + tm.tmHeight);
    // The mnemonic underline: a full row of ink under 'F' only, below the baseline.
    const int underlineRow = lastRow;
    EXPECT_GT(underlineRow, top + tm.tmAscent - 1);
    for (int x = 0; x < w; ++x)
        EXPECT_EQ(c.bitmap.GetPixelColor(x, underlineRow), Black) << x;
    EXPECT_EQ(c.bitmap.GetPixelColor(w + w / 2, underlineRow), White);

    // Right alignment puts the end of the text at the box's right edge.
    Canvas r(200, 20, Font("DejaVu Sans Mono", -13));
    CRect right(0, 0, 150, 20);
    r.dc.DrawText("End", 3, right, DT_RIGHT | DT_SINGLELINE | DT_NOPREFIX);
    EXPECT_LT(r.InkColumns().second, 150);
    EXPECT_GE(r.InkColumns().first, 150 - 3 * w);
}

TEST(CDC, DrawTextBreaksWordsExpandsTabsAndEndsWithAnEllipsis) {
    Canvas c(200, 100, Font("DejaVu Sans Mono", -13));
    TEXTMETRIC tm{};
    c.dc.GetTextMetrics(&tm);
    const int w = tm.tmAveCharWidth;

    CRect narrow(0, 0, 9 * w, 0);
    EXPECT_EQ(c.dc.DrawText("one two three four", -1, narrow, DT_WORDBREAK | DT_CALCRECT),
              3 * tm.tmHeight); // "one two", "three", "four"
    EXPECT_EQ(narrow.Width(), 7 * w);

    CRect tabs(0, 0, 0, 0);
    c.dc.DrawText("a\tb", -1, tabs, DT_SINGLELINE | DT_EXPANDTABS | DT_CALCRECT);
    EXPECT_EQ(tabs.Width(), 9 * w); // a tab stop every eight average characters

    CRect cut(0, 0, 6 * w, 20);
    c.dc.SetBkMode(TRANSPARENT);
    c.dc.DrawText("Dimension", -1, cut, DT_SINGLELINE | DT_END_ELLIPSIS);
    const auto [first, last] = c.InkColumns();
    EXPECT_LT(last, 6 * w);
    // "Dim..." : the last three cells hold dots, low in the cell.
    bool dotHigh = false;
    for (int y = 0; y < tm.tmAscent / 2; ++y)
        for (int x = 3 * w; x < 6 * w; ++x)
            dotHigh |= c.bitmap.GetPixelColor(x, y) != White;
    EXPECT_FALSE(dotHigh);
    EXPECT_GE(first, 0);
}

TEST(CDC, UnderlinedFontDrawsItsLineAcrossTheExtent) {
    LOGFONT lf = Font("DejaVu Sans Mono", -16);
    lf.lfUnderline = TRUE;
    Canvas c(120, 30, lf);
    c.dc.SetBkMode(TRANSPARENT);
    c.dc.TextOut(5, 0, "a b", 3);
    const int width = c.dc.GetTextExtent("a b", 3).cx;
    int fullRows = 0;
    for (int y = 0; y < 30; ++y) {
        bool full = true;
        for (int x = 5; x < 5 + width; ++x)
            full &= c.bitmap.GetPixelColor(x, y) == Black;
        fullRows += full;
    }
    EXPECT_GE(fullRows, 1);
    EXPECT_EQ(c.dc.GetPixel(4, 20), White);
    EXPECT_EQ(c.InkColumns().second, 4 + width);
}

TEST(CDC, ItalicLeansToTheRight) {
    // Real oblique faces where installed, a slanted outline otherwise: either way the top of a
    // vertical stem lies right of its foot.
    auto lean = [](bool italic) {
        LOGFONT lf = Font("DejaVu Sans", -40);
        lf.lfItalic = italic;
        Canvas c(60, 60, lf);
        c.dc.TextOut(10, 5, "l", 1);
        TEXTMETRIC tm{};
        c.dc.GetTextMetrics(&tm);
        EXPECT_EQ(tm.tmItalic, italic ? 1 : 0);
        auto centre = [&](int y0, int y1) {
            long sum = 0, weight = 0;
            for (int y = y0; y < y1; ++y)
                for (int x = 0; x < 60; ++x) {
                    const int ink = 255 - GetGValue(c.bitmap.GetPixelColor(x, y));
                    sum += ink * x;
                    weight += ink;
                }
            return weight ? static_cast<double>(sum) / weight : 0.0;
        };
        return centre(5, 5 + tm.tmAscent / 2) - centre(5 + tm.tmAscent / 2, 5 + tm.tmAscent);
    };
    EXPECT_NEAR(lean(false), 0.0, 0.5);
    EXPECT_GT(lean(true), 2.0); // about a fifth of the half ascent between the two halves
}

TEST(CDC, CharactersTheFaceLacksComeFromAnotherInstalledFace) {
    // DejaVu Sans Mono has no Hebrew; DejaVu Sans (the same family, same package) has.
    const unsigned saved = talvor::platform::SystemCodePage();
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(talvor::platform::CodePageUtf8));
    const char* alef = "\xD7\x90";
    Canvas mono(40, 40, Font("DejaVu Sans Mono", -20));
    Canvas sans(40, 40, Font("DejaVu Sans", -20));
    mono.dc.TextOut(5, 5, alef, 2);
    sans.dc.TextOut(5, 5, alef, 2);
    const int monoWidth = mono.dc.GetTextExtent(alef, 2).cx;
    const int sansWidth = sans.dc.GetTextExtent(alef, 2).cx;
    talvor::platform::SetSystemCodePage(saved);
    EXPECT_EQ(monoWidth, sansWidth);
    int differing = 0, ink = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x) {
            differing += mono.bitmap.GetPixelColor(x, y) != sans.bitmap.GetPixelColor(x, y);
            ink += sans.bitmap.GetPixelColor(x, y) == Black;
        }
    EXPECT_GT(ink, 0);
    EXPECT_EQ(differing, 0);
}
