// The rich edit stand-in: text and display lines, positions measured with the control's font,
// wrapping, undo grouping and limits, streams, read-only, keyboard and code page positions.
#include "platform/codepage/code_page.h"
#include "platform/richedit/rich_edit_ctrl.h"
#include "platform/window/input_state.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class RichEdit : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL,
                                RECT{0, 0, 400, 200}, nullptr, 1));
        LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans Mono");
        font.CreateFontIndirect(&lf);
        edit.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(&font), TRUE);
    }
    void TearDown() override { talvor::platform::ReleaseAllKeys(); }
    void Type(const std::string& text) {
        for (unsigned char c : text)
            edit.SendMessage(WM_CHAR, c, 1);
    }
    void Key(int vk, bool ctrl = false, bool shift = false) {
        talvor::platform::SetKeyDown(VK_CONTROL, ctrl);
        talvor::platform::SetKeyDown(VK_SHIFT, shift);
        edit.SendMessage(WM_KEYDOWN, vk, 1);
        talvor::platform::ReleaseAllKeys();
    }
    std::string StreamOut(int format = SF_TEXT) {
        std::string out;
        EDITSTREAM es;
        es.dwCookie = reinterpret_cast<DWORD_PTR>(&out);
        es.pfnCallback = [](DWORD_PTR cookie, BYTE* buf, LONG cb, LONG* pcb) -> DWORD {
            reinterpret_cast<std::string*>(cookie)->append(reinterpret_cast<char*>(buf), cb);
            *pcb = cb;
            return 0;
        };
        edit.StreamOut(format, es);
        return out;
    }
    CRichEditCtrl edit;
    CFont font;
};

TEST_F(RichEdit, LinesLookedUpInAnyOrderAgreeAlsoAfterParagraphsGo) {
    std::string text;
    for (int i = 0; i < 50; ++i)
        text += "line " + std::to_string(i) + "\r\n";
    edit.SetWindowText(text.c_str());
    for (int line : {0, 1, 2, 49, 48, 17, 18, 3, 50}) {
        const std::string expected = line == 50 ? "" : "line " + std::to_string(line) + "\r";
        EXPECT_EQ(edit.GetLineText(line), CString(expected.c_str())) << line;
    }
    CString buffer("kept:");
    edit.AppendLineText(7, buffer);
    edit.AppendLineText(99, buffer); // beyond the text: nothing
    EXPECT_EQ(buffer, CString("kept:line 7\r"));

    // The last lookup was far down; those paragraphs go, and lookups still find the right ones.
    edit.GetLineText(45);
    edit.SetSel(edit.LineIndex(10), edit.LineIndex(48));
    edit.ReplaceSel("");
    EXPECT_EQ(edit.GetLineCount(), 13);
    EXPECT_EQ(edit.GetLineText(10), CString("line 48\r"));
    EXPECT_EQ(edit.GetLineText(11), CString("line 49\r"));
    EXPECT_EQ(edit.GetLineText(9), CString("line 9\r"));
}

TEST_F(RichEdit, LinesKeepTheirParagraphMarkAndStreamOutAsCrLf) {
    edit.SetWindowText("ab\r\ncd\nef\r");
    EXPECT_EQ(edit.GetLineCount(), 4) << "a text ending in a line end has an empty last line";
    EXPECT_EQ(edit.GetTextLength(), 9);
    EXPECT_EQ(edit.GetLineText(0), CString("ab\r"));
    EXPECT_EQ(edit.GetLineText(3), CString(""));
    EXPECT_EQ(edit.LineIndex(2), 6);
    EXPECT_EQ(edit.LineIndex(4), -1);
    EXPECT_EQ(edit.LineFromChar(5), 1);
    EXPECT_EQ(edit.LineFromChar(500), 3);
    EXPECT_EQ(edit.LineLength(4), 2);
    EXPECT_EQ(StreamOut(), "ab\r\ncd\r\nef\r\n");
    EXPECT_FALSE(edit.GetModify());

    char buffer[16] = {};
    EXPECT_EQ(edit.GetLine(1, buffer, 2), 2) << "copies no more than asked";
    EXPECT_EQ(std::string(buffer, 2), "cd");
}

