// talvor script: a form script taken apart by the script engine and written back, shown as the
// code tree, and edited one code operation at a time.
#include "tools/talvor/commands.h"

#include "engine/code_tree.h"
#include "engine/script_text_disposal.h"
#include "platform/files/file_system.h"
#include "tools/talvor/script_check.h"
#include "tools/talvor/script_session.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace talvor::tool {
namespace {

using Json = nlohmann::json;

const char* const ScriptHelp =
    "usage: talvor script parse FORM SCRIPT [--json]\n"
    "       talvor script regen FORM SCRIPT [--output FILE]\n"
    "       talvor script tree FORM SCRIPT [--procedure NAME] [--json]\n"
    "       talvor script op FORM SCRIPT PROCEDURE OPERATION INDEX [CODE] [--json]\n"
    "       talvor script check SCRIPT... [--json]\n"
    "       talvor script rename FORM SCRIPT OLD NEW [--output FILE]\n"
    "       talvor script check-name FORM SCRIPT NAME [--scope PROCEDURE]\n"
    "       talvor script uses FORM SCRIPT NAME [--json]\n"
    "       talvor script cmd-ids SCRIPT OLD NEW|--delete [--output FILE]\n"
    "\n"
    "FORM is a form description (JSON: the controls in tab order with their events, and the\n"
    "form's own events); SCRIPT is the form's VBScript text.\n"
    "\n"
    "  parse  the script's record: global block, control handlers, Subs, Functions, form\n"
    "         handlers with their member ids, and the lines outside of any block\n"
    "  regen  the script written back in the system's order of blocks\n"
    "  tree   each procedure's body as the code tree: title, flow class and nesting of each\n"
    "         line (with --json also its block positions and, on an Exit line, its Exit word)\n"
    "  op     one code operation on a procedure's body: new, modify, delete, insert-before,\n"
    "         insert-after, add-else, move-up, move-down, move-top, move-bottom (or 0 to 9) at\n"
    "         line INDEX (from 0) with statement CODE; prints the body and the line to select\n"
    "  check  syntax errors of each VBScript file as FILE:LINE:COLUMN: message (columns count\n"
    "         bytes from 1); exit code 1 when there is any\n"
    "  rename      the script with the control or name OLD renamed to NEW everywhere outside\n"
    "              string literals, the handlers of the control included\n"
    "  check-name  whether NAME is free in the form and its script (or, with --scope, in\n"
    "              that procedure only); prints why not and exits with 1 when it isn't\n"
    "  uses        where the script still uses NAME: event handlers, Subs, Functions, and\n"
    "              the commands and UI expressions of the command handler\n"
    "  cmd-ids     the script with command id OLD changed to NEW in the command handler\n"
    "              ScriptCmdMsg, or removed with --delete\n";

const char* const FlowNames[] = {"none",   "if",       "else",      "end-if",     "for",
                                 "next",   "do-while", "loop",      "do",         "loop-while",
                                 "select", "case",     "case-else", "end-select", "exit"};

const char* const OperationNames[] = {"new",          "modify",     "delete",  "insert-before",
                                      "insert-after", "add-else",   "move-up", "move-down",
                                      "move-top",     "move-bottom"};

CTalvorScriptTextDisposal& Engine() {
    return CTalvorScriptTextDisposal::GetDisposal();
}

// Arguments of a subcommand: the words that aren't options, and the options.
struct Parsed {
    std::vector<std::string> words;
    bool json = false;
    std::string output;
    std::string procedure;
    std::string scope;
    bool remove = false;
};

bool ParseArguments(const Args& args, Parsed& parsed, std::string& error) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "--json") {
            parsed.json = true;
        } else if (arg == "--delete") {
            parsed.remove = true;
        } else if (arg == "--output" || arg == "--procedure" || arg == "--scope") {
            if (i + 1 >= args.size()) {
                error = arg + " needs a value";
                return false;
            }
            (arg == "--output"  ? parsed.output
             : arg == "--scope" ? parsed.scope
                                : parsed.procedure) = args[++i];
        } else if (arg.size() > 2 && arg.compare(0, 2, "--") == 0) {
            error = "unknown option '" + arg + "'";
            return false;
        } else {
            parsed.words.push_back(arg);
        }
    }
    return true;
}

void PrintBlock(const CString& text, std::FILE* out) {
    CStringArray lines;
    Engine().ChangeScripText(text, lines);
    for (const CString& line : lines)
        std::fprintf(out, "    | %s\n", line.GetString());
}

int LineCount(const CString& text) {
    CStringArray lines;
    Engine().ChangeScripText(text, lines);
    return static_cast<int>(lines.GetSize());
}

