// A compiled pattern and the scratch state that matching needs. The PCRE2 types are named
// only by their forward declarations, so no file outside platform/ sees <pcre2.h>.
#pragma once

#include "platform/regex/detail/regex_literal_search.h"
#include "platform/regex/detail/regex_word_search.h"
#include "platform/regex/regex_engine.h"

#include <optional>

#include <cstddef>
#include <string_view>
#include <vector>

struct pcre2_real_code_16;
struct pcre2_real_match_data_16;
struct pcre2_real_match_context_16;
struct pcre2_real_jit_stack_16;

namespace talvor::platform {

// Immutable once built, so one compiled pattern may serve any number of engine objects.
class CompiledRegExp {
public:
    CompiledRegExp(pcre2_real_code_16* code, int captureCount, bool jitCompiled)
        : m_code(code), m_captureCount(captureCount), m_jitCompiled(jitCompiled) {}
    ~CompiledRegExp();
    CompiledRegExp(const CompiledRegExp&) = delete;
    CompiledRegExp& operator=(const CompiledRegExp&) = delete;

    int CaptureCount() const { return m_captureCount; }
    const pcre2_real_code_16* Code() const { return m_code; }
    // True when the JIT compiled the pattern, so its machine code may be called directly.
    bool JitCompiled() const { return m_jitCompiled; }
    // The keyword test's pattern, matched without PCRE2; null for every other pattern.
    const detail::WordSearch* Word() const { return m_word ? &*m_word : nullptr; }
    void SetWord(const detail::WordSearch& word) { m_word = word; }
    // For a pattern that a run of plain characters narrows down: the run's search and the
    // pattern compiled to match only at the start offset it is given. Null for every other
    // pattern.
    const detail::LiteralSearch* Literal() const { return m_literal ? &*m_literal : nullptr; }
    const pcre2_real_code_16* AnchoredCode() const { return m_anchoredCode; }
    bool AnchoredJitCompiled() const { return m_anchoredJitCompiled; }
    // Takes ownership of anchoredCode.
    void SetLiteral(const detail::LiteralSearch& literal, pcre2_real_code_16* anchoredCode,
                    bool jitCompiled);

private:
    pcre2_real_code_16* m_code;
    int m_captureCount;
    bool m_jitCompiled;
    std::optional<detail::WordSearch> m_word;
    std::optional<detail::LiteralSearch> m_literal;
    pcre2_real_code_16* m_anchoredCode = nullptr;
    bool m_anchoredJitCompiled = false;
};

// Limits, stack and match data for matching; one per engine object.
class RegExpMatchState {
public:
    RegExpMatchState();
    ~RegExpMatchState();
    RegExpMatchState(const RegExpMatchState&) = delete;
    RegExpMatchState& operator=(const RegExpMatchState&) = delete;

    // The leftmost match that starts at or after start. S_OK with found set; for a match,
    // groups gets CaptureCount() + 1 pairs of start and end (the whole match first), -1 for a
    // group that took no part. A match over the backtracking limit gives RegExpOutOfStack.
    HRESULT Find(const CompiledRegExp& compiled, std::u16string_view text, std::size_t start,
                 bool& found, std::vector<std::ptrdiff_t>& groups);

private:
    pcre2_real_match_context_16* m_context = nullptr;
    pcre2_real_jit_stack_16* m_jitStack = nullptr;
    pcre2_real_match_data_16* m_data = nullptr;
    int m_dataPairs = 0;

    // PCRE2's answer for one match call: S_OK with found set and groups filled on a match.
    HRESULT TakeMatch(int rc, int pairs, bool& found, std::vector<std::ptrdiff_t>& groups);
    HRESULT FindByLiteral(const CompiledRegExp& compiled, std::u16string_view text,
                          std::size_t start, bool& found, std::vector<std::ptrdiff_t>& groups);
};

} // namespace talvor::platform
