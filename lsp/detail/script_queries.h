// What the server asks of one script: diagnostics, outline, folding, names at a position and
// their uses, each answered from the VBScript parser's syntax tree, in protocol form.
#pragma once

#include "lsp/text_document.h"

#include <nlohmann/json.hpp>

namespace talvor::lsp::detail {

using Json = nlohmann::json;

Json Diagnostics(const TextDocument& document);
Json DocumentSymbols(const TextDocument& document);
Json FoldingRanges(const TextDocument& document);
// Locations of the procedures named by the word at the position.
Json Definition(const TextDocument& document, Position position);
// Every use of the word at the position (declarations included when asked).
Json References(const TextDocument& document, Position position, bool withDeclarations);
Json Highlights(const TextDocument& document, Position position);
// The head line of the procedure named by the word at the position; null when none.
Json Hover(const TextDocument& document, Position position);

} // namespace talvor::lsp::detail
