// ASCII character facts the whole library shares: case of the letters A to Z and a to z, and
// hexadecimal digits. Bytes above 0x7F are never touched here; their case belongs to the code
// page (platform/codepage/code_page.h).
#pragma once

#include <array>
#include <cstddef>

namespace talvor::platform {

constexpr bool IsAsciiUpper(char32_t c) {
    return c >= 'A' && c <= 'Z';
}
constexpr bool IsAsciiLower(char32_t c) {
    return c >= 'a' && c <= 'z';
}
constexpr bool IsAsciiLetter(char32_t c) {
    return IsAsciiUpper(c) || IsAsciiLower(c);
}
constexpr bool IsAsciiDigit(char32_t c) {
    return c >= '0' && c <= '9';
}

// The other case of an ASCII letter; every other value is returned as it is.
constexpr unsigned char AsciiLower(unsigned char c) {
    return IsAsciiUpper(c) ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}
constexpr unsigned char AsciiUpper(unsigned char c) {
    return IsAsciiLower(c) ? static_cast<unsigned char>(c - ('a' - 'A')) : c;
}
constexpr char AsciiLower(char c) {
    return static_cast<char>(AsciiLower(static_cast<unsigned char>(c)));
}
constexpr char AsciiUpper(char c) {
    return static_cast<char>(AsciiUpper(static_cast<unsigned char>(c)));
}
constexpr char32_t AsciiLower(char32_t c) {
    return IsAsciiUpper(c) ? c + ('a' - 'A') : c;
}
constexpr char32_t AsciiUpper(char32_t c) {
    return IsAsciiLower(c) ? c - ('a' - 'A') : c;
}

// AsciiLower of every byte, for loops where a table load beats a compare and branch.
inline constexpr std::array<unsigned char, 256> AsciiLowerTable = [] {
    std::array<unsigned char, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c)
        table[c] = AsciiLower(static_cast<unsigned char>(c));
    return table;
}();

// Value of a hexadecimal digit (0-9, a-f, A-F), or -1 for anything else. Takes any character
// type, so 8-bit and UTF-16 text use the same rule.
constexpr int HexDigitValue(char32_t c) {
    if (IsAsciiDigit(c))
        return static_cast<int>(c - '0');
    if (c >= 'a' && c <= 'f')
        return static_cast<int>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F')
        return static_cast<int>(c - 'A' + 10);
    return -1;
}
constexpr int HexDigitValue(char16_t c) {
    return HexDigitValue(static_cast<char32_t>(c));
}
constexpr int HexDigitValue(char c) {
    return HexDigitValue(static_cast<char32_t>(static_cast<unsigned char>(c)));
}

// The digit of value (0 to 15; higher bits are ignored), in upper or lower case.
constexpr char HexDigitChar(unsigned value, bool upper = true) {
    return (upper ? "0123456789ABCDEF" : "0123456789abcdef")[value & 0xF];
}

} // namespace talvor::platform
