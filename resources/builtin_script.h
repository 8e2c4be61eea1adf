// The resource script of TalvorRes and the header of its ids, compiled into the library.
#pragma once

#include <string_view>

namespace talvor::resources {

// The name under which the script includes the ids header.
inline constexpr const char* IdsHeaderName = "talvor_res_ids.h";

std::string_view BuiltInScript();
std::string_view BuiltInIdsHeader();

} // namespace talvor::resources
