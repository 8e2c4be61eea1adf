// The cookie of every line of a document, kept between paints: the cookie at the end of each
// line, or a mark for one not known. An unknown cookie is worked out from the nearest known one
// above it by parsing the lines between without run lists, so a paint costs the lines it shows
// plus, at most, those from the last known cookie down to them.
#pragma once

#include "syntax/document_colourer.h"

#include <cstddef>
#include <vector>

namespace talvor::syntax {

class CookieCache {
public:
    // The mark of an entry whose cookie is not known.
    static constexpr unsigned long Unknown = 0xFFFFFFFF;

    // No entries until Create: a cache that does not exist differs from one of unknown entries.
    bool Exists() const { return m_exists; }
    std::size_t Count() const { return m_entries.size(); }
    // Entries for lineCount lines, all unknown.
    void Create(std::size_t lineCount);
    // Forgets everything, the entries themselves included.
    void Reset();

    // The stored cookie at the end of the line, or Unknown (also beyond the last entry).
    unsigned long Entry(std::size_t line) const {
        return line < m_entries.size() ? m_entries[line] : Unknown;
    }
    // Stores what a paint found; lines beyond the last entry are ignored.
    void Store(std::size_t line, unsigned long cookieAtEnd);
    void Forget(std::size_t line) { Store(line, Unknown); }
    // Forgets the entries from the line to the last; nothing without entries or beyond them.
    void ForgetFrom(std::size_t line);

    // Keeps the cache in step when the number of lines changed: the entries above the caret
    // that cannot have moved are kept, the rest become unknown. With oldCount the count before,
    // the kept entries are the first min(keep, oldCount), keep being the caret line, less the
    // lines that came in when there are more now (the caret line when that would go below 0),
    // 0 when the caret lies beyond the new count; nothing is kept when the caret is on line 0.
    void Resynchronise(std::size_t newCount, std::size_t caretLine);

    // The cookie at the end of the line. lineAt(k, CString& text) gives line k (as the parser
    // is to see it) and returns whether it ends with a hard line end. hardEndBefore says how the
    // line above the first one worked out ended. Creates the entries (for lineCount lines) when
    // there are none; a line beyond them gives Unknown.
    template <class LineAt>
    unsigned long EndOf(std::size_t line, DocumentColourer& colourer, LineAt&& lineAt,
                        bool hardEndBefore = true);
    // The cookie the line starts with: 0 for line 0, else what passes on from the line above,
    // hardEndAbove saying how that line ends.
    template <class LineAt>
    unsigned long StartOf(std::size_t line, DocumentColourer& colourer, LineAt&& lineAt,
                          bool hardEndAbove = true) {
        if (line == 0)
            return 0;
        const unsigned long above = EndOf(line - 1, colourer, lineAt, hardEndAbove);
        return colourer.CookieForNextLine(above == Unknown ? 0 : above, hardEndAbove);
    }

private:
    std::vector<unsigned long> m_entries;
    bool m_exists = false;
    CString m_text; // the line being worked out
};

template <class LineAt>
unsigned long CookieCache::EndOf(std::size_t line, DocumentColourer& colourer, LineAt&& lineAt,
                                 bool hardEndBefore) {
    if (line >= m_entries.size())
        return Unknown;
    if (m_entries[line] != Unknown)
        return m_entries[line];
    std::size_t first = line;
    while (first > 0 && m_entries[first - 1] == Unknown)
        --first;
    bool hardEnd = hardEndBefore;
    for (std::size_t k = first; k <= line; ++k) {
        const unsigned long start =
            k == 0 ? 0 : colourer.CookieForNextLine(m_entries[k - 1], hardEnd);
        m_text.Empty();
        hardEnd = lineAt(k, m_text);
        m_entries[k] = colourer.CookieAtEnd(start, m_text);
    }
    return m_entries[line];
}

} // namespace talvor::syntax
