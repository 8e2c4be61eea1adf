// The keyword question of a closed word as the binary search answers it, on a view into the
// line so that no word is copied.
#pragma once

#include "platform/core/win_types.h"
#include "platform/strings/arrays.h"

#include <string_view>

namespace talvor::syntax::detail {

// Binary search of a sorted keyword array: exact comparison when exactCase, otherwise the
// comparison that folds both sides to lower case. An empty array has no keywords.
bool IsKeyword(const CStringArray& keywords, bool exactCase, std::string_view word);

} // namespace talvor::syntax::detail
