// The hidden command designer frame: standard bars, the pool, and the saved stream in which a
// temporary tool bar of id 0xFFEEFF carries the pool among the bars.
#include "commands/cmd_frame.h"

#include "commands/detail/standard_id_names.h"
#include "host/bars/shortcut_manager.h"
#include "platform/app/message_box.h"
#include "platform/files/archive.h"
#include "platform/files/file_system.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

using talvor::commands::ExcludedCommandFirst;
using talvor::commands::ExcludedCommandSecond;

const CRuntimeClass CTalvorCmdFrame::classCTalvorCmdFrame = MakeRuntimeClass<CTalvorCmdFrame>(
    "CTalvorCmdFrame", 0xFFFF, &CVTMDIFrameWnd::classCVTMDIFrameWnd);

namespace {

constexpr UINT PoolBarId = 0xFFEEFF;
constexpr DWORD StreamVersion = 1;
constexpr COLORREF IconMaskColor = 0x00FF00;
constexpr DWORD MenuBarFlags = 0x1700;
constexpr UINT StandardIcons = 5404;
constexpr UINT DesignerMenu = 5416;
constexpr const char* StateSection = "Settings";
constexpr const char* StateEntry = "ResoureControls";

} // namespace

CTalvorCmdFrame::CTalvorCmdFrame()
    : m_pDesignerControls(new CVTControls()), m_cmdResource(nullptr) {}

CTalvorCmdFrame::~CTalvorCmdFrame() {
    m_pDesignerControls->InternalRelease();
}

BOOL CTalvorCmdFrame::LoadFrame(UINT resourceId, DWORD style, CWnd* parent,
                                CCreateContext* context) {
    if (!CVTMDIFrameWnd::LoadFrame(resourceId, style, parent, context))
        return 0;
    LoadState();
    return 1;
}

int CTalvorCmdFrame::CreateCommandBar() {
    CVTCommandBars* bars = GetCommandBars();
    if (bars == nullptr)
        return 0;
    talvor::resources::ResourceGuard guard;
    CString title(talvor::resources::LoadTalvorString(IDS_MENU_BAR_TITLE));
    CVTCommandBar* menuBar = bars->SetMenu(title, DesignerMenu);
    if (menuBar == nullptr)
        return 0;
    menuBar->SetFlags(MenuBarFlags, 0);
    title = talvor::resources::LoadTalvorString(IDS_STANDARD_BAR_TITLE).c_str();
    CVTCommandBar* toolBar = bars->Add(title, vtBarTop, &CVTToolBar::classCVTToolBar);
    if (toolBar == nullptr)
        return 0;
    return toolBar->LoadToolBar(IDS_STANDARD_BAR_TITLE, TRUE) ? 1 : 0;
}

void CTalvorCmdFrame::RemoveKeptApartControls() {
    for (long id : {ExcludedCommandFirst, ExcludedCommandSecond}) {
        if (CVTControl* control = m_pDesignerControls->FindControl(vtControlError, id, TRUE, FALSE))
            m_pDesignerControls->Remove(control);
    }
}

void CTalvorCmdFrame::BuildPool() {
    m_cmdResource.InitCommandBarIdName(nullptr);
    m_cmdResource.BuildControls(nullptr);
    RemoveKeptApartControls();
}

int CTalvorCmdFrame::OnCreate(CREATESTRUCT* create) {
    if (CVTMDIFrameWnd::OnCreate(create) == -1 || !InitCommandBars())
        return -1;
    CreateCommandBar();
    CVTCommandBars* bars = GetCommandBars();
    auto* images = new CVTImageManager();
    images->SetMaskColor(IconMaskColor);
    {
        talvor::resources::ResourceGuard guard;
        images->SetIcons(StandardIcons, 0);
    }
    bars->SetImageManager(images);
    bars->GetPaintManager()->SetTheme(0);
    bars->SetCustomizeMode(TRUE);
    m_pDesignerControls->SetCommandBars(bars);
    m_cmdResource.SetControls(m_pDesignerControls);
    BuildPool();
    for (const auto& [id, set] : bars->GetImageManager()->GetImages())
        set->GetIcon(32, TRUE);
    return 0;
}

void CTalvorCmdFrame::OnClose() {
    SaveState();
    CVTMDIFrameWnd::OnClose();
}

void CTalvorCmdFrame::ActivateFrame(int) {
    CVTMDIFrameWnd::ActivateFrame(SW_HIDE);
}

int CTalvorCmdFrame::OnCmdMsg(UINT, int, void*, AFX_CMDHANDLERINFO*) {
    return 0;
}

void CTalvorCmdFrame::OnUpdateFrameMenu(HMENU) {}

void CTalvorCmdFrame::ResetAllCommand() {
    CVTCommandBars* bars = GetCommandBars();
    if (bars == nullptr)
        return;
    for (int i = bars->GetCount() - 1; i >= 0; --i)
        bars->Remove(bars->GetAt(i));
    m_pDesignerControls->RemoveAll();
    CreateCommandBar();
    BuildPool();
}

void CTalvorCmdFrame::ReplaceControls(CVTToolBar* bar, CVTControls* controls) {
    if (bar->m_pControls != nullptr)
        bar->m_pControls->InternalRelease();
    bar->m_pControls = controls;
    if (controls != nullptr)
        controls->InternalAddRef();
}

