// Loading rule sets: built-in defaults, profile overrides with cleaning, blank values that
// switch rules off, slot counts, and what a reload leaves behind.
#include "tests/syntax/parser_harness.h"

#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

std::string Slot(const char* text) {
    return text == nullptr ? "(null)" : text;
}

CString Section(const char* language) {
    return RuleSection + CString(language);
}

TEST(ParseRules, DefaultsOfSomeLanguages) {
    ParserUnderTest syntax;
    syntax.SetLanguage(8);
    syntax.LoadParseRule();
    EXPECT_EQ(syntax.m_bEscape, 1);
    EXPECT_EQ(syntax.m_bCase, 1);
    EXPECT_EQ(syntax.m_strInString, "#");
    EXPECT_EQ(syntax.m_nInStringCount, 1);
    EXPECT_EQ(Slot(syntax.m_pszLineComment[0]), "//");
    EXPECT_EQ(Slot(syntax.m_pszLineComment[1]), "(null)");
    EXPECT_EQ(syntax.m_nLineCommentCount, 1);
    EXPECT_EQ(Slot(syntax.m_pszBeginCommentEx[0]), "/*");
    EXPECT_EQ(Slot(syntax.m_pszEndCommentEx[0]), "*/");
    EXPECT_EQ(Slot(syntax.m_pszBeginChar), "'");
    EXPECT_EQ(syntax.m_nBeginCharCount, 1);

    syntax.SetLanguage(13); // HLBL: two block comment pairs, strings and literals
    syntax.LoadParseRule();
    EXPECT_EQ(syntax.m_bEscape, 0);
    EXPECT_EQ(syntax.m_nLineCommentCount, 0);
    EXPECT_EQ(syntax.m_nBeginCommentExCount, 2);
    EXPECT_EQ(syntax.m_nEndCommentExCount, 2);
    EXPECT_EQ(Slot(syntax.m_pszBeginCommentEx[1]), "/*");
    EXPECT_EQ(Slot(syntax.m_pszBeginString), "[");
    EXPECT_EQ(Slot(syntax.m_pszEndChar), "$$");

    syntax.SetLanguage(28); // no table row, but rules
    syntax.LoadParseRule();
    EXPECT_EQ(syntax.m_strInString, "!?-");
    EXPECT_EQ(Slot(syntax.m_pszLineComment[0]), ";--");
    EXPECT_EQ(Slot(syntax.m_pszBeginChar), "<");

    syntax.SetLanguage(31);
    syntax.LoadParseRule();
    EXPECT_EQ(Slot(syntax.m_pszLineComment[0]), "!");
    EXPECT_EQ(Slot(syntax.m_pszBeginCommentEx[0]), "\"");
}

TEST(ParseRules, CodesAboveThirtyFourHaveNoRulesAndIgnoreTheProfile) {
    AfxGetApp()->WriteProfileString(Section("Plain text"), "LineCommentStr0", "#");
    AfxGetApp()->WriteProfileInt(Section("Plain text"), "g_bCase", 1);
    ParserUnderTest syntax;
    syntax.SetLanguage(8);
    syntax.LoadParseRule();
    for (UINT code : {35u, 36u, 1000u}) {
        syntax.SetLanguage(code);
        syntax.LoadParseRule();
        EXPECT_EQ(syntax.m_nLineCommentCount, 0) << code;
        EXPECT_EQ(syntax.m_pszLineComment[0], nullptr) << code;
        EXPECT_EQ(syntax.m_pszBeginCommentEx[0], nullptr) << code;
        EXPECT_EQ(syntax.m_bCase, 0) << code;
        EXPECT_EQ(syntax.m_bEscape, 0) << code;
        EXPECT_TRUE(syntax.m_strInString.IsEmpty()) << code;
    }
    // Code 28 has no row either, so its section carries the plain text name.
    syntax.SetLanguage(28);
    syntax.LoadParseRule();
    EXPECT_EQ(Slot(syntax.m_pszLineComment[0]), "#");
    EXPECT_EQ(syntax.m_bCase, 1);
}

TEST(ParseRules, ProfileOverridesAreCleanedAndBlankSwitchesOff) {
    CWinApp* app = AfxGetApp();
    app->WriteProfileString(Section("Basic"), "LineCommentStr0", " \t ");
    app->WriteProfileString(Section("Basic"), "LineCommentStr1", "\t REM \t");
    app->WriteProfileString(Section("Basic"), "strInString", "  &#$\t");
    app->WriteProfileString(Section("Basic"), "BeginCommentExStr1", " {{ ");
    app->WriteProfileString(Section("Basic"), "EndCommentExStr0", "}}");
    ParserUnderTest basic;
    basic.SetLanguage(3);
    basic.LoadParseRule();
    // Slot 0 stays null, yet the count says two slots are examined.
    EXPECT_EQ(basic.m_pszLineComment[0], nullptr);
    EXPECT_EQ(Slot(basic.m_pszLineComment[1]), "REM");
    EXPECT_EQ(basic.m_nLineCommentCount, 2);
    EXPECT_EQ(basic.m_strInString, "&#$");
    EXPECT_EQ(basic.m_nInStringCount, 3);
    EXPECT_EQ(basic.m_pszBeginCommentEx[0], nullptr);
    EXPECT_EQ(Slot(basic.m_pszBeginCommentEx[1]), "{{");
    EXPECT_EQ(basic.m_nBeginCommentExCount, 2);
    EXPECT_EQ(basic.m_nEndCommentExCount, 1);

    // The parser follows: "'" is no comment now, "REM" is, and "{{" opens what "}}" closes.
    basic.LoadSynWord();
    EXPECT_EQ(Parse(basic, 0, "x ' y").cookie, 0u);
    EXPECT_EQ(Parse(basic, 0, "x REM y").cookie, COOKIE_LINE_COMMENT);
    EXPECT_EQ(Parse(basic, 0, "a {{ b }} c").runs, "(0,2) (1,2) (2,0) (9,2)");
    EXPECT_EQ(Parse(basic, 0, "$12").runs, "(0,2)") << "$ is a word byte now";

    app->WriteProfileString(Section("Basic"), "strInString", " ");
    basic.LoadParseRule();
    EXPECT_TRUE(basic.m_strInString.IsEmpty());
    EXPECT_EQ(basic.m_nInStringCount, 0);
}

