// Creation, dispatch, invalidation, focus, scroll bars and timers of a window.
#include "platform/window/wnd.h"

#include "platform/window/detail/window_registry.h"

#include <algorithm>
#include <cstring>
#include <utility>

using namespace talvor::platform::window_detail;

const CRuntimeClass CWnd::classCWnd =
    MakeRuntimeClass<CWnd>("CWnd", 0xFFFF, &CObject::classCObject);

namespace {
CWnd* g_focus = nullptr;
CWnd* g_locked = nullptr; // the window whose painting LockWindowUpdate holds back
} // namespace

CWnd::~CWnd() {
    if (m_hWnd) {
        // A derived part is gone already; only the base's own cleanup can run here.
        Living().erase(this);
        DropMessagesOf(this);
        if (g_focus == this)
            g_focus = nullptr;
        if (g_locked == this)
            g_locked = nullptr;
        m_hWnd = nullptr;
    }
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style,
                    const RECT& rect, CWnd* parent, UINT id, void* param) {
    if (m_hWnd)
        return FALSE;
    CREATESTRUCT cs;
    cs.lpCreateParams = param;
    cs.hMenu = id;
    cs.hwndParent = parent;
    cs.x = rect.left;
    cs.y = rect.top;
    cs.cx = std::max<LONG>(0, rect.right - rect.left);
    cs.cy = std::max<LONG>(0, rect.bottom - rect.top);
    cs.style = static_cast<LONG>(style);
    cs.lpszName = windowName;
    cs.lpszClass = className;
    cs.dwExStyle = exStyle;
    if (!PreCreateWindow(cs))
        return FALSE;
    m_hWnd = this;
    Living().insert(this);
    m_pParent = cs.hwndParent;
    m_nID = static_cast<UINT>(cs.hMenu);
    m_dwStyle = static_cast<DWORD>(cs.style);
    m_dwExStyle = cs.dwExStyle;
    m_rect = RECT{cs.x, cs.y, cs.x + cs.cx, cs.y + cs.cy};
    m_nShowCmd = (m_dwStyle & WS_VISIBLE) ? SW_SHOWNORMAL : SW_HIDE;
    m_bars[0].visible = (m_dwStyle & WS_HSCROLL) != 0;
    m_bars[1].visible = (m_dwStyle & WS_VSCROLL) != 0;
    m_strWindowText = cs.lpszName ? cs.lpszName : "";
    if (SendMessage(WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs)) == -1) {
        DestroyWindow();
        return FALSE;
    }
    SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(cs.cx, cs.cy));
    return TRUE;
}

BOOL CWnd::Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id) {
    return CreateEx(0, className, windowName, style, rect, parent, id);
}

BOOL CWnd::DestroyWindow() {
    if (!m_hWnd)
        return FALSE;
    SendMessage(WM_DESTROY);
    Living().erase(this);
    DropMessagesOf(this);
    if (g_focus == this)
        g_focus = nullptr;
    if (g_locked == this)
        g_locked = nullptr;
    m_timers.clear();
    m_paintQueued = false;
    m_paintPosted = false;
    m_hWnd = nullptr;
    return TRUE;
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!m_hWnd)
        return 0;
    m_current.push_back(MSG{this, message, wParam, lParam});
    const LRESULT result = WindowProc(message, wParam, lParam);
    m_current.pop_back();
    return result;
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!m_hWnd)
        return FALSE;
    if (message == WM_PAINT) {
        m_paintPosted = true;
        if (m_paintQueued)
            return TRUE;
        m_paintQueued = true;
    }
    Queue().push_back(MSG{this, message, wParam, lParam});
    return TRUE;
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const LRESULT answer = SendMessage(WM_REFLECT_BASE + message, wParam, lParam);
    if (result)
        *result = 0;
    return answer != 0 ? TRUE : FALSE;
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}
BOOL CWnd::PreCreateWindow(CREATESTRUCT&) {
    return TRUE;
}

