// The resource script of TalvorRes that is compiled into the library.
#pragma once

#include <string_view>

namespace talvor::resources {
std::string_view BuiltInScript();
}
