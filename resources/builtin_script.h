// The resource script of TalvorRes, the header of its ids and its icon bitmap, compiled into the
// library.
#pragma once

#include <string_view>

namespace talvor::resources {

// The name under which the script includes the ids header.
inline constexpr const char* IdsHeaderName = "talvor_res_ids.h";

// The name under which the script names the bitmap of the standard tool bar's icons.
inline constexpr const char* StandardIconsName = "standard_icons.png";

std::string_view BuiltInScript();
std::string_view BuiltInIdsHeader();
std::string_view BuiltInStandardIcons();

} // namespace talvor::resources
