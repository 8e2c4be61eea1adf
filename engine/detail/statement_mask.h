// Masking of one statement line before its keywords are sought: literal strings and bracketed
// expressions are replaced by one mask character each, so that words inside them don't count.
#pragma once

#include "platform/strings/cstring.h"

#include <vector>

namespace talvor::engine::detail {

constexpr char LiteralMask = 0x08; // a literal string with its quotes
constexpr char GroupMask = 0x07;   // a bracketed expression with its parentheses

// Replaces each literal (quotes taken in pairs in order; a doubled quote inside a literal
// closes it and opens the next) by LiteralMask. False, with masked untouched, for an odd
// number of quotes. literals, when given, receives the literals with their quotes in order.
bool MaskLiterals(const CString& code, CString& masked, std::vector<CString>* literals = nullptr);

// Position of the ")" that closes the "(" at open, or -1 when nothing closes it.
int ClosingBracket(const CString& text, int open);

// While the text has a "(": replaces its first bracket group, and every other occurrence of
// the same text, by GroupMask. A "(" that nothing closes masks the rest of the text.
void MaskGroupsEverywhere(CString& masked);

// A bracket group of a statement, parentheses included; an unclosed one runs to the end.
struct BracketGroup {
    CString text;
    bool closed = true;
};

// While the text has a "(": replaces its first bracket group, at that place alone, by
// GroupMask and appends it to groups.
void MaskGroupsInPlace(CString& masked, std::vector<BracketGroup>& groups);

} // namespace talvor::engine::detail
