// The command handler ScriptCmdMsg and its UI part: the fixed text, reading it back, keeping
// the UI entries in step with the commands, and renumbering ids in a whole script.
#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

CArray<long, long> Ids(std::initializer_list<long> values) {
    CArray<long, long> ids;
    for (long value : values)
        ids.Add(value);
    return ids;
}

VB_COMMADN_PROGRAMME_INFO CommandRecord(std::initializer_list<long> ids,
                                        std::initializer_list<const char*> codes,
                                        const char* variable = "") {
    VB_COMMADN_PROGRAMME_INFO info;
    info.strVariable = variable;
    info.arrCommandID = Ids(ids);
    info.arrCommandCode = Lines(codes);
    return info;
}

struct UiEntries {
    CArray<long, long> ids;
    CStringArray enables;
    CStringArray checks;
};

// The UI entries of a whole handler text, read the way SetCommandFunc reads them.
UiEntries UiOf(const CString& handler) {
    VB_COMMADN_PROGRAMME_INFO command;
    Engine().GetCommandInfo(handler, 1, &command);
    CStringArray lines;
    Engine().ChangeScripText(command.strOtherPart, lines);
    UiEntries ui;
    Engine().GetCommandFuncOtherUI(lines, 3, ui.ids, ui.enables, ui.checks);
    return ui;
}

CString HandlerWithUi(std::initializer_list<long> commandIds, std::initializer_list<long> uiIds,
                      std::initializer_list<const char*> enables,
                      std::initializer_list<const char*> checks) {
    VB_COMMADN_PROGRAMME_INFO command = CommandRecord(commandIds, {});
    for (INT_PTR i = 0; i < command.arrCommandID.GetSize(); ++i)
        command.arrCommandCode.Add("MsgBox 1\r\n");
    CArray<long, long> ids = Ids(uiIds);
    CStringArray enableArray = Lines(enables);
    CStringArray checkArray = Lines(checks);
    command.strOtherPart = Engine().SetCommandFuncOtherUIEx(ids, enableArray, checkArray);
    // Written from the UI side, so the entries stand exactly as given.
    VB_COMMADN_PROGRAMME_INFO ui;
    Engine().GetCommandInfo(Engine().SetCommandFunc(1, &command), 0, &ui);
    ui.arrCommandID = Ids(uiIds);
    ui.arrCommandCode.RemoveAll();
    for (INT_PTR i = 0; i < ui.arrCommandID.GetSize(); ++i) {
        CString body;
        if (enableArray[i].GetLength() > 0)
            body += "SystemUIEnable = (" + enableArray[i] + ")\r\n";
        if (checkArray[i].GetLength() > 0)
            body += "SystemUICheck = (" + checkArray[i] + ")\r\n";
        ui.arrCommandCode.Add(body);
    }
    return Engine().SetCommandFunc(0, &ui);
}

TEST(CommandHandler, IsWrittenInItsFixedShape) {
    VB_COMMADN_PROGRAMME_INFO info = CommandRecord({101}, {"Call Save()\r\n"}, "Dim a\r\n");
    EXPECT_EQ(Engine().SetCommandFunc(1, &info).Str(),
              "Function ScriptCmdMsg(nID, bCommand)\r\n"
              "Dim a\r\n"
              "\r\n"
              "If bCommand Then\r\n"
              "ScriptCmdMsg = 1\r\n"
              "Select Case nID\r\n"
              "Case 101\r\n"
              "Call Save()\r\n"
              "Case Else ScriptCmdMsg = 0\r\n"
              "End Select\r\n"
              "Else\r\n"
              "Dim SystemUIEnable, SystemUICheck\r\n"
              "SystemUIEnable = 0\r\n"
              "SystemUICheck = 0\r\n"
              "Select Case nID\r\n"
              "Case 101\r\n"
              "SystemUIEnable = (1)\r\n"
              "Case Else\r\n"
              "ScriptCmdMsg = -1\r\n"
              "Exit Function\r\n"
              "End Select\r\n"
              "If SystemUIEnable <> 0 Then\r\n"
              "SystemUIEnable = 1\r\n"
              "End If\r\n"
              "If SystemUICheck <> 0 Then\r\n"
              "SystemUICheck = 1\r\n"
              "End If\r\n"
              "ScriptCmdMsg = SystemUICheck * 2 + SystemUIEnable\r\n"
              "End If\r\n"
              "End Function\r\n");
}

