// talvor demo: the bundled sample form through every subcommand of this build, as a tour of
// what the library does. Each step says which command it runs, so a user can repeat it.
#include "tools/talvor/commands.h"

#include "platform/files/file_system.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace talvor::tool {
namespace {

void Step(std::FILE* out, int number, const std::string& title, const std::string& command) {
    std::fprintf(out, "\n== %d. %s\n   $ talvor %s\n\n", number, title.c_str(), command.c_str());
    // Messages of the step go to standard error: what came before must be out first.
    std::fflush(out);
}

std::string Join(const Args& args) {
    std::string text;
    for (const std::string& arg : args) {
        if (!text.empty())
            text += ' ';
        text += arg.find(' ') == std::string::npos ? arg : "'" + arg + "'";
    }
    return text;
}

// Runs one subcommand as the demo shows it; false when it failed.
bool Show(std::FILE* out, int number, const std::string& title, CommandFunction run,
          const std::string& name, const Args& args) {
    Step(out, number, title, name + " " + Join(args));
    int code = RunGuarded(run, args, out);
    std::fflush(out);
    if (code != ExitOk)
        std::fprintf(stderr, "talvor: demo: step %d failed with exit code %d\n", number, code);
    return code == ExitOk;
}

std::string TempFolder() {
    const char* base = std::getenv("TMPDIR");
    std::string folder = std::string(base != nullptr && *base == '/' ? base : "/tmp") +
                         "/talvor-demo-" + std::to_string(::getuid());
    platform::CreateDirectories(folder);
    return folder;
}

} // namespace

int RunDemo(const Args& args, std::FILE* out) {
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "-h")) {
        std::fprintf(out,
                     "usage: talvor demo [FORM SCRIPT]\n\n"
                     "Runs a form description and its script (by default the bundled sample,\n"
                     "samples/order_form.json and samples/order_form.vbs) through the script\n"
                     "engine and the colouring of this build, showing each command it runs.\n");
        return ExitOk;
    }
    if (args.size() != 0 && args.size() != 2)
        return UserError("demo: give no arguments or FORM SCRIPT (see talvor demo --help)");
    const std::string samples = std::string(TALVOR_SOURCE_DIR) + "/samples";
    const std::string form = args.empty() ? samples + "/order_form.json" : args[0];
    const std::string script = args.empty() ? samples + "/order_form.vbs" : args[1];
    for (const std::string& path : {form, script})
        if (!platform::FileExists(path))
            return UserError("demo: cannot find '" + path + "'");

    const std::string folder = TempFolder();
    const std::string regenerated = folder + "/order_form.regen.vbs";
    const std::string again = folder + "/order_form.regen2.vbs";
    const std::string page = folder + "/order_form.html";

    std::fprintf(out, "Talvor demo: the form %s and its script %s\n", form.c_str(), script.c_str());
    bool ok = true;
    ok &= Show(out, 1, "The script taken apart into its record", RunScript, "script",
               {"parse", form, script});
    ok &= Show(out, 2, "Written back in the system's order of blocks", RunScript, "script",
               {"regen", form, script, "--output", regenerated});
    if (ok) {
        // A script that went through once comes out of a second round trip unchanged.
        ok &= RunGuarded(RunScript, {"regen", form, regenerated, "--output", again}, out) == ExitOk;
        std::string first, second, error;
        ok &= platform::ReadWholeFile(regenerated, first, error) &&
              platform::ReadWholeFile(again, second, error);
        std::fprintf(out, "Wrote %s (%zu bytes). A second round trip %s.\n", regenerated.c_str(),
                     first.size(),
                     ok && first == second ? "changes nothing" : "CHANGED THE SCRIPT");
        ok &= first == second;
    }
    ok &= Show(out, 3, "Each procedure as the code tree: title, flow class, nesting", RunScript,
               "script", {"tree", form, script});
    ok &= Show(out, 4, "A code operation: a new If block behind line 1 of cmdOK_Click", RunScript,
               "script",
               {"op", form, script, "cmdOK_Click", "insert-after", "1", "If (itemCount > 0) Then"});
    ok &= Show(out, 5,
               "The Exit statement of cmdOK_Click moved to the top, its text worked out again",
               RunScript, "script", {"op", form, script, "cmdOK_Click", "move-top", "2"});
    ok &= Show(out, 6,
               "The script coloured as Basic (in colour on a terminal; otherwise the cookie at "
               "each line end and {n} before each run)",
               RunColor, "color", {script, "--language", "Basic"});
    Step(out, 7, "The same colouring as a complete HTML page",
         "color " + script + " --html > " + page);
    {
        std::FILE* pageFile = std::fopen(page.c_str(), "w");
        int code = pageFile == nullptr ? UserError("demo: cannot create '" + page + "'")
                                       : RunGuarded(RunColor, {script, "--html"}, pageFile);
        if (pageFile != nullptr && std::fclose(pageFile) != 0 && code == ExitOk)
            code = UserError("demo: cannot write '" + page + "'");
        std::fprintf(out, "Wrote %s\n", page.c_str());
        ok &= code == ExitOk;
    }
    const std::string formAlias = samples + "/OcxAlias/Orvane 2_0 Form.ini";
    ok &= Show(out, 8, "The form's alias file: its members' names and descriptions in German",
               RunAlias, "alias", {"list", formAlias, "--lang", "0x0407"});
    ok &= Show(out, 9, "The undo history: snapshots of a design in a compound file", RunUndo,
               "undo", {"demo", form});
    const std::string picture = folder + "/order_form.png";
    ok &=
        Show(out, 10, "The script in the editor: line numbers, tab and line-end marks, a selection",
             RunRender, "render",
             {script, "-o", picture, "--line-numbers", "--show-tabs", "--show-line-ends",
              "--select", "120:160", "--width", "800", "--height", "480"});
    const std::string design = folder + "/commands.design";
    const std::string bars = folder + "/commands.png";
    std::remove(design.c_str()); // a design of an earlier run; "new" doesn't overwrite one
    ok &= Show(out, 11, "A new command design: the standard bars and the pool of commands",
               RunCommands, "commands", {"new", design});
    ok &= Show(out, 12, "The design's bars drawn with their icons and captions", RunCommands,
               "commands", {"render", design, "-o", bars});
    std::fprintf(out, ok ? "\nDemo finished.\n" : "\nDemo finished with failures (see above).\n");
    return ok ? ExitOk : ExitInternalError;
}

} // namespace talvor::tool
