// UTF-8 as a code page: the byte sequences it accepts, code points in and out, Unicode case of
// a code point, and conversion to and from UTF-16 done here directly (it is hot in the regular
// expression facade).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace talvor::platform::detail {

// Length of a valid UTF-8 sequence at pos, or 0 when the bytes there are not one.
inline std::size_t Utf8SequenceLength(const unsigned char* s, std::size_t length, std::size_t pos) {
    unsigned char b = s[pos];
    std::size_t need;
    unsigned char low = 0x80, high = 0xBF; // range of the first continuation byte
    if (b >= 0xC2 && b <= 0xDF) {
        need = 2;
    } else if (b >= 0xE0 && b <= 0xEF) {
        need = 3;
        if (b == 0xE0)
            low = 0xA0;
        else if (b == 0xED)
            high = 0x9F; // no UTF-16 surrogates encoded in UTF-8
    } else if (b >= 0xF0 && b <= 0xF4) {
        need = 4;
        if (b == 0xF0)
            low = 0x90;
        else if (b == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (length - pos < need)
        return 0;
    if (s[pos + 1] < low || s[pos + 1] > high)
        return 0;
    for (std::size_t k = 2; k < need; ++k)
        if ((s[pos + k] & 0xC0) != 0x80)
            return 0;
    return need;
}

inline char32_t DecodeUtf8(const unsigned char* s, std::size_t n) {
    switch (n) {
    case 2:
        return ((s[0] & 0x1Fu) << 6) | (s[1] & 0x3Fu);
    case 3:
        return ((s[0] & 0x0Fu) << 12) | ((s[1] & 0x3Fu) << 6) | (s[2] & 0x3Fu);
    case 4:
        return ((s[0] & 0x07u) << 18) | ((s[1] & 0x3Fu) << 12) | ((s[2] & 0x3Fu) << 6) |
               (s[3] & 0x3Fu);
    default:
        return s[0];
    }
}

inline std::size_t EncodeUtf8(char32_t cp, char* out) {
    if (cp < 0x80) {
        out[0] = static_cast<char>(cp);
        return 1;
    }
    if (cp < 0x800) {
        out[0] = static_cast<char>(0xC0 | (cp >> 6));
        out[1] = static_cast<char>(0x80 | (cp & 0x3F));
        return 2;
    }
    if (cp < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (cp >> 12));
        out[1] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out[2] = static_cast<char>(0x80 | (cp & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (cp >> 18));
    out[1] = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out[2] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out[3] = static_cast<char>(0x80 | (cp & 0x3F));
    return 4;
}

// The other case of a code point (upper when upper is true) by the C library's Unicode tables;
// ASCII maps by itself, and a code point without the other case is returned as it is.
char32_t MapCodePoint(char32_t cp, bool upper);

// UTF-16 form of UTF-8 text; a byte that starts no valid sequence becomes an escape unit.
std::u16string Utf8ToWide(std::string_view text);
// UTF-8 form of UTF-16 text; escape units give back their byte, a lone surrogate gives "?".
std::string Utf8FromWide(std::u16string_view wide);

} // namespace talvor::platform::detail
