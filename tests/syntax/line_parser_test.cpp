// The line parser: the documented run lists, the consequences of look-back matching, escapes,
// numbers, keywords, multi-byte characters and the run-list bound.
#include "tests/syntax/parser_harness.h"

#include "platform/codepage/code_page.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

struct LineCase {
    const char* what;
    unsigned long in;
    const char* line;
    const char* runs;
    unsigned long out;
};

void ExpectLines(ParserUnderTest& parser, const LineCase* cases, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const LineCase& c = cases[i];
        SCOPED_TRACE(c.what);
        ParsedLine parsed = Parse(parser, c.in, c.line);
        EXPECT_EQ(parsed.runs, c.runs);
        EXPECT_EQ(parsed.cookie, c.out);
    }
}

template <std::size_t N> void ExpectLines(ParserUnderTest& parser, const LineCase (&cases)[N]) {
    ExpectLines(parser, cases, N);
}

TEST(LineParser, DocumentedExamples) {
    ParserUnderTest basic;
    UseLanguage(basic, 3, "if,then");
    EXPECT_EQ(Parse(basic, 0, "If x = 10 Then y = \"a\" ' done").runs,
              "(0,2) (0,1) (2,2) (4,2) (7,3) (9,2) (10,1) (14,2) (16,2) (19,4) (22,2) (23,0)");
    EXPECT_EQ(Parse(basic, 0, "If x = 10 Then y = \"a\" ' done").cookie, COOKIE_LINE_COMMENT);

    ParserUnderTest cpp;
    UseLanguage(cpp, 8, "int");
    const LineCase cases[] = {
        {"opens", 0, "int a = 0; /* \"no", "(0,2) (0,1) (3,2) (5,2) (8,3) (9,2) (11,0)", 0x04},
        {"closes", 0x04, "x */ int", "(0,0) (4,2) (5,1)", 0},
    };
    ExpectLines(cpp, cases);
}

TEST(LineParser, EmptyLineKeepsCookieAndAddsNothing) {
    ParserUnderTest parser;
    UseLanguage(parser, 8);
    for (unsigned long cookie : {0ul, 0x02ul, 0x04ul, 0x10ul, 0x20ul, 0xF6ul}) {
        std::vector<COLORINFO> runs(1);
        int count = 0;
        CString empty;
        EXPECT_EQ(parser.ParseLine(cookie, empty, runs.data(), count), cookie);
        EXPECT_EQ(count, 0);
    }
}

TEST(LineParser, OpenersInsideWordsAndLookBack) {
    ParserUnderTest basic;
    UseLanguage(basic, 3, "print,rem");
    const LineCase basicCases[] = {
        // The quote does not close the word; "Print\"hi\"" is tried as a whole and fails.
        {"word running into a quote", 0, "Print\"hi\"", "(0,2) (5,4) (9,2)", 0},
        {"quote after a blank", 0, "Print \"hi\"", "(0,2) (0,1) (5,2) (6,4) (10,2)", 0},
        // Letters of a line comment opener match anywhere, also at a word's start.
        {"remark is a comment", 0, "remark = 1", "(0,2) (0,0)", 0x02},
        {"rem inside a word", 0, "x = theorem", "(0,2) (1,2) (8,0)", 0x02},
        {"upper-case REM is a keyword, no comment", 0, "REM not one", "(0,2) (0,1) (3,2) (7,2)", 0},
        {"string closer at the end", 0, "\"a\"", "(0,2) (0,4) (3,2)", 0},
        {"carried line comment", 0x02, "abc", "(0,0) (0,0)", 0x02},
        {"carried string", 0x10, "ab\" x", "(0,4) (3,2)", 0},
    };
    ExpectLines(basic, basicCases);

    ParserUnderTest cpp;
    UseLanguage(cpp, 8, "int");
    const LineCase cppCases[] = {
        // "*/" then "/" forms "//" with the closer's own slash: the comment's run is dropped,
        // the cookie still says line comment and the rest of the line is not read.
        {"slash behind a closed comment", 0x04, "*// int", "(0,0) (2,2)", 0x02},
        {"slash opener not closed by its own slash", 0, "/*/ x", "(0,2) (0,0)", 0x04},
        {"empty comment closes", 0, "/**/ x", "(0,2) (0,0) (4,2)", 0},
        {"carried character literal starts normal", 0x20, "a' int", "(0,2) (2,2) (3,1)", 0},
        {"escaped quote stays in the string", 0, "\"a\\\"b\" int", "(0,2) (0,4) (6,2) (7,1)", 0},
        {"escaped backslash ends the string", 0, "\"a\\\\\" int", "(0,2) (0,4) (5,2) (6,1)", 0},
        {"backslash first in a continuation is not seen", 0x10, "\\\"x", "(0,4) (2,2)", 0},
        {"escape spans a line of string", 0x10, "a\\\" still", "(0,4)", 0x10},
        {"word into a one-byte quote", 0, "int'c' x", "(0,2) (3,5) (6,2) (6,2)", 0},
    };
    ExpectLines(cpp, cppCases);
}

