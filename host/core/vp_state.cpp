// State in the profile as binary values.
#include "host/core/vp_state.h"

#include "platform/app/profile.h"
#include "platform/files/archive.h"

#include <memory>

BOOL CVPState::SaveState(const char* section, const char* entry) {
    CMemFile file;
    try {
        CArchive ar(&file, CArchive::store, 0x1000);
        SerializeState(ar);
        ar.Close();
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    const std::string& bytes = file.Data();
    return AfxGetApp()->WriteProfileBinary(section, entry,
                                           reinterpret_cast<const BYTE*>(bytes.data()),
                                           static_cast<UINT>(bytes.size()));
}

BOOL CVPState::LoadState(const char* section, const char* entry) {
    BYTE* data = nullptr;
    UINT size = 0;
    if (!AfxGetApp()->GetProfileBinary(section, entry, &data, &size) || data == nullptr)
        return FALSE;
    std::unique_ptr<BYTE[]> owned(data);
    CMemFile file(owned.get(), size);
    try {
        CArchive ar(&file, CArchive::load, 0x1000);
        SerializeState(ar);
        ar.Close();
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}
