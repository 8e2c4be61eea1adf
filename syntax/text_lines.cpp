// Line splitting of whole texts for colouring.
#include "syntax/text_lines.h"

namespace talvor::syntax {

std::vector<std::string_view> SplitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t pos = 0; pos < text.size();)
        lines.push_back(NextLine(text, pos));
    return lines;
}

} // namespace talvor::syntax
