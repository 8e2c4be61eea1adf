// The lines of a script while it is taken apart: removal marks instead of array shifts, and an
// index of the lines by their case-folded text, so that finding a handler's head line and
// removing a block cost no more than the lines they touch. Positions are indices into the
// array as given; removed lines are skipped by every walk.
#pragma once

#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

#include <cstddef>
#include <string>
#include <vector>

namespace talvor::engine::detail {

class ScriptLineList {
public:
    // Works on lines in place; lines before position first count as removed. The array must
    // not change until Compact() is called.
    ScriptLineList(CStringArray& lines, int first);

    const CString& At(int position) const { return m_lines[position]; }
    // First line not removed, or -1.
    int First() const { return m_head; }
    // Next line after position that is not removed, or -1.
    int Next(int position) const { return m_next[static_cast<std::size_t>(position)]; }
    void Remove(int position);

    // Makes the line at position findable by FindNoCase.
    void AddToIndex(int position);
    // First line not removed, among those added to the index, that equals text without
    // regard to case; -1 when there is none.
    int FindNoCase(const CString& text);

    // Leaves in the array the lines not removed, in order.
    void Compact();

private:
    static std::size_t FoldedHash(const CString& text);

    CStringArray& m_lines;
    std::vector<int> m_next;
    std::vector<int> m_previous;
    std::vector<bool> m_removed;
    int m_head = -1;
    // Lines by the hash of their case-folded text: an open-addressed table of chains, each
    // in ascending order of position. A hash may be shared by lines that differ, so every
    // candidate is compared.
    struct Chain {
        std::size_t hash = 0;
        int head = -1; // -1 once every line of the chain is removed
        int tail = -1; // -1: a free slot
    };
    Chain* Slot(std::size_t hash);
    std::vector<Chain> m_chains;
    std::size_t m_chainCount = 0;
    std::vector<int> m_sameHashNext; // next position of the same chain, or -1
};

} // namespace talvor::engine::detail
