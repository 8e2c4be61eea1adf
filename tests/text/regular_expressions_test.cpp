// The facade as its callers use it: results, what each function leaves in its outputs on a
// miss and on a failure, the message box, and the counting of characters of the wide form.
#include "text/regular_expressions.h"

#include "platform/codepage/code_page.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using talvor::testing::ShownMessages;
using Matches = CArray<tagREGEXPINFO, tagREGEXPINFO>;

constexpr short On = -1;
constexpr short Off = 0;

// "index:length:value" of every match, space separated.
std::string Describe(const Matches& matches) {
    std::string text;
    for (const tagREGEXPINFO& match : matches) {
        if (!text.empty())
            text += ' ';
        text += std::to_string(match.nFirstIndex) + ":" + std::to_string(match.nLength) + ":" +
                match.strValue.GetString();
    }
    return text;
}

struct TestCase {
    const char* what;
    const char* pattern;
    const char* text;
    short global, ignoreCase;
    int expected;
};

// The fixed fragments of the script engine, with keywords and names as it combines them.
const TestCase EngineQuestions[] = {
    {"keyword between non-word characters", "[\\W]{1}If[\\W]{1}", " If a > b Then ", On, On, 1},
    {"keyword in any case", "[\\W]{1}If[\\W]{1}", " if a Then ", On, On, 1},
    {"keyword inside a word", "[\\W]{1}If[\\W]{1}", " Iffy = 1 ", On, On, 0},
    {"keyword followed by white space", "^\\s*End If\\s*$", "   End If  ", On, On, 1},
    {"start anchor only at the very start", "^\\s*Next", "a = 1\nNext", On, On, 0},
    {"end anchor only at the very end", "Loop\\s*$", "Loop\nx = 1", On, On, 0},
    {"white space then parenthesis", "MsgBox\\s*\\(", "MsgBox (\"a\")", On, On, 1},
    {"string literal", "\"[^\"]*\"", "x = \"Then\" & y", On, On, 1},
    {"word then parenthesis", "Call\\s+\\w+\\s*\\(", "Call  Foo (1, 2)", On, On, 1},
    {"legal name", "^[a-zA-Z]{1}[a-zA-Z0-9]*$", "Button1", On, On, 1},
    {"name with an underscore", "^[a-zA-Z]{1}[a-zA-Z0-9]*$", "Button_1", On, On, 0},
    {"name starting with a digit", "^[a-zA-Z]{1}[a-zA-Z0-9]*$", "1Button", On, On, 0},
    {"name and a point are different", "Text1[^\\w\\.]{1}\\s*", "Text1.Caption", On, On, 0},
    {"assignment", "Count\\s*=\\s*", "Count = 3", On, On, 1},
    {"string literals keep case when asked", "\"abc\"", "x = \"ABC\"", On, Off, 0},
    {"empty text, empty match", "^\\s*", "", On, On, 1},
    {"empty text, something required", "\\s+", "", On, On, 0},
    {"empty pattern", "", "abc", On, On, 1},
};

TEST(RegExpFacade, AnswersTheEngineQuestions) {
    for (const TestCase& c : EngineQuestions) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(TVPfxTestByRegExp(c.pattern, c.text, c.global, c.ignoreCase), c.expected);
    }
    EXPECT_TRUE(ShownMessages().empty());
}

TEST(RegExpFacade, GetInfoListsEveryMatchInTextOrder) {
    Matches matches;
    EXPECT_EQ(TVPfxGetInfoByRegExp("\\w+", "Dim a, bb , ccc", matches, On, On), 1);
    EXPECT_EQ(Describe(matches), "0:3:Dim 4:1:a 7:2:bb 12:3:ccc");

    EXPECT_EQ(TVPfxGetInfoByRegExp("\\w+", "Dim a, bb , ccc", matches, Off, On), 1);
    EXPECT_EQ(Describe(matches), "0:3:Dim");
}

TEST(RegExpFacade, GetInfoEmptiesTheArrayOnAMiss) {
    Matches matches;
    ASSERT_EQ(TVPfxGetInfoByRegExp("b", "abcb", matches, On, On), 1);
    ASSERT_EQ(matches.GetSize(), 2);
    EXPECT_EQ(TVPfxGetInfoByRegExp("z", "abcb", matches, On, On), 0);
    EXPECT_EQ(matches.GetSize(), 0);
}

TEST(RegExpFacade, GlobalSearchStepsPastEmptyMatches) {
    Matches matches;
    EXPECT_EQ(TVPfxGetInfoByRegExp("x*", "aXbX", matches, On, On), 1);
    EXPECT_EQ(Describe(matches), "0:0: 1:1:X 2:0: 3:1:X 4:0:");

    CString result;
    EXPECT_EQ(TVPfxReplaceByRegExp("x*", "aXbX", "-", result, On, On), 1);
    EXPECT_EQ(result, "-a--b--");
}

