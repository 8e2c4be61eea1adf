// Writers of coloured lines. All three walk the run list the same way: a run reaches to the
// next run's start (the last one to the line's end), and empty runs show nothing.
#include "tools/talvor/color_output.h"

#include "platform/codepage/code_page.h"
#include "syntax/styled_line.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace talvor::tool {

char* OutputBuffer::MakeRoom(std::size_t bytes) {
    Flush();
    if (m_capacity < bytes) {
        m_capacity = bytes > (std::size_t{1} << 20) ? bytes : (std::size_t{1} << 20);
        m_data = std::make_unique<char[]>(m_capacity);
    }
    return m_data.get();
}

void OutputBuffer::Append(std::string_view text) {
    char* p = Room(text.size());
    std::memcpy(p, text.data(), text.size());
    Commit(p + text.size());
}

bool OutputBuffer::Flush() {
    if (m_used > 0 && std::fwrite(m_data.get(), 1, m_used, m_file) != m_used)
        m_failed = true;
    m_used = 0;
    return !m_failed;
}

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

// Class names of the colour indices in the page's style sheet; every opening tag is as long.
constexpr const char* HtmlClasses[] = {"c", "k", "", "n", "s", "h"};
constexpr std::string_view OpenTagStart = "<span class=\"";
constexpr std::string_view OpenTagEnd = "\">";
constexpr std::string_view CloseTag = "</span>";
constexpr std::size_t LongestEntity = 5; // "&amp;"

constexpr std::array<bool, 256> NeedsEscape = [] {
    std::array<bool, 256> table{};
    table['&'] = table['<'] = table['>'] = true;
    return table;
}();

// True when one of the 8 bytes of v is '&', '<' or '>'.
bool HasMarkup(std::uint64_t v) {
    constexpr std::uint64_t ones = 0x0101010101010101ull;
    constexpr std::uint64_t highs = 0x8080808080808080ull;
    auto hasZero = [](std::uint64_t x) { return (x - ones) & ~x & highs; };
    return (hasZero(v ^ (ones * '&')) | hasZero(v ^ (ones * '<')) | hasZero(v ^ (ones * '>'))) != 0;
}

char* PutEscaped(char* p, char c) {
    if (!NeedsEscape[static_cast<unsigned char>(c)]) {
        *p = c;
        return p + 1;
    }
    const std::string_view entity = c == '&' ? "&amp;" : (c == '<' ? "&lt;" : "&gt;");
    std::memcpy(p, entity.data(), entity.size());
    return p + entity.size();
}

// Copies text, escaped, to p (which has room for LongestEntity bytes per byte); returns the end.
// Stretches of 8 bytes without markup, the usual case, go as one block.
char* CopyEscaped(char* p, std::string_view text) {
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t block;
        std::memcpy(&block, text.data() + i, 8);
        if (!HasMarkup(block)) {
            std::memcpy(p, &block, 8);
            p += 8;
            continue;
        }
        for (std::size_t k = 0; k < 8; ++k)
            p = PutEscaped(p, text[i + k]);
    }
    for (; i < text.size(); ++i)
        p = PutEscaped(p, text[i]);
    return p;
}

char* Put(char* p, std::string_view text) {
    std::memcpy(p, text.data(), text.size());
    return p + text.size();
}

// True when text can go into a UTF-8 page as it stands: ASCII, or valid UTF-8 while the system
// code page is UTF-8.
bool IsUtf8AsItStands(std::string_view text) {
    constexpr std::uint64_t highs = 0x8080808080808080ull;
    std::size_t i = 0;
    for (; i + 8 <= text.size(); i += 8) {
        std::uint64_t block;
        std::memcpy(&block, text.data() + i, 8);
        if (block & highs)
            break;
    }
    for (; i < text.size() && static_cast<unsigned char>(text[i]) < 0x80; ++i) {
    }
    if (i == text.size())
        return true;
    if (platform::SystemCodePage() != platform::CodePageUtf8)
        return false;
    for (; i < text.size(); i += platform::CharLengthAt(text, i)) {
        if (static_cast<unsigned char>(text[i]) >= 0x80 && platform::CharLengthAt(text, i) == 1)
            return false; // a byte that starts no valid sequence
    }
    return true;
}

void AppendCodePoint(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

constexpr char32_t Replacement = 0xFFFD;

// Text of the system code page in UTF-8. At most 3 bytes come out per byte that goes in.
void AppendAsUtf8(std::string& out, std::string_view text) {
    if (platform::SystemCodePage() == platform::CodePageUtf8) {
        for (std::size_t i = 0; i < text.size();) {
            const std::size_t n = platform::CharLengthAt(text, i);
            if (n == 1 && static_cast<unsigned char>(text[i]) >= 0x80)
                AppendCodePoint(out, Replacement);
            else
                out.append(text.substr(i, n));
            i += n;
        }
        return;
    }
    // The wide form keeps a byte that forms no character as a lone surrogate.
    const std::u16string wide = platform::ToWide(text);
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const char16_t unit = wide[i];
        if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] < 0xE000) {
            AppendCodePoint(out, 0x10000 + ((unit - 0xD800) << 10) + (wide[i + 1] - 0xDC00));
            ++i;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            AppendCodePoint(out, Replacement);
        } else {
            AppendCodePoint(out, unit);
        }
    }
}

} // namespace