LRESULT CWnd::Default() {
    if (m_current.empty())
        return 0;
    const MSG msg = m_current.back();
    return DefWindowProc(msg.message, msg.wParam, msg.lParam);
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const CPoint point(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
    switch (message) {
    case WM_CREATE:
        return OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam));
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_COMMAND: {
        auto* child = reinterpret_cast<CWnd*>(lParam);
        LRESULT result = 0;
        if (child && Living().count(child) && child->GetParent() == this &&
            child->OnChildNotify(message, wParam, lParam, &result))
            return result;
        return DefWindowProc(message, wParam, lParam);
    }
    case WM_PAINT:
        if (g_locked == this) {
            m_paintHeld = true;
            return 0;
        }
        OnPaint();
        return 0;
    case WM_SIZE:
        OnSize(static_cast<UINT>(wParam), LOWORD(static_cast<WPARAM>(lParam)),
               HIWORD(static_cast<WPARAM>(lParam)));
        return 0;
    case WM_SETFOCUS:
        OnSetFocus(reinterpret_cast<CWnd*>(wParam));
        return 0;
    case WM_KILLFOCUS:
        OnKillFocus(reinterpret_cast<CWnd*>(wParam));
        return 0;
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    case WM_HSCROLL:
        OnHScroll(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<CScrollBar*>(lParam));
        return 0;
    case WM_VSCROLL:
        OnVScroll(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<CScrollBar*>(lParam));
        return 0;
    case WM_CHAR:
        OnChar(static_cast<UINT>(wParam), LOWORD(static_cast<WPARAM>(lParam)),
               HIWORD(static_cast<WPARAM>(lParam)));
        return 0;
    case WM_KEYDOWN:
        OnKeyDown(static_cast<UINT>(wParam), LOWORD(static_cast<WPARAM>(lParam)),
                  HIWORD(static_cast<WPARAM>(lParam)));
        return 0;
    case WM_LBUTTONDOWN:
        OnLButtonDown(static_cast<UINT>(wParam), point);
        return 0;
    case WM_LBUTTONUP:
        OnLButtonUp(static_cast<UINT>(wParam), point);
        return 0;
    case WM_LBUTTONDBLCLK:
        OnLButtonDblClk(static_cast<UINT>(wParam), point);
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(static_cast<UINT>(wParam), point);
        return 0;
    case WM_RBUTTONDOWN:
        OnRButtonDown(static_cast<UINT>(wParam), point);
        return 0;
    default:
        return DefWindowProc(message, wParam, lParam);
    }
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SETTEXT:
        m_strWindowText = lParam ? reinterpret_cast<const char*>(lParam) : "";
        return TRUE;
    case WM_GETTEXTLENGTH:
        return m_strWindowText.GetLength();
    case WM_GETTEXT: {
        // wParam: room including the terminating zero.
        if (!lParam || wParam == 0)
            return 0;
        const auto n = std::min<std::size_t>(wParam - 1, m_strWindowText.GetLength());
        std::memcpy(reinterpret_cast<char*>(lParam), m_strWindowText.GetString(), n);
        reinterpret_cast<char*>(lParam)[n] = '\0';
        return static_cast<LRESULT>(n);
    }
    case WM_PAINT:
        // A window nobody paints is valid after the paint message all the same.
        ValidateRect(nullptr);
        return 0;
    default:
        return 0;
    }
}

