// The keyword question of the line parsers, answered from a hash table of the keyword array's
// folded entries. The answer is the one the binary search gives: the table is used only while
// the array is sorted for the comparison in use (then the search finds a word exactly when an
// entry equals it); an unsorted array is searched as it stands. The table is built again
// whenever the array (by its address and version), the case rule or the code page changes.
#pragma once

#include "platform/core/ascii.h"
#include "platform/strings/arrays.h"
#include "syntax/syntax.h"

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::syntax {

class KeywordCache {
public:
    KeywordCache() = default;
    // A copy starts empty: it belongs to another object's array.
    KeywordCache(const KeywordCache&) {}
    KeywordCache& operator=(const KeywordCache&) {
        m_built = false;
        return *this;
    }

    // Brings the table up to date with the array; cheap when nothing changed. Lookup may be
    // asked as long as the array does not change.
    void Update(const CStringArray& keywords, bool exactCase);
    // True when the binary search of keywords (exact when exactCase, else ignoring case)
    // finds word. Call Update first.
    bool Lookup(const CStringArray& keywords, std::string_view word) const {
        if (!m_sorted)
            return SearchUnsorted(keywords, word);
        if (word.empty())
            return m_hasEmpty;
        const auto first = static_cast<unsigned char>(word.front());
        const auto last = static_cast<unsigned char>(word.back());
        if (m_exactCase)
            return FindExact(word, Hash(first, last, word.size()));
        if ((first | last) >= 0x80)
            return FindFolded(word);
        const std::uint32_t hash = Hash(Lower(first), Lower(last), word.size());
        for (std::size_t i = hash >> m_shift;; i = (i + 1) & m_mask) {
            const Slot& slot = m_slots[i];
            if (!slot.used)
                return false;
            if (slot.hash != hash || slot.length != word.size())
                continue;
            const char* text = m_arena.data() + slot.offset;
            std::size_t k = 0;
            for (; k < word.size(); ++k) {
                const auto c = static_cast<unsigned char>(word[k]);
                if (c >= 0x80)
                    return FindFolded(word); // whole characters of the code page decide
                if (Lower(c) != static_cast<unsigned char>(text[k]))
                    break;
            }
            if (k == word.size())
                return true;
        }
    }
    bool Contains(const CStringArray& keywords, bool exactCase, std::string_view word) {
        Update(keywords, exactCase);
        return Lookup(keywords, word);
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
        bool used = false;
    };

    // Length, first and last byte of the folded text: folding keeps all three (it keeps the
    // length of every character), so a word and its folded form land in the same place.
    static std::uint32_t Hash(unsigned char first, unsigned char last, std::size_t length) {
        const std::uint32_t key = first | (static_cast<std::uint32_t>(last) << 8) |
                                  (static_cast<std::uint32_t>(length & 0xFFFF) << 16);
        return key * 0x9E3779B1u;
    }
    static unsigned char Lower(unsigned char c) { return platform::AsciiLower(c); }
    void Insert(std::string_view folded);
    bool FindExact(std::string_view folded, std::uint32_t hash) const;
    bool FindFolded(std::string_view word) const;
    bool SearchUnsorted(const CStringArray& keywords, std::string_view word) const;

    bool m_built = false;
    const CStringArray* m_array = nullptr;
    std::uint64_t m_version = 0;
    bool m_exactCase = false;
    unsigned m_codePage = 0;
    bool m_sorted = false;
    bool m_hasEmpty = false;
    std::vector<Slot> m_slots;
    std::size_t m_mask = 0;
    int m_shift = 32;
    std::string m_arena;
};

static_assert(sizeof(KeywordCache) <= KeywordCacheBytes && alignof(KeywordCache) <= 16,
              "CTalvorSyntax keeps the keyword cache in place");

// The cache that an object keeps in its storage (the constructor built it there).
inline KeywordCache& KeywordCacheIn(unsigned char* storage) {
    return *std::launder(reinterpret_cast<KeywordCache*>(storage));
}

} // namespace talvor::syntax
