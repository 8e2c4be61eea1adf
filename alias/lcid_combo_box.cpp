#include "alias/lcid_combo_box.h"

#include "platform/codepage/code_page.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <algorithm>

namespace {

// A list holds at most this many records of the service, as one fetch of its enumerators does.
constexpr ULONG RecordsPerList = 300;

struct FixedLanguage {
    LCID lcid;
    UINT stringId;
};
constexpr FixedLanguage FixedLanguages[] = {
    {0x000, IDS_DEFAULT_LANGUAGE},
    {0x400, IDS_USER_DEFAULT_LANGUAGE},
    {0x800, IDS_SYSTEM_DEFAULT_LANGUAGE},
};

std::u16string WideText(const WCHAR* text) {
    return std::u16string(text);
}

} // namespace

const CRuntimeClass CTalvorLcidComboBox::classCTalvorLcidComboBox =
    MakeRuntimeClass<CTalvorLcidComboBox>("CTalvorLcidComboBox", 0xFFFF,
                                          &CComboBox::classCComboBox);

CTalvorLcidComboBox::CTalvorLcidComboBox() : m_bLanguageList(1) {}

CTalvorLcidComboBox::~CTalvorLcidComboBox() {
    FreeRecords();
}

void CTalvorLcidComboBox::Init(int language) {
    m_bLanguageList = language;
    if (language != 0)
        FillLanguages();
    else
        FillCodePages();
}

void CTalvorLcidComboBox::FillLanguages() {
    for (const FixedLanguage& fixed : FixedLanguages) {
        auto* record = new RFC1766INFO{};
        record->lcid = fixed.lcid;
        const CString name(talvor::resources::LoadTalvorString(fixed.stringId));
        const std::u16string wide = talvor::platform::ToWide(name.View());
        const std::size_t length = std::min<std::size_t>(wide.size(), MAX_LOCALE_NAME - 1);
        std::copy_n(wide.data(), length, record->wszLocaleName);
        const int index = AddString(name);
        if (SetItemDataPtr(index, record) == CB_ERR)
            delete record;
    }
    const auto service = talvor::platform::MultiLanguage::Create();
    if (service == nullptr)
        return;
    std::vector<RFC1766INFO> languages;
    if (FAILED(service->EnumRfc1766(RecordsPerList, languages)))
        return;
    for (const RFC1766INFO& language : languages) {
        auto* record = new RFC1766INFO(language);
        const CString name(talvor::platform::FromWide(WideText(record->wszLocaleName)));
        const int index = AddString(name);
        if (SetItemDataPtr(index, record) == CB_ERR)
            delete record;
    }
}

void CTalvorLcidComboBox::FillCodePages() {
    const auto service = talvor::platform::MultiLanguage::Create();
    if (service == nullptr)
        return;
    std::vector<MIMECPINFO> codePages;
    if (FAILED(service->EnumCodePages(MIMECONTF_VALID, RecordsPerList, codePages)))
        return;
    for (const MIMECPINFO& codePage : codePages) {
        auto* record = new MIMECPINFO(codePage);
        const CString name(talvor::platform::FromWide(WideText(record->wszDescription)));
        const int index = AddString(name);
        if (SetItemDataPtr(index, record) == CB_ERR)
            delete record;
    }
}

DWORD CTalvorLcidComboBox::GetCurLanguage() {
    const int index = GetCurSel();
    if (index == CB_ERR)
        return 0;
    const auto* record = static_cast<const RFC1766INFO*>(GetItemDataPtr(index));
    return record != nullptr ? record->lcid : 0;
}

UINT CTalvorLcidComboBox::GetCurCodePage() {
    const int index = GetCurSel();
    if (index == CB_ERR)
        return 0;
    const auto* record = static_cast<const MIMECPINFO*>(GetItemDataPtr(index));
    return record != nullptr ? record->uiCodePage : 0;
}

int CTalvorLcidComboBox::SetCurLanguage(DWORD language) {
    for (int index = 0; index < GetCount(); ++index) {
        const auto* record = static_cast<const RFC1766INFO*>(GetItemDataPtr(index));
        if (record != nullptr && record->lcid == language)
            return SetCurSel(index);
    }
    return SetCurSel(0);
}

int CTalvorLcidComboBox::SetCurCodePage(UINT codePage) {
    for (int index = 0; index < GetCount(); ++index) {
        const auto* record = static_cast<const MIMECPINFO*>(GetItemDataPtr(index));
        if (record != nullptr && record->uiCodePage == codePage)
            return SetCurSel(index);
    }
    return SetCurSel(0);
}

void CTalvorLcidComboBox::OnDestroy() {
    FreeRecords();
    CComboBox::OnDestroy();
}

// Which record type an item holds follows from the kind of list the box was filled as.
void CTalvorLcidComboBox::FreeRecords() {
    for (int index = 0; index < GetCount(); ++index) {
        void* record = GetItemDataPtr(index);
        if (m_bLanguageList != 0)
            delete static_cast<RFC1766INFO*>(record);
        else
            delete static_cast<MIMECPINFO*>(record);
        SetItemDataPtr(index, nullptr);
    }
}
