// The regular expression object: its properties, and Test, Execute and Replace over the
// matches that PCRE2 finds, stepping through the text as ECMAScript's global matching does.
#include "platform/regex/regex_engine.h"

#include "platform/regex/detail/regex_program.h"
#include "platform/regex/detail/regex_substitution.h"

#include <new>

namespace talvor::platform {
namespace {

// Texts longer than a LONG can count are refused, so every position fits a match's fields.
constexpr std::size_t MaxTextLength = 0x7FFFFFFF;

} // namespace

RegExpMatch::RegExpMatch(LONG firstIndex, std::u16string value,
                         std::vector<std::u16string> subMatches)
    : m_firstIndex(firstIndex), m_value(std::move(value)), m_subMatches(std::move(subMatches)) {}

HRESULT RegExpMatch::get_FirstIndex(LONG* firstIndex) const {
    if (firstIndex == nullptr)
        return E_POINTER;
    *firstIndex = m_firstIndex;
    return S_OK;
}

HRESULT RegExpMatch::get_Length(LONG* length) const {
    if (length == nullptr)
        return E_POINTER;
    *length = static_cast<LONG>(m_value.size());
    return S_OK;
}

HRESULT RegExpMatch::get_Value(std::u16string* value) const {
    if (value == nullptr)
        return E_POINTER;
    *value = m_value;
    return S_OK;
}

HRESULT RegExpMatchCollection::get_Count(LONG* count) const {
    if (count == nullptr)
        return E_POINTER;
    *count = static_cast<LONG>(m_matches.size());
    return S_OK;
}

HRESULT RegExpMatchCollection::get_Item(LONG index, const RegExpMatch** match) const {
    if (match == nullptr)
        return E_POINTER;
    if (index < 0 || static_cast<std::size_t>(index) >= m_matches.size())
        return E_INVALIDARG;
    *match = &m_matches[static_cast<std::size_t>(index)];
    return S_OK;
}

RegExpEngine::RegExpEngine() : RegExpEngine(CompileRegExp) {}

RegExpEngine::RegExpEngine(Compiler compiler)
    : m_compiler(std::move(compiler)), m_state(std::make_unique<RegExpMatchState>()) {}

RegExpEngine::~RegExpEngine() = default;

HRESULT RegExpEngine::put_Pattern(std::u16string_view pattern) {
    if (pattern == m_pattern)
        return S_OK;
    try {
        m_pattern.assign(pattern);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    m_compiled.reset();
    return S_OK;
}

HRESULT RegExpEngine::get_Pattern(std::u16string* pattern) const {
    if (pattern == nullptr)
        return E_POINTER;
    *pattern = m_pattern;
    return S_OK;
}

HRESULT RegExpEngine::put_IgnoreCase(VARIANT_BOOL ignoreCase) {
    if ((ignoreCase != VARIANT_FALSE) != m_ignoreCase)
        m_compiled.reset();
    m_ignoreCase = ignoreCase != VARIANT_FALSE;
    return S_OK;
}

HRESULT RegExpEngine::get_IgnoreCase(VARIANT_BOOL* ignoreCase) const {
    if (ignoreCase == nullptr)
        return E_POINTER;
    *ignoreCase = m_ignoreCase ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT RegExpEngine::put_Global(VARIANT_BOOL global) {
    m_global = global != VARIANT_FALSE;
    return S_OK;
}

HRESULT RegExpEngine::get_Global(VARIANT_BOOL* global) const {
    if (global == nullptr)
        return E_POINTER;
    *global = m_global ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT RegExpEngine::PutCompiledPattern(std::u16string_view pattern, VARIANT_BOOL ignoreCase,
                                         CompiledRegExpPtr compiled) {
    const bool caseless = ignoreCase != VARIANT_FALSE;
    // A compiled pattern comes from one pattern text, so the same one means the same text.
    if (compiled != nullptr && compiled == m_compiled && caseless == m_ignoreCase)
        return S_OK;
    try {
        m_pattern.assign(pattern);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    m_ignoreCase = caseless;
    m_compiled = std::move(compiled);
    return S_OK;
}

HRESULT RegExpEngine::Compiled(const CompiledRegExp** compiled) {
    if (!m_compiled) {
        if (!m_compiler)
            return E_UNEXPECTED;
        CompiledRegExpPtr fresh;
        HRESULT hr = m_compiler(m_pattern, m_ignoreCase, fresh);
        if (FAILED(hr))
            return hr;
        if (!fresh)
            return E_UNEXPECTED;
        m_compiled = std::move(fresh);
    }
    *compiled = m_compiled.get();
    return S_OK;
}

HRESULT RegExpEngine::Test(std::u16string_view text, VARIANT_BOOL* matched) {
    if (matched == nullptr)
        return E_POINTER;
    if (text.size() > MaxTextLength)
        return E_INVALIDARG;
    try {
        const CompiledRegExp* compiled = nullptr;
        HRESULT hr = Compiled(&compiled);
        if (FAILED(hr))
            return hr;
        bool found = false;
        hr = m_state->Find(*compiled, text, 0, found, m_groups);
        if (FAILED(hr))
            return hr;
        *matched = found ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

namespace {

// Calls visit(groups) for each match, in the order of the text: all of them with global,
// else the first. After an empty match the next search starts one code unit further on.
template <class Visit>
HRESULT ForEachMatch(RegExpMatchState& state, const CompiledRegExp& compiled,
                     std::u16string_view text, bool global, Visit visit) {
    std::size_t next = 0;
    std::vector<std::ptrdiff_t> groups;
    while (next <= text.size()) {
        bool found = false;
        HRESULT hr = state.Find(compiled, text, next, found, groups);
        if (FAILED(hr))
            return hr;
        if (!found)
            break;
        visit(groups);
        if (!global)
            break;
        const std::size_t end = static_cast<std::size_t>(groups[1]);
        next = end == static_cast<std::size_t>(groups[0]) ? end + 1 : end;
    }
    return S_OK;
}

} // namespace

HRESULT RegExpEngine::Execute(std::u16string_view text, RegExpMatchCollection* matches) {
    if (matches == nullptr)
        return E_POINTER;
    if (text.size() > MaxTextLength)
        return E_INVALIDARG;
    try {
        const CompiledRegExp* compiled = nullptr;
        HRESULT hr = Compiled(&compiled);
        if (FAILED(hr))
            return hr;
        RegExpMatchCollection found;
        hr = ForEachMatch(
            *m_state, *compiled, text, m_global, [&](const std::vector<std::ptrdiff_t>& groups) {
                std::vector<std::u16string> subMatches;
                for (std::size_t g = 2; g + 1 < groups.size(); g += 2) {
                    if (groups[g] < 0)
                        subMatches.emplace_back();
                    else
                        subMatches.emplace_back(
                            text.substr(static_cast<std::size_t>(groups[g]),
                                        static_cast<std::size_t>(groups[g + 1] - groups[g])));
                }
                const auto start = static_cast<std::size_t>(groups[0]);
                const auto length = static_cast<std::size_t>(groups[1]) - start;
                found.Add(RegExpMatch(static_cast<LONG>(start),
                                      std::u16string(text.substr(start, length)),
                                      std::move(subMatches)));
            });
        if (FAILED(hr))
            return hr;
        *matches = std::move(found);
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT RegExpEngine::Replace(std::u16string_view text, std::u16string_view replacement,
                              std::u16string* result, LONG* replaced) {
    if (result == nullptr)
        return E_POINTER;
    if (text.size() > MaxTextLength)
        return E_INVALIDARG;
    try {
        const CompiledRegExp* compiled = nullptr;
        HRESULT hr = Compiled(&compiled);
        if (FAILED(hr))
            return hr;
        std::u16string out;
        std::size_t copied = 0;
        LONG count = 0;
        hr = ForEachMatch(*m_state, *compiled, text, m_global,
                          [&](const std::vector<std::ptrdiff_t>& groups) {
                              const auto start = static_cast<std::size_t>(groups[0]);
                              out.append(text.substr(copied, start - copied));
                              detail::AppendSubstitution(out, replacement, text, groups);
                              copied = static_cast<std::size_t>(groups[1]);
                              ++count;
                          });
        if (FAILED(hr))
            return hr;
        out.append(text.substr(copied));
        *result = std::move(out);
        if (replaced != nullptr)
            *replaced = count;
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

} // namespace talvor::platform
