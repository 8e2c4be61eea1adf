// Runs the built talvor program as a user would, for the tests of its commands.
#pragma once

#include <string>

namespace talvor::testing {

struct ToolRun {
    int exitCode = -1;
    std::string out; // standard output
    std::string err; // standard error
};

// Runs `talvor ARGUMENTS` through the shell, with environment ("NAME=value ...") in front when
// given. Standard error goes to a file of this process, so test programs may run side by side.
ToolRun RunTalvor(const std::string& arguments, const std::string& environment = "");

} // namespace talvor::testing