TEST(CommandHandler, BothPartsReadBackWhatWasWritten) {
    VB_COMMADN_PROGRAMME_INFO command = CommandRecord(
        {7, -3, 40000}, {"x = 1\r\ny = 2\r\n", "", "Call Go(\"Case 9\")\r\n"}, "Dim x, y\r\n");
    const CString handler = Engine().SetCommandFunc(1, &command);

    VB_COMMADN_PROGRAMME_INFO read;
    Engine().GetCommandInfo(handler, 1, &read);
    EXPECT_EQ(JoinIds(read.arrCommandID), "7,-3,40000");
    EXPECT_EQ(Join(read.arrCommandCode), "x = 1\r\ny = 2\r\n||Call Go(\"Case 9\")\r\n");
    EXPECT_EQ(read.strVariable.Str(), "Dim x, y\r\n");
    EXPECT_EQ(read.strParameter.Str(), "nID, bCommand");

    VB_COMMADN_PROGRAMME_INFO ui;
    Engine().GetCommandInfo(handler, 0, &ui);
    EXPECT_EQ(JoinIds(ui.arrCommandID), "7,-3,40000");
    EXPECT_EQ(ui.arrCommandCode[0].Str(), "SystemUIEnable = (1)\r\n");
    EXPECT_EQ(ui.strOtherPart.Str(), (Engine().m_strCmdSelectHead +
                                      "Case 7\r\nx = 1\r\ny = 2\r\n"
                                      "Case -3\r\nCase 40000\r\nCall Go(\"Case 9\")\r\n" +
                                      Engine().m_strCmdSelectTail)
                                         .Str());
    // Written again from the UI side, the same text comes back.
    EXPECT_EQ(Engine().SetCommandFunc(0, &ui).Str(), handler.Str());
}

TEST(CommandHandler, AnEmptyOtherPartGetsItsDefault) {
    VB_COMMADN_PROGRAMME_INFO command = CommandRecord({5, 6}, {"", ""});
    UiEntries ui = UiOf(Engine().SetCommandFunc(1, &command));
    EXPECT_EQ(JoinIds(ui.ids), "5,6");
    EXPECT_EQ(Join(ui.enables), "1|1");
    EXPECT_EQ(Join(ui.checks), "|");

    VB_COMMADN_PROGRAMME_INFO uiRecord = CommandRecord({5}, {"SystemUICheck = (b)\r\n"});
    const CString handler = Engine().SetCommandFunc(0, &uiRecord);
    EXPECT_NE(handler.Find(Engine().m_strCmdIf + Engine().m_strCmdSelectHead +
                           Engine().m_strCmdSelectTail + Engine().m_strElse),
              -1);
    VB_COMMADN_PROGRAMME_INFO commandRead;
    Engine().GetCommandInfo(handler, 1, &commandRead);
    EXPECT_EQ(commandRead.arrCommandID.GetSize(), 0);
}

