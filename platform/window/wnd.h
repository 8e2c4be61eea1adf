// CWnd: a window without a screen. Messages are sent (handled at once) or posted (queued until
// AfxPumpMessages drains the queue); paint requests coalesce into one queued WM_PAINT per window;
// invalidation, focus, style bits, scroll bars and timers are kept as a host's windows keep them.
// Painting goes into the window's own raster, which stays readable after the paint
// (GetLastPaintedRaster), so a test or a tool sees exactly what a user would see.
#pragma once

#include "platform/draw/bitmap.h"
#include "platform/draw/dc.h"
#include "platform/files/runtime_class.h"
#include "platform/strings/cstring.h"
#include "platform/window/messages.h"

#include <map>
#include <vector>

constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOWMINIMIZED = 2;
constexpr int SW_SHOWMAXIMIZED = 3;
constexpr int SW_SHOW = 5;

constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_UPDATENOW = 0x0100;

class CScrollBar;

class CWnd : public CObject {
public:
    CWnd() = default;
    // Destroys the window when it still exists; queued messages for it are dropped.
    ~CWnd() override;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    // Makes the window: PreCreateWindow may change the record; the window then gets its
    // placement, style and text, and WM_CREATE is sent. FALSE when PreCreateWindow refuses or
    // OnCreate gives -1 (the window is then destroyed again), or when it exists already.
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                  const RECT& rect, CWnd* parent, UINT id, void* param = nullptr);
    BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                UINT id);
    // Sends WM_DESTROY and forgets the window's queued messages, timers and focus.
    BOOL DestroyWindow();
    HWND GetSafeHwnd() const { return m_hWnd; }
    HWND m_hWnd = nullptr;
    CWnd* GetParent() const { return m_pParent; }
    UINT GetDlgCtrlID() const { return m_nID; }

    // Dispatches at once through WindowProc; 0 for a window that does not exist.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    // Queues the message; a WM_PAINT already queued for the window is not queued twice. A
    // posted WM_PAINT is always handled; one queued by invalidation only while part of the
    // window is still invalid.
    // FALSE for a window that does not exist.
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

    // Window text: WM_SETTEXT/WM_GETTEXT on a created window, the stored text before.
    void SetWindowText(LPCTSTR text);
    void GetWindowText(CString& text) const;
    int GetWindowTextLength() const;

    // Placement; a negative width or height counts as 0. A created window whose size changes
    // gets WM_SIZE and a new, empty raster.
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE);
    void MoveWindow(const RECT& rect, BOOL repaint = TRUE);
    void GetWindowRect(LPRECT rect) const;
    // The client area from (0, 0); scroll bars take no room in this model.
    void GetClientRect(LPRECT rect) const;
    // Client coordinates to the screen's: child windows are placed relative to their parent,
    // a window without a parent on the screen.
    void ClientToScreen(LPPOINT point) const;
    BOOL ShowWindow(int showCommand); // TRUE when the window was visible before
    BOOL IsWindowVisible() const { return m_nShowCmd != SW_HIDE; }
    int GetShowCommand() const { return m_nShowCmd; }

    DWORD GetStyle() const { return m_dwStyle; }
    DWORD GetExStyle() const { return m_dwExStyle; }
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT flags = 0);

    // Invalidation: the update rectangle grows and a paint is queued. A null rectangle means
    // the whole client area.
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE);
    void ValidateRect(LPCRECT rect);
    BOOL GetUpdateRect(LPRECT rect, BOOL erase = FALSE) const;
    // Sends WM_PAINT now when part of the window is invalid.
    void UpdateWindow();
    // Holds back the window's painting until UnlockWindowUpdate, which then asks for one paint
    // of the whole window if any was held back. One window at a time: FALSE when another window
    // is locked.
    BOOL LockWindowUpdate();
    void UnlockWindowUpdate();
    BOOL IsUpdateLocked() const;
    BOOL RedrawWindow(LPCRECT rect = nullptr, void* region = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);

    // Focus: WM_KILLFOCUS to the window that had it, WM_SETFOCUS to the new one; returns the
    // previous one.
    CWnd* SetFocus();
    static CWnd* GetFocus();

    // Scroll bars, kept per bar. Setting a range or position clamps the position to
    // [nMin, nMax - max(nPage - 1, 0)].
    int SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw = TRUE);
    BOOL GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask = SIF_ALL) const;
    int GetScrollPos(int bar) const;
    int SetScrollPos(int bar, int pos, BOOL redraw = TRUE);
    void GetScrollRange(int bar, LPINT minPos, LPINT maxPos) const;
    void SetScrollRange(int bar, int minPos, int maxPos, BOOL redraw = TRUE);
    int GetScrollLimit(int bar) const;
    void ShowScrollBar(UINT bar, BOOL show = TRUE);
    BOOL IsScrollBarVisible(int bar) const;

    // Timers: WM_TIMER is posted for each timer whose time has come when the host advances the
    // clock (AfxAdvanceTimers).
    UINT_PTR SetTimer(UINT_PTR id, UINT elapse, void* callback = nullptr);
    BOOL KillTimer(UINT_PTR id);

    // Idle time: a window with work it can do in pieces asks for it, and gets OnIdle once per
    // AfxIdle round until it answers FALSE. Asking again while it is waiting changes nothing.
    void RequestIdle();

    // The raster of the last paint (client size; empty before the first paint).
    const CBitmap& GetLastPaintedRaster() const { return m_surface; }
    // The raster a paint context draws into, made at client size when missing.
    CBitmap& Surface();

    const CRuntimeClass* GetRuntimeClass() const override { return &classCWnd; }
    static const CRuntimeClass classCWnd;

    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL PreTranslateMessage(MSG* msg);
    // A child's notification (WM_COMMAND with the child as lParam) reaches the child first: it
    // gets the message reflected, WM_REFLECT_BASE + message, and when it handles that (a
    // non-zero answer) the parent sees nothing of it.
    virtual BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);