int CWnd::OnCreate(LPCREATESTRUCT) {
    return static_cast<int>(Default());
}
void CWnd::OnDestroy() {
    Default();
}
void CWnd::OnPaint() {
    Default();
}
void CWnd::OnSize(UINT, int, int) {
    Default();
}
void CWnd::OnSetFocus(CWnd*) {
    Default();
}
void CWnd::OnKillFocus(CWnd*) {
    Default();
}
void CWnd::OnTimer(UINT_PTR) {
    Default();
}
void CWnd::OnHScroll(UINT, UINT, CScrollBar*) {
    Default();
}
void CWnd::OnVScroll(UINT, UINT, CScrollBar*) {
    Default();
}
void CWnd::OnChar(UINT, UINT, UINT) {
    Default();
}
void CWnd::OnKeyDown(UINT, UINT, UINT) {
    Default();
}
void CWnd::OnLButtonDown(UINT, CPoint) {
    Default();
}
void CWnd::OnLButtonUp(UINT, CPoint) {
    Default();
}
void CWnd::OnLButtonDblClk(UINT, CPoint) {
    Default();
}
void CWnd::OnMouseMove(UINT, CPoint) {
    Default();
}
void CWnd::OnRButtonDown(UINT, CPoint) {
    Default();
}

BOOL CWnd::OnIdle(LONG) {
    return FALSE;
}

void CWnd::RequestIdle() {
    auto& waiting = IdleWaiting();
    if (m_hWnd && std::find(waiting.begin(), waiting.end(), this) == waiting.end())
        waiting.push_back(this);
}

void CWnd::SetWindowText(LPCTSTR text) {
    if (m_hWnd)
        SendMessage(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text ? text : ""));
    else
        m_strWindowText = text ? text : "";
}

void CWnd::GetWindowText(CString& text) const {
    if (!m_hWnd) {
        text = m_strWindowText;
        return;
    }
    auto* self = const_cast<CWnd*>(this);
    const auto length = static_cast<std::size_t>(self->SendMessage(WM_GETTEXTLENGTH));
    std::string buffer(length + 1, '\0');
    const auto got =
        self->SendMessage(WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()));
    text = CString(buffer.data(), static_cast<int>(got));
}

int CWnd::GetWindowTextLength() const {
    if (!m_hWnd)
        return m_strWindowText.GetLength();
    return static_cast<int>(const_cast<CWnd*>(this)->SendMessage(WM_GETTEXTLENGTH));
}

void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint) {
    const CRect before(m_rect);
    m_rect.left = x;
    m_rect.top = y;
    m_rect.right = x + (width < 0 ? 0 : width);
    m_rect.bottom = y + (height < 0 ? 0 : height);
    const CRect after(m_rect);
    if (!m_hWnd || after.Size() == before.Size())
        return;
    m_surface.DeleteObject();
    SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(after.Width(), after.Height()));
    if (repaint)
        Invalidate();
}

void CWnd::MoveWindow(const RECT& rect, BOOL repaint) {
    MoveWindow(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, repaint);
}

void CWnd::GetWindowRect(LPRECT rect) const {
    if (rect)
        *rect = m_rect;
}

void CWnd::GetClientRect(LPRECT rect) const {
    if (rect)
        *rect = RECT{0, 0, m_rect.right - m_rect.left, m_rect.bottom - m_rect.top};
}

void CWnd::ClientToScreen(LPPOINT point) const {
    if (!point)
        return;
    for (const CWnd* wnd = this; wnd; wnd = wnd->m_pParent) {
        point->x += wnd->m_rect.left;
        point->y += wnd->m_rect.top;
    }
}

BOOL CWnd::ShowWindow(int showCommand) {
    const BOOL wasVisible = IsWindowVisible();
    m_nShowCmd = showCommand;
    if (showCommand == SW_HIDE)
        m_dwStyle &= ~WS_VISIBLE;
    else
        m_dwStyle |= WS_VISIBLE;
    return wasVisible;
}

BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT) {
    const DWORD before = m_dwStyle;
    m_dwStyle = (m_dwStyle & ~remove) | add;
    return before != m_dwStyle;
}

void CWnd::Invalidate(BOOL erase) {
    InvalidateRect(nullptr, erase);
}

