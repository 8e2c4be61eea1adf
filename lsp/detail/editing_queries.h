// What the server works out for an editor beyond the outline: semantic tokens from the
// colouring line parser, re-indentation by the depth of the syntax tree, completion, and
// renaming as minimal text edits.
#pragma once

#include "lsp/form_outline.h"
#include "lsp/text_document.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>

namespace talvor::syntax {
class DocumentColourer;
}

namespace talvor::lsp::detail {

using Json = nlohmann::json;

// The token types the server sends, in the order of its legend.
Json SemanticTokenLegend();
// Tokens of the lines [firstLine, endLine) in the protocol's relative encoding; the colour
// state at firstLine is worked out from the lines before it. `colourer` must have the
// script language loaded.
Json SemanticTokens(syntax::DocumentColourer& colourer, const TextDocument& document,
                    std::size_t firstLine, std::size_t endLine);

// Text edits that set the leading white space of each line to its depth in the syntax tree
// (`indent` columns per level, as blanks or tabs). A script with syntax errors gets no edit:
// its tree does not say where blocks end. Continued lines (after " _") keep their indentation.
Json Formatting(const TextDocument& document, std::size_t indent, bool insertSpaces);

// Keywords, the script's procedures, variables and constants, the procedures of the system's
// script library, and, with a form, its controls and the event handlers they can have.
Json Completion(const TextDocument& document, Position position, const FormOutline* form);

// The name at the position and its range, or null when no renameable name stands there.
Json PrepareRename(const TextDocument& document, Position position);
// A WorkspaceEdit renaming every use of the name at the position; the reason in `refusal`
// (and null) when the new name is not a usable name or there is nothing to rename.
Json Rename(const TextDocument& document, Position position, const std::string& newName,
            std::string& refusal);

} // namespace talvor::lsp::detail
