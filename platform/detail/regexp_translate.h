// Translation of a VBScript (ECMAScript-3) regular expression into the PCRE2 syntax that
// matches the same way, with the pattern errors of the script runtime. Internal to platform/.
#pragma once

#include "platform/win_types.h"

#include <string>
#include <string_view>

namespace talvor::platform::detail {

// Groups and classes nest at most this deep; deeper patterns fail with "Out of stack space",
// so neither the translation nor the compiler recurses without bound.
constexpr int MaxRegExpNesting = 250;

struct TranslatedRegExp {
    std::u16string pattern; // PCRE2 syntax; every literal written as an escape or plain ASCII
    bool caseless = false;  // compile with PCRE2_CASELESS | PCRE2_UCP
    int captureCount = 0;
};

// S_OK with out filled, or one of the script runtime's regular-expression errors
// (RegExpSyntaxError, RegExpUnexpectedQuantifier, ...), with out unspecified.
HRESULT TranslateRegExp(std::u16string_view source, bool ignoreCase, TranslatedRegExp& out);

} // namespace talvor::platform::detail
