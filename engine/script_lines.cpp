// Text to lines, the first step of every parse of a whole text.
#include "engine/script_text_disposal.h"

#include <algorithm>
#include <string_view>

void CTalvorScriptTextDisposal::ChangeScripText(CString text, CStringArray& lines) {
    lines.RemoveAll();
    if (text.IsEmpty())
        return;
    // The piece behind the last line feed is the one that the rule drops, so it is never
    // made: a last line without a line end is lost. Lines are counted first so that each is
    // built once, in its place.
    std::string_view rest = text.View();
    lines.SetSize(static_cast<INT_PTR>(std::count(rest.begin(), rest.end(), '\n')));
    for (INT_PTR i = 0; i < lines.GetSize(); ++i) {
        std::size_t feed = rest.find('\n');
        std::size_t length = feed;
        while (length > 0 && rest[length - 1] == '\r')
            --length;
        lines[i] = CString(rest.substr(0, length));
        rest.remove_prefix(feed + 1);
    }
}
