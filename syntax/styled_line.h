// The golden form of a coloured line, shared by the tests, the benchmark and reviews: the
// cookie at the line's end in hex, a blank, then {n} before each run. In the text form the
// line's bytes stand between the marks; in the length form only their counts do, so the
// colouring of a file that is not ours can be kept without a copy of the file.
#pragma once

#include "syntax/syntax.h"

#include <string>
#include <string_view>

namespace talvor::syntax {

enum class StyledForm { Text, Lengths };

// Appends one line in golden form, ended by "\n". Run starts past the line's end count as its
// end.
void AppendStyledLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                      unsigned long cookieAtEnd, StyledForm form);

} // namespace talvor::syntax
