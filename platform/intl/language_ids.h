// The system's and the user's default language as Windows language numbers, taken from the
// locale of the process through ICU; a host may set the system language outright.
#pragma once

#include "platform/core/win_types.h"

using LANGID = WORD;

// The language of the process's locale (LANG, LC_ALL, ...); 0x0409 (English, United States)
// when the locale has no Windows number, as the C and POSIX locales have none.
LANGID GetSystemDefaultLangID();
// The same language as a locale number (sort order 0).
LCID GetUserDefaultLCID();

namespace talvor::platform {

// The language GetSystemDefaultLangID gives from now on; 0 returns to the process's locale.
void SetSystemDefaultLanguage(LANGID language);

} // namespace talvor::platform