Json Texts(const CStringArray& texts) {
    Json list = Json::array();
    for (const CString& text : texts)
        list.push_back(ToUtf8(text));
    return list;
}

int Parse(const ScriptSession& session, bool json, std::FILE* out) {
    const VB_ALL_PROGRAMME_INFO& info = session.info;
    if (json) {
        Json ids = Json::array();
        for (long id : info.arrFormEventID)
            ids.push_back(id);
        Json record = {{"strGlobal", ToUtf8(info.strGlobal)},
                       {"arrFormEventCode", Texts(info.arrFormEventCode)},
                       {"arrFormEventID", ids},
                       {"arrCtrlEventCode", Texts(info.arrCtrlEventCode)},
                       {"arrSubCode", Texts(info.arrSubCode)},
                       {"arrFunctionCode", Texts(info.arrFunctionCode)},
                       {"outsideOfBlocks", Texts(session.outside)}};
        std::fprintf(out, "%s\n", record.dump(2).c_str());
        return ExitOk;
    }
    std::fprintf(out, "global block: %d line(s)\n", LineCount(info.strGlobal));
    PrintBlock(info.strGlobal, out);
    const std::pair<const char*, const CStringArray*> sections[] = {
        {"control handlers", &info.arrCtrlEventCode},
        {"subs", &info.arrSubCode},
        {"functions", &info.arrFunctionCode},
        {"form handlers", &info.arrFormEventCode}};
    for (const auto& [title, blocks] : sections) {
        std::fprintf(out, "%s: %d\n", title, static_cast<int>(blocks->GetSize()));
        for (INT_PTR i = 0; i < blocks->GetSize(); ++i) {
            std::fprintf(out, "  [%d] %d line(s)", static_cast<int>(i), LineCount((*blocks)[i]));
            if (blocks == &info.arrFormEventCode)
                std::fprintf(out, ", member id %ld", info.arrFormEventID[i]);
            std::fprintf(out, "\n");
            PrintBlock((*blocks)[i], out);
        }
    }
    std::fprintf(out, "outside of blocks (dropped when written): %d line(s)\n",
                 static_cast<int>(session.outside.GetSize()));
    for (const CString& line : session.outside)
        std::fprintf(out, "    | %s\n", line.GetString());
    return ExitOk;
}

int Regen(const ScriptSession& session, const std::string& output, std::FILE* out) {
    VB_ALL_PROGRAMME_INFO info = session.info;
    CString script = Engine().SetScriptTextByCodeInfo(&info);
    if (output.empty()) {
        std::fwrite(script.GetString(), 1, static_cast<std::size_t>(script.GetLength()), out);
        return ExitOk;
    }
    std::string error;
    if (!platform::WriteFileAtomically(output, script.View(), error))
        return UserError(error);
    return ExitOk;
}

int Tree(const ScriptSession& session, const std::string& only, bool json, std::FILE* out) {
    Json procedures = Json::array();
    bool found = false;
    for (const Procedure& procedure : session.Procedures()) {
        if (!only.empty() && CString(procedure.name.c_str()).CompareNoCase(only.c_str()) != 0)
            continue;
        found = true;
        VB_SUB_PROGRAMME_INFO sub;
        Engine().GetDataByEventCode(procedure.text, &sub);
        CStringArray& body = sub.arrCode;
        // The whole tree in one pass over the body, not a walk of the body per line.
        const std::vector<engine::CodeTreeLine> tree = engine::BuildCodeTree(Engine(), body);
        Json lines = Json::array();
        if (!json)
            std::fprintf(out, "%s\n", procedure.name.c_str());
        for (int i = 0; i < static_cast<int>(body.GetSize()); ++i) {
            const engine::CodeTreeLine& line = tree[static_cast<std::size_t>(i)];
            if (json) {
                lines.push_back({{"index", i},
                                 {"code", ToUtf8(body[i])},
                                 {"title", ToUtf8(line.title)},
                                 {"flow", static_cast<int>(line.flow)},
                                 {"flowName", FlowNames[line.flow]},
                                 {"depth", line.depth},
                                 {"start", line.start},
                                 {"middle", line.middle},
                                 {"end", line.end}});
                if (line.flow == FLOW_EXIT)
                    lines.back()["exit"] = ToUtf8(line.exitWord);
                continue;
            }
            std::string indent(2 * static_cast<std::size_t>(line.depth), ' ');
            std::fprintf(out, "  %3d  %s%s", i, indent.c_str(), line.title.GetString());
            if (line.flow != FLOW_NONE)
                std::fprintf(out, "  [%s]", FlowNames[line.flow]);
            std::fprintf(out, "\n");
        }
        if (json)
            procedures.push_back({{"name", procedure.name}, {"lines", lines}});
    }
    if (!found && !only.empty())
        return UserError("script tree: no procedure named '" + only + "'");
    if (json)
        std::fprintf(out, "%s\n", Json{{"procedures", procedures}}.dump(2).c_str());
    return ExitOk;
}