TEST_F(RichEdit, PositionsAreTheFontsAdvancesAndTabStopsCountFromTheLineOrigin) {
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    dc.SelectObject(&font);
    const int digit = dc.GetTextExtent("8", 1).cx;
    edit.SetWindowText("x\tyz\r\n\tq");
    PARAFORMAT pf;
    pf.dwMask = PFM_TABSTOPS;
    pf.cTabCount = MAX_TAB_STOPS;
    for (int i = 0; i < MAX_TAB_STOPS; ++i)
        pf.rgxTabs[i] = (i + 1) * digit * 4 * 15; // four digits in twips
    edit.SetParaFormat(pf);
    CRect format;
    edit.GetRect(&format);
    EXPECT_EQ(edit.PosFromChar(1).x, format.left + dc.GetTextExtent("x", 1).cx);
    EXPECT_EQ(edit.PosFromChar(2).x, format.left + 4 * digit) << "behind the tab: the stop";
    EXPECT_EQ(edit.PosFromChar(3).x, format.left + 4 * digit + dc.GetTextExtent("y", 1).cx);
    EXPECT_EQ(edit.PosFromChar(5).y, format.top + edit.GetLineHeight());
    EXPECT_EQ(edit.PosFromChar(6).x, format.left + 4 * digit);
    for (UINT cp = 0; cp <= 7; ++cp) {
        EXPECT_EQ(edit.CharFromPos(edit.PosFromChar(cp)), static_cast<int>(cp)) << cp;
    }
}

TEST_F(RichEdit, WrapsAtBlanksByPixelWidthAndUnwrapsOnRequest) {
    edit.SetTargetDevice(nullptr, 0);
    RECT narrow{0, 0, 120, 200};
    edit.SetRect(&narrow);
    const std::string words = "alpha beta gamma delta epsilon zeta eta theta";
    edit.SetWindowText(words.c_str());
    ASSERT_GT(edit.GetLineCount(), 2);
    std::string joined;
    for (int line = 0; line < edit.GetLineCount(); ++line) {
        const CString text = edit.GetLineText(line);
        EXPECT_NE(text.Right(1), CString("\r")) << "a soft break has no paragraph mark";
        if (line + 1 < edit.GetLineCount()) {
            EXPECT_EQ(text.Right(1), CString(" ")) << "lines break behind a blank";
        }
        // Every character before the break fits into the rectangle.
        const int last = edit.LineIndex(line) + edit.LineLength(edit.LineIndex(line));
        EXPECT_LE(edit.PosFromChar(static_cast<UINT>(last - 1)).x, 120);
        joined += text.GetString();
    }
    EXPECT_EQ(joined, words);
    edit.SetTargetDevice(nullptr, 1);
    EXPECT_EQ(edit.GetLineCount(), 1);
}

TEST_F(RichEdit, TypingIsOneUndoStepAndTheLimitDropsTheOldest) {
    edit.SetWindowText("");
    edit.SetFocus();
    Type("abc");
    EXPECT_TRUE(edit.GetModify());
    Key(VK_LEFT);
    Key(VK_LEFT);
    Type("X");
    EXPECT_EQ(StreamOut(), "aXbc");
    EXPECT_TRUE(edit.Undo());
    EXPECT_EQ(StreamOut(), "abc") << "typing elsewhere starts a new step";
    EXPECT_TRUE(edit.Undo());
    EXPECT_EQ(StreamOut(), "");
    EXPECT_FALSE(edit.CanUndo());
    EXPECT_TRUE(edit.Redo());
    EXPECT_EQ(StreamOut(), "abc");

    edit.SetWindowText("");
    edit.SetUndoLimit(2);
    for (const char* piece : {"1", "2", "3"}) {
        edit.SetSel(-1, -1);
        edit.SetSel(edit.GetTextLength(), edit.GetTextLength());
        edit.ReplaceSel(piece, TRUE);
    }
    EXPECT_TRUE(edit.Undo());
    EXPECT_TRUE(edit.Undo());
    EXPECT_FALSE(edit.Undo());
    EXPECT_EQ(StreamOut(), "1");
    edit.SetUndoLimit(0);
    edit.ReplaceSel("z", TRUE);
    EXPECT_FALSE(edit.CanUndo());
}

TEST_F(RichEdit, ReadOnlyRefusesEditsButNotNewText) {
    edit.SetWindowText("keep");
    edit.SetReadOnly(TRUE);
    EXPECT_TRUE(edit.GetOptions() & ECO_READONLY);
    edit.SetSel(0, -1);
    Type("x");
    edit.ReplaceSel("y", TRUE);
    Key(VK_DELETE);
    edit.Cut();
    EXPECT_EQ(StreamOut(), "keep");
    edit.SetWindowText("new");
    EXPECT_EQ(StreamOut(), "new");
    edit.SetOptions(ECOOP_AND, ~ECO_READONLY);
    EXPECT_FALSE(edit.IsReadOnly());
}

