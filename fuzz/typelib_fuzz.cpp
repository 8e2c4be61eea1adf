// Arbitrary bytes as a type library (MSFT image or PE file): a damaged library is refused at
// load, and one that loads can be walked completely, every reference followed and every
// member described, without leaving the buffer or the depth limits.
#include "platform/com/bstr.h"
#include "platform/com/typelib/type_lib.h"
#include "typeinfo/member_types.h"

#include <cstdint>
#include <cstdlib>

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void FollowType(ITypeInfo* type, TYPEDESC* desc, int depth) {
    if (!desc || depth > 40)
        return;
    if (desc->vt == VT_PTR || desc->vt == VT_SAFEARRAY) {
        Check(desc->lptdesc != nullptr);
        FollowType(type, desc->lptdesc, depth + 1);
    } else if (desc->vt == VT_CARRAY) {
        Check(desc->lpadesc != nullptr && desc->lpadesc->cDims > 0);
        FollowType(type, &desc->lpadesc->tdescElem, depth + 1);
    } else if (desc->vt == VT_USERDEFINED) {
        ITypeInfo* target = nullptr;
        if (SUCCEEDED(type->GetRefTypeInfo(desc->hreftype, &target))) {
            TYPEATTR* attr = nullptr;
            if (SUCCEEDED(target->GetTypeAttr(&attr)))
                target->ReleaseTypeAttr(attr);
            target->Release();
        }
    }
}

void Walk(ITypeInfo* type) {
    TYPEATTR* attr = nullptr;
    if (FAILED(type->GetTypeAttr(&attr)))
        return;
    tagACTIVEXPROPTYPEINFO info;
    for (UINT f = 0; f < attr->cFuncs; ++f) {
        FUNCDESC* func = nullptr;
        Check(SUCCEEDED(type->GetFuncDesc(f, &func)));
        Check(func->cParams >= 0 && (func->cParams == 0 || func->lprgelemdescParam));
        BSTR names[8];
        UINT count = 0;
        if (SUCCEEDED(type->GetNames(func->memid, names, 8, &count))) {
            for (UINT n = 0; n < count; ++n)
                SysFreeString(names[n]);
        }
        FollowType(type, &func->elemdescFunc.tdesc, 0);
        TVPfxGetPropTypeInfo(type, &func->elemdescFunc.tdesc, &info);
        for (SHORT p = 0; p < func->cParams; ++p)
            FollowType(type, &func->lprgelemdescParam[p].tdesc, 0);
        type->ReleaseFuncDesc(func);
    }
    for (UINT v = 0; v < attr->cVars; ++v) {
        VARDESC* var = nullptr;
        Check(SUCCEEDED(type->GetVarDesc(v, &var)));
        FollowType(type, &var->elemdescVar.tdesc, 0);
        TVPfxGetPropTypeInfo(type, &var->elemdescVar.tdesc, &info);
        type->ReleaseVarDesc(var);
    }
    for (UINT i = 0; i < attr->cImplTypes; ++i) {
        HREFTYPE href = 0;
        ITypeInfo* impl = nullptr;
        if (SUCCEEDED(type->GetRefTypeOfImplType(i, &href)) &&
            SUCCEEDED(type->GetRefTypeInfo(href, &impl)))
            impl->Release();
    }
    if (attr->typekind == TKIND_ALIAS)
        FollowType(type, &attr->tdescAlias, 0);
    type->ReleaseTypeAttr(attr);
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> records;
    TVPfxGetComAptitudeInfo(&type, records, 0, nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ITypeLib* lib = nullptr;
    std::string error;
    // No folder: imports named by the input are never looked for on disk.
    const HRESULT hr = talvor::platform::LoadTypeLibFromMemory(data, size, "", &lib, &error);
    if (FAILED(hr)) {
        Check(lib == nullptr && !error.empty());
        return 0; // a clean rejection is a correct answer
    }
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo* type = nullptr;
        Check(SUCCEEDED(lib->GetTypeInfo(i, &type)));
        Walk(type);
        type->Release();
    }
    lib->Release();
    return 0;
}
