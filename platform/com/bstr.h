// BSTR, the counted wide string of the component model: a length prefix before the first
// character, a terminator after the last; null stands for the empty string.
#pragma once

#include "platform/com/guid.h"

#include <string>
#include <string_view>

using BSTR = OLECHAR*;

BSTR SysAllocString(const OLECHAR* text);
// `length` characters from `text` (or uninitialised ones, zeroed here, for null `text`).
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
void SysFreeString(BSTR text);
UINT SysStringLen(BSTR text);
UINT SysStringByteLen(BSTR text);

namespace talvor::platform {

// Between the system code page and the wide form (UTF-32 in wchar_t on this platform).
std::wstring WideFromMultiByte(std::string_view text);
std::string MultiByteFromWide(std::wstring_view wide);
// Null gives an empty string.
std::string MultiByteFromWide(const OLECHAR* wide);
// Code units of UTF-16, as type libraries and PE resources store names.
std::wstring WideFromUtf16(std::u16string_view text);
BSTR AllocBstr(std::wstring_view text);

} // namespace talvor::platform
