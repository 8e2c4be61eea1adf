#include "platform/com/bstr.h"

#include "platform/codepage/code_page.h"

#include <cstdlib>
#include <cstring>
#include <cwchar>

namespace {

// The prefix holds the length in bytes, as the component model keeps it.
constexpr std::size_t PrefixSize = sizeof(std::uint32_t);

std::uint32_t* PrefixOf(BSTR text) {
    return reinterpret_cast<std::uint32_t*>(reinterpret_cast<char*>(text) - PrefixSize);
}

} // namespace

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    if (length > (0x7FFFFFFFu - PrefixSize) / sizeof(OLECHAR) - 1)
        return nullptr;
    char* block = static_cast<char*>(std::malloc(PrefixSize + (length + 1) * sizeof(OLECHAR)));
    if (!block)
        return nullptr;
    const std::uint32_t bytes = static_cast<std::uint32_t>(length * sizeof(OLECHAR));
    std::memcpy(block, &bytes, PrefixSize);
    BSTR result = reinterpret_cast<BSTR>(block + PrefixSize);
    if (text)
        std::memcpy(result, text, length * sizeof(OLECHAR));
    else
        std::memset(result, 0, length * sizeof(OLECHAR));
    result[length] = 0;
    return result;
}

BSTR SysAllocString(const OLECHAR* text) {
    if (!text)
        return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(std::wcslen(text)));
}

void SysFreeString(BSTR text) {
    if (text)
        std::free(reinterpret_cast<char*>(text) - PrefixSize);
}

UINT SysStringByteLen(BSTR text) {
    return text ? *PrefixOf(text) : 0;
}

UINT SysStringLen(BSTR text) {
    return SysStringByteLen(text) / sizeof(OLECHAR);
}

namespace talvor::platform {

std::wstring WideFromUtf16(std::u16string_view text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] < 0xE000) {
            out += static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            out += static_cast<wchar_t>(unit);
        }
    }
    return out;
}

std::wstring WideFromMultiByte(std::string_view text) {
    return WideFromUtf16(ToWide(text));
}

std::string MultiByteFromWide(std::wstring_view wide) {
    std::u16string units;
    units.reserve(wide.size());
    for (const wchar_t c : wide) {
        const auto code = static_cast<std::uint32_t>(c);
        if (code >= 0x10000 && code <= 0x10FFFF) {
            units += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            units += static_cast<char16_t>(code > 0xFFFF ? 0xFFFD : code);
        }
    }
    return FromWide(units);
}

std::string MultiByteFromWide(const OLECHAR* wide) {
    return wide ? MultiByteFromWide(std::wstring_view(wide)) : std::string();
}

BSTR AllocBstr(std::wstring_view text) {
    return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

} // namespace talvor::platform
