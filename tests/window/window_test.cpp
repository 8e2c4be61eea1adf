// The headless window model: dispatch, queue, paint coalescing, focus, scroll bars, timers,
// idle time, key state and clipboard.
#include "platform/window/input_state.h"
#include "platform/window/wnd.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

class Recorder : public CWnd {
public:
    std::vector<UINT> seen;
    int paints = 0;
    bool failCreate = false;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        seen.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }

protected:
    int OnCreate(LPCREATESTRUCT) override { return failCreate ? -1 : 0; }
    void OnPaint() override {
        ++paints;
        CPaintDC dc(this);
        dc.FillSolidRect(0, 0, 4, 4, RGB(10, 20, 30));
        // A paint request made while painting is kept for the next paint.
        if (paints == 1)
            PostMessage(WM_PAINT);
    }
};

TEST(Window, CreateSendsCreateAndSizeAndDestroyDropsQueuedMessages) {
    Recorder wnd;
    ASSERT_TRUE(
        wnd.Create(nullptr, "title", WS_CHILD | WS_VISIBLE, RECT{0, 0, 40, 30}, nullptr, 7));
    EXPECT_EQ(wnd.seen, (std::vector<UINT>{WM_CREATE, WM_SIZE}));
    CString text;
    wnd.GetWindowText(text);
    EXPECT_EQ(text, CString("title"));
    EXPECT_TRUE(wnd.IsWindowVisible());
    EXPECT_EQ(wnd.GetDlgCtrlID(), 7u);
    EXPECT_FALSE(wnd.Create(nullptr, nullptr, 0, RECT{}, nullptr, 0)) << "exists already";

    wnd.PostMessage(WM_USER + 1);
    EXPECT_TRUE(wnd.DestroyWindow());
    EXPECT_EQ(AfxQueuedMessageCount(), 0);
    EXPECT_EQ(wnd.SendMessage(WM_USER), 0);
    EXPECT_FALSE(wnd.PostMessage(WM_USER));

    Recorder refused;
    refused.failCreate = true;
    EXPECT_FALSE(refused.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 0));
    EXPECT_EQ(refused.GetSafeHwnd(), nullptr);
}

TEST(Window, PaintRequestsCoalesceAndThePaintedRasterStays) {
    Recorder wnd;
    ASSERT_TRUE(wnd.Create(nullptr, nullptr, WS_VISIBLE, RECT{0, 0, 20, 10}, nullptr, 1));
    wnd.Invalidate();
    wnd.InvalidateRect(nullptr);
    wnd.PostMessage(WM_PAINT);
    EXPECT_EQ(AfxQueuedMessageCount(), 1);
    AfxPumpMessages();
    EXPECT_EQ(wnd.paints, 2) << "the second request made while painting is served afterwards";
    const CBitmap& raster = wnd.GetLastPaintedRaster();
    EXPECT_EQ(raster.GetWidth(), 20);
    EXPECT_EQ(raster.GetPixelColor(3, 3), RGB(10, 20, 30));
    EXPECT_EQ(raster.GetPixelColor(4, 4), RGB(255, 255, 255));
    CRect update;
    EXPECT_FALSE(wnd.GetUpdateRect(&update));

    wnd.InvalidateRect(nullptr);
    wnd.UpdateWindow();
    EXPECT_EQ(wnd.paints, 3) << "UpdateWindow paints at once";
    AfxPumpMessages();
    EXPECT_EQ(wnd.paints, 3) << "invalidation's request finds nothing left to paint";
    wnd.PostMessage(WM_PAINT);
    AfxPumpMessages();
    EXPECT_EQ(wnd.paints, 4) << "a posted paint is served even when nothing is invalid";
}

TEST(Window, FocusMovesWithMessagesToBothWindows) {
    Recorder a, b;
    ASSERT_TRUE(a.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 1));
    ASSERT_TRUE(b.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 2));
    a.SetFocus();
    a.seen.clear();
    EXPECT_EQ(b.SetFocus(), &a);
    EXPECT_EQ(CWnd::GetFocus(), &b);
    EXPECT_EQ(a.seen, std::vector<UINT>{WM_KILLFOCUS});
    b.DestroyWindow();
    EXPECT_EQ(CWnd::GetFocus(), nullptr);
}

TEST(Window, ScrollBarsClampPositionsToRangeAndPage) {
    Recorder wnd;
    ASSERT_TRUE(wnd.Create(nullptr, nullptr, WS_HSCROLL, RECT{0, 0, 5, 5}, nullptr, 1));
    EXPECT_TRUE(wnd.IsScrollBarVisible(SB_HORZ));
    EXPECT_FALSE(wnd.IsScrollBarVisible(SB_VERT));
    SCROLLINFO si;
    si.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    si.nMin = 0;
    si.nMax = 99;
    si.nPage = 10;
    si.nPos = 500;
    EXPECT_EQ(wnd.SetScrollInfo(SB_HORZ, &si), 90);
    EXPECT_EQ(wnd.GetScrollLimit(SB_HORZ), 90);
    EXPECT_EQ(wnd.SetScrollPos(SB_HORZ, -3), 90);
    EXPECT_EQ(wnd.GetScrollPos(SB_HORZ), 0);
    wnd.ShowScrollBar(SB_BOTH, TRUE);
    EXPECT_TRUE(wnd.IsScrollBarVisible(SB_VERT));
}

