// What of a line's end cookie the next line starts with. The editor, the document colourer and
// the tests all carry cookies with this one rule.
#pragma once

#include "platform/core/win_types.h"

namespace talvor::syntax {

// After a hard line end only a block comment survives, except in the languages of the tag
// parser (HTML and XML), where the whole cookie passes on; after a soft wrap the whole cookie
// passes on in every language.
unsigned long CookieForNextLine(UINT language, unsigned long cookieAtLineEnd, bool hardLineEnd);

// The same rule for a caller that has asked once whether the language takes the tag parser.
constexpr unsigned long CarriedCookie(bool tagParser, unsigned long cookieAtLineEnd,
                                      bool hardLineEnd) {
    constexpr unsigned long blockComment = 0x04; // COOKIE_BLOCK_COMMENT
    return !hardLineEnd || tagParser ? cookieAtLineEnd : cookieAtLineEnd & blockComment;
}

} // namespace talvor::syntax
