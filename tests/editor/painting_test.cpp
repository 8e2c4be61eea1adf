// The painted view, pixel by pixel at the places the painting fixes: the separator, the
// zero-padded numbers, tab marks, line-end arrows, selection by characters, the cross hair,
// line marks and the language's colours.
#include "tests/editor/editor_fixture.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

constexpr COLORREF Sel = RGB(1, 2, 3);
constexpr COLORREF Mark = RGB(250, 0, 250);

class Painting : public EditorTest {
protected:
    // Pixels of anti-aliased text in this colour: a blend of the background and the colour
    // with the same weight in every channel, the background itself not counted.
    int CountTinted(const CRect& r, COLORREF colour, COLORREF background) {
        int n = 0;
        for (int y = r.top; y < r.bottom; ++y)
            for (int x = r.left; x < r.right; ++x) {
                const COLORREF p = Pixel(x, y);
                if (p == background)
                    continue;
                double weight = -1;
                bool blend = true;
                for (int shift : {0, 8, 16}) {
                    const int pc = (p >> shift) & 0xFF, bc = (background >> shift) & 0xFF,
                              cc = (colour >> shift) & 0xFF;
                    if (bc == cc) {
                        blend = blend && std::abs(pc - bc) <= 2;
                        continue;
                    }
                    const double w = double(bc - pc) / double(bc - cc);
                    if (w < -0.02 || w > 1.02 || (weight >= 0 && std::abs(w - weight) > 0.05))
                        blend = false;
                    weight = w;
                }
                n += blend && weight > 0.3;
            }
        return n;
    }
    void SetUp() override {
        EditorTest::SetUp();
        Create();
        edit.SetColor(17, Sel);
        edit.SetColor(12, Mark);
    }
    // The pixels a reference context draws for the text at (x, y), for comparison.
    CBitmap Reference(const char* text, COLORREF textColour, COLORREF background) {
        CBitmap bitmap;
        bitmap.CreateFilledBitmap(400, 200, background);
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        dc.SelectObject(&bitmap);
        CFont font;
        LOGFONT lf = edit.GetMacroEditFont();
        font.CreateFontIndirect(&lf);
        dc.SelectObject(&font);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(textColour);
        dc.TextOut(0, 0, text, static_cast<int>(std::strlen(text)));
        return bitmap;
    }
};

TEST_F(Painting, LineNumbersAreZeroPaddedAndTheSeparatorSitsAtTheMarginLessTheGutter) {
    std::string text;
    for (int i = 0; i < 12; ++i)
        text += "line\r\n";
    SetText(text.substr(0, text.size() - 2));
    edit.SetSel(0, 0);
    Paint();
    EXPECT_EQ(edit.m_nLineNumberDigits, 2);
    const int L = edit.m_nLeftMargin, G = edit.m_nGutterWidth;
    EXPECT_EQ(L, 2 * edit.m_nDigitWidth + 15 + 4);
    for (int y = 0; y < 200; y += 7) {
        EXPECT_EQ(Pixel(L - G, y), edit.GetColor(13)) << y;
        EXPECT_EQ(Pixel(L - G + 1, y), edit.GetColor(6)) << "the mark strip " << y;
    }
    // The first line's number reads "01" in the current line's colour, the second "02".
    const CBitmap first = Reference("01", Mark, edit.GetColor(10));
    const CBitmap second = Reference("02", edit.GetColor(11), edit.GetColor(10));
    const int h = edit.m_nLineHeight;
    int differing = 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < L - G - 2; ++x) {
            differing += Pixel(x, y) != first.GetPixelColor(x, y);
            differing += Pixel(x, y + h) != second.GetPixelColor(x, y);
        }
    EXPECT_EQ(differing, 0);

    // From 99 to 100 lines the text moves right by one digit.
    text.clear();
    for (int i = 0; i < 99; ++i)
        text += "x\r\n";
    SetText(text.substr(0, text.size() - 2));
    Paint();
    const int before = edit.m_nLeftMargin;
    edit.SetSel(edit.GetTextLength(), edit.GetTextLength());
    edit.ReplaceSel("\r\ny", TRUE);
    Paint();
    EXPECT_EQ(edit.m_nLineNumberDigits, 3);
    EXPECT_EQ(edit.m_nLeftMargin - before, edit.m_nDigitWidth);
}

