// Case of whole texts and case-insensitive comparison in the system code page: ASCII
// everywhere, the Latin letters of 1252, the letters of Unicode in UTF-8, double-byte
// characters as they are.
#include "platform/codepage/code_page.h"

#include "platform/codepage/detail/page_table.h"
#include "platform/codepage/detail/single_byte_pages.h"
#include "platform/codepage/detail/utf8.h"
#include "platform/core/ascii.h"

#include <cstring>

namespace talvor::platform {
namespace {

using detail::Cp1252Lower;
using detail::Cp1252Upper;
using detail::CurrentPage;
using detail::DecodeUtf8;
using detail::EncodeUtf8;
using detail::MapCodePoint;
using detail::PageInfo;
using detail::PageKind;
using detail::Utf8SequenceLength;

// Folds the character at pos to the form that case-insensitive comparison uses, writing its
// bytes to out; returns the number of source bytes it took.
std::size_t FoldCharLower(const PageInfo& page, const unsigned char* s, std::size_t length,
                          std::size_t pos, unsigned char* out, std::size_t& outLength) {
    unsigned char b = s[pos];
    if (b < 0x80) {
        out[0] = AsciiLower(b);
        outLength = 1;
        return 1;
    }
    switch (page.kind) {
    case PageKind::SingleByte:
        out[0] = page.codePage == 1252 ? Cp1252Lower(b) : b;
        outLength = 1;
        return 1;
    case PageKind::DoubleByte: {
        std::size_t n = detail::MultiByteCharLength(reinterpret_cast<const char*>(s), length, pos);
        std::memcpy(out, s + pos, n);
        outLength = n;
        return n;
    }
    case PageKind::Utf8: {
        std::size_t n = Utf8SequenceLength(s, length, pos);
        if (n == 0) {
            out[0] = b;
            outLength = 1;
            return 1;
        }
        char32_t lower = MapCodePoint(DecodeUtf8(s + pos, n), false);
        char encoded[4];
        std::size_t m = EncodeUtf8(lower, encoded);
        if (m != n) { // keep lengths stable
            std::memcpy(out, s + pos, n);
        } else {
            std::memcpy(out, encoded, n);
        }
        outLength = n;
        return n;
    }
    }
    return 1;
}

void MapCaseInPlace(std::string& text, bool upper) {
    const PageInfo& page = CurrentPage();
    auto* s = reinterpret_cast<unsigned char*>(text.data());
    std::size_t length = text.size();
    for (std::size_t pos = 0; pos < length;) {
        unsigned char b = s[pos];
        if (b < 0x80) {
            s[pos] = upper ? AsciiUpper(b) : AsciiLower(b);
            ++pos;
            continue;
        }
        if (page.kind == PageKind::SingleByte) {
            if (page.codePage == 1252)
                s[pos] = upper ? Cp1252Upper(b) : Cp1252Lower(b);
            ++pos;
            continue;
        }
        if (page.kind == PageKind::DoubleByte) {
            pos += detail::MultiByteCharLength(text.data(), length, pos);
            continue;
        }
        std::size_t n = Utf8SequenceLength(s, length, pos);
        if (n == 0) {
            ++pos;
            continue;
        }
        char32_t mapped = MapCodePoint(DecodeUtf8(s + pos, n), upper);
        char encoded[4];
        if (EncodeUtf8(mapped, encoded) == n)
            std::memcpy(s + pos, encoded, n);
        pos += n;
    }
}

} // namespace

int CompareExact(std::string_view a, std::string_view b) {
    std::size_t n = a.size() < b.size() ? a.size() : b.size();
    int c = n == 0 ? 0 : std::memcmp(a.data(), b.data(), n);
    if (c != 0)
        return c < 0 ? -1 : 1;
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

int CompareNoCase(std::string_view a, std::string_view b) {
    const PageInfo& page = CurrentPage();
    auto* sa = reinterpret_cast<const unsigned char*>(a.data());
    auto* sb = reinterpret_cast<const unsigned char*>(b.data());
    std::size_t ia = 0, ib = 0;
    // Folded characters are compared byte by byte: the same order as comparing the lower-case
    // forms of both texts exactly, which is how sorted lower-case keyword lists are searched.
    unsigned char fa[4], fb[4];
    std::size_t na = 0, nb = 0, ka = 0, kb = 0;
    for (;;) {
        if (ka == na) {
            ka = na = 0;
            if (ia < a.size()) {
                if (sa[ia] < 0x80) {
                    fa[0] = AsciiLower(sa[ia++]);
                    na = 1;
                } else {
                    ia += FoldCharLower(page, sa, a.size(), ia, fa, na);
                }
            }
        }
        if (kb == nb) {
            kb = nb = 0;
            if (ib < b.size()) {
                if (sb[ib] < 0x80) {
                    fb[0] = AsciiLower(sb[ib++]);
                    nb = 1;
                } else {
                    ib += FoldCharLower(page, sb, b.size(), ib, fb, nb);
                }
            }
        }
        bool endA = ka == na, endB = kb == nb;
        if (endA || endB)
            return endA == endB ? 0 : (endA ? -1 : 1);
        if (fa[ka] != fb[kb])
            return fa[ka] < fb[kb] ? -1 : 1;
        ++ka;
        ++kb;
    }
}

void MakeUpperInPlace(std::string& text) {
    MapCaseInPlace(text, true);
}
void MakeLowerInPlace(std::string& text) {
    MapCaseInPlace(text, false);
}

} // namespace talvor::platform
