// CVPStorage: the maker library's helpers for sub-storages: create one by 8-bit name, and ask
// whether a storage holds an element of a name and type.
#pragma once

#include "platform/storage/storage.h"

class CVPStorage {
public:
    // The new sub-storage name of parent, opened with mode (STGM_CREATE replaces an element of
    // that name), or null when it cannot be made. With bOpenExisting set, an existing storage
    // of that name is opened instead when mode has no STGM_CREATE. The caller releases it.
    static IStorage* CreateStorage(const char* name, IStorage* parent, DWORD mode,
                                   int bOpenExisting);
    // TRUE when parent holds an element called name (without regard to case, as the file
    // compares names) of the type (STGTY_STORAGE 1, STGTY_STREAM 2); FALSE for null
    // arguments or an unreadable storage.
    static BOOL FindElement(const char* name, IStorage* parent, UINT type);
};
