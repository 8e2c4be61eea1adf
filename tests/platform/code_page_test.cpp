// Character stepping, case mapping and wide conversion in the code pages the library supports.
#include "platform/codepage/code_page.h"
#include "platform/codepage/mbs_functions.h"
#include "platform/strings/cstring.h"

#include <gtest/gtest.h>
#include <random>

using namespace talvor::platform;

namespace {
struct LengthCase {
    const char* what;
    unsigned codePage;
    std::string text;
    std::size_t pos;
    std::size_t length;
};

const LengthCase CharLengths[] = {
    {"ascii", 936, "a[", 0, 1},
    {"lead swallows a bracket", 936, "\x81[", 0, 2},
    {"lead swallows a backslash", 936, "\x81\\", 0, 2},
    {"lead swallows a quote", 936, "\x81\"", 0, 2},
    {"lead at the end stands alone", 936, "a\x81", 1, 1},
    {"trail byte inside 1252 is a character", 1252, "\x81[", 0, 1},
    {"utf-8 two bytes", 65001, "\xC3\xA9x", 0, 2},
    {"utf-8 three bytes", 65001, "\xE4\xB8\xAD", 0, 3},
    {"utf-8 four bytes", 65001, "\xF0\x9F\x98\x80", 0, 4},
    {"utf-8 lone continuation", 65001,
     "\x80"
     "a",
     0, 1},
    {"utf-8 overlong form", 65001, "\xC0\x80", 0, 1},
    {"utf-8 encoded surrogate", 65001, "\xED\xA0\x80", 0, 1},
    {"utf-8 cut off sequence", 65001, "\xE4\xB8", 0, 1},
    {"utf-8 above the last code point", 65001, "\xF4\x90\x80\x80", 0, 1},
    {"past the end", 65001, "a", 1, 0},
};
} // namespace

TEST(CodePage, CharLengthAtStepsWholeCharacters) {
    for (const LengthCase& c : CharLengths) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(SetSystemCodePage(c.codePage));
        EXPECT_EQ(CharLengthAt(c.text, c.pos), c.length);
    }
}

TEST(CodePage, UnknownPageIsRefusedAndTheOldOneStays) {
    ASSERT_TRUE(SetSystemCodePage(936));
    EXPECT_FALSE(SetSystemCodePage(12345));
    EXPECT_EQ(SystemCodePage(), 936u);
    EXPECT_TRUE(IsLeadByte(0x81));
    EXPECT_FALSE(IsLeadByte('a'));
}

TEST(CodePage, SearchesNeverMatchATrailByte) {
    SetSystemCodePage(936);
    CString text("\x81[x[");
    EXPECT_EQ(text.Find('['), 3);
    EXPECT_EQ(text.Find("["), 3);
    EXPECT_EQ(text.ReverseFind('['), 3);
    const auto* raw = reinterpret_cast<const unsigned char*>("\x81\\a\\");
    EXPECT_EQ(_mbschr(raw, '\\'), raw + 3);
    CString quoted("\x81\"");
    EXPECT_EQ(quoted.Find('"'), -1);
    EXPECT_EQ(quoted.Replace("\"", "'"), 0);

    SetSystemCodePage(1252); // the same bytes are two characters in a single-byte page
    EXPECT_EQ(text.Find('['), 1);
}

TEST(CodePage, TrimDoesNotCutADoubleByteCharacter) {
    SetSystemCodePage(936);
    CString text(" ab\x81 "); // 0x81 0x20 is one character whose trail byte is a blank
    text.TrimRight();
    EXPECT_EQ(text, " ab\x81 ");
    text.TrimLeft(' ');
    EXPECT_EQ(text, "ab\x81 ");
    CString tail("x\x81\x5C\x5C");
    tail.TrimRight('\\');
    EXPECT_EQ(tail, "x\x81\x5C");
}

TEST(CodePage, WideFormCountsCharactersAsTheOriginal) {
    SetSystemCodePage(936);
    EXPECT_EQ(ToWide("\xD6\xD0\xCE\xC4"), u"\u4E2D\u6587");
    EXPECT_EQ(FromWide(u"\u4E2D\u6587"), "\xD6\xD0\xCE\xC4");
    SetSystemCodePage(65001);
    EXPECT_EQ(ToWide("a\xF0\x9F\x98\x80").size(), 3u); // a character outside the BMP counts two
    EXPECT_EQ(ToWide("\xE4\xB8\xAD").size(), 1u);
    SetSystemCodePage(1252);
    EXPECT_EQ(ToWide("\x80\x9F"), u"\u20AC\u0178");
    EXPECT_EQ(FromWide(u"\u20AC"), "\x80");
    EXPECT_EQ(FromWide(u"\u4E2D"), "?");
}

TEST(CodePage, WideConversionLosesNoByte) {
    std::mt19937 random(20261123);
    for (unsigned page : {1252u, 936u, 65001u, 949u, 1251u}) {
        SCOPED_TRACE(page);
        ASSERT_TRUE(SetSystemCodePage(page));
        for (int round = 0; round < 300; ++round) {
            std::string bytes(random() % 24, '\0');
            for (char& b : bytes)
                b = static_cast<char>(random() % 256);
            ASSERT_EQ(FromWide(ToWide(bytes)), bytes);
        }
    }
}

TEST(CodePage, CaseMappingFollowsThePage) {
    SetSystemCodePage(1252);
    CString latin("\xE9t\xE9 and \x9A");
    latin.MakeUpper();
    EXPECT_EQ(latin, "\xC9T\xC9 AND \x8A");
    EXPECT_EQ(_mbsicmp(reinterpret_cast<const unsigned char*>("\xC9t\xC9"),
                       reinterpret_cast<const unsigned char*>("\xE9T\xE9")),
              0);

    SetSystemCodePage(65001);
    CString word("stra\xC3\x9F"
                 "e \xC3\xA9\xE4\xB8\xAD");
    word.MakeUpper();
    EXPECT_EQ(word, "STRA\xC3\x9F"
                    "E \xC3\x89\xE4\xB8\xAD"); // sharp s has no one-character upper case

    SetSystemCodePage(936);
    CString mixed("ab\x81"
                  "a"); // the trail byte 'a' is not a letter of its own
    mixed.MakeUpper();
    EXPECT_EQ(mixed, "AB\x81"
                     "a");
}

TEST(CodePage, CaseInsensitiveOrderAgreesWithLowerCaseOrder) {
    // Sorted lower-case lists are searched with the case-insensitive comparison; both orders
    // must agree on every pair.
    std::mt19937 random(7);
    const char alphabet[] = "aAbB_zZ\xC3\xA9\xC3\x89\x81\x40[";
    for (unsigned page : {1252u, 936u, 65001u}) {
        SetSystemCodePage(page);
        for (int round = 0; round < 2000; ++round) {
            std::string a, b;
            for (int k = random() % 6; k > 0; --k)
                a.push_back(alphabet[random() % (sizeof alphabet - 1)]);
            for (int k = random() % 6; k > 0; --k)
                b.push_back(alphabet[random() % (sizeof alphabet - 1)]);
            std::string lowerA = a, lowerB = b;
            MakeLowerInPlace(lowerA);
            MakeLowerInPlace(lowerB);
            int exact = CompareExact(lowerA, lowerB);
            int folded = CompareNoCase(a, b);
            ASSERT_EQ(exact < 0, folded < 0) << page << " '" << a << "' '" << b << "'";
            ASSERT_EQ(exact == 0, folded == 0) << page << " '" << a << "' '" << b << "'";
        }
    }
}
