// Interface descriptions from plain member lists.
#include "host/ole/interface_builder.h"

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

} // namespace talvor::host
