#include "platform/intl/multi_language.h"

#include <unicode/ucnv.h>
#include <unicode/uloc.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace talvor::platform {
namespace {

bool& Available() {
    static bool available = true;
    return available;
}

// Copies text into a fixed wide field, cut so that the terminating NUL always fits.
template <std::size_t N> void CopyWide(WCHAR (&field)[N], const std::u16string& text) {
    const std::size_t length = std::min(text.size(), N - 1);
    std::copy_n(text.data(), length, field);
    std::fill(field + length, field + N, u'\0');
}

std::u16string WideFromAscii(const std::string& text) {
    return std::u16string(text.begin(), text.end());
}

// The Windows code page number of a converter: its alias "windows-<digits>", or 0.
UINT WindowsCodePage(const char* converter) {
    UErrorCode error = U_ZERO_ERROR;
    const uint16_t count = ucnv_countAliases(converter, &error);
    for (uint16_t i = 0; U_SUCCESS(error) && i < count; ++i) {
        const char* alias = ucnv_getAlias(converter, i, &error);
        if (alias == nullptr || strncasecmp(alias, "windows-", 8) != 0)
            continue;
        const char* digits = alias + 8;
        if (*digits == '\0' || std::strspn(digits, "0123456789") != std::strlen(digits))
            continue;
        return static_cast<UINT>(std::strtoul(digits, nullptr, 10));
    }
    return 0;
}

// The charset name a web page would declare: MIME's, else IANA's, else ICU's own.
std::string CharsetName(const char* converter) {
    for (const char* standard : {"MIME", "IANA"}) {
        UErrorCode error = U_ZERO_ERROR;
        const char* name = ucnv_getStandardName(converter, standard, &error);
        if (U_SUCCESS(error) && name != nullptr)
            return name;
    }
    return converter;
}

} // namespace

std::unique_ptr<MultiLanguage> MultiLanguage::Create() {
    if (!Available())
        return nullptr;
    return std::make_unique<MultiLanguage>();
}

HRESULT MultiLanguage::EnumRfc1766(ULONG max, std::vector<RFC1766INFO>& languages) const {
    std::map<LCID, std::string> locales; // first locale of each number, by number
    const int32_t count = uloc_countAvailable();
    for (int32_t i = 0; i < count; ++i) {
        const char* locale = uloc_getAvailable(i);
        const LCID lcid = uloc_getLCID(locale);
        if (lcid == 0 || locales.count(lcid) != 0)
            continue;
        // Several locales share a number (en_AS and en_US share 0x0409); the number's own
        // locale names it.
        char own[ULOC_FULLNAME_CAPACITY] = {};
        UErrorCode error = U_ZERO_ERROR;
        uloc_getLocaleForLCID(lcid, own, sizeof own - 1, &error);
        locales.emplace(lcid, U_SUCCESS(error) && own[0] != '\0' ? own : locale);
    }
    languages.clear();
    for (const auto& [lcid, locale] : locales) {
        if (languages.size() >= max)
            break;
        RFC1766INFO info{};
        info.lcid = lcid;
        char tag[ULOC_FULLNAME_CAPACITY] = {};
        UErrorCode error = U_ZERO_ERROR;
        uloc_toLanguageTag(locale.c_str(), tag, sizeof tag - 1, false, &error);
        std::string lowerTag = U_SUCCESS(error) ? tag : locale;
        for (char& ch : lowerTag)
            ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        CopyWide(info.wszRfc1766, WideFromAscii(lowerTag));
        UChar name[128] = {};
        error = U_ZERO_ERROR;
        const int32_t length = uloc_getDisplayName(locale.c_str(), nullptr, name, 127, &error);
        if (U_SUCCESS(error) || error == U_STRING_NOT_TERMINATED_WARNING)
            CopyWide(info.wszLocaleName,
                     std::u16string(name, static_cast<std::size_t>(std::min(length, 127))));
        languages.push_back(info);
    }
    return S_OK;
}

HRESULT MultiLanguage::EnumCodePages(DWORD flags, ULONG max,
                                     std::vector<MIMECPINFO>& codePages) const {
    std::map<UINT, std::string> converters; // first converter of each number, by number
    const int32_t count = ucnv_countAvailable();
    for (int32_t i = 0; i < count; ++i) {
        const char* converter = ucnv_getAvailableName(i);
        if (const UINT codePage = WindowsCodePage(converter); codePage != 0)
            converters.emplace(codePage, converter);
    }
    codePages.clear();
    for (const auto& [codePage, converter] : converters) {
        if (codePages.size() >= max)
            break;
        MIMECPINFO info{};
        info.dwFlags = MIMECONTF_VALID | MIMECONTF_VALID_NLS;
        if ((info.dwFlags & flags) != flags)
            continue;
        info.uiCodePage = codePage;
        info.uiFamilyCodePage = codePage;
        const std::string charset = CharsetName(converter.c_str());
        CopyWide(info.wszDescription,
                 WideFromAscii(charset + " (" + std::to_string(codePage) + ")"));
        CopyWide(info.wszWebCharset, WideFromAscii(charset));
        CopyWide(info.wszHeaderCharset, WideFromAscii(charset));
        CopyWide(info.wszBodyCharset, WideFromAscii(charset));
        codePages.push_back(info);
    }
    return S_OK;
}

void SetMultiLanguageAvailable(bool available) {
    Available() = available;
}

} // namespace talvor::platform
