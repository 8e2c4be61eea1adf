// The editor's hot paths: a full paint of a 1920x1080 view after a jump to the end of a long
// Basic file (with and without idle time before it, and the idle work itself) and while
// scrolling back page by page (10,000 against 1,000,000 lines in the same run: paint time must
// not grow with the file), typing one character in the middle of 100,000 lines with its
// repaint, and loading a 50 MB file.
#include "editor/syntax_edit.h"
#include "platform/files/file_system.h"
#include "platform/window/wnd.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

// Real script lines, repeated until the text has the lines asked.
std::string BasicText(int lines) {
    std::string sample, error;
    talvor::platform::ReadWholeFile(std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.vbs",
                                    sample, error);
    std::vector<std::string> source;
    std::size_t pos = 0;
    while (pos < sample.size()) {
        std::size_t end = sample.find('\n', pos);
        if (end == std::string::npos)
            end = sample.size();
        std::string line = sample.substr(pos, end - pos);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        source.push_back(line);
        pos = end + 1;
    }
    std::string text;
    for (int i = 0; i < lines; ++i) {
        text += source[static_cast<std::size_t>(i) % source.size()];
        if (i + 1 < lines)
            text += "\r\n";
    }
    return text;
}

std::string TempFile(const std::string& text) {
    const std::string path = "/tmp/talvor-editor-bench-" + std::to_string(::getpid()) + ".vbs";
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::unique_ptr<CTalvorSyntaxEdit> MakeEditor(int lines, int width = 1920, int height = 1080) {
    auto edit = std::make_unique<CTalvorSyntaxEdit>();
    edit->Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL | WS_VSCROLL, RECT{0, 0, width, height},
                 nullptr, 1);
    const std::string path = TempFile(BasicText(lines));
    edit->LoadFile(path.c_str());
    ::unlink(path.c_str());
    edit->SetSel(0, 0);
    AfxPumpMessages();
    edit->SendMessage(WM_PAINT);
    AfxPumpMessages();
    return edit;
}

// Idle rounds, as a host's loop gives them while its queue is empty, until no window wants more.
void RunIdle() {
    for (LONG round = 0; AfxIdle(round); ++round) {
    }
}

// The text shown from its top with its cookies forgotten, then a jump to the end; idleFirst
// gives the editor its idle time in between, as a user's pause would.
void PaintAfterJumpToEnd(benchmark::State& state, bool idleFirst) {
    const int lines = static_cast<int>(state.range(0));
    auto edit = MakeEditor(lines);
    for (auto _ : state) {
        state.PauseTiming();
        edit->ResetParseCookie();
        edit->GotoLine(1);
        AfxPumpMessages();
        if (idleFirst)
            RunIdle();
        edit->GotoLine(lines);
        state.ResumeTiming();
        // The paint the jump queued, sent at once.
        edit->SendMessage(WM_PAINT);
        state.PauseTiming();
        AfxPumpMessages();
        state.ResumeTiming();
    }
}

// The first paint after a jump to the end, the idle work having known the cookies above it.
void BM_PaintAfterJumpToEnd(benchmark::State& state) {
    PaintAfterJumpToEnd(state, true);
}
BENCHMARK(BM_PaintAfterJumpToEnd)
    ->Arg(10000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// The same jump with no idle time before it: the paint works out every cookie above the view.
void BM_PaintAfterJumpToEndWithoutIdleTime(benchmark::State& state) {
    PaintAfterJumpToEnd(state, false);
}
BENCHMARK(BM_PaintAfterJumpToEndWithoutIdleTime)
    ->Arg(10000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// The whole idle work after the top of a text was shown: the cookies of every line below it,
// and the longest single round (how long the host's loop is kept from its next message).
void BM_IdleCookieWork(benchmark::State& state) {
    const int lines = static_cast<int>(state.range(0));
    auto edit = MakeEditor(lines);
    double longest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        edit->ResetParseCookie();
        edit->GotoLine(1);
        AfxPumpMessages();
        state.ResumeTiming();
        for (LONG round = 0;; ++round) {
            const auto start = std::chrono::steady_clock::now();
            const BOOL more = AfxIdle(round);
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - start;
            longest = std::max(longest, took.count());
            if (!more)
                break;
        }
    }
    state.SetItemsProcessed(state.iterations() * lines);
    state.counters["longest_round_ms"] = longest;
}
BENCHMARK(BM_IdleCookieWork)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Each paint while scrolling back from the end by one page: the cost of a full view.
void BM_PaintScrollingByPage(benchmark::State& state) {
    const int lines = static_cast<int>(state.range(0));
    auto edit = MakeEditor(lines);
    edit->GotoLine(lines);
    AfxPumpMessages();
    edit->SendMessage(WM_PAINT);
    const int page = edit->GetVisibleLineCount();
    for (auto _ : state) {
        if (edit->GetFirstVisibleLine() < page) {
            state.PauseTiming();
            edit->GotoLine(lines);
            edit->SendMessage(WM_PAINT);
            state.ResumeTiming();
        }
        edit->SendMessage(WM_VSCROLL, SB_PAGEUP);
        AfxPumpMessages();
    }
}
BENCHMARK(BM_PaintScrollingByPage)->Arg(10000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// One character typed in the middle of the text, the repaint included.
void BM_TypeInTheMiddle(benchmark::State& state) {
    const int lines = static_cast<int>(state.range(0));
    auto edit = MakeEditor(lines);
    edit->GotoLine(lines / 2);
    AfxPumpMessages();
    const long caret = edit->LineIndex(lines / 2 - 1) + 3;
    edit->SetSel(caret, caret);
    edit->SendMessage(WM_PAINT);
    for (auto _ : state) {
        edit->SendMessage(WM_CHAR, 'x', 1);
        edit->SendMessage(WM_PAINT);
        AfxPumpMessages();
    }
}
BENCHMARK(BM_TypeInTheMiddle)->Arg(100000)->Unit(benchmark::kMicrosecond);

long ResidentBytes() {
    long pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
}

// Loading a 50 MB file into the control: bytes per second and the memory the control holds
// per byte of text.
void BM_Load50MB(benchmark::State& state) {
    std::string text = BasicText(20000);
    std::string big;
    while (big.size() < 50u * 1024 * 1024)
        big += text + "\r\n";
    const std::string path = TempFile(big);
    double perByte = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto edit = std::make_unique<CTalvorSyntaxEdit>();
        edit->Create(WS_CHILD | WS_VISIBLE | WS_HSCROLL, RECT{0, 0, 1920, 1080}, nullptr, 1);
        const long before = ResidentBytes();
        state.ResumeTiming();
        edit->LoadFile(path.c_str());
        state.PauseTiming();
        perByte = double(ResidentBytes() - before) / double(big.size());
        edit.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(big.size()));
    state.counters["held_bytes_per_text_byte"] = perByte;
    ::unlink(path.c_str());
}
BENCHMARK(BM_Load50MB)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

BENCHMARK_MAIN();
