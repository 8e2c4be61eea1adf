// Declaration blocks and parameter texts into the parallel arrays of their record and back.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

struct ReadCase {
    const char* what;
    const char* code;
    const char* params;
    const char* varNames;
    const char* varValues;
    const char* varRemarks;
    const char* paramNames;
    const char* paramRemarks;
};

TEST(Declarations, ReadingFillsParallelArrays) {
    const ReadCase cases[] = {
        {"two empty texts", "", "", "", "", "", "", ""},
        {"the system's own format", "Dim a, b'first,second\r\na = 1\r\n", "x, y'px, py", "a|b",
         "1|", "first|second", "x|y", "px|py"},
        {"value lines match names without regard to case", "Dim count'\r\nCOUNT = 3\r\n", "",
         "count", "3", "", "", ""},
        {"a second ' = ' becomes a tab in the value", "Dim a'\r\na = b = c\r\n", "", "a", "b\tc",
         "", "", ""},
        {"a value line without ' = ' or for another name is skipped", "Dim a'\r\na=1\r\nz = 2\r\n",
         "", "a", "", "", "", ""},
        {"two adjacent commas end the names", "", "a,,b", "", "", "", "a", ""},
        {"only blanks at the left of a name go", "", "a , b", "", "", "", "a |b", "|"},
        {"no Dim in the first line: no variables", "Const a\r\na = 1\r\n", "", "", "", "", "", ""},
        {"only the first line declares", "Dim a'\r\nDim b\r\nb = 2\r\n", "", "a", "", "", "", ""},
        {"a last line without line feed is kept", "Dim a\r\na = 5", "", "a", "5", "", "", ""},
        {"an empty piece ends the block", "Dim a\n\na = 5\n", "", "a", "", "", "", ""},
        {"a lone carriage return is not empty", "Dim a\r\n\r\na = 5\r\n", "", "a", "5", "", "", ""},
        {"the first four characters go, whatever they are", "XDim a, b\r\n", "", "a|b", "|", "|",
         "", ""},
        {"comments bind by position", "Dim a, b'only\r\n", "p, q'c", "a|b", "|", "only|", "p|q",
         "c|"},
        {"a comment with commas beyond the names stays whole", "Dim a'x, y\r\n", "p'one, two", "a",
         "", "x, y", "p", "one, two"},
    };
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.what);
        VB_VARIABLE_AND_PARAMETER_INFO info;
        info.arrVarName.Add("stale");
        info.arrParamRemark.Add("stale");
        Engine().InitDataByCode(c.code, c.params, &info);
        EXPECT_EQ(Join(info.arrVarName), c.varNames);
        EXPECT_EQ(Join(info.arrVarValue), c.varValues);
        EXPECT_EQ(Join(info.arrVarRemark), c.varRemarks);
        EXPECT_EQ(Join(info.arrParamName), c.paramNames);
        EXPECT_EQ(Join(info.arrParamRemark), c.paramRemarks);
        EXPECT_EQ(info.arrVarName.GetSize(), info.arrVarValue.GetSize());
        EXPECT_EQ(info.arrVarName.GetSize(), info.arrVarRemark.GetSize());
        EXPECT_EQ(info.arrParamName.GetSize(), info.arrParamRemark.GetSize());
    }
}

struct WriteCase {
    const char* what;
    std::initializer_list<const char*> names, values, remarks, paramNames, paramRemarks;
    const char* variable;
    const char* parameter;
};

TEST(Declarations, WritingFollowsTheDeclarationLineFormat) {
    const WriteCase cases[] = {
        {"one variable without comment", {"a"}, {""}, {""}, {}, {}, "Dim a'\r\n", ""},
        {"values follow the declaration line",
         {"a", "b", "c"},
         {"1", "", "\"x\""},
         {"first", "second", "third"},
         {"p"},
         {""},
         "Dim a, b, c'first,second,third\r\na = 1\r\nc = \"x\"\r\n",
         "p"},
        {"a comment behind an empty one moves forward",
         {"a", "b"},
         {"", ""},
         {"", "second"},
         {},
         {},
         "Dim a, b'second\r\n",
         ""},
        {"a comma follows every comment but that of the last element",
         {"a", "b"},
         {"", ""},
         {"first", ""},
         {"x", "y"},
         {"", "why"},
         "Dim a, b'first,\r\n",
         "x, y'why"},
        {"parameter comments are joined by ', '",
         {},
         {},
         {},
         {"x", "y", "z"},
         {"a", "", "c"},
         "",
         "x, y, z'a, c"},
        {"values may be fewer than names",
         {"a", "b"},
         {"1"},
         {"", ""},
         {},
         {},
         "Dim a, b'\r\na = 1\r\n",
         ""},
    };
    for (const WriteCase& c : cases) {
        SCOPED_TRACE(c.what);
        VB_VARIABLE_AND_PARAMETER_INFO info;
        info.arrVarName = Lines(c.names);
        info.arrVarValue = Lines(c.values);
        info.arrVarRemark = Lines(c.remarks);
        info.arrParamName = Lines(c.paramNames);
        info.arrParamRemark = Lines(c.paramRemarks);
        CString variable = "stale", parameter = "stale";
        Engine().GetVariableStr(&info, variable, parameter);
        EXPECT_EQ(variable, c.variable);
        EXPECT_EQ(parameter, c.parameter);
    }
}

TEST(Declarations, TextsAreLeftAloneWhereTheRecordCannotSayWhatToWrite) {
    VB_VARIABLE_AND_PARAMETER_INFO info;
    info.arrVarName.Add("a");
    info.arrParamName.Add("");
    info.arrParamRemark.Add("lost");
    CString variable = "kept", parameter = "kept too";
    Engine().GetVariableStr(&info, variable, parameter);
    EXPECT_EQ(variable, "kept");      // names and remarks differ in size
    EXPECT_EQ(parameter, "kept too"); // the joined names are empty

    info.arrParamName.RemoveAll(); // no parameters: emptied, whatever the remarks
    Engine().GetVariableStr(&info, variable, parameter);
    EXPECT_EQ(parameter, "");
    Engine().GetVariableStr(nullptr, variable, parameter);
    EXPECT_EQ(variable, "kept");
}

TEST(Declarations, WrittenTextsReadBackToTheSameRecord) {
    VB_VARIABLE_AND_PARAMETER_INFO info;
    Engine().InitDataByCode("Dim total, name'sum,who\r\ntotal = 0\r\nname = \"a=b\"\r\n",
                            "KeyCode, Shift'code, state", &info);
    CString variable, parameter;
    Engine().GetVariableStr(&info, variable, parameter);
    EXPECT_EQ(variable, "Dim total, name'sum,who\r\ntotal = 0\r\nname = \"a=b\"\r\n");
    EXPECT_EQ(parameter, "KeyCode, Shift'code, state");

    // A parameter comment behind an empty one belongs to the first name on the next reading.
    info.arrParamRemark[0] = "";
    Engine().GetVariableStr(&info, variable, parameter);
    VB_VARIABLE_AND_PARAMETER_INFO again;
    Engine().InitDataByCode(variable, parameter, &again);
    EXPECT_EQ(Join(again.arrParamRemark), "state|");
}

} // namespace
} // namespace talvor::engine::testing