TEST_F(Painting, TextScrolledLeftNeverShowsInTheLineNumberArea) {
    SetText(std::string(300, 'W') + "\r\n" + std::string(300, 'M'));
    edit.SetSel(0, 0);
    edit.SendMessage(WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 200));
    Paint();
    const int L = edit.m_nLeftMargin, G = edit.m_nGutterWidth;
    EXPECT_EQ(CountColour(CRect(L - G + 1, 0, L, 2 * edit.m_nLineHeight), edit.GetColor(6)),
              (G - 1) * 2 * edit.m_nLineHeight);
    // The text itself did move: its first visible glyphs lie at the margin.
    EXPECT_LT(CountColour(CRect(L, 0, L + 50, edit.m_nLineHeight), edit.GetColor(6)),
              50 * edit.m_nLineHeight);
}

TEST_F(Painting, TabMarksAreTwoArrowHeadsAtTheGapsLeft) {
    edit.ShowLineNumber(0);
    edit.ShowTabSpace(1);
    SetText("\tx\r\nab\tc");
    edit.SetSel(0, 0);
    Paint();
    const int L = edit.m_nLeftMargin, h = edit.m_nLineHeight, tab = edit.m_nTabWidth;
    ASSERT_EQ(L, 15);
    EXPECT_EQ(tab, 4 * edit.m_nDigitWidth);
    const int m = h / 2;
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(Pixel(L + 1 + k, m - 3 + k), edit.GetColor(15));
        EXPECT_EQ(Pixel(L + 4 + k, m - 3 + k), edit.GetColor(15));
        EXPECT_EQ(Pixel(L + 1 + k, m + 1 - k), edit.GetColor(15));
        EXPECT_EQ(Pixel(L + 4 + k, m + 1 - k), edit.GetColor(15));
    }
    EXPECT_EQ(Pixel(L + 7, m), edit.GetColor(6)) << "nothing else in the gap";
    // The character behind the tab is painted where the control has it.
    EXPECT_EQ(edit.PosFromChar(1).x, L + tab);
    EXPECT_LT(CountColour(CRect(L + tab, 0, L + tab + edit.m_nDigitWidth, h), edit.GetColor(6)),
              edit.m_nDigitWidth * h);
    // A tab in the second line's text lands on the same stop: the mark at the end of "ab".
    const int gap = edit.PosFromChar(5).x;
    EXPECT_EQ(Pixel(gap + 1, h + m - 3), edit.GetColor(15));
    EXPECT_EQ(edit.PosFromChar(6).x, L + tab);
}

TEST_F(Painting, LineEndArrowsPointDownAtHardEndsAndRightOnTheLastLine) {
    edit.ShowLineNumber(0);
    edit.ShowReturnLineToken(1);
    SetText("ab\r\ncd");
    edit.SetSel(0, 0);
    Paint();
    const int L = edit.m_nLeftMargin, h = edit.m_nLineHeight, q = h / 4;
    const COLORREF c = edit.GetColor(8);
    // Over the appended blank: the text's end plus a blank, less 2 and a blank.
    const int x = edit.PosFromChar(2).x - 2;
    ASSERT_EQ(edit.PosFromChar(2).x, L + 2 * edit.m_nDigitWidth);
    const int b = h - q;
    for (int y = q + 2; y <= b; ++y)
        EXPECT_EQ(Pixel(x + 5, y), c) << y;
    for (auto [dx, dy] : {std::pair{2, -3}, {3, -2}, {4, -1}, {6, -1}, {7, -2}, {8, -3}})
        EXPECT_EQ(Pixel(x + dx, b + dy), c) << dx;
    EXPECT_NE(Pixel(x + 5, q + 1), c);
    const int m = h + h / 2;
    for (int px = x + 2; px <= x + 7; ++px)
        EXPECT_EQ(Pixel(px, m), c);
    for (auto [dx, dy] : {std::pair{7, -1}, {7, 1}, {6, -2}, {6, 2}, {5, -3}, {5, 3}})
        EXPECT_EQ(Pixel(x + dx, m + dy), c);
    EXPECT_NE(Pixel(x + 5, h + q + 2), c) << "no down arrow on the last line";
}

