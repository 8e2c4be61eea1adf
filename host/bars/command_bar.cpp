// Command bars: identity, copies, filling from resources, and the saved form of one bar.
#include "host/bars/command_bar.h"

#include "host/bars/command_bars.h"
#include "platform/app/menu.h"
#include "platform/app/resource_module.h"
#include "platform/files/archive.h"

const CRuntimeClass CVTCommandBar::classCVTCommandBar =
    MakeRuntimeClass<CVTCommandBar>("CVTCommandBar", 1, &CObject::classCObject);
const CRuntimeClass CVTToolBar::classCVTToolBar =
    MakeRuntimeClass<CVTToolBar>("CVTToolBar", 1, &CVTCommandBar::classCVTCommandBar);
const CRuntimeClass CVTMenuBar::classCVTMenuBar =
    MakeRuntimeClass<CVTMenuBar>("CVTMenuBar", 1, &CVTToolBar::classCVTToolBar);

CVTCommandBar::CVTCommandBar() : m_pControls(new CVTControls()) {
    m_pControls->SetParent(this);
}

CVTCommandBar::~CVTCommandBar() {
    if (m_pControls != nullptr) {
        if (m_pControls->GetParent() == this)
            m_pControls->SetParent(nullptr);
        m_pControls->InternalRelease();
    }
}

void CVTCommandBar::SetCommandBars(CVTCommandBars* bars) {
    m_pCommandBars = bars;
    if (m_pControls == nullptr)
        return;
    m_pControls->SetCommandBars(bars);
    for (int i = 0; i < m_pControls->GetCount(); ++i) {
        auto* popup = dynamic_cast<CVTControlPopup*>(m_pControls->GetAt(i));
        if (popup && popup->GetCommandBar() && popup->GetCommandBar() != this)
            popup->GetCommandBar()->SetCommandBars(bars);
    }
}

void CVTCommandBar::Copy(const CVTCommandBar* other, BOOL recursive) {
    if (other == nullptr || other == this)
        return;
    m_nBarID = other->m_nBarID;
    m_strBarIDName = other->m_strBarIDName;
    m_strTitle = other->m_strTitle;
    m_dwFlags = other->m_dwFlags;
    m_nPosition = other->m_nPosition;
    m_dwDockingSides = other->m_dwDockingSides;
    m_bVisible = other->m_bVisible;
    if (m_pControls == nullptr) {
        m_pControls = new CVTControls();
        m_pControls->SetParent(this);
    }
    m_pControls->RemoveAll();
    m_pControls->SetCommandBars(m_pCommandBars);
    if (other->m_pControls != nullptr && other->m_pControls != m_pControls) {
        for (int i = 0; i < other->m_pControls->GetCount(); ++i)
            m_pControls->AddClone(other->m_pControls->GetAt(i), -1, recursive);
    }
    SetCommandBars(m_pCommandBars);
}

BOOL CVTCommandBar::LoadToolBar(UINT resourceId, BOOL) {
    HINSTANCE module = AfxGetResourceHandle();
    const talvor::platform::ToolBarResource* toolBar =
        module ? module->FindToolBar(resourceId) : nullptr;
    if (toolBar == nullptr || m_pControls == nullptr)
        return FALSE;
    m_pControls->RemoveAll();
    bool groupStarts = false;
    for (UINT id : toolBar->ids) {
        if (id == 0) {
            groupStarts = true;
            continue;
        }
        CVTControl* button = m_pControls->Add(vtControlButton, static_cast<long>(id));
        button->SetBeginGroup(groupStarts && m_pControls->GetCount() > 1);
        groupStarts = false;
    }
    m_nBarID = resourceId;
    return TRUE;
}

void CVTCommandBar::LoadMenu(CMenu* menu) {
    if (menu == nullptr || m_pControls == nullptr)
        return;
    bool groupStarts = false;
    for (int i = 0; i < menu->GetMenuItemCount(); ++i) {
        if (menu->GetSubMenu(i) == nullptr && menu->GetMenuItemID(i) == 0) {
            groupStarts = true;
            continue;
        }
        if (CVTControl* control = m_pControls->AddMenuItem(menu, i)) {
            control->SetBeginGroup(groupStarts && m_pControls->GetCount() > 1);
            groupStarts = false;
        }
    }
}

void CVTCommandBar::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << static_cast<DWORD>(m_nBarID) << m_strBarIDName << m_strTitle << m_dwFlags
           << static_cast<LONG>(m_nPosition) << m_dwDockingSides << static_cast<LONG>(m_bVisible);
        if (m_pControls != nullptr)
            m_pControls->Serialize(ar);
        else
            ar.WriteCount(0);
        return;
    }
    DWORD id = 0;
    LONG position = 0, visible = 0;
    ar >> id >> m_strBarIDName >> m_strTitle >> m_dwFlags >> position >> m_dwDockingSides >>
        visible;
    m_nBarID = id;
    m_nPosition = position;
    m_bVisible = visible ? TRUE : FALSE;
    if (m_pControls == nullptr) {
        m_pControls = new CVTControls();
        m_pControls->SetParent(this);
    }
    m_pControls->RemoveAll();
    m_pControls->Serialize(ar);
}
