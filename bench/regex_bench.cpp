// The regular expression facade beside V8, in one run: the keyword test of the script engine
// ("[\W]{1}" + keyword + "[\W]{1}" on a 40-byte statement) in three code pages, and the
// searches and deletions of a rename over the sample script. Node times the same questions
// first (regex_bench.js); the table at the end gives both figures and V8's time over ours.
// Run with --benchmark_repetitions=5: the table takes the fastest repetition of each.
#include "platform/codepage/code_page.h"
#include "platform/files/file_system.h"
#include "tests/reference/node_regexp_oracle.h"
#include "text/detail/regex_cache.h"
#include "text/regular_expressions.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using talvor::platform::CodePageSimplifiedChinese;
using talvor::platform::CodePageUtf8;
using talvor::platform::CodePageWestern;

// A statement of 40 bytes as the engine tests it, with the blank on either side.
const std::string Statement = " If nCount > 10 And bVisible Then x = 1 ";
const std::string SamplePath = TALVOR_SOURCE_DIR "/samples/order_form.vbs";

enum class Kind { Test, Info, Replace };

// One question: the patterns are asked in turn, one per call, of the same text.
struct Question {
    std::string name;
    Kind kind;
    short global;
    short ignoreCase;
    std::vector<std::string> patterns;
    std::string textPath; // empty: the statement
    unsigned codePage = CodePageWestern;
};

std::vector<std::string> KeywordPatterns() {
    std::vector<std::string> list;
    for (const char* keyword :
         {"If", "Then", "Else", "End If", "Do While", "Loop", "For", "To", "Next", "Loop While"})
        list.push_back(std::string("[\\W]{1}") + keyword + "[\\W]{1}");
    return list;
}

// The patterns a rename builds over a script: the uses of a control's name, its handlers,
// the string literals, and the calls of the code operations.
const char* const NameUses = "[^\\w\\.]{1}\\s*txtQuantity\\s*[^\\w]{1}";
const char* const HandlerUses = "[^\\w\\.]{1}\\s*txtQuantity_KeyPress\\s*\\(";
const char* const StringLiterals = "\"[^\"]*\"";
const char* const Calls = "\\s+\\w+\\s*\\(";

std::vector<Question> Questions() {
    std::vector<Question> list;
    for (unsigned codePage : {CodePageWestern, CodePageUtf8, CodePageSimplifiedChinese})
        list.push_back({"TestByRegExp_Keyword/" + std::to_string(codePage), Kind::Test, -1, -1,
                        KeywordPatterns(), "", codePage});
    for (auto [kind, prefix] : {std::pair{Kind::Info, "GetInfoByRegExp_Sample/"},
                                std::pair{Kind::Replace, "ReplaceByRegExp_Sample/"}}) {
        list.push_back({prefix + std::string("NameUses"), kind, -1, -1, {NameUses}, SamplePath});
        list.push_back(
            {prefix + std::string("HandlerUses"), kind, -1, -1, {HandlerUses}, SamplePath});
        list.push_back(
            {prefix + std::string("StringLiterals"), kind, -1, 0, {StringLiterals}, SamplePath});
        list.push_back({prefix + std::string("Calls"), kind, -1, -1, {Calls}, SamplePath});
    }
    return list;
}

std::string ReadText(const std::string& path) {
    if (path.empty())
        return Statement;
    std::string text, error;
    if (!talvor::platform::ReadWholeFile(path, text, error))
        std::fprintf(stderr, "regex_bench: %s\n", error.c_str());
    return text;
}

// The question through the facade, as the engine asks it: prebuilt pattern and text.
void RunFacade(benchmark::State& state, const Question& question) {
    talvor::platform::SetSystemCodePage(question.codePage);
    std::vector<CString> patterns(question.patterns.begin(), question.patterns.end());
    const CString text(ReadText(question.textPath));
    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    CString result;
    auto ask = [&](const CString& pattern) {
        switch (question.kind) {
        case Kind::Test:
            return TVPfxTestByRegExp(pattern, text, question.global, question.ignoreCase);
        case Kind::Info:
            return TVPfxGetInfoByRegExp(pattern, text, matches, question.global,
                                        question.ignoreCase);
        case Kind::Replace:
            return TVPfxReplaceByRegExp(pattern, text, CString(), result, question.global,
                                        question.ignoreCase);
        }
        return 0;
    };
    int hits = 0;
    for (const CString& pattern : patterns)
        hits += ask(pattern);
    // The keyword round finds "If" and "Then" alone; every sample search finds something.
    if (question.kind == Kind::Test ? hits != 2 : hits != 1)
        return state.SkipWithError("the facade does not give the expected answers");
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ask(patterns[next]));
        next = next + 1 == patterns.size() ? 0 : next + 1;
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.GetLength()));
    talvor::platform::SetSystemCodePage(CodePageWestern);
}