TEST(RegExpFacade, ReplaceChangesAllOrTheFirstAndKeepsResultOnAMiss) {
    CString result = "untouched";
    EXPECT_EQ(TVPfxReplaceByRegExp("\\s*,\\s*", "a , b,c", "", result, On, On), 1);
    EXPECT_EQ(result, "abc");
    EXPECT_EQ(TVPfxReplaceByRegExp("\\s*,\\s*", "a , b,c", "", result, Off, On), 1);
    EXPECT_EQ(result, "ab,c");

    result = "untouched";
    EXPECT_EQ(TVPfxReplaceByRegExp("z", "a , b,c", "", result, On, On), 0);
    EXPECT_EQ(result, "untouched");

    EXPECT_EQ(TVPfxReplaceByRegExp("abc", "abc", "", result, On, On), 1);
    EXPECT_EQ(result, "");
}

TEST(RegExpFacade, ABadPatternShowsOneMessageAndTheNextCallWorks) {
    CString result = "kept";
    Matches matches;
    EXPECT_EQ(TVPfxTestByRegExp("[\\W]{1}Foo(Bar[\\W]{1}", " Foo(Bar ", On, On), 0);
    ASSERT_EQ(ShownMessages().size(), 1u);
    EXPECT_EQ(ShownMessages()[0], "Expected ')' in regular expression");

    EXPECT_EQ(TVPfxReplaceByRegExp("a[b", "a[b", "", result, On, On), 0);
    EXPECT_EQ(result, "kept");
    EXPECT_EQ(TVPfxGetInfoByRegExp("*a", "a", matches, On, On), 0);
    EXPECT_EQ(matches.GetSize(), 0);
    ASSERT_EQ(ShownMessages().size(), 3u);
    EXPECT_EQ(ShownMessages()[1], "Expected ']' in regular expression");
    EXPECT_EQ(ShownMessages()[2], "Unexpected quantifier");

    EXPECT_EQ(TVPfxTestByRegExp("Foo", " Foo(Bar ", On, On), 1);
    EXPECT_EQ(ShownMessages().size(), 3u);
}

TEST(RegExpFacade, BacktrackingWithoutEndFailsWithAMessageInsteadOfHanging) {
    // A name with nested repeats, against a line that defeats them: exponential without the
    // engine's limit.
    const CString line = CString('x', 40) + "zy";
    CString result = "kept";
    EXPECT_EQ(TVPfxTestByRegExp("(x+x+)+y", line, On, On), 0);
    EXPECT_EQ(TVPfxReplaceByRegExp("(x+x+)+y", line, "", result, On, On), 0);
    EXPECT_EQ(result, "kept");
    ASSERT_EQ(ShownMessages().size(), 2u);
    EXPECT_EQ(ShownMessages()[0], "Out of stack space");
    EXPECT_EQ(TVPfxTestByRegExp("x+zy$", line, On, On), 1);
}

TEST(RegExpFacade, PositionsCountCharactersOfTheWideForm) {
    talvor::platform::SetSystemCodePage(talvor::platform::CodePageSimplifiedChinese);
    // "\xC4\xE3\xBA\xC3" is two double-byte characters in code page 936.
    Matches matches;
    EXPECT_EQ(TVPfxGetInfoByRegExp("\\w+", "\xC4\xE3\xBA\xC3 Name1 = \xC4\xE3", matches, On, On),
              1);
    EXPECT_EQ(Describe(matches), "3:5:Name1");
    EXPECT_EQ(TVPfxGetInfoByRegExp("\xBA\xC3.", "\xC4\xE3\xBA\xC3x", matches, On, On), 1);
    EXPECT_EQ(Describe(matches), "1:2:\xBA\xC3x");

    talvor::platform::SetSystemCodePage(talvor::platform::CodePageUtf8);
    // U+00E9 is two bytes and one character; U+1F600 is four bytes and two characters.
    EXPECT_EQ(TVPfxGetInfoByRegExp("b",
                                   "\xC3\xA9\xF0\x9F\x98\x80"
                                   "b",
                                   matches, On, On),
              1);
    EXPECT_EQ(Describe(matches), "3:1:b");
}

TEST(RegExpFacade, ReleaseThenCallBuildsANewEngine) {
    EXPECT_EQ(TVPfxTestByRegExp("a", "a", On, On), 1);
    TVPfxRegExpRelease();
    EXPECT_EQ(CTalvorRegExp::GetRegExp().Engine() != nullptr, true);
    TVPfxRegExpRelease();
    TVPfxRegExpRelease();
    EXPECT_EQ(TVPfxTestByRegExp("a", "a", On, On), 1);
    EXPECT_TRUE(ShownMessages().empty());
}

} // namespace