void CWnd::InvalidateRect(LPCRECT rect, BOOL) {
    if (!m_hWnd)
        return;
    CRect client;
    GetClientRect(&client);
    CRect part = rect ? CRect(*rect) : client;
    part.IntersectRect(&part, &client);
    if (part.IsRectEmpty())
        return;
    m_update.UnionRect(&m_update, &part);
    if (!m_paintQueued) {
        m_paintQueued = true;
        Queue().push_back(MSG{this, WM_PAINT, 0, 0});
    }
}

void CWnd::ValidateRect(LPCRECT rect) {
    if (!rect) {
        m_update.SetRectEmpty();
        return;
    }
    // A rectangle can only be taken out whole when it covers the update rectangle; a part of
    // it leaves the update rectangle as it stands, which paints a little more, never less.
    CRect covered;
    if (covered.IntersectRect(&m_update, rect) && covered == m_update)
        m_update.SetRectEmpty();
}

BOOL CWnd::GetUpdateRect(LPRECT rect, BOOL) const {
    if (rect)
        *rect = m_update;
    return m_update.IsRectEmpty() ? FALSE : TRUE;
}

void CWnd::UpdateWindow() {
    if (m_hWnd && !m_update.IsRectEmpty())
        SendMessage(WM_PAINT);
}

BOOL CWnd::LockWindowUpdate() {
    if (!m_hWnd || (g_locked && g_locked != this))
        return FALSE;
    g_locked = this;
    return TRUE;
}

void CWnd::UnlockWindowUpdate() {
    if (g_locked != this)
        return;
    g_locked = nullptr;
    if (std::exchange(m_paintHeld, false))
        Invalidate(FALSE);
}

BOOL CWnd::IsUpdateLocked() const {
    return g_locked == this ? TRUE : FALSE;
}

BOOL CWnd::RedrawWindow(LPCRECT rect, void*, UINT flags) {
    if (!m_hWnd)
        return FALSE;
    if (flags & RDW_INVALIDATE)
        InvalidateRect(rect, (flags & RDW_ERASE) ? TRUE : FALSE);
    if (flags & RDW_UPDATENOW)
        UpdateWindow();
    return TRUE;
}

CWnd* CWnd::SetFocus() {
    CWnd* previous = g_focus;
    if (!m_hWnd || previous == this)
        return previous;
    if (previous)
        previous->SendMessage(WM_KILLFOCUS, reinterpret_cast<WPARAM>(this));
    g_focus = this;
    SendMessage(WM_SETFOCUS, reinterpret_cast<WPARAM>(previous));
    return previous;
}

CWnd* CWnd::GetFocus() {
    return g_focus;
}

CWnd::ScrollBarState* CWnd::Bar(int bar) {
    return bar == SB_HORZ ? &m_bars[0] : bar == SB_VERT ? &m_bars[1] : nullptr;
}
const CWnd::ScrollBarState* CWnd::Bar(int bar) const {
    return bar == SB_HORZ ? &m_bars[0] : bar == SB_VERT ? &m_bars[1] : nullptr;
}

void CWnd::Clamp(ScrollBarState& bar) const {
    SCROLLINFO& si = bar.info;
    if (si.nMax < si.nMin)
        si.nMax = si.nMin;
    const int page = si.nPage > 0 ? static_cast<int>(si.nPage) - 1 : 0;
    const int limit = std::max(si.nMin, si.nMax - page);
    si.nPos = std::clamp(si.nPos, si.nMin, limit);
    si.nTrackPos = std::clamp(si.nTrackPos, si.nMin, limit);
}

int CWnd::SetScrollInfo(int bar, LPSCROLLINFO info, BOOL) {
    ScrollBarState* state = Bar(bar);
    if (!state || !info)
        return 0;
    SCROLLINFO& si = state->info;
    if (info->fMask & SIF_RANGE) {
        si.nMin = info->nMin;
        si.nMax = info->nMax;
    }
    if (info->fMask & SIF_PAGE)
        si.nPage = info->nPage;
    if (info->fMask & SIF_POS)
        si.nPos = info->nPos;
    if (info->fMask & SIF_TRACKPOS)
        si.nTrackPos = info->nTrackPos;
    Clamp(*state);
    return si.nPos;
}

