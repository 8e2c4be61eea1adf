// Controls and control lists: data, copies, look-ups, order and the saved form.
#include "host/bars/controls.h"

#include "host/bars/command_bar.h"
#include "platform/app/menu.h"
#include "platform/files/archive.h"

#include <algorithm>

const CRuntimeClass CVTControl::classCVTControl =
    MakeRuntimeClass<CVTControl>("CVTControl", 1, &CObject::classCObject);
const CRuntimeClass CVTControlButton::classCVTControlButton =
    MakeRuntimeClass<CVTControlButton>("CVTControlButton", 1, &CVTControl::classCVTControl);
const CRuntimeClass CVTControlPopup::classCVTControlPopup =
    MakeRuntimeClass<CVTControlPopup>("CVTControlPopup", 1, &CVTControl::classCVTControl);
const CRuntimeClass CVTControlStatic::classCVTControlStatic =
    MakeRuntimeClass<CVTControlStatic>("CVTControlStatic", 1, &CVTControl::classCVTControl);
const CRuntimeClass CVTControlListBox::classCVTControlListBox =
    MakeRuntimeClass<CVTControlListBox>("CVTControlListBox", 1, &CVTControl::classCVTControl);
const CRuntimeClass CVTControls::classCVTControls =
    MakeRuntimeClass<CVTControls>("CVTControls", 1, &CObject::classCObject);

void CVTControl::SetBeginGroup(BOOL begin) {
    m_dwFlags = begin ? (m_dwFlags | vtFlagBeginGroup) : (m_dwFlags & ~vtFlagBeginGroup);
}

CVTCommandBar* CVTControl::GetParent() const {
    return m_pControls ? m_pControls->GetParent() : nullptr;
}

CVTControl* CVTControl::Clone(BOOL) const {
    auto* copy = static_cast<CVTControl*>(GetRuntimeClass()->CreateObject());
    copy->Copy(this);
    return copy;
}

void CVTControl::Copy(const CVTControl* other) {
    if (other == nullptr || other == this)
        return;
    m_nId = other->m_nId;
    m_strIdName = other->m_strIdName;
    m_strCaption = other->m_strCaption;
    m_strCategory = other->m_strCategory;
    m_strTooltip = other->m_strTooltip;
    m_dwFlags = other->m_dwFlags;
    m_bVisible = other->m_bVisible;
    m_nIconId = other->m_nIconId;
}

void CVTControl::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << static_cast<LONG>(m_nId) << m_strIdName << m_strCaption << m_strCategory
           << m_strTooltip << m_dwFlags << static_cast<LONG>(m_bVisible)
           << static_cast<LONG>(m_nIconId);
        return;
    }
    LONG id = 0, visible = 0, iconId = 0;
    ar >> id >> m_strIdName >> m_strCaption >> m_strCategory >> m_strTooltip >> m_dwFlags >>
        visible >> iconId;
    m_nId = id;
    m_bVisible = visible ? TRUE : FALSE;
    m_nIconId = iconId;
}

CVTControlPopup::~CVTControlPopup() {
    SetCommandBar(nullptr);
}

void CVTControlPopup::SetCommandBar(CVTCommandBar* bar) {
    if (bar == m_pCommandBar)
        return;
    if (bar != nullptr)
        bar->InternalAddRef();
    CVTCommandBar* former = m_pCommandBar;
    m_pCommandBar = bar;
    if (former != nullptr)
        former->InternalRelease();
}

CVTControl* CVTControlPopup::Clone(BOOL recursive) const {
    auto* copy = static_cast<CVTControlPopup*>(CVTControl::Clone(recursive));
    auto* bar = new CVTCommandBar();
    if (recursive && m_pCommandBar != nullptr)
        bar->Copy(m_pCommandBar, TRUE);
    bar->SetCommandBars(m_pCommandBar ? m_pCommandBar->GetCommandBars() : nullptr);
    copy->SetCommandBar(bar);
    bar->InternalRelease();
    return copy;
}

