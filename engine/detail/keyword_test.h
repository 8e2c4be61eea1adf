// The two questions asked of a masked statement line: does a keyword stand in it as a whole
// word (asked of the regular expression facade), and is the whole line the keyword.
#pragma once

#include "platform/strings/cstring.h"

namespace talvor::engine::detail {

// The pattern of the keyword test for one keyword, "[\W]{1}" + keyword + "[\W]{1}", built on
// first use and again only when the keyword is not the one it was built for: a caller keeps
// one per keyword it asks about, so a line's tests build no strings.
class KeywordPattern {
public:
    const CString& Of(const CString& keyword);

private:
    bool m_built = false;
    CString m_keyword;
    CString m_pattern;
};

// One pattern per keyword that the flow questions test for, kept for the process: the engine
// runs on one thread, as the facade does.
struct FlowKeywordPatterns {
    KeywordPattern ifWord, thenWord, doWhile, forWord, toWord, loopWhile, selectCase, caseElse,
        caseWord, endSelect, exitWord;
};
FlowKeywordPatterns& FlowPatterns();

class MaskedLine {
public:
    explicit MaskedLine(const CString& masked);

    // The keyword between two non-word characters anywhere in " " + line + " ", without
    // regard to case, asked of the facade with the keyword's pattern. A failure of the
    // pattern engine counts as no match.
    bool Has(KeywordPattern& pattern, const CString& keyword) const;
    // The line, untrimmed, equals the keyword without regard to case.
    bool Is(const CString& keyword) const;

    const CString& Text() const { return m_masked; }

private:
    const CString& m_masked;
    CString m_padded;
};

} // namespace talvor::engine::detail
