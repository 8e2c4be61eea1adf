// The two questions the line parsers ask of a closed word, on a view into the line so that no
// word is copied: is it a keyword, is it a number of the language.
#pragma once

#include "platform/core/win_types.h"
#include "platform/strings/arrays.h"

#include <string_view>

namespace talvor::syntax::detail {

// Binary search of a sorted keyword array: exact comparison when exactCase, otherwise the
// comparison that folds both sides to lower case. An empty array has no keywords.
bool IsKeyword(const CStringArray& keywords, bool exactCase, std::string_view word);

// The number rule of the language: its hexadecimal prefix ("&H"/"&O" in Basic, "0x" in C++,
// "#" in HTML, "$" in Object Pascal), else a decimal digit followed by digits, signs, points
// and exponent letters. Plain text (35) has no numbers.
bool IsNumberIn(UINT language, std::string_view word);

} // namespace talvor::syntax::detail
