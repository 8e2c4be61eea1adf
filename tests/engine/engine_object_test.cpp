// The engine object, its record helpers and the text-to-lines rule.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

struct LinesCase {
    const char* what;
    std::string text;
    const char* lines;
    int count;
};

TEST(ChangeScripText, CutsAtLineFeedsAndDropsThePieceBehindTheLast) {
    const LinesCase cases[] = {
        {"empty text", "", "", 0},
        {"no line feed: the one piece is dropped", "Dim a", "", 0},
        {"a single line end gives one empty line", "\r\n", "", 1},
        {"two ended lines", "a\r\nb\r\n", "a|b", 2},
        {"a last line without line end is lost", "a\r\nb", "a", 1},
        {"an empty line inside stays", "a\n\nb\n", "a||b", 3},
        {"carriage returns at the end go, all of them", "a\r\r\nb\r\n", "a|b", 2},
        {"a carriage return inside stays", "a\rb\r\n", "a\rb", 1},
        {"blanks and tabs stay", " \ta \t\r\n", " \ta \t", 1},
        {"a NUL byte is text like any other", std::string("a\0b\n", 4), "", 1},
    };
    for (const LinesCase& c : cases) {
        SCOPED_TRACE(c.what);
        CStringArray lines = Lines({"stale"});
        Engine().ChangeScripText(CString(c.text), lines);
        EXPECT_EQ(lines.GetSize(), c.count);
        if (c.text.find('\0') == std::string::npos)
            EXPECT_EQ(Join(lines), c.lines);
        else
            EXPECT_EQ(lines[0].Str(), std::string("a\0b", 3));
    }
}

TEST(EngineObject, GetDisposalGivesOneObject) {
    EXPECT_EQ(&CTalvorScriptTextDisposal::GetDisposal(), &CTalvorScriptTextDisposal::GetDisposal());
}

TEST(EngineObject, ClearDataEmptiesEachRecordAndKeepsGrowth) {
    CTalvorScriptTextDisposal& engine = Engine();
    VB_VARIABLE_AND_PARAMETER_INFO vars{Lines({"r"}), Lines({"n"}), Lines({"v"}), Lines({"p"}),
                                        Lines({"q"})};
    vars.arrVarName.SetSize(1, 16);
    engine.ClearData(&vars);
    EXPECT_EQ(Join(vars.arrVarRemark) + Join(vars.arrVarName) + Join(vars.arrVarValue) +
                  Join(vars.arrParamRemark) + Join(vars.arrParamName),
              "");
    EXPECT_EQ(vars.arrVarName.GetGrowBy(), 16);

    VB_SUB_PROGRAMME_INFO sub{"Dim a\r\n", "a", Lines({"x"})};
    engine.ClearData(&sub);
    EXPECT_TRUE(sub.strVariable.IsEmpty() && sub.strParameter.IsEmpty() && sub.arrCode.IsEmpty());

    VB_COMMADN_PROGRAMME_INFO command{"v", "p", {}, Lines({"c"}), "o"};
    command.arrCommandID.Add(1);
    engine.ClearData(&command);
    EXPECT_TRUE(command.strVariable.IsEmpty() && command.strParameter.IsEmpty() &&
                command.strOtherPart.IsEmpty() && command.arrCommandID.IsEmpty() &&
                command.arrCommandCode.IsEmpty());

    NAME_APPEAR_INFO appear{3, "owner", "member", "name"};
    engine.ClearData(&appear);
    EXPECT_EQ(appear.nAppearType, 0);
    EXPECT_TRUE(appear.strOwner.IsEmpty() && appear.strMember.IsEmpty());
    EXPECT_EQ(appear.strName, "name");

    engine.ClearData(static_cast<VB_ALL_PROGRAMME_INFO*>(nullptr)); // ignored
}

TEST(EngineObject, CopyArraysReplaceTheDestination) {
    CStringArray dst = Lines({"old", "older"});
    CStringArray src = Lines({"a", "", "b"});
    Engine().CopyStrArry(dst, src);
    EXPECT_EQ(Join(dst), "a||b");
    EXPECT_EQ(dst.GetSize(), 3);

    CStringArray empty;
    Engine().CopyStrArry(dst, empty);
    EXPECT_TRUE(dst.IsEmpty());

    Engine().CopyStrArry(src, src);
    EXPECT_EQ(Join(src), "a||b");

    CArray<long, long> to, from;
    to.Add(9);
    from.Add(-1);
    from.Add(2147483647L);
    Engine().CopylongArry(to, from);
    EXPECT_EQ(JoinIds(to), "-1,2147483647");
}

// The engine's operations empty their records through the virtual ClearData, so a host
// that derives from the engine sees every clearing.
class CountingEngine : public CTalvorScriptTextDisposal {
public:
    void ClearData(VB_VARIABLE_AND_PARAMETER_INFO* pInfo) override {
        ++vars;
        CTalvorScriptTextDisposal::ClearData(pInfo);
    }
    void ClearData(VB_ALL_PROGRAMME_INFO* pInfo) override {
        ++all;
        CTalvorScriptTextDisposal::ClearData(pInfo);
    }
    void ClearData(VB_SUB_PROGRAMME_INFO* pInfo) override {
        ++sub;
        CTalvorScriptTextDisposal::ClearData(pInfo);
    }
    int vars = 0, all = 0, sub = 0;
};

TEST(EngineObject, OperationsClearRecordsThroughTheVirtualOverloads) {
    CountingEngine engine;
    CStringArray lines = Lines({"x"}), names;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    VB_ALL_PROGRAMME_INFO all;
    engine.GetCodeInfoByScriptText(lines, names, nullptr, interfaces, &all);
    VB_SUB_PROGRAMME_INFO sub;
    engine.GetDataByEventCode("Sub a()\r\nEnd Sub\r\n", &sub);
    VB_VARIABLE_AND_PARAMETER_INFO vars;
    engine.InitDataByCode("", "", &vars);
    EXPECT_EQ(engine.all, 1);
    EXPECT_EQ(engine.sub, 1);
    EXPECT_EQ(engine.vars, 1);
}

} // namespace
} // namespace talvor::engine::testing
