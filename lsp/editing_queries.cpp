// Semantic tokens, formatting, completion and renaming for the language server.
#include "lsp/detail/editing_queries.h"

#include "engine/script_text_disposal.h"
#include "host/base/api_code.h"
#include "host/base/vbscript_lexer.h"
#include "host/base/vbscript_parser.h"
#include "lsp/detail/script_queries.h"
#include "syntax/document_colourer.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <strings.h>

namespace talvor::lsp::detail {
namespace {

namespace vbs = talvor::host::vbscript;

// Index in the legend of a colour the line parser gives; -1 for plain text.
int TokenType(int colour) {
    switch (colour) {
    case COLOR_KEYWORD:
        return 0;
    case COLOR_STRING:
    case COLOR_CHAR:
        return 1;
    case COLOR_NUMBER:
        return 2;
    case COLOR_COMMENT:
        return 3;
    default:
        return -1;
    }
}

// The words VBScript reserves, and those it reads as keywords in one place only.
const std::vector<std::string>& KeywordWords() {
    static const std::vector<std::string> words = [] {
        std::vector<std::string> list;
        for (int k = static_cast<int>(vbs::Keyword::And); k <= static_cast<int>(vbs::Keyword::Xor);
             ++k)
            list.emplace_back(vbs::KeywordText(static_cast<vbs::Keyword>(k)));
        for (const char* word : {"Default", "Error", "Explicit", "Get", "GoTo", "Let", "Preserve",
                                 "Property", "Resume", "Step"})
            list.emplace_back(word);
        return list;
    }();
    return words;
}

bool IsReservedWord(std::string_view name) {
    for (int k = static_cast<int>(vbs::Keyword::And); k <= static_cast<int>(vbs::Keyword::Xor); ++k)
        if (SameName(name, vbs::KeywordText(static_cast<vbs::Keyword>(k))))
            return true;
    return false;
}

bool IsAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Why `name` can't name anything in a script; empty when it can.
std::string NameProblem(const std::string& name) {
    if (name.empty())
        return "the new name is empty";
    if (name.size() > 255)
        return "'" + name.substr(0, 32) + "...' is longer than the 255 characters of a name";
    const bool wellFormed =
        IsAsciiLetter(name[0]) && std::all_of(name.begin(), name.end(), [](char c) {
            return IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '_';
        });
    if (!wellFormed)
        return "'" + name +
               "' is not a name: a name starts with a letter and holds only letters, digits "
               "and underscores";
    if (IsReservedWord(name))
        return "'" + name + "' is a reserved word of VBScript";
    return {};
}

std::size_t LeadingBlanks(std::string_view line) {
    std::size_t n = 0;
    while (n < line.size() && (line[n] == ' ' || line[n] == '\t'))
        ++n;
    return n;
}

// True when the line's last non-blank character is a continuation " _".
bool Continues(std::string_view line) {
    std::size_t end = line.size();
    while (end > 0 && (line[end - 1] == ' ' || line[end - 1] == '\t'))
        --end;
    return end >= 2 && line[end - 1] == '_' && (line[end - 2] == ' ' || line[end - 2] == '\t');
}

bool StartsWithWord(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && strncasecmp(text.data(), word.data(), word.size()) == 0 &&
           (text.size() == word.size() ||
            !(IsAsciiLetter(text[word.size()]) ||
              (text[word.size()] >= '0' && text[word.size()] <= '9') || text[word.size()] == '_'));
}

Json CompletionItem(const std::string& label, int kind, const std::string& detail) {
    Json item{{"label", ToUtf8(label)}, {"kind", kind}};
    if (!detail.empty())
        item["detail"] = ToUtf8(detail);
    return item;
}

// One replacement in the old text: bytes [from, to) become text.
struct TextChange {
    std::size_t from, to;
    std::string text;
};

// The replacements that turn `before` into `after` when `after` came from renaming `name` to
// `newName` somewhere in `before`: each place where `before` holds the name (in any case) and
// `after` holds the new name is one change. When the places found don't rebuild `after`
// exactly, the whole text is one change, which is never wrong.
std::vector<TextChange> ChangesBetween(const std::string& before, const std::string& after,
                                       const std::string& name, const std::string& newName) {
    std::vector<TextChange> changes;
    if (before == after)
        return changes;
    std::size_t copied = 0;  // bytes of before accounted for
    std::size_t matched = 0; // bytes of after shown to come from them
    for (std::size_t p = 0; p + name.size() <= before.size();) {
        const std::size_t q = matched + (p - copied); // where before[p] lands in after
        const bool renamed = strncasecmp(before.data() + p, name.data(), name.size()) == 0 &&
                             after.compare(q, newName.size(), newName) == 0 &&
                             before.compare(p, name.size(), newName) != 0 &&
                             after.compare(matched, p - copied, before, copied, p - copied) == 0;
        if (!renamed) {
            ++p;
            continue;
        }
        changes.push_back({p, p + name.size(), newName});
        matched = q + newName.size();
        copied = p + name.size();
        p = copied;
    }
    if (after.compare(matched, std::string::npos, before, copied, std::string::npos) != 0)
        return {{0, before.size(), after}};
    return changes;
}

// The procedures of the system's script library, with their head lines; parsed once.
const std::vector<std::pair<std::string, std::string>>& SystemProcedures() {
    static const std::vector<std::pair<std::string, std::string>> procedures = [] {
        std::vector<std::pair<std::string, std::string>> list;
        const CString code = VfxGetAPICode();
        const TextDocument library("", 0, code.Str());
        for (const vbs::ProcedureInfo& procedure : library.Tree().Procedures()) {
            std::string head(library.Line(procedure.begin.line - 1));
            head.erase(0, LeadingBlanks(head));
            list.emplace_back(procedure.name, head);
        }
        return list;
    }();
    return procedures;
}

// LSP completion item kinds.
enum CompletionKind {
    Method = 2,
    Function = 3,
    Field = 5,
    Variable = 6,
    Keyword = 14,
    Event = 23,
    Constant = 21
};

} // namespace

Json SemanticTokenLegend() {
    return Json{{"tokenTypes", {"keyword", "string", "number", "comment"}},
                {"tokenModifiers", Json::array()}};
}

Json SemanticTokens(syntax::DocumentColourer& colourer, const TextDocument& document,
                    std::size_t firstLine, std::size_t endLine) {
    endLine = std::min(endLine, document.LineCount());
    // Every line is parsed with a blank behind it, as the editor parses its lines.
    std::string line;
    auto prepare = [&](std::size_t number) {
        const std::string_view text = document.Line(number);
        line.assign(text.data(), text.size());
        line += ' ';
        return text;
    };
    unsigned long cookie = 0;
    for (std::size_t number = 0; number < firstLine && number < endLine; ++number) {
        prepare(number);
        cookie = colourer.CookieForNextLine(colourer.CookieAtEnd(cookie, line), true);
    }
    std::vector<std::uint32_t> data;
    std::size_t previousLine = firstLine, previousColumn = 0;
    for (std::size_t number = firstLine; number < endLine; ++number) {
        const std::string_view text = prepare(number);
        const syntax::LineColours colours = colourer.ColourLine(cookie, std::string_view(line));
        std::size_t bytes = 0, units = 0; // how far into the line the columns are counted
        for (int i = 0; i < colours.count; ++i) {
            const int type = TokenType(colours.runs[i].m_nColorIndex);
            const auto clamp = [&](int at) {
                return std::min<std::size_t>(static_cast<std::size_t>(std::max(at, 0)),
                                             text.size());
            };
            const std::size_t start = clamp(colours.runs[i].m_nCharPos);
            const std::size_t stop =
                i + 1 < colours.count ? clamp(colours.runs[i + 1].m_nCharPos) : text.size();
            if (type < 0 || stop <= start || start < bytes)
                continue;
            units += Utf16Length(text.substr(bytes, start - bytes));
            const std::size_t length = Utf16Length(text.substr(start, stop - start));
            const std::size_t deltaLine = number - previousLine;
            data.insert(
                data.end(),
                {static_cast<std::uint32_t>(deltaLine),
                 static_cast<std::uint32_t>(deltaLine == 0 ? units - previousColumn : units),
                 static_cast<std::uint32_t>(length), static_cast<std::uint32_t>(type), 0u});
            previousLine = number;
            previousColumn = units;
            bytes = stop;
            units += length;
        }
        cookie = colourer.CookieForNextLine(colours.cookie, true);
    }
    Json tokens = Json::object();
    tokens["data"] = std::move(data);
    return tokens;
}

Json Formatting(const TextDocument& document, std::size_t indent, bool insertSpaces) {
    Json edits = Json::array();
    const vbs::SyntaxTree& tree = document.Tree();
    if (!tree.errors.empty())
        return edits;
    // depth[l]: the level of line l (1-based), built from differences at block bounds.
    const std::size_t lines = document.LineCount();
    std::vector<long> change(lines + 2, 0);
    auto add = [&](std::size_t from, std::size_t to, long by) { // lines from..to, inclusive
        if (from < 1 || from > to || from > lines)
            return;
        change[from] += by;
        change[std::min(to, lines) + 1] -= by;
    };
    for (const vbs::Node& node : tree.nodes) {
        if (OpensBlock(node.kind) && node.end.line > node.begin.line)
            add(node.begin.line + 1, node.end.line - 1, 1); // the body, not the closing line
        else if (node.kind == vbs::NodeKind::Case || node.kind == vbs::NodeKind::CaseElse)
            add(node.begin.line + 1, node.end.line, 1); // a case's statements under its head
    }
    long depth = 0;
    for (std::size_t number = 1; number <= lines; ++number) {
        depth += change[number];
        const std::string_view line = document.Line(number - 1);
        const std::size_t blanks = LeadingBlanks(line);
        if (blanks == line.size())
            continue; // blank lines stay as they are
        if (number > 1 && Continues(document.Line(number - 2)))
            continue; // a continued statement keeps its own layout
        long level = depth;
        // Else and ElseIf stand at the level of their If.
        const std::string_view rest = line.substr(blanks);
        if (StartsWithWord(rest, "Else") || StartsWithWord(rest, "ElseIf"))
            --level;
        level = std::max(level, 0L);
        const std::string wanted = insertSpaces
                                       ? std::string(static_cast<std::size_t>(level) * indent, ' ')
                                       : std::string(static_cast<std::size_t>(level), '\t');
        if (line.substr(0, blanks) == wanted)
            continue;
        edits.push_back(Json{{"range",
                              {{"start", {{"line", number - 1}, {"character", 0}}},
                               {"end", {{"line", number - 1}, {"character", blanks}}}}},
                             {"newText", wanted}});
    }
    return edits;
}

Json Completion(const TextDocument& document, Position, const FormOutline* form) {
    Json items = Json::array();
    std::set<std::string> seen; // lower-case labels already offered
    auto offer = [&](const std::string& label, int kind, const std::string& detail) {
        std::string key = label;
        std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) {
            return static_cast<char>(c < 0x80 ? std::tolower(c) : c);
        });
        if (!label.empty() && seen.insert(key).second)
            items.push_back(CompletionItem(label, kind, detail));
    };
    const vbs::SyntaxTree& tree = document.Tree();
    for (const vbs::ProcedureInfo& procedure : tree.Procedures()) {
        const std::string head(document.Line(procedure.begin.line - 1));
        offer(procedure.name, procedure.className.empty() ? Function : Method,
              head.substr(LeadingBlanks(head)));
    }
    for (const vbs::Node& node : tree.nodes) {
        if (node.kind == vbs::NodeKind::Declarator || node.kind == vbs::NodeKind::Parameter)
            offer(std::string(tree.Text(node)), Variable, "");
        else if (node.kind == vbs::NodeKind::ConstDeclarator)
            offer(std::string(tree.Text(node)), Constant, "Const");
    }
    if (form != nullptr) {
        auto handlers = [&](const std::string& owner, const std::vector<FormEvent>& events) {
            for (const FormEvent& event : events) {
                std::string params;
                for (const std::string& param : event.params)
                    params += (params.empty() ? "" : ", ") + param;
                const std::string name = owner + "_" + event.name;
                offer(name, Event, "Sub " + name + "(" + params + ")");
            }
        };
        for (const FormControl& control : form->controls) {
            offer(control.name, Field, "control");
            handlers(control.name, control.events);
        }
        if (!form->name.empty())
            handlers(form->name, form->events);
    }
    for (const auto& [name, head] : SystemProcedures())
        offer(name, Function, head + "  (system library)");
    for (const std::string& word : KeywordWords())
        offer(word, Keyword, "");
    return Json{{"isIncomplete", false}, {"items", std::move(items)}};
}

