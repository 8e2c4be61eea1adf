// PCRE2's 16-bit library behind the regular expression component: compiles translated
// patterns (with the JIT where it is available) and finds matches under fixed limits.
#include "platform/regex/detail/regex_program.h"

#include "platform/regex/detail/regex_translate.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <algorithm>
#include <memory>
#include <new>

namespace talvor::platform {
namespace {

// Far above what any pattern of a script line needs, and low enough that a pattern that
// backtracks without end gives up within a fraction of a second.
constexpr std::uint32_t MatchLimit = 2'000'000;
constexpr std::uint32_t DepthLimit = 1'000'000;
constexpr PCRE2_SIZE HeapLimitKibibytes = 64 * 1024;
constexpr PCRE2_SIZE JitStackStart = 32 * 1024;
constexpr PCRE2_SIZE JitStackMax = 4 * 1024 * 1024;

pcre2_compile_context* CompileContext() {
    static pcre2_compile_context* context = [] {
        pcre2_compile_context* created = pcre2_compile_context_create(nullptr);
        if (created != nullptr)
            pcre2_set_parens_nest_limit(created, detail::MaxRegExpNesting + 16);
        return created;
    }();
    return context;
}

HRESULT FromCompileError(int error) {
    switch (error) {
    case PCRE2_ERROR_PATTERN_TOO_LARGE:
    case PCRE2_ERROR_HEAP_FAILED:
    case PCRE2_ERROR_QUANTIFIER_TOO_BIG:
    case PCRE2_ERROR_TOO_MANY_CAPTURES:
    case PCRE2_ERROR_PATTERN_STRING_TOO_LONG:
    case PCRE2_ERROR_PATTERN_TOO_COMPLICATED:
        return RegExpOutOfMemory;
    case PCRE2_ERROR_PARENTHESES_NEST_TOO_DEEP:
        return RegExpOutOfStack;
    default:
        return RegExpSyntaxError;
    }
}

HRESULT FromMatchError(int error) {
    switch (error) {
    case PCRE2_ERROR_MATCHLIMIT:
    case PCRE2_ERROR_DEPTHLIMIT:
    case PCRE2_ERROR_HEAPLIMIT:
    case PCRE2_ERROR_JIT_STACKLIMIT:
        return RegExpOutOfStack;
    case PCRE2_ERROR_NOMEMORY:
        return RegExpOutOfMemory;
    default:
        return E_FAIL;
    }
}

// Follows a back-reference compared ignoring case: fails the match at this point (so that
// PCRE2 backtracks) when the text just matched pairs a character with one that ECMAScript
// does not count as its other case.
int CheckCaselessBackReference(pcre2_callout_block* block, void*) {
    if (block->callout_string == nullptr)
        return 0;
    std::uint32_t group = 0;
    for (PCRE2_SIZE i = 0; i < block->callout_string_length; ++i)
        group = group * 10 + static_cast<std::uint32_t>(block->callout_string[i] - u'0');
    if (group >= block->capture_top)
        return 0; // an unset group matched empty
    const PCRE2_SIZE start = block->offset_vector[2 * group];
    const PCRE2_SIZE end = block->offset_vector[2 * group + 1];
    if (start == PCRE2_UNSET || end < start || block->current_position < end - start)
        return 0;
    const PCRE2_SIZE length = end - start;
    const PCRE2_SIZE repeated = block->current_position - length;
    for (PCRE2_SIZE i = 0; i < length; ++i)
        if (detail::EcmaCaseDistinct(block->subject[start + i], block->subject[repeated + i]))
            return 1;
    return 0;
}

} // namespace

CompiledRegExp::~CompiledRegExp() {
    pcre2_code_free(m_code);
    pcre2_code_free(m_anchoredCode);
}

void CompiledRegExp::SetLiteral(const detail::LiteralSearch& literal,
                                pcre2_real_code_16* anchoredCode, bool jitCompiled) {
    m_literal = literal;
    m_anchoredCode = anchoredCode;
    m_anchoredJitCompiled = jitCompiled;
}

HRESULT CompileRegExp(std::u16string_view pattern, bool ignoreCase, CompiledRegExpPtr& out) {
    detail::TranslatedRegExp translated;
    HRESULT hr = detail::TranslateRegExp(pattern, ignoreCase, translated);
    if (FAILED(hr))
        return hr;
    pcre2_compile_context* context = CompileContext();
    if (context == nullptr)
        return RegExpOutOfMemory;
    std::uint32_t options = PCRE2_MATCH_UNSET_BACKREF;
    if (translated.caseless)
        options |= PCRE2_CASELESS | PCRE2_UCP;
    int error = 0;
    PCRE2_SIZE offset = 0;
    pcre2_code* code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(translated.pattern.data()),
                                     translated.pattern.size(), options, &error, &offset, context);
    if (code == nullptr)
        return FromCompileError(error);
    // Without the JIT (an unsupported processor, no executable memory) the interpreter runs.
    // PCRE2 10.42's JIT compares a caseless back-reference beyond ASCII by code unit when
    // Unicode properties are on without UTF ("(.)\1" misses "\u00c9\u00e9"); the
    // interpreter folds it, so such patterns are left to the interpreter.
    const bool jitCompiled =
        !translated.caselessBackReference && pcre2_jit_compile(code, PCRE2_JIT_COMPLETE) == 0;
    try {
        auto compiled =
            std::make_shared<CompiledRegExp>(code, translated.captureCount, jitCompiled);
        detail::WordSearch word;
        detail::LiteralSearch literal;
        if (detail::WordSearch::Recognise(pattern, ignoreCase, word)) {
            compiled->SetWord(word);
        } else if (detail::LiteralSearch::Recognise(pattern, ignoreCase, literal)) {
            // Without the anchored form the pattern keeps the plain search.
            pcre2_code* anchored = pcre2_compile(
                reinterpret_cast<PCRE2_SPTR>(translated.pattern.data()), translated.pattern.size(),
                options | PCRE2_ANCHORED, &error, &offset, context);
            if (anchored != nullptr)
                compiled->SetLiteral(literal, anchored,
                                     jitCompiled &&
                                         pcre2_jit_compile(anchored, PCRE2_JIT_COMPLETE) == 0);
        }
        out = std::move(compiled);
    } catch (const std::bad_alloc&) {
        pcre2_code_free(code);
        return RegExpOutOfMemory;
    }
    return S_OK;
}

