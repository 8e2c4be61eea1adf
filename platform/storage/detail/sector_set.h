// A set of sector (or mini sector) numbers kept as a bitmap. The allocator asks it for the
// lowest member and for the first run of consecutive members of some length; both are found
// 64 members at a time, skipping words without members 64 at a time, so a file with a long
// history of freed sectors costs little more to allocate in than a new one.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

namespace talvor::platform::storage::detail {

class SectorSet {
public:
    static constexpr std::uint32_t None = 0xFFFFFFFFu;

    bool empty() const { return m_count == 0; }
    std::size_t size() const { return m_count; }
    bool contains(std::uint32_t n) const {
        const std::size_t word = n / 64;
        return word < m_words.size() && (m_words[word] >> (n % 64) & 1) != 0;
    }
    void insert(std::uint32_t n) {
        const std::size_t word = n / 64;
        if (word >= m_words.size()) {
            m_words.resize(std::max(word + 1, m_words.size() * 2), 0);
            m_nonEmpty.resize((m_words.size() + 63) / 64, 0);
        }
        const std::uint64_t bit = std::uint64_t(1) << (n % 64);
        if (m_words[word] & bit)
            return;
        if (m_words[word] == 0)
            m_nonEmpty[word / 64] |= std::uint64_t(1) << (word % 64);
        m_words[word] |= bit;
        ++m_count;
        if (word < m_firstWord)
            m_firstWord = word;
    }
    void erase(std::uint32_t n) {
        const std::size_t word = n / 64;
        const std::uint64_t bit = std::uint64_t(1) << (n % 64);
        if (word >= m_words.size() || !(m_words[word] & bit))
            return;
        m_words[word] &= ~bit;
        if (m_words[word] == 0)
            m_nonEmpty[word / 64] &= ~(std::uint64_t(1) << (word % 64));
        --m_count;
    }
    void clear() {
        m_words.clear();
        m_nonEmpty.clear();
        m_count = 0;
        m_firstWord = 0;
    }
    // The lowest member, None when empty.
    std::uint32_t lowest() const {
        if (m_count == 0)
            return None;
        std::size_t group = m_firstWord / 64;
        while (m_nonEmpty[group] == 0)
            ++group;
        m_firstWord = group * 64 + static_cast<std::size_t>(std::countr_zero(m_nonEmpty[group]));
        return static_cast<std::uint32_t>(m_firstWord * 64 +
                                          std::countr_zero(m_words[m_firstWord]));
    }
    // The lowest member that starts `length` consecutive members, None when there is none.
    // Only words with members are looked at: sparse free space costs little to search.
    std::uint32_t FirstRun(std::uint32_t length) const {
        if (length == 0)
            return lowest();
        if (m_count < length)
            return None;
        std::uint64_t start = 0, run = 0;
        std::size_t previous = 0;
        for (std::size_t group = lowest() / 64 / 64; group < m_nonEmpty.size(); ++group) {
            for (std::uint64_t words = m_nonEmpty[group]; words != 0; words &= words - 1) {
                const std::size_t i =
                    group * 64 + static_cast<std::size_t>(std::countr_zero(words));
                if (i != previous + 1)
                    run = 0; // a word without members lies between
                previous = i;
                const std::uint64_t w = m_words[i];
                const std::uint64_t base = std::uint64_t(i) * 64;
                if (w == ~std::uint64_t(0)) {
                    if (run == 0)
                        start = base;
                    run += 64;
                    if (run >= length)
                        return static_cast<std::uint32_t>(start);
                    continue;
                }
                unsigned pos = 0;
                while (pos < 64) {
                    const std::uint64_t rest = w >> pos;
                    if (rest == 0) {
                        run = 0;
                        break;
                    }
                    if (const unsigned zeros = static_cast<unsigned>(std::countr_zero(rest))) {
                        run = 0;
                        pos += zeros;
                    }
                    // rest has zeros shifted in at the top, so the ones end inside the word.
                    const unsigned ones = static_cast<unsigned>(std::countr_one(w >> pos));
                    if (run == 0)
                        start = base + pos;
                    run += ones;
                    if (run >= length)
                        return static_cast<std::uint32_t>(start);
                    pos += ones;
                }
            }
        }
        return None;
    }

private:
    std::vector<std::uint64_t> m_words;
    std::vector<std::uint64_t> m_nonEmpty; // bit i: word i has a member
    std::size_t m_count = 0;
    mutable std::size_t m_firstWord = 0; // no member lies in a word below this one
};

} // namespace talvor::platform::storage::detail
