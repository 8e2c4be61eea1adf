// Line parser throughput on large real inputs: the VBScript corpus as Basic and the C++ files of
// the language corpus, each repeated to at least 20 MiB, coloured line by line with the cookie
// carried across hard line ends, with run lists (painting) and without (the cookie cache).
// The input definition is the one bench/compare_source_highlight.sh uses: the files in byte
// order of their paths, each followed by a line feed if it lacks one, repeated whole.
#include "platform/app/profile.h"
#include "platform/codepage/code_page.h"
#include "platform/files/file_system.h"
#include "syntax/document_colourer.h"
#include "syntax/styled_line.h"
#include "syntax/text_lines.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cctype>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr std::size_t InputBytes = 20u << 20;

struct Corpus {
    UINT language = 0;
    std::vector<CString> lines;     // the whole input
    std::size_t bytes = 0;          // size of the input text, line ends included
    std::size_t firstCopyLines = 0; // lines of one pass over the files
    std::string expected;           // golden colouring of one pass
    std::string error;              // why the corpus can't be used
};

std::string Lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

// Files of a corpus folder whose names end in one of the extensions (case ignored), sorted.
std::vector<std::string> FilesOf(const std::string& folder,
                                 const std::vector<std::string>& extensions) {
    std::vector<std::string> files;
    for (const std::string& name :
         talvor::platform::ListFolder(folder, talvor::platform::FolderEntries::Files)) {
        const std::string path = folder + "/" + name;
        for (const std::string& extension : extensions) {
            const std::string lower = Lower(path);
            if (lower.size() >= extension.size() &&
                lower.compare(lower.size() - extension.size(), extension.size(), extension) == 0)
                files.push_back(path);
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

Corpus LoadCorpus(UINT language, const std::string& folder,
                  const std::vector<std::string>& extensions, const std::string& goldenFolder) {
    Corpus corpus;
    corpus.language = language;
    std::string once, error;
    for (const std::string& path : FilesOf(folder, extensions)) {
        std::string text, golden;
        if (!talvor::platform::ReadWholeFile(path, text, error)) {
            corpus.error = error;
            return corpus;
        }
        const std::string name = path.substr(path.rfind('/') + 1);
        if (!talvor::platform::ReadWholeFile(goldenFolder + "/" + name + ".styled", golden,
                                             error)) {
            corpus.error = error;
            return corpus;
        }
        once += text;
        if (!text.empty() && text.back() != '\n')
            once += '\n';
        corpus.expected += golden;
    }
    if (once.empty()) {
        corpus.error = "no input files in " + folder;
        return corpus;
    }
    corpus.firstCopyLines = talvor::syntax::SplitLines(once).size();
    std::string input;
    while (input.size() < InputBytes)
        input += once;
    corpus.bytes = input.size();
    for (std::string_view line : talvor::syntax::SplitLines(input))
        corpus.lines.emplace_back(line);
    return corpus;
}

// Colours the lines as a paint does, with run lists; returns the cookie after the last line.
unsigned long ColourAll(talvor::syntax::DocumentColourer& colourer, std::span<CString> lines,
                        std::string* styled) {
    return colourer.ColourLines(lines, [styled](const talvor::syntax::ColouredLine& line) {
        if (styled != nullptr)
            talvor::syntax::AppendStyledLine(*styled, line.text, line.runs, line.count,
                                             line.cookieAtEnd, talvor::syntax::StyledForm::Lengths);
        benchmark::DoNotOptimize(line.runs);
    });
}

Corpus& Basic() {
    static Corpus corpus =
        LoadCorpus(3, std::string(TALVOR_CORPUS_DIR) + "/vbscript", {".vbs"},
                   std::string(TALVOR_SOURCE_DIR) + "/tests/syntax/examples/3-basic/vbscript");
    return corpus;
}

Corpus& Cpp() {
    static Corpus corpus =
        LoadCorpus(8, std::string(TALVOR_CORPUS_DIR) + "/languages/8-cpp", {".cc", ".h"},
                   std::string(TALVOR_SOURCE_DIR) + "/tests/syntax/examples/8-cpp");
    return corpus;
}

// Loads the language and checks the colouring of one pass against the golden files, so that a
// fast wrong parser cannot win. Returns false (and skips the benchmark) when it differs.
bool Prepare(benchmark::State& state, Corpus& corpus, talvor::syntax::DocumentColourer& colourer) {
    if (!corpus.error.empty()) {
        state.SkipWithError(corpus.error.c_str());
        return false;
    }
    // Built-in rules and keywords only: a profile on this machine must not change the answer.
    AfxGetApp()->SetProfileStore(std::make_shared<talvor::platform::MemoryProfile>());
    talvor::platform::SetSystemCodePage(talvor::platform::CodePageWestern);
    colourer.LoadLanguage(corpus.language);
    std::string styled;
    ColourAll(colourer, std::span(corpus.lines).first(corpus.firstCopyLines), &styled);
    if (styled != corpus.expected) {
        state.SkipWithError("colouring differs from the golden files");
        return false;
    }
    return true;
}

void RunPaint(benchmark::State& state, Corpus& corpus) {
    CTalvorSyntax syntax;
    talvor::syntax::DocumentColourer colourer(syntax);
    if (!Prepare(state, corpus, colourer))
        return;
    for (auto _ : state)
        benchmark::DoNotOptimize(ColourAll(colourer, corpus.lines, nullptr));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus.bytes));
    state.counters["lines"] = static_cast<double>(corpus.lines.size());
}

void RunCookies(benchmark::State& state, Corpus& corpus) {
    CTalvorSyntax syntax;
    talvor::syntax::DocumentColourer colourer(syntax);
    if (!Prepare(state, corpus, colourer))
        return;
    const unsigned long painted = ColourAll(colourer, corpus.lines, nullptr);
    if (colourer.CookieAfterLines(corpus.lines) != painted)
        return state.SkipWithError("cookies without run lists differ from painted ones");
    for (auto _ : state)
        benchmark::DoNotOptimize(colourer.CookieAfterLines(corpus.lines));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus.bytes));
}

void BM_ParseLine_LargeBasic(benchmark::State& state) {
    RunPaint(state, Basic());
}
void BM_ParseLine_LargeCpp(benchmark::State& state) {
    RunPaint(state, Cpp());
}
void BM_ParseLineCookiesOnly_LargeBasic(benchmark::State& state) {
    RunCookies(state, Basic());
}
void BM_ParseLineCookiesOnly_LargeCpp(benchmark::State& state) {
    RunCookies(state, Cpp());
}

BENCHMARK(BM_ParseLine_LargeBasic)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseLine_LargeCpp)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseLineCookiesOnly_LargeBasic)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseLineCookiesOnly_LargeCpp)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
