// The subcommands of the talvor tool. Each takes the arguments behind its name and the stream
// its results go to, and returns the exit code: 0 ok, 1 bad input from the user, 2 a fault of
// the tool itself. Messages go to standard error.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace talvor::tool {

using Args = std::vector<std::string>;
using CommandFunction = int (*)(const Args& args, std::FILE* out);

enum ExitCode { ExitOk = 0, ExitUserError = 1, ExitInternalError = 2 };

int RunScript(const Args& args, std::FILE* out);
int RunColor(const Args& args, std::FILE* out);
int RunRender(const Args& args, std::FILE* out);
int RunTypelib(const Args& args, std::FILE* out);
int RunAlias(const Args& args, std::FILE* out);
int RunCommands(const Args& args, std::FILE* out);
int RunUndo(const Args& args, std::FILE* out);
int RunDemo(const Args& args, std::FILE* out);
int RunLsp(const Args& args, std::FILE* out);

// Runs a subcommand and turns what it throws into a message and an exit code: the framework's
// file and archive exceptions (thrown as pointers, deleted here) are bad input, 1, except an
// archive used against its direction; every other exception is a fault of the tool, 2.
int RunGuarded(CommandFunction run, const Args& args, std::FILE* out);

// Prints "talvor: " and the message to standard error and returns ExitUserError.
int UserError(const std::string& message);
// The same for faults of the tool; returns ExitInternalError.
int InternalError(const std::string& message);

} // namespace talvor::tool
