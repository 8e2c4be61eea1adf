// The keyword test of the script engine, "[\W]{1}" + keyword + "[\W]{1}" on a statement padded
// with blanks, as the engine asks it: the flow keywords one after the other on one line.
// Through the facade with its cache of compiled patterns, with the cache off (each call
// compiles), and through std::regex compiled per call as the naive way to ask the same.
#include "text/detail/regex_cache.h"
#include "text/regular_expressions.h"

#include <benchmark/benchmark.h>
#include <regex>
#include <string>
#include <vector>

namespace {

// A statement of 40 bytes as the engine tests it, with the blank on either side.
const std::string Statement = " If nCount > 10 And bVisible Then x = 1 ";

const std::vector<std::string>& KeywordPatterns() {
    static const std::vector<std::string> patterns = [] {
        std::vector<std::string> list;
        for (const char* keyword : {"If", "Then", "Else", "End If", "Do While", "Loop", "For", "To",
                                    "Next", "Loop While", "Do"})
            list.push_back(std::string("[\\W]{1}") + keyword + "[\\W]{1}");
        return list;
    }();
    return patterns;
}

bool StdRegexTest(const std::string& pattern, const std::string& text) {
    const std::regex compiled(pattern, std::regex::ECMAScript | std::regex::icase);
    return std::regex_search(text, compiled);
}

// Hits of one round of all keywords: "If" and "Then" are in the statement.
template <class Test> int KeywordHits(Test test) {
    int hits = 0;
    for (const std::string& pattern : KeywordPatterns())
        hits += test(pattern) ? 1 : 0;
    return hits;
}

bool FacadeTest(const std::string& pattern) {
    return TVPfxTestByRegExp(pattern.c_str(), Statement.c_str(), -1, -1) == 1;
}

void SetCache(std::size_t capacity) {
    talvor::text::detail::FacadeRegexCache().SetCapacity(capacity);
}

// One keyword test per iteration, the keywords in turn.
template <class Test> void RunKeywordTests(benchmark::State& state, Test test) {
    const std::vector<std::string>& patterns = KeywordPatterns();
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(test(patterns[next]));
        next = next + 1 == patterns.size() ? 0 : next + 1;
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Statement.size()));
}

void BM_TestByRegExp_Keyword_Cached(benchmark::State& state) {
    SetCache(talvor::text::detail::RegexCache::DefaultCapacity);
    if (Statement.size() != 40 || KeywordHits(FacadeTest) != 2)
        return state.SkipWithError("the keyword tests do not find If and Then alone");
    RunKeywordTests(state, FacadeTest);
}
BENCHMARK(BM_TestByRegExp_Keyword_Cached);

void BM_TestByRegExp_Keyword_CacheOff(benchmark::State& state) {
    SetCache(0);
    if (KeywordHits(FacadeTest) != 2)
        return state.SkipWithError("the keyword tests do not find If and Then alone");
    RunKeywordTests(state, FacadeTest);
    SetCache(talvor::text::detail::RegexCache::DefaultCapacity);
}
BENCHMARK(BM_TestByRegExp_Keyword_CacheOff);

void BM_StdRegex_Keyword_CompiledPerCall(benchmark::State& state) {
    auto test = [](const std::string& pattern) { return StdRegexTest(pattern, Statement); };
    if (KeywordHits(test) != 2)
        return state.SkipWithError("std::regex does not find If and Then alone");
    RunKeywordTests(state, test);
}
BENCHMARK(BM_StdRegex_Keyword_CompiledPerCall);

// The word walk of GetInfo: Test, then Execute, then a record per match.
void BM_GetInfoByRegExp_Words_Cached(benchmark::State& state) {
    SetCache(talvor::text::detail::RegexCache::DefaultCapacity);
    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    if (TVPfxGetInfoByRegExp("\\w+", Statement.c_str(), matches, -1, -1) != 1 ||
        matches.GetSize() != 8)
        return state.SkipWithError("the word walk does not give the eight words");
    for (auto _ : state)
        benchmark::DoNotOptimize(TVPfxGetInfoByRegExp("\\w+", Statement.c_str(), matches, -1, -1));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Statement.size()));
}
BENCHMARK(BM_GetInfoByRegExp_Words_Cached);

} // namespace

BENCHMARK_MAIN();
