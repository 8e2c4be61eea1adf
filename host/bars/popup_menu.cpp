// Popup menus tracked at a point: the menu becomes a popup bar, which the host's handler
// answers in place of a user.
#include "host/bars/command_bars.h"

#include "platform/app/menu.h"
#include "platform/window/wnd.h"

#include <utility>

namespace {
talvor::host::PopupMenuHandler& Handler() {
    static talvor::host::PopupMenuHandler handler;
    return handler;
}
} // namespace

BOOL CVTCommandBars::TrackPopupMenu(CMenu* pMenu, UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT,
                                    CWnd* pWndOwner, CVTCommandBars* pCommandBars) {
    if (!pMenu || pMenu->GetMenuItemCount() <= 0)
        return FALSE;
    CVTCommandBar* popup = new CVTCommandBar;
    popup->SetPosition(vtBarPopup);
    popup->SetCommandBars(pCommandBars);
    popup->LoadMenu(pMenu);
    const UINT picked = Handler() ? Handler()(*popup, nFlags, POINT{x, y}) : 0;
    popup->InternalRelease();
    if (nFlags & TPM_RETURNCMD)
        return static_cast<BOOL>(picked);
    CWnd* target = pWndOwner ? pWndOwner : pWnd;
    if (picked && target)
        target->PostMessage(WM_COMMAND, picked);
    return TRUE;
}

namespace talvor::host {

PopupMenuHandler SetPopupMenuHandler(PopupMenuHandler handler) {
    return std::exchange(Handler(), std::move(handler));
}

} // namespace talvor::host
