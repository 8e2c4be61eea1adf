#include "typeinfo/interface_info.h"

#include "host/ole/form_type_library.h"
#include "typeinfo/detail/prop_type_decoder.h"

#include <new>

using talvor::typeinfo::HiddenOrNonBrowsable;
using talvor::typeinfo::PropTypeTarget;

CTalvorMethodInfo::CTalvorMethodInfo(VPPropTypes& type, CStringArray& names,
                                     CArray<tagVARIANT, tagVARIANT>& values)
    : m_nPropType(type) {
    m_arrNames.Copy(names);
    m_arrValues.Copy(values);
}

CTalvorMethodInfo::~CTalvorMethodInfo() {
    for (CTalvorMethodInfo* param : m_arrParams)
        delete param;
}

long CTalvorMethodInfo::InitEx(IDispatch* dispatch, GUID& clsid, long id) {
    m_clsidControl = clsid;
    m_lID = id;
    if (clsid == talvor::host::IID_ITalvorForm)
        TVPfxGetContainerDocTypeInfo(0, &m_pTypeInfo);
    else
        TVPfxGetActiveXTypeInfo(m_clsidControl, 0, &m_pTypeInfo);
    InitGetItemPropTypeInfo(dispatch, m_pTypeInfo, m_lID);
    m_nPropCat = InitGetPropCat(dispatch, m_lID);
    if (m_nPropType == VP_PROP_PAGE)
        InitGetPropPageCLSID(dispatch, m_lID, &m_clsidPropPage);
    return 0;
}

void CTalvorMethodInfo::InitGetPropTypeInfo(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc) {
    talvor::typeinfo::DecodePropType(typeInfo, typeDesc,
                                     PropTypeTarget{m_nPropType, m_arrNames, m_arrValues});
}

void CTalvorMethodInfo::InitGetPropTypeInfoEx(IDispatch* dispatch, long dispId) {
    talvor::typeinfo::RefinePropType(dispatch, dispId,
                                     PropTypeTarget{m_nPropType, m_arrNames, m_arrValues});
}

void CTalvorMethodInfo::InitGetItemPropTypeInfo(IDispatch* dispatch, ITypeInfo* typeInfo,
                                                long dispId) {
    if (!dispatch || !typeInfo)
        return;
    m_nPropType = VP_PROP_NONE;
    TYPEATTR* attr = nullptr;
    if (FAILED(typeInfo->GetTypeAttr(&attr)))
        return;
    bool matched = false;
    bool finished = false;
    for (UINT i = 0; i < attr->cVars && !matched; ++i) {
        VARDESC* var = nullptr;
        if (FAILED(typeInfo->GetVarDesc(i, &var))) {
            typeInfo->ReleaseTypeAttr(attr);
            return;
        }
        if (var->memid == dispId) {
            m_wFlags = var->wVarFlags;
            if (!(var->wVarFlags & HiddenOrNonBrowsable)) {
                matched = true;
                InitGetPropTypeInfo(typeInfo, &var->elemdescVar.tdesc);
                if (m_nPropType == VP_PROP_ENUM)
                    finished = true;
                else if (m_nPropType != VP_PROP_NONE)
                    InitGetPropTypeInfoEx(dispatch, dispId);
            }
        }
        typeInfo->ReleaseVarDesc(var);
    }
    for (UINT i = 0; i < attr->cFuncs && !matched; ++i) {
        FUNCDESC* func = nullptr;
        if (FAILED(typeInfo->GetFuncDesc(i, &func))) {
            typeInfo->ReleaseTypeAttr(attr);
            return;
        }
        if (func->memid == dispId) {
            m_wFlags = func->wFuncFlags;
            if ((func->invkind == INVOKE_PROPERTYPUT || func->invkind == INVOKE_PROPERTYPUTREF) &&
                !(func->wFuncFlags & HiddenOrNonBrowsable) && func->cParams == 1) {
                matched = true;
                InitGetPropTypeInfo(typeInfo, &func->lprgelemdescParam[0].tdesc);
                if (m_nPropType == VP_PROP_ENUM)
                    finished = true;
                else if (m_nPropType != VP_PROP_OBJECT && m_nPropType != VP_PROP_NONE)
                    InitGetPropTypeInfoEx(dispatch, dispId);
            } else if (func->invkind == INVOKE_FUNC && func->cParams > 0) {
                // A method: one description per parameter; no page is looked for.
                matched = true;
                finished = true;
                m_arrParams.SetSize(func->cParams);
                for (SHORT p = 0; p < func->cParams; ++p) {
                    InitGetPropTypeInfo(typeInfo, &func->lprgelemdescParam[p].tdesc);
                    if (m_nPropType != VP_PROP_ENUM && m_nPropType != VP_PROP_OBJECT &&
                        m_nPropType != VP_PROP_NONE)
                        InitGetPropTypeInfoEx(dispatch, dispId);
                    auto* param =
                        new (std::nothrow) CTalvorMethodInfo(m_nPropType, m_arrNames, m_arrValues);
                    if (!param)
                        break;
                    m_arrParams[p] = param;
                }
            }
        }
        typeInfo->ReleaseFuncDesc(func);
    }
    if (!finished && (m_nPropType == VP_PROP_TEXT || m_nPropType == VP_PROP_INTEGER ||
                      m_nPropType == VP_PROP_REAL || m_nPropType == VP_PROP_DATE)) {
        GUID page = GUID_NULL;
        if (InitGetPropPageCLSID(dispatch, dispId, &page) == S_OK)
            m_nPropType = VP_PROP_PAGE;
    }
    typeInfo->ReleaseTypeAttr(attr);
}

int CTalvorMethodInfo::InitGetActiveXTypeInfo(GUID clsid, int event, ITypeInfo** typeInfo) {
    return TVPfxGetActiveXTypeInfo(clsid, event, typeInfo);
}

int CTalvorMethodInfo::InitGetPropCat(IDispatch* dispatch, long dispId) {
    return TVPfxGetPropCat(dispatch, dispId);
}

long CTalvorMethodInfo::InitGetPropPageCLSID(IDispatch* dispatch, long dispId, GUID* page) {
    return TVPfxGetPropPageCLSID(dispatch, dispId, page);
}

int CTalvorMethodInfo::InitCheckInterface(IUnknown* unknown, const GUID& iid) {
    return TVPfxCheckInterface(unknown, iid);
}

CTalvorInterfaceInfo::~CTalvorInterfaceInfo() {
    for (CTalvorMethodInfo* method : m_arrMethods)
        delete method;
}

long CTalvorInterfaceInfo::InitEx(CVXInterfaceInfo* source, IDispatch* dispatch, GUID& clsid) {
    if (!source)
        return 0;
    m_iid = source->GetIID();
    const int count = source->GetNumMethods();
    m_arrMethods.SetSize(count);
    for (int i = 0; i < count; ++i) {
        m_arrMethods[i] = nullptr;
        auto* method = new (std::nothrow) CTalvorMethodInfo();
        if (!method)
            return E_OUTOFMEMORY;
        m_arrMethods[i] = method;
        CVXMethodInfo* member = source->GetMethod(i);
        const long result = method->InitEx(dispatch, clsid, member ? member->GetID() : 0);
        if (result < 0)
            return result;
    }
    return 0;
}

CTalvorMethodInfo* CTalvorInterfaceInfo::FindMethod(long id) {
    for (CTalvorMethodInfo* method : m_arrMethods) {
        if (method && method->GetID() == id)
            return method;
    }
    return nullptr;
}