TEST(ParseRules, CaseFlagComesFromTheProfileEscapeDoesNot) {
    CWinApp* app = AfxGetApp();
    app->WriteProfileInt(Section("C++"), "g_bCase", 0);
    app->WriteProfileInt(Section("C++"), "m_bEscape", 0);
    app->WriteProfileInt(Section("Ada"), "g_bCase", 1);
    ParserUnderTest syntax;
    syntax.SetLanguage(8);
    syntax.LoadParseRule();
    EXPECT_EQ(syntax.m_bCase, 0);
    EXPECT_EQ(syntax.m_bEscape, 1);
    syntax.SetLanguage(0);
    syntax.LoadParseRule();
    EXPECT_EQ(syntax.m_bCase, 1);
    EXPECT_EQ(syntax.m_bEscape, 0);
}

TEST(ParseRules, ReloadReplacesEverythingAndSetLanguageReloadsNothing) {
    ParserUnderTest syntax;
    syntax.SetLanguage(13);
    syntax.LoadParseRule();
    syntax.SetLanguage(27);
    // The old rules stay in force until the next load.
    EXPECT_EQ(Slot(syntax.m_pszBeginCommentEx[0]), "{");
    syntax.LoadParseRule();
    syntax.LoadParseRule(); // twice: nothing of the first load may stay (the leak check sees it)
    EXPECT_EQ(syntax.m_pszBeginCommentEx[0], nullptr);
    EXPECT_EQ(syntax.m_pszBeginCommentEx[1], nullptr);
    EXPECT_EQ(syntax.m_pszBeginChar, nullptr);
    EXPECT_EQ(syntax.m_nBeginCommentExCount, 0);
    EXPECT_EQ(syntax.m_nBeginCharCount, 0);
    EXPECT_EQ(Slot(syntax.m_pszLineComment[0]), "#");
    EXPECT_EQ(Slot(syntax.m_pszBeginString), "\"");
}

TEST(ParseRules, DeleteAllocStringNullsSlotsAndKeepsCounts) {
    ParserUnderTest syntax;
    syntax.SetLanguage(21);
    syntax.LoadSynWord();
    syntax.DeleteAllocString();
    for (char* slot :
         {syntax.m_pszBeginCommentEx[0], syntax.m_pszBeginCommentEx[1], syntax.m_pszEndCommentEx[0],
          syntax.m_pszEndCommentEx[1], syntax.m_pszLineComment[0], syntax.m_pszLineComment[1],
          syntax.m_pszBeginString, syntax.m_pszEndString, syntax.m_pszBeginChar,
          syntax.m_pszEndChar})
        EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(syntax.m_nBeginCommentExCount, 2);
    EXPECT_EQ(syntax.m_strInString, "$");
    // Null slots never match, whatever the counts say.
    EXPECT_EQ(Parse(syntax, 0, "{ x // 'y'").runs, "(0,2) (3,2) (9,2)");
    syntax.DeleteAllocString(); // twice is harmless
}

TEST(ParseRules, CopiesOwnTheirRuleStrings) {
    ParserUnderTest original;
    original.SetLanguage(8);
    original.LoadSynWord();
    ParserUnderTest copy(original);
    EXPECT_NE(copy.m_pszBeginCommentEx[0], original.m_pszBeginCommentEx[0]);
    original.DeleteAllocString();
    EXPECT_EQ(Parse(copy, 0, "int /* c").cookie, COOKIE_BLOCK_COMMENT);
    ParserUnderTest assigned;
    assigned = copy;
    ParserUnderTest& same = assigned;
    assigned = same; // assignment to itself keeps the strings
    EXPECT_EQ(Parse(assigned, 0, "int // c").cookie, COOKIE_LINE_COMMENT);
}

TEST(ParseRules, HostChangesToRuleMembersTakeEffectAtOnce) {
    ParserUnderTest syntax;
    UseLanguage(syntax, 8, "int");
    EXPECT_EQ(Parse(syntax, 0, "a % b").cookie, 0u);
    delete[] syntax.m_pszLineComment[1];
    syntax.m_pszLineComment[1] = new char[2]{'%', '\0'};
    syntax.m_nLineCommentCount = 2;
    EXPECT_EQ(Parse(syntax, 0, "a % b").cookie, COOKIE_LINE_COMMENT);
    syntax.m_nLineCommentCount = 7; // clipped to the two slots that exist
    EXPECT_EQ(Parse(syntax, 0, "a % b").cookie, COOKIE_LINE_COMMENT);
    syntax.m_strInString = "%";
    EXPECT_EQ(Parse(syntax, 0, "a%b ").runs, "(0,2) (1,0)");
}

} // namespace
} // namespace talvor::testing
