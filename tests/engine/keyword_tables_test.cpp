// Keywords from the string resources, the command handler pieces built from them, and the
// reserved words from the profile.
#include "engine/script_text_disposal.h"
#include "platform/app/profile.h"
#include "platform/app/profile_sections.h"
#include "resources/talvor_res_ids.h"
#include "tests/engine/engine_test_support.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

constexpr const char* KeyWordsSection = talvor::platform::KeywordsSection;

TEST(KeywordTables, MembersTakeTheLinesOfTheStringsInTheirRoles) {
    CTalvorScriptTextDisposal engine;
    CStringArray members;
    for (const CString* member : {&engine.m_strIf,         &engine.m_strThen,
                                  &engine.m_strElse,       &engine.m_strEndIf,
                                  &engine.m_strDoWhile,    &engine.m_strLoop,
                                  &engine.m_strFor,        &engine.m_strTo,
                                  &engine.m_strNext,       &engine.m_strLoopWhile,
                                  &engine.m_strDo,         &engine.m_strExit,
                                  &engine.m_strCall,       &engine.m_strSet,
                                  &engine.m_strSelectCase, &engine.m_strCase,
                                  &engine.m_strCaseElse,   &engine.m_strEndSelect,
                                  &engine.m_strExitDo,     &engine.m_strExitFor,
                                  &engine.m_strExitSub,    &engine.m_strSystemFuncName,
                                  &engine.m_strSub,        &engine.m_strEndSub,
                                  &engine.m_strFunction,   &engine.m_strEndFunction,
                                  &engine.m_strDim,        &engine.m_strTrue,
                                  &engine.m_strFalse})
        members.Add(*member);
    EXPECT_EQ(Join(members), "If|Then|Else|End If|Do While|Loop|For|To|Next|Loop While|Do|Exit|"
                             "Call|Set|Select Case|Case|Case Else|End Select|Do|For|Sub|Form|"
                             "Sub|End Sub|Function|End Function|Dim|True|False");
}

TEST(KeywordTables, CommandHandlerPiecesArePutTogetherFromTheKeywords) {
    CTalvorScriptTextDisposal engine;
    EXPECT_EQ(engine.m_strCmdFuncHead, "Function ScriptCmdMsg(nID, bCommand)\r\n");
    EXPECT_EQ(engine.m_strCmdIf, "If bCommand Then\r\n");
    EXPECT_EQ(engine.m_strCmdSelectHead, "ScriptCmdMsg = 1\r\nSelect Case nID\r\n");
    EXPECT_EQ(engine.m_strCmdSelectTail, "Case Else ScriptCmdMsg = 0\r\nEnd Select\r\n");
    EXPECT_EQ(engine.m_strUISelectHead, "Dim SystemUIEnable, SystemUICheck\r\n"
                                        "SystemUIEnable = 0\r\n"
                                        "SystemUICheck = 0\r\n"
                                        "Select Case nID\r\n");
    EXPECT_EQ(engine.m_strUISelectTail, "Case Else\r\n"
                                        "ScriptCmdMsg = -1\r\n"
                                        "Exit Function\r\n"
                                        "End Select\r\n"
                                        "If SystemUIEnable <> 0 Then\r\n"
                                        "SystemUIEnable = 1\r\n"
                                        "End If\r\n"
                                        "If SystemUICheck <> 0 Then\r\n"
                                        "SystemUICheck = 1\r\n"
                                        "End If\r\n"
                                        "ScriptCmdMsg = SystemUICheck * 2 + SystemUIEnable\r\n");
}

TEST(KeywordTables, DefaultReservedWordsAre109WithTheLeadingBlankKept) {
    CTalvorScriptTextDisposal engine;
    ASSERT_EQ(engine.m_arrKeyWords.GetSize(), 109);
    EXPECT_EQ(engine.m_arrKeyWords[0], " Alias");
    EXPECT_EQ(engine.m_arrKeyWords[1], "And");
    EXPECT_EQ(engine.m_arrKeyWords[108], "#else");
    for (const CString& word : engine.m_arrKeyWords)
        EXPECT_FALSE(word.IsEmpty());
}

TEST(KeywordTables, ReservedWordsComeFromTheProfile) {
    struct Case {
        const char* what;
        const char* value;
        const char* words;
    };
    const Case cases[] = {
        {"double commas give no empty word", "Alpha,,Beta,", "Alpha|Beta"},
        {"pieces are not trimmed", " a , b", " a | b"},
        {"an empty value gives no word", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        AfxGetApp()->WriteProfileString(KeyWordsSection, "_BASIC", c.value);
        CTalvorScriptTextDisposal engine;
        EXPECT_EQ(Join(engine.m_arrKeyWords), c.words);
    }
}

TEST(KeywordTables, LinesAreTrimmedOfBlanksAndAnEmptyLineEndsTheList) {
    ReplacedResources resources({{IDS_FLOW_KEYWORDS, "  If \nThen\n\nEnd If\nDo While"},
                                 {IDS_PROCEDURE_KEYWORDS, "Sub\nEnd Sub\r\nFunction"}});
    CTalvorScriptTextDisposal engine;
    EXPECT_EQ(engine.m_strIf, "If");
    EXPECT_EQ(engine.m_strThen, "Then");
    EXPECT_TRUE(engine.m_strElse.IsEmpty());
    EXPECT_TRUE(engine.m_strEndIf.IsEmpty());
    EXPECT_TRUE(engine.m_strDoWhile.IsEmpty());
    // Only blanks are trimmed: a carriage return stays part of the word.
    EXPECT_EQ(engine.m_strEndSub, "End Sub\r");
    EXPECT_EQ(engine.m_strFunction, "Function");
    EXPECT_TRUE(engine.m_strDim.IsEmpty());
}

TEST(KeywordTables, MissingStringsLeaveTheirMembersEmpty) {
    ReplacedResources resources({});
    CTalvorScriptTextDisposal engine;
    EXPECT_TRUE(engine.m_strIf.IsEmpty());
    EXPECT_TRUE(engine.m_strExitSub.IsEmpty());
    EXPECT_TRUE(engine.m_strSystemFuncName.IsEmpty());
    EXPECT_TRUE(engine.m_strSub.IsEmpty());
    EXPECT_EQ(engine.m_strTrue, "True");
    EXPECT_EQ(engine.m_strCmdIf, " bCommand \r\n");
    EXPECT_EQ(engine.m_arrKeyWords.GetSize(), 109); // the profile is read all the same
}

TEST(KeywordTables, TheProcessEngineReadsItsKeywordsOnce) {
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    const INT_PTR words = engine.m_arrKeyWords.GetSize();
    AfxGetApp()->WriteProfileString(KeyWordsSection, "_BASIC", "Only");
    ReplacedResources resources({{IDS_FLOW_KEYWORDS, "Wenn\nDann"}});
    CTalvorScriptTextDisposal& again = CTalvorScriptTextDisposal::GetDisposal();
    EXPECT_EQ(&again, &engine);
    EXPECT_EQ(again.m_strIf, "If");
    EXPECT_EQ(again.m_arrKeyWords.GetSize(), words);
}

TEST(KeywordTables, ASecondInitKeyWordsAppendsTheReservedWordsAgain) {
    CTalvorScriptTextDisposal engine;
    engine.InitKeyWords();
    EXPECT_EQ(engine.m_arrKeyWords.GetSize(), 218);
    EXPECT_EQ(engine.m_strIf, "If");
}

} // namespace
} // namespace talvor::engine::testing
