// Reading the library's objects so that each one has exactly one owner.
#include "host/bars/bar_object.h"

#include "platform/files/archive.h"

CVTCmdTarget* ReadBarObject(CArchive& ar, const CRuntimeClass* requiredClass, bool allowNull) {
    CObject* object = ar.ReadObject(requiredClass);
    if (object == nullptr) {
        if (allowNull)
            return nullptr;
        AfxThrowArchiveException(CArchiveException::badIndex);
    }
    auto* target = dynamic_cast<CVTCmdTarget*>(object);
    if (target == nullptr)
        AfxThrowArchiveException(CArchiveException::badClass);
    if (target->m_bClaimedFromArchive)
        AfxThrowArchiveException(CArchiveException::badIndex);
    target->m_bClaimedFromArchive = true;
    return target;
}