RegExpMatchState::RegExpMatchState() {
    m_context = pcre2_match_context_create(nullptr);
    m_jitStack = pcre2_jit_stack_create(JitStackStart, JitStackMax, nullptr);
    if (m_context != nullptr) {
        pcre2_set_match_limit(m_context, MatchLimit);
        pcre2_set_depth_limit(m_context, DepthLimit);
        pcre2_set_heap_limit(m_context, HeapLimitKibibytes);
        if (m_jitStack != nullptr)
            pcre2_jit_stack_assign(m_context, nullptr, m_jitStack);
        pcre2_set_callout(m_context, CheckCaselessBackReference, nullptr);
    }
}

RegExpMatchState::~RegExpMatchState() {
    pcre2_match_data_free(m_data);
    pcre2_jit_stack_free(m_jitStack);
    pcre2_match_context_free(m_context);
}

HRESULT RegExpMatchState::Find(const CompiledRegExp& compiled, std::u16string_view text,
                               std::size_t start, bool& found,
                               std::vector<std::ptrdiff_t>& groups) {
    found = false;
    if (m_context == nullptr)
        return RegExpOutOfMemory;
    const int pairs = compiled.CaptureCount() + 1;
    if (m_data == nullptr || m_dataPairs < pairs) {
        pcre2_match_data_free(m_data);
        m_data = pcre2_match_data_create(static_cast<std::uint32_t>(pairs), nullptr);
        m_dataPairs = m_data == nullptr ? 0 : pairs;
        if (m_data == nullptr)
            return RegExpOutOfMemory;
    }
    if (const detail::WordSearch* word = compiled.Word()) {
        std::size_t matchStart = 0, matchEnd = 0;
        if (word->Find(text, start, matchStart, matchEnd)) {
            groups.assign(static_cast<std::size_t>(pairs) * 2, -1);
            groups[0] = static_cast<std::ptrdiff_t>(matchStart);
            groups[1] = static_cast<std::ptrdiff_t>(matchEnd);
            found = true;
        }
        return S_OK;
    }
    if (compiled.Literal() != nullptr)
        return FindByLiteral(compiled, text, start, found, groups);
    static const char16_t Empty[1] = {0}; // PCRE2 wants a subject even when it is empty
    const char16_t* subject = text.empty() ? Empty : text.data();
    // The JIT's own entry skips the checks of pcre2_match, which a subject of code units with
    // no UTF mode does not need; the limits of the context hold either way.
    const int rc = compiled.JitCompiled()
                       ? pcre2_jit_match(compiled.Code(), reinterpret_cast<PCRE2_SPTR>(subject),
                                         text.size(), start, 0, m_data, m_context)
                       : pcre2_match(compiled.Code(), reinterpret_cast<PCRE2_SPTR>(subject),
                                     text.size(), start, 0, m_data, m_context);
    return TakeMatch(rc, compiled.CaptureCount() + 1, found, groups);
}

