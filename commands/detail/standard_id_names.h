// The standard commands by id and name, in the order in which look-ups take the first match.
#pragma once

#include <span>

namespace talvor::commands {

struct StandardIdName {
    const char* name;
    unsigned int id;
};

std::span<const StandardIdName> StandardIdNames();
// The table's name of id, or null.
const char* FindStandardIdName(unsigned int id);

// Controls of these ids never take part in the pool's naming and are taken out of the pool.
inline constexpr long ExcludedCommandFirst = 40000;
inline constexpr long ExcludedCommandSecond = 40001;
inline bool IsExcludedCommand(long id) {
    return id == ExcludedCommandFirst || id == ExcludedCommandSecond;
}

} // namespace talvor::commands
