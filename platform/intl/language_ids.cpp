#include "platform/intl/language_ids.h"

#include <unicode/uloc.h>

namespace {

constexpr LANGID EnglishUnitedStates = 0x0409;

LANGID& OverrideLanguage() {
    static LANGID language = 0;
    return language;
}

} // namespace

LANGID GetSystemDefaultLangID() {
    if (OverrideLanguage() != 0)
        return OverrideLanguage();
    const uint32_t lcid = uloc_getLCID(uloc_getDefault());
    const LANGID language = static_cast<LANGID>(lcid & 0xFFFF);
    return language != 0 ? language : EnglishUnitedStates;
}

LCID GetUserDefaultLCID() {
    return GetSystemDefaultLangID();
}

namespace talvor::platform {

void SetSystemDefaultLanguage(LANGID language) {
    OverrideLanguage() = language;
}

} // namespace talvor::platform
