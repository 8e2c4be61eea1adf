// The loader's side that the reader calls for an import: the resolver, then the file beside
// the importing library and in the search path; loaded libraries are kept by path.
#pragma once

#include "platform/com/type_info.h"

#include <string>

namespace talvor::platform::typelib {

HRESULT ResolveImport(REFGUID libid, WORD major, WORD minor, LCID lcid, const std::string& fileName,
                      const std::string& folder, ITypeLib** lib);

} // namespace talvor::platform::typelib
