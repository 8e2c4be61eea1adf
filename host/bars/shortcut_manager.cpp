// The process-wide shortcut table and its saved form.
#include "host/bars/shortcut_manager.h"

#include "platform/files/archive.h"

CVTShortcutManager& CVTShortcutManager::Instance() {
    static CVTShortcutManager manager;
    return manager;
}

void CVTShortcutManager::SerializeShortcuts(CFrameWnd*, CArchive& ar) {
    constexpr WORD Schema = 1;
    if (ar.IsStoring()) {
        ar << Schema;
        ar.WriteCount(m_accels.size());
        for (const VT_ACCEL& accel : m_accels)
            ar << accel.fVirt << accel.key << accel.cmd;
        return;
    }
    WORD schema = 0;
    ar >> schema;
    if (schema != Schema)
        AfxThrowArchiveException(CArchiveException::badSchema);
    std::vector<VT_ACCEL> accels;
    const DWORD_PTR count = ar.ReadCount();
    for (DWORD_PTR i = 0; i < count; ++i) {
        VT_ACCEL accel;
        ar >> accel.fVirt >> accel.key >> accel.cmd;
        accels.push_back(accel);
    }
    m_accels.swap(accels);
}
