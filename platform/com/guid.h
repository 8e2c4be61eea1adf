// Globally unique identifiers and their registry text form
// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}": upper-case hex when written, either case when read.
#pragma once

#include "platform/core/win_types.h"

#include <string>
#include <string_view>

using OLECHAR = wchar_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(const GUID& a, const GUID& b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3)
        return false;
    for (int i = 0; i < 8; ++i) {
        if (a.Data4[i] != b.Data4[i])
            return false;
    }
    return true;
}
inline bool IsEqualGUID(REFGUID a, REFGUID b) {
    return a == b;
}
inline bool IsEqualIID(REFIID a, REFIID b) {
    return a == b;
}
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) {
    return a == b;
}

inline constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

// Memory the component model hands to callers (strings of StringFromCLSID, counted arrays of
// IPerPropertyBrowsing); CoTaskMemFree of null does nothing.
void* CoTaskMemAlloc(std::size_t size);
void CoTaskMemFree(void* block);

// Writes the 38 characters and a terminator; gives 39, or 0 when `max` is below 39.
int StringFromGUID2(REFGUID guid, LPOLESTR text, int max);
// A new CoTaskMemAlloc string the caller frees; E_INVALIDARG for a null out pointer.
HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text);
HRESULT StringFromIID(REFIID iid, LPOLESTR* text);
// CO_E_CLASSSTRING (CO_E_IIDSTRING) for text that is not the braced form; *clsid becomes
// GUID_NULL then.
HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid);
HRESULT IIDFromString(LPCOLESTR text, IID* iid);

namespace talvor::platform {

// "{0002DF01-0000-0000-C000-000000000046}"
std::string GuidToText(REFGUID guid);
// Reads the braced form (braces optional, either case). False for anything else; `guid` is
// left alone then.
bool GuidFromText(std::string_view text, GUID& guid);
// A GUID written in the source as its registry text; the text must be well formed.
GUID MakeGuid(std::string_view text);

} // namespace talvor::platform
