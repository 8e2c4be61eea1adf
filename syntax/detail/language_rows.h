// The language table: one row per language with every fact the library knows about it. The
// host's g_LanguageTable, the rule defaults, the number rule, the parser choice and the file
// extensions are all read from these rows.
#pragma once

#include "syntax/languages.h"
#include "syntax/syntax.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace talvor::syntax::detail {

// The built-in rules of one language. Every text is non-null; "" is an empty default.
struct DefaultRules {
    const char* inString = "";
    const char* lineComment[2] = {"", ""};
    const char* beginComment[2] = {"", ""};
    const char* endComment[2] = {"", ""};
    const char* beginString = "";
    const char* endString = "";
    const char* beginChar = "";
    const char* endChar = "";
};

// A word that starts with one of the prefixes and is at least minLength bytes long is a number
// exactly when every byte behind the prefix is a hexadecimal digit. The prefixes are exact.
struct HexNumbers {
    std::string_view prefixes[2] = {};
    std::size_t minLength = 0;
};

enum class LineParser : unsigned char {
    Plain, // ParseLine's own scan
    Tags,  // ParseLineForHtml; the whole cookie passes hard line ends
};

struct LanguageRow {
    Language code{};
    const char* name = nullptr; // shown to the user; null: no row of g_LanguageTable
    const char* comment = "";   // the text commands' default comment string
    const char* keywords = "";  // built-in list: a blank, then entries each ended by ","
    bool hasRules = true;       // false: nothing of the rule table or the profile applies
    DefaultRules rules{};
    bool numbers = true;        // false: no word is a number
    HexNumbers hexNumbers{};    // tried before the decimal rule
    bool escapeAndCase = false; // m_bEscape and m_bCase default to 1
    LineParser parser = LineParser::Plain;
    const char* extensions = ""; // file name extensions, lower case, separated by blanks
};

// Every row, in code order from 0, one per code up to plain text.
std::span<const LanguageRow> LanguageRows();

// The row of the code, or null above plain text.
inline const LanguageRow* FindLanguageRow(UINT code) {
    const std::span<const LanguageRow> rows = LanguageRows();
    return code < rows.size() ? &rows[code] : nullptr;
}

// The built-in rules of the code, or null for plain text and codes above it.
inline const DefaultRules* FindDefaultRules(UINT code) {
    const LanguageRow* row = FindLanguageRow(code);
    return row != nullptr && row->hasRules ? &row->rules : nullptr;
}

// The row of g_LanguageTable with this code, or null (no name: 28, 31, plain text and above).
const LANGUAGE_INFO* FindNamedRow(UINT code);

// Name shown for a code without a row of g_LanguageTable.
inline constexpr const char* PlainTextName = "Plain text";

} // namespace talvor::syntax::detail
