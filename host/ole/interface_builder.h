// Builds interface descriptions from plain data (the form description of the tool and the
// tests) or from a type description: one method per function, in the order of the type.
#pragma once

#include "host/ole/interface_info.h"

#include <memory>
#include <string>
#include <vector>

namespace talvor::host {

struct MemberDescription {
    std::string name;
    long id = 0;
    std::vector<std::string> params;
    INVOKEKIND kind = INVOKE_FUNC;
};

std::unique_ptr<CVXInterfaceInfo> BuildInterface(const std::string& name,
                                                 const std::vector<MemberDescription>& members);

// The functions of `typeInfo` with their parameter names, and its name and identifier; null
// when its attributes can't be read. Variables of a dispinterface become property members.
std::unique_ptr<CVXInterfaceInfo> BuildInterfaceFromTypeInfo(ITypeInfo* typeInfo);

} // namespace talvor::host
