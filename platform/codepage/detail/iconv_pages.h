// Every page other than UTF-8 and 1252 converts through the C library's iconv.
#pragma once

#include "platform/codepage/detail/page_table.h"

#include <string>
#include <string_view>

namespace talvor::platform::detail {

// UTF-16 form of text in page; a byte sequence the page does not define gives one escape unit
// per byte. Without a converter for the page, bytes below 0x80 convert and the rest escape.
std::u16string IconvToWide(const PageInfo& page, std::string_view text);
// Text in page of UTF-16 text; escape units give back their byte, characters the page cannot
// hold give "?".
std::string IconvFromWide(const PageInfo& page, std::u16string_view wide);

// True when the page maps each byte below 0x80 to the code unit of the same value and back.
bool IconvAsciiSame(const PageInfo& page);

} // namespace talvor::platform::detail
