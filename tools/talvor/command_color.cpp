// talvor color: colours a file line by line with the line parser of its language, carrying the
// cookie across hard line ends as the editor does, and prints marks, ANSI colours or HTML.
#include "tools/talvor/commands.h"

#include "platform/files/file_system.h"
#include "syntax/document_colourer.h"
#include "syntax/languages.h"
#include "tools/talvor/color_output.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace talvor::tool {
namespace {

const char* const ColorHelpStart =
    "usage: talvor color FILE [--language NAME | --code N] [--html | --ansi | --marks] [--blank]\n"
    "\n"
    "Colours FILE line by line with the line parser of a language; the parse cookie is carried\n"
    "across line ends as the editor carries it.\n"
    "\n"
    "  --language NAME  the language by its exact name (\"Basic\", \"C++\", \"Object Pascal\",\n"
    "                   \"Plain text\", ...); without it and --code the file's extension decides\n"
    "  --code N         the language by its code, 0 to {plain} ({plain} is plain text)\n"
    "  --html           a complete HTML page in the default colours, always in UTF-8: text of\n"
    "                   another code page is converted\n"
    "  --ansi           24-bit ANSI colours, normal text in the terminal's own colour (the\n"
    "                   default when standard output is a terminal); with NO_COLOR set in the\n"
    "                   environment the text is written without colours\n"
    "  --marks          each line as \"CC text\": the cookie at its end in hex, then the text "
    "with\n"
    "                   {n} before each run, n the colour index (the default otherwise)\n"
    "  --blank          give every line a trailing blank before parsing, as the editor does\n"
    "\n"
    "Colour indices: 0 comment, 1 keyword, 2 normal, 3 number, 4 string, 5 character.\n"
    "The system code page (talvor --code-page N color ...) decides which bytes start a\n"
    "multi-byte character; offsets are byte offsets.\n";

enum class Format { Marks, Ansi, Html };

// The help text with the plain text code filled in.
std::string ColorHelp() {
    std::string help = ColorHelpStart;
    const std::string plain = std::to_string(syntax::PlainTextCode);
    for (std::size_t at; (at = help.find("{plain}")) != std::string::npos;)
        help.replace(at, 7, plain);
    return help;
}

std::string LanguageNames() {
    std::string names;
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        names += names.empty() ? "" : ", ";
        names += row.m_pszName;
    }
    return names + ", Plain text";
}

} // namespace

int RunColor(const Args& args, std::FILE* output) {
    std::string file;
    std::string languageName;
    std::string languageCode;
    bool haveFormat = false;
    Format format = Format::Marks;
    bool blank = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(ColorHelp().c_str(), output);
            return ExitOk;
        }
        if (arg == "--language" || arg == "--code") {
            if (i + 1 >= args.size())
                return UserError("color: " + arg + " needs a value");
            (arg == "--language" ? languageName : languageCode) = args[++i];
            continue;
        }
        if (arg == "--html" || arg == "--ansi" || arg == "--marks") {
            if (haveFormat)
                return UserError("color: give only one of --html, --ansi, --marks");
            haveFormat = true;
            format =
                arg == "--html" ? Format::Html : (arg == "--ansi" ? Format::Ansi : Format::Marks);
            continue;
        }
        if (arg == "--blank") {
            blank = true;
            continue;
        }
        if (arg.size() > 1 && arg[0] == '-')
            return UserError("color: unknown option '" + arg + "' (see talvor color --help)");
        if (!file.empty())
            return UserError("color: one file only ('" + file + "' and '" + arg + "')");
        file = arg;
    }
    if (file.empty())
        return UserError("color: no file given (see talvor color --help)");
    if (!languageName.empty() && !languageCode.empty())
        return UserError("color: give --language or --code, not both");
    if (!haveFormat)
        format = ::isatty(::fileno(output)) ? Format::Ansi : Format::Marks;

    UINT language = 0;
    if (!languageName.empty()) {
        const int code = syntax::LanguageByName(languageName);
        if (code < 0)
            return UserError("color: unknown language '" + languageName +
                             "' (names: " + LanguageNames() + ")");
        language = static_cast<UINT>(code);
    } else if (!languageCode.empty()) {
        char* end = nullptr;
        const unsigned long code = std::strtoul(languageCode.c_str(), &end, 10);
        if (end == languageCode.c_str() || *end != '\0' || code > syntax::PlainTextCode)
            return UserError("color: language code '" + languageCode + "' is not 0 to " +
                             std::to_string(syntax::PlainTextCode));
        language = static_cast<UINT>(code);
    } else {
        language = syntax::LanguageForFileName(file);
    }

    std::string text, error;
    if (!platform::ReadWholeFile(file, text, error))
        return UserError("color: " + error);

    CTalvorSyntax syntax;
    syntax::DocumentColourer colourer(syntax);
    colourer.LoadLanguage(language);
    colourer.SetAppendBlank(blank);

    OutputBuffer out(output);
    if (format == Format::Html)
        AppendHtmlPageStart(out, syntax, file);
    // NO_COLOR (set and not empty) turns terminal colours off, as in most command line tools.
    const char* noColour = std::getenv("NO_COLOR");
    const bool ansiColour = noColour == nullptr || *noColour == '\0';
    std::string marked;
    colourer.ColourText(text, [&](const syntax::ColouredLine& line) {
        switch (format) {
        case Format::Marks:
            AppendMarkedLine(out, marked, line.text, line.runs, line.count, line.cookieAtEnd);
            break;
        case Format::Ansi:
            AppendAnsiLine(out, line.text, line.runs, line.count, syntax, ansiColour);
            break;
        case Format::Html:
            AppendHtmlLine(out, line.text, line.runs, line.count);
            break;
        }
    });
    if (format == Format::Html)
        AppendHtmlPageEnd(out);
    if (!out.Flush())
        return UserError("color: cannot write the output");
    if (std::fflush(output) != 0 || std::ferror(output))
        return UserError("color: cannot write the output");
    return ExitOk;
}

} // namespace talvor::tool
