// The system code page: which page it is, how its bytes form characters, conversion to and
// from the wide form, and search at character boundaries. Windows-1252 and UTF-8 convert
// directly (they are the common pages and conversion is hot in the regular expression
// facade); every other page goes through iconv.
#include "platform/codepage/code_page.h"

#include "platform/codepage/detail/iconv_pages.h"
#include "platform/codepage/detail/page_table.h"
#include "platform/codepage/detail/single_byte_pages.h"
#include "platform/codepage/detail/utf8.h"

#include <cstring>

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

std::u16string ToWide(std::string_view text) {
    const PageInfo& page = CurrentPage();
    if (page.kind == PageKind::Utf8)
        return detail::Utf8ToWide(text);
    if (page.codePage == CodePageWestern)
        return detail::Cp1252ToWide(text);
    return detail::IconvToWide(page, text);
}

std::string FromWide(std::u16string_view wide) {
    const PageInfo& page = CurrentPage();
    if (page.kind == PageKind::Utf8)
        return detail::Utf8FromWide(wide);
    if (page.codePage == CodePageWestern)
        return detail::Cp1252FromWide(wide);
    return detail::IconvFromWide(page, wide);
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
