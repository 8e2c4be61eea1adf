// Name checks against a form and its script: the order of the chain, each single check, the
// messages, and the procedures the host's script engine reports.
#include "engine/script_text_disposal.h"
#include "host/base/api_code.h"
#include "host/base/tv_container_doc.h"
#include "resources/talvor_res_ids.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

class NameCheck : public ::testing::Test {
protected:
    NameCheck() {
        auto* item = new CVXContainerItem("btnGo", nullptr);
        item->GetEventsInterface().AddMethod(new CVXMethodInfo("Click", 1));
        auto* mouse = new CVXMethodInfo("MouseDown", 2);
        mouse->AddParam(new CVXMethodParamInfo("Button"));
        item->GetEventsInterface().AddMethod(mouse);
        m_doc.AddItem(item);
        m_doc.AddItem(new CVXContainerItem("Select", nullptr)); // a keyword as a control name
    }
    int Kind(const char* name, int bScope = 0, VB_VARIABLE_AND_PARAMETER_INFO* vars = nullptr) {
        return Engine().CheckName(name, m_script, &m_doc, vars, bScope).nErrorType;
    }

    CTVContainerDoc m_doc;
    const CString m_script =
        "Dim gCount, gName\r\n\r\n"
        "Sub btnGo_MouseDown(Button)\r\nDim clicks\r\nclicks = 1\r\nEnd Sub\r\n\r\n"
        "Sub Helper()\r\nDim helperLocal\r\nEnd Sub\r\n\r\n"
        "Function Sum(first, second)\r\nDim total\r\nSum = first\r\n"
        "End Function\r\n\r\n"
        "Function OneLine()\r\n\r\n";
};

TEST_F(NameCheck, TheFormOfANameComesFirst) {
    for (const char* bad : {"", "1abc", "a_b", "a b", "\xB0\xB4", "x-y", " "})
        EXPECT_EQ(Kind(bad), DENOMINATE_BAD_CHAR) << bad;
    EXPECT_EQ(Engine().CheckNameByChar("  abc12  "), 1);
    EXPECT_EQ(Kind("  freeName  "), DENOMINATE_OK);
}

TEST_F(NameCheck, TheChainDecidesInItsOrder) {
    EXPECT_EQ(Kind("select"), DENOMINATE_KEYWORD); // a keyword and a control: keyword first
    EXPECT_EQ(Kind(" BTNGO "), DENOMINATE_CONTROL);
    EXPECT_EQ(Kind(Engine().m_strSystemFuncName.GetString()), DENOMINATE_CONTROL);
    EXPECT_EQ(Kind("sum"), DENOMINATE_FUNCTION);
    EXPECT_EQ(Kind("OneLine"), DENOMINATE_OK); // a one-line text is no function
    EXPECT_EQ(Kind("helper"), DENOMINATE_OK);  // Subs are not looked at
    for (const char* reserved : {"scriptcmdmsg", "SystemUIEnable", "SYSTEMUICHECK",
                                 "Sfx_DataBinding", "vfxpadleft", "VfxIsoDate"})
        EXPECT_EQ(Engine().CheckNameBySystemFunc(reserved), 0) << reserved;
    EXPECT_EQ(Kind("VfxPadLeft"), DENOMINATE_SYSTEM);
    EXPECT_EQ(Engine().CheckNameBySystemFunc("VfxNothing"), 1);
}

TEST_F(NameCheck, EveryScopeOfTheScriptOrOnlyTheGivenOne) {
    EXPECT_EQ(Kind("GNAME"), DENOMINATE_GLOBAL_VAR);
    DENOMINATE_ERROR_INFO local = Engine().CheckName("clicks", m_script, &m_doc, nullptr, 0);
    EXPECT_EQ(local.nErrorType, DENOMINATE_EVENT_VAR);
    EXPECT_EQ(local.strErrorName.Str(), "btnGo");
    EXPECT_EQ(local.strErrorOwner.Str(), "MouseDown");
    EXPECT_EQ(Kind("button"), DENOMINATE_EVENT_VAR);
    DENOMINATE_ERROR_INFO inFunction = Engine().CheckName("second", m_script, &m_doc, nullptr, 0);
    EXPECT_EQ(inFunction.nErrorType, DENOMINATE_FUNCTION_VAR);
    EXPECT_EQ(inFunction.strErrorName.Str(), "Sum");
    EXPECT_EQ(Kind("helperLocal"), DENOMINATE_OK);

    VB_VARIABLE_AND_PARAMETER_INFO scope;
    scope.arrParamName.Add("mine");
    EXPECT_EQ(Kind("clicks", 1, &scope), DENOMINATE_OK); // another procedure's local passes
    EXPECT_EQ(Kind("MINE", 1, &scope), DENOMINATE_SCOPE_VAR);
    EXPECT_EQ(Kind("mine", 0, &scope), DENOMINATE_OK); // vars count only with bScope
    EXPECT_EQ(Kind("sum", 1, &scope), DENOMINATE_FUNCTION);
}

