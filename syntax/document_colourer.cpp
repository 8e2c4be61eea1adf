// The document colourer's line steps: copying a line into the parser's buffer, the run list's
// room, and the cookie rule between lines.
#include "syntax/document_colourer.h"

#include "syntax/languages.h"
#include "syntax/line_cookie.h"

namespace talvor::syntax {

void DocumentColourer::LoadLanguage(UINT language) {
    m_syntax.SetLanguage(language);
    m_syntax.LoadSynWord();
}

bool DocumentColourer::TagParser() const {
    return UsesTagParser(m_syntax.GetLanguage());
}

std::size_t DocumentColourer::RunRoom(std::size_t lineLength) const {
    // The tag parser adds two runs for a lone ">", the other parser at most one per byte.
    return (TagParser() ? 2 * lineLength : lineLength) + 1;
}

CString& DocumentColourer::Prepare(std::string_view line, bool appendBlank) {
    m_line.Empty(); // keeps its buffer: no allocation per line
    m_line.Append(line.data(), static_cast<int>(line.size()));
    if (appendBlank)
        m_line += ' ';
    return m_line;
}

LineColours DocumentColourer::ColourLine(unsigned long cookie, CString& line) {
    return Parse(cookie, line, TagParser());
}

LineColours DocumentColourer::ColourLine(unsigned long cookie, std::string_view line) {
    return Parse(cookie, Prepare(line, false), TagParser());
}

unsigned long DocumentColourer::CookieAtEnd(unsigned long cookie, std::string_view line) {
    return CookieAtEnd(cookie, Prepare(line, false));
}

unsigned long DocumentColourer::CookieForNextLine(unsigned long cookieAtEnd,
                                                  bool hardLineEnd) const {
    return syntax::CookieForNextLine(m_syntax.GetLanguage(), cookieAtEnd, hardLineEnd);
}

unsigned long DocumentColourer::CookieAfterText(std::string_view text) {
    const bool tags = TagParser();
    unsigned long cookie = 0, end = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        end = CookieAtEnd(cookie, Prepare(NextLine(text, pos), m_appendBlank));
        cookie = CarriedCookie(tags, end, true);
    }
    return end;
}

unsigned long DocumentColourer::CookieAfterLines(std::span<CString> lines) {
    const bool tags = TagParser();
    unsigned long cookie = 0, end = 0;
    for (CString& line : lines) {
        end = m_appendBlank ? CookieAtEnd(cookie, Prepare(line.View(), true))
                            : CookieAtEnd(cookie, line);
        cookie = CarriedCookie(tags, end, true);
    }
    return end;
}

} // namespace talvor::syntax
