// The cookie cache's bookkeeping: creating, forgetting and resynchronising its entries.
#include "syntax/cookie_cache.h"

#include <algorithm>

namespace talvor::syntax {

void CookieCache::Create(std::size_t lineCount) {
    m_entries.assign(lineCount, Unknown);
    m_exists = true;
}

void CookieCache::Reset() {
    m_entries.clear();
    m_entries.shrink_to_fit();
    m_exists = false;
}

void CookieCache::Store(std::size_t line, unsigned long cookieAtEnd) {
    if (line < m_entries.size())
        m_entries[line] = cookieAtEnd;
}

void CookieCache::ForgetFrom(std::size_t line) {
    if (line < m_entries.size())
        std::fill(m_entries.begin() + static_cast<std::ptrdiff_t>(line), m_entries.end(), Unknown);
}

void CookieCache::Resynchronise(std::size_t newCount, std::size_t caretLine) {
    const std::size_t oldCount = m_entries.size();
    if (!m_exists || oldCount == newCount)
        return;
    std::size_t keep = caretLine;
    if (oldCount < newCount) {
        const std::size_t added = newCount - oldCount;
        if (caretLine >= added)
            keep = caretLine - added;
    }
    if (caretLine > newCount)
        keep = 0;
    keep = std::min(keep, oldCount);
    if (caretLine == 0)
        keep = 0;
    keep = std::min(keep, newCount);
    std::vector<unsigned long> entries(newCount, Unknown);
    std::copy_n(m_entries.begin(), keep, entries.begin());
    m_entries = std::move(entries);
}

} // namespace talvor::syntax