protected:
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    // The window's own handling of a message when no handler took it (a control's behaviour).
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // Runs DefWindowProc for the message being handled.
    LRESULT Default();

    // Handlers; each default runs Default().
    virtual int OnCreate(LPCREATESTRUCT cs);
    virtual void OnDestroy();
    virtual void OnPaint();
    virtual void OnSize(UINT type, int cx, int cy);
    virtual void OnSetFocus(CWnd* oldWnd);
    virtual void OnKillFocus(CWnd* newWnd);
    virtual void OnTimer(UINT_PTR id);
    virtual void OnHScroll(UINT code, UINT pos, CScrollBar* scrollBar);
    virtual void OnVScroll(UINT code, UINT pos, CScrollBar* scrollBar);
    virtual void OnChar(UINT ch, UINT repeat, UINT flags);
    virtual void OnKeyDown(UINT ch, UINT repeat, UINT flags);
    virtual void OnLButtonDown(UINT flags, CPoint point);
    virtual void OnLButtonUp(UINT flags, CPoint point);
    virtual void OnLButtonDblClk(UINT flags, CPoint point);
    virtual void OnMouseMove(UINT flags, CPoint point);
    virtual void OnRButtonDown(UINT flags, CPoint point);
    // One piece of idle work; TRUE when more is left. count is that of the AfxIdle round. The
    // default has none.
    virtual BOOL OnIdle(LONG count);

    CString m_strWindowText;
    RECT m_rect{};
    int m_nShowCmd = SW_HIDE;

private:
    friend class CPaintDC;
    friend int AfxPumpMessages();
    friend BOOL AfxIdle(LONG count);
    struct ScrollBarState {
        SCROLLINFO info;
        bool visible = false;
    };
    struct Timer {
        UINT elapse = 0;
        unsigned long long due = 0;
    };
    friend void AfxAdvanceTimers(unsigned milliseconds);
    void Clamp(ScrollBarState& bar) const;
    ScrollBarState* Bar(int bar);
    const ScrollBarState* Bar(int bar) const;

    CWnd* m_pParent = nullptr;
    UINT m_nID = 0;
    DWORD m_dwStyle = 0;
    DWORD m_dwExStyle = 0;
    CRect m_update; // client coordinates; empty when valid
    bool m_paintQueued = false;
    // A paint was posted as a message; one that only invalidation asked for is dropped when the
    // window has been painted (and so validated) before its turn comes.
    bool m_paintPosted = false;
    bool m_paintHeld = false; // a paint came while the window was locked
    ScrollBarState m_bars[2];
    std::map<UINT_PTR, Timer> m_timers;
    CBitmap m_surface;
    std::vector<MSG> m_current; // messages being handled, innermost last
};

// Drains the queue, messages posted meanwhile included, and returns how many were handled;
// stops after a WM_QUIT (PostQuitMessage) or a million messages, whichever comes first.
int AfxPumpMessages();
// One round of idle time, for the host's loop to call while its queue is empty (count 0 on the
// first round after a message, then counting up): OnIdle of each living window that asked, in
// the order they asked. A window that answers FALSE is done until it asks again. TRUE while some
// window has more to do.
BOOL AfxIdle(LONG count);
// Queues WM_QUIT; the next AfxPumpMessages stops at it.
void PostQuitMessage(int exitCode);
// Whether a WM_QUIT was handled since the last ResetQuit.
BOOL AfxQuitRequested();
void AfxResetQuit();
// Number of messages waiting.
int AfxQueuedMessageCount();
// Moves the timer clock on and posts WM_TIMER for each timer whose time has come.
void AfxAdvanceTimers(unsigned milliseconds);

// A context on the window's raster for the paint: construction validates the window, so paint
// requests made while painting are kept for the next paint.
class CPaintDC : public CDC {
public:
    explicit CPaintDC(CWnd* wnd);
    ~CPaintDC() override;

private:
    CWnd* m_pWnd;
};

// A context on the window's raster outside a paint.
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* wnd);
};

// A scroll bar control is not modelled; the handlers get null for the window's own bars.
class CScrollBar : public CWnd {};