void CVTControlListBox::Copy(const CVTControl* other) {
    CVTControl::Copy(other);
    if (auto* list = dynamic_cast<const CVTControlListBox*>(other))
        m_nLines = list->m_nLines;
}

void CVTControlListBox::Serialize(CArchive& ar) {
    CVTControl::Serialize(ar);
    if (ar.IsStoring()) {
        ar << static_cast<LONG>(m_nLines);
    } else {
        LONG lines = 0;
        ar >> lines;
        SetLinesCount(lines);
    }
}

CVTControls::~CVTControls() {
    RemoveAll();
}

CVTControl* CVTControls::GetAt(int index) const {
    if (index < 0 || index >= GetCount())
        return nullptr;
    return m_controls[static_cast<std::size_t>(index)];
}

CVTControl* CVTControls::Add(VTControlType type, long id, const char* caption, int before) {
    CVTControl* control;
    switch (type) {
    case vtControlPopup: {
        auto* popup = new CVTControlPopup();
        auto* bar = new CVTCommandBar();
        bar->SetCommandBars(m_pCommandBars);
        popup->SetCommandBar(bar);
        bar->InternalRelease();
        control = popup;
        break;
    }
    case vtControlStatic:
        control = new CVTControlStatic();
        break;
    case vtControlListBox:
        control = new CVTControlListBox();
        break;
    default:
        control = new CVTControlButton();
        break;
    }
    control->SetID(id);
    control->SetCaption(caption);
    return Add(control, before);
}

CVTControl* CVTControls::Add(CVTControl* control, int before) {
    if (control == nullptr)
        return nullptr;
    const int count = GetCount();
    const int at = before < 0 || before > count ? count : before;
    m_controls.insert(m_controls.begin() + at, control);
    control->m_pControls = this;
    if (auto* popup = dynamic_cast<CVTControlPopup*>(control); popup && popup->GetCommandBar())
        popup->GetCommandBar()->SetCommandBars(m_pCommandBars);
    return control;
}

CVTControl* CVTControls::AddClone(const CVTControl* control, int before, BOOL recursive) {
    if (control == nullptr)
        return nullptr;
    return Add(control->Clone(recursive), before);
}

void CVTControls::AddClone(const CVTControls* controls, BOOL recursive) {
    if (controls == nullptr || controls == this)
        return;
    for (const CVTControl* control : controls->m_controls)
        AddClone(control, -1, recursive);
}

CVTControl* CVTControls::AddMenuItem(CMenu* menu, int position) {
    if (menu == nullptr || position < 0 || position >= menu->GetMenuItemCount())
        return nullptr;
    CString caption;
    menu->GetMenuString(static_cast<UINT>(position), caption, MF_BYPOSITION);
    const UINT state = menu->GetMenuState(static_cast<UINT>(position), MF_BYPOSITION);
    if (CMenu* sub = menu->GetSubMenu(position)) {
        auto* popup = static_cast<CVTControlPopup*>(Add(vtControlPopup, 0, caption));
        popup->GetCommandBar()->LoadMenu(sub);
        return popup;
    }
    const UINT id = menu->GetMenuItemID(position);
    if (id == 0 || (state & MF_SEPARATOR))
        return nullptr;
    CVTControl* control = Add(vtControlButton, static_cast<long>(id), caption);
    if (state & (MF_GRAYED | MF_DISABLED))
        control->SetFlags(control->GetFlags() | vtFlagDisabled);
    if (state & MF_CHECKED)
        control->SetFlags(control->GetFlags() | vtFlagChecked);
    return control;
}

CVTControls* CVTControls::Duplicate(BOOL recursive) const {
    auto* copy = new CVTControls();
    copy->m_pCommandBars = m_pCommandBars;
    copy->AddClone(this, recursive);
    return copy;
}

void CVTControl::DelayRedrawParent() {
    if (CVTCommandBar* bar = GetParent())
        bar->DelayRedraw();
}

