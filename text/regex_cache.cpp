// A least-recently-used cache of compiled patterns.
#include "text/detail/regex_cache.h"

namespace talvor::text::detail {

HRESULT RegexCache::Compile(std::u16string_view pattern, bool ignoreCase,
                            platform::CompiledRegExpPtr& out) {
    if (m_capacity == 0)
        return platform::CompileRegExp(pattern, ignoreCase, out);
    auto found = m_index.find(Key{pattern, ignoreCase});
    if (found != m_index.end()) {
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        out = found->second->compiled;
        return S_OK;
    }
    platform::CompiledRegExpPtr compiled;
    HRESULT hr = platform::CompileRegExp(pattern, ignoreCase, compiled);
    if (FAILED(hr))
        return hr;
    m_entries.push_front(Entry{std::u16string(pattern), ignoreCase, compiled});
    try {
        m_index.emplace(Key{m_entries.front().pattern, ignoreCase}, m_entries.begin());
    } catch (...) {
        m_entries.pop_front();
        throw;
    }
    Trim();
    out = std::move(compiled);
    return S_OK;
}

void RegexCache::SetCapacity(std::size_t capacity) {
    m_capacity = capacity;
    Trim();
}

void RegexCache::Clear() {
    m_index.clear();
    m_entries.clear();
}

void RegexCache::Trim() {
    while (m_entries.size() > m_capacity) {
        const Entry& oldest = m_entries.back();
        m_index.erase(Key{oldest.pattern, oldest.ignoreCase});
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
