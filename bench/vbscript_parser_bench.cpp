// Throughput of the VBScript parser on the real corpus: every VBScript file of it, joined and
// repeated to 10 MB, parsed whole (lexer and parser), and the lexer alone.
#include "host/base/vbscript_lexer.h"
#include "host/base/vbscript_parser.h"
#include "platform/files/file_system.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <dirent.h>
#include <string>
#include <vector>

namespace {

using namespace talvor::host::vbscript;

struct Corpus {
    std::string text;           // about 10 MB
    std::size_t procedures = 0; // expected in text: the files' own counts, times the copies
    std::size_t errors = 0;     // expected in text
};

bool IsScriptFile(const std::string& name) {
    if (name.size() < 4)
        return false;
    std::string tail = name.substr(name.size() - 4);
    std::transform(tail.begin(), tail.end(), tail.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return tail == ".vbs";
}

// Each file parsed alone gives the procedure count the joined text must reproduce. Files are
// joined with a line end, so the last line of one never runs into the first of the next.
const Corpus& TenMegabytes() {
    static const Corpus corpus = [] {
        const std::string dir = std::string(TALVOR_CORPUS_DIR) + "/vbscript";
        std::vector<std::string> names;
        if (DIR* handle = ::opendir(dir.c_str())) {
            while (dirent* entry = ::readdir(handle)) {
                if (IsScriptFile(entry->d_name))
                    names.push_back(entry->d_name);
            }
            ::closedir(handle);
        }
        std::sort(names.begin(), names.end());
        std::string once;
        std::size_t proceduresOnce = 0;
        for (const std::string& name : names) {
            std::string text, error;
            if (!talvor::platform::ReadWholeFile(dir + "/" + name, text, error))
                continue;
            // "Option Explicit" is allowed only at the top; joined files keep it out of the
            // count of errors by dropping it.
            for (std::size_t at = 0; (at = text.find("Option Explicit", at)) != std::string::npos;)
                text.replace(at, 15, "'ption Explicit");
            proceduresOnce += ParseScript(text).Procedures().size();
            once += text + "\r\n";
        }
        Corpus out;
        if (once.empty())
            return out;
        const std::size_t copies = (10u << 20) / once.size() + 1;
        for (std::size_t i = 0; i < copies; ++i)
            out.text += once;
        out.procedures = proceduresOnce * copies;
        out.errors = ParseScript(once).errors.size() * copies;
        return out;
    }();
    return corpus;
}

void BM_ParseScript_Corpus10MB(benchmark::State& state) {
    const Corpus& corpus = TenMegabytes();
    if (corpus.text.empty())
        return state.SkipWithError("the VBScript corpus is missing");
    const SyntaxTree check = ParseScript(corpus.text);
    if (check.Procedures().size() != corpus.procedures || check.errors.size() != corpus.errors)
        return state.SkipWithError("the joined corpus parses differently from its files");
    for (auto _ : state)
        benchmark::DoNotOptimize(ParseScript(corpus.text).nodes.size());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus.text.size()));
    state.counters["nodes"] = static_cast<double>(check.nodes.size());
}
BENCHMARK(BM_ParseScript_Corpus10MB)->Unit(benchmark::kMillisecond);

void BM_Tokenize_Corpus10MB(benchmark::State& state) {
    const Corpus& corpus = TenMegabytes();
    if (corpus.text.empty())
        return state.SkipWithError("the VBScript corpus is missing");
    for (auto _ : state)
        benchmark::DoNotOptimize(Tokenize(corpus.text).tokens.size());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * corpus.text.size()));
}
BENCHMARK(BM_Tokenize_Corpus10MB)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
