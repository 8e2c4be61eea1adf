// Line splitting of whole texts for colouring.
#include "syntax/text_lines.h"

namespace talvor::syntax {

std::vector<std::string_view> SplitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        const std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
        if (end == std::string_view::npos)
            end = text.size();
        else if (end > start && text[end - 1] == '\r')
            --end;
        lines.push_back(text.substr(start, end - start));
        start = next;
    }
    return lines;
}

} // namespace talvor::syntax
