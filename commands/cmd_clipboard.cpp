// Clipboard forms of controls and bars. Each object is written with WriteObject, so the
// archive's class records come before it; the forms add no tags or counts of their own.
#include "commands/cmd_clipboard.h"

#include "commands/detail/standard_id_names.h"
#include "platform/files/archive.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

using talvor::commands::IsExcludedCommand;

namespace {

// Popups in popups deeper than this are refused as damaged rather than followed down the stack.
constexpr int MaxTreeDepth = 64;
thread_local int treeDepth = 0;

struct DepthStep {
    DepthStep() {
        if (++treeDepth > MaxTreeDepth) {
            --treeDepth;
            AfxThrowArchiveException(CArchiveException::badIndex);
        }
    }
    ~DepthStep() { --treeDepth; }
    DepthStep(const DepthStep&) = delete;
    DepthStep& operator=(const DepthStep&) = delete;
};

// An object of the class, read once; null and other classes are badClass.
template <class T> T* ReadRequired(CArchive& archive, const CRuntimeClass* required) {
    CVTCmdTarget* object = ReadBarObject(archive, required, /*allowNull=*/true);
    if (object == nullptr)
        AfxThrowArchiveException(CArchiveException::badClass);
    return static_cast<T*>(object);
}

// Gives up the reading's reference when the operation ends, however it ends. The object stays
// alive until then, so that a later reference to it in the stream never meets freed memory.
struct ReadReference {
    explicit ReadReference(CVTCmdTarget* object) : m_object(object) {}
    ~ReadReference() { m_object->InternalRelease(); }
    ReadReference(const ReadReference&) = delete;
    ReadReference& operator=(const ReadReference&) = delete;
    CVTCmdTarget* m_object;
};

} // namespace

void CTalvorCmdClipboard::SaveToClipboard(CArchive& archive, CVTControl* control) {
    archive.WriteObject(control);
    if (auto* popup = dynamic_cast<CVTControlPopup*>(control))
        _SaveToClipboard(archive, popup);
}

void CTalvorCmdClipboard::SaveToClipboard(CArchive& archive, CVTCommandBar* bar) {
    archive.WriteObject(bar);
    if (bar == nullptr)
        return;
    for (int i = 0; i < bar->GetControlCount(); ++i) {
        auto* popup = dynamic_cast<CVTControlPopup*>(bar->GetControl(i));
        if (popup != nullptr && !IsExcludedCommand(popup->GetID()))
            _SaveToClipboard(archive, popup);
    }
}

void CTalvorCmdClipboard::_SaveToClipboard(CArchive& archive, CVTControlPopup* popup) {
    CVTCommandBar* bar = popup->GetCommandBar();
    if (bar == nullptr) {
        // A popup without a bar is written with an empty one, so the form stays readable.
        CVTCommandBar empty;
        archive.WriteObject(&empty);
        return;
    }
    archive.WriteObject(bar);
    for (int i = 0; i < bar->GetControlCount(); ++i) {
        if (auto* inner = dynamic_cast<CVTControlPopup*>(bar->GetControl(i)))
            _SaveToClipboard(archive, inner);
    }
}

int CTalvorCmdClipboard::_LoadFromClipboard(CArchive& archive, CVTControlPopup* popup,
                                            CVTCommandBars* bars) {
    DepthStep step;
    auto* bar = ReadRequired<CVTCommandBar>(archive, &CVTCommandBar::classCVTCommandBar);
    bar->SetCommandBars(bars);
    popup->SetCommandBar(bar);
    // The popup holds the bar from here on; the reading's reference goes.
    bar->InternalRelease();
    for (int i = 0; i < bar->GetControlCount(); ++i) {
        if (auto* inner = dynamic_cast<CVTControlPopup*>(bar->GetControl(i))) {
            if (!_LoadFromClipboard(archive, inner, bars))
                return 0;
        }
    }
    return 1;
}

