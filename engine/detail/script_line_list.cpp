// Removal marks and the case-folded line index of a script being taken apart.
#include "engine/detail/script_line_list.h"

#include "engine/detail/text_compare.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <utility>

namespace talvor::engine::detail {

ScriptLineList::ScriptLineList(CStringArray& lines, int first) : m_lines(lines) {
    const int count = static_cast<int>(lines.GetSize());
    if (first < 0)
        first = 0;
    m_next.assign(static_cast<std::size_t>(count), -1);
    m_previous.assign(static_cast<std::size_t>(count), -1);
    m_removed.assign(static_cast<std::size_t>(count), true);
    for (int i = first; i < count; ++i) {
        m_removed[static_cast<std::size_t>(i)] = false;
        m_next[static_cast<std::size_t>(i)] = i + 1 < count ? i + 1 : -1;
        m_previous[static_cast<std::size_t>(i)] = i > first ? i - 1 : -1;
    }
    m_head = first < count ? first : -1;
}

void ScriptLineList::Remove(int position) {
    auto at = static_cast<std::size_t>(position);
    if (position < 0 || at >= m_removed.size() || m_removed[at])
        return;
    m_removed[at] = true;
    int previous = m_previous[at];
    int next = m_next[at];
    if (previous >= 0)
        m_next[static_cast<std::size_t>(previous)] = next;
    else
        m_head = next;
    if (next >= 0)
        m_previous[static_cast<std::size_t>(next)] = previous;
}

std::size_t ScriptLineList::FoldedHash(const CString& text) {
    // Texts equal without regard to case must hash alike. Folding keeps every character's
    // byte length and never turns an ASCII byte into another byte than its lower case, nor
    // anything else into ASCII; so the length, the lower-cased ASCII bytes and the places of
    // the other bytes agree for such texts. Differences of case outside ASCII collide, and
    // every candidate is compared. The runtime comparison reads up to the first NUL, and so
    // does the hash (FNV-1a).
    std::uint64_t hash = 14695981039346656037ull;
    for (const unsigned char* at = Bytes(text); *at != 0; ++at) {
        unsigned char byte = *at >= 0x80 ? 0x80 : platform::AsciiLower(*at);
        hash = (hash ^ byte) * 1099511628211ull;
    }
    return static_cast<std::size_t>(hash);
}

ScriptLineList::Chain* ScriptLineList::Slot(std::size_t hash) {
    if (m_chains.empty())
        return nullptr;
    const std::size_t mask = m_chains.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Chain& chain = m_chains[at];
        if (chain.tail < 0 || chain.hash == hash)
            return &chain;
    }
}

void ScriptLineList::AddToIndex(int position) {
    if (m_sameHashNext.empty())
        m_sameHashNext.assign(m_removed.size(), -1);
    if (2 * (m_chainCount + 1) > m_chains.size()) {
        // Keep the table at most half full; chains move whole.
        std::vector<Chain> old(std::max<std::size_t>(64, 2 * m_chains.size()));
        old.swap(m_chains);
        for (const Chain& chain : old) {
            if (chain.tail >= 0)
                *Slot(chain.hash) = chain;
        }
    }
    const std::size_t hash = FoldedHash(At(position));
    Chain* chain = Slot(hash);
    if (chain->tail < 0) {
        *chain = Chain{hash, position, position};
        ++m_chainCount;
        return;
    }
    m_sameHashNext[static_cast<std::size_t>(chain->tail)] = position;
    chain->tail = position;
}

int ScriptLineList::FindNoCase(const CString& text) {
    Chain* chain = Slot(FoldedHash(text));
    if (chain == nullptr || chain->tail < 0)
        return -1;
    // Removed lines at the front of a chain are dropped as they are met, so each is passed
    // once; the chain itself stays (an empty chain keeps its slot).
    while (chain->head >= 0 && m_removed[static_cast<std::size_t>(chain->head)])
        chain->head = m_sameHashNext[static_cast<std::size_t>(chain->head)];
    for (int position = chain->head; position >= 0;
         position = m_sameHashNext[static_cast<std::size_t>(position)]) {
        if (!m_removed[static_cast<std::size_t>(position)] && SameNoCase(At(position), text))
            return position;
    }
    return -1;
}

void ScriptLineList::Compact() {
    // Kept lines move down over removed ones; a kept line never moves up.
    INT_PTR kept = 0;
    for (int i = m_head; i >= 0; i = Next(i)) {
        if (kept != i)
            m_lines[kept] = std::move(m_lines[i]);
        ++kept;
    }
    m_lines.SetSize(kept);
}

} // namespace talvor::engine::detail
