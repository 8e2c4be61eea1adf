// The lines of a script while it is taken apart: removal marks instead of array shifts, and an
// index of the lines by their case-folded text, so that finding a handler's head line and
// removing a block cost no more than the lines they touch. Positions are indices into the
// lines as given; removed lines are skipped by every walk.
#pragma once

#include "platform/arrays.h"
#include "platform/cstring.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace talvor::engine::detail {

class ScriptLineList {
public:
    // Takes the lines from position first on; lines before it count as removed.
    ScriptLineList(const CStringArray& lines, int first);

    const CString& At(int position) const { return m_lines[static_cast<std::size_t>(position)]; }
    // First line not removed, or -1.
    int First() const { return m_head; }
    // Next line after position that is not removed, or -1.
    int Next(int position) const { return m_next[static_cast<std::size_t>(position)]; }
    void Remove(int position);

    // First line not removed that equals text without regard to case, or -1.
    int FindNoCase(const CString& text);

    // The lines not removed, in order.
    void CopyTo(CStringArray& lines) const;

private:
    struct Bucket {
        std::vector<int> positions; // ascending
        std::size_t firstAlive = 0; // positions before it are removed
    };
    static std::string Key(const CString& text);

    std::vector<CString> m_lines;
    std::vector<int> m_next;
    std::vector<int> m_previous;
    std::vector<bool> m_removed;
    int m_head = -1;
    bool m_indexBuilt = false;
    std::unordered_map<std::string, Bucket> m_index;
};

} // namespace talvor::engine::detail
