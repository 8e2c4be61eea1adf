// Golden form of coloured lines.
#include "syntax/styled_line.h"

#include <cstdio>

namespace talvor::syntax {
namespace {
void AppendSegment(std::string& out, std::string_view line, std::size_t from, std::size_t to,
                   StyledForm form) {
    if (to <= from)
        return;
    if (form == StyledForm::Text)
        out.append(line.substr(from, to - from));
    else
        out += std::to_string(to - from);
}
} // namespace

void AppendStyledLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                      unsigned long cookieAtEnd, StyledForm form) {
    char head[24];
    std::snprintf(head, sizeof head, "%02lx ", cookieAtEnd);
    out += head;
    std::size_t pos = 0;
    for (int i = 0; i < count; ++i) {
        std::size_t start =
            static_cast<std::size_t>(runs[i].m_nCharPos < 0 ? 0 : runs[i].m_nCharPos);
        if (start > line.size())
            start = line.size();
        if (start > pos) {
            AppendSegment(out, line, pos, start, form);
            pos = start;
        }
        out += '{';
        out += std::to_string(runs[i].m_nColorIndex);
        out += '}';
    }
    AppendSegment(out, line, pos, line.size(), form);
    out += '\n';
}

} // namespace talvor::syntax
