// Translation of a VBScript (ECMAScript-3) regular expression into the PCRE2 syntax that
// matches the same way, with the pattern errors of the script runtime. Internal to platform/.
#pragma once

#include "platform/core/win_types.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace talvor::platform::detail {

// Groups and classes nest at most this deep; deeper patterns fail with "Out of stack space",
// so neither the translation nor the compiler recurses without bound.
constexpr int MaxRegExpNesting = 250;

struct TranslatedRegExp {
    std::u16string pattern; // PCRE2 syntax; every literal written as an escape or plain ASCII
    bool caseless = false;  // compile with PCRE2_CASELESS | PCRE2_UCP
    bool caselessBackReference = false; // a back-reference compared ignoring case
    int captureCount = 0;
};

// True when ECMAScript keeps a and b apart ignoring case although Unicode case folding joins
// them (the Kelvin sign and 'k', 'ß' and 'ẞ', ...). The translation handles such characters
// in literals and classes; a back-reference's callout asks this of each pair it compared.
bool EcmaCaseDistinct(std::uint32_t a, std::uint32_t b);

// S_OK with out filled, or one of the script runtime's regular-expression errors
// (RegExpSyntaxError, RegExpUnexpectedQuantifier, ...), with out unspecified.
HRESULT TranslateRegExp(std::u16string_view source, bool ignoreCase, TranslatedRegExp& out);

} // namespace talvor::platform::detail
