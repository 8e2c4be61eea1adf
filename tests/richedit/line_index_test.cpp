// The index of paragraph starts and display lines kept up to date edit by edit: after any mix
// of typing, deleting, undoing and line breaks, with and without wrapping, every position and
// line, and the horizontal range of the widest line, answer as a control that was given the same
// text at once.
#include "platform/richedit/rich_edit_ctrl.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

void Open(CRichEditCtrl& edit, CFont& font, bool wrap) {
    ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE, RECT{0, 0, 300, 200}, nullptr, 1));
    LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans Mono");
    font.CreateFontIndirect(&lf);
    edit.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(&font), TRUE);
    edit.SetTargetDevice(nullptr, wrap ? 0 : 1);
}

void ExpectSameLines(CRichEditCtrl& edited, CRichEditCtrl& fresh) {
    ASSERT_EQ(edited.GetTextLength(), fresh.GetTextLength());
    ASSERT_EQ(edited.GetLineCount(), fresh.GetLineCount());
    for (int line = 0; line < fresh.GetLineCount(); ++line)
        ASSERT_EQ(edited.LineIndex(line), fresh.LineIndex(line)) << "line " << line;
    for (long c = 0; c <= fresh.GetTextLength(); ++c)
        ASSERT_EQ(edited.LineFromChar(c), fresh.LineFromChar(c)) << "character " << c;
    int editedMin, editedMax, freshMin, freshMax;
    edited.GetScrollRange(SB_HORZ, &editedMin, &editedMax);
    fresh.GetScrollRange(SB_HORZ, &freshMin, &freshMax);
    ASSERT_EQ(editedMax, freshMax) << "the widest line sets the horizontal range";
}

TEST(LineIndex, EditsKeepItAsAFreshLayoutHasIt) {
    for (const bool wrap : {false, true}) {
        SCOPED_TRACE(wrap ? "wrapping at the window" : "no wrapping");
        CRichEditCtrl edited, fresh;
        CFont editedFont, freshFont;
        Open(edited, editedFont, wrap);
        Open(fresh, freshFont, wrap);
        std::string text;
        for (int i = 0; i < 40; ++i)
            text += "Dim value" + std::to_string(i) + " ' a comment\r\n";
        edited.SetWindowText(text.c_str());
        std::mt19937 random(7);
        for (int step = 0; step < 300; ++step) {
            const long length = edited.GetTextLength();
            const long at = static_cast<long>(random() % static_cast<unsigned>(length + 1));
            edited.SetSel(at, at + static_cast<long>(random() % 3));
            switch (random() % 6) {
            case 0:
                edited.ReplaceSel("\r\n", TRUE); // a new paragraph
                break;
            case 1:
                edited.ReplaceSel("", TRUE);
                break;
            case 2:
                edited.Undo();
                break;
            default:
                // Typing that grows one paragraph past the window's width now and then.
                edited.ReplaceSel(std::string(random() % 25, 'x').c_str(), TRUE);
                break;
            }
            CString now;
            edited.GetWindowText(now);
            fresh.SetWindowText(now.GetString());
            ExpectSameLines(edited, fresh);
            if (::testing::Test::HasFatalFailure())
                return;
        }
    }
}

} // namespace
