// The comparisons of lines and words that the engine's rules are written in, on the multi-byte
// forms of the runtime library: they read a text up to its first NUL, as those functions do.
#pragma once

#include "platform/codepage/code_page.h"
#include "platform/codepage/mbs_functions.h"
#include "platform/core/ascii.h"
#include "platform/strings/cstring.h"

#include <cstring>
#include <string_view>

namespace talvor::engine::detail {

inline const unsigned char* Bytes(const CString& text) {
    return reinterpret_cast<const unsigned char*>(text.GetString());
}

using platform::AsciiLower;

// Whole texts equal without regard to case (multi-byte rules of the system code page). Case
// folding turns an ASCII byte into nothing but its lower case and no other byte into ASCII, so
// as long as both texts are ASCII they compare byte by byte; the first byte beyond ASCII
// hands over to the full comparison.
inline bool SameNoCase(const CString& a, const CString& b) {
    for (const unsigned char *x = Bytes(a), *y = Bytes(b);; ++x, ++y) {
        if (*x >= 0x80 || *y >= 0x80)
            return _mbsicmp(Bytes(a), Bytes(b)) == 0;
        if (AsciiLower(*x) != AsciiLower(*y))
            return false;
        if (*x == 0)
            return true;
    }
}

// True when text begins with prefix without regard to case, for a prefix of ASCII characters
// only (by the same rules of folding).
inline bool BeginsWithAsciiNoCase(const CString& text, std::string_view prefix) {
    const unsigned char* at = Bytes(text);
    for (char ch : prefix) {
        unsigned char byte = *at++;
        if (byte == 0 || byte >= 0x80 ||
            AsciiLower(byte) != AsciiLower(static_cast<unsigned char>(ch)))
            return false;
    }
    return true;
}

// True when the first occurrence of word in text (with regard to case) is at its very start,
// which is where the text begins with the word: position 0 is always a character boundary.
// An empty word is found at the start of every text.
inline bool BeginsWith(const CString& text, const CString& word) {
    const char* w = word.GetString();
    return *w == '\0' ||
           (*text.GetString() == *w && std::strncmp(text.GetString(), w, std::strlen(w)) == 0);
}

// True when word occurs in text with regard to case.
inline bool Contains(const CString& text, const CString& word) {
    return _mbsstr(Bytes(text), Bytes(word)) != nullptr;
}

} // namespace talvor::engine::detail
