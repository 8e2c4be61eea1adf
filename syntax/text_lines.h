// Cutting a whole text into the lines the parsers take: without line ends, "\r\n" and "\n"
// alike, so a file colours the same whatever its line ends are.
#pragma once

#include <string_view>
#include <vector>

namespace talvor::syntax {

// Lines of the text, each without its "\n" or "\r\n". A text that ends with a line end has no
// empty line behind it; an empty text has no lines. A "\r" not followed by "\n" stays in its
// line.
std::vector<std::string_view> SplitLines(std::string_view text);

} // namespace talvor::syntax