// The keyword test with the cache off (every call compiles), and through std::regex compiled
// per call as the naive way to ask the same: for scale only, without a V8 figure.
void BM_TestByRegExp_Keyword_CacheOff(benchmark::State& state) {
    talvor::text::detail::FacadeRegexCache().SetCapacity(0);
    Question question{"", Kind::Test, -1, -1, KeywordPatterns(), "", CodePageWestern};
    RunFacade(state, question);
    talvor::text::detail::FacadeRegexCache().SetCapacity(
        talvor::text::detail::RegexCache::DefaultCapacity);
}

void BM_StdRegex_Keyword_CompiledPerCall(benchmark::State& state) {
    const std::vector<std::string> patterns = KeywordPatterns();
    std::size_t next = 0;
    for (auto _ : state) {
        const std::regex compiled(patterns[next], std::regex::ECMAScript | std::regex::icase);
        benchmark::DoNotOptimize(std::regex_search(Statement, compiled));
        next = next + 1 == patterns.size() ? 0 : next + 1;
    }
}

// V8's nanoseconds per call of each question, by name; empty when Node is not there or fails.
// Each question gets a Node process of its own, so that none runs on code that V8 optimised
// for another.
std::map<std::string, double> TimeInNode(const std::vector<Question>& questions) {
    std::map<std::string, double> times;
    const std::string node = talvor::testing::NodePath();
    if (node.empty()) {
        std::fprintf(stderr, "regex_bench: Node is not installed; no V8 figures\n");
        return times;
    }
    char statementPath[] = "/tmp/talvor_regex_bench_text_XXXXXX";
    char casePath[] = "/tmp/talvor_regex_bench_case_XXXXXX";
    const int statementFile = ::mkstemp(statementPath);
    const int caseFile = ::mkstemp(casePath);
    if (statementFile >= 0)
        ::close(statementFile);
    if (caseFile >= 0)
        ::close(caseFile);
    if (statementFile < 0 || caseFile < 0)
        return times;
    std::ofstream(statementPath, std::ios::binary) << Statement;
    for (const Question& q : questions) {
        {
            std::ofstream line(casePath, std::ios::binary | std::ios::trunc);
            std::string flags = std::string(q.global ? "g" : "") + (q.ignoreCase ? "i" : "");
            line << q.name << '\t'
                 << (q.kind == Kind::Test   ? "test"
                     : q.kind == Kind::Info ? "info"
                                            : "replace")
                 << '\t' << (flags.empty() ? "-" : flags) << '\t'
                 << (q.textPath.empty() ? std::string(statementPath) : q.textPath);
            for (const std::string& pattern : q.patterns)
                line << '\t' << pattern;
            line << '\n';
        }
        const std::string command = "'" + node +
                                    "' '" TALVOR_SOURCE_DIR "/bench/regex_bench.js' '" +
                                    std::string(casePath) + "'";
        if (FILE* pipe = ::popen(command.c_str(), "r")) {
            char answer[512];
            while (std::fgets(answer, sizeof answer, pipe) != nullptr) {
                std::string text(answer);
                const std::size_t tab = text.find('\t');
                if (tab != std::string::npos)
                    times[text.substr(0, tab)] = std::stod(text.substr(tab + 1));
            }
            ::pclose(pipe);
        }
    }
    ::unlink(statementPath);
    ::unlink(casePath);
    return times;
}

// The console output as usual, and the fastest processor time per call of each benchmark (of
// its repetitions) kept for the table at the end.
class Recorder : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
                continue;
            const double ns = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
            auto [at, added] = m_fastest.emplace(run.run_name.function_name, ns);
            if (!added && ns < at->second)
                at->second = ns;
        }
        ConsoleReporter::ReportRuns(runs);
    }
    const std::map<std::string, double>& Fastest() const { return m_fastest; }

private:
    std::map<std::string, double> m_fastest;
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    const std::vector<Question> questions = Questions();
    const std::map<std::string, double> v8 = TimeInNode(questions);
    for (const Question& question : questions)
        benchmark::RegisterBenchmark(
            ("BM_" + question.name).c_str(),
            [question](benchmark::State& state) { RunFacade(state, question); });
    benchmark::RegisterBenchmark("BM_TestByRegExp_Keyword_CacheOff",
                                 BM_TestByRegExp_Keyword_CacheOff);
    benchmark::RegisterBenchmark("BM_StdRegex_Keyword_CompiledPerCall",
                                 BM_StdRegex_Keyword_CompiledPerCall);
    Recorder recorder;
    benchmark::RunSpecifiedBenchmarks(&recorder);
    benchmark::Shutdown();

    std::printf("\n%-42s %12s %12s %10s\n", "question (CPU ns per call)", "talvor", "V8",
                "V8/talvor");
    for (const Question& question : questions) {
        auto ours = recorder.Fastest().find("BM_" + question.name);
        auto theirs = v8.find(question.name);
        if (ours == recorder.Fastest().end())
            continue;
        if (theirs == v8.end())
            std::printf("%-42s %12.1f %12s %10s\n", question.name.c_str(), ours->second, "-", "-");
        else
            std::printf("%-42s %12.1f %12.1f %10.2f\n", question.name.c_str(), ours->second,
                        theirs->second, theirs->second / ours->second);
    }
    return 0;
}
