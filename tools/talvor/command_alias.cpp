// talvor alias: read and change per-control alias files, fill a member's gaps from the other
// files of its OcxAlias folder, and list what the language picker offers.
#include "tools/talvor/commands.h"

#include "alias/lcid_combo_box.h"
#include "alias/ocx_alias.h"
#include "platform/app/module_path.h"
#include "platform/codepage/code_page.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

namespace talvor::tool {
namespace {

using Json = nlohmann::json;

const char* const AliasHelp =
    "usage: talvor alias get FILE KIND NAME [--lang L] [--json]\n"
    "       talvor alias set FILE KIND NAME [--alias A] [--description D] [--enum E] [--lang L]\n"
    "       talvor alias fill FILE KIND NAME [--lang L]\n"
    "       talvor alias normalize FILE\n"
    "       talvor alias list FILE [--lang L] [--json]\n"
    "       talvor alias languages [--code-pages] [--json]\n"
    "\n"
    "FILE is a control's alias file; KIND is property, event or method (or 1, 2, 3); L is a\n"
    "language number such as 0x0409 (default: the file's own default language, else 0, the\n"
    "system's language).\n"
    "\n"
    "  get        a member's alias, description and enumeration text in one language\n"
    "  set        writes a member's block in one language (no value removes it) and saves\n"
    "  fill       fills the member's empty values from the other files of the file's OcxAlias\n"
    "             folder, and saves\n"
    "  normalize  loads the file (which normalises its layout) and saves it\n"
    "  list       every member of every kind with its values in one language\n"
    "  languages  the languages (or code pages) the language picker offers, with numbers\n";

const char* const KindNames[] = {"", "property", "event", "method"};

struct Parsed {
    std::vector<std::string> words;
    std::map<std::string, std::string> values; // --alias, --description, --enum, --lang
    bool json = false;
    bool codePages = false;
};

bool ParseArguments(const Args& args, Parsed& parsed, std::string& error) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--json") {
            parsed.json = true;
        } else if (arg == "--code-pages") {
            parsed.codePages = true;
        } else if (arg == "--alias" || arg == "--description" || arg == "--enum" ||
                   arg == "--lang") {
            if (i + 1 >= args.size()) {
                error = arg + " needs a value";
                return false;
            }
            parsed.values[arg.substr(2)] = args[++i];
        } else if (arg.rfind("--", 0) == 0) {
            error = "unknown option '" + arg + "' (see talvor alias --help)";
            return false;
        } else {
            parsed.words.push_back(arg);
        }
    }
    return true;
}

bool ParseKind(const std::string& word, unsigned& kind) {
    for (unsigned k = 1; k <= 3; ++k)
        if (word == KindNames[k] || word == std::to_string(k)) {
            kind = k;
            return true;
        }
    return false;
}

// The alias object with the section reader a listing needs.
struct AliasFile : CTalvorOcxAlias {
    using CTalvorOcxAlias::GetSection;
};

// Loads FILE; a file that doesn't exist is refused, not read as an empty alias text.
int Load(AliasFile& alias, const std::string& path) {
    if (!std::filesystem::is_regular_file(path))
        return UserError("alias: " + path + ": no such file");
    if (!alias.LoadFromFile(path.c_str()))
        return UserError("alias: " + path + ": can't be read");
    return ExitOk;
}

// The language of --lang, else the file's default language, else 0.
int Language(AliasFile& alias, const Parsed& parsed, DWORD& language) {
    const auto given = parsed.values.find("lang");
    if (given == parsed.values.end()) {
        language = 0;
        alias.GetLCID(language);
        return ExitOk;
    }
    char* end = nullptr;
    const unsigned long number = std::strtoul(given->second.c_str(), &end, 0);
    if (end == given->second.c_str() || *end != '\0' || number > 0xFFFFFFFFul)
        return UserError("alias: '" + given->second + "' is no language number (e.g. 0x0409)");
    language = static_cast<DWORD>(number);
    return ExitOk;
}

int Save(AliasFile& alias, const std::string& path) {
    if (!alias.SaveToFile(path.c_str()))
        return UserError(std::string(alias.GetLastSaveError()));
    return ExitOk;
}

Json Member(const tagALIAS_INFO& info) {
    return Json{{"name", info.strName.Str()},
                {"alias", info.strAlias.Str()},
                {"description", info.strDescription.Str()},
                {"enum", info.strEnum.Str()}};
}

void PrintMember(std::ostream& out, const char* kind, const tagALIAS_INFO& info) {
    out << kind << ' ' << info.strName << '\n';
    if (!info.strAlias.IsEmpty())
        out << "  alias:       " << info.strAlias << '\n';
    if (!info.strDescription.IsEmpty())
        out << "  description: " << info.strDescription << '\n';
    if (!info.strEnum.IsEmpty())
        out << "  enum:        " << info.strEnum << '\n';
}

int Get(std::ostream& out, const Parsed& parsed) {
    AliasFile alias;
    unsigned kind = 0;
    DWORD language = 0;
    if (int code = Load(alias, parsed.words[1]))
        return code;
    if (!ParseKind(parsed.words[2], kind))
        return UserError("alias: unknown kind '" + parsed.words[2] + "'");
    if (int code = Language(alias, parsed, language))
        return code;
    tagALIAS_INFO info;
    info.strName = parsed.words[3].c_str();
    const CString unset("\x01");
    info.strAlias = info.strDescription = info.strEnum = unset;
    alias.GetAlias(kind, info.strName, info.strAlias, info.strDescription, info.strEnum, language);
    if (info.strAlias == unset) {
        CString number;
        number.Format("0x%04x", static_cast<unsigned>(language));
        return UserError("alias: no " + std::string(KindNames[kind]) + " '" + parsed.words[3] +
                         "' in language " + number.Str());
    }
    if (parsed.json)
        out << Member(info).dump(2) << '\n';
    else
        PrintMember(out, KindNames[kind], info);
    return ExitOk;
}