TEST(NameMessages, ComeFromTheLinesOfTheirString) {
    DENOMINATE_ERROR_INFO info;
    EXPECT_EQ(Engine().GetErrorClew(info).Str(), "");
    info.nErrorType = 10;
    EXPECT_EQ(Engine().GetErrorClew(info).Str(), "");
    {
        ReplacedResources strings({{IDS_NAME_ERRORS, "bad\nkw\nctl\nglobal\nIn \t, event \t!\n"
                                                     "In function \t.\nscope\n\nsystem"}});
        info = {DENOMINATE_EVENT_VAR, "btnGo", "Click"};
        EXPECT_EQ(Engine().GetErrorClew(info).Str(), "In btnGo, event Click!");
        info = {DENOMINATE_FUNCTION_VAR, "Sum", ""};
        EXPECT_EQ(Engine().GetErrorClew(info).Str(), "In function Sum.");
        info = {DENOMINATE_CONTROL, "", ""};
        EXPECT_EQ(Engine().GetErrorClew(info).Str(), "ctl");
        info = {DENOMINATE_SYSTEM, "", ""}; // behind the empty line
        EXPECT_EQ(Engine().GetErrorClew(info).Str(), "");
    }
    {
        ReplacedResources strings({{IDS_NAME_ERRORS, "1\n2\n3\n4\nA\t\tC"}});
        info = {DENOMINATE_EVENT_VAR, "x", "y"};
        EXPECT_EQ(Engine().GetErrorClew(info).Str(),
                  "Axy"); // pieces behind an empty one count as empty
    }
    info = {DENOMINATE_EVENT_VAR, "btnGo", "Click"};
    const std::string shipped = Engine().GetErrorClew(info).Str();
    EXPECT_NE(shipped.find("btnGo"), std::string::npos);
    EXPECT_NE(shipped.find("Click"), std::string::npos);
}

TEST(ScriptProcedures, AreReportedByTheScriptEngine) {
    CVXInterfaceInfo info;
    ASSERT_EQ(
        Engine().SetCOMInfoByStript("Function ScriptCmdMsg(nID, bCommand)\r\nEnd Function\r\n"
                                    "Sub Go(a, b)\r\nEnd Sub\r\n"
                                    "Function Twice(x)\r\nTwice = 2 * x\r\nEnd Function\r\n"
                                    "Class C\r\nFunction Inner()\r\nEnd Function\r\nEnd Class\r\n",
                                    &info),
        1);
    ASSERT_EQ(info.GetNumMethods(), 2);
    EXPECT_EQ(info.GetMethod(0)->GetName().Str(), "Go");
    EXPECT_EQ(info.GetMethod(0)->GetNumParams(), 2);
    EXPECT_EQ(info.GetMethod(1)->GetName().Str(), "Twice");
    EXPECT_EQ(info.GetMethod(1)->GetInvokeKind(), INVOKE_FUNC);

    // A text that does not compile leaves the description as it was.
    EXPECT_EQ(Engine().SetCOMInfoByStript("Function Broken(\r\nEnd Function\r\n", &info), 0);
    EXPECT_EQ(info.GetNumMethods(), 2);
    EXPECT_EQ(Engine().SetCOMInfoByStript("", &info), 1);
    EXPECT_EQ(info.GetNumMethods(), 0);
    EXPECT_EQ(Engine().SetCOMInfoByStript("Sub A()\r\nEnd Sub\r\n", nullptr), 0);

    // The system's library compiles and defines functions.
    EXPECT_EQ(Engine().SetCOMInfoByStript(VfxGetAPICode(), &info), 1);
    EXPECT_GT(info.GetNumMethods(), 10);
    Engine().DeleteComInfoByFunctions(&info);
}

TEST(ProcedureNames, AreTheWordInFrontOfTheFirstParenthesis) {
    EXPECT_EQ(Engine().GetDisposalName("Sub btnGo_Click ()\r\nx = f(1)\r\n").Str(), "btnGo_Click");
    EXPECT_EQ(Engine().GetDisposalName("Public Function  Sum(a, b)").Str(), "Sum");
    EXPECT_EQ(Engine().GetDisposalName("Sub NoParentheses\r\nx = f(1)\r\n").Str(), "");
    EXPECT_EQ(Engine().GetDisposalName("\r\nSub A()\r\n").Str(), "");
    EXPECT_EQ(Engine().GetDisposalName("").Str(), "");
}

} // namespace
} // namespace talvor::engine::testing
