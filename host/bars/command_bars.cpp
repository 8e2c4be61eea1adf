// The bars of a frame and their saved form.
#include "host/bars/command_bars.h"

#include "platform/app/menu.h"
#include "platform/files/archive.h"

#include <algorithm>
#include <memory>

const CRuntimeClass CVTCommandBars::classCVTCommandBars =
    MakeRuntimeClass<CVTCommandBars>("CVTCommandBars", 0xFFFF, &CObject::classCObject);

namespace {

constexpr WORD BarsSchema = 1;
constexpr WORD OptionsSchema = 1;

// Bars read from a stream that are not in place yet; freed if the read fails.
struct StagedBars {
    std::vector<CVTCommandBar*> bars;
    ~StagedBars() {
        for (CVTCommandBar* bar : bars)
            bar->InternalRelease();
    }
};

} // namespace

void VT_COMMANDBARS_OPTIONS::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << OptionsSchema << static_cast<LONG>(bAlwaysShowFullMenus)
           << static_cast<LONG>(bShowFullAfterDelay) << static_cast<LONG>(bToolBarScreenTips)
           << static_cast<LONG>(bToolBarAccelTips) << static_cast<LONG>(bLargeIcons)
           << static_cast<LONG>(bShowExpandButtonAlways) << static_cast<LONG>(nAnimationType)
           << static_cast<LONG>(cxIcons) << static_cast<LONG>(cyIcons);
        return;
    }
    WORD schema = 0;
    ar >> schema;
    if (schema != OptionsSchema)
        AfxThrowArchiveException(CArchiveException::badSchema);
    LONG v[9];
    for (LONG& value : v)
        ar >> value;
    bAlwaysShowFullMenus = v[0] != 0;
    bShowFullAfterDelay = v[1] != 0;
    bToolBarScreenTips = v[2] != 0;
    bToolBarAccelTips = v[3] != 0;
    bLargeIcons = v[4] != 0;
    bShowExpandButtonAlways = v[5] != 0;
    nAnimationType = v[6];
    cxIcons = v[7];
    cyIcons = v[8];
}

CVTCommandBars::CVTCommandBars() : m_pImageManager(new CVTImageManager()) {}

CVTCommandBars::~CVTCommandBars() {
    RemoveAll();
    if (m_pImageManager != nullptr)
        m_pImageManager->InternalRelease();
}

CVTCommandBar* CVTCommandBars::GetAt(int index) const {
    if (index < 0 || index >= GetCount())
        return nullptr;
    return m_bars[static_cast<std::size_t>(index)];
}

CVTMenuBar* CVTCommandBars::SetMenu(const char* title, UINT menuId) {
    if (m_pMenuBar != nullptr)
        Remove(m_pMenuBar);
    auto* bar = new CVTMenuBar();
    bar->SetTitle(title);
    bar->SetPosition(vtBarTop);
    bar->SetBarID(IDR_MENUBAR);
    bar->SetCommandBars(this);
    if (menuId != 0) {
        CMenu menu;
        if (menu.LoadMenu(menuId))
            bar->LoadMenu(&menu);
    }
    bar->SetCommandBars(this);
    m_bars.insert(m_bars.begin(), bar);
    m_pMenuBar = bar;
    return bar;
}

void CVTCommandBars::SetMenuBar(CVTCommandBar* bar, UINT id) {
    if (bar == nullptr || std::find(m_bars.begin(), m_bars.end(), bar) == m_bars.end())
        return;
    m_pMenuBar = bar;
    bar->SetBarID(id);
}

CVTCommandBar* CVTCommandBars::Add(const char* title, int position, const CRuntimeClass* barClass) {
    if (barClass == nullptr || !barClass->IsDerivedFrom(&CVTCommandBar::classCVTCommandBar))
        barClass = &CVTToolBar::classCVTToolBar;
    auto* bar = dynamic_cast<CVTCommandBar*>(barClass->CreateObject());
    if (bar == nullptr)
        return nullptr;
    bar->SetTitle(title);
    bar->SetPosition(position);
    AddBar(bar);
    return bar;
}

void CVTCommandBars::AddBar(CVTCommandBar* bar) {
    if (bar == nullptr)
        return;
    bar->SetCommandBars(this);
    m_bars.push_back(bar);
}

void CVTCommandBars::Remove(CVTCommandBar* bar) {
    auto it = std::find(m_bars.begin(), m_bars.end(), bar);
    if (it == m_bars.end())
        return;
    m_bars.erase(it);
    if (m_pMenuBar == bar)
        m_pMenuBar = nullptr;
    bar->SetCommandBars(nullptr);
    bar->InternalRelease();
}

void CVTCommandBars::RemoveAll() {
    while (!m_bars.empty())
        Remove(m_bars.back());
}

void CVTCommandBars::MoveBarsFrom(CVTCommandBars* other) {
    if (other == nullptr || other == this)
        return;
    RemoveAll();
    m_bars.swap(other->m_bars);
    m_pMenuBar = other->m_pMenuBar;
    other->m_pMenuBar = nullptr;
    for (CVTCommandBar* bar : m_bars)
        bar->SetCommandBars(this);
}

