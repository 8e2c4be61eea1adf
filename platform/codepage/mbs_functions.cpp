// The runtime library's multi-byte string functions over the system code page.
#include "platform/codepage/mbs_functions.h"

#include "platform/codepage/char_set.h"
#include "platform/codepage/code_page.h"

#include <cstring>
#include <string>
#include <string_view>

using talvor::platform::CharLengthAt;

namespace {
std::string_view View(const unsigned char* s) {
    return s == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(s));
}
} // namespace

BOOL IsDBCSLeadByte(BYTE byte) {
    return talvor::platform::IsLeadByte(byte) ? TRUE : FALSE;
}

int _mbscmp(const unsigned char* a, const unsigned char* b) {
    return talvor::platform::CompareExact(View(a), View(b));
}

int _mbsicmp(const unsigned char* a, const unsigned char* b) {
    return talvor::platform::CompareNoCase(View(a), View(b));
}

int _mbsicoll(const unsigned char* a, const unsigned char* b) {
    return _mbsicmp(a, b);
}

unsigned char* _mbsstr(const unsigned char* haystack, const unsigned char* needle) {
    std::size_t pos = talvor::platform::FindText(View(haystack), View(needle));
    return pos == std::string_view::npos ? nullptr : const_cast<unsigned char*>(haystack + pos);
}

unsigned char* _mbschr(const unsigned char* text, unsigned int ch) {
    std::string_view view = View(text);
    if (ch == 0)
        return const_cast<unsigned char*>(text + view.size());
    std::size_t pos = talvor::platform::FindChar(view, static_cast<char>(ch));
    return pos == std::string_view::npos ? nullptr : const_cast<unsigned char*>(text + pos);
}

unsigned char* _mbsupr(unsigned char* text) {
    if (text == nullptr)
        return text;
    std::string copy(reinterpret_cast<char*>(text));
    talvor::platform::MakeUpperInPlace(copy);
    std::memcpy(text, copy.data(), copy.size());
    return text;
}

unsigned char* _mbslwr(unsigned char* text) {
    if (text == nullptr)
        return text;
    std::string copy(reinterpret_cast<char*>(text));
    talvor::platform::MakeLowerInPlace(copy);
    std::memcpy(text, copy.data(), copy.size());
    return text;
}

unsigned char* _mbsinc(const unsigned char* text) {
    std::string_view view = View(text);
    std::size_t n = view.empty() ? 1 : CharLengthAt(view, 0);
    return const_cast<unsigned char*>(text + n);
}

std::size_t _mbsspn(const unsigned char* text, const unsigned char* set) {
    return talvor::platform::SpanOfSet(View(text), View(set), true,
                                       talvor::platform::SetMatch::WholeCharacters);
}

std::size_t _mbscspn(const unsigned char* text, const unsigned char* set) {
    return talvor::platform::SpanOfSet(View(text), View(set), false,
                                       talvor::platform::SetMatch::WholeCharacters);
}