TEST(CommandHandler, UiEntriesFollowTheCommands) {
    // Command 1 stays; 2 (default enable), 3 (True, any case), 4 (own expression) and
    // 5 (default enable with a check) have gone; 9 is new.
    const CString handler =
        HandlerWithUi({1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}, {"", "1", " tRUE ", "IsReady()", "1"},
                      {"", "", "", "", "bOn"});
    VB_COMMADN_PROGRAMME_INFO command;
    Engine().GetCommandInfo(handler, 1, &command);
    ASSERT_EQ(JoinIds(command.arrCommandID), "1,2,3,4,5");
    command.arrCommandID = Ids({1, 9});
    command.arrCommandCode = Lines({"", ""});
    UiEntries ui = UiOf(Engine().SetCommandFunc(1, &command));
    EXPECT_EQ(JoinIds(ui.ids), "1,4,5,9");
    EXPECT_EQ(Join(ui.enables), "1|IsReady()||1");
    EXPECT_EQ(Join(ui.checks), "||bOn|");
}

TEST(CommandHandler, ShapesWithoutPartsGiveNoCases) {
    const char* shapes[] = {
        "Function ScriptCmdMsg(nID, bCommand)\r\n\r\nEnd Function\r\n",
        "Function ScriptCmdMsg(nID, bCommand)\r\n\r\nx = 1\r\nEnd Function\r\n",
        "Function ScriptCmdMsg(nID, bCommand)\r\n\r\nIf bCommand Then\r\nx = 1\r\nEnd "
        "If\r\nEnd Function\r\n",
        // The right head and an Else, but the Select lines would lie behind the body.
        "Function ScriptCmdMsg(a)\r\nDim q\r\n\r\nIf bCommand Then\r\nElse\r\nEnd If\r\nEnd "
        "Function\r\n",
    };
    for (const char* shape : shapes) {
        for (int part : {1, 0}) {
            VB_COMMADN_PROGRAMME_INFO info;
            info.arrCommandID.Add(99);
            Engine().GetCommandInfo(shape, part, &info);
            EXPECT_EQ(info.arrCommandID.GetSize(), 0) << shape;
            EXPECT_EQ(info.strParameter.Str(), "nID, bCommand");
        }
    }
    CArray<long, long> ids;
    CStringArray enables, checks;
    CStringArray lines = Lines({"Select Case nID", "Case 1", "Case Else", "End Select"});
    for (int index : {-1, 4, 1000, 1}) {
        Engine().GetCommandFuncOtherUI(lines, index, ids, enables, checks);
        EXPECT_EQ(ids.GetSize() + enables.GetSize() + checks.GetSize(), 0) << index;
    }
}

TEST(CommandHandler, CaseLinesGiveTheirFirstNumber) {
    CStringArray lines = Lines({"Select Case nID", "Case 12, 13", "case 14", "Case  x",
                                "SystemUICheck = (q)", "Case 15", "SystemUIEnable = (e)"});
    CArray<long, long> ids;
    CStringArray enables, checks;
    Engine().GetCommandFuncOtherUI(lines, 0, ids, enables, checks);
    // "case" in lower case is a Case line but keeps its letters; no Case Else: the last body
    // is empty.
    EXPECT_EQ(JoinIds(ids), "12,0,0,15");
    EXPECT_EQ(Join(checks), "||q|");
    EXPECT_EQ(Join(enables), "|||");
}

TEST(CommandHandler, DecomposeTakesTheExpressionsOutOfACase) {
    CString enable = "old", check = "old";
    Engine().DecomposeUISubCode("  systemuienable=  (a And b)  \r\nSystemUICheck = (c)\r\n", enable,
                                check);
    EXPECT_EQ(enable.Str(), "a And b");
    EXPECT_EQ(check.Str(), "c");

    Engine().DecomposeUISubCode("SystemUIEnable = x > 1\r\nSystemUIEnable = (late)\n", enable,
                                check);
    EXPECT_EQ(enable.Str(), "late");
    EXPECT_EQ(check.Str(), "");

    // The walk stops at the first empty line, "\r" alone included.
    Engine().DecomposeUISubCode("x = 1\r\n\r\nSystemUIEnable = (a)\r\n", enable, check);
    EXPECT_EQ(enable.Str(), "");
    Engine().DecomposeUISubCode("SystemUIEnable = x > 1\r\n", enable, check);
    EXPECT_EQ(enable.Str(), " > ");
    Engine().DecomposeUISubCode("SystemUIEnable = (\r\n", enable, check);
    EXPECT_EQ(enable.Str(), "");
}

