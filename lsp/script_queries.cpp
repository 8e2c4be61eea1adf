// The server's questions of one script, answered from the VBScript parser's syntax tree: the
// tree gives byte offsets, the document turns them into protocol positions.
#include "lsp/detail/script_queries.h"

#include "host/base/vbscript_parser.h"
#include "lsp/detail/json_text.h"

#include <cstdint>
#include <optional>
#include <strings.h>

namespace talvor::lsp::detail {
namespace {

namespace vbs = talvor::host::vbscript;

// LSP symbol kinds.
enum SymbolKind {
    Class = 5,
    Method = 6,
    Property = 7,
    Function = 12,
    Variable = 13,
    Constant = 14,
    Object = 19,
    Event = 24
};

Json PositionJson(const TextDocument& document, std::size_t offset) {
    const Position position = document.PositionAt(offset);
    Json json = Json::object();
    json["line"] = position.line;
    json["character"] = position.character;
    return json;
}

Json RangeOfText(const TextDocument& document, const vbs::Node& node) {
    return RangeJson(document, node.textOffset, node.textOffset + node.textLength);
}

bool IsWordByte(char c) {
    const unsigned char b = static_cast<unsigned char>(c);
    return (b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') || (b >= '0' && b <= '9') || b == '_';
}

// The name at the position as text; empty when there is none.
std::string WordTextAt(const TextDocument& document, Position position) {
    const WordSpan span = WordAt(document, position);
    return document.Text().substr(span.begin, span.end - span.begin);
}

int ProcedureSymbolKind(vbs::ProcedureKind kind, bool inClass) {
    if (kind == vbs::ProcedureKind::PropertyGet || kind == vbs::ProcedureKind::PropertyLet ||
        kind == vbs::ProcedureKind::PropertySet)
        return Property;
    return inClass ? Method : Function;
}

// One entry of the outline, before it is written out.
struct OutlineSymbol {
    std::string name; // in the document's code page
    const char* detail;
    int kind;
    Position rangeStart, rangeEnd, selectionStart, selectionEnd;
    std::vector<OutlineSymbol> children;
    bool hasChildren = false; // written with "children", even when there are none
};

OutlineSymbol Symbol(const TextDocument& document, std::string name, const char* detail, int kind,
                     const vbs::Node& node) {
    OutlineSymbol symbol{std::move(name),
                         detail,
                         kind,
                         document.PositionAt(node.begin.offset),
                         document.PositionAt(node.end.offset),
                         document.PositionAt(node.textOffset),
                         document.PositionAt(node.textOffset + node.textLength),
                         {}};
    return symbol;
}

// Symbols of the statements of a block: classes with their members, procedures, and the
// variables and constants declared at this level.
void BlockSymbols(const TextDocument& document, const vbs::SyntaxTree& tree, vbs::NodeIndex block,
                  bool inClass, std::vector<OutlineSymbol>& symbols) {
    for (vbs::NodeIndex index : tree.Children(block)) {
        const vbs::Node& node = tree.At(index);
        switch (node.kind) {
        case vbs::NodeKind::ClassDeclaration: {
            OutlineSymbol symbol =
                Symbol(document, std::string(tree.Text(node)), "Class", Class, node);
            symbol.hasChildren = true;
            for (vbs::NodeIndex child : tree.Children(index))
                if (tree.At(child).kind == vbs::NodeKind::Block)
                    BlockSymbols(document, tree, child, true, symbol.children);
            symbols.push_back(std::move(symbol));
            break;
        }
        case vbs::NodeKind::Procedure: {
            const auto kind = static_cast<vbs::ProcedureKind>(node.detail & 0x0F);
            symbols.push_back(Symbol(document, std::string(tree.Text(node)),
                                     vbs::ProcedureKindName(kind),
                                     ProcedureSymbolKind(kind, inClass), node));
            break;
        }
        case vbs::NodeKind::VariableDeclaration:
        case vbs::NodeKind::ConstDeclaration: {
            const bool constant = node.kind == vbs::NodeKind::ConstDeclaration;
            for (vbs::NodeIndex child : tree.Children(index)) {
                const vbs::Node& declarator = tree.At(child);
                symbols.push_back(Symbol(document, std::string(tree.Text(declarator)),
                                         constant ? "Const" : "Dim", constant ? Constant : Variable,
                                         declarator));
            }
            break;
        }
        default:
            break;
        }
    }
}

// The outline; with a form, handlers named "<control>_<event>" move under one symbol per
// control of the form (and one for the form itself), which spans its handlers.
std::vector<OutlineSymbol> Outline(const TextDocument& document, const FormOutline* form) {
    std::vector<OutlineSymbol> symbols;
    BlockSymbols(document, document.Tree(), 0, false, symbols);
    if (form == nullptr)
        return symbols;
    std::vector<std::string> owners;
    for (const FormControl& control : form->controls)
        owners.push_back(control.name);
    if (!form->name.empty())
        owners.push_back(form->name);
    std::vector<std::optional<OutlineSymbol>> groups(owners.size());
    std::vector<OutlineSymbol> rest;
    for (OutlineSymbol& symbol : symbols) {
        const std::string& name = symbol.name;
        std::size_t owner = owners.size();
        for (std::size_t i = 0; symbol.kind == Function && i < owners.size(); ++i)
            if (name.size() > owners[i].size() + 1 && name[owners[i].size()] == '_' &&
                SameName(std::string_view(name).substr(0, owners[i].size()), owners[i]))
                owner = i;
        if (owner == owners.size()) {
            rest.push_back(std::move(symbol));
            continue;
        }
        std::optional<OutlineSymbol>& group = groups[owner];
        symbol.kind = Event;
        if (!group) {
            const bool isForm = owner == form->controls.size();
            group = OutlineSymbol{owners[owner],
                                  isForm ? "form" : "control",
                                  isForm ? Class : Object,
                                  symbol.rangeStart,
                                  symbol.rangeEnd,
                                  symbol.selectionStart,
                                  symbol.selectionEnd,
                                  {},
                                  true};
        }
        group->rangeEnd = symbol.rangeEnd;
        group->children.push_back(std::move(symbol));
    }
    for (std::optional<OutlineSymbol>& group : groups)
        if (group)
            rest.push_back(std::move(*group));
    return rest;
}

void AppendPosition(std::string& out, Position position) {
    out += "{\"line\":";
    AppendJsonNumber(out, position.line);
    out += ",\"character\":";
    AppendJsonNumber(out, position.character);
    out += '}';
}

void AppendRange(std::string& out, Position start, Position end) {
    out += "{\"start\":";
    AppendPosition(out, start);
    out += ",\"end\":";
    AppendPosition(out, end);
    out += '}';
}

void AppendSymbols(std::string& out, const std::vector<OutlineSymbol>& symbols) {
    out += '[';
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const OutlineSymbol& symbol = symbols[i];
        if (i > 0)
            out += ',';
        out += "{\"name\":";
        AppendJsonString(out, ToUtf8(symbol.name));
        out += ",\"detail\":";
        AppendJsonString(out, symbol.detail);
        out += ",\"kind\":";
        AppendJsonNumber(out, static_cast<std::size_t>(symbol.kind));
        out += ",\"range\":";
        AppendRange(out, symbol.rangeStart, symbol.rangeEnd);
        out += ",\"selectionRange\":";
        AppendRange(out, symbol.selectionStart, symbol.selectionEnd);
        if (symbol.hasChildren) {
            out += ",\"children\":";
            AppendSymbols(out, symbol.children);
        }
        out += '}';
    }
    out += ']';
}

} // namespace

Json RangeJson(const TextDocument& document, std::size_t from, std::size_t to) {
    // Members moved in one by one: an initializer list would copy each of them.
    Json range = Json::object();
    range["start"] = PositionJson(document, from);
    range["end"] = PositionJson(document, to);
    return range;
}

WordSpan WordAt(const TextDocument& document, Position position) {
    const std::string& text = document.Text();
    std::size_t offset = document.OffsetAt(position);
    if ((offset >= text.size() || !IsWordByte(text[offset])) && offset > 0 &&
        IsWordByte(text[offset - 1]))
        --offset;
    if (offset >= text.size() || !IsWordByte(text[offset]))
        return {};
    WordSpan span{offset, offset};
    while (span.begin > 0 && IsWordByte(text[span.begin - 1]))
        --span.begin;
    while (span.end < text.size() && IsWordByte(text[span.end]))
        ++span.end;
    return span;
}

bool SameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

bool OpensBlock(vbs::NodeKind kind) {
    switch (kind) {
    case vbs::NodeKind::ClassDeclaration:
    case vbs::NodeKind::Procedure:
    case vbs::NodeKind::If:
    case vbs::NodeKind::SelectCase:
    case vbs::NodeKind::DoLoop:
    case vbs::NodeKind::WhileLoop:
    case vbs::NodeKind::ForLoop:
    case vbs::NodeKind::ForEachLoop:
    case vbs::NodeKind::With:
        return true;
    default:
        return false;
    }
}

bool DeclaresName(vbs::NodeKind kind) {
    return kind == vbs::NodeKind::Procedure || kind == vbs::NodeKind::Parameter ||
           kind == vbs::NodeKind::Declarator || kind == vbs::NodeKind::ConstDeclarator ||
           kind == vbs::NodeKind::ClassDeclaration;
}

std::vector<const vbs::Node*> NameUses(const vbs::SyntaxTree& tree, std::string_view name,
                                       bool withDeclarations) {
    std::vector<const vbs::Node*> uses;
    for (const vbs::Node& node : tree.nodes) {
        const bool identifier = node.kind == vbs::NodeKind::Identifier;
        if (!identifier && !(withDeclarations && DeclaresName(node.kind)))
            continue;
        if (node.textLength > 0 && SameName(tree.Text(node), name))
            uses.push_back(&node);
    }
    return uses;
}

Json Diagnostics(const TextDocument& document) {
    const vbs::SyntaxTree& tree = document.Tree();
    Json diagnostics = Json::array();
    for (const vbs::SyntaxError& error : tree.errors) {
        // The error's place to the end of its line, so an editor underlines what follows.
        const Position start = document.PositionAt(error.position.offset);
        const std::size_t lineEnd = document.OffsetAt(Position{start.line, SIZE_MAX});
        const std::size_t end = std::max<std::size_t>(lineEnd, error.position.offset);
        diagnostics.push_back(Json{{"range", RangeJson(document, error.position.offset, end)},
                                   {"severity", 1},
                                   {"source", "talvor"},
                                   {"message", ToUtf8(error.message)}});
    }
    return diagnostics;
}

std::string DocumentSymbolsText(const TextDocument& document, const FormOutline* form) {
    std::string out;
    AppendSymbols(out, Outline(document, form));
    return out;
}

Json DocumentSymbols(const TextDocument& document, const FormOutline* form) {
    return Json::parse(DocumentSymbolsText(document, form));
}

Json FoldingRanges(const TextDocument& document) {
    const vbs::SyntaxTree& tree = document.Tree();
    Json ranges = Json::array();
    for (const vbs::Node& node : tree.nodes) {
        // The closing line stays visible: the range ends on the line before it.
        if (OpensBlock(node.kind) && node.end.line > node.begin.line + 1)
            ranges.push_back(
                Json{{"startLine", node.begin.line - 1}, {"endLine", node.end.line - 2}});
    }
    // Runs of whole-line comments fold as one.
    const auto& comments = tree.comments;
    for (std::size_t i = 0; i < comments.size();) {
        std::size_t j = i;
        auto wholeLine = [&](std::size_t k) {
            const std::string_view line = document.Line(comments[k].begin.line - 1);
            return line.find_first_not_of(" \t") == comments[k].begin.column - 1;
        };
        while (j + 1 < comments.size() && wholeLine(j) && wholeLine(j + 1) &&
               comments[j + 1].begin.line == comments[j].begin.line + 1)
            ++j;
        if (j > i)
            ranges.push_back(Json{{"startLine", comments[i].begin.line - 1},
                                  {"endLine", comments[j].begin.line - 1},
                                  {"kind", "comment"}});
        i = j + 1;
    }
    return ranges;
}

Json Definition(const TextDocument& document, Position position) {
    const std::string word = WordTextAt(document, position);
    Json locations = Json::array();
    if (word.empty())
        return locations;
    const vbs::SyntaxTree& tree = document.Tree();
    for (const vbs::Node& node : tree.nodes)
        if ((node.kind == vbs::NodeKind::Procedure ||
             node.kind == vbs::NodeKind::ClassDeclaration) &&
            SameName(tree.Text(node), word))
            locations.push_back(
                Json{{"uri", document.Uri()}, {"range", RangeOfText(document, node)}});
    return locations;
}

Json References(const TextDocument& document, Position position, bool withDeclarations) {
    const std::string word = WordTextAt(document, position);
    Json locations = Json::array();
    if (word.empty())
        return locations;
    const vbs::SyntaxTree& tree = document.Tree();
    for (const vbs::Node* node : NameUses(tree, word, withDeclarations))
        locations.push_back(Json{{"uri", document.Uri()}, {"range", RangeOfText(document, *node)}});
    return locations;
}

Json Highlights(const TextDocument& document, Position position) {
    const std::string word = WordTextAt(document, position);
    Json highlights = Json::array();
    if (word.empty())
        return highlights;
    const vbs::SyntaxTree& tree = document.Tree();
    for (const vbs::Node* node : NameUses(tree, word, true)) {
        // Text 1, Read 2, Write 3: a declaration or an assignment's target is written.
        highlights.push_back(Json{{"range", RangeOfText(document, *node)},
                                  {"kind", DeclaresName(node->kind) ? 3 : 2}});
    }
    return highlights;
}

Json Hover(const TextDocument& document, Position position) {
    const std::string word = WordTextAt(document, position);
    if (word.empty())
        return nullptr;
    const vbs::SyntaxTree& tree = document.Tree();
    for (const vbs::ProcedureInfo& procedure : tree.Procedures()) {
        if (!SameName(procedure.name, word))
            continue;
        const std::string_view head = document.Line(procedure.begin.line - 1);
        std::string value = "```vbscript\n" + ToUtf8(head) + "\n```";
        if (!procedure.className.empty())
            value += "\nin class " + ToUtf8(procedure.className);
        return Json{{"contents", {{"kind", "markdown"}, {"value", value}}},
                    {"range", RangeJson(document, procedure.nameAt.offset,
                                        procedure.nameAt.offset + procedure.name.size())}};
    }
    return nullptr;
}

} // namespace talvor::lsp::detail
