// Taking code out of a script: Function blocks as a list, one Function or one control's
// handlers removed from a whole script, the members of a description destroyed.
#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "tests/engine/engine_test_support.h"
#include "tests/support/corpus.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

CStringArray Functions(const char* script) {
    CStringArray functions;
    functions.Add("stale");
    Engine().GetFunctionsCodeByVBScript(script, functions);
    return functions;
}

TEST(FunctionBlocks, AreListedWithTheirHeadAndEndLines) {
    EXPECT_EQ(Functions("").GetSize(), 0);
    EXPECT_EQ(Functions("Sub A()\r\nEnd Sub\r\n").GetSize(), 0);
    EXPECT_EQ(Join(Functions("x = 1\r\n  function  F(a)\r\nF = a\r\nEnd Function  \r\n"
                             "y = 2\r\nFunction G()\r\nEnd Function Junk\r\nEnd Function\r\n"
                             "Function Open()\r\nz = 1\r\n")),
              "  function  F(a)\r\nF = a\r\nEnd Function  \r\n|"
              "Function G()\r\nEnd Function Junk\r\nEnd Function\r\n");
}

TEST(FunctionBlocks, AHeadInsideAnOpenFunctionEndsItsEntry) {
    EXPECT_EQ(Join(Functions("Function A()\r\na = 1\r\nFunction B()\r\nb = 1\r\nEnd Function\r\n"
                             "Function C()\r\nEnd Function\r\n")),
              "Function A()\r\na = 1\r\n|Function B()\r\nb = 1\r\nEnd Function\r\n|"
              "Function C()\r\nEnd Function\r\n");
    EXPECT_EQ(Join(Functions("Function A()\r\nFunction B()\r\nFunction C()\r\n")),
              "Function A()\r\n|Function B()\r\n");
}

TEST(FunctionBlocks, RealScriptsGiveEveryFunctionOnce) {
    int seen = 0;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        if (path.size() < 4 || strcasecmp(path.c_str() + path.size() - 4, ".vbs") != 0)
            continue;
        const CString script(talvor::testing::ReadFileBytes(path));
        CStringArray functions;
        Engine().GetFunctionsCodeByVBScript(script, functions);
        for (const CString& function : functions) {
            // Each entry begins with its head and stands in the script as it is. (One script
            // closes a Function with "End Sub": that entry runs up to the next head.)
            CString lower = function;
            lower.MakeLower();
            lower.TrimLeft(" \t");
            EXPECT_EQ(lower.Find("function"), 0) << path;
            CString normalised = script;
            normalised.Replace("\r\n", "\n");
            CString entry = function;
            entry.Replace("\r\n", "\n");
            EXPECT_NE(normalised.Find(entry), -1) << path;
            ++seen;
        }
    }
    EXPECT_GT(seen, 50);
}

class FormScript : public ::testing::Test {
protected:
    FormScript() {
        for (const char* name : {"btnGo", "btnGoAway"}) {
            auto* item = new CVXContainerItem(name, nullptr);
            item->GetEventsInterface().AddMethod(new CVXMethodInfo("Click", 1));
            m_doc.AddItem(item);
        }
    }
    CTVContainerDoc m_doc;
    const CString m_script = "Dim g\r\n\r\n"
                             "Sub Form_Load()\r\nx = 1\r\nEnd Sub\r\n\r\n"
                             "Sub btnGo_Click()\r\ngo = 1\r\nEnd Sub\r\n\r\n"
                             "Sub btnGoAway_Click()\r\naway = 1\r\nEnd Sub\r\n\r\n"
                             "Function Sum(a)\r\nSum = a\r\nEnd Function\r\n\r\n"
                             "Function Twice (a)\r\nTwice = a\r\nEnd Function\r\n\r\n";
};

TEST_F(FormScript, TheFormIsTheLastOfTheNamesAndItsEventsComeFromItsTypeLibrary) {
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    Engine().GetAllEventsInterfacesAndCtrlNames(&m_doc, interfaces, names);
    EXPECT_EQ(Join(names), "btnGo|btnGoAway|" + Engine().m_strSystemFuncName.Str());
    ASSERT_EQ(interfaces.GetSize(), 3);
    EXPECT_EQ(interfaces[2], &m_doc.GetEventsInterface());
    ASSERT_GT(interfaces[2]->GetNumMethods(), 3);
    EXPECT_EQ(interfaces[2]->GetMethod(2)->GetName().Str(), "Load");
}

TEST_F(FormScript, DeletingAFunctionFindsItsNameWhateverTheCase) {
    CString script = m_script;
    Engine().DeleteFunctionCodeByName(script, "TWICE", &m_doc);
    EXPECT_EQ(script.Find("Twice"), -1);
    EXPECT_NE(script.Find("Function Sum(a)"), -1);
    EXPECT_NE(script.Find("Sub btnGo_Click()"), -1);
    // The form's handlers now stand among the controls' handlers, before the Functions.
    EXPECT_LT(script.Find("Sub Form_Load()"), script.Find("Function Sum"));

    CString untouched = m_script;
    Engine().DeleteFunctionCodeByName(untouched, "btnGo_Click", &m_doc);
    EXPECT_EQ(untouched.Str(), m_script.Str());
    Engine().DeleteFunctionCodeByName(untouched, "Su", &m_doc);
    EXPECT_EQ(untouched.Str(), m_script.Str());
}

TEST_F(FormScript, DeletingEventsTakesOnlyThatControlsHandlers) {
    CString script = m_script;
    Engine().DelEventsCode(script, "BTNGO", &m_doc);
    EXPECT_EQ(script.Find("go = 1"), -1);
    EXPECT_NE(script.Find("Sub btnGoAway_Click()\r\naway = 1\r\nEnd Sub\r\n"), -1);
    EXPECT_NE(script.Find("Sub Form_Load()"), -1);

    CString unknown = m_script;
    Engine().DelEventsCode(unknown, "nothing", &m_doc);
    EXPECT_NE(unknown.Find("go = 1"), -1);
    EXPECT_NE(unknown.Find("away = 1"), -1);
}

TEST(ComInfo, DeletingMembersEmptiesTheDescription) {
    CVXInterfaceInfo info;
    Engine().DeleteComInfoByFunctions(&info);
    EXPECT_EQ(info.GetNumMethods(), 0);
    info.AddMethod(new CVXMethodInfo("A", 1));
    info.AddMethod(nullptr);
    info.AddMethod(new CVXMethodInfo("B", 2));
    Engine().DeleteComInfoByFunctions(&info);
    EXPECT_EQ(info.GetNumMethods(), 0);
    Engine().DeleteComInfoByFunctions(nullptr);
}

} // namespace
} // namespace talvor::engine::testing
