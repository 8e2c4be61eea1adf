// Parses VBScript 5 source into a syntax tree, without running anything. Every statement and
// expression form of the language is read; what is not VBScript is reported with its line and
// column, and the parse goes on behind it so one run shows the errors of a whole script.
#pragma once

#include "host/base/vbscript_syntax_tree.h"

#include <cstddef>
#include <string_view>

namespace talvor::host::vbscript {

// Blocks inside blocks, and expressions inside expressions, deeper than this are refused with
// an error instead of growing the stack; real scripts stay far below it.
constexpr int MaxNestingDepth = 200;
// Operators, member accesses and argument lists of one statement each add a level to the tree
// ("a & b & c" leans left); past this many the statement is refused, so the tree stays shallow
// enough for recursive walks of it.
constexpr int MaxStatementOperations = 4096;

// Positions are counted in 32 bits; a larger text gives an empty Script and one error.
constexpr std::size_t MaxScriptBytes = 0xFFFFFF00u;

// Never fails: the tree holds what could be read and `errors` what could not, sorted by
// position, at most one per line (the first one there, which the rest on the line follow from).
SyntaxTree ParseScript(std::string_view source);

} // namespace talvor::host::vbscript
