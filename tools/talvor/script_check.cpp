// Checks VBScript files with the host's parser. Errors go to standard output in the form
// editors and build tools jump to; the exit code is 1 when any file has one.
#include "tools/talvor/script_check.h"

#include "host/base/vbscript_parser.h"
#include "platform/files/file_system.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>
#include <vector>

namespace talvor::tool {

int RunScriptCheck(const Args& args) {
    bool json = false;
    std::vector<std::string> files;
    for (const std::string& arg : args) {
        if (arg == "--json")
            json = true;
        else if (arg.size() > 1 && arg[0] == '-')
            return UserError("script check: unknown option '" + arg + "'");
        else
            files.push_back(arg);
    }
    if (files.empty())
        return UserError("script check: no script given (see talvor script --help)");

    nlohmann::json report = nlohmann::json::array();
    bool anyError = false;
    for (const std::string& file : files) {
        std::string text, error;
        if (!platform::ReadWholeFile(file, text, error))
            return UserError(error);
        const host::vbscript::SyntaxTree tree = host::vbscript::ParseScript(text);
        anyError = anyError || tree.HasErrors();
        nlohmann::json errors = nlohmann::json::array();
        for (const host::vbscript::SyntaxError& e : tree.errors) {
            if (json) {
                errors.push_back({{"line", e.position.line},
                                  {"column", e.position.column},
                                  {"length", e.length},
                                  {"message", e.message}});
            } else {
                std::printf("%s:%u:%u: %s\n", file.c_str(), e.position.line, e.position.column,
                            e.message.c_str());
            }
        }
        if (json)
            report.push_back({{"file", file}, {"errors", errors}});
    }
    // Script text may hold any bytes; replace what isn't UTF-8 rather than fail the dump.
    if (json)
        std::printf("%s\n",
                    report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
    return anyError ? ExitUserError : ExitOk;
}

} // namespace talvor::tool