CListBox* CVTControlListBox::GetListCtrl() {
    if (!m_pListCtrl) {
        m_pListCtrl = std::make_unique<CListBox>();
        m_pListCtrl->Create(nullptr, nullptr, LBS_MULTIPLESEL | LBS_NOTIFY, RECT{0, 0, 0, 0},
                            nullptr, static_cast<UINT>(m_nId));
    }
    return m_pListCtrl.get();
}

namespace {

template <class Match>
CVTControl* FindDepthFirst(const CVTControls* list, const Match& match, bool deep) {
    for (int i = 0; i < list->GetCount(); ++i) {
        CVTControl* control = list->GetAt(i);
        if (match(control))
            return control;
        if (!deep)
            continue;
        if (auto* popup = dynamic_cast<CVTControlPopup*>(control);
            popup && popup->GetCommandBar()) {
            if (CVTControls* inner = popup->GetCommandBar()->GetControls()) {
                if (CVTControl* found = FindDepthFirst(inner, match, deep))
                    return found;
            }
        }
    }
    return nullptr;
}

} // namespace

CVTControl* CVTControls::FindControl(long id) const {
    return FindDepthFirst(
        this, [id](const CVTControl* c) { return c->GetID() == id; }, true);
}

CVTControl* CVTControls::FindControl(const char* idName) const {
    if (idName == nullptr || *idName == 0)
        return nullptr;
    return FindDepthFirst(
        this, [idName](const CVTControl* c) { return c->GetIdName().CompareNoCase(idName) == 0; },
        true);
}

CVTControl* CVTControls::FindControl(int type, long id, BOOL visible, BOOL recursive) const {
    return FindDepthFirst(
        this,
        [=](const CVTControl* c) {
            return (type == vtControlError || c->GetType() == type) && c->GetID() == id &&
                   (!visible || c->IsVisible());
        },
        recursive != FALSE);
}

int CVTControls::IndexOf(const CVTControl* control) const {
    auto it = std::find(m_controls.begin(), m_controls.end(), control);
    return it == m_controls.end() ? -1 : static_cast<int>(it - m_controls.begin());
}

void CVTControls::MoveBefore(CVTControl* control, int index) {
    const int from = IndexOf(control);
    if (from < 0)
        return;
    int to = std::clamp(index, 0, GetCount());
    if (to > from)
        --to; // the control's own place closes up first
    m_controls.erase(m_controls.begin() + from);
    m_controls.insert(m_controls.begin() + to, control);
}

void CVTControls::Remove(CVTControl* control) {
    RemoveAt(IndexOf(control));
}

void CVTControls::RemoveAt(int index) {
    if (index < 0 || index >= GetCount())
        return;
    CVTControl* control = m_controls[static_cast<std::size_t>(index)];
    m_controls.erase(m_controls.begin() + index);
    control->m_pControls = nullptr;
    control->InternalRelease();
}

void CVTControls::RemoveAll() {
    std::vector<CVTControl*> controls;
    controls.swap(m_controls);
    for (CVTControl* control : controls) {
        control->m_pControls = nullptr;
        control->InternalRelease();
    }
}

void CVTControls::SetControlIdName(long id, const char* name) {
    for (CVTControl* control : m_controls) {
        if (control->GetID() == id)
            control->SetIdName(name);
        if (auto* popup = dynamic_cast<CVTControlPopup*>(control);
            popup && popup->GetCommandBar()) {
            if (CVTControls* inner = popup->GetCommandBar()->GetControls(); inner && inner != this)
                inner->SetControlIdName(id, name);
        }
    }
}

void CVTControls::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar.WriteCount(m_controls.size());
        for (const CVTControl* control : m_controls)
            ar.WriteObject(control);
        return;
    }
    const DWORD_PTR count = ar.ReadCount();
    for (DWORD_PTR i = 0; i < count; ++i)
        Add(static_cast<CVTControl*>(ReadBarObject(ar, &CVTControl::classCVTControl)));
}
