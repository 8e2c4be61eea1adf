// A least-recently-used cache of compiled patterns, found by wide or by 8-bit pattern.
#include "text/detail/regex_cache.h"

#include "platform/codepage/code_page.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace talvor::text::detail {

HRESULT RegexCache::Find(std::u16string_view pattern, bool ignoreCase, EntryList::iterator& at,
                         platform::CompiledRegExpPtr& out) {
    at = m_entries.end();
    if (m_capacity == 0)
        return platform::CompileRegExp(pattern, ignoreCase, out);
    auto found = m_index.find(Key{pattern, ignoreCase});
    if (found != m_index.end()) {
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        at = found->second;
        out = at->compiled;
        return S_OK;
    }
    platform::CompiledRegExpPtr compiled;
    HRESULT hr = platform::CompileRegExp(pattern, ignoreCase, compiled);
    if (FAILED(hr))
        return hr;
    m_entries.push_front(Entry{std::u16string(pattern), ignoreCase, compiled, {}, 0, {}});
    m_entries.front().self = m_entries.begin();
    try {
        m_index.emplace(Key{m_entries.front().pattern, ignoreCase}, m_entries.begin());
    } catch (...) {
        m_entries.pop_front();
        throw;
    }
    at = m_entries.begin();
    Trim();
    out = std::move(compiled);
    return S_OK;
}

HRESULT RegexCache::Compile(std::u16string_view pattern, bool ignoreCase,
                            platform::CompiledRegExpPtr& out) {
    EntryList::iterator at;
    return Find(pattern, ignoreCase, at, out);
}

std::size_t RegexCache::QuickHash(std::string_view pattern, unsigned codePage, bool ignoreCase) {
    // Length, flags and three blocks of eight bytes (start, middle, end; overlapping or short
    // for a short pattern) in one multiplication: a collision costs a lookup, never an answer.
    const std::size_t n = pattern.size();
    auto block = [&](std::size_t at) {
        std::uint64_t value = 0;
        std::memcpy(&value, pattern.data() + at, std::min<std::size_t>(8, n - at));
        return value;
    };
    std::uint64_t hash = (n * 4 + (ignoreCase ? 1 : 0)) ^ (std::uint64_t(codePage) << 40);
    if (n > 0) {
        hash ^= block(0);
        hash ^= std::rotl(block(n / 2 > 4 ? n / 2 - 4 : 0), 21);
        hash ^= std::rotl(block(n > 8 ? n - 8 : 0), 42);
    }
    hash *= 0x9E3779B97F4A7C15ull;
    return static_cast<std::size_t>(hash >> 32);
}

bool RegexCache::IsRecent(const Entry& entry, std::string_view pattern, unsigned codePage,
                          bool ignoreCase) const {
    return entry.codePage == codePage && entry.ignoreCase == ignoreCase && entry.narrow == pattern;
}

HRESULT RegexCache::CompileNarrow(std::string_view pattern, unsigned codePage, bool ignoreCase,
                                  std::u16string_view& wide, platform::CompiledRegExpPtr& out) {
    Entry** set = m_recent + QuickHash(pattern, codePage, ignoreCase) % RecentSets * 2;
    for (int way = 0; way < 2 && m_capacity != 0; ++way) {
        Entry* recent = set[way];
        if (recent == nullptr || !IsRecent(*recent, pattern, codePage, ignoreCase))
            continue;
        if (way == 1)
            std::swap(set[0], set[1]); // the one asked last first
        // Most recently used first; the front needs no move.
        if (&m_entries.front() != recent)
            m_entries.splice(m_entries.begin(), m_entries, recent->self);
        wide = recent->pattern;
        out = recent->compiled;
        return S_OK;
    }
    if (m_capacity != 0) {
        auto found = m_narrowIndex.find(NarrowKey{pattern, codePage, ignoreCase});
        if (found != m_narrowIndex.end()) {
            m_entries.splice(m_entries.begin(), m_entries, found->second);
            Remember(set, &*found->second);
            wide = found->second->pattern;
            out = found->second->compiled;
            return S_OK;
        }
    }
    platform::ToWide(pattern, m_wide);
    wide = m_wide;
    EntryList::iterator at;
    HRESULT hr = Find(m_wide, ignoreCase, at, out);
    if (FAILED(hr) || at == m_entries.end())
        return hr;
    // One 8-bit key per entry: the one asked last (the same wide pattern comes from other
    // bytes in another code page).
    Entry& entry = *at;
    if (entry.codePage != 0)
        m_narrowIndex.erase(NarrowKey{entry.narrow, entry.codePage, entry.ignoreCase});
    entry.codePage = 0;
    entry.narrow.assign(pattern);
    m_narrowIndex.emplace(NarrowKey{entry.narrow, codePage, ignoreCase}, at);
    entry.codePage = codePage;
    Remember(set, &entry);
    wide = entry.pattern;
    return S_OK;
}

void RegexCache::Remember(Entry** set, Entry* entry) {
    set[1] = set[0];
    set[0] = entry;
}

void RegexCache::SetCapacity(std::size_t capacity) {
    m_capacity = capacity;
    Trim();
}

void RegexCache::Clear() {
    std::fill(std::begin(m_recent), std::end(m_recent), nullptr);
    m_narrowIndex.clear();
    m_index.clear();
    m_entries.clear();
}

void RegexCache::Forget(const Entry& entry) {
    for (Entry*& recent : m_recent)
        if (recent == &entry)
            recent = nullptr;
    if (entry.codePage != 0)
        m_narrowIndex.erase(NarrowKey{entry.narrow, entry.codePage, entry.ignoreCase});
    m_index.erase(Key{entry.pattern, entry.ignoreCase});
}

void RegexCache::Trim() {
    while (m_entries.size() > m_capacity) {
        Forget(m_entries.back());
        m_entries.pop_back();
    }
}

RegexCache& FacadeRegexCache() {
    // Never destroyed, like the matcher it serves: a call from another object's destructor
    // at process end still finds it.
    static RegexCache* cache = new RegexCache;
    return *cache;
}

} // namespace talvor::text::detail
