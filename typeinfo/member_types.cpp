#include "typeinfo/member_types.h"

#include "host/ole/form_type_library.h"
#include "platform/com/registry/com_registry.h"
#include "typeinfo/detail/prop_type_decoder.h"

using talvor::typeinfo::HiddenOrNonBrowsable;
using talvor::typeinfo::PropTypeTarget;

void TVPfxGetPropTypeInfo(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc,
                          tagACTIVEXPROPTYPEINFO* info) {
    if (!info)
        return;
    talvor::typeinfo::DecodePropType(
        typeInfo, typeDesc, PropTypeTarget{info->nPropType, info->arrNames, info->arrValues});
}

void TVPfxGetPropTypeInfoEx(IDispatch* dispatch, long dispId, tagACTIVEXPROPTYPEINFO* info) {
    if (!info)
        return;
    talvor::typeinfo::RefinePropType(
        dispatch, dispId, PropTypeTarget{info->nPropType, info->arrNames, info->arrValues});
}

void TVPfxGetItemPropTypeInfo(IDispatch* dispatch, ITypeInfo* typeInfo, long dispId,
                              tagACTIVEXPROPTYPEINFO* info) {
    if (!info || !dispatch || !typeInfo)
        return;
    info->nPropType = VP_PROP_NONE;
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
        if (var->memid == dispId && !(var->wVarFlags & HiddenOrNonBrowsable)) {
            matched = true;
            TVPfxGetPropTypeInfo(typeInfo, &var->elemdescVar.tdesc, info);
            if (info->nPropType == VP_PROP_ENUM)
                finished = true;
            else if (info->nPropType != VP_PROP_NONE)
                TVPfxGetPropTypeInfoEx(dispatch, dispId, info);
        }
        typeInfo->ReleaseVarDesc(var);
    }
    for (UINT i = 0; i < attr->cFuncs && !matched; ++i) {
        FUNCDESC* func = nullptr;
        if (FAILED(typeInfo->GetFuncDesc(i, &func))) {
            typeInfo->ReleaseTypeAttr(attr);
            return;
        }
        if (func->memid == dispId &&
            (func->invkind == INVOKE_PROPERTYPUT || func->invkind == INVOKE_PROPERTYPUTREF) &&
            !(func->wFuncFlags & HiddenOrNonBrowsable) && func->cParams == 1) {
            matched = true;
            TVPfxGetPropTypeInfo(typeInfo, &func->lprgelemdescParam[0].tdesc, info);
            if (info->nPropType == VP_PROP_ENUM)
                finished = true;
            else if (info->nPropType != VP_PROP_OBJECT && info->nPropType != VP_PROP_NONE)
                TVPfxGetPropTypeInfoEx(dispatch, dispId, info);
        }
        typeInfo->ReleaseFuncDesc(func);
    }
    if (!finished && (info->nPropType == VP_PROP_TEXT || info->nPropType == VP_PROP_INTEGER ||
                      info->nPropType == VP_PROP_REAL || info->nPropType == VP_PROP_DATE)) {
        GUID page = GUID_NULL;
        if (TVPfxGetPropPageCLSID(dispatch, dispId, &page) == S_OK)
            info->nPropType = VP_PROP_PAGE;
    }
    typeInfo->ReleaseTypeAttr(attr);
}

int TVPfxGetActiveXTypeInfo(GUID clsid, int event, ITypeInfo** typeInfo) {
    if (!typeInfo)
        return 0;
    IUnknown* unknown = nullptr;
    if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(&unknown))))
        return 0;
    int result = 0;
    IDispatch* dispatch = nullptr;
    IProvideClassInfo* provide = nullptr;
    ITypeInfo* coclass = nullptr;
    TYPEATTR* attr = nullptr;
    if (SUCCEEDED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch))) &&
        SUCCEEDED(
            dispatch->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&provide))) &&
        SUCCEEDED(provide->GetClassInfo(&coclass)) && SUCCEEDED(coclass->GetTypeAttr(&attr))) {
        const int wanted =
            event ? (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE) : IMPLTYPEFLAG_FDEFAULT;
        for (UINT i = 0; i < attr->cImplTypes; ++i) {
            INT flags = 0;
            if (FAILED(coclass->GetImplTypeFlags(i, &flags)) || (flags & 7) != wanted)
                continue;
            HREFTYPE href = 0;
            ITypeInfo* found = nullptr;
            if (SUCCEEDED(coclass->GetRefTypeOfImplType(i, &href)) &&
                SUCCEEDED(coclass->GetRefTypeInfo(href, &found))) {
                *typeInfo = found;
                result = 1;
            }
            break;
        }
    }
    if (attr)
        coclass->ReleaseTypeAttr(attr);
    if (coclass)
        coclass->Release();
    if (provide)
        provide->Release();
    if (dispatch)
        dispatch->Release();
    unknown->Release();
    return result;
}

int TVPfxGetContainerDocTypeInfo(int event, ITypeInfo** typeInfo) {
    if (!typeInfo)
        return 0;
    talvor::host::RegisterFormTypeLibrary();
    ITypeLib* lib = nullptr;
    if (FAILED(LoadRegTypeLib(talvor::host::LIBID_TalvorForm, 1, 0, GetUserDefaultLCID(), &lib)))
        return 0;
    const GUID& wanted =
        event ? talvor::host::DIID_ITalvorFormEvents : talvor::host::IID_ITalvorForm;
    int result = 0;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo* type = nullptr;
        if (FAILED(lib->GetTypeInfo(i, &type)))
            break;
        TYPEATTR* attr = nullptr;
        if (FAILED(type->GetTypeAttr(&attr))) {
            type->Release();
            break;
        }
        const bool match = attr->guid == wanted;
        type->ReleaseTypeAttr(attr);
        if (match) {
            *typeInfo = type;
            result = 1;
            break;
        }
        type->Release();
    }
    lib->Release();
    return result;
}
