// What of a line's end cookie the next line starts with. The editor, the tool, the tests and the
// benchmark all carry cookies with this one rule.
#pragma once

#include "platform/core/win_types.h"

namespace talvor::syntax {

// After a hard line end only a block comment survives, except in HTML (14) and XML (34), where
// the whole cookie passes on; after a soft wrap the whole cookie passes on in every language.
constexpr unsigned long CookieForNextLine(UINT language, unsigned long cookieAtLineEnd,
                                          bool hardLineEnd) {
    if (!hardLineEnd || language == 14 || language == 34)
        return cookieAtLineEnd;
    return cookieAtLineEnd & 0x04;
}

} // namespace talvor::syntax
