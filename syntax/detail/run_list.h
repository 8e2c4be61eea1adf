// The run list a line parser fills: the caller's buffer, or none when only the cookie is asked.
#pragma once

#include "syntax/syntax.h"

namespace talvor::syntax::detail {

// Appends runs by the rule of the parsers: a run whose start lies before the start of the last
// run in the list is dropped. Without a list (null buffer, or a negative count from the caller)
// nothing is written. The count is kept locally and handed back when the parser returns.
class RunList {
public:
    RunList(COLORINFO* buffer, int& count)
        : m_buffer(count >= 0 ? buffer : nullptr), m_target(count), m_count(count), m_first(count) {
    }
    ~RunList() {
        if (m_buffer != nullptr)
            m_target = m_count;
    }
    RunList(const RunList&) = delete;
    RunList& operator=(const RunList&) = delete;

    // Whether runs are kept at all: without a list a parser need not work out their colours.
    bool Kept() const { return m_buffer != nullptr; }

    void Add(int start, int colour) {
        if (m_buffer == nullptr)
            return;
        if (m_count > 0 && m_buffer[m_count - 1].m_nCharPos > start)
            return;
        m_buffer[m_count].m_nCharPos = start;
        m_buffer[m_count].m_nColorIndex = colour;
        ++m_count;
    }
    // Takes back the last run added by this parse; runs the caller put there stay.
    void RemoveLast() {
        if (m_buffer != nullptr && m_count > m_first)
            --m_count;
    }

private:
    COLORINFO* m_buffer;
    int& m_target;
    int m_count;
    int m_first;
};

} // namespace talvor::syntax::detail
