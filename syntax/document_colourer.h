// Colouring a whole document: one line after another with the line parser, the cookie carried
// from line to line as the editor carries it. The one way the tool, the benchmarks, the tests,
// the editor and the language server colour text; nothing else reaches the protected parser.
#pragma once

#include "syntax/line_cookie.h"
#include "syntax/syntax.h"
#include "syntax/text_lines.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace talvor::syntax {

// The runs and the end cookie of one line. The runs live in the colourer and stay valid until
// it colours the next line.
struct LineColours {
    const COLORINFO* runs;
    int count;
    unsigned long cookie; // at the line's end
};

// One line as a walk over a text hands it to its callback.
struct ColouredLine {
    std::size_t number;    // from 0
    std::size_t offset;    // of the line's first byte in the text (lines already cut: as if
                           // joined by one-byte line ends)
    std::string_view text; // as parsed: without its line end, with the blank when asked
    const COLORINFO* runs; // byte offsets into text
    int count;             // runs in the list
    unsigned long cookieAtStart;
    unsigned long cookieAtEnd;
};

class DocumentColourer {
public:
    // Colours with the rules, keywords and language the object holds, as they stand at each
    // call. The object must outlive the colourer.
    explicit DocumentColourer(CTalvorSyntax& syntax) : m_syntax(syntax) {}

    // Selects a language on the object and loads its rules and keywords, the profile's
    // overrides included, as the editor does when its language changes.
    void LoadLanguage(UINT language);
    UINT Language() const { return m_syntax.GetLanguage(); }

    // Whether every line gets a trailing blank before it is parsed, as the editor's lines do
    // (words at the line's end are then closed by the blank). Off by default.
    void SetAppendBlank(bool appendBlank) { m_appendBlank = appendBlank; }

    // The runs a parser may add for a line of this many bytes.
    std::size_t RunRoom(std::size_t lineLength) const;

    // One line from the cookie at its start. The line has no line end; the blank is not added.
    LineColours ColourLine(unsigned long cookie, CString& line);
    LineColours ColourLine(unsigned long cookie, std::string_view line);
    // Only the cookie at the line's end, as the editor's cookie cache needs it: no run list.
    unsigned long CookieAtEnd(unsigned long cookie, CString& line) {
        int none = 0; // no run list: only the cookie is worked out
        return m_syntax.ParseLine(cookie, line, nullptr, none);
    }
    unsigned long CookieAtEnd(unsigned long cookie, std::string_view line);
    // What of a line's end cookie the next line starts with: after a hard line end only a block
    // comment survives, except in languages of the tag parser; after a soft wrap all of it.
    unsigned long CookieForNextLine(unsigned long cookieAtEnd, bool hardLineEnd) const;

    // Every line of the text ("\n" and "\r\n" alike), each handed to onLine(const ColouredLine&)
    // while its runs are valid. Returns the cookie at the end of the last line (0 for no line).
    template <class OnLine> unsigned long ColourText(std::string_view text, OnLine&& onLine);
    // The same over lines already cut (hard line ends between them), without copying them.
    template <class OnLine> unsigned long ColourLines(std::span<CString> lines, OnLine&& onLine);
    // The cookie at the end of the text, worked out without run lists.
    unsigned long CookieAfterText(std::string_view text);
    unsigned long CookieAfterLines(std::span<CString> lines);

private:
    // The line as parsed: a copy into the reused buffer, with the blank when asked.
    CString& Prepare(std::string_view line, bool appendBlank);
    // Inline, as the walks call it for every line.
    LineColours Parse(unsigned long cookie, CString& line, bool tags) {
        const auto length = static_cast<std::size_t>(line.GetLength());
        const std::size_t room = (tags ? 2 * length : length) + 1; // see RunRoom
        if (m_runs.size() < room)
            m_runs.resize(room);
        int count = 0;
        const unsigned long end = m_syntax.ParseLine(cookie, line, m_runs.data(), count);
        return {m_runs.data(), count, end};
    }
    bool TagParser() const;

    CTalvorSyntax& m_syntax;
    bool m_appendBlank = false;
    CString m_line;                // buffer of copied lines
    std::vector<COLORINFO> m_runs; // grows to the longest line's room
};

template <class OnLine>
unsigned long DocumentColourer::ColourText(std::string_view text, OnLine&& onLine) {
    const bool tags = TagParser();
    unsigned long cookie = 0, end = 0;
    std::size_t number = 0;
    for (std::size_t pos = 0; pos < text.size(); ++number) {
        const std::size_t offset = pos;
        CString& line = Prepare(NextLine(text, pos), m_appendBlank);
        const LineColours colours = Parse(cookie, line, tags);
        onLine(ColouredLine{number, offset, line.View(), colours.runs, colours.count, cookie,
                            colours.cookie});
        end = colours.cookie;
        cookie = CarriedCookie(tags, end, true);
    }
    return end;
}

template <class OnLine>
unsigned long DocumentColourer::ColourLines(std::span<CString> lines, OnLine&& onLine) {
    const bool tags = TagParser();
    unsigned long cookie = 0, end = 0;
    std::size_t offset = 0;
    for (std::size_t number = 0; number < lines.size(); ++number) {
        CString& line = m_appendBlank ? Prepare(lines[number].View(), true) : lines[number];
        const LineColours colours = Parse(cookie, line, tags);
        onLine(ColouredLine{number, offset, line.View(), colours.runs, colours.count, cookie,
                            colours.cookie});
        offset += static_cast<std::size_t>(lines[number].GetLength()) + 1;
        end = colours.cookie;
        cookie = CarriedCookie(tags, end, true);
    }
    return end;
}

} // namespace talvor::syntax
