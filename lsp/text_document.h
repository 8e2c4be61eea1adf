// An open document of the language server: its text in the system code page, and positions as
// the protocol counts them (line, UTF-16 code units in the line) turned into byte offsets and
// back. Edits come as ranges in that form.
#pragma once

#include "host/base/vbscript_syntax_tree.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::lsp {

struct Position {
    std::size_t line = 0;
    std::size_t character = 0; // UTF-16 code units from the start of the line
};

class TextDocument {
public:
    TextDocument() = default;
    TextDocument(std::string uri, long version, std::string text);

    const std::string& Uri() const { return m_uri; }
    long Version() const { return m_version; }
    // The text in the system code page.
    const std::string& Text() const { return m_text; }
    std::size_t LineCount() const { return m_lineStarts.size(); }
    // The bytes of a line without its line end; empty past the last line.
    std::string_view Line(std::size_t line) const;

    // The byte offset of a position. A line past the end gives the end of the text; a
    // character past the line's end gives the line's end; a position inside a character
    // (the second unit of a surrogate pair) gives the character's start.
    std::size_t OffsetAt(Position position) const;
    Position PositionAt(std::size_t offset) const;

    // The text's syntax tree, parsed at the first question after a change and kept until the
    // next: a burst of requests between two edits costs one parse.
    const host::vbscript::SyntaxTree& Tree() const;

    // Replaces the bytes between two positions by text (in the system code page).
    void Replace(Position from, Position to, std::string_view text, long version);
    void SetText(std::string text, long version);

private:
    void IndexLines();

    std::string m_uri;
    long m_version = 0;
    std::string m_text;
    std::vector<std::size_t> m_lineStarts{0};
    mutable std::shared_ptr<const host::vbscript::SyntaxTree> m_tree;
};

// UTF-16 code units of text in the system code page.
std::size_t Utf16Length(std::string_view text);

// UTF-8 (JSON's strings) to the system code page and back; invalid UTF-8 bytes become U+FFFD.
std::string FromUtf8(std::string_view utf8);
std::string ToUtf8(std::string_view text);

} // namespace talvor::lsp