bool OperationByName(const std::string& name, ENUM_CODE_OPERATE& op) {
    for (int i = 0; i < static_cast<int>(std::size(OperationNames)); ++i) {
        if (name == OperationNames[i] || name == std::to_string(i)) {
            op = static_cast<ENUM_CODE_OPERATE>(i);
            return true;
        }
    }
    return false;
}

int Operate(const ScriptSession& session, const std::vector<std::string>& words, bool json,
            std::FILE* out) {
    const std::string& name = words[3];
    ENUM_CODE_OPERATE op;
    if (!OperationByName(words[4], op))
        return UserError("script op: unknown operation '" + words[4] +
                         "' (see talvor script --help)");
    char* end = nullptr;
    long index = std::strtol(words[5].c_str(), &end, 10);
    if (words[5].empty() || *end != '\0' || index < -1000000 || index > 1000000)
        return UserError("script op: line index '" + words[5] + "' is not a number");
    CString code = words.size() > 6 ? CString(words[6].c_str()) : CString();

    for (const Procedure& procedure : session.Procedures()) {
        if (CString(procedure.name.c_str()).CompareNoCase(name.c_str()) != 0)
            continue;
        VB_SUB_PROGRAMME_INFO sub;
        Engine().GetDataByEventCode(procedure.text, &sub);
        int selected = Engine().CodeOperate(sub.arrCode, code, op, static_cast<int>(index));
        if (json) {
            std::fprintf(out, "%s\n",
                         Json{{"procedure", procedure.name},
                              {"operation", OperationNames[op]},
                              {"result", selected},
                              {"lines", Texts(sub.arrCode)}}
                             .dump(2)
                             .c_str());
            return ExitOk;
        }
        for (int i = 0; i < static_cast<int>(sub.arrCode.GetSize()); ++i)
            std::fprintf(out, "%s %3d  %s\n", i == selected ? ">" : " ", i,
                         sub.arrCode[i].GetString());
        if (selected < 0)
            std::fprintf(out, "selected: none (the operation can't be done there)\n");
        else
            std::fprintf(out, "selected: %d\n", selected);
        return ExitOk;
    }
    return UserError("script op: no procedure named '" + name + "'");
}

int WriteScript(const CString& script, const std::string& output, std::FILE* out) {
    if (output.empty()) {
        std::fwrite(script.GetString(), 1, static_cast<std::size_t>(script.GetLength()), out);
        return ExitOk;
    }
    std::string error;
    if (!platform::WriteFileAtomically(output, script.View(), error))
        return UserError(error);
    return ExitOk;
}

int Rename(const ScriptSession& session, const std::string& oldName, const std::string& newName,
           const std::string& output, std::FILE* out) {
    // The events of the control being renamed, so that its handlers follow.
    CVXInterfaceInfo* events = nullptr;
    for (INT_PTR i = 0; i < session.interfaces->names.GetSize(); ++i)
        if (session.interfaces->names[i].CompareNoCase(oldName.c_str()) == 0)
            events = session.interfaces->interfaces[i];
    CString script = session.script;
    Engine().ChangeNameToScriptTxt(script, oldName.c_str(), newName.c_str(), events);
    return WriteScript(script, output, out);
}

int CheckName(const ScriptSession& session, const std::string& name, const std::string& scope,
              std::FILE* out) {
    VB_VARIABLE_AND_PARAMETER_INFO vars;
    if (!scope.empty()) {
        bool found = false;
        for (const Procedure& procedure : session.Procedures()) {
            if (CString(procedure.name.c_str()).CompareNoCase(scope.c_str()) != 0)
                continue;
            VB_SUB_PROGRAMME_INFO sub;
            Engine().GetDataByEventCode(procedure.text, &sub);
            Engine().InitDataByCode(sub.strVariable, sub.strParameter, &vars);
            found = true;
            break;
        }
        if (!found)
            return UserError("script check-name: no procedure named '" + scope + "'");
    }
    std::unique_ptr<CTVContainerDoc> doc = session.MakeDocument();
    DENOMINATE_ERROR_INFO result =
        Engine().CheckName(name.c_str(), session.script, doc.get(), &vars, scope.empty() ? 0 : 1);
    if (result.nErrorType == DENOMINATE_OK) {
        std::fprintf(out, "'%s' is free\n", name.c_str());
        return ExitOk;
    }
    std::fprintf(out, "%s\n", Engine().GetErrorClew(result).GetString());
    return ExitUserError;
}

