// The type description of a loaded script: a dispatch interface built in memory with one
// function per procedure the script defines outside its classes (name, invoke kind and
// parameter names), as the host's script engine reports it.
#pragma once

#include "host/base/vbscript_syntax_tree.h"
#include "platform/com/type_info.h"

#include <vector>

namespace talvor::host {

// A new type description with one reference, in *typeInfo; E_POINTER for a null out pointer.
HRESULT CreateScriptTypeInfo(const std::vector<vbscript::ProcedureInfo>& procedures,
                             ITypeInfo** typeInfo);

} // namespace talvor::host