BOOL CWnd::GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask) const {
    const ScrollBarState* state = Bar(bar);
    if (!state || !info)
        return FALSE;
    const SCROLLINFO& si = state->info;
    const UINT want = info->fMask ? info->fMask : mask;
    if (want & SIF_RANGE) {
        info->nMin = si.nMin;
        info->nMax = si.nMax;
    }
    if (want & SIF_PAGE)
        info->nPage = si.nPage;
    if (want & SIF_POS)
        info->nPos = si.nPos;
    if (want & SIF_TRACKPOS)
        info->nTrackPos = si.nTrackPos;
    return TRUE;
}

int CWnd::GetScrollPos(int bar) const {
    const ScrollBarState* state = Bar(bar);
    return state ? state->info.nPos : 0;
}

int CWnd::SetScrollPos(int bar, int pos, BOOL redraw) {
    const int before = GetScrollPos(bar);
    SCROLLINFO si;
    si.fMask = SIF_POS;
    si.nPos = pos;
    SetScrollInfo(bar, &si, redraw);
    return before;
}

void CWnd::GetScrollRange(int bar, LPINT minPos, LPINT maxPos) const {
    const ScrollBarState* state = Bar(bar);
    if (minPos)
        *minPos = state ? state->info.nMin : 0;
    if (maxPos)
        *maxPos = state ? state->info.nMax : 0;
}

void CWnd::SetScrollRange(int bar, int minPos, int maxPos, BOOL redraw) {
    SCROLLINFO si;
    si.fMask = SIF_RANGE;
    si.nMin = minPos;
    si.nMax = maxPos;
    SetScrollInfo(bar, &si, redraw);
}

int CWnd::GetScrollLimit(int bar) const {
    const ScrollBarState* state = Bar(bar);
    if (!state)
        return 0;
    const int page = state->info.nPage > 0 ? static_cast<int>(state->info.nPage) - 1 : 0;
    return std::max(state->info.nMin, state->info.nMax - page);
}

void CWnd::ShowScrollBar(UINT bar, BOOL show) {
    if (bar == SB_HORZ || bar == SB_BOTH)
        m_bars[0].visible = show != FALSE;
    if (bar == SB_VERT || bar == SB_BOTH)
        m_bars[1].visible = show != FALSE;
}

BOOL CWnd::IsScrollBarVisible(int bar) const {
    const ScrollBarState* state = Bar(bar);
    return state && state->visible ? TRUE : FALSE;
}

UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT elapse, void*) {
    if (!m_hWnd || id == 0)
        return 0;
    m_timers[id] = Timer{elapse, Clock() + std::max<UINT>(elapse, 1)};
    return id;
}

BOOL CWnd::KillTimer(UINT_PTR id) {
    return m_timers.erase(id) ? TRUE : FALSE;
}

CBitmap& CWnd::Surface() {
    CRect client;
    GetClientRect(&client);
    const int width = std::max(1, client.Width()), height = std::max(1, client.Height());
    if (m_surface.GetWidth() != width || m_surface.GetHeight() != height)
        m_surface.CreateFilledBitmap(width, height, RGB(255, 255, 255));
    return m_surface;
}

CPaintDC::CPaintDC(CWnd* wnd) : m_pWnd(wnd) {
    CreateCompatibleDC(nullptr);
    if (wnd) {
        SelectObject(&wnd->Surface());
        wnd->ValidateRect(nullptr);
    }
}

CPaintDC::~CPaintDC() = default;

CClientDC::CClientDC(CWnd* wnd) {
    CreateCompatibleDC(nullptr);
    if (wnd)
        SelectObject(&wnd->Surface());
}