int Set(std::ostream& out, const Parsed& parsed, bool fill) {
    AliasFile alias;
    unsigned kind = 0;
    DWORD language = 0;
    const std::string& path = parsed.words[1];
    if (int code = Load(alias, path))
        return code;
    if (!ParseKind(parsed.words[2], kind))
        return UserError("alias: unknown kind '" + parsed.words[2] + "'");
    if (int code = Language(alias, parsed, language))
        return code;
    const std::string& name = parsed.words[3];
    if (fill) {
        // The other files are found beside the executable's folder; this one's folder counts.
        const std::filesystem::path folder = std::filesystem::absolute(path).parent_path();
        if (folder.filename() != "OcxAlias")
            return UserError("alias: fill needs the file inside an OcxAlias folder");
        talvor::platform::SetExecutablePath((folder.parent_path() / "talvor").string());
        alias.GetAliasFromFiles(kind, name.c_str(), language);
    } else {
        auto value = [&](const char* key) {
            const auto found = parsed.values.find(key);
            return found == parsed.values.end() ? std::string() : found->second;
        };
        alias.SetAlias(kind, name.c_str(), value("alias").c_str(), value("description").c_str(),
                       value("enum").c_str(), language);
    }
    if (int code = Save(alias, path))
        return code;
    out << (fill ? "filled " : "set ") << KindNames[kind] << ' ' << name << " in " << path << '\n';
    return ExitOk;
}

int List(std::ostream& out, const Parsed& parsed) {
    AliasFile alias;
    DWORD language = 0;
    if (int code = Load(alias, parsed.words[1]))
        return code;
    if (int code = Language(alias, parsed, language))
        return code;
    const char* const heads[] = {"", "[.Properties]", "[.Events]", "[.Methods]"};
    Json json = {{"clsid", alias.GetCLSID().Str()}, {"language", language}};
    for (unsigned kind = 1; kind <= 3; ++kind) {
        CArray<tagALIAS_INFO, tagALIAS_INFO> infos;
        alias.GetAllInfo(alias.GetSection(alias.GetIniText(), heads[kind], "[."), language, infos);
        Json members = Json::array();
        for (INT_PTR i = 0; i < infos.GetSize(); ++i) {
            members.push_back(Member(infos[i]));
            if (!parsed.json)
                PrintMember(out, KindNames[kind], infos[i]);
        }
        json[std::string(KindNames[kind]) + "s"] = members;
    }
    if (parsed.json)
        out << json.dump(2) << '\n';
    return ExitOk;
}

int Languages(std::ostream& out, const Parsed& parsed) {
    CTalvorLcidComboBox box;
    box.Create(0);
    box.Init(parsed.codePages ? 0 : 1);
    Json json = Json::array();
    for (int index = 0; index < box.GetCount(); ++index) {
        CString text;
        box.GetLBText(index, text);
        DWORD number = 0;
        if (parsed.codePages)
            number = static_cast<const MIMECPINFO*>(box.GetItemDataPtr(index))->uiCodePage;
        else
            number = static_cast<const RFC1766INFO*>(box.GetItemDataPtr(index))->lcid;
        if (parsed.json) {
            json.push_back({{"number", number}, {"name", text.Str()}});
        } else {
            char formatted[16];
            std::snprintf(formatted, sizeof formatted, parsed.codePages ? "%5u" : "0x%04x",
                          static_cast<unsigned>(number));
            out << formatted << "  " << text << '\n';
        }
    }
    if (parsed.json)
        out << json.dump(2) << '\n';
    box.DestroyWindow();
    return ExitOk;
}

int RunAliasInto(std::ostream& out, const Args& args) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        if (args.empty())
            std::cerr << AliasHelp;
        else
            out << AliasHelp;
        return args.empty() ? ExitUserError : ExitOk;
    }
    Parsed parsed;
    std::string error;
    if (!ParseArguments(args, parsed, error))
        return UserError(error);
    const std::string& verb = parsed.words.empty() ? args[0] : parsed.words[0];
    const std::map<std::string, std::size_t> wordCounts = {
        {"get", 4}, {"set", 4}, {"fill", 4}, {"normalize", 2}, {"list", 2}, {"languages", 1}};
    const auto expected = wordCounts.find(verb);
    if (expected == wordCounts.end())
        return UserError("alias: unknown subcommand '" + verb + "' (see talvor alias --help)");
    if (parsed.words.size() != expected->second)
        return UserError("alias " + verb + ": wrong number of arguments (see talvor alias --help)");
    if (verb == "get")
        return Get(out, parsed);
    if (verb == "set" || verb == "fill")
        return Set(out, parsed, verb == "fill");
    if (verb == "list")
        return List(out, parsed);
    if (verb == "languages")
        return Languages(out, parsed);
    AliasFile alias;
    if (int code = Load(alias, parsed.words[1]))
        return code;
    if (int code = Save(alias, parsed.words[1]))
        return code;
    out << "normalized " << parsed.words[1] << '\n';
    return ExitOk;
}

} // namespace

int RunAlias(const Args& args, std::FILE* output) {
    // Everything is said into a buffer first and handed to the given stream at the end.
    std::ostringstream out;
    const int code = RunAliasInto(out, args);
    const std::string text = out.str();
    std::fwrite(text.data(), 1, text.size(), output);
    return code;
}

} // namespace talvor::tool
