// Unicode case of code points and conversion between UTF-8 and UTF-16.
#include "platform/codepage/detail/utf8.h"

#include "platform/codepage/detail/page_table.h"
#include "platform/core/ascii.h"

#include <cwctype>
#include <locale.h>

namespace talvor::platform::detail {
namespace {

locale_t Utf8Locale() {
    static locale_t locale = [] {
        for (const char* name : {"C.UTF-8", "C.utf8", "en_US.UTF-8"}) {
            locale_t l = newlocale(LC_CTYPE_MASK, name, static_cast<locale_t>(nullptr));
            if (l != static_cast<locale_t>(nullptr))
                return l;
        }
        return static_cast<locale_t>(nullptr);
    }();
    return locale;
}

} // namespace

char32_t MapCodePoint(char32_t cp, bool upper) {
    if (cp < 0x80)
        return upper ? AsciiUpper(cp) : AsciiLower(cp);
    locale_t l = Utf8Locale();
    if (l == static_cast<locale_t>(nullptr))
        return cp;
    wint_t mapped =
        upper ? towupper_l(static_cast<wint_t>(cp), l) : towlower_l(static_cast<wint_t>(cp), l);
    return static_cast<char32_t>(mapped);
}

std::u16string Utf8ToWide(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    auto* s = reinterpret_cast<const unsigned char*>(text.data());
    for (std::size_t pos = 0; pos < text.size();) {
        if (s[pos] < 0x80) {
            out.push_back(s[pos++]);
            continue;
        }
        std::size_t n = Utf8SequenceLength(s, text.size(), pos);
        if (n == 0) {
            out.push_back(static_cast<char16_t>(0xDC00 + s[pos]));
            ++pos;
            continue;
        }
        char32_t cp = DecodeUtf8(s + pos, n);
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(cp));
        }
        pos += n;
    }
    return out;
}

std::string Utf8FromWide(std::u16string_view wide) {
    std::string out;
    out.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char16_t unit = wide[i];
        char encoded[4];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] <= 0xDFFF) {
            char32_t cp = 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (wide[i + 1] - 0xDC00);
            out.append(encoded, EncodeUtf8(cp, encoded));
            ++i;
        } else if (IsEscapeUnit(unit)) {
            out.push_back(static_cast<char>(unit & 0xFF));
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            out.push_back('?');
        } else {
            out.append(encoded, EncodeUtf8(unit, encoded));
        }
    }
    return out;
}

} // namespace talvor::platform::detail