TEST(Window, TimersPostWhenTheClockPassesTheirTime) {
    Recorder wnd;
    ASSERT_TRUE(wnd.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 1));
    wnd.SetTimer(3, 100);
    AfxAdvanceTimers(99);
    EXPECT_EQ(AfxQueuedMessageCount(), 0);
    AfxAdvanceTimers(1);
    EXPECT_EQ(AfxQueuedMessageCount(), 1);
    AfxPumpMessages();
    EXPECT_EQ(wnd.seen.back(), WM_TIMER);
    EXPECT_TRUE(wnd.KillTimer(3));
    AfxAdvanceTimers(1000);
    EXPECT_EQ(AfxQueuedMessageCount(), 0);
}

TEST(Window, QuitStopsThePump) {
    Recorder wnd;
    ASSERT_TRUE(wnd.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 1));
    AfxResetQuit();
    PostQuitMessage(0);
    wnd.PostMessage(WM_USER);
    AfxPumpMessages();
    EXPECT_TRUE(AfxQuitRequested());
    EXPECT_EQ(AfxQueuedMessageCount(), 1) << "what came behind the quit waits";
    AfxResetQuit();
    AfxPumpMessages();
}

// A window with a number of idle pieces to do, which records each round it is given.
class IdleWorker : public CWnd {
public:
    int piecesLeft = 0;
    std::vector<LONG> rounds;
    CWnd* destroyOnIdle = nullptr;

protected:
    BOOL OnIdle(LONG count) override {
        rounds.push_back(count);
        if (destroyOnIdle)
            destroyOnIdle->DestroyWindow();
        return --piecesLeft > 0 ? TRUE : FALSE;
    }
};

TEST(Window, IdleRoundsGoToTheWindowsThatAskedUntilTheyAreDone) {
    IdleWorker a, b, never;
    ASSERT_TRUE(a.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 1));
    ASSERT_TRUE(b.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 2));
    ASSERT_TRUE(never.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 3));
    EXPECT_FALSE(AfxIdle(0)) << "nobody asked";
    a.piecesLeft = 3;
    b.piecesLeft = 1;
    a.RequestIdle();
    a.RequestIdle(); // asking twice is asking once
    b.RequestIdle();
    LONG round = 0;
    while (AfxIdle(round))
        ++round;
    EXPECT_EQ(round, 2) << "a had three pieces";
    EXPECT_EQ(a.rounds, (std::vector<LONG>{0, 1, 2}));
    EXPECT_EQ(b.rounds, (std::vector<LONG>{0}));
    EXPECT_TRUE(never.rounds.empty());
    EXPECT_FALSE(AfxIdle(0)) << "done until asked again";
    EXPECT_EQ(a.rounds.size(), 3u);

    // A window destroyed while it waits is never called, also when another destroys it
    // during the same round; one not yet created cannot ask.
    IdleWorker killer, victim, unborn;
    ASSERT_TRUE(killer.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 4));
    ASSERT_TRUE(victim.Create(nullptr, nullptr, 0, RECT{0, 0, 5, 5}, nullptr, 5));
    killer.piecesLeft = 1;
    victim.piecesLeft = 5;
    killer.destroyOnIdle = &victim;
    killer.RequestIdle();
    victim.RequestIdle();
    unborn.RequestIdle();
    EXPECT_FALSE(AfxIdle(0));
    EXPECT_EQ(killer.rounds.size(), 1u);
    EXPECT_TRUE(victim.rounds.empty());
    EXPECT_TRUE(unborn.rounds.empty());
}

TEST(InputState, KeysAndClipboard) {
    talvor::platform::SetKeyDown(VK_CONTROL, true);
    EXPECT_LT(GetKeyState(VK_CONTROL), 0);
    EXPECT_LT(GetAsyncKeyState(VK_CONTROL), 0);
    talvor::platform::ReleaseAllKeys();
    EXPECT_GE(GetKeyState(VK_CONTROL), 0);
    EXPECT_EQ(GetKeyState(999), 0);

    talvor::platform::EmptyClipboard();
    std::string text = "x";
    EXPECT_FALSE(talvor::platform::GetClipboardText(text));
    EXPECT_TRUE(text.empty());
    talvor::platform::SetClipboardText("a\r\nb");
    EXPECT_TRUE(IsClipboardFormatAvailable(CF_TEXT));
    EXPECT_TRUE(talvor::platform::GetClipboardText(text));
    EXPECT_EQ(text, "a\r\nb");
}

} // namespace
