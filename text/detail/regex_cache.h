// The compiled patterns behind the regular expression facade, kept by pattern text and case
// flag so that a pattern asked again (a keyword tested on every line) is not compiled again.
// The facade finds them by the 8-bit pattern it was given and the code page, so a pattern
// asked again is not converted again either.
#pragma once

#include "platform/regex/regex_engine.h"

#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

namespace talvor::text::detail {

class RegexCache {
public:
    static constexpr std::size_t DefaultCapacity = 256;

    explicit RegexCache(std::size_t capacity = DefaultCapacity) : m_capacity(capacity) {}

    // The compiled pattern, from the cache or compiled now and kept; the least recently used
    // one goes when the cache is full. A pattern that fails to compile is not kept.
    HRESULT Compile(std::u16string_view pattern, bool ignoreCase, platform::CompiledRegExpPtr& out);

    // The same for an 8-bit pattern in the code page: its wide form goes to wide (valid until
    // the next call), the compiled pattern to out. On a failure wide is still set and out is
    // left alone.
    HRESULT CompileNarrow(std::string_view pattern, unsigned codePage, bool ignoreCase,
                          std::u16string_view& wide, platform::CompiledRegExpPtr& out);

    // 0 turns the cache off, so every call compiles; a smaller capacity drops the oldest.
    void SetCapacity(std::size_t capacity);
    std::size_t Capacity() const { return m_capacity; }
    std::size_t Size() const { return m_entries.size(); }
    void Clear();

private:
    struct Entry {
        std::u16string pattern;
        bool ignoreCase;
        platform::CompiledRegExpPtr compiled;
        // The 8-bit pattern and code page the facade last asked this entry by; empty code
        // page 0 when none.
        std::string narrow;
        unsigned codePage = 0;
        std::list<Entry>::iterator self; // its own place in the list
    };
    using EntryList = std::list<Entry>;
    struct Key {
        std::u16string_view pattern; // into the entry's own text
        bool ignoreCase;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const {
            return std::hash<std::u16string_view>()(key.pattern) ^ (key.ignoreCase ? 0x9e37 : 0);
        }
    };
    struct NarrowKey {
        std::string_view pattern; // into the entry's own narrow text
        unsigned codePage;
        bool ignoreCase;
        bool operator==(const NarrowKey&) const = default;
    };
    struct NarrowKeyHash {
        std::size_t operator()(const NarrowKey& key) const {
            return std::hash<std::string_view>()(key.pattern) ^ (key.codePage * 0x9e3779b9u) ^
                   (key.ignoreCase ? 0x9e37 : 0);
        }
    };

    // The entry of a wide pattern, found or compiled and added; end() when the cache is off.
    HRESULT Find(std::u16string_view pattern, bool ignoreCase, EntryList::iterator& at,
                 platform::CompiledRegExpPtr& out);
    void Trim();
    void Forget(const Entry& entry);

    // A small two-way table in front of the 8-bit index: a pattern asked again (a keyword on
    // every line) is found by one cheap hash and a comparison or two.
    static constexpr std::size_t RecentSets = 128;
    static std::size_t QuickHash(std::string_view pattern, unsigned codePage, bool ignoreCase);
    bool IsRecent(const Entry& entry, std::string_view pattern, unsigned codePage,
                  bool ignoreCase) const;
    // Puts entry first in its set of two; the other one asked before stays second.
    static void Remember(Entry** set, Entry* entry);

    std::size_t m_capacity;
    EntryList m_entries; // most recently used first
    Entry* m_recent[RecentSets * 2] = {};
    std::unordered_map<Key, EntryList::iterator, KeyHash> m_index;
    std::unordered_map<NarrowKey, EntryList::iterator, NarrowKeyHash> m_narrowIndex;
    std::u16string m_wide; // the wide form of the last pattern that missed, or that is uncached
};

// The one cache of the facade.
RegexCache& FacadeRegexCache();

} // namespace talvor::text::detail
