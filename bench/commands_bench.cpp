// Saving and loading a command bar design of 200 bars: the stream of the designer frame, with
// 1,250 to 10,000 controls on the bars (5,000 is the size that matters), in memory and through
// a file. Save and load must grow in proportion to the controls.
#include "commands/cmd_frame.h"
#include "platform/app/message_box.h"
#include "platform/app/profile.h"
#include "platform/files/archive.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

constexpr int Bars = 200;

// A frame with the standard bars plus 200 tool bars sharing `controls` controls: buttons with
// captions and id names, every tenth a popup with three items.
std::unique_ptr<CTalvorCmdFrame> MakeDesign(int controls) {
    static bool once = [] {
        AfxGetApp()->SetProfileStore(std::make_shared<talvor::platform::MemoryProfile>());
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) { return IDOK; });
        return true;
    }();
    (void)once;
    auto frame = std::make_unique<CTalvorCmdFrame>();
    frame->LoadFrame(0);
    CVTCommandBars* bars = frame->GetCommandBars();
    char text[64];
    int made = 0;
    for (int b = 0; b < Bars; ++b) {
        std::snprintf(text, sizeof text, "Bar %d", b);
        CVTCommandBar* bar = bars->Add(text, vtBarTop, &CVTToolBar::classCVTToolBar);
        bar->SetBarID(static_cast<UINT>(1000 + b));
        const int here = controls / Bars + (b < controls % Bars ? 1 : 0);
        for (int c = 0; c < here; ++c, ++made) {
            std::snprintf(text, sizeof text, "Command %d", made);
            const bool popup = made % 10 == 9;
            CVTControl* control = bar->GetControls()->Add(popup ? vtControlPopup : vtControlButton,
                                                          20000 + made, text);
            std::snprintf(text, sizeof text, "ID_COMMAND_%d", made);
            control->SetIdName(text);
            if (popup) {
                CVTControls* items =
                    static_cast<CVTControlPopup*>(control)->GetCommandBar()->GetControls();
                for (int i = 0; i < 3; ++i)
                    items->Add(vtControlButton, 30000 + i, "item");
            }
        }
    }
    return frame;
}

std::string Save(CTalvorCmdFrame& frame) {
    CMemFile file;
    CArchive ar(&file, CArchive::store, 0x1000);
    frame.SerializeState(ar);
    ar.Close();
    return file.Data();
}

void BM_SaveDesign(benchmark::State& state) {
    auto frame = MakeDesign(static_cast<int>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string stream = Save(*frame);
        bytes = stream.size();
        benchmark::DoNotOptimize(stream.data());
    }
    state.counters["stream_bytes"] = static_cast<double>(bytes);
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_SaveDesign)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

void BM_LoadDesign(benchmark::State& state) {
    auto source = MakeDesign(static_cast<int>(state.range(0)));
    const std::string stream = Save(*source);
    CTalvorCmdFrame frame;
    frame.LoadFrame(0);
    for (auto _ : state) {
        CMemFile file(stream.data(), static_cast<UINT>(stream.size()));
        CArchive ar(&file, CArchive::load, 0x1000);
        frame.SerializeState(ar);
    }
    if (frame.GetCommandBars()->GetCount() != Bars + 2)
        state.SkipWithError("the design did not load whole");
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LoadDesign)
    ->Arg(1250)
    ->Arg(2500)
    ->Arg(5000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// The same through SaveToFile and LoadFromFile, for the design of 5,000 controls.
void BM_SaveAndLoadFile5000(benchmark::State& state) {
    auto frame = MakeDesign(5000);
    const std::string path = "/tmp/talvor-commands-bench-" + std::to_string(::getpid()) + ".design";
    std::remove(path.c_str());
    for (auto _ : state) {
        frame->SaveToFile(path.c_str());
        if (!frame->LoadFromFile(path.c_str()))
            state.SkipWithError("file not readable");
    }
    std::remove(path.c_str());
}
BENCHMARK(BM_SaveAndLoadFile5000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
