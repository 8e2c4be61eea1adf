// CCmdUI: what a command's update handler is asked to set for a menu item or a button.
#pragma once

#include "platform/core/win_types.h"

class CCmdUI {
public:
    explicit CCmdUI(UINT id = 0) : m_nID(id) {}
    virtual ~CCmdUI() = default;
    virtual void Enable(BOOL on = TRUE) { m_bEnabled = on != FALSE; }
    virtual void SetCheck(int check = 1) { m_nCheck = check; }

    UINT m_nID;
    bool m_bEnabled = true;
    int m_nCheck = 0;
};
