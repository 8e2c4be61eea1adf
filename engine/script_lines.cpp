// Text to lines, the first step of every parse of a whole text.
#include "engine/script_text_disposal.h"

#include <string_view>

void CTalvorScriptTextDisposal::ChangeScripText(CString text, CStringArray& lines) {
    lines.RemoveAll();
    if (text.IsEmpty())
        return;
    // The piece behind the last line feed is the one that the rule drops, so it is never
    // made: a last line without a line end is lost. Each line is built once, in its place;
    // the array grows by doubling and is cut to size at the end.
    std::string_view rest = text.View();
    INT_PTR count = 0;
    for (std::size_t feed = rest.find('\n'); feed != std::string_view::npos;
         feed = rest.find('\n')) {
        std::size_t length = feed;
        while (length > 0 && rest[length - 1] == '\r')
            --length;
        if (count == lines.GetSize())
            lines.SetSize(count < 64 ? 64 : 2 * count);
        lines[count++] = CString(rest.substr(0, length));
        rest.remove_prefix(feed + 1);
    }
    lines.SetSize(count);
}
