// Removal marks and the case-folded line index of a script being taken apart.
#include "engine/detail/script_line_list.h"

#include "engine/detail/text_compare.h"
#include "platform/code_page.h"

#include <cstring>

namespace talvor::engine::detail {

ScriptLineList::ScriptLineList(const CStringArray& lines, int first) {
    const int count = static_cast<int>(lines.GetSize());
    if (first < 0)
        first = 0;
    m_lines.reserve(static_cast<std::size_t>(count));
    for (const CString& line : lines)
        m_lines.push_back(line);
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
    if (position < 0 || at >= m_lines.size() || m_removed[at])
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

std::string ScriptLineList::Key(const CString& text) {
    // Equal without regard to case exactly when the lower-case forms are equal: the platform
    // folds character by character into forms of the same length. The runtime comparison
    // reads up to the first NUL, so the key does too.
    std::string key(text.GetString(), std::strlen(text.GetString()));
    platform::MakeLowerInPlace(key);
    return key;
}

int ScriptLineList::FindNoCase(const CString& text) {
    if (!m_indexBuilt) {
        m_indexBuilt = true;
        for (int i = m_head; i >= 0; i = Next(i))
            m_index[Key(At(i))].positions.push_back(i);
    }
    auto found = m_index.find(Key(text));
    if (found == m_index.end())
        return -1;
    Bucket& bucket = found->second;
    while (bucket.firstAlive < bucket.positions.size() &&
           m_removed[static_cast<std::size_t>(bucket.positions[bucket.firstAlive])])
        ++bucket.firstAlive;
    for (std::size_t i = bucket.firstAlive; i < bucket.positions.size(); ++i) {
        int position = bucket.positions[i];
        if (!m_removed[static_cast<std::size_t>(position)] && SameNoCase(At(position), text))
            return position;
    }
    return -1;
}

void ScriptLineList::CopyTo(CStringArray& lines) const {
    lines.RemoveAll();
    for (int i = m_head; i >= 0; i = Next(i))
        lines.Add(At(i));
}

} // namespace talvor::engine::detail
