// talvor: the command line face of the library, one subcommand per subsystem.
#include "tools/talvor/commands.h"

#include "platform/app/resource_module.h"
#include "platform/codepage/code_page.h"
#include "resources/resource_guard.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace talvor::tool {
namespace {

struct Command {
    const char* name;
    CommandFunction run;
    const char* summary;
};

const Command Commands[] = {
    {"demo", RunDemo, "run the bundled sample form through every subcommand"},
    {"script", RunScript,
     "parse|regen|tree|op|check ...: take a form script apart, write it back, check it"},
    {"color", RunColor, "FILE [--language NAME|--code N] [--html|--ansi]: colour source text"},
    {"render", RunRender, "paint an editor view of a file to PNG"},
    {"typelib", RunTypelib, "dump|props: describe a type library or PE file"},
    {"alias", RunAlias, "get|set|fill|normalize|list|languages: per-control alias files"},
    {"commands", RunCommands,
     "new|dump|reset|save|load|copy-bar|paste-bar|render: command-bar designs"},
    {"lsp", RunLsp, "language server for VBScript form scripts over standard input and output"},
    {"undo", RunUndo, "demo|ls FILE: snapshot history of a design, compound files"},
};

void PrintUsage(std::FILE* out) {
    std::fprintf(out, "usage: talvor [--code-page N] [--resources FILE] COMMAND [ARGS...]\n"
                      "       talvor --help | --version\n\n"
                      "commands:\n");
    for (const Command& command : Commands)
        std::fprintf(out, "  %-9s %s\n", command.name, command.summary);
    std::fprintf(out,
                 "\noptions:\n"
                 "  --code-page N     system code page of 8-bit text (1252, 936, 65001, ...)\n"
                 "  --resources FILE  resource script to use in place of the built-in texts\n");
}

} // namespace

} // namespace talvor::tool

int main(int argc, char** argv) {
    using namespace talvor::tool;
    Args args(argv + 1, argv + argc);
    std::size_t i = 0;
    while (i < args.size() && args[i].rfind("--", 0) == 0) {
        const std::string& option = args[i];
        if (option == "--help" || option == "-h") {
            PrintUsage(stdout);
            return ExitOk;
        }
        if (option == "--version") {
            std::printf("talvor %s\n", TALVOR_VERSION);
            return ExitOk;
        }
        if (option == "--code-page" || option == "--resources") {
            if (i + 1 >= args.size())
                return UserError(option + " needs a value");
            const std::string& value = args[i + 1];
            if (option == "--code-page") {
                char* end = nullptr;
                unsigned long page = std::strtoul(value.c_str(), &end, 10);
                if (end == value.c_str() || *end != '\0' ||
                    !talvor::platform::SetSystemCodePage(static_cast<unsigned>(page)))
                    return UserError("unknown code page '" + value + "'");
            } else {
                std::string error;
                talvor::resources::RegisterTalvorRes();
                if (!talvor::platform::LoadResourceModuleFile(talvor::resources::ModuleName, value,
                                                              error))
                    return UserError(error);
            }
            i += 2;
            continue;
        }
        return UserError("unknown option '" + option + "' (see talvor --help)");
    }
    if (i >= args.size()) {
        PrintUsage(stderr);
        return ExitUserError;
    }
    for (const Command& command : Commands) {
        if (args[i] != command.name)
            continue;
        return RunGuarded(command.run, Args(args.begin() + static_cast<long>(i) + 1, args.end()),
                          stdout);
    }
    return UserError("unknown command '" + args[i] + "' (see talvor --help)");
}