void AppendMarkedLine(OutputBuffer& out, std::string& scratch, std::string_view line,
                      const COLORINFO* runs, int count, unsigned long cookieAtEnd) {
    scratch.clear();
    syntax::AppendStyledLine(scratch, line, runs, count, cookieAtEnd, syntax::StyledForm::Text);
    out.Append(scratch);
}

void AppendAnsiLine(OutputBuffer& out, std::string_view line, const COLORINFO* runs, int count,
                    const CTalvorSyntax& colours, bool colour) {
    if (!colour) {
        out.Append(line);
        out.Append("\n");
        return;
    }
    ForEachSegment(line, runs, count, [&](int colourIndex, int start, int end) {
        if (colourIndex < COLOR_COMMENT || colourIndex > COLOR_CHAR ||
            colourIndex == COLOR_NORMAL) {
            out.Append("\x1b[39m"); // the terminal's default foreground
        } else {
            const COLORREF rgb = ColourOf(colours, colourIndex);
            char escape[32];
            std::snprintf(escape, sizeof escape, "\x1b[38;2;%d;%d;%dm", GetRValue(rgb),
                          GetGValue(rgb), GetBValue(rgb));
            out.Append(escape);
        }
        out.Append(
            line.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
    });
    out.Append("\x1b[0m\n");
}

void AppendHtmlPageStart(OutputBuffer& out, const CTalvorSyntax& colours, std::string_view title) {
    out.Append("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>");
    std::string converted;
    if (!IsUtf8AsItStands(title)) {
        AppendAsUtf8(converted, title);
        title = converted;
    }
    char* p = out.Room(LongestEntity * title.size());
    out.Commit(CopyEscaped(p, title));
    std::string page = "</title>\n<style>\nbody { background: " + CssColour(colours.m_clrBkColor) +
                       "; color: " + CssColour(colours.m_clrNormalColor) + "; }\n";
    page += "pre { font-family: monospace; }\n";
    const int indices[] = {COLOR_COMMENT, COLOR_KEYWORD, COLOR_NUMBER, COLOR_STRING, COLOR_CHAR};
    for (int index : indices) {
        page += '.';
        page += HtmlClasses[index];
        page += " { color: " + CssColour(ColourOf(colours, index)) + "; }\n";
    }
    page += "</style>\n</head>\n<body>\n<pre>";
    out.Append(page);
}

void AppendHtmlLine(OutputBuffer& out, std::string_view line, const COLORINFO* runs, int count) {
    // Room for the worst line: every byte an entity, every run a closing and an opening tag.
    const std::size_t tags = CloseTag.size() + OpenTagStart.size() + 1 + OpenTagEnd.size();
    char* p = out.Room(LongestEntity * line.size() + tags * (static_cast<std::size_t>(count) + 1) +
                       CloseTag.size() + 1);
    // Text that is not UTF-8 as it stands is converted stretch by stretch; a byte becomes at
    // most 3 bytes, less than the room of an entity.
    const bool convert = !IsUtf8AsItStands(line);
    std::string converted;
    // Most lines hold no markup; their stretches are copied without a test per byte.
    bool markup = false;
    std::size_t scanned = 0;
    for (; scanned + 8 <= line.size() && !markup; scanned += 8) {
        std::uint64_t block;
        std::memcpy(&block, line.data() + scanned, 8);
        markup = HasMarkup(block);
    }
    for (; scanned < line.size() && !markup; ++scanned)
        markup = NeedsEscape[static_cast<unsigned char>(line[scanned])];
    // Neighbouring runs of one colour are copied as one stretch, inside one span.
    int colour = COLOR_NORMAL;
    int from = 0, to = 0;
    auto flush = [&] {
        if (to <= from)
            return;
        if (colour != COLOR_NORMAL) {
            p = Put(p, OpenTagStart);
            *p++ = *HtmlClasses[colour];
            p = Put(p, OpenTagEnd);
        }
        std::string_view text =
            line.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
        if (convert) {
            converted.clear();
            AppendAsUtf8(converted, text);
            text = converted;
        }
        if (markup) {
            p = CopyEscaped(p, text);
        } else {
            std::memcpy(p, text.data(), text.size());
            p += text.size();
        }
        if (colour != COLOR_NORMAL)
            p = Put(p, CloseTag);
    };
    ForEachSegment(line, runs, count, [&](int colourIndex, int start, int end) {
        if (colourIndex < COLOR_COMMENT || colourIndex > COLOR_CHAR)
            colourIndex = COLOR_NORMAL;
        if (colourIndex == colour && start == to) {
            to = end;
            return;
        }
        flush();
        colour = colourIndex;
        from = start;
        to = end;
    });
    flush();
    *p++ = '\n';
    out.Commit(p);
}

void AppendHtmlPageEnd(OutputBuffer& out) {
    out.Append("</pre>\n</body>\n</html>\n");
}

} // namespace talvor::tool