CVTToolBar* CVTCommandBars::GetToolBar(UINT barId) const {
    for (CVTCommandBar* bar : m_bars) {
        if (bar->GetBarID() == barId) {
            if (auto* toolBar = dynamic_cast<CVTToolBar*>(bar))
                return toolBar;
        }
    }
    return nullptr;
}

CVTCommandBar* CVTCommandBars::FindCommandBar(UINT barId) const {
    for (CVTCommandBar* bar : m_bars) {
        if (bar->GetBarID() == barId)
            return bar;
    }
    return nullptr;
}

CVTCommandBar* CVTCommandBars::FindCommandBar(const char* title, BOOL noCase) const {
    const char* wanted = title ? title : "";
    for (CVTCommandBar* bar : m_bars) {
        const CString barTitle = bar->GetTitle();
        if (noCase ? barTitle.CompareNoCase(wanted) == 0 : barTitle.Compare(wanted) == 0)
            return bar;
    }
    return nullptr;
}

CVTControl* CVTCommandBars::FindControl(long id) const {
    for (CVTCommandBar* bar : m_bars) {
        if (bar->GetControls() != nullptr) {
            if (CVTControl* control = bar->GetControls()->FindControl(id))
                return control;
        }
    }
    return nullptr;
}

UINT CVTCommandBars::GetUniqueBarID(UINT id) const {
    while (FindCommandBar(id) != nullptr)
        ++id;
    return id;
}

CString CVTCommandBars::GetUniqueBarIDName(const char* name) const {
    const CString wanted = name ? name : "";
    auto taken = [this](const CString& candidate) {
        return std::any_of(m_bars.begin(), m_bars.end(), [&](const CVTCommandBar* bar) {
            return bar->GetBarIDName().CompareNoCase(candidate) == 0;
        });
    };
    if (wanted.IsEmpty() || !taken(wanted))
        return wanted;
    CString candidate;
    for (int number = 1;; ++number) {
        candidate.Format("%s%d", wanted.GetString(), number);
        if (!taken(candidate))
            return candidate;
    }
}

void CVTCommandBars::SetImageManager(CVTImageManager* manager) {
    if (manager == m_pImageManager)
        return;
    if (m_pImageManager != nullptr)
        m_pImageManager->InternalRelease();
    m_pImageManager = manager ? manager : new CVTImageManager();
}

void CVTCommandBars::StorePopupBars(CArchive& ar, const CVTControls* controls) {
    if (controls == nullptr)
        return;
    for (int i = 0; i < controls->GetCount(); ++i) {
        auto* popup = dynamic_cast<CVTControlPopup*>(controls->GetAt(i));
        if (popup == nullptr)
            continue;
        CVTCommandBar* bar = popup->GetCommandBar();
        ar.WriteObject(bar);
        if (bar != nullptr)
            StorePopupBars(ar, bar->GetControls());
    }
}

void CVTCommandBars::LoadPopupBars(CArchive& ar, CVTControls* controls, int depth) {
    if (controls == nullptr)
        return;
    if (depth > MaxPopupDepth)
        AfxThrowArchiveException(CArchiveException::badIndex);
    for (int i = 0; i < controls->GetCount(); ++i) {
        auto* popup = dynamic_cast<CVTControlPopup*>(controls->GetAt(i));
        if (popup == nullptr)
            continue;
        auto* bar = static_cast<CVTCommandBar*>(
            ReadBarObject(ar, &CVTCommandBar::classCVTCommandBar, /*allowNull=*/true));
        if (bar == nullptr)
            continue;
        popup->SetCommandBar(bar);
        bar->InternalRelease();
        LoadPopupBars(ar, bar->GetControls(), depth + 1);
    }
}

void CVTCommandBars::SerializeCommandBars(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << BarsSchema;
        ar.WriteCount(m_bars.size());
        LONG menuIndex = -1;
        for (std::size_t i = 0; i < m_bars.size(); ++i) {
            ar.WriteObject(m_bars[i]);
            StorePopupBars(ar, m_bars[i]->GetControls());
            if (m_bars[i] == m_pMenuBar)
                menuIndex = static_cast<LONG>(i);
        }
        ar << menuIndex;
        return;
    }
    WORD schema = 0;
    ar >> schema;
    if (schema != BarsSchema)
        AfxThrowArchiveException(CArchiveException::badSchema);
    const DWORD_PTR count = ar.ReadCount();
    StagedBars staged;
    for (DWORD_PTR i = 0; i < count; ++i) {
        staged.bars.push_back(
            static_cast<CVTCommandBar*>(ReadBarObject(ar, &CVTCommandBar::classCVTCommandBar)));
        LoadPopupBars(ar, staged.bars.back()->GetControls());
    }
    LONG menuIndex = -1;
    ar >> menuIndex;
    if (menuIndex < -1 || menuIndex >= static_cast<LONG>(staged.bars.size()))
        AfxThrowArchiveException(CArchiveException::badIndex);
    RemoveAll();
    m_bars.swap(staged.bars);
    m_pMenuBar = menuIndex >= 0 ? m_bars[static_cast<std::size_t>(menuIndex)] : nullptr;
    for (CVTCommandBar* bar : m_bars)
        bar->SetCommandBars(this);
}