TEST_F(RichEdit, StreamInTakesAnyLineEndAndSelectionStreamsReplace) {
    std::string source = "one\ntwo\r\nthree\rfour";
    struct Reader {
        std::string* text;
        std::size_t pos;
    } reader{&source, 0};
    EDITSTREAM es;
    es.dwCookie = reinterpret_cast<DWORD_PTR>(&reader);
    es.pfnCallback = [](DWORD_PTR cookie, BYTE* buf, LONG cb, LONG* pcb) -> DWORD {
        auto* r = reinterpret_cast<Reader*>(cookie);
        // Two bytes at a time, so a CRLF is cut between blocks.
        const auto n =
            std::min<std::size_t>({2, static_cast<std::size_t>(cb), r->text->size() - r->pos});
        std::copy_n(r->text->data() + r->pos, n, buf);
        r->pos += n;
        *pcb = static_cast<LONG>(n);
        return 0;
    };
    edit.StreamIn(SF_TEXT, es);
    EXPECT_EQ(edit.GetLineCount(), 4);
    EXPECT_EQ(StreamOut(), "one\r\ntwo\r\nthree\r\nfour");
    edit.SetSel(4, 7);
    EXPECT_EQ(StreamOut(SF_TEXT | SFF_SELECTION), "two");
}

TEST_F(RichEdit, KeyboardSelectsCopiesAndPastes) {
    edit.SetWindowText("hello world");
    edit.SetSel(0, 0);
    Key(VK_RIGHT, true, true);
    long s, e;
    edit.GetSel(s, e);
    EXPECT_EQ(s, 0);
    EXPECT_EQ(e, 6);
    Key('C', true);
    Key(VK_END, true);
    Key('V', true);
    EXPECT_EQ(StreamOut(), "hello worldhello ");
    edit.SendMessage(WM_CHAR, VK_BACK, 1);
    Key(VK_HOME);
    Key(VK_DELETE);
    EXPECT_EQ(StreamOut(), "ello worldhello");
    Key('Z', true);
    EXPECT_EQ(StreamOut(), "hello worldhello");
}

TEST_F(RichEdit, ScrollingMovesLinesAndTracksTheThumb) {
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "line " + std::to_string(i) + "\r\n";
    edit.SetWindowText(text.c_str());
    edit.LineScroll(10);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 10);
    EXPECT_EQ(edit.PosFromChar(static_cast<UINT>(edit.LineIndex(10))).y, 0);
    EXPECT_LT(edit.PosFromChar(0).y, 0);
    edit.LineScroll(-50);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 0);
    edit.LineScroll(1000);
    EXPECT_EQ(edit.GetFirstVisibleLine(), 100) << "the last line may come to the top";

    edit.SetWindowText(std::string(300, 'w').c_str());
    edit.SendMessage(WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 40));
    SCROLLINFO si;
    si.fMask = SIF_TRACKPOS | SIF_POS;
    edit.GetScrollInfo(SB_HORZ, &si);
    EXPECT_EQ(si.nTrackPos, 40);
    EXPECT_EQ(edit.GetHorzScrollPixels(), 40);
}

TEST_F(RichEdit, DoubleBytePositionsCountCharacters) {
    const unsigned before = talvor::platform::SystemCodePage();
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(936));
    edit.SetWindowText("a\xD6\xD0z");
    EXPECT_EQ(edit.GetTextLength(), 3);
    EXPECT_EQ(edit.LineLength(0), 3);
    edit.SetSel(1, 2);
    EXPECT_EQ(edit.GetSelText(), CString("\xD6\xD0"));
    edit.SetSel(3, 3);
    edit.SendMessage(WM_CHAR, 0xB9, 1);
    EXPECT_EQ(edit.GetTextLength(), 3) << "a lead byte waits for its trail byte";
    edit.SendMessage(WM_CHAR, 0xFA, 1);
    EXPECT_EQ(edit.GetTextLength(), 4);
    EXPECT_EQ(StreamOut(), "a\xD6\xD0z\xB9\xFA");
    talvor::platform::SetSystemCodePage(before);
}

} // namespace

namespace {

// Found by the fuzz target: a byte typed behind a lone lead byte joins it into one character,
// and the caret went past the end of the text.
TEST_F(RichEdit, ATypedByteJoiningALoneLeadByteKeepsTheCaretInTheText) {
    const unsigned before = talvor::platform::SystemCodePage();
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(936));
    edit.SetWindowText("9\xF2");
    EXPECT_EQ(edit.GetTextLength(), 2);
    edit.SetSel(2, 2);
    edit.ReplaceSel("x", TRUE);
    EXPECT_EQ(edit.GetTextLength(), 2) << "lead byte and x are one character now";
    long s, e;
    edit.GetSel(s, e);
    EXPECT_LE(e, edit.GetTextLength());
    EXPECT_TRUE(edit.Undo());
    edit.GetSel(s, e);
    EXPECT_LE(e, edit.GetTextLength());
    talvor::platform::SetSystemCodePage(before);
}

} // namespace
