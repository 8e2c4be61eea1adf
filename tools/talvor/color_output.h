// The three output forms of talvor color: text with {n} marks (the form of the golden files),
// ANSI escapes for a terminal, and a complete HTML page.
#pragma once

#include "syntax/syntax.h"

#include <string>
#include <string_view>

namespace talvor::tool {

// "04 " (the cookie at the line's end), then the text with {n} before each run, then "\n".
void AppendMarkedLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                      unsigned long cookieAtEnd);

// The text in 24-bit ANSI colours of the parser's colour indices, reset at the line's end.
void AppendAnsiLine(std::string& out, std::string_view line, const COLORINFO* runs, int count,
                    const CTalvorSyntax& colours);

// Head of a page whose style sheet holds the colours of the object (COLORREF is 0x00BBGGRR),
// with the character set of the system code page; the text follows in one <pre>.
std::string HtmlPageStart(const CTalvorSyntax& colours, std::string_view title);
// One line, escaped, with a <span> per run that is not in the normal colour.
void AppendHtmlLine(std::string& out, std::string_view line, const COLORINFO* runs, int count);
std::string HtmlPageEnd();

} // namespace talvor::tool
