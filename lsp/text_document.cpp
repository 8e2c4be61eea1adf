#include "lsp/text_document.h"

#include "host/base/vbscript_parser.h"
#include "platform/codepage/code_page.h"

#include <algorithm>

namespace talvor::lsp {
namespace {

using platform::CharLengthAt;

// UTF-16 code units of the character of n bytes at text: 1 for ASCII, else its wide form.
std::size_t WideUnits(std::string_view text, std::size_t pos, std::size_t n) {
    if (n == 1 && static_cast<unsigned char>(text[pos]) < 0x80)
        return 1;
    return platform::ToWide(text.substr(pos, n)).size();
}

std::u16string Utf8ToWide(std::string_view utf8) {
    std::u16string wide;
    wide.reserve(utf8.size());
    const auto* s = reinterpret_cast<const unsigned char*>(utf8.data());
    const std::size_t size = utf8.size();
    for (std::size_t i = 0; i < size;) {
        const unsigned char b = s[i];
        char32_t cp = 0xFFFD;
        std::size_t n = 1;
        if (b < 0x80) {
            cp = b;
        } else if (b >= 0xC2 && b <= 0xF4) {
            n = b < 0xE0 ? 2 : b < 0xF0 ? 3 : 4;
            bool valid = i + n <= size;
            for (std::size_t k = 1; valid && k < n; ++k)
                valid = (s[i + k] & 0xC0) == 0x80;
            if (valid) {
                cp = b & (0x7F >> n);
                for (std::size_t k = 1; k < n; ++k)
                    cp = (cp << 6) | (s[i + k] & 0x3F);
                const char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
                if (cp < least[n] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
                    cp = 0xFFFD;
            } else {
                cp = 0xFFFD;
                n = 1;
            }
        }
        i += n;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            wide.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            wide.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            wide.push_back(static_cast<char16_t>(cp));
        }
    }
    return wide;
}

std::string WideToUtf8(std::u16string_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t cp = wide[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (wide[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = 0xFFFD; // a lone surrogate (a byte the page can't read) has no UTF-8 form
        }
        if (cp < 0x80) {
            utf8.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            utf8.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            utf8.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            utf8.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            utf8.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            utf8.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            utf8.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            utf8.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            utf8.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            utf8.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return utf8;
}

} // namespace

TextDocument::TextDocument(std::string uri, long version, std::string text)
    : m_uri(std::move(uri)), m_version(version), m_text(std::move(text)) {
    IndexLines();
}

const host::vbscript::SyntaxTree& TextDocument::Tree() const {
    if (!m_tree)
        m_tree =
            std::make_shared<const host::vbscript::SyntaxTree>(host::vbscript::ParseScript(m_text));
    return *m_tree;
}

void TextDocument::IndexLines() {
    m_tree.reset(); // every change of the text comes through here
    m_lineStarts.assign(1, 0);
    for (std::size_t i = 0; i < m_text.size(); ++i)
        if (m_text[i] == '\n')
            m_lineStarts.push_back(i + 1);
}

std::string_view TextDocument::Line(std::size_t line) const {
    if (line >= m_lineStarts.size())
        return {};
    const std::size_t start = m_lineStarts[line];
    std::size_t end = line + 1 < m_lineStarts.size() ? m_lineStarts[line + 1] - 1 : m_text.size();
    if (end > start && m_text[end - 1] == '\r')
        --end;
    return std::string_view(m_text).substr(start, end - start);
}

std::size_t TextDocument::OffsetAt(Position position) const {
    if (position.line >= m_lineStarts.size())
        return m_text.size();
    const std::string_view line = Line(position.line);
    std::size_t units = 0;
    std::size_t pos = 0;
    while (pos < line.size()) {
        const std::size_t n = CharLengthAt(line, pos);
        const std::size_t width = WideUnits(line, pos, n);
        if (units + width > position.character)
            break;
        units += width;
        pos += n;
    }
    return m_lineStarts[position.line] + pos;
}

Position TextDocument::PositionAt(std::size_t offset) const {
    offset = std::min(offset, m_text.size());
    const auto next = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
    const std::size_t line = static_cast<std::size_t>(next - m_lineStarts.begin()) - 1;
    const std::string_view text = std::string_view(m_text).substr(m_lineStarts[line]);
    const std::size_t column = offset - m_lineStarts[line];
    std::size_t units = 0;
    for (std::size_t pos = 0; pos < column;) {
        const std::size_t n = std::max<std::size_t>(CharLengthAt(text, pos), 1);
        units += WideUnits(text, pos, std::min(n, text.size() - pos));
        pos += n;
    }
    return Position{line, units};
}

void TextDocument::Replace(Position from, Position to, std::string_view text, long version) {
    std::size_t start = OffsetAt(from);
    std::size_t end = OffsetAt(to);
    if (end < start)
        std::swap(start, end);
    m_text.replace(start, end - start, text);
    m_version = version;
    IndexLines();
}

void TextDocument::SetText(std::string text, long version) {
    m_text = std::move(text);
    m_version = version;
    IndexLines();
}

std::size_t Utf16Length(std::string_view text) {
    std::size_t units = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        const std::size_t n =
            std::min(std::max<std::size_t>(CharLengthAt(text, pos), 1), text.size() - pos);
        units += WideUnits(text, pos, n);
        pos += n;
    }
    return units;
}

std::string FromUtf8(std::string_view utf8) {
    if (platform::SystemCodePage() == platform::CodePageUtf8)
        return std::string(utf8);
    return platform::FromWide(Utf8ToWide(utf8));
}

std::string ToUtf8(std::string_view text) {
    // Names and most lines are ASCII, which every page the server reads keeps as it is.
    if (platform::SystemPageKeepsAscii() && std::all_of(text.begin(), text.end(), [](char c) {
            return static_cast<unsigned char>(c) < 0x80;
        }))
        return std::string(text);
    if (platform::SystemCodePage() == platform::CodePageUtf8) {
        // Invalid bytes still have to become valid JSON text.
        return WideToUtf8(Utf8ToWide(text));
    }
    return WideToUtf8(platform::ToWide(text));
}

} // namespace talvor::lsp
