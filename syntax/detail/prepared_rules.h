// What the line parsers need of a rule set, read once per line from the object's members: every
// rule string with its length, and a class per byte value so that most bytes of a line cost one
// table lookup. Matching looks back from the current byte, as the rules are defined.
#pragma once

#include "platform/codepage/code_page.h"
#include "syntax/syntax.h"

namespace talvor::syntax::detail {

struct RuleText {
    const char* text = nullptr;
    int length = 0; // 0 for a null or empty slot, which never matches
};

// A byte value's class 0 means the byte changes nothing in normal text; the scan loops skip
// such bytes, and the rest of a word, without the full dispatch.
enum ByteClass : unsigned char {
    WordByte = 0x01,
    EndsLineComment = 0x02,  // last byte of a line comment opener
    EndsString = 0x04,       // last byte of the string opener
    EndsChar = 0x08,         // last byte of the character literal opener
    EndsBlockComment = 0x10, // last byte of a block comment opener
    EndsOpener = EndsLineComment | EndsString | EndsChar | EndsBlockComment,
    MaybeLead = 0x20,  // a byte above 0x7F while the code page has lead bytes
    EndsCloser = 0x40, // last byte of a string, literal or block comment closer
    Backslash = 0x80,  // may escape a closer
};

struct PreparedRules {
    explicit PreparedRules(const CTalvorSyntax& syntax);

    RuleText lineComment[2];
    RuleText beginComment[2];
    RuleText endComment[2];
    RuleText beginString;
    RuleText endString;
    RuleText beginChar;
    RuleText endChar;
    int lineCommentCount; // slots to examine, clipped to 0..2
    int beginCommentCount;
    int endCommentCount;
    bool multiByte; // the system code page has lead bytes
    unsigned char byteClass[256];
};

// True when the rule's bytes end at pos, inclusive, and start at or after floor: the end of the
// last multi-byte character, so that such a character is never part of a match.
inline bool RuleEndsAt(const RuleText& rule, const char* line, int pos, int floor) {
    const int start = pos - rule.length + 1;
    if (rule.length == 0 || start < floor)
        return false;
    // Rules are a few bytes long: a plain loop beats a call to memcmp, and the last byte,
    // the one most likely to differ, is compared first.
    for (int k = rule.length - 1; k >= 0; --k) {
        if (line[start + k] != rule.text[k])
            return false;
    }
    return true;
}

// The first examined slot whose rule ends at pos, or null.
inline const RuleText* FirstRuleEndingAt(const RuleText* slots, int count, const char* line,
                                         int pos, int floor) {
    for (int slot = 0; slot < count; ++slot) {
        if (RuleEndsAt(slots[slot], line, pos, floor))
            return &slots[slot];
    }
    return nullptr;
}

// Byte length of the character at pos when a lead byte of the system code page starts one
// there, else 0. A lead byte with no valid character behind it stands for itself (1).
inline int MultiByteLength(const char* line, int length, int pos) {
    if (!platform::IsLeadByte(static_cast<unsigned char>(line[pos])))
        return 0;
    const std::size_t n = platform::CharLengthAt(line, static_cast<std::size_t>(length),
                                                 static_cast<std::size_t>(pos));
    return n > 1 ? static_cast<int>(n) : 1;
}

} // namespace talvor::syntax::detail
