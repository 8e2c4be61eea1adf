// The three output forms of talvor color: text with {n} marks (the form of the golden files),
// ANSI escapes for a terminal, and a complete HTML page.
#pragma once

#include "syntax/syntax.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace talvor::tool {

// Bytes on their way to a file, written in large blocks. Writers ask for room, fill it through
// a pointer and commit what they used, so a byte costs no check of its own.
class OutputBuffer {
public:
    explicit OutputBuffer(std::FILE* file) : m_file(file) {}
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;

    // A pointer with at least bytes free behind it; earlier bytes may be written out first.
    char* Room(std::size_t bytes) {
        return m_capacity - m_used >= bytes ? m_data.get() + m_used : MakeRoom(bytes);
    }
    // Marks the bytes up to end (a pointer into the last Room) as used.
    void Commit(char* end) { m_used = static_cast<std::size_t>(end - m_data.get()); }
    void Append(std::string_view text);
    // Writes out everything; false when the file refused some of it.
    bool Flush();

private:
    char* MakeRoom(std::size_t bytes);

    std::FILE* m_file;
    std::unique_ptr<char[]> m_data;
    std::size_t m_used = 0;
    std::size_t m_capacity = 0;
    bool m_failed = false;
};

// The golden form of syntax/styled_line.h with the text: "04 " (the cookie at the line's end),
// then the text with {n} before each run, then "\n". scratch is reused from line to line.
void AppendMarkedLine(OutputBuffer& out, std::string& scratch, std::string_view line,
                      const COLORINFO* runs, int count, unsigned long cookieAtEnd);

// The text in 24-bit ANSI colours of the parser's colour indices, reset at the line's end.
// Normal text takes the terminal's own foreground colour, so it reads on dark and light
// terminals alike; without colour (NO_COLOR) the line is written as it stands.
void AppendAnsiLine(OutputBuffer& out, std::string_view line, const COLORINFO* runs, int count,
                    const CTalvorSyntax& colours, bool colour = true);

// Head of a page whose style sheet holds the colours of the object (COLORREF is 0x00BBGGRR).
// The page is UTF-8 whatever the system code page: text of another page is converted, bytes
// that form no character of the page become U+FFFD. The text follows in one <pre>.
void AppendHtmlPageStart(OutputBuffer& out, const CTalvorSyntax& colours, std::string_view title);
// One line, escaped and in UTF-8, with a <span> per run that is not in the normal colour.
void AppendHtmlLine(OutputBuffer& out, std::string_view line, const COLORINFO* runs, int count);
void AppendHtmlPageEnd(OutputBuffer& out);

} // namespace talvor::tool
