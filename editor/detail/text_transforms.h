// The text transformations of the editor's selected-text commands, on 8-bit text with CRLF
// line ends as the control streams a selection out.
#pragma once

#include <string>

namespace talvor::editor {

// Multi-byte aware, whole text.
std::string UpperCase(std::string text);
std::string LowerCase(std::string text);
// Every ASCII letter changes case; other bytes, both bytes of a double-byte character among
// them, stay.
std::string InvertCase(std::string text);
// Lower case, then a letter behind a non-letter becomes upper case.
std::string Capitalize(std::string text);
// The first letter of the text and of each line behind a line feed changes its case.
std::string SentenceCase(std::string text);
std::string TabsToSpaces(const std::string& text, int tabSize);
// Every run of exactly tabSize blanks, from the left without overlap, becomes a tab.
std::string SpacesToTabs(const std::string& text, int tabSize);
// The same in the indent of each line only.
std::string LeadingSpacesToTabs(const std::string& text, int tabSize);
// Removes c at the end of each line (the line end becomes a bare line feed) and of the text.
std::string TrimTrailing(const std::string& text, char c);

} // namespace talvor::editor
