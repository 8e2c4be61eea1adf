// Finds a resource in a PE file (.dll, .ocx, .exe) by its type name and id, the way a type
// library is kept as the resource "TYPELIB" 1 of a control. Only the file's bytes are read;
// nothing is loaded or run.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace talvor::platform::typelib {

// True when `file` starts like a PE image ("MZ" with a "PE\0\0" header behind e_lfanew).
bool LooksLikePeFile(std::span<const std::uint8_t> file);

// The bytes of resource `typeName` / `id` (id 0: the first of that type) of the first
// language. False with a message in `error` when the file is not a well-formed PE image, has
// no such resource, or a structure points outside the file.
bool FindPeResource(std::span<const std::uint8_t> file, std::u16string_view typeName,
                    std::uint32_t id, std::span<const std::uint8_t>& resource, std::string& error);

} // namespace talvor::platform::typelib