const char* const PlaceNames[] = {"", "handler", "command", "enable", "check", "function", "sub"};

int Uses(const ScriptSession& session, const std::string& name, bool json, std::FILE* out) {
    std::unique_ptr<CTVContainerDoc> doc = session.MakeDocument();
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    Engine().GetAllEventsInterfacesAndCtrlNames(doc.get(), interfaces, names);
    CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO> records;
    if (Engine().GetAttachInfoByCtrlOrFunction(session.script, names, name.c_str(), interfaces,
                                               records) == 0)
        return UserError("script uses: the name is empty");
    Json list = Json::array();
    for (const NAME_APPEAR_INFO& record : records) {
        const int type = record.nAppearType;
        const char* place = type >= 1 && type <= 6 ? PlaceNames[type] : "?";
        if (json) {
            list.push_back({{"nAppearType", type},
                            {"place", place},
                            {"strOwner", ToUtf8(record.strOwner)},
                            {"strMember", ToUtf8(record.strMember)}});
            continue;
        }
        std::fprintf(out, "%-8s %s%s%s\n", place, record.strOwner.GetString(),
                     record.strMember.IsEmpty() ? "" : (type == 1 ? "_" : " #"),
                     record.strMember.GetString());
    }
    if (json)
        std::fprintf(out, "%s\n", Json{{"name", name}, {"uses", list}}.dump(2).c_str());
    else if (records.IsEmpty())
        std::fprintf(out, "'%s' is not used\n", name.c_str());
    return ExitOk;
}

bool CommandId(const std::string& text, unsigned int& id) {
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || value < -2147483648LL || value > 4294967295LL)
        return false;
    id = static_cast<unsigned int>(value);
    return true;
}

int CommandIds(const Parsed& parsed, std::FILE* out) {
    const std::vector<std::string>& words = parsed.words;
    if (words.size() != (parsed.remove ? 3u : 4u))
        return UserError("script cmd-ids: wrong number of arguments (see talvor script --help)");
    unsigned int oldId = 0;
    unsigned int newId = 0;
    if (!CommandId(words[2], oldId) || (!parsed.remove && !CommandId(words[3], newId)))
        return UserError("script cmd-ids: a command id is a whole number");
    std::string text, error;
    if (!platform::ReadWholeFile(words[1], text, error))
        return UserError(error);
    CString script(std::move(text));
    CTVContainerDoc doc;
    Engine().DisposalCommandIDByScriptText(script, oldId, newId, &doc, parsed.remove ? 1 : 0);
    return WriteScript(script, parsed.output, out);
}

} // namespace

int RunScript(const Args& args, std::FILE* out) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h") {
        std::fputs(ScriptHelp, args.empty() ? stderr : out);
        return args.empty() ? ExitUserError : ExitOk;
    }
    if (args[0] == "check")
        return RunScriptCheck(Args(args.begin() + 1, args.end()));
    Parsed parsed;
    std::string error;
    if (!ParseArguments(args, parsed, error))
        return UserError("script: " + error);
    const std::vector<std::string>& words = parsed.words;
    const std::string& command = words.empty() ? args[0] : words[0];
    if (command == "cmd-ids")
        return CommandIds(parsed, out);
    const bool named = command == "check-name" || command == "uses";
    const std::size_t wanted = command == "op" ? 6 : command == "rename" ? 5 : named ? 4 : 3;
    if (command != "parse" && command != "regen" && command != "tree" && command != "op" &&
        command != "rename" && !named)
        return UserError("script: unknown subcommand '" + command + "' (see talvor script --help)");
    if (words.size() < wanted || words.size() > (command == "op" ? 7u : wanted))
        return UserError("script " + command +
                         ": wrong number of arguments (see talvor script --help)");

    ScriptSession session;
    if (!session.Load(words[1], words[2], error))
        return UserError(error);
    if (command == "parse")
        return Parse(session, parsed.json, out);
    if (command == "regen")
        return Regen(session, parsed.output, out);
    if (command == "tree")
        return Tree(session, parsed.procedure, parsed.json, out);
    if (command == "rename")
        return Rename(session, words[3], words[4], parsed.output, out);
    if (command == "check-name")
        return CheckName(session, words[3], parsed.scope, out);
    if (command == "uses")
        return Uses(session, words[3], parsed.json, out);
    return Operate(session, words, parsed.json, out);
}

} // namespace talvor::tool
