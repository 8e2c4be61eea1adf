// CObject and CRuntimeClass: run-time class information, creation by class name and the
// serial schema, as archives need them. A class registers itself by defining its static
// CRuntimeClass member with MakeRuntimeClass<T>(); no macros.
#pragma once

#include "platform/core/win_types.h"

class CArchive;
class CObject;

class CRuntimeClass {
public:
    // Registers the class by name; the object must have static storage duration.
    CRuntimeClass(const char* className, int objectSize, UINT schema, CObject* (*create)(),
                  const CRuntimeClass* baseClass);
    CRuntimeClass(const CRuntimeClass&) = delete;
    CRuntimeClass& operator=(const CRuntimeClass&) = delete;

    // A new object of the class, or null when the class can't be created by name.
    CObject* CreateObject() const;
    BOOL IsDerivedFrom(const CRuntimeClass* baseClass) const;
    // The registered class of that name, or null.
    static const CRuntimeClass* FromName(const char* className);

    // The class's archive form: WORD schema, WORD name length, the name's bytes.
    void Store(CArchive& ar) const;
    // Reads that form; null when the name is unknown or longer than 64 bytes. *schema gets the
    // stored schema.
    static const CRuntimeClass* Load(CArchive& ar, UINT* schema);

    const char* m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema; // 0xFFFF: not serialisable
    CObject* (*m_pfnCreateObject)();
    const CRuntimeClass* m_pBaseClass;
};

// Schema flag: a class that accepts any stored schema and asks GetObjectSchema for it.
constexpr UINT VERSIONABLE_SCHEMA = 0x80000000u;

class CObject {
public:
    virtual ~CObject() = default;
    virtual const CRuntimeClass* GetRuntimeClass() const;
    virtual void Serialize(CArchive& ar);
    BOOL IsKindOf(const CRuntimeClass* someClass) const;
    BOOL IsSerializable() const { return GetRuntimeClass()->m_wSchema != 0xFFFF; }

    static const CRuntimeClass classCObject;
};

template <class T> CObject* CreateObjectOf() {
    return new T();
}

// The run-time class of T, made creatable by name with the given serial schema:
//   const CRuntimeClass CShape::classCShape = MakeRuntimeClass<CShape>("CShape", 1,
//   &CObject::classCObject);
template <class T>
CRuntimeClass MakeRuntimeClass(const char* className, UINT schema, const CRuntimeClass* baseClass) {
    return CRuntimeClass(className, static_cast<int>(sizeof(T)), schema, &CreateObjectOf<T>,
                         baseClass);
}
