// Running the talvor program from tests.
#include "tests/support/tool_run.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace talvor::testing {

ToolRun RunTalvor(const std::string& arguments, const std::string& environment) {
    const std::string errPath =
        ::testing::TempDir() + "talvor_stderr_" + std::to_string(::getpid()) + ".txt";
    const std::string command = (environment.empty() ? "" : environment + " ") +
                                std::string(TALVOR_BINARY_DIR) + "/tools/talvor/talvor " +
                                arguments + " 2>" + errPath;
    ToolRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return run;
    std::array<char, 65536> buffer;
    std::size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        run.out.append(buffer.data(), n);
    const int status = ::pclose(pipe);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::ifstream err(errPath, std::ios::binary);
    run.err.assign(std::istreambuf_iterator<char>(err), std::istreambuf_iterator<char>());
    return run;
}

} // namespace talvor::testing
