// The language table and the object's starting state: rows and codes, names both ways, the
// comment string of the text commands.
#include "tests/syntax/parser_harness.h"

#include "syntax/languages.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace talvor::testing {
namespace {

TEST(LanguageTable, HasARowPerCodeButTwentyEightAndThirtyOne) {
    ASSERT_EQ(std::size(g_LanguageTable), 33u);
    std::set<UINT> codes;
    UINT previous = 0;
    for (std::size_t i = 0; i < std::size(g_LanguageTable); ++i) {
        const LANGUAGE_INFO& row = g_LanguageTable[i];
        SCOPED_TRACE(row.m_pszName);
        if (i > 0) {
            EXPECT_GT(row.m_nLanguage, previous) << "rows are in code order";
        }
        previous = row.m_nLanguage;
        codes.insert(row.m_nLanguage);
        ASSERT_NE(row.m_pszName, nullptr);
        ASSERT_NE(row.m_pszComment, nullptr);
        ASSERT_NE(row.m_pszKeyWords, nullptr);
    }
    for (UINT code = 0; code <= 35; ++code)
        EXPECT_EQ(codes.count(code), (code == 28 || code == 31 || code == 35) ? 0u : 1u) << code;
    // The row index differs from the code from code 29 on.
    EXPECT_EQ(g_LanguageTable[28].m_nLanguage, 29u);
    EXPECT_STREQ(g_LanguageTable[28].m_pszName, "REXX");
    EXPECT_STREQ(g_LanguageTable[32].m_pszName, "XML");
}

TEST(LanguageTable, NamesAndCodesBothWays) {
    ParserUnderTest syntax;
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        SCOPED_TRACE(row.m_pszName);
        EXPECT_EQ(syntax.GetLanguageByStringShow(row.m_pszName), static_cast<int>(row.m_nLanguage));
        EXPECT_EQ(syntax.GetLanguageName(row.m_nLanguage), row.m_pszName);
        syntax.SetLanguage(row.m_nLanguage);
        EXPECT_EQ(syntax.GetStringShowByLanguage(), row.m_pszName);
    }
    EXPECT_EQ(syntax.GetLanguageByStringShow("basic"), 35); // exact, case included
    EXPECT_EQ(syntax.GetLanguageByStringShow("Basic"), 3);
    EXPECT_EQ(syntax.GetLanguageByStringShow("Object Pascal"), 21);
    EXPECT_EQ(syntax.GetLanguageByStringShow("C++ "), 35);
    EXPECT_EQ(syntax.GetLanguageByStringShow(""), 35);
    EXPECT_EQ(syntax.GetLanguageByStringShow("Plain text"), 35);
    for (UINT code : {28u, 31u, 35u, 36u, 0xFFFFFFFFu}) {
        syntax.SetLanguage(code);
        EXPECT_EQ(syntax.GetStringShowByLanguage(), "Plain text") << code;
        EXPECT_EQ(syntax.GetLanguageName(code), "Plain text") << code;
    }
    EXPECT_EQ(syntax.GetLanguageName(29), "REXX");
    EXPECT_EQ(syntax.GetLanguageName(34), "XML");
}

TEST(LanguageTable, ConstructionGivesTheDefaultsAndNoRules) {
    ParserUnderTest syntax;
    EXPECT_EQ(syntax.GetLanguage(), 3u);
    const COLORREF colours[] = {syntax.m_clrBkColor,
                                syntax.m_clrCommentColor,
                                syntax.m_clrSyntaxColor,
                                syntax.m_clrNormalColor,
                                syntax.m_clrStringColor,
                                syntax.m_clrCharColor,
                                syntax.m_clrNumberColor,
                                syntax.m_clrUnderLine,
                                syntax.m_clrBkCurLine,
                                syntax.m_clrLineEnd,
                                syntax.m_clrLinNumberBkColor,
                                syntax.m_clrLinNumberNormal,
                                syntax.m_clrCurLinNumber,
                                syntax.m_clrLinNumberSep,
                                syntax.m_clrCross,
                                syntax.m_clrBKSelText,
                                syntax.m_clrTab};
    const COLORREF expected[] = {0xFFFFFF, 0x008000, 0xFF0000, 0x000000, 0x000080, 0x000080,
                                 0x0000FF, 0xC8C8C8, 0xC8C8C8, 0xC80000, 0xFFFFFF, 0xC0C0C0,
                                 0x800000, 0xC0C0C0, 0x800000, 0x800000, 0x808080};
    for (std::size_t i = 0; i < std::size(colours); ++i)
        EXPECT_EQ(colours[i], expected[i]) << "colour " << i;
    EXPECT_EQ(syntax.m_pszLineComment[0], nullptr);
    EXPECT_EQ(syntax.m_nLineCommentCount, 0);
    EXPECT_TRUE(syntax.m_arrKeyWords.IsEmpty());
    EXPECT_TRUE(syntax.m_strInString.IsEmpty());
    // Before any rule is loaded a line is plain text.
    EXPECT_EQ(Parse(syntax, 0, "' not yet a comment").cookie, 0u);
}

