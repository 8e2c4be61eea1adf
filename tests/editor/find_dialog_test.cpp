// The find dialog moves out of the way of a hit under it, and only then.
#include "editor/find_dialog.h"
#include "tests/editor/editor_fixture.h"

namespace {

class Dialog : public CTalvorFindDialog {
public:
    using CTalvorFindDialog::AdjustPosition;
};

class FindDialog : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        Create(600, 400);
        std::string text;
        for (int i = 0; i < 40; ++i)
            text += "line " + std::to_string(i) + "\r\n";
        SetText(text);
        talvor::platform::SetScreenSize(1920, 1080);
    }
    // Puts the dialog at a rectangle and selects the first character of a line.
    CRect Adjust(const CRect& where, int line) {
        dialog.MoveWindow(where);
        edit.SetSel(edit.LineIndex(line), edit.LineIndex(line) + 1);
        dialog.AdjustPosition();
        CRect after;
        dialog.GetWindowRect(&after);
        return after;
    }
    Dialog dialog;
};

TEST_F(FindDialog, MovesAboveOrBelowTheHitOrStays) {
    ASSERT_TRUE(dialog.Create(100, nullptr));
    EXPECT_EQ(dialog.IsOpen(), 1);
    EXPECT_EQ(dialog.IsVisible(), 0);
    dialog.Do(&edit);
    EXPECT_EQ(dialog.IsVisible(), 1);
    EXPECT_EQ(dialog.m_pTargetWnd, &edit);

    const int hitY = edit.PosFromChar(static_cast<UINT>(edit.LineIndex(20))).y;
    // Room above the hit: the bottom goes 20 pixels above it.
    CRect r = Adjust(CRect(0, hitY - 50, 300, hitY + 50), 20);
    EXPECT_EQ(r.bottom, hitY - 20);
    EXPECT_EQ(r.Height(), 100);
    EXPECT_EQ(r.left, 0) << "only the vertical position changes";
    // No room above: the top goes 40 pixels below it.
    r = Adjust(CRect(0, 0, 300, 250), 3);
    EXPECT_EQ(r.top, edit.PosFromChar(static_cast<UINT>(edit.LineIndex(3))).y + 40);
    // A hit outside the dialog moves nothing.
    r = Adjust(CRect(400, 0, 500, 50), 20);
    EXPECT_EQ(r, CRect(400, 0, 500, 50));
    // Neither above nor below: it stays.
    talvor::platform::SetScreenSize(1920, 300);
    r = Adjust(CRect(0, 0, 300, 290), 10);
    EXPECT_EQ(r, CRect(0, 0, 300, 290));
    talvor::platform::SetScreenSize(1920, 1080);

    dialog.ShowWindow(SW_SHOWMINIMIZED);
    EXPECT_EQ(dialog.IsVisible(), 0);
}

TEST_F(FindDialog, ATargetThatIsNoEditControlMovesNothing) {
    CWnd other;
    ASSERT_TRUE(other.Create(nullptr, nullptr, 0, RECT{0, 0, 50, 50}, nullptr, 9));
    ASSERT_TRUE(dialog.Create(100, nullptr));
    dialog.Do(&other);
    dialog.MoveWindow(CRect(0, 0, 300, 300));
    dialog.AdjustPosition();
    CRect r;
    dialog.GetWindowRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 300, 300));
    Dialog closed;
    EXPECT_EQ(closed.IsOpen(), 0);
    EXPECT_EQ(closed.IsVisible(), 0);
}

} // namespace
