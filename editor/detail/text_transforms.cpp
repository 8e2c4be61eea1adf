// Case conversions, tab and blank conversions and trimming of selected text.
#include "editor/detail/text_transforms.h"

#include "platform/codepage/code_page.h"

#include <cctype>

namespace talvor::editor {
namespace {
bool IsAsciiLetter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
char FlipCase(char c) {
    const auto u = static_cast<unsigned char>(c);
    return static_cast<char>(std::islower(u) ? std::toupper(u) : std::tolower(u));
}
std::string Blanks(int tabSize) {
    return std::string(static_cast<std::size_t>(std::max(0, tabSize)), ' ');
}
std::string ReplaceAll(const std::string& text, const std::string& from, const std::string& to) {
    if (from.empty())
        return text;
    std::string out;
    std::size_t pos = 0;
    for (std::size_t at; (at = text.find(from, pos)) != std::string::npos; pos = at + from.size())
        out.append(text, pos, at - pos).append(to);
    return out.append(text, pos);
}
// A line's indent with every run of the blanks made a tab.
std::string ConvertIndent(const std::string& line, int tabSize) {
    std::size_t indent = 0;
    while (indent < line.size() && (line[indent] == ' ' || line[indent] == '\t'))
        ++indent;
    return ReplaceAll(line.substr(0, indent), Blanks(tabSize), "\t") + line.substr(indent);
}
} // namespace

std::string UpperCase(std::string text) {
    platform::MakeUpperInPlace(text);
    return text;
}

std::string LowerCase(std::string text) {
    platform::MakeLowerInPlace(text);
    return text;
}

std::string InvertCase(std::string text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = std::max<std::size_t>(1, platform::CharLengthAt(text, i));
        if (n == 1 && IsAsciiLetter(static_cast<unsigned char>(text[i])))
            text[i] = FlipCase(text[i]);
        i += n;
    }
    return text;
}

std::string Capitalize(std::string text) {
    text = LowerCase(std::move(text));
    bool afterLetter = false;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = std::max<std::size_t>(1, platform::CharLengthAt(text, i));
        const bool letter = n == 1 && IsAsciiLetter(static_cast<unsigned char>(text[i]));
        if (letter && !afterLetter)
            text[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
        afterLetter = letter;
        i += n;
    }
    return text;
}

std::string SentenceCase(std::string text) {
    bool flip = true;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t n = std::max<std::size_t>(1, platform::CharLengthAt(text, i));
        if (n == 1 && text[i] == '\n')
            flip = true;
        else if (n == 1 && flip && IsAsciiLetter(static_cast<unsigned char>(text[i]))) {
            text[i] = FlipCase(text[i]);
            flip = false;
        }
        i += n;
    }
    return text;
}

std::string TabsToSpaces(const std::string& text, int tabSize) {
    return ReplaceAll(text, "\t", Blanks(tabSize));
}

std::string SpacesToTabs(const std::string& text, int tabSize) {
    return ReplaceAll(text, Blanks(tabSize), "\t");
}

std::string LeadingSpacesToTabs(const std::string& text, int tabSize) {
    std::string out;
    std::size_t pos = 0;
    for (std::size_t lf; (lf = text.find('\n', pos)) != std::string::npos; pos = lf + 1)
        out += ConvertIndent(text.substr(pos, lf - pos), tabSize) + "\n";
    return out + ConvertIndent(text.substr(pos), tabSize);
}

std::string TrimTrailing(const std::string& text, char c) {
    std::string out;
    std::size_t pos = 0;
    for (std::size_t lf; (lf = text.find('\n', pos)) != std::string::npos; pos = lf + 1) {
        std::string line = text.substr(pos, lf - pos);
        if (!line.empty())
            line.pop_back(); // the carriage return
        while (!line.empty() && line.back() == c)
            line.pop_back();
        out += line + "\n";
    }
    out += text.substr(pos);
    while (!out.empty() && out.back() == c)
        out.pop_back();
    return out;
}

} // namespace talvor::editor
