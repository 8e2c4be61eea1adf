// The multi-language service: the languages and code pages the system knows, in the published
// records RFC1766INFO and MIMECPINFO. Languages are ICU's locales that have a Windows locale
// number; code pages are ICU's converters that have a Windows code page number.
#pragma once

#include "platform/core/win_types.h"

#include <memory>
#include <vector>

constexpr int MAX_RFC1766_NAME = 6;
constexpr int MAX_LOCALE_NAME = 32;
constexpr int MAX_MIMECP_NAME = 64;
constexpr int MAX_MIMECSET_NAME = 50;
constexpr int MAX_MIMEFACE_NAME = 32;

struct RFC1766INFO {
    LCID lcid;
    WCHAR wszRfc1766[MAX_RFC1766_NAME];
    WCHAR wszLocaleName[MAX_LOCALE_NAME];
};

struct MIMECPINFO {
    DWORD dwFlags;
    UINT uiCodePage;
    UINT uiFamilyCodePage;
    WCHAR wszDescription[MAX_MIMECP_NAME];
    WCHAR wszWebCharset[MAX_MIMECSET_NAME];
    WCHAR wszHeaderCharset[MAX_MIMECSET_NAME];
    WCHAR wszBodyCharset[MAX_MIMECSET_NAME];
    WCHAR wszFixedWidthFont[MAX_MIMEFACE_NAME];
    WCHAR wszProportionalFont[MAX_MIMEFACE_NAME];
    BYTE bGDICharset;
};

// Flags of MIMECPINFO::dwFlags and of the EnumCodePages filter.
constexpr DWORD MIMECONTF_MAILNEWS = 0x00000001;
constexpr DWORD MIMECONTF_BROWSER = 0x00000002;
constexpr DWORD MIMECONTF_VALID_NLS = 0x00040000;
constexpr DWORD MIMECONTF_VALID = 0x00020000;

namespace talvor::platform {

class MultiLanguage {
public:
    // The service, or null when it is switched off (SetMultiLanguageAvailable), as creating the
    // component can fail on a system without it.
    static std::unique_ptr<MultiLanguage> Create();

    // Up to max languages, one per locale number, in ascending order of the number. The names
    // are the locales' display names in the process's locale, cut to 31 characters; the
    // RFC 1766 names are lower-case tags such as "en-us", cut to 5 characters.
    HRESULT EnumRfc1766(ULONG max, std::vector<RFC1766INFO>& languages) const;
    // Up to max code pages whose flags hold every bit of flags, one per code page number, in
    // ascending order. The description is the charset name and the number: "windows-1252
    // (1252)"; every code page that ICU can convert carries MIMECONTF_VALID and
    // MIMECONTF_VALID_NLS.
    HRESULT EnumCodePages(DWORD flags, ULONG max, std::vector<MIMECPINFO>& codePages) const;
};

// Switches the service off (false) or on again, for hosts without it and for tests.
void SetMultiLanguageAvailable(bool available);

} // namespace talvor::platform
