// Removal marks and the case-folded line index of a script being taken apart.
#include "engine/detail/script_line_list.h"

#include "engine/detail/text_compare.h"

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
        unsigned char byte = *at >= 0x80 ? 0x80 : *at;
        if (byte >= 'A' && byte <= 'Z')
            byte = static_cast<unsigned char>(byte + ('a' - 'A'));
        hash = (hash ^ byte) * 1099511628211ull;
    }
    return static_cast<std::size_t>(hash);
}

void ScriptLineList::AddToIndex(int position) {
    m_index[FoldedHash(At(position))].push_back(position);
}

int ScriptLineList::FindNoCase(const CString& text) {
    auto found = m_index.find(FoldedHash(text));
    if (found == m_index.end())
        return -1;
    // Removed lines are dropped from the front as they are met, so each is passed once.
    std::vector<int>& positions = found->second;
    std::size_t dead = 0;
    while (dead < positions.size() && m_removed[static_cast<std::size_t>(positions[dead])])
        ++dead;
    positions.erase(positions.begin(), positions.begin() + static_cast<std::ptrdiff_t>(dead));
    for (int position : positions) {
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
