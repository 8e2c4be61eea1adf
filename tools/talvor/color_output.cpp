// Writers of coloured lines. All three walk the run list the same way: a run reaches to the
// next run's start (the last one to the line's end), and empty runs show nothing.
#include "tools/talvor/color_output.h"

#include "platform/code_page.h"

#include <array>
#include <cstdio>

namespace talvor::tool {
namespace {

// Calls emit(colour, start, end) for every run that covers at least one byte of the line.
template <class Emit>
void ForEachSegment(std::string_view line, const COLORINFO* runs, int count, Emit emit) {
    const int length = static_cast<int>(line.size());
    auto clip = [length](int pos) { return pos < 0 ? 0 : (pos > length ? length : pos); };
    if (count == 0 || clip(runs[0].m_nCharPos) > 0)
        emit(COLOR_NORMAL, 0, count == 0 ? length : clip(runs[0].m_nCharPos));
    for (int i = 0; i < count; ++i) {
        const int start = clip(runs[i].m_nCharPos);
        const int end = i + 1 < count ? clip(runs[i + 1].m_nCharPos) : length;
        if (end > start)
            emit(runs[i].m_nColorIndex, start, end);
    }
}

COLORREF ColourOf(const CTalvorSyntax& colours, int index) {
    switch (index) {
    case COLOR_COMMENT:
        return colours.m_clrCommentColor;
    case COLOR_KEYWORD:
        return colours.m_clrSyntaxColor;
    case COLOR_NUMBER:
        return colours.m_clrNumberColor;
    case COLOR_STRING:
        return colours.m_clrStringColor;
    case COLOR_CHAR:
        return colours.m_clrCharColor;
    default:
        return colours.m_clrNormalColor;
    }
}

std::string CssColour(COLORREF colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", GetRValue(colour), GetGValue(colour),
                  GetBValue(colour));
    return text;
}

// Class names of the colour indices in the page's style sheet.
constexpr const char* HtmlClasses[] = {"c", "k", "", "n", "s", "h"};

constexpr std::array<bool, 256> NeedsEscape = [] {
    std::array<bool, 256> table{};
    table['&'] = table['<'] = table['>'] = true;
    return table;
}();

void AppendEscaped(std::string& out, std::string_view text) {
    std::size_t plain = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (!NeedsEscape[static_cast<unsigned char>(c)])
            continue;
        out.append(text.data() + plain, i - plain);
        out += c == '&' ? "&amp;" : (c == '<' ? "&lt;" : "&gt;");
        plain = i + 1;
    }
    out.append(text.data() + plain, text.size() - plain);
}

const char* CharsetOfSystemCodePage() {
    switch (platform::SystemCodePage()) {
    case platform::CodePageUtf8:
        return "utf-8";
    case platform::CodePageSimplifiedChinese:
        return "gbk";
    case 932:
        return "shift_jis";
    case 949:
        return "euc-kr";
    case 950:
        return "big5";
    default:
        return "windows-1252";
    }
}

} // namespace

void AppendMarkedLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                      unsigned long cookieAtEnd) {
    char head[24];
    std::snprintf(head, sizeof head, "%02lx ", cookieAtEnd);
    out += head;
    std::size_t pos = 0;
    for (int i = 0; i < count; ++i) {
        std::size_t start =
            runs[i].m_nCharPos < 0 ? 0 : static_cast<std::size_t>(runs[i].m_nCharPos);
        if (start > line.size())
            start = line.size();
        if (start > pos) {
            out.append(line.data() + pos, start - pos);
            pos = start;
        }
        out += '{';
        out += std::to_string(runs[i].m_nColorIndex);
        out += '}';
    }
    out.append(line.data() + pos, line.size() - pos);
    out += '\n';
}

void AppendAnsiLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                    const CTalvorSyntax& colours) {
    ForEachSegment(line, runs, count, [&](int colourIndex, int start, int end) {
        const COLORREF colour = ColourOf(colours, colourIndex);
        char escape[32];
        std::snprintf(escape, sizeof escape, "\x1b[38;2;%d;%d;%dm", GetRValue(colour),
                      GetGValue(colour), GetBValue(colour));
        out += escape;
        out.append(line.data() + start, static_cast<std::size_t>(end - start));
    });
    out += "\x1b[0m\n";
}

std::string HtmlPageStart(const CTalvorSyntax& colours, std::string_view title) {
    std::string page = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"";
    page += CharsetOfSystemCodePage();
    page += "\">\n<title>";
    AppendEscaped(page, title);
    page += "</title>\n<style>\nbody { background: " + CssColour(colours.m_clrBkColor) +
            "; color: " + CssColour(colours.m_clrNormalColor) + "; }\n";
    page += "pre { font-family: monospace; }\n";
    const int indices[] = {COLOR_COMMENT, COLOR_KEYWORD, COLOR_NUMBER, COLOR_STRING, COLOR_CHAR};
    for (int index : indices) {
        page += '.';
        page += HtmlClasses[index];
        page += " { color: " + CssColour(ColourOf(colours, index)) + "; }\n";
    }
    page += "</style>\n</head>\n<body>\n<pre>";
    return page;
}

void AppendHtmlLine(std::string& out, std::string_view line, const COLORINFO* runs, int count) {
    int open = COLOR_NORMAL; // the colour of the span that is open; normal has none
    ForEachSegment(line, runs, count, [&](int colourIndex, int start, int end) {
        if (colourIndex < COLOR_COMMENT || colourIndex > COLOR_CHAR)
            colourIndex = COLOR_NORMAL;
        if (colourIndex != open) {
            if (open != COLOR_NORMAL)
                out += "</span>";
            if (colourIndex != COLOR_NORMAL) {
                out += "<span class=\"";
                out += HtmlClasses[colourIndex];
                out += "\">";
            }
            open = colourIndex;
        }
        AppendEscaped(out, line.substr(static_cast<std::size_t>(start),
                                       static_cast<std::size_t>(end - start)));
    });
    if (open != COLOR_NORMAL)
        out += "</span>";
    out += '\n';
}

std::string HtmlPageEnd() {
    return "</pre>\n</body>\n</html>\n";
}

} // namespace talvor::tool
