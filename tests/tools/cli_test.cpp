// The talvor program as a user meets it: help, version, exit codes and error messages.
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>
#include <string>

using talvor::testing::ToolRun;

namespace {
// Standard output and standard error together, as a user sees them.
ToolRun Talvor(const std::string& arguments) {
    ToolRun run = talvor::testing::RunTalvor(arguments);
    run.out += run.err;
    return run;
}
} // namespace

TEST(TalvorTool, HelpAndVersionSucceed) {
    ToolRun help = Talvor("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.out.find("usage: talvor"), std::string::npos);
    for (const char* command : {"demo", "script", "color"})
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
    ToolRun version = Talvor("--version");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.rfind("talvor ", 0), 0u);
}

TEST(TalvorTool, BadInputIsAUserErrorWithAMessage) {
    struct Case {
        const char* arguments;
        const char* message;
    } cases[] = {
        {"", "usage: talvor"},
        {"frobnicate", "talvor: unknown command 'frobnicate'"},
        {"--frob", "talvor: unknown option '--frob'"},
        {"--code-page 4711 demo", "talvor: unknown code page '4711'"},
        {"--code-page", "talvor: --code-page needs a value"},
        {"--resources /no/such/file.rc demo", "talvor: cannot open '/no/such/file.rc'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        ToolRun run = Talvor(c.arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.out.find(c.message), std::string::npos) << run.out;
    }
}

TEST(TalvorTool, TheDemoRunsEveryStepAndSucceeds) {
    ToolRun demo = Talvor("demo");
    EXPECT_EQ(demo.exitCode, 0) << demo.out;
    for (int step = 1; step <= 12; ++step)
        EXPECT_NE(demo.out.find("== " + std::to_string(step) + ". "), std::string::npos) << step;
    EXPECT_NE(demo.out.find("Demo finished.\n"), std::string::npos);
    EXPECT_EQ(demo.out.find("failures"), std::string::npos);
}
