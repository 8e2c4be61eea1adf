// The language server on a 50,000-line script made of the real corpus: a one-character edit
// to fresh diagnostics, full semantic tokens, and the outline, each from the message text the
// client sends to the message text the transport writes.
#include "lsp/language_server.h"
#include "platform/files/file_system.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <dirent.h>
#include <string>
#include <vector>

namespace {

using talvor::lsp::Json;
using talvor::lsp::LanguageServer;

constexpr std::size_t Lines = 50000;
const char* const Uri = "file:///bench/large.vbs";

// The corpus scripts joined and repeated until the text has Lines lines. Read in the UTF-8
// code page the server starts in; the few bytes above 0x7F become U+FFFD on the way.
std::string LargeScript() {
    const std::string dir = std::string(TALVOR_CORPUS_DIR) + "/vbscript";
    std::vector<std::string> names;
    if (DIR* handle = ::opendir(dir.c_str())) {
        while (dirent* entry = ::readdir(handle)) {
            const std::string name = entry->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".vbs") == 0)
                names.push_back(name);
        }
        ::closedir(handle);
    }
    std::sort(names.begin(), names.end());
    std::string once;
    for (const std::string& name : names) {
        std::string text, error;
        if (talvor::platform::ReadWholeFile(dir + "/" + name, text, error))
            once += text + "\n";
    }
    if (once.empty())
        return {};
    std::string text;
    std::size_t lines = 0;
    while (lines < Lines) {
        for (std::size_t at = 0; at < once.size() && lines < Lines;) {
            std::size_t end = once.find('\n', at);
            end = end == std::string::npos ? once.size() : end + 1;
            text.append(once, at, end - at);
            at = end;
            ++lines;
        }
    }
    return text;
}

struct OpenServer {
    OpenServer() {
        text = LargeScript();
        if (text.empty())
            return;
        server.ReceiveText(R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{}})");
        server.ReceiveText(R"({"jsonrpc":"2.0","method":"initialized","params":{}})");
        Json open{{"jsonrpc", "2.0"},
                  {"method", "textDocument/didOpen"},
                  {"params",
                   {{"textDocument",
                     {{"uri", Uri}, {"languageId", "vbscript"}, {"version", 1}, {"text", text}}}}}};
        server.ReceiveText(open.dump(-1, ' ', false, Json::error_handler_t::replace));
        server.Idle();
    }
    // The client's message text of a request without position.
    std::string Request(const char* method) {
        return Json{{"jsonrpc", "2.0"},
                    {"id", ++id},
                    {"method", method},
                    {"params", {{"textDocument", {{"uri", Uri}}}}}}
            .dump();
    }
    // What the transport writes for the answers.
    static std::size_t Written(const std::vector<Json>& out) {
        std::size_t bytes = 0;
        for (const Json& message : out)
            bytes += message.dump(-1, ' ', false, Json::error_handler_t::replace).size();
        return bytes;
    }

    LanguageServer server;
    std::string text;
    int id = 1;
    int version = 1;
};

OpenServer& Server() {
    static OpenServer server;
    return server;
}

void BM_Lsp_EditToDiagnostics_50kLines(benchmark::State& state) {
    OpenServer& open = Server();
    if (open.text.empty())
        return state.SkipWithError("the VBScript corpus is missing");
    bool insert = true;
    std::size_t written = 0;
    for (auto _ : state) {
        // Types a character on the middle line, or takes it away again.
        Json change{{"range",
                     {{"start", {{"line", Lines / 2}, {"character", 0}}},
                      {"end", {{"line", Lines / 2}, {"character", insert ? 0 : 1}}}}},
                    {"text", insert ? "x" : ""}};
        const Json message{{"jsonrpc", "2.0"},
                           {"method", "textDocument/didChange"},
                           {"params",
                            {{"textDocument", {{"uri", Uri}, {"version", ++open.version}}},
                             {"contentChanges", {change}}}}};
        open.server.ReceiveText(message.dump());
        written += OpenServer::Written(open.server.Idle());
        insert = !insert;
    }
    state.counters["bytes_out"] =
        benchmark::Counter(static_cast<double>(written), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_Lsp_EditToDiagnostics_50kLines)->Unit(benchmark::kMillisecond);

// One request without position, from the client's text to the transport's, again and again.
void RunRequest(benchmark::State& state, const char* method) {
    OpenServer& open = Server();
    if (open.text.empty())
        return state.SkipWithError("the VBScript corpus is missing");
    std::size_t written = 0;
    for (auto _ : state) {
        written = 0;
        for (const std::string& message : open.server.ReceiveTextAsText(open.Request(method)))
            written += message.size();
    }
    state.counters["bytes_out"] = static_cast<double>(written);
}

void BM_Lsp_SemanticTokensFull_50kLines(benchmark::State& state) {
    RunRequest(state, "textDocument/semanticTokens/full");
}
BENCHMARK(BM_Lsp_SemanticTokensFull_50kLines)->Unit(benchmark::kMillisecond);

void BM_Lsp_DocumentSymbols_50kLines(benchmark::State& state) {
    RunRequest(state, "textDocument/documentSymbol");
}
BENCHMARK(BM_Lsp_DocumentSymbols_50kLines)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
