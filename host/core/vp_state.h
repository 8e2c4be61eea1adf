// CVPState: the base of objects whose state a host saves and restores through an archive
// (window layouts, the command designer, editor options). SaveState and LoadState keep the
// bytes as a binary profile value under a section and an entry.
#pragma once

#include "platform/core/win_types.h"

class CArchive;

class CVPState {
public:
    virtual ~CVPState() = default;
    // Stores or loads the object's state by the archive's direction; the base keeps none.
    virtual void SerializeState(CArchive&) {}

    // Stores the state; FALSE when the store refused it or the archive failed.
    BOOL SaveState(const char* section, const char* entry);
    // Reads the stored state; FALSE when there is none or the stream was damaged (the
    // archive's exception is caught here and its message dropped).
    BOOL LoadState(const char* section, const char* entry);
};
