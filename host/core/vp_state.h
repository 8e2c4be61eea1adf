// CVPState: a window's state as an archive in the host's state store. The deriving class
// writes and reads everything in SerializeState; the store keeps the bytes as a binary profile
// value under a section and an entry.
#pragma once

#include "platform/core/win_types.h"

class CArchive;

class CVPState {
public:
    virtual ~CVPState() = default;
    virtual void SerializeState(CArchive& ar) = 0;

    // Stores the state; FALSE when the store refused it or the archive failed.
    BOOL SaveState(const char* section, const char* entry);
    // Reads the stored state; FALSE when there is none or the stream was damaged (the
    // archive's exception is caught here and its message dropped).
    BOOL LoadState(const char* section, const char* entry);
};