class CommandIds : public ::testing::Test {
protected:
    CString Script(const CString& handler) {
        return "Dim g\r\n\r\nSub Helper()\r\nx = 1\r\nEnd Sub\r\n\r\n" + handler + "\r\n";
    }
    CString HandlerOf(const CString& script) {
        CString lower = script;
        lower.MakeLower();
        int at = lower.Find("function");
        return at < 0 ? CString() : script.Mid(at);
    }
    CTVContainerDoc m_doc;
};

TEST_F(CommandIds, RenumberingKeepsAnOwnExpressionBesideTheNewDefault) {
    CString script = Script(HandlerWithUi({10, 11}, {10, 11}, {"IsReady()", "1"}, {"", ""}));
    Engine().DisposalCommandIDByScriptText(script, 10, 20, &m_doc, 0);
    VB_COMMADN_PROGRAMME_INFO command;
    Engine().GetCommandInfo(HandlerOf(script), 1, &command);
    EXPECT_EQ(JoinIds(command.arrCommandID), "20,11");
    EXPECT_EQ(Join(command.arrCommandCode), "MsgBox 1\r\n|MsgBox 1\r\n");
    UiEntries ui = UiOf(HandlerOf(script));
    EXPECT_EQ(JoinIds(ui.ids), "20,11,20");
    EXPECT_EQ(Join(ui.enables), "IsReady()|1|1");
}

TEST_F(CommandIds, DeletingRemovesTheCommandAndItsDefaultUiEntry) {
    CString script = Script(HandlerWithUi({10, 11}, {10, 11}, {"1", "1"}, {"", "bOn"}));
    Engine().DisposalCommandIDByScriptText(script, 11, 0, &m_doc, 1);
    UiEntries ui = UiOf(HandlerOf(script));
    EXPECT_EQ(JoinIds(ui.ids), "10");
    VB_COMMADN_PROGRAMME_INFO command;
    Engine().GetCommandInfo(HandlerOf(script), 1, &command);
    EXPECT_EQ(JoinIds(command.arrCommandID), "10");
    EXPECT_NE(script.Find("Sub Helper()\r\nx = 1\r\nEnd Sub\r\n"), -1);
}

TEST_F(CommandIds, TheHandlerIsFoundWhateverItsCaseAndBlanks) {
    CString handler = HandlerWithUi({10}, {10}, {"1"}, {""});
    handler.Replace("Function ScriptCmdMsg(nID, bCommand)",
                    "Function   scriptCMDmsg( NID ,bcommand )");
    CString script = Script(handler);
    Engine().DisposalCommandIDByScriptText(script, 10, 30, nullptr, 0);
    VB_COMMADN_PROGRAMME_INFO command;
    Engine().GetCommandInfo(HandlerOf(script), 1, &command);
    EXPECT_EQ(JoinIds(command.arrCommandID), "30");
    // A head with a blank in front of "(" is no handler: the script stays to the letter.
    CString other = Script("Function ScriptCmdMsg (nID, bCommand)\r\nEnd Function\r\n");
    const CString before = other;
    Engine().DisposalCommandIDByScriptText(other, 10, 30, &m_doc, 0);
    EXPECT_EQ(other.Str(), before.Str());
}

TEST_F(CommandIds, AnUnknownIdChangesNoId) {
    CString script = Script(HandlerWithUi({10}, {10}, {"1"}, {""}));
    Engine().DisposalCommandIDByScriptText(script, 77, 78, &m_doc, 0);
    EXPECT_EQ(JoinIds(UiOf(HandlerOf(script)).ids), "10");
    EXPECT_EQ(script.Find("78"), -1);
}

} // namespace
} // namespace talvor::engine::testing
