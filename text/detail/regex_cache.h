// The compiled patterns behind the regular expression facade, kept by pattern text and case
// flag so that a pattern asked again (a keyword tested on every line) is not compiled again.
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
    };
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

    void Trim();

    std::size_t m_capacity;
    std::list<Entry> m_entries; // most recently used first
    std::unordered_map<Key, std::list<Entry>::iterator, KeyHash> m_index;
};

// The one cache of the facade.
RegexCache& FacadeRegexCache();

} // namespace talvor::text::detail
