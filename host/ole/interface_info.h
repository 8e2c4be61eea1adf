// The host's description of a control's interface: events or methods with their member ids
// and parameter names. An interface owns its method objects, and a method owns its parameters.
// Objects are filled by AddMethod/AddParam (see interface_builder.h); users only read them.
#pragma once

#include "platform/com/type_info.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

class CVXMethodParamInfo {
public:
    CVXMethodParamInfo() = default;
    explicit CVXMethodParamInfo(const CString& name) : m_strName(name) {}
    CString GetName() const { return m_strName; }
    void SetName(const CString& name) { m_strName = name; }

private:
    CString m_strName;
};

class CVXMethodInfo {
public:
    CVXMethodInfo() = default;
    CVXMethodInfo(const CString& name, long id, INVOKEKIND kind = INVOKE_FUNC)
        : m_strName(name), m_nID(id), m_invokeKind(kind) {}
    ~CVXMethodInfo();
    CVXMethodInfo(const CVXMethodInfo&) = delete;
    CVXMethodInfo& operator=(const CVXMethodInfo&) = delete;

    CString GetName() const { return m_strName; }
    long GetID() const { return m_nID; }
    INVOKEKIND GetInvokeKind() const { return m_invokeKind; }
    int GetNumParams() const { return static_cast<int>(m_arrParams.GetSize()); }
    // Null for an index outside the parameters.
    CVXMethodParamInfo* GetParam(int index) const;

    void SetName(const CString& name) { m_strName = name; }
    void SetID(long id) { m_nID = id; }
    void SetInvokeKind(INVOKEKIND kind) { m_invokeKind = kind; }
    // Takes ownership; a null parameter is kept as a gap (GetParam gives null for it).
    void AddParam(CVXMethodParamInfo* param) { m_arrParams.Add(param); }

private:
    CString m_strName;
    long m_nID = 0;
    INVOKEKIND m_invokeKind = INVOKE_FUNC;
    CPtrArray m_arrParams;
};

class CVXInterfaceInfo {
public:
    CVXInterfaceInfo() = default;
    ~CVXInterfaceInfo() { RemoveAllMethods(); }
    CVXInterfaceInfo(const CVXInterfaceInfo&) = delete;
    CVXInterfaceInfo& operator=(const CVXInterfaceInfo&) = delete;

    CString GetName() const { return m_strName; }
    void SetName(const CString& name) { m_strName = name; }
    GUID GetIID() const { return m_iid; }
    void SetIID(const GUID& iid) { m_iid = iid; }
    int GetNumMethods() const { return static_cast<int>(m_arrMethods.GetSize()); }
    // Null for an index outside the methods, or for a gap left by a null AddMethod.
    CVXMethodInfo* GetMethod(int index) const;
    // Takes ownership; a null method is kept as a gap.
    void AddMethod(CVXMethodInfo* method) { m_arrMethods.Add(method); }
    // Destroys every method and empties the list.
    void RemoveAllMethods();
    // Fills the description from a type description: one method per function, with its
    // parameter names, in the order of the type, behind the methods already held; the name and
    // identifier become the type's. E_POINTER for a null type, else the failure of its
    // attributes.
    HRESULT Init(ITypeInfo* typeInfo);

    // The members as the pointer array the engine walks; elements are CVXMethodInfo* owned by
    // this object. Whoever removes an element destroys it.
    CPtrArray m_arrMethods;

private:
    CString m_strName;
    GUID m_iid = GUID_NULL;
};