void CTalvorCmdFrame::SerializeState(CArchive& ar) {
    CVTCommandBars* bars = GetCommandBars();
    if (bars == nullptr)
        return;
    if (ar.IsStoring()) {
        ar << StreamVersion;
        auto* carrier = static_cast<CVTToolBar*>(
            bars->Add("Controls", vtBarFloating, &CVTToolBar::classCVTToolBar));
        ReplaceControls(carrier, m_pDesignerControls);
        carrier->SetBarID(PoolBarId);
        try {
            bars->SerializeCommandBars(ar);
        } catch (...) {
            bars->Remove(carrier);
            throw;
        }
        bars->Remove(carrier);
        bars->GetImageManager()->Serialize(ar, TRUE);
        VTShortcutManager()->SerializeShortcuts(this, ar);
        bars->GetCommandBarsOptions()->Serialize(ar);
        return;
    }

    DWORD version = 0;
    ar >> version; // not examined: every stream so far is version 1
    // Everything is read apart first, so that a stream that breaks off changes nothing.
    CVTCommandBars staged;
    staged.SerializeCommandBars(ar);
    auto* images = new CVTImageManager();
    CVTShortcutManager shortcuts;
    VT_COMMANDBARS_OPTIONS options;
    try {
        images->Serialize(ar, TRUE);
        shortcuts.SerializeShortcuts(this, ar);
        options.Serialize(ar);
    } catch (...) {
        images->InternalRelease();
        throw;
    }

    bars->SetMenu("Menu Bar", 0);
    for (int i = bars->GetCount() - 1; i >= 0; --i)
        bars->Remove(bars->GetAt(i));
    bars->MoveBarsFrom(&staged);
    if (CVTCommandBar* carrier = bars->FindCommandBar(PoolBarId)) {
        m_pDesignerControls->InternalRelease();
        m_pDesignerControls = carrier->GetControls();
        m_pDesignerControls->InternalAddRef();
        bars->Remove(carrier);
        m_pDesignerControls->SetParent(nullptr);
        RemoveKeptApartControls();
        m_pDesignerControls->SetCommandBars(bars);
    }
    m_cmdResource.SetControls(m_pDesignerControls);
    m_cmdResource.InitControlIdName(nullptr, nullptr);
    bars->SetImageManager(images);
    VTShortcutManager()->SetShortcuts(shortcuts.GetShortcuts());
    *bars->GetCommandBarsOptions() = options;
    bars->SetCustomizeMode(TRUE);
}

void CTalvorCmdFrame::SaveToFile(const char* fileName) {
    if (fileName == nullptr)
        return;
    UINT flags = CFile::modeCreate | CFile::modeWrite | CFile::typeBinary;
    if (talvor::platform::FileExists(fileName)) {
        flags = CFile::modeWrite | CFile::typeBinary;
        int answer;
        {
            talvor::resources::ResourceGuard guard;
            answer = AfxMessageBox(IDS_REPLACE_EXISTING_FILE, 0, static_cast<UINT>(-1));
        }
        if (answer != IDOK)
            return;
    }
    CFile file;
    if (!file.Open(fileName, flags))
        return;
    CArchive ar(&file, CArchive::store, 0x1000);
    SerializeState(ar);
    ar.Close();
}

void CTalvorCmdFrame::SaveToFile(const char* fileName, CVTControls* controls, int bBuiltInOnly) {
    CVTControls* dup = m_pDesignerControls->Duplicate(TRUE);
    if (dup == nullptr)
        return;
    auto restore = [&] {
        m_pDesignerControls->RemoveAll();
        m_pDesignerControls->AddClone(dup, TRUE);
        dup->InternalRelease();
    };
    m_pDesignerControls->RemoveAll();
    if (controls != nullptr && !bBuiltInOnly) {
        m_pDesignerControls->AddClone(controls, TRUE);
    } else if (controls != nullptr) {
        const CString menus(talvor::resources::LoadTalvorString(IDS_MENUS_CATEGORY));
        for (int i = 0; i < controls->GetCount(); ++i) {
            CVTControl* control = controls->GetAt(i);
            const CString category = control->GetCategory();
            if (category.IsEmpty() || category.Compare(menus) != 0)
                continue;
            auto* popup = dynamic_cast<CVTControlPopup*>(control);
            if (popup == nullptr) {
                if (CVTControl* copy = m_pDesignerControls->AddClone(control, -1, FALSE))
                    copy->SetCategory("");
                continue;
            }
            const CString itemsCategory = CVTPaintManager::StripMnemonics(popup->GetCaption());
            CVTCommandBar* bar = popup->GetCommandBar();
            for (int j = 0; bar != nullptr && j < bar->GetControlCount(); ++j) {
                if (CVTControl* copy = m_pDesignerControls->AddClone(bar->GetControl(j), -1, FALSE))
                    copy->SetCategory(itemsCategory);
            }
        }
    }
    try {
        SaveToFile(fileName);
    } catch (...) {
        restore();
        throw;
    }
    restore();
}

int CTalvorCmdFrame::LoadFromFile(const char* fileName) {
    CFile file;
    if (fileName == nullptr || !file.Open(fileName, CFile::modeRead | CFile::typeBinary))
        return 0;
    m_pDesignerControls->RemoveAll();
    CArchive ar(&file, CArchive::load, 0x1000);
    SerializeState(ar);
    return 1;
}

void CTalvorCmdFrame::SaveState() {
    CVPState::SaveState(StateSection, StateEntry);
}

int CTalvorCmdFrame::LoadState() {
    return CVPState::LoadState(StateSection, StateEntry) ? 1 : 0;
}
