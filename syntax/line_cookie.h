// What of a line's end cookie the next line starts with. The editor, the tool, the tests and the
// benchmark all carry cookies with this one rule.
#pragma once

#include "platform/core/win_types.h"

namespace talvor::syntax {

// True for the languages whose lines go to the tag parser (HTML and XML).
constexpr bool UsesTagParser(UINT language) {
    return language == 14 || language == 34;
}

// After a hard line end only a block comment survives, except in HTML (14) and XML (34), where
// the whole cookie passes on; after a soft wrap the whole cookie passes on in every language.
constexpr unsigned long CookieForNextLine(UINT language, unsigned long cookieAtLineEnd,
                                          bool hardLineEnd) {
    if (!hardLineEnd || UsesTagParser(language))
        return cookieAtLineEnd;
    return cookieAtLineEnd & 0x04;
}

} // namespace talvor::syntax