CVTControl* CTalvorCmdClipboard::LoadFromClipboard(CArchive& archive, CVTControls* controls) {
    auto* control = ReadRequired<CVTControl>(archive, &CVTControl::classCVTControl);
    ReadReference read(control);
    if (controls == nullptr)
        return nullptr;
    CVTControl* clone = controls->AddClone(control, 1, FALSE);
    controls->MoveBefore(clone, controls->GetCount());
    auto* popup = dynamic_cast<CVTControlPopup*>(clone);
    if (popup == nullptr)
        return clone;
    try {
        if (!_LoadFromClipboard(archive, popup, controls->GetCommandBars())) {
            controls->Remove(clone);
            return nullptr;
        }
    } catch (...) {
        controls->Remove(clone);
        throw;
    }
    return clone;
}

CVTCommandBar* CTalvorCmdClipboard::LoadFromClipboard(CArchive& archive, CVTCommandBars* bars) {
    auto* bar = ReadRequired<CVTCommandBar>(archive, &CVTCommandBar::classCVTCommandBar);
    ReadReference read(bar);
    bar->SetCommandBars(bars);
    for (int i = 0; i < bar->GetControlCount(); ++i) {
        if (auto* popup = dynamic_cast<CVTControlPopup*>(bar->GetControl(i))) {
            if (!_LoadFromClipboard(archive, popup, bars))
                return nullptr;
        }
    }
    if (bars == nullptr)
        return nullptr;
    // A design has at most one menu bar and one bar of id 2.
    if (bar->GetBarID() == IDR_MENUBAR && bars->FindCommandBar(IDR_MENUBAR) != nullptr)
        return nullptr;
    if (bar->GetBarID() == IDR_POPUPMENU && bars->FindCommandBar(IDR_POPUPMENU) != nullptr)
        return nullptr;
    if (!_CheckControlID(bar->GetControls(), bars))
        return nullptr;

    const UINT id = bars->GetUniqueBarID(bar->GetBarID());
    bar->SetBarID(id);
    bar->SetBarIDName(bars->GetUniqueBarIDName(bar->GetBarIDName()));
    CString title = bar->GetTitle();
    if (title.IsEmpty())
        title = talvor::resources::LoadTalvorString(IDS_STANDARD_BAR_TITLE).c_str();
    // The number goes behind the first title: "Tools", "Tools1", "Tools2".
    const CString baseTitle = title;
    for (int number = 1; bars->FindCommandBar(title, TRUE) != nullptr; ++number)
        title.Format("%s%d", baseTitle.GetString(), number);

    CVTCommandBar* added = bars->Add(title, id == IDR_POPUPMENU ? vtBarTop : vtBarFloating,
                                     &CVTMenuBar::classCVTMenuBar);
    if (added == nullptr)
        return nullptr;
    added->Copy(bar, TRUE);
    if (id == IDR_MENUBAR) {
        bars->SetMenuBar(added, IDR_MENUBAR);
    } else if (id == IDR_POPUPMENU) {
        added->SetFlags(8, 0);
        static_cast<CVTToolBar*>(added)->EnableDocking(0x30);
    } else {
        added->SetTitle(title);
    }
    return added;
}

int CTalvorCmdClipboard::_CheckControlID(CVTControls* controls, CVTCommandBars* bars) {
    if (controls == nullptr || bars == nullptr)
        return 1;
    for (int i = 0; i < controls->GetCount(); ++i) {
        CVTControl* control = controls->GetAt(i);
        if (IsExcludedCommand(control->GetID()))
            continue;
        if (auto* popup = dynamic_cast<CVTControlPopup*>(control)) {
            if (popup->GetCommandBar() != nullptr)
                _CheckControlID(popup->GetCommandBar()->GetControls(), bars);
            continue;
        }
        // Two controls of one id with different names don't refuse a paste: the pasted
        // control keeps the name it came with.
        if (CVTControl* existing = bars->FindControl(control->GetID()))
            (void)existing->GetIdName().CompareNoCase(control->GetIdName());
    }
    return 1;
}
