// The registry's values as the library reads them (RegOpenKeyEx, RegQueryValueEx, RegCloseKey):
// a process-wide store of keys under their root, each with named 32-bit and text values. The
// host fills it (from the system it runs on, or from its own settings); a test sets what it
// needs. Nothing is persisted here.
#pragma once

#include "platform/core/win_types.h"

#include <string>

struct RegistryKey;
using HKEY = RegistryKey*;
using PHKEY = HKEY*;
using REGSAM = DWORD;
using LSTATUS = LONG;

HKEY const HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::uintptr_t{0x80000000});
HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
HKEY const HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

constexpr LSTATUS ERROR_SUCCESS = 0;
constexpr LSTATUS ERROR_FILE_NOT_FOUND = 2;
constexpr LSTATUS ERROR_INVALID_HANDLE = 6;
constexpr LSTATUS ERROR_MORE_DATA = 234;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_DWORD = 4;
constexpr REGSAM KEY_READ = 0x20019;
constexpr REGSAM KEY_QUERY_VALUE = 0x0001;

// Opens an existing key ("A\\B\\C", case ignored); ERROR_FILE_NOT_FOUND when it has no values.
LSTATUS RegOpenKeyEx(HKEY root, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result);
// Copies the value into data (up to *size bytes; text with its terminating zero) and sets
// *size to the bytes the value holds. ERROR_MORE_DATA, nothing copied, when it does not fit.
LSTATUS RegQueryValueEx(HKEY key, LPCSTR valueName, DWORD* reserved, DWORD* type, BYTE* data,
                        DWORD* size);
LSTATUS RegCloseKey(HKEY key);

namespace talvor::platform {
void SetRegistryDword(HKEY root, const std::string& subKey, const std::string& name, DWORD value);
void SetRegistryString(HKEY root, const std::string& subKey, const std::string& name,
                       const std::string& value);
// Removes a key with its values; an empty subKey removes everything under the root.
void DeleteRegistryKey(HKEY root, const std::string& subKey);
} // namespace talvor::platform
