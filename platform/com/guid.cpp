#include "platform/com/guid.h"

#include "platform/com/hresult.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

void* CoTaskMemAlloc(std::size_t size) {
    return std::malloc(size == 0 ? 1 : size);
}

void CoTaskMemFree(void* block) {
    std::free(block);
}

namespace talvor::platform {
namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Reads `digits` hex digits at `pos`; false at any other character.
bool ReadHex(std::string_view text, std::size_t pos, int digits, std::uint32_t& value) {
    value = 0;
    for (int i = 0; i < digits; ++i) {
        const int v = HexValue(text[pos + i]);
        if (v < 0)
            return false;
        value = value << 4 | static_cast<std::uint32_t>(v);
    }
    return true;
}

std::string NarrowAscii(LPCOLESTR text) {
    std::string out;
    for (; *text; ++text) {
        if (*text > 0x7F)
            return std::string(); // no GUID text holds such a character
        out += static_cast<char>(*text);
    }
    return out;
}

} // namespace

std::string GuidToText(REFGUID guid) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  guid.Data1, guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2],
                  guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
    return buffer;
}

bool GuidFromText(std::string_view text, GUID& guid) {
    if (text.size() == 38) {
        if (text.front() != '{' || text.back() != '}')
            return false;
        text = text.substr(1, 36);
    }
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' ||
        text[23] != '-')
        return false;
    GUID result{};
    std::uint32_t value = 0;
    if (!ReadHex(text, 0, 8, value))
        return false;
    result.Data1 = value;
    if (!ReadHex(text, 9, 4, value))
        return false;
    result.Data2 = static_cast<std::uint16_t>(value);
    if (!ReadHex(text, 14, 4, value))
        return false;
    result.Data3 = static_cast<std::uint16_t>(value);
    static constexpr std::size_t bytePositions[8] = {19, 21, 24, 26, 28, 30, 32, 34};
    for (int i = 0; i < 8; ++i) {
        if (!ReadHex(text, bytePositions[i], 2, value))
            return false;
        result.Data4[i] = static_cast<std::uint8_t>(value);
    }
    guid = result;
    return true;
}

GUID MakeGuid(std::string_view text) {
    GUID guid = GUID_NULL;
    GuidFromText(text, guid);
    return guid;
}

} // namespace talvor::platform

int StringFromGUID2(REFGUID guid, LPOLESTR text, int max) {
    if (!text || max < 39)
        return 0;
    const std::string narrow = talvor::platform::GuidToText(guid);
    for (std::size_t i = 0; i < narrow.size(); ++i)
        text[i] = static_cast<OLECHAR>(narrow[i]);
    text[narrow.size()] = 0;
    return 39;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text) {
    if (!text)
        return E_INVALIDARG;
    *text = static_cast<LPOLESTR>(CoTaskMemAlloc(39 * sizeof(OLECHAR)));
    if (!*text)
        return E_OUTOFMEMORY;
    StringFromGUID2(clsid, *text, 39);
    return S_OK;
}

HRESULT StringFromIID(REFIID iid, LPOLESTR* text) {
    return StringFromCLSID(iid, text);
}

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) {
    if (!clsid)
        return E_INVALIDARG;
    *clsid = GUID_NULL;
    if (!text)
        return CO_E_CLASSSTRING;
    const std::string narrow = talvor::platform::NarrowAscii(text);
    // The registry form needs its braces here, as the component model asks.
    if (narrow.size() != 38 || !talvor::platform::GuidFromText(narrow, *clsid))
        return CO_E_CLASSSTRING;
    return S_OK;
}

HRESULT IIDFromString(LPCOLESTR text, IID* iid) {
    const HRESULT hr = CLSIDFromString(text, iid);
    return hr == CO_E_CLASSSTRING ? CO_E_IIDSTRING : hr;
}