TEST_F(Painting, OneSelectedCharacterIsTheOnlyOneInverted) {
    edit.ShowLineNumber(0);
    SetText("abc def");
    edit.SetSel(1, 2);
    Paint();
    const int h = edit.m_nLineHeight;
    auto cell = [&](int k) {
        return CRect(edit.PosFromChar(k).x, 0, edit.PosFromChar(k + 1).x, h);
    };
    EXPECT_GT(CountColour(cell(1), Sel), cell(1).Width() * h / 2);
    EXPECT_EQ(CountColour(cell(0), Sel), 0);
    EXPECT_EQ(CountColour(cell(2), Sel), 0);
    EXPECT_EQ(CountColour(CRect(0, 0, 400, 200), Sel), CountColour(cell(1), Sel));

    edit.SetSel(3, 3);
    Paint();
    EXPECT_EQ(CountColour(CRect(0, 0, 400, 200), Sel), 0) << "an empty selection paints nothing";
}

TEST_F(Painting, AWholeLineBetweenSelectedEndsIsSelectedWithItsTabGap) {
    edit.ShowLineNumber(0);
    SetText("abcd\r\n\tx\r\nefgh");
    edit.SetSel(2, 11);
    Paint();
    const int h = edit.m_nLineHeight, L = edit.m_nLeftMargin;
    const CRect gap(L, h, L + edit.m_nTabWidth, 2 * h);
    EXPECT_EQ(CountColour(gap, Sel), gap.Width() * h);
    EXPECT_EQ(CountColour(CRect(L, 0, edit.PosFromChar(2).x, h), Sel), 0);
    EXPECT_GT(CountColour(CRect(edit.PosFromChar(2).x, 0, edit.PosFromChar(4).x, h), Sel), 0);
}

TEST_F(Painting, TheCrossHairFollowsTheCaretOnlyWithoutSelection) {
    edit.ShowCross(1);
    SetText("one\r\ntwo\r\nthree");
    edit.SetSel(6, 6);
    Paint();
    const CPoint caret = edit.PosFromChar(6);
    const COLORREF c = edit.GetColor(14);
    for (int y = 0; y < 200; y += 5)
        EXPECT_EQ(Pixel(caret.x, y), c) << y;
    const int y = caret.y + edit.m_nLineHeight;
    for (int x = edit.m_nLeftMargin; x < 400; x += 9)
        EXPECT_EQ(Pixel(x, y), c) << x;
    EXPECT_NE(Pixel(edit.m_nLeftMargin - 1, y), c);

    edit.SetSel(4, 6);
    Paint();
    EXPECT_EQ(CountColour(CRect(caret.x, 60, caret.x + 1, 200), c), 0);
}

TEST_F(Painting, LineMarksShowWithAndWithoutLineNumbers) {
    SetText("a\r\nb\r\nc");
    edit.m_nMarkCount = 2;
    edit.m_nMarkLine[0] = 2;
    edit.m_nMarkLine[1] = 0; // matches no line
    edit.SetSel(0, 0);
    Paint();
    const int h = edit.m_nLineHeight, y0 = h + h / 2;
    const int x0 = edit.m_nLeftMargin - edit.m_nGutterWidth - 2 + 1;
    for (int y = y0 - 3; y <= y0 + 6; ++y)
        EXPECT_EQ(Pixel(x0 + 11, y), Mark) << y;
    EXPECT_EQ(Pixel(x0 + 7, y0), Mark);
    EXPECT_EQ(CountColour(CRect(x0, 0, x0 + 15, h), Mark), 0);

    edit.ShowLineNumber(0);
    Paint();
    const int x1 = -1;
    for (int y = y0 - 3; y <= y0 + 6; ++y)
        EXPECT_EQ(Pixel(x1 + 11, y), Mark) << y;
}

TEST_F(Painting, RunsTakeTheColoursOfTheLanguage) {
    edit.ShowLineNumber(0);
    edit.SelectLanguage(3);
    SetText("Dim x ' note");
    edit.SetSel(0, 0);
    Paint();
    const int h = edit.m_nLineHeight;
    auto region = [&](int a, int b) {
        return CRect(edit.PosFromChar(a).x, 0, edit.PosFromChar(b).x, h);
    };
    const COLORREF bk = edit.GetColor(6);
    EXPECT_GT(CountTinted(region(0, 3), edit.GetColor(1), bk), 5);
    EXPECT_EQ(CountTinted(region(0, 3), edit.GetColor(0), bk), 0);
    EXPECT_GT(CountTinted(region(6, 12), edit.GetColor(0), bk), 5);
    EXPECT_EQ(CountTinted(region(4, 5), edit.GetColor(1), bk), 0);
    EXPECT_GT(CountTinted(region(4, 5), edit.GetColor(2), bk), 0);
}

} // namespace
