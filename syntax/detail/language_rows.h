// Lookups in the language table and in the built-in rule defaults of every language code.
#pragma once

#include "syntax/syntax.h"

namespace talvor::syntax::detail {

// The row of g_LanguageTable with this code, or null (28, 31, 35 and above).
const LANGUAGE_INFO* FindLanguageRow(UINT code);

// The built-in rules of one language code. Every text is non-null; "" is an empty default.
struct DefaultRules {
    const char* inString;
    const char* lineComment[2];
    const char* beginComment[2];
    const char* endComment[2];
    const char* beginString;
    const char* endString;
    const char* beginChar;
    const char* endChar;
};

// Rules of the codes 0 to 34, also of 28 and 31, which have rules but no table row; null above.
const DefaultRules* FindDefaultRules(UINT code);

// Name shown for a code without a row.
inline constexpr const char* PlainTextName = "Plain text";

} // namespace talvor::syntax::detail
