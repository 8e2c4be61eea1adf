// The document colourer's line steps: copying a line into the parser's buffer, the run list's
// room, and the cookie rule between lines.
#include "syntax/document_colourer.h"

#include "syntax/line_cookie.h"

namespace talvor::syntax {

void DocumentColourer::LoadLanguage(UINT language) {
    m_syntax.SetLanguage(language);
    m_syntax.LoadSynWord();
}

std::size_t DocumentColourer::RunRoom(std::size_t lineLength) const {
    // The tag parser adds two runs for a lone ">", the other parser at most one per byte.
    return (UsesTagParser(m_syntax.GetLanguage()) ? 2 * lineLength : lineLength) + 1;
}

CString& DocumentColourer::Prepare(std::string_view line, bool appendBlank) {
    m_line.Empty(); // keeps its buffer: no allocation per line
    m_line.Append(line.data(), static_cast<int>(line.size()));
    if (appendBlank)
        m_line += ' ';
    return m_line;
}

LineColours DocumentColourer::Parse(unsigned long cookie, CString& line) {
    const std::size_t room = RunRoom(static_cast<std::size_t>(line.GetLength()));
    if (m_runs.size() < room)
        m_runs.resize(room);
    int count = 0;
    const unsigned long end = m_syntax.ParseLine(cookie, line, m_runs.data(), count);
    return {m_runs.data(), count, end};
}

LineColours DocumentColourer::ColourLine(unsigned long cookie, CString& line) {
    return Parse(cookie, line);
}

LineColours DocumentColourer::ColourLine(unsigned long cookie, std::string_view line) {
    return Parse(cookie, Prepare(line, false));
}

unsigned long DocumentColourer::CookieAtEnd(unsigned long cookie, CString& line) {
    int none = 0; // no run list: only the cookie is worked out
    return m_syntax.ParseLine(cookie, line, nullptr, none);
}

unsigned long DocumentColourer::CookieAtEnd(unsigned long cookie, std::string_view line) {
    return CookieAtEnd(cookie, Prepare(line, false));
}

unsigned long DocumentColourer::CookieForNextLine(unsigned long cookieAtEnd,
                                                  bool hardLineEnd) const {
    return syntax::CookieForNextLine(m_syntax.GetLanguage(), cookieAtEnd, hardLineEnd);
}

unsigned long DocumentColourer::CookieAfterText(std::string_view text) {
    unsigned long cookie = 0, end = 0;
    for (std::size_t pos = 0; pos < text.size();) {
        end = CookieAtEnd(cookie, Prepare(NextLine(text, pos), m_appendBlank));
        cookie = CookieForNextLine(end, true);
    }
    return end;
}

unsigned long DocumentColourer::CookieAfterLines(std::span<CString> lines) {
    unsigned long cookie = 0, end = 0;
    for (CString& line : lines) {
        end = CookieAtEnd(cookie, m_appendBlank ? Prepare(line.View(), true) : line);
        cookie = CookieForNextLine(end, true);
    }
    return end;
}

} // namespace talvor::syntax
