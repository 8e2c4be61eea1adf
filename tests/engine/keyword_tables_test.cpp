// Keywords from the string resources, the command handler pieces built from them, and the
// reserved words from the profile.
#include "engine/script_text_disposal.h"
#include "platform/profile.h"
#include "platform/resource_module.h"
#include "resources/resource_guard.h"
#include "tests/engine/engine_test_support.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

constexpr const char* KeyWordsSection = "MainWnd\\DockingPaneLayouts\\PaneMacro\\Keywords";

// Puts a TalvorRes with the given strings in place for the life of the object.
class ReplacedResources {
public:
    explicit ReplacedResources(std::initializer_list<std::pair<UINT, const char*>> strings) {
        resources::RegisterTalvorRes();
        auto module = std::make_shared<platform::ResourceModule>(resources::ModuleName);
        for (const auto& [id, text] : strings)
            module->AddString(id, text);
        platform::RegisterResourceModule(module);
    }
    ~ReplacedResources() { platform::ResetResourceModule(resources::ModuleName); }
};

TEST(KeywordTables, MembersTakeTheLinesOfTheStringsInTheirRoles) {
    CTalvorScriptTextDisposal engine;
    const std::pair<const CString*, const char*> expected[] = {
        {&engine.m_strIf, "If"},
        {&engine.m_strThen, "Then"},
        {&engine.m_strElse, "Else"},
        {&engine.m_strEndIf, "End If"},
        {&engine.m_strDoWhile, "Do While"},
        {&engine.m_strLoop, "Loop"},
        {&engine.m_strFor, "For"},
        {&engine.m_strTo, "To"},
        {&engine.m_strNext, "Next"},
        {&engine.m_strLoopWhile, "Loop While"},
        {&engine.m_strDo, "Do"},
        {&engine.m_strExit, "Exit"},
        {&engine.m_strCall, "Call"},
        {&engine.m_strSet, "Set"},
        {&engine.m_strSelectCase, "Select Case"},
        {&engine.m_strCase, "Case"},
        {&engine.m_strCaseElse, "Case Else"},
        {&engine.m_strEndSelect, "End Select"},
        {&engine.m_strExitDo, "Do"},
        {&engine.m_strExitFor, "For"},
        {&engine.m_strExitSub, "Sub"},
        {&engine.m_strSystemFuncName, "Form"},
        {&engine.m_strSub, "Sub"},
        {&engine.m_strEndSub, "End Sub"},
        {&engine.m_strFunction, "Function"},
        {&engine.m_strEndFunction, "End Function"},
        {&engine.m_strDim, "Dim"},
        {&engine.m_strTrue, "True"},
        {&engine.m_strFalse, "False"},
    };
    for (const auto& [member, word] : expected)
        EXPECT_EQ(*member, word);
    // The length rules the declarations and the For title rely on.
    EXPECT_EQ(engine.m_strDim.GetLength(), 3);
    EXPECT_EQ(engine.m_strFor.GetLength(), 3);
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
    ReplacedResources resources(
        {{8514, "  If \nThen\n\nEnd If\nDo While"}, {8574, "Sub\nEnd Sub\r\nFunction"}});
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
    ReplacedResources resources({{8514, "Wenn\nDann"}});
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
