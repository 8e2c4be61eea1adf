// The subcommands of the talvor tool. Each takes the arguments behind its name and returns
// the exit code: 0 ok, 1 bad input from the user, 2 a fault of the tool itself.
#pragma once

#include <string>
#include <vector>

namespace talvor::tool {

using Args = std::vector<std::string>;

enum ExitCode { ExitOk = 0, ExitUserError = 1, ExitInternalError = 2 };

int RunScript(const Args& args);
int RunColor(const Args& args);
int RunRender(const Args& args);
int RunTypelib(const Args& args);
int RunAlias(const Args& args);
int RunCommands(const Args& args);
int RunUndo(const Args& args);
int RunDemo(const Args& args);

// Prints "talvor: " and the message to standard error and returns ExitUserError.
int UserError(const std::string& message);
// The same for faults of the tool; returns ExitInternalError.
int InternalError(const std::string& message);
// For subcommands whose subsystem is not built yet.
int NotAvailable(const std::string& command);

} // namespace talvor::tool
