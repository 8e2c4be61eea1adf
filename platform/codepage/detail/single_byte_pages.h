// Windows-1252, the common single-byte page, converted and case-mapped here directly; the other
// single-byte pages convert through iconv and keep their bytes above 0x7F as they are in case
// mapping.
#pragma once

#include <string>
#include <string_view>

namespace talvor::platform::detail {

// Lower and upper case of a 1252 byte: ASCII, the accented Latin letters and the four letter
// pairs at 0x8A..0x9F; every other byte maps to itself.
unsigned char Cp1252Lower(unsigned char b);
unsigned char Cp1252Upper(unsigned char b);

// UTF-16 form of 1252 text; every byte has a character (unassigned ones give their C1 control).
std::u16string Cp1252ToWide(std::string_view text);
// 1252 form of UTF-16 text; escape units give back their byte, other characters the page
// cannot hold give "?" (one for a whole surrogate pair).
std::string Cp1252FromWide(std::u16string_view wide);

} // namespace talvor::platform::detail
