// Dialog windows and the screen's size.
#include "platform/window/dialog.h"

namespace {
int g_screenWidth = 1920;
int g_screenHeight = 1080;
} // namespace

const CRuntimeClass CDialog::classCDialog =
    MakeRuntimeClass<CDialog>("CDialog", 0xFFFF, &CWnd::classCWnd);

int GetSystemMetrics(int index) {
    switch (index) {
    case SM_CXSCREEN:
        return g_screenWidth;
    case SM_CYSCREEN:
        return g_screenHeight;
    default:
        return 0;
    }
}

namespace talvor::platform {
void SetScreenSize(int width, int height) {
    g_screenWidth = width > 0 ? width : 1;
    g_screenHeight = height > 0 ? height : 1;
}
} // namespace talvor::platform

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParent) {
    if (nIDTemplate)
        m_nIDHelp = nIDTemplate;
    if (pParent)
        m_pParentWnd = pParent;
    return CreateEx(0, "#32770", nullptr, WS_POPUP, m_rect, m_pParentWnd, 0);
}