// A search tries the pattern at each position in turn and gives the first match. A match
// holds an occurrence of the run and starts at most as far in front of it as the part
// before the run reaches, so only those positions are tried, each once, in the same order.
HRESULT RegExpMatchState::FindByLiteral(const CompiledRegExp& compiled, std::u16string_view text,
                                        std::size_t start, bool& found,
                                        std::vector<std::ptrdiff_t>& groups) {
    const detail::LiteralSearch& literal = *compiled.Literal();
    const auto* subject = reinterpret_cast<PCRE2_SPTR>(text.data());
    std::size_t untried = start;
    for (std::size_t run = literal.NextRun(text, start); run != detail::LiteralSearch::npos;
         run = literal.NextRun(text, run + 1)) {
        for (std::size_t at = literal.EarliestStart(text, run, untried); at <= run; ++at) {
            const int rc = compiled.AnchoredJitCompiled()
                               ? pcre2_jit_match(compiled.AnchoredCode(), subject, text.size(), at,
                                                 0, m_data, m_context)
                               : pcre2_match(compiled.AnchoredCode(), subject, text.size(), at, 0,
                                             m_data, m_context);
            if (rc != PCRE2_ERROR_NOMATCH)
                return TakeMatch(rc, compiled.CaptureCount() + 1, found, groups);
        }
        untried = run + 1;
    }
    return S_OK;
}

HRESULT RegExpMatchState::TakeMatch(int rc, int pairs, bool& found,
                                    std::vector<std::ptrdiff_t>& groups) {
    if (rc == PCRE2_ERROR_NOMATCH)
        return S_OK;
    if (rc < 0)
        return FromMatchError(rc);
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(m_data);
    groups.assign(static_cast<std::size_t>(pairs) * 2, -1);
    // Pairs above the count that pcre2_match gives took no part in the match.
    const int setPairs = rc == 0 ? pairs : std::min(rc, pairs);
    for (int i = 0; i < setPairs; ++i) {
        if (ovector[2 * i] == PCRE2_UNSET)
            continue;
        groups[2 * i] = static_cast<std::ptrdiff_t>(ovector[2 * i]);
        groups[2 * i + 1] = static_cast<std::ptrdiff_t>(ovector[2 * i + 1]);
    }
    found = true;
    return S_OK;
}

} // namespace talvor::platform
