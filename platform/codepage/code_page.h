// The process-wide system code page: which bytes start a multi-byte character, case mapping
// per character, and conversion between 8-bit text and its wide (UTF-16) form.
// Every "lead byte, step two" rule of the library is written against CharLengthAt(), so it
// holds for double-byte pages and extends to UTF-8, where a lead byte starts 2 to 4 bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace talvor::platform {

constexpr unsigned CodePageWestern = 1252;
constexpr unsigned CodePageSimplifiedChinese = 936;
constexpr unsigned CodePageUtf8 = 65001;

// The code page the library reads and writes 8-bit text in. Starts from the locale
// (a UTF-8 locale gives 65001, GBK/GB2312/GB18030 give 936, anything else 1252).
unsigned SystemCodePage();

// Selects the system code page for the whole process. Returns false, and keeps the current
// page, for a page this build cannot convert (see IsKnownCodePage).
bool SetSystemCodePage(unsigned codePage);

// Single-byte pages 874, 1250-1258, 437, 850, 28591; double-byte 932, 936, 949, 950; 65001.
bool IsKnownCodePage(unsigned codePage);

// True for a byte that starts a multi-byte character in the system code page: a lead byte of
// a double-byte page, or a UTF-8 lead byte (0xC2 to 0xF4).
bool IsLeadByte(unsigned char byte);

// True when the system code page is a double-byte page or UTF-8.
bool IsMultiByteCodePage();

namespace detail {
std::size_t MultiByteCharLength(const char* text, std::size_t length, std::size_t pos);
}

// Byte length of the character that starts at pos: 1 for a single byte; 2 for a double-byte
// lead byte followed by any byte (the lead swallows it, even a quote or a backslash); 2 to 4
// for a complete, valid UTF-8 sequence. An invalid or cut-off sequence counts 1 per byte, and
// the result never reaches past length. pos at or past length gives 0.
inline std::size_t CharLengthAt(const char* text, std::size_t length, std::size_t pos) {
    if (pos >= length)
        return 0;
    if (static_cast<unsigned char>(text[pos]) < 0x80)
        return 1;
    return detail::MultiByteCharLength(text, length, pos);
}
inline std::size_t CharLengthAt(std::string_view text, std::size_t pos) {
    return CharLengthAt(text.data(), text.size(), pos);
}

// True when the system code page reads every byte below 0x80 as that ASCII character, so that
// ASCII text is its own wide form, byte for character.
bool SystemPageKeepsAscii();

// True when, more than that, a byte below 0x80 is never part of a longer character and a byte
// from 0x80 up never reads as an ASCII character (UTF-8 and the single-byte pages): questions
// about ASCII characters of a text can then be asked of its bytes, whatever else it holds.
bool SystemPageAsciiStandsAlone();

// Wide form of 8-bit text in the system code page. Bytes that do not form a character of the
// page become one code unit each in 0xDC80..0xDCFF, so FromWide(ToWide(x)) == x for any x,
// except where the page itself maps two byte pairs to one character (932 has such duplicates;
// the way back gives the pair the page prefers).
std::u16string ToWide(std::string_view text);
// The same into out (its content replaced, its storage reused), for callers that convert
// often. True when text is ASCII alone, which the page maps to itself: then the wide form
// has one code unit per byte, of the same value, and positions in it are byte positions.
bool ToWide(std::string_view text, std::u16string& out);
// 8-bit form of wide text. Code units 0xDC80..0xDCFF standing alone give back their byte;
// a character the page cannot hold becomes "?".
std::string FromWide(std::u16string_view wide);
// The same into out, its content replaced and its storage reused.
void FromWide(std::u16string_view wide, std::string& out);

// Compares two texts character by character in the system code page. Case-insensitive
// comparison folds each character to lower case first (ASCII everywhere, the Latin letters of
// 1252, the letters of Unicode in UTF-8; double-byte characters compare exactly).
int CompareExact(std::string_view a, std::string_view b);
int CompareNoCase(std::string_view a, std::string_view b);

// Upper and lower case of a whole text, character by character; a character whose other case
// would have a different byte length in UTF-8 is left as it is, so lengths never change.
void MakeUpperInPlace(std::string& text);
void MakeLowerInPlace(std::string& text);

// First byte offset of needle in haystack at a character boundary, or npos. Case-sensitive.
std::size_t FindText(std::string_view haystack, std::string_view needle, std::size_t from = 0);
// First byte offset of the single-byte character ch at a character boundary, or npos.
std::size_t FindChar(std::string_view haystack, char ch, std::size_t from = 0);

} // namespace talvor::platform
