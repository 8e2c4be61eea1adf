// Cutting a whole text into the lines the parsers take: without line ends, "\r\n" and "\n"
// alike, so a file colours the same whatever its line ends are.
#pragma once

#include <string_view>
#include <vector>

namespace talvor::syntax {

// The line that starts at pos, without its "\n" or "\r\n"; pos moves to the next line. A "\r"
// not followed by "\n" stays in its line. Call while pos < text.size().
inline std::string_view NextLine(std::string_view text, std::size_t& pos) {
    const std::size_t start = pos;
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) {
        pos = end = text.size();
    } else {
        pos = end + 1;
        if (end > start && text[end - 1] == '\r')
            --end;
    }
    return text.substr(start, end - start);
}

// All lines of the text. A text that ends with a line end has no empty line behind it; an
// empty text has no lines.
std::vector<std::string_view> SplitLines(std::string_view text);

} // namespace talvor::syntax
