// The replacement text of one match, with ECMAScript's substitution marks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::platform::detail {

// Appends replacement to out for the match described by groups (start and end of the whole
// match, then of each group, -1 for a group that took no part) in text: "$$" is a dollar sign,
// "$&" the match, "$`" the text before it, "$'" the text behind it, "$n" and "$nn" a group
// (the two-digit form when that group exists). Every other "$" stands for itself.
void AppendSubstitution(std::u16string& out, std::u16string_view replacement,
                        std::u16string_view text, const std::vector<std::ptrdiff_t>& groups);

} // namespace talvor::platform::detail
