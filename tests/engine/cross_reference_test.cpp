// Where a script still uses a control or function: the six kinds of place in their order,
// and the texts that don't count.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

std::string Describe(const CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO>& records) {
    std::string text;
    for (const NAME_APPEAR_INFO& record : records)
        text += std::to_string(record.nAppearType) + ":" + record.strOwner.Str() + "/" +
                record.strMember.Str() + "/" + record.strName.Str() + " ";
    return text;
}

class CrossReference : public ::testing::Test {
protected:
    CrossReference()
        : m_form({{"btnGo", {{"Click", 1, {}}}},
                  {"btnGoAway", {{"Click", 1, {}}}},
                  {"lblName", {{"Click", 1, {}}}}},
                 {{"Load", 1, {}}}) {
        VB_COMMADN_PROGRAMME_INFO command;
        command.arrCommandID.Add(10);
        command.arrCommandID.Add(11);
        command.arrCommandCode.Add("btnGo.Enabled = False\r\n");
        command.arrCommandCode.Add("x = 1 ' btnGo\r\n");
        CArray<long, long> ids;
        ids.Add(10);
        ids.Add(11);
        CStringArray enables = Lines({"btnGo.Visible", "1"});
        CStringArray checks = Lines({"btnGo.Value", "\"btnGo\" = s"});
        command.strOtherPart = Engine().SetCommandFuncOtherUIEx(ids, enables, checks);
        m_handler = Engine().SetCommandFunc(1, &command);
    }
    std::string Uses(const char* name) {
        CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO> records;
        EXPECT_EQ(Engine().GetAttachInfoByCtrlOrFunction(Script(), m_form.m_names, name,
                                                         m_form.m_interfaces, records),
                  1);
        return Describe(records);
    }
    CString Script() {
        return "Dim g\r\ng = btnGo.Caption\r\n\r\n"
               "Sub btnGo_Click()\r\nbtnGo.Caption = 1\r\nEnd Sub\r\n\r\n"
               "Sub btnGoAway_Click()\r\nx = 1\r\nEnd Sub\r\n\r\n"
               "Sub lblName_Click()\r\nx = btnGo.Enabled\r\ny = btnGo.Left + Twice(2)\r\nEnd "
               "Sub\r\n\r\n"
               "Sub Form_Load()\r\nx = \"btnGo\"\r\nEnd Sub\r\n\r\n"
               "Sub Helper()\r\nx = 1 ' btnGo goes\r\nEnd Sub\r\n\r\n"
               "Sub Other()\r\nz = a.btnGo\r\nEnd Sub\r\n\r\n"
               "Function Twice(a)\r\nTwice = 2 * a\r\nx = Twice\r\nEnd Function\r\n\r\n"
               "Function Calc()\r\nCalc = btnGo.Value + Twice(1)\r\nEnd Function\r\n\r\n" +
               m_handler + "\r\n";
    }
    TestForm m_form;
    CString m_handler;
};

TEST_F(CrossReference, RecordsStandInTheirOrder) {
    EXPECT_EQ(Uses("BTNGO"), "1:lblName/Click/BTNGO 6:Helper//BTNGO 5:Calc//BTNGO "
                             "2:ScriptCmdMsg/10/BTNGO 2:ScriptCmdMsg/11/BTNGO "
                             "3:ScriptCmdMsg/10/BTNGO 4:ScriptCmdMsg/10/BTNGO ");
}

TEST_F(CrossReference, AFunctionIsNotItsOwnUse) {
    EXPECT_EQ(Uses("Twice"), "1:lblName/Click/Twice 5:Calc//Twice ");
}

TEST_F(CrossReference, EmptyAndUnknownNames) {
    CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO> records;
    records.Add(NAME_APPEAR_INFO{7, "kept", "", ""});
    EXPECT_EQ(Engine().GetAttachInfoByCtrlOrFunction(Script(), m_form.m_names, "",
                                                     m_form.m_interfaces, records),
              0);
    EXPECT_EQ(records.GetSize(), 1);
    EXPECT_EQ(Engine().GetAttachInfoByCtrlOrFunction(Script(), m_form.m_names, "nowhere",
                                                     m_form.m_interfaces, records),
              1);
    EXPECT_EQ(records.GetSize(), 0);
    // A name with pattern characters gives no record and no crash.
    EXPECT_EQ(Uses("btn(Go"), "");
}

} // namespace
} // namespace talvor::engine::testing
