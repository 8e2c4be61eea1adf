// The cookie rule between lines.
#include "syntax/line_cookie.h"

#include "syntax/languages.h"

namespace talvor::syntax {

unsigned long CookieForNextLine(UINT language, unsigned long cookieAtLineEnd, bool hardLineEnd) {
    return CarriedCookie(UsesTagParser(language), cookieAtLineEnd, hardLineEnd);
}

} // namespace talvor::syntax
