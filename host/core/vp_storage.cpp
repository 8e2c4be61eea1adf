// Sub-storages by 8-bit name.
#include "host/core/vp_storage.h"

using namespace talvor::platform::storage;

IStorage* CVPStorage::CreateStorage(const char* name, IStorage* parent, DWORD mode,
                                    int bOpenExisting) {
    if (!name || !parent)
        return nullptr;
    const std::u16string wide = ElementName(name);
    IStorage* storage = nullptr;
    HRESULT hr = parent->CreateStorage(wide.c_str(), mode, 0, 0, &storage);
    if (hr == STG_E_FILEALREADYEXISTS && bOpenExisting)
        hr = parent->OpenStorage(wide.c_str(), nullptr, mode, nullptr, 0, &storage);
    return SUCCEEDED(hr) ? storage : nullptr;
}

BOOL CVPStorage::FindElement(const char* name, IStorage* parent, UINT type) {
    if (!name || !parent)
        return FALSE;
    const std::u16string wide = ElementName(name);
    IEnumSTATSTG* elements = nullptr;
    if (FAILED(parent->EnumElements(0, nullptr, 0, &elements)))
        return FALSE;
    BOOL found = FALSE;
    STATSTG stat;
    while (!found && elements->Next(1, &stat, nullptr) == S_OK) {
        found =
            stat.type == type && CompareElementNames(std::u16string_view(stat.pwcsName), wide) == 0;
        CoTaskMemFree(stat.pwcsName);
    }
    elements->Release();
    return found;
}
