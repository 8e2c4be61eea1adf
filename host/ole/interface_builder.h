// Builds interface descriptions from plain data: the form description of the tool and the
// tests use it; descriptions read from type libraries will have a builder of their own.
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

} // namespace talvor::host
