// The caption beside a host's drop-down list of undo or redo steps: "Undo 3 action(s)" for the
// rows the user has selected so far.
#include "editor/syntax_edit.h"

#include "host/bars/command_bar.h"
#include "host/bars/controls.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <string>

namespace {
constexpr long UndoCommand = 57643;

// The text with the first "%d" replaced by the number and "%%" by "%". Any other '%' stays as
// it is, so a translated text with a wrong placeholder shows oddly but cannot do harm.
CString FillInCount(const std::string& format, int count) {
    std::string out;
    bool filled = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '%' && i + 1 < format.size()) {
            if (format[i + 1] == '%') {
                out += '%';
                ++i;
                continue;
            }
            if (format[i + 1] == 'd' && !filled) {
                out += std::to_string(count);
                filled = true;
                ++i;
                continue;
            }
        }
        out += format[i];
    }
    return CString(out);
}
} // namespace

void CTalvorSyntaxEdit::SetUndoMessage(CVTControlListBox* pList) {
    if (!pList)
        return;
    CVTCommandBar* bar = pList->GetParent();
    if (!bar)
        return;
    CVTControl* caption = nullptr;
    for (int i = 0; i < bar->GetControlCount(); ++i) {
        CVTControl* control = bar->GetControl(i);
        if (control && control->IsKindOf(&CVTControlStatic::classCVTControlStatic) &&
            control->GetID() == pList->GetID()) {
            caption = control;
            break;
        }
    }
    if (!caption)
        return;
    const std::string format = talvor::resources::LoadTalvorString(
        pList->GetID() == UndoCommand ? IDS_UNDO_ACTIONS : IDS_REDO_ACTIONS);
    const auto rows = static_cast<int>(pList->GetListCtrl()->SendMessage(LB_GETSELCOUNT));
    caption->SetCaption(FillInCount(format, rows).GetString());
    caption->DelayRedrawParent();
}
