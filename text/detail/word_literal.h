// The keyword test's own shape, answered without the engine: the pattern "[\W]{1}" + word +
// "[\W]{1}" where the word is plain letters, digits, blanks and underscores, on ASCII text.
// On such text a character is a byte and \W is any byte but a letter, a digit or "_", so the
// question is a search for the word with a non-word byte on either side. Any other pattern or
// text goes to the engine.
#pragma once

#include <optional>
#include <string_view>

namespace talvor::text::detail {

// The word of a pattern of that shape; nothing for any other pattern.
std::optional<std::string_view> WordLiteralOf(std::string_view pattern);

// Whether text holds the word between two non-word bytes (letters compared without case when
// asked). With asciiOnly, nothing when the text is not ASCII, which only the engine answers:
// in a double-byte page a second byte may look like a letter. Without it every byte from 0x80
// up counts as a non-word character, as it is in UTF-8 and the single-byte pages.
std::optional<bool> TestWordLiteral(std::string_view word, std::string_view text, bool ignoreCase,
                                    bool asciiOnly = true);

} // namespace talvor::text::detail
