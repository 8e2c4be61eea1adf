// Naming of command bar controls and the building of the designer's pool.
#include "commands/cmd_resource.h"

#include "commands/detail/standard_id_names.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

using talvor::commands::FindStandardIdName;
using talvor::commands::IsExcludedCommand;
using talvor::commands::StandardIdName;
using talvor::commands::StandardIdNames;

namespace {

constexpr UINT BuiltInMenuId = 5416;

CString MenusCategory() {
    return CString(talvor::resources::LoadTalvorString(IDS_MENUS_CATEGORY));
}

} // namespace

void CTalvorCmdResource::SetDefaultIdName() {
    if (m_pControls == nullptr)
        return;
    for (const StandardIdName& row : StandardIdNames()) {
        CVTControl* control = m_pControls->FindControl(static_cast<long>(row.id));
        if (control != nullptr && control->GetIdName().IsEmpty())
            m_pControls->SetControlIdName(static_cast<long>(row.id), row.name);
    }
}

void CTalvorCmdResource::InitCommandBarIdName(CVTControls* controls) {
    if (controls != nullptr) {
        for (const StandardIdName& row : StandardIdNames()) {
            if (controls->FindControl(static_cast<long>(row.id)) != nullptr)
                controls->SetControlIdName(static_cast<long>(row.id), row.name);
        }
        return;
    }
    CVTCommandBars* bars = m_pControls ? m_pControls->GetCommandBars() : nullptr;
    if (bars == nullptr)
        return;
    for (int i = 0; i < bars->GetCount(); ++i) {
        if (CVTControls* barControls = bars->GetAt(i)->GetControls())
            InitCommandBarIdName(barControls);
    }
}

CString CTalvorCmdResource::GetDefaultIdName(unsigned int id, CVTControls* controls) {
    const long controlId = static_cast<long>(id);
    if (controls != nullptr) {
        CVTControl* control = controls->FindControl(controlId);
        if (control != nullptr && !control->GetIdName().IsEmpty())
            return control->GetIdName();
    } else {
        CVTControl* control = m_pControls ? m_pControls->FindControl(controlId) : nullptr;
        if (control != nullptr && !control->GetIdName().IsEmpty())
            return control->GetIdName();
        if (const char* standard = FindStandardIdName(id))
            return CString(standard);
    }
    // A made-up name counts upward from the id until no control of the pool bears it.
    int number = static_cast<int>(id);
    CString name;
    name.Format("ID_%d", number);
    while (m_pControls != nullptr && m_pControls->FindControl(name.GetString()) != nullptr)
        name.Format("ID_%d", ++number);
    return name;
}

void CTalvorCmdResource::InitControlIdName(CVTControl* control, CVTControls* controls) {
    if (control != nullptr) {
        if (control->GetID() == 0)
            return;
        if (control->GetIdName().IsEmpty())
            control->SetIdName(
                GetDefaultIdName(static_cast<unsigned int>(control->GetID()), controls));
        return;
    }
    if (m_pControls == nullptr)
        return;
    // The count is read anew at each step: naming never changes it, but a caller's list may.
    for (int i = 0; i < m_pControls->GetCount(); ++i) {
        CVTControl* item = m_pControls->GetAt(i);
        if (IsExcludedCommand(item->GetID()))
            continue;
        InitControlIdName(item, controls);
        auto* popup = dynamic_cast<CVTControlPopup*>(item);
        if (popup == nullptr || popup->GetCommandBar() == nullptr)
            continue;
        for (int j = 0; j < popup->GetCommandBar()->GetControlCount(); ++j)
            InitControlIdName(popup->GetCommandBar()->GetControl(j), controls);
    }
}

void CTalvorCmdResource::BuildControls(CVTControls* controls) {
    CVTCommandBars* bars = m_pControls ? m_pControls->GetCommandBars() : nullptr;
    CVTCommandBar* menuBar = bars ? bars->GetMenuBar() : nullptr;
    if (menuBar == nullptr)
        return;
    for (int i = 0; i < menuBar->GetControlCount(); ++i) {
        CVTControl* item = menuBar->GetControl(i);
        auto* popup = dynamic_cast<CVTControlPopup*>(item);
        if (popup == nullptr) {
            if (CVTControl* copy = m_pControls->AddClone(item, -1, FALSE)) {
                copy->SetCategory("");
                InitControlIdName(copy, controls);
            }
            continue;
        }
        const CString category = CVTPaintManager::StripMnemonics(popup->GetCaption());
        CVTCommandBar* popupBar = popup->GetCommandBar();
        for (int j = 0; popupBar != nullptr && j < popupBar->GetControlCount(); ++j) {
            if (CVTControl* copy = m_pControls->AddClone(popupBar->GetControl(j), -1, FALSE)) {
                copy->SetCategory(category);
                InitControlIdName(copy, controls);
            }
        }
    }
}

int CTalvorCmdResource::ResetBuildInControls(CVTControls* controls) {
    if (m_pControls == nullptr)
        return 1;
    m_pControls->RemoveAll();
    CVTCommandBars* bars = m_pControls->GetCommandBars();
    CVTCommandBar* menuBar = bars ? bars->GetMenuBar() : nullptr;
    if (menuBar == nullptr)
        return 1;
    const CString category = MenusCategory();
    BuildControls(controls);
    for (int i = 0; i < menuBar->GetControlCount(); ++i) {
        if (CVTControl* copy = m_pControls->AddClone(menuBar->GetControl(i), -1, TRUE)) {
            copy->SetCategory(category);
            InitControlIdName(copy, controls);
        }
    }
    return 1;
}

int CTalvorCmdResource::AddBuildInControls(CVTControls* controls) {
    const CString category = MenusCategory();
    CMenu menu;
    {
        talvor::resources::ResourceGuard guard;
        if (guard.IsSelected())
            menu.LoadMenu(BuiltInMenuId);
    }
    const int result = AddCategory(category, &menu, controls);
    menu.DestroyMenu();
    return result;
}

int CTalvorCmdResource::AddCategory(CString category, CMenu* menu, CVTControls* controls) {
    const CString stripped = CVTPaintManager::StripMnemonics(category);
    if (menu == nullptr || m_pControls == nullptr)
        return 1;
    for (int position = 0; position < menu->GetMenuItemCount(); ++position) {
        const UINT id = menu->GetMenuItemID(position);
        if (id != 0) {
            if (CVTControl* control = m_pControls->AddMenuItem(menu, position)) {
                control->SetCategory(stripped);
                InitControlIdName(control, controls);
            }
            continue;
        }
        // An item of id 0 with a sub-menu lists the sub-menu's items under its caption.
        if (CMenu* sub = menu->GetSubMenu(position)) {
            CString caption;
            menu->GetMenuString(static_cast<UINT>(position), caption, MF_BYPOSITION);
            AddCategory(caption, sub, controls);
        }
    }
    return 1;
}
