// What the server asks of one script: diagnostics, outline, folding, names at a position and
// their uses, each answered from the VBScript parser's syntax tree, in protocol form.
#pragma once

#include "host/base/vbscript_syntax_tree.h"
#include "lsp/form_outline.h"
#include "lsp/text_document.h"

#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace talvor::lsp::detail {

using Json = nlohmann::json;

Json Diagnostics(const TextDocument& document);
// The outline; with a form, event handlers are grouped under their control (or the form).
// A large script has a large outline, so it is written as JSON text directly; the value is
// that text read back.
std::string DocumentSymbolsText(const TextDocument& document, const FormOutline* form);
Json DocumentSymbols(const TextDocument& document, const FormOutline* form);
Json FoldingRanges(const TextDocument& document);
// Locations of the procedures named by the word at the position.
Json Definition(const TextDocument& document, Position position);
// Every use of the word at the position (declarations included when asked).
Json References(const TextDocument& document, Position position, bool withDeclarations);
Json Highlights(const TextDocument& document, Position position);
// The head line of the procedure named by the word at the position; null when none.
Json Hover(const TextDocument& document, Position position);

// Shared by the queries: the bytes of the name under (or just behind) a position, empty when
// there is none; the nodes that name it (declarations too when asked); names compared as
// VBScript compares them.
struct WordSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool Empty() const { return begin == end; }
};
WordSpan WordAt(const TextDocument& document, Position position);
std::vector<const host::vbscript::Node*> NameUses(const host::vbscript::SyntaxTree& tree,
                                                  std::string_view name, bool withDeclarations);
bool SameName(std::string_view a, std::string_view b);
bool DeclaresName(host::vbscript::NodeKind kind);
// Statements with a body that ends on a line of its own: what folds and what indents.
bool OpensBlock(host::vbscript::NodeKind kind);
Json RangeJson(const TextDocument& document, std::size_t from, std::size_t to);

} // namespace talvor::lsp::detail
