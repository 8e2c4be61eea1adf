// The two questions asked of a masked statement line: does a keyword stand in it as a whole
// word (asked of the regular expression facade), and is the whole line the keyword.
#pragma once

#include "platform/strings/cstring.h"

namespace talvor::engine::detail {

class MaskedLine {
public:
    explicit MaskedLine(const CString& masked) : m_masked(masked), m_padded(" " + masked + " ") {}

    // The keyword between two non-word characters anywhere in " " + line + " ", without
    // regard to case. A failure of the pattern engine counts as no match.
    bool Has(const CString& keyword) const;
    // The line, untrimmed, equals the keyword without regard to case.
    bool Is(const CString& keyword) const;

    const CString& Text() const { return m_masked; }

private:
    CString m_masked;
    CString m_padded;
};

} // namespace talvor::engine::detail