Json PrepareRename(const TextDocument& document, Position position) {
    const WordSpan span = WordAt(document, position);
    if (span.Empty())
        return nullptr;
    const std::string word = document.Text().substr(span.begin, span.end - span.begin);
    if (IsReservedWord(word))
        return nullptr;
    const vbs::SyntaxTree& tree = document.Tree();
    if (NameUses(tree, word, true).empty())
        return nullptr;
    return Json{{"range", RangeJson(document, span.begin, span.end)},
                {"placeholder", ToUtf8(word)}};
}

Json Rename(const TextDocument& document, Position position, const std::string& newName,
            std::string& refusal) {
    const WordSpan span = WordAt(document, position);
    const std::string word = document.Text().substr(span.begin, span.end - span.begin);
    if (span.Empty() || IsReservedWord(word) || NameUses(document.Tree(), word, true).empty()) {
        refusal = "there is no name of the script at this place to rename";
        return nullptr;
    }
    refusal = NameProblem(newName);
    if (!refusal.empty())
        return nullptr;
    const std::string& text = document.Text();
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    if (!SameName(word, newName)) {
        // The engine's checks: keywords, the system's names, the script's procedures and
        // declarations. A name in use would make two things one.
        const DENOMINATE_ERROR_INFO check =
            engine.CheckName(CString(newName), CString(text), nullptr, nullptr, 0);
        if (check.nErrorType != DENOMINATE_OK) {
            const CString clew = engine.GetErrorClew(check);
            refusal = clew.IsEmpty() ? "'" + newName + "' is in use" : ToUtf8(clew.Str());
            return nullptr;
        }
    }
    // Subs of the script that handle no control's event are beyond the engine's checks.
    if (!SameName(word, newName) && !NameUses(document.Tree(), newName, true).empty()) {
        refusal = "'" + newName + "' already names something in this script";
        return nullptr;
    }
    CString renamed(text);
    engine.ChangeNameToScriptTxt(renamed, CString(word), CString(newName), nullptr);
    Json edits = Json::array();
    for (const TextChange& change : ChangesBetween(text, renamed.Str(), word, newName))
        edits.push_back(Json{{"range", RangeJson(document, change.from, change.to)},
                             {"newText", ToUtf8(change.text)}});
    return Json{{"changes", {{document.Uri(), std::move(edits)}}}};
}

} // namespace talvor::lsp::detail
