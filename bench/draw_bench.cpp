// Drawing surface costs on the editor's paths: one line of code written with a 10-point
// monospace font from warm glyph caches (per character), its measurement, making the same font
// again (done once per painted line), and filling and copying a 1920x1080 raster.
#include "platform/draw/dc.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int LineChars = 80;

// The first line of at least 80 characters in the VBScript corpus (files in name order), cut
// to 80; a fixed line of code when the corpus is not there.
std::string CodeLine() {
    const std::string folder = std::string(TALVOR_CORPUS_DIR) + "/vbscript";
    std::vector<std::string> names;
    if (DIR* dir = opendir(folder.c_str())) {
        while (dirent* e = readdir(dir)) {
            const std::string name = e->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".vbs") == 0)
                names.push_back(name);
        }
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        std::ifstream in(folder + "/" + name);
        std::string line;
        while (std::getline(in, line)) {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            const bool plain = std::all_of(line.begin(), line.end(), [](char c) {
                return c >= 0x20 && static_cast<unsigned char>(c) < 0x7F;
            });
            if (plain && line.size() >= LineChars)
                return line.substr(0, LineChars);
        }
    }
    return std::string("Set objShell = CreateObject(\"WScript.Shell\") : strPath = objShell.Cur"
                       "rentDirectory ' x")
        .substr(0, LineChars);
}

struct Surface {
    CBitmap bitmap;
    CDC dc;
    CFont font;
    Surface(int width, int height) {
        dc.CreateCompatibleDC(nullptr);
        bitmap.CreateCompatibleBitmap(&dc, width, height);
        dc.SelectObject(&bitmap);
        font.CreatePointFont(100, "DejaVu Sans Mono");
        dc.SelectObject(&font);
    }
};

void BM_TextOut_CodeLine80(benchmark::State& state) {
    const std::string line = CodeLine();
    Surface s(1000, 40);
    s.dc.SetTextColor(RGB(0, 0, 255));
    s.dc.SetBkColor(RGB(255, 255, 255));
    TEXTMETRIC tm{};
    s.dc.GetTextMetrics(&tm);
    const CSize extent = s.dc.GetTextExtent(line.c_str(), LineChars);
    s.dc.TextOut(0, 0, line.c_str(), LineChars); // warms the glyph cache and is checked
    int ink = 0;
    for (int x = 0; x < 1000; ++x)
        ink += s.bitmap.GetPixelColor(x, tm.tmAscent - 2) != RGB(255, 255, 255);
    if (extent.cx != LineChars * tm.tmAveCharWidth || ink == 0 ||
        s.bitmap.GetPixelColor(extent.cx, 1) != RGB(0, 0, 0))
        return state.SkipWithError("text is not drawn inside its extent");
    for (auto _ : state) {
        s.dc.TextOut(0, 0, line.c_str(), LineChars);
        benchmark::ClobberMemory();
    }
    state.counters["per_char"] = benchmark::Counter(
        LineChars, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetLabel(line.substr(0, 24) + "...");
}
BENCHMARK(BM_TextOut_CodeLine80);

void BM_GetTextExtent_CodeLine80(benchmark::State& state) {
    const std::string line = CodeLine();
    Surface s(10, 10);
    for (auto _ : state)
        benchmark::DoNotOptimize(s.dc.GetTextExtent(line.c_str(), LineChars));
    state.counters["per_char"] = benchmark::Counter(
        LineChars, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_GetTextExtent_CodeLine80);

void BM_CreateFontIndirect_Again(benchmark::State& state) {
    LOGFONT lf = talvor::platform::PointFontLogFont(100, "DejaVu Sans Mono");
    for (auto _ : state) {
        CFont font;
        font.CreateFontIndirect(&lf);
        benchmark::DoNotOptimize(font.Face().get());
    }
}
BENCHMARK(BM_CreateFontIndirect_Again);

void BM_FillSolidRect_1920x1080(benchmark::State& state) {
    Surface s(1920, 1080);
    const CRect all(0, 0, 1920, 1080);
    s.dc.FillSolidRect(all, RGB(1, 2, 3));
    if (s.bitmap.GetPixelColor(1919, 1079) != RGB(1, 2, 3))
        return state.SkipWithError("fill did not reach the corner");
    COLORREF color = 0;
    for (auto _ : state) {
        s.dc.FillSolidRect(all, color++ & 0xFFFFFF);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 1920ll * 1080 * 4);
}
BENCHMARK(BM_FillSolidRect_1920x1080);

void BM_BitBlt_1920x1080(benchmark::State& state) {
    Surface source(1920, 1080), target(1920, 1080);
    source.dc.FillSolidRect(CRect(0, 0, 1920, 1080), RGB(9, 8, 7));
    target.dc.BitBlt(0, 0, 1920, 1080, &source.dc, 0, 0, SRCCOPY);
    if (target.bitmap.GetPixelColor(1919, 1079) != RGB(9, 8, 7))
        return state.SkipWithError("copy did not reach the corner");
    for (auto _ : state) {
        target.dc.BitBlt(0, 0, 1920, 1080, &source.dc, 0, 0, SRCCOPY);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * 1920ll * 1080 * 4);
}
BENCHMARK(BM_BitBlt_1920x1080);

} // namespace

BENCHMARK_MAIN();
