// Loading type libraries: the binary "MSFT" format from a .tlb file, or from the "TYPELIB"
// resource of a PE file (.dll, .ocx). The result implements ITypeLib and ITypeInfo with the
// views callers of the component model see (the dispatch half of a dual interface lists the
// inherited functions first, turns a trailing [retval] into the result and says FUNC_DISPATCH).
// Imported libraries (stdole2 and others) are found through the import resolver, else by
// file name beside the importing file and in the search path.
#pragma once

#include "platform/com/type_info.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// LoadTypeLib of the component model: a .tlb file, or a PE file holding resource TYPELIB 1.
// TYPE_E_CANTLOADLIBRARY when the file can't be read, TYPE_E_UNSUPFORMAT for a format other
// than "MSFT", TYPE_E_INVDATAREAD for a damaged or truncated library.
HRESULT LoadTypeLib(LPCOLESTR path, ITypeLib** lib);

namespace talvor::platform {

// As LoadTypeLib, with the path in the system code page and the reason of a failure as text
// ("typelib: name at 0x1f40 runs past end of data (0x1e00 bytes)"). A path loaded before gives
// the same library again.
HRESULT LoadTypeLibFromFile(const std::string& path, ITypeLib** lib, std::string* error = nullptr);

// A library from bytes in memory: an MSFT image or a PE file. `folder` is where imports are
// looked for first (may be empty). The bytes are copied.
HRESULT LoadTypeLibFromMemory(const std::uint8_t* data, std::size_t size, const std::string& folder,
                              ITypeLib** lib, std::string* error = nullptr);

// Adds a folder in which imported libraries are looked for by file name. The variable
// TALVOR_TYPELIB_PATH (folders separated by ':') is read as well.
void AddTypeLibSearchPath(const std::string& folder);

// Asked first for every import, with the library identifier, version and locale that the
// importing library records and the file name it names. The registry installs one. S_OK and
// a library with a reference, or a failure to fall back to the search by file name.
using TypeLibImportResolver = std::function<HRESULT(
    REFGUID libid, WORD major, WORD minor, LCID lcid, const std::string& fileName, ITypeLib** lib)>;
void SetTypeLibImportResolver(TypeLibImportResolver resolver);

// Forgets the libraries loaded by path (tests use it to see a file load afresh).
void ClearTypeLibCache();

} // namespace talvor::platform
