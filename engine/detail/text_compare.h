// The comparisons of lines and words that the engine's rules are written in, on the multi-byte
// forms of the runtime library: they read a text up to its first NUL, as those functions do.
#pragma once

#include "platform/code_page.h"
#include "platform/cstring.h"

namespace talvor::engine::detail {

inline const unsigned char* Bytes(const CString& text) {
    return reinterpret_cast<const unsigned char*>(text.GetString());
}

// Whole texts equal without regard to case (multi-byte rules of the system code page).
inline bool SameNoCase(const CString& a, const CString& b) {
    return _mbsicmp(Bytes(a), Bytes(b)) == 0;
}

// True when the first occurrence of word in text (with regard to case) is at its very start.
// An empty word is found at the start of every text.
inline bool BeginsWith(const CString& text, const CString& word) {
    return _mbsstr(Bytes(text), Bytes(word)) == Bytes(text);
}

// True when word occurs in text with regard to case.
inline bool Contains(const CString& text, const CString& word) {
    return _mbsstr(Bytes(text), Bytes(word)) != nullptr;
}

} // namespace talvor::engine::detail
