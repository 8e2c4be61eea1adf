// The talvor program as a user meets it: help, version, exit codes and error messages.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace {

struct ToolRun {
    int exitCode;
    std::string output;  // standard output and standard error together
};

ToolRun Talvor(const std::string& arguments) {
    std::string command = std::string(TALVOR_BINARY_DIR) + "/tools/talvor/talvor " + arguments + " 2>&1";
    ToolRun run{-1, ""};
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    std::array<char, 4096> buffer;
    std::size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        run.output.append(buffer.data(), n);
    int status = ::pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace

TEST(TalvorTool, HelpAndVersionSucceed) {
    ToolRun help = Talvor("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("usage: talvor"), std::string::npos);
    for (const char* command : {"demo", "script", "color"})
        EXPECT_NE(help.output.find(command), std::string::npos) << command;
    ToolRun version = Talvor("--version");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.output.rfind("talvor ", 0), 0u);
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
        EXPECT_NE(run.output.find(c.message), std::string::npos) << run.output;
    }
}
