// The shared character helpers: ASCII case and hexadecimal digits, and the two rules by which
// a character is found in a set.
#include "platform/codepage/char_set.h"
#include "platform/codepage/code_page.h"
#include "platform/codepage/mbs_functions.h"
#include "platform/core/ascii.h"
#include "platform/strings/cstring.h"

#include <gtest/gtest.h>
#include <string>

using namespace talvor::platform;

TEST(Ascii, CaseTouchesTheFiftyTwoLettersOnly) {
    int lowered = 0, raised = 0;
    for (int c = 0; c < 256; ++c) {
        auto byte = static_cast<unsigned char>(c);
        if (AsciiLower(byte) != byte) {
            ++lowered;
            EXPECT_EQ(AsciiUpper(AsciiLower(byte)), byte);
        }
        if (AsciiUpper(byte) != byte)
            ++raised;
        EXPECT_EQ(AsciiLowerTable[byte], AsciiLower(byte));
        EXPECT_EQ(AsciiLower(static_cast<char>(byte)), static_cast<char>(AsciiLower(byte)));
    }
    EXPECT_EQ(lowered, 26);
    EXPECT_EQ(raised, 26);
    // Letters of 1252 and of Unicode are the code page's business, not ASCII's.
    EXPECT_EQ(AsciiLower(static_cast<unsigned char>(0xC0)), 0xC0);
    EXPECT_EQ(AsciiUpper(static_cast<unsigned char>(0xE9)), 0xE9);
    EXPECT_EQ(AsciiLower(U'\u0130'), U'\u0130');
    EXPECT_EQ(AsciiLower(U'Q'), U'q');
}

TEST(Ascii, HexDigitsOfEveryCharacterWidth) {
    int digits = 0;
    for (int c = 0; c < 256; ++c)
        digits += HexDigitValue(static_cast<char>(c)) >= 0;
    EXPECT_EQ(digits, 22);
    for (unsigned v = 0; v < 16; ++v) {
        EXPECT_EQ(HexDigitValue(HexDigitChar(v)), static_cast<int>(v));
        EXPECT_EQ(HexDigitValue(HexDigitChar(v, false)), static_cast<int>(v));
        EXPECT_EQ(HexDigitValue(static_cast<char16_t>(HexDigitChar(v))), static_cast<int>(v));
    }
    EXPECT_EQ(HexDigitChar(0xAB), 'B'); // the low four bits only
    EXPECT_EQ(HexDigitChar(10, false), 'a');
    EXPECT_EQ(HexDigitValue(u'\uFF10'), -1); // a full-width digit is no hexadecimal digit
    EXPECT_EQ(HexDigitValue(static_cast<char16_t>(0x0141)), -1); // 'A' + 0x100
    EXPECT_EQ(HexDigitValue('g'), -1);
}

namespace {
struct SetCase {
    const char* what;
    unsigned codePage;
    std::string text, set;
    std::size_t wholeSpan, anywhereSpan; // leading run in set under each rule
};

const SetCase SetCases[] = {
    {"ascii", 1252, "abcx", "cba", 3, 3},
    {"double-byte character in the set", 936, "\x81\x40\x81\x40x", "\x81\x40", 4, 4},
    {"trail byte of the set's character", 936, "@@x", "\x81\x40", 0, 2},
    {"lead byte alone at the end of the text", 936, "a\x81", "a\x81", 2, 2},
    {"utf-8 character in the set", 65001, "\xC3\xA9\xC3\xA9!", "!\xC3\xA9", 5, 5},
    {"broken utf-8 byte in the text", 65001, "\xC3x", "\xC3\xA9", 0, 1},
    {"different character of the same length", 65001, "\xC3\xA8", "\xC3\xA9", 0, 0},
};
} // namespace

// The runtime library's _mbsspn takes whole characters of the set; the string class finds a
// one-byte character anywhere in the set. Both rules are kept, each for its own callers.
TEST(CharSet, EachRuleSpansAsItsCallersExpect) {
    unsigned before = SystemCodePage();
    for (const SetCase& c : SetCases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(SetSystemCodePage(c.codePage));
        EXPECT_EQ(SpanOfSet(c.text, c.set, true, SetMatch::WholeCharacters), c.wholeSpan);
        EXPECT_EQ(SpanOfSet(c.text, c.set, true, SetMatch::SingleBytesAnywhere), c.anywhereSpan);
        auto text = reinterpret_cast<const unsigned char*>(c.text.c_str());
        auto set = reinterpret_cast<const unsigned char*>(c.set.c_str());
        EXPECT_EQ(_mbsspn(text, set), c.wholeSpan);
        EXPECT_EQ(CString(c.text.c_str()).SpanIncluding(c.set.c_str()).GetLength(),
                  static_cast<int>(c.anywhereSpan));
    }
    ASSERT_TRUE(SetSystemCodePage(936));
    auto text = reinterpret_cast<const unsigned char*>("ab\x81\x40");
    EXPECT_EQ(_mbscspn(text, reinterpret_cast<const unsigned char*>("\x81\x40")), 2u);
    EXPECT_EQ(CString("ab@").FindOneOf("\x81\x40"), 2);
    EXPECT_EQ(SpanOfSet("abc", "", false, SetMatch::WholeCharacters), 3u);
    SetSystemCodePage(before);
}
