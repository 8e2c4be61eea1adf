// Whether a character of 8-bit text is one of a set of characters, and the spans of such
// characters, stepping by whole characters of the system code page.
#pragma once

#include <cstddef>
#include <string_view>

namespace talvor::platform {

// How a character is looked up in the set.
enum class SetMatch {
    // The set must hold the same whole character: the rule of the runtime library's _mbsspn.
    WholeCharacters,
    // As WholeCharacters, except that a one-byte character is also found as any byte of the
    // set, even the trail byte of a double-byte character there; a NUL byte is never found.
    // The rule of the string class's spans and trims.
    SingleBytesAnywhere,
};

// True when the character of n bytes at text[pos] is in set under rule. A set is read in
// whole characters of the system code page, like the text.
bool CharInSet(std::string_view text, std::size_t pos, std::size_t n, std::string_view set,
               SetMatch rule);

// Byte length of the leading run of whole characters of text that are in set (including is
// true) or that are not (including is false).
std::size_t SpanOfSet(std::string_view text, std::string_view set, bool including, SetMatch rule);

} // namespace talvor::platform
