// talvor script on the sample order form: parse, regen, tree and op as a user runs them.
#include "tests/support/tool_run.h"

#include <fstream>
#include <gtest/gtest.h>
#include <string>

namespace {

using ScriptRun = talvor::testing::ToolRun;

// `talvor script ARGUMENTS`, standard output and standard error together.
ScriptRun Script(const std::string& arguments) {
    ScriptRun run = talvor::testing::RunTalvor("script " + arguments);
    run.out += run.err;
    return run;
}

const std::string Form = std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.json";
const std::string Sample = std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.vbs";

TEST(ScriptCommand, ParseListsTheBlocksOfTheSample) {
    ScriptRun run = Script("parse " + Form + " " + Sample);
    EXPECT_EQ(run.exitCode, 0);
    for (const char* expected :
         {"control handlers: 6", "subs: 3", "functions: 3", "form handlers: 2",
          "[0] 14 line(s), member id 1", "    | ' keyboard shortcuts of the form"})
        EXPECT_NE(run.out.find(expected), std::string::npos) << expected << "\n" << run.out;
}

TEST(ScriptCommand, RegeneratedScriptComesBackUnchanged) {
    const std::string once = std::string(TALVOR_BINARY_DIR) + "/script_command_once.vbs";
    ASSERT_EQ(Script("regen " + Form + " " + Sample + " --output " + once).exitCode, 0);
    ScriptRun twice = Script("regen " + Form + " " + once);
    std::ifstream file(once, std::ios::binary);
    std::string written((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_EQ(twice.exitCode, 0);
    EXPECT_EQ(twice.out, written);
    EXPECT_EQ(written.rfind("Option Explicit\r\n", 0), 0u);
}

TEST(ScriptCommand, TreeAndOpWorkOnOneProcedure) {
    ScriptRun tree = Script("tree " + Form + " " + Sample + " --procedure SaveOrder");
    EXPECT_EQ(tree.exitCode, 0);
    EXPECT_NE(tree.out.find("      Leave the block  [exit]"), std::string::npos) << tree.out;
    ScriptRun op =
        Script("op " + Form + " " + Sample + " cmdCancel_Click insert-before 0 \"If (a) Then\"");
    EXPECT_EQ(op.exitCode, 0);
    EXPECT_NE(op.out.find(">   0  If (a) Then\n    1  Else\n    2  End If\n    3  Call "
                          "ClearOrder()\nselected: 0"),
              std::string::npos)
        << op.out;
}

TEST(ScriptCommand, BadInputIsAUserErrorWithAMessage) {
    const std::string broken = std::string(TALVOR_BINARY_DIR) + "/script_command_form.json";
    std::ofstream(broken)
        << "{\"controls\": [{\"name\": \"a\", \"events\": [{\"name\": \"Click\"}]}]}";
    struct Case {
        std::string arguments;
        const char* message;
    } cases[] = {
        {"parse " + Form, "wrong number of arguments"},
        {"parse " + broken + " " + Sample, "controls[0].events[0]: missing \"id\""},
        {"parse " + Form + " /no/such.vbs", "cannot open '/no/such.vbs'"},
        {"op " + Form + " " + Sample + " nothing delete 0", "no procedure named 'nothing'"},
        {"op " + Form + " " + Sample + " cmdOK_Click spin 0", "unknown operation 'spin'"},
        {"op " + Form + " " + Sample + " cmdOK_Click delete x", "line index 'x' is not a number"},
        {"tree " + Form + " " + Sample + " --procedure none", "no procedure named 'none'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        ScriptRun run = Script(c.arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.out.find(c.message), std::string::npos) << run.out;
    }
}

} // namespace