TEST(LineParser, BlockCommentsOfEitherOpenerCloseWithAnyCloser) {
    ParserUnderTest pascal;
    UseLanguage(pascal, 21, "begin");
    const LineCase cases[] = {
        {"brace closed by star-paren", 0, "{ a *) begin", "(0,2) (0,0) (6,2) (7,1)", 0},
        {"paren-star closed by brace", 0, "(* a } begin", "(0,2) (0,0) (6,2) (7,1)", 0},
        {"one-byte opener reads the next byte", 0, "{}begin", "(0,2) (0,0) (2,2) (2,1)", 0},
        {"string in single quotes", 0, "'it''s' x", "(0,2) (0,4) (4,2) (4,4) (7,2)", 0},
        {"character literal in brackets", 0, "[a] $FF", "(0,2) (0,5) (3,2) (4,3)", 0},
    };
    ExpectLines(pascal, cases);
}

TEST(LineParser, NumbersPerLanguage) {
    struct NumberCase {
        UINT language;
        const char* word;
        int number;
    };
    const NumberCase cases[] = {
        {3, "&HFF", 1}, {3, "&O17", 1},  {3, "&HFG", 0},   {3, "&hFF", 0},   {3, "&H", 0},
        {8, "0x1F", 1}, {8, "0X1F", 0},  {8, "0x", 0},     {9, "0x1F", 0},   {14, "#FF0000", 1},
        {14, "#F", 0},  {21, "$", 1},    {21, "$7fff", 1}, {21, "$G", 0},    {0, "1e5", 1},
        {0, "1e+5", 1}, {0, "12abc", 0}, {0, "abc12", 0},  {0, "1.5E-3", 1}, {35, "12", 0},
        {36, "12", 1},  {0, "", 0},      {0, "-1", 0},
    };
    ParserUnderTest parser;
    for (const NumberCase& c : cases) {
        SCOPED_TRACE(std::to_string(c.language) + " " + c.word);
        parser.SetLanguage(c.language);
        CString word(c.word);
        EXPECT_EQ(parser.IsNumber(word) != 0, c.number != 0);
    }

    // Without "+" among the word bytes, "1e+5" is the number "1e", a normal "+" and "5".
    ParserUnderTest ada;
    UseLanguage(ada, 0, "x");
    EXPECT_EQ(Parse(ada, 0, "1e+5").runs, "(0,2) (0,3) (2,2) (3,3)");
    ParserUnderTest basic;
    UseLanguage(basic, 3, "x");
    EXPECT_EQ(Parse(basic, 0, "a = &HFF").runs, "(0,2) (1,2) (4,3)");
    EXPECT_EQ(Parse(basic, 0, "a = &HFG").runs, "(0,2) (1,2)");
}

TEST(LineParser, KeywordCase) {
    ParserUnderTest basic;
    UseLanguage(basic, 3); // m_bCase 0: the list is lower-cased and the search ignores case
    for (const char* word : {"Dim", "DIM", "dim"}) {
        CString text(word);
        EXPECT_TRUE(basic.IsSynWord(text)) << word;
    }
    CString alias("Alias"); // stored with the list's leading blank: never a word
    EXPECT_FALSE(basic.IsSynWord(alias));
    CString andWord("And");
    EXPECT_TRUE(basic.IsSynWord(andWord));

    ParserUnderTest cpp;
    UseLanguage(cpp, 8); // m_bCase 1
    CString lower("while"), upper("WHILE"), directive("#include");
    EXPECT_TRUE(cpp.IsSynWord(lower));
    EXPECT_FALSE(cpp.IsSynWord(upper));
    EXPECT_TRUE(cpp.IsSynWord(directive));
    EXPECT_EQ(Parse(cpp, 0, "#include x").runs, "(0,2) (0,1) (8,2)");

    AfxGetApp()->WriteProfileInt(RuleSection + CString("Basic"), "g_bCase", 1);
    UseLanguage(basic, 3);
    CString dim("Dim"), dimLower("dim");
    EXPECT_TRUE(basic.IsSynWord(dim));
    EXPECT_FALSE(basic.IsSynWord(dimLower));
    EXPECT_EQ(basic.m_bEscape, 0);
}

TEST(LineParser, NoRulesGivesOnlyNormalRuns) {
    ParserUnderTest plain;
    UseLanguage(plain, 35);
    ParsedLine parsed = Parse(plain, 0, "if x = 10 ' \"s\" /* c");
    EXPECT_EQ(parsed.cookie, 0u);
    for (std::size_t at = parsed.runs.find(','); at != std::string::npos;
         at = parsed.runs.find(',', at + 1))
        EXPECT_EQ(parsed.runs[at + 1], '2') << parsed.runs;
}

