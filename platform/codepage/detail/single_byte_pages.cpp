// Windows-1252: its table above 0x7F, case of its letters, conversion to and from UTF-16.
#include "platform/codepage/detail/single_byte_pages.h"

#include "platform/codepage/detail/page_table.h"
#include "platform/core/ascii.h"

namespace talvor::platform::detail {
namespace {

// 0x80..0x9F of Windows-1252; the five unassigned bytes map to the C1 control of the same
// value, as MultiByteToWideChar does, so every byte converts and converts back.
const char16_t Cp1252High[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

int Cp1252Byte(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF))
        return unit;
    for (int i = 0; i < 32; ++i)
        if (Cp1252High[i] == unit)
            return 0x80 + i;
    return -1;
}

} // namespace

unsigned char Cp1252Lower(unsigned char b) {
    if (b < 0x80)
        return AsciiLower(b);
    if (b >= 0xC0 && b <= 0xDE && b != 0xD7)
        return b + 0x20;
    switch (b) {
    case 0x8A:
        return 0x9A;
    case 0x8C:
        return 0x9C;
    case 0x8E:
        return 0x9E;
    case 0x9F:
        return 0xFF;
    default:
        return b;
    }
}

unsigned char Cp1252Upper(unsigned char b) {
    if (b < 0x80)
        return AsciiUpper(b);
    if (b >= 0xE0 && b <= 0xFE && b != 0xF7)
        return b - 0x20;
    switch (b) {
    case 0x9A:
        return 0x8A;
    case 0x9C:
        return 0x8C;
    case 0x9E:
        return 0x8E;
    case 0xFF:
        return 0x9F;
    default:
        return b;
    }
}

std::u16string Cp1252ToWide(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (unsigned char b : text)
        out.push_back(b >= 0x80 && b < 0xA0 ? Cp1252High[b - 0x80] : char16_t(b));
    return out;
}

std::string Cp1252FromWide(std::u16string_view wide) {
    std::string out;
    out.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char16_t unit = wide[i];
        if (IsEscapeUnit(unit)) {
            out.push_back(static_cast<char>(unit & 0xFF));
            continue;
        }
        int b = Cp1252Byte(unit);
        out.push_back(b < 0 ? '?' : static_cast<char>(b));
        if (b < 0 && unit >= 0xD800 && unit <= 0xDBFF && i + 1 < wide.size() &&
            wide[i + 1] >= 0xDC00 && wide[i + 1] <= 0xDFFF)
            ++i; // one "?" for the whole pair
    }
    return out;
}

} // namespace talvor::platform::detail
