// Interface descriptions from plain member lists and from type descriptions.
#include "host/ole/interface_builder.h"

#include "platform/com/bstr.h"

namespace talvor::host {

std::unique_ptr<CVXInterfaceInfo> BuildInterface(const std::string& name,
                                                 const std::vector<MemberDescription>& members) {
    auto info = std::make_unique<CVXInterfaceInfo>();
    info->SetName(CString(name));
    for (const MemberDescription& member : members) {
        auto* method = new CVXMethodInfo(CString(member.name), member.id, member.kind);
        for (const std::string& param : member.params)
            method->AddParam(new CVXMethodParamInfo(CString(param)));
        info->AddMethod(method);
    }
    return info;
}

std::unique_ptr<CVXInterfaceInfo> BuildInterfaceFromTypeInfo(ITypeInfo* typeInfo) {
    if (!typeInfo)
        return nullptr;
    TYPEATTR* attr = nullptr;
    if (FAILED(typeInfo->GetTypeAttr(&attr)))
        return nullptr;
    auto info = std::make_unique<CVXInterfaceInfo>();
    info->SetIID(attr->guid);
    BSTR name = nullptr;
    if (SUCCEEDED(typeInfo->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
        info->SetName(CString(platform::MultiByteFromWide(name).c_str()));
    SysFreeString(name);
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* desc = nullptr;
        if (FAILED(typeInfo->GetFuncDesc(i, &desc)))
            continue;
        BSTR names[64] = {};
        UINT count = 0;
        typeInfo->GetNames(desc->memid, names, 64, &count);
        auto* method =
            new CVXMethodInfo(CString(count ? platform::MultiByteFromWide(names[0]).c_str() : ""),
                              desc->memid, desc->invkind);
        for (UINT p = 1; p < count && static_cast<SHORT>(p) <= desc->cParams; ++p)
            method->AddParam(
                new CVXMethodParamInfo(CString(platform::MultiByteFromWide(names[p]).c_str())));
        for (UINT n = 0; n < count; ++n)
            SysFreeString(names[n]);
        info->AddMethod(method);
        typeInfo->ReleaseFuncDesc(desc);
    }
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* desc = nullptr;
        if (FAILED(typeInfo->GetVarDesc(i, &desc)))
            continue;
        BSTR varName = nullptr;
        UINT count = 0;
        typeInfo->GetNames(desc->memid, &varName, 1, &count);
        info->AddMethod(
            new CVXMethodInfo(CString(count ? platform::MultiByteFromWide(varName).c_str() : ""),
                              desc->memid, INVOKE_PROPERTYGET));
        if (count)
            SysFreeString(varName);
        typeInfo->ReleaseVarDesc(desc);
    }
    typeInfo->ReleaseTypeAttr(attr);
    return info;
}

} // namespace talvor::host
