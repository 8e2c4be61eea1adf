// talvor render: paints an editor view of a file, exactly as the editor shows it, to a PNG.
#include "tools/talvor/commands.h"

#include "editor/syntax_edit.h"
#include "platform/app/registry_values.h"
#include "platform/draw/png_file.h"
#include "platform/files/file_system.h"
#include "platform/window/wnd.h"
#include "syntax/languages.h"

#include <cstdlib>
#include <string>

namespace talvor::tool {
namespace {

const char* const RenderHelp =
    "usage: talvor render FILE -o OUT.png [options]\n"
    "\n"
    "Paints the editor's view of FILE, as a user would see it, into a PNG picture.\n"
    "\n"
    "  -o OUT.png          the picture to write\n"
    "  --language NAME     the colouring language by name (default: from the file's extension)\n"
    "  --width W           view width in pixels (default 800)\n"
    "  --height H          view height in pixels (default 600)\n"
    "  --line-numbers      show line numbers\n"
    "  --wrap 0|1|2        0 no wrapping (default), 1 wrapping as the control stands, 2 wrap\n"
    "                      at the window\n"
    "  --select A:B        select characters A to B\n"
    "  --caret N           put the caret before character N\n"
    "  --show-tabs         mark tabs\n"
    "  --show-line-ends    mark line ends (arrow down) and soft wraps (arrow right)\n"
    "  --cross             the cross hair at the caret\n"
    "  --underline         underline every line\n"
    "  --current-line      give the caret's line its own background\n"
    "  --goto LINE         scroll to the line (from 1)\n"
    "  --font NAME         font face (default: the user interface font, DejaVu Sans Mono)\n"
    "  --size PT           font size in points (default 10)\n";

bool ParseInt(const std::string& text, long& value) {
    if (text.empty())
        return false;
    char* end = nullptr;
    value = std::strtol(text.c_str(), &end, 10);
    return *end == '\0';
}

} // namespace

int RunRender(const Args& args, std::FILE* out) {
    std::string file, output, language, font;
    long width = 800, height = 600, wrap = 0, size = 0, caret = -1, gotoLine = 0;
    long selStart = -1, selEnd = -1;
    bool lineNumbers = false, tabs = false, lineEnds = false, cross = false, underline = false,
         currentLine = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= args.size())
                return false;
            into = args[++i];
            return true;
        };
        auto number = [&](long& into) {
            std::string text;
            return value(text) && ParseInt(text, into);
        };
        if (arg == "--help" || arg == "-h") {
            std::fputs(RenderHelp, out);
            return ExitOk;
        }
        bool ok = true;
        if (arg == "-o")
            ok = value(output);
        else if (arg == "--language")
            ok = value(language);
        else if (arg == "--font")
            ok = value(font);
        else if (arg == "--width")
            ok = number(width) && width > 0 && width <= 8192;
        else if (arg == "--height")
            ok = number(height) && height > 0 && height <= 8192;
        else if (arg == "--wrap")
            ok = number(wrap) && wrap >= 0 && wrap <= 2;
        else if (arg == "--size")
            ok = number(size) && size > 0 && size <= 200;
        else if (arg == "--caret")
            ok = number(caret) && caret >= 0;
        else if (arg == "--goto")
            ok = number(gotoLine);
        else if (arg == "--select") {
            std::string range;
            const auto colon = value(range) ? range.find(':') : std::string::npos;
            ok = colon != std::string::npos && ParseInt(range.substr(0, colon), selStart) &&
                 ParseInt(range.substr(colon + 1), selEnd) && selStart >= 0 && selEnd >= 0;
        } else if (arg == "--line-numbers")
            lineNumbers = true;
        else if (arg == "--show-tabs")
            tabs = true;
        else if (arg == "--show-line-ends")
            lineEnds = true;
        else if (arg == "--cross")
            cross = true;
        else if (arg == "--underline")
            underline = true;
        else if (arg == "--current-line")
            currentLine = true;
        else if (!arg.empty() && arg[0] == '-')
            return UserError("render: unknown option " + arg);
        else if (file.empty())
            file = arg;
        else
            return UserError("render: more than one file given");
        if (!ok)
            return UserError("render: " + arg + " needs a valid value (see talvor render --help)");
    }
    if (file.empty() || output.empty())
        return UserError("render: give a FILE and -o OUT.png (see talvor render --help)");
    {
        std::string contents, error;
        if (!platform::ReadWholeFile(file, contents, error))
            return UserError("render: cannot read " + file + ": " + error);
    }

    int code = static_cast<int>(syntax::LanguageForFileName(file));
    if (!language.empty()) {
        code = syntax::LanguageByName(language);
        if (code < 0 ||
            (static_cast<UINT>(code) == syntax::PlainTextCode && language != "Plain text"))
            return UserError("render: no language is called \"" + language + "\"");
    }

    // The editor takes its font from the system's GUI font description.
    const char* key = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\GRE_Initialize";
    if (size > 0)
        platform::SetRegistryDword(HKEY_LOCAL_MACHINE, key, "GUIFont.Height",
                                   static_cast<DWORD>(size));
    if (!font.empty())
        platform::SetRegistryString(HKEY_LOCAL_MACHINE, key, "GUIFont.Facename", font);

    CTalvorSyntaxEdit edit;
    if (!edit.Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL,
                     RECT{0, 0, static_cast<LONG>(width), static_cast<LONG>(height)}, nullptr, 1))
        return InternalError("render: the editor could not be created");
    edit.SelectLanguage(code);
    edit.SetWrapMode(static_cast<int>(wrap));
    edit.ShowLineNumber(lineNumbers ? 1 : 0);
    edit.ShowTabSpace(tabs ? 1 : 0);
    edit.ShowReturnLineToken(lineEnds ? 1 : 0);
    edit.ShowCross(cross ? 1 : 0);
    edit.ShowUnderLine(underline ? 1 : 0);
    edit.ShowSelectLine(currentLine ? 1 : 0);
    edit.LoadFile(file.c_str());
    if (selStart >= 0)
        edit.SetSel(selStart, selEnd);
    else if (caret >= 0)
        edit.SetSel(caret, caret);
    else
        edit.SetSel(0, 0);
    AfxPumpMessages();
    if (gotoLine != 0) {
        edit.GotoLine(static_cast<int>(gotoLine));
        AfxPumpMessages();
    }
    edit.SendMessage(WM_PAINT);
    AfxPumpMessages();

    std::string error;
    if (!platform::WritePng(edit.GetLastPaintedRaster(), output, error))
        return UserError("render: " + error);
    std::fprintf(out, "%s: %ldx%ld, %d lines\n", output.c_str(), width, height,
                 edit.GetLineCount());
    return ExitOk;
}

} // namespace talvor::tool
