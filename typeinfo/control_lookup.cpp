// Whether a command bar control stands in a list, popups' bars included.
#include "typeinfo/instance_helpers.h"

#include "host/bars/command_bar.h"
#include "host/bars/controls.h"

int TVPfxIsControlExist(CVTControls* controls, CVTControl* control) {
    if (controls == nullptr || control == nullptr)
        return 0;
    for (int i = 0; i < controls->GetCount(); ++i) {
        CVTControl* candidate = controls->GetAt(i);
        if (candidate == control)
            return 1;
        if (candidate != nullptr && candidate->GetType() == vtControlPopup) {
            CVTCommandBar* bar = static_cast<CVTControlPopup*>(candidate)->GetCommandBar();
            if (bar != nullptr && TVPfxIsControlExist(bar->GetControls(), control) != 0)
                return 1;
        }
    }
    return 0;
}
