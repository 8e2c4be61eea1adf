// CVPResize and CVPResizeDialog: the maker library's list of a dialog's controls that follow
// its size, and the dialog that keeps one.
#pragma once

#include "platform/window/dialog.h"

#include <utility>
#include <vector>

class CVPResize {
public:
    virtual ~CVPResize() = default;
    // A control by its id with the way it follows the dialog's size.
    void AddControl(UINT nID, UINT nFlags) { m_controls.emplace_back(nID, nFlags); }
    void RemoveAllControls() { m_controls.clear(); }
    int GetControlCount() const { return static_cast<int>(m_controls.size()); }

private:
    std::vector<std::pair<UINT, UINT>> m_controls;
};

class CVPResizeDialog : public CDialog, public CVPResize {
public:
    CVPResizeDialog() = default;
    CVPResizeDialog(UINT nID, CWnd* pParent, UINT nFlags = 0)
        : CDialog(nID, pParent), m_nResizeFlags(nFlags) {}
    UINT GetResizeFlags() const { return m_nResizeFlags; }

private:
    UINT m_nResizeFlags = 0;
};