TEST(LineParser, DoubleByteCharactersAreSteppedOverWhole) {
    platform::SetSystemCodePage(platform::CodePageSimplifiedChinese);
    ParserUnderTest cpp;
    UseLanguage(cpp, 8, "int");
    const LineCase cases[] = {
        // 0xB0 0xA1 is one character; the quote behind it is seen.
        {"quote behind a character", 0, "\xB0\xA1\"s\"", "(0,2) (2,4) (5,2)", 0},
        // 0x5C as a trail byte is no backslash: the quote behind it closes the string.
        {"trail byte backslash", 0, "\"\x81\\\" int", "(0,2) (0,4) (4,2) (5,1)", 0},
        // A trail byte "/" never starts "/*".
        {"trail byte slash", 0, "\x81/* int", "(0,2) (4,1)", 0},
        {"word takes the character in", 0, "int\xB0\xA1 x", "(0,2) (5,2)", 0},
        {"lone lead byte at the end", 0, "a\x81", "(0,2)", 0},
    };
    ExpectLines(cpp, cases);
}

TEST(LineParser, Utf8CharactersNeverStartOrEndAMatch) {
    platform::SetSystemCodePage(platform::CodePageUtf8);
    ParserUnderTest basic;
    UseLanguage(basic, 3, "dim");
    const LineCase cases[] = {
        {"quote behind an accented letter", 0, "\xC3\xA9\"s\"", "(0,2) (2,4) (5,2)", 0},
        {"word takes the letter in", 0, "Dim\xC3\xA9 x", "(0,2) (5,2)", 0},
        {"letter inside a string", 0, "\"\xE2\x82\xAC\" Dim", "(0,2) (0,4) (5,2) (6,1)", 0},
        // A broken sequence is single bytes: 0xC3 before an ASCII byte stands alone.
        {"broken sequence", 0, "\xC3\"s\"", "(0,2) (1,4) (4,2)", 0},
        {"stray continuation byte", 0, "\x80 Dim", "(0,2) (2,1)", 0},
    };
    ExpectLines(basic, cases);

    // A profile rule made of a multi-byte character is never matched from inside another one.
    AfxGetApp()->WriteProfileString(RuleSection + CString("Basic"), "LineCommentStr0", "\xC2\xA7");
    UseLanguage(basic, 3, "dim");
    EXPECT_EQ(Parse(basic, 0, "Dim \xC2\xA7 x").cookie, 0u); // whole characters are skipped
}

TEST(LineParser, RunBoundHoldsOnAdversarialLines) {
    // Lines that close and open constructs on every byte; Parse checks count <= length + 1
    // with a buffer of exactly that size.
    ParserUnderTest cpp;
    UseLanguage(cpp, 8, "a");
    for (const char* line : {"a a a a a ", "\"\"\"\"\"\"", "''''''", "/**//**//**/", "a\"a\"a'a'",
                             "/*/*/*", "a/a/a/", "0x 0x 1e 1e"}) {
        SCOPED_TRACE(line);
        for (unsigned long cookie : {0ul, 0x04ul, 0x10ul, 0x20ul}) {
            ParsedLine parsed = Parse(cpp, cookie, line);
            EXPECT_LE(parsed.count, static_cast<int>(std::string(line).size()) + 1);
        }
    }
}

TEST(LineParser, CallerRunsAndNegativeCountAreRespected) {
    ParserUnderTest cpp;
    UseLanguage(cpp, 8, "int");
    CString line("int x");
    std::vector<COLORINFO> runs(8, COLORINFO{-7, -7});
    runs[0] = {9, 1}; // a run the caller keeps: later starts before it are dropped
    int count = 1;
    cpp.ParseLine(0, line, runs.data(), count);
    EXPECT_EQ(FormatRuns(runs.data(), count), "(9,1)");

    int negative = -1;
    EXPECT_EQ(cpp.ParseLine(0x04, line, runs.data(), negative), 0x04u);
    EXPECT_EQ(negative, -1);
    EXPECT_EQ(runs[1].m_nCharPos, -7) << "nothing written without a valid count";
}

TEST(LineCookie, OnlyBlockCommentsCrossHardLineEnds) {
    using syntax::CookieForNextLine;
    EXPECT_EQ(CookieForNextLine(8, 0x16, true), 0x04u);
    EXPECT_EQ(CookieForNextLine(8, 0x12, true), 0u);
    EXPECT_EQ(CookieForNextLine(8, 0x12, false), 0x12u);
    EXPECT_EQ(CookieForNextLine(14, 0xD4, true), 0xD4u);
    EXPECT_EQ(CookieForNextLine(34, 0x90, true), 0x90u);
}

} // namespace
} // namespace talvor::testing
