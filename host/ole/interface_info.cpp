// Ownership and lookup of interface, method and parameter descriptions.
#include "host/ole/interface_info.h"

#include "host/ole/interface_builder.h"

#include <memory>

CVXMethodInfo::~CVXMethodInfo() {
    for (INT_PTR i = 0; i < m_arrParams.GetSize(); ++i)
        delete static_cast<CVXMethodParamInfo*>(m_arrParams[i]);
}

CVXMethodParamInfo* CVXMethodInfo::GetParam(int index) const {
    if (index < 0 || index >= m_arrParams.GetSize())
        return nullptr;
    return static_cast<CVXMethodParamInfo*>(m_arrParams[index]);
}

CVXMethodInfo* CVXInterfaceInfo::GetMethod(int index) const {
    if (index < 0 || index >= m_arrMethods.GetSize())
        return nullptr;
    return static_cast<CVXMethodInfo*>(m_arrMethods[index]);
}

void CVXInterfaceInfo::RemoveAllMethods() {
    for (INT_PTR i = 0; i < m_arrMethods.GetSize(); ++i)
        delete static_cast<CVXMethodInfo*>(m_arrMethods[i]);
    m_arrMethods.RemoveAll();
}

HRESULT CVXInterfaceInfo::Init(ITypeInfo* typeInfo) {
    if (typeInfo == nullptr)
        return E_POINTER;
    std::unique_ptr<CVXInterfaceInfo> built = talvor::host::BuildInterfaceFromTypeInfo(typeInfo);
    if (!built)
        return E_FAIL;
    m_strName = built->m_strName;
    m_iid = built->m_iid;
    for (INT_PTR i = 0; i < built->m_arrMethods.GetSize(); ++i)
        m_arrMethods.Add(built->m_arrMethods[i]);
    built->m_arrMethods.RemoveAll(); // the methods have moved here
    return S_OK;
}
