// The right mouse button: a writable editor offers its context menu at the cursor, and the
// control then does its own handling of the button all the same.
#include "editor/syntax_edit.h"

#include "host/bars/command_bars.h"
#include "platform/app/menu.h"
#include "platform/window/input_state.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

void CTalvorSyntaxEdit::OnRButtonDown(UINT nFlags, CPoint pt) {
    if ((GetStyle() & ES_READONLY) == 0) {
        CPoint cursor;
        GetCursorPos(&cursor);
        CMenu menu;
        bool loaded = false;
        {
            talvor::resources::ResourceGuard guard;
            loaded = menu.LoadMenu(IDR_EDITOR_CONTEXT_MENU) != FALSE;
        }
        if (loaded) {
            if (CMenu* popup = menu.GetSubMenu(0))
                CVTCommandBars::TrackPopupMenu(popup, TPM_RIGHTBUTTON, cursor.x, cursor.y, this);
        }
    }
    CRichEditCtrl::OnRButtonDown(nFlags, pt);
}
