// CTalvorFindDialog: the modeless base of the host's find and replace dialogs. It knows the
// window it works on, tells whether it is open and shown, and keeps itself out of the way of
// the text that was found. The search itself is the host's.
#pragma once

#include "host/core/vp_resize.h"

class CTalvorFindDialog : public CVPResizeDialog {
public:
    CTalvorFindDialog();
    CTalvorFindDialog(UINT nID, CWnd* pParent, UINT nFlags);
    ~CTalvorFindDialog() override;

    // Stores the target, shows the window and gives it the focus.
    void Do(CWnd* pWnd);
    // 1 when the dialog has a window.
    int IsOpen();
    // 1 when it is open and shown (show command 5); a hidden or minimised dialog gives 0.
    int IsVisible();

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTalvorFindDialog; }
    static const CRuntimeClass classCTalvorFindDialog;

    CWnd* m_pTargetWnd;

protected:
    // Moves the dialog up or down, out of the way of the selection's start in the target when
    // that lies under it; only the vertical position changes.
    void AdjustPosition();
    void OnDestroy() override;
};
