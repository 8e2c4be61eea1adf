// The reference count that the command bar library's objects share: a new object holds one
// reference, InternalAddRef takes another, InternalRelease gives one up and deletes the object
// with the last.
#pragma once

#include "platform/files/runtime_class.h"

#include <atomic>

class CVTCmdTarget : public CObject {
public:
    CVTCmdTarget() = default;
    CVTCmdTarget(const CVTCmdTarget&) = delete;
    CVTCmdTarget& operator=(const CVTCmdTarget&) = delete;

    DWORD InternalAddRef() { return ++m_dwRef; }
    // The count left; 0 when the object is gone.
    DWORD InternalRelease() {
        const DWORD left = --m_dwRef;
        if (left == 0)
            delete this;
        return left;
    }

    std::atomic<DWORD> m_dwRef{1};
    // Set once the object has been handed out by ReadBarObject, so that a stream that refers
    // to the same object a second time is refused instead of sharing it.
    bool m_bClaimedFromArchive = false;
};

// Reads an object of requiredClass (or a class derived from it) that the stream has not given
// before. Throws CArchiveException badClass for another class, and badIndex for null (unless
// allowNull) or for a second reference to an object already read.
CVTCmdTarget* ReadBarObject(CArchive& ar, const CRuntimeClass* requiredClass,
                            bool allowNull = false);

// Ids of the bar classes' standard bars, and the two command ids the designer keeps apart.
constexpr UINT IDR_MENUBAR = 1;
constexpr UINT IDR_POPUPMENU = 2;
