// The find dialog's target, its open and visible tests, and its move out of the way of a hit.
#include "editor/find_dialog.h"

#include "platform/richedit/rich_edit_ctrl.h"

const CRuntimeClass CTalvorFindDialog::classCTalvorFindDialog =
    MakeRuntimeClass<CTalvorFindDialog>("CTalvorFindDialog", 0xFFFF, &CDialog::classCDialog);

CTalvorFindDialog::CTalvorFindDialog() : m_pTargetWnd(nullptr) {}

CTalvorFindDialog::CTalvorFindDialog(UINT nID, CWnd* pParent, UINT nFlags)
    : CVPResizeDialog(nID, pParent, nFlags), m_pTargetWnd(nullptr) {}

CTalvorFindDialog::~CTalvorFindDialog() = default;

void CTalvorFindDialog::Do(CWnd* pWnd) {
    m_pTargetWnd = pWnd;
    ShowWindow(SW_SHOW);
    SetFocus();
}

int CTalvorFindDialog::IsOpen() {
    return GetSafeHwnd() ? 1 : 0;
}

int CTalvorFindDialog::IsVisible() {
    return IsOpen() && GetShowCommand() == SW_SHOW ? 1 : 0;
}

void CTalvorFindDialog::AdjustPosition() {
    if (!m_pTargetWnd || !m_pTargetWnd->IsKindOf(&CRichEditCtrl::classCRichEditCtrl))
        return;
    auto* edit = static_cast<CRichEditCtrl*>(m_pTargetWnd);
    long start = 0, end = 0;
    edit->GetSel(start, end);
    POINT p = edit->PosFromChar(static_cast<UINT>(start));
    edit->ClientToScreen(&p);
    CRect r;
    GetWindowRect(&r);
    if (!r.PtInRect(p))
        return;
    const int h = r.Height();
    if (p.y > h)
        r.OffsetRect(0, p.y - 20 - r.bottom);
    else if (h + p.y < GetSystemMetrics(SM_CYSCREEN))
        r.OffsetRect(0, p.y + 40 - r.top);
    MoveWindow(r, TRUE);
}

void CTalvorFindDialog::OnDestroy() {
    RemoveAllControls();
    CVPResizeDialog::OnDestroy();
}
