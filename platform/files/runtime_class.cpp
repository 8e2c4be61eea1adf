// Registry of run-time classes by name.
#include "platform/files/runtime_class.h"

#include "platform/files/archive.h"

#include <cstring>
#include <map>
#include <string>

namespace {
std::map<std::string, const CRuntimeClass*>& Registry() {
    static std::map<std::string, const CRuntimeClass*> registry;
    return registry;
}
} // namespace

CRuntimeClass::CRuntimeClass(const char* className, int objectSize, UINT schema,
                             CObject* (*create)(), const CRuntimeClass* baseClass)
    : m_lpszClassName(className), m_nObjectSize(objectSize), m_wSchema(schema),
      m_pfnCreateObject(create), m_pBaseClass(baseClass) {
    if (className != nullptr)
        Registry()[className] = this;
}

CObject* CRuntimeClass::CreateObject() const {
    return m_pfnCreateObject == nullptr ? nullptr : m_pfnCreateObject();
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* baseClass) const {
    for (const CRuntimeClass* c = this; c != nullptr; c = c->m_pBaseClass)
        if (c == baseClass)
            return TRUE;
    return FALSE;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* className) {
    if (className == nullptr)
        return nullptr;
    auto found = Registry().find(className);
    return found == Registry().end() ? nullptr : found->second;
}

void CRuntimeClass::Store(CArchive& ar) const {
    WORD length = static_cast<WORD>(std::strlen(m_lpszClassName));
    ar << static_cast<WORD>(m_wSchema) << length;
    ar.Write(m_lpszClassName, length);
}

const CRuntimeClass* CRuntimeClass::Load(CArchive& ar, UINT* schema) {
    WORD storedSchema = 0, length = 0;
    ar >> storedSchema >> length;
    if (schema != nullptr)
        *schema = storedSchema;
    char name[64];
    if (length >= sizeof name)
        return nullptr;
    if (ar.Read(name, length) != length)
        AfxThrowArchiveException(CArchiveException::endOfFile);
    name[length] = '\0';
    return FromName(name);
}

const CRuntimeClass CObject::classCObject("CObject", sizeof(CObject), 0xFFFF, nullptr, nullptr);

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

void CObject::Serialize(CArchive&) {}

BOOL CObject::IsKindOf(const CRuntimeClass* someClass) const {
    return GetRuntimeClass()->IsDerivedFrom(someClass);
}
