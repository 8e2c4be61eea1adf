// The system code page: which page it is, how its bytes form characters, conversion to and
// from the wide form, and search at character boundaries. Windows-1252 and UTF-8 convert
// directly (they are the common pages and conversion is hot in the regular expression
// facade); every other page goes through iconv.
#include "platform/codepage/code_page.h"

#include "platform/codepage/detail/iconv_pages.h"
#include "platform/codepage/detail/page_table.h"
#include "platform/codepage/detail/single_byte_pages.h"
#include "platform/codepage/detail/utf8.h"

#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace talvor::platform {

using detail::CurrentPage;
using detail::PageInfo;
using detail::PageKind;

namespace detail {
std::size_t MultiByteCharLength(const char* text, std::size_t length, std::size_t pos) {
    const PageInfo& page = CurrentPage();
    auto* s = reinterpret_cast<const unsigned char*>(text);
    switch (page.kind) {
    case PageKind::SingleByte:
        return 1;
    case PageKind::DoubleByte:
        return (IsLeadByte(s[pos]) && pos + 1 < length) ? 2 : 1;
    case PageKind::Utf8: {
        std::size_t n = Utf8SequenceLength(s, length, pos);
        return n == 0 ? 1 : n;
    }
    }
    return 1;
}
} // namespace detail

unsigned SystemCodePage() {
    return CurrentPage().codePage;
}

bool SetSystemCodePage(unsigned codePage) {
    const PageInfo* page = detail::FindPage(codePage);
    if (page == nullptr)
        return false;
    detail::SetCurrentPage(*page);
    return true;
}

bool IsKnownCodePage(unsigned codePage) {
    return detail::FindPage(codePage) != nullptr;
}

bool IsMultiByteCodePage() {
    return CurrentPage().kind != PageKind::SingleByte;
}

bool IsLeadByte(unsigned char byte) {
    const PageInfo& page = CurrentPage();
    switch (page.kind) {
    case PageKind::SingleByte:
        return false;
    case PageKind::DoubleByte:
        return (byte >= page.leadFrom1 && byte <= page.leadTo1) ||
               (page.leadFrom2 != 0 && byte >= page.leadFrom2 && byte <= page.leadTo2);
    case PageKind::Utf8:
        return byte >= 0xC2 && byte <= 0xF4;
    }
    return false;
}

namespace {

// Bytes below 0x80 from the start of text, written to out as code units of the same value up
// to the first byte that is not; gives how many. Sixteen at a time where the processor has
// vector registers (every x86-64 has SSE2), which makes converting a script's text cheap next
// to searching it.
std::size_t WidenAscii(const char* text, std::size_t length, char16_t* out) {
    std::size_t i = 0;
#ifdef __SSE2__
    const __m128i zero = _mm_setzero_si128();
    for (; i + 16 <= length; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
        if (_mm_movemask_epi8(bytes) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(bytes, zero));
    }
#endif
    for (; i < length && static_cast<unsigned char>(text[i]) < 0x80; ++i)
        out[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    return i;
}

// The same the other way: code units below 0x80 from the start, as bytes.
std::size_t NarrowAscii(const char16_t* wide, std::size_t length, char* out) {
    std::size_t i = 0;
#ifdef __SSE2__
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
    for (; i + 16 <= length; i += 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(wide + i));
        const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(wide + i + 8));
        const __m128i beyond = _mm_and_si128(_mm_or_si128(low, next), high);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(low, next));
    }
#endif
    for (; i < length && wide[i] < 0x80; ++i)
        out[i] = static_cast<char>(wide[i]);
    return i;
}

bool AsciiSame(const PageInfo& page) {
    if (page.kind == PageKind::Utf8 || page.codePage == CodePageWestern)
        return true;
    return detail::IconvAsciiSame(page);
}

} // namespace

bool SystemPageKeepsAscii() {
    return AsciiSame(CurrentPage());
}

bool SystemPageAsciiStandsAlone() {
    const PageInfo& page = CurrentPage();
    return page.kind != PageKind::DoubleByte && AsciiSame(page);
}

bool ToWide(std::string_view text, std::u16string& out) {
    const PageInfo& page = CurrentPage();
    // ASCII comes first and alone in almost every script line: it needs no table and no
    // iconv in any page that maps it to itself. The rest starts at a character boundary.
    std::size_t ascii = 0;
    if (AsciiSame(page)) {
        out.resize(text.size());
        ascii = WidenAscii(text.data(), text.size(), out.data());
        if (ascii == text.size())
            return true;
    }
    out.resize(ascii);
    const std::string_view rest = text.substr(ascii);
    if (page.kind == PageKind::Utf8)
        out += detail::Utf8ToWide(rest);
    else if (page.codePage == CodePageWestern)
        out += detail::Cp1252ToWide(rest);
    else
        out += detail::IconvToWide(page, rest);
    return false;
}

std::u16string ToWide(std::string_view text) {
    std::u16string out;
    ToWide(text, out);
    return out;
}

void FromWide(std::u16string_view wide, std::string& out) {
    const PageInfo& page = CurrentPage();
    std::size_t ascii = 0;
    if (AsciiSame(page)) {
        out.resize(wide.size());
        ascii = NarrowAscii(wide.data(), wide.size(), out.data());
        if (ascii == wide.size())
            return;
    }
    out.resize(ascii);
    const std::u16string_view rest = wide.substr(ascii);
    if (page.kind == PageKind::Utf8)
        out += detail::Utf8FromWide(rest);
    else if (page.codePage == CodePageWestern)
        out += detail::Cp1252FromWide(rest);
    else
        out += detail::IconvFromWide(page, rest);
}

std::string FromWide(std::u16string_view wide) {
    std::string out;
    FromWide(wide, out);
    return out;
}

std::size_t FindText(std::string_view haystack, std::string_view needle, std::size_t from) {
    if (from > haystack.size())
        return std::string_view::npos;
    if (needle.empty())
        return from;
    if (!IsMultiByteCodePage())
        return haystack.find(needle, from);
    for (std::size_t pos = from; pos + needle.size() <= haystack.size();
         pos += CharLengthAt(haystack, pos)) {
        if (std::memcmp(haystack.data() + pos, needle.data(), needle.size()) == 0)
            return pos;
    }
    return std::string_view::npos;
}

std::size_t FindChar(std::string_view haystack, char ch, std::size_t from) {
    if (!IsMultiByteCodePage())
        return haystack.find(ch, from);
    for (std::size_t pos = from; pos < haystack.size(); pos += CharLengthAt(haystack, pos)) {
        if (haystack[pos] == ch && CharLengthAt(haystack, pos) == 1)
            return pos;
    }
    return std::string_view::npos;
}

} // namespace talvor::platform
