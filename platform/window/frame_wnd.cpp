// Window text, placement and show state.
#include "platform/window/frame_wnd.h"

const CRuntimeClass CWnd::classCWnd =
    MakeRuntimeClass<CWnd>("CWnd", 0xFFFF, &CObject::classCObject);
const CRuntimeClass CFrameWnd::classCFrameWnd =
    MakeRuntimeClass<CFrameWnd>("CFrameWnd", 0xFFFF, &CWnd::classCWnd);
const CRuntimeClass CMDIFrameWnd::classCMDIFrameWnd =
    MakeRuntimeClass<CMDIFrameWnd>("CMDIFrameWnd", 0xFFFF, &CFrameWnd::classCFrameWnd);

void CWnd::MoveWindow(int x, int y, int width, int height) {
    m_rect.left = x;
    m_rect.top = y;
    m_rect.right = x + (width < 0 ? 0 : width);
    m_rect.bottom = y + (height < 0 ? 0 : height);
}

void CWnd::MoveWindow(const RECT& rect) {
    MoveWindow(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
}

void CWnd::GetWindowRect(RECT* rect) const {
    if (rect)
        *rect = m_rect;
}

BOOL CWnd::ShowWindow(int showCommand) {
    const BOOL wasVisible = IsWindowVisible();
    m_nShowCmd = showCommand;
    return wasVisible;
}