TEST(LanguageTable, CommentStringComesFromTableAndShortSection) {
    ParserUnderTest syntax;
    const struct {
        UINT code;
        const char* comment;
    } defaults[] = {{0, "--"}, {3, "'"}, {4, "rem"}, {6, "&&"}, {7, "*>"}, {8, "//"},
                    {12, "!"}, {13, ""}, {14, ""},   {20, ""},  {25, ""},  {26, ""},
                    {29, ""},  {34, ""}, {28, ""},   {35, ""}};
    for (const auto& c : defaults) {
        syntax.SetLanguage(c.code);
        EXPECT_EQ(syntax.GetLineCommentString(), c.comment) << c.code;
    }

    CWinApp* app = AfxGetApp();
    // The long section of the rules plays no part here.
    app->WriteProfileString(RuleSection + CString("Basic"), "LineCommentStr0", "REM");
    syntax.SetLanguage(3);
    EXPECT_EQ(syntax.GetLineCommentString(), "'");

    app->WriteProfileString("icrEdit__ParseRuleBasic", "LineCommentStr0", " \t REM\t ");
    EXPECT_EQ(syntax.GetLineCommentString(), "REM");
    app->WriteProfileString("icrEdit__ParseRuleBasic", "LineCommentStr0", " \t ");
    EXPECT_EQ(syntax.GetLineCommentString(), "");
    app->WriteProfileString("icrEdit__ParseRuleBasic", "LineCommentStr1", "\tRem ");
    EXPECT_EQ(syntax.GetLineCommentString(), "Rem");

    app->WriteProfileString("icrEdit__ParseRuleREXX", "LineCommentStr0", "--");
    syntax.SetLanguage(29);
    EXPECT_EQ(syntax.GetLineCommentString(), "--");
}

TEST(LanguageTable, FileNamesAndNamesFindTheirLanguage) {
    using syntax::LanguageForFileName;
    EXPECT_EQ(LanguageForFileName("a/b/script.vbs"), 3u);
    EXPECT_EQ(LanguageForFileName("MAIN.CPP"), 8u); // case is ignored
    EXPECT_EQ(LanguageForFileName("page.Html"), 14u);
    EXPECT_EQ(LanguageForFileName("pom.pom"), 34u);
    EXPECT_EQ(LanguageForFileName("unit.pas"), 21u);
    EXPECT_EQ(LanguageForFileName("notes.txt"), 35u);
    EXPECT_EQ(LanguageForFileName("Makefile"), 35u);
    EXPECT_EQ(LanguageForFileName(".cpp"), 35u); // a hidden file, not an extension
    EXPECT_EQ(LanguageForFileName("dir.cpp/file"), 35u);
    EXPECT_EQ(LanguageForFileName("file.cp"), 35u); // no prefix of an extension
    EXPECT_EQ(LanguageForFileName("file."), 35u);

    EXPECT_EQ(syntax::LanguageByName("Object Pascal"), 21);
    EXPECT_EQ(syntax::LanguageByName("Plain text"), 35);
    EXPECT_EQ(syntax::LanguageByName("object pascal"), -1);
    EXPECT_EQ(syntax::LanguageByName(""), -1);
    // Every named language is found by its own name.
    for (const LANGUAGE_INFO& row : g_LanguageTable)
        EXPECT_EQ(syntax::LanguageByName(row.m_pszName), static_cast<int>(row.m_nLanguage));
}

TEST(LanguageTable, TagParserLanguages) {
    for (UINT code = 0; code <= 40; ++code)
        EXPECT_EQ(syntax::UsesTagParser(code), code == 14 || code == 34) << code;
}

} // namespace
} // namespace talvor::testing
