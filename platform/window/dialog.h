// CDialog: a modeless dialog window made from a template id (the template's controls are the
// host's), and the screen's metrics a dialog places itself by.
#pragma once

#include "platform/window/wnd.h"

constexpr DWORD WS_POPUP = 0x80000000;
constexpr int SM_CXSCREEN = 0;
constexpr int SM_CYSCREEN = 1;

// The screen's width and height in pixels; 1920 x 1080 until a host sets its own.
int GetSystemMetrics(int index);

namespace talvor::platform {
void SetScreenSize(int width, int height);
} // namespace talvor::platform

class CDialog : public CWnd {
public:
    CDialog() = default;
    explicit CDialog(UINT nIDTemplate, CWnd* pParent = nullptr)
        : m_nIDHelp(nIDTemplate), m_pParentWnd(pParent) {}

    // Makes the dialog's window, hidden, at the placement it has (nothing shown yet).
    BOOL Create(UINT nIDTemplate, CWnd* pParent = nullptr);
    UINT GetTemplateID() const { return m_nIDHelp; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCDialog; }
    static const CRuntimeClass classCDialog;

protected:
    UINT m_nIDHelp = 0;
    CWnd* m_pParentWnd = nullptr;
};
