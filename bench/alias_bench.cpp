// The alias store's member lookups and updates on generated alias files of 200 and 2,000
// entries: a pass of GetAlias in text order (the move-to-back cache makes it linear) and one
// SetAlias in the middle of the file.
#include "alias/ocx_alias.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr DWORD English = 0x0409;

std::string MemberName(int i) {
    return "Member" + std::to_string(i);
}

// An alias text of count properties, each with an English and a Chinese block.
CString AliasText(int count) {
    std::string text = "Default=[0x0409]\r\nCLSID=\"{11111111-2222-3333-4444-555555555555}\"\r\n"
                       "\r\n[.Properties]\r\n";
    for (int i = 0; i < count; ++i) {
        text += "\r\nName=\"" + MemberName(i) + "\"\r\n[0x0409]\r\nAlias=\"Alias " +
                std::to_string(i) + "\"\r\nDescription=\"What member " + std::to_string(i) +
                " does\"\r\n[0x0804]\r\nAlias=\"Other " + std::to_string(i) + "\"\r\n";
    }
    return CString(text);
}

// Looks every member up once in text order; the number of members found.
int LookUpAll(CTalvorOcxAlias& alias, const std::vector<std::string>& names) {
    int found = 0;
    for (const std::string& name : names) {
        CString aliasText, description, enumText;
        alias.GetAlias(1, name.c_str(), aliasText, description, enumText, English);
        found += aliasText.IsEmpty() ? 0 : 1;
    }
    return found;
}

void BM_GetAlias_TextOrder(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    CTalvorOcxAlias alias;
    alias.SetIniText(AliasText(count));
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.push_back(MemberName(i));
    if (LookUpAll(alias, names) != count)
        return state.SkipWithError("a member was not found");
    for (auto _ : state)
        benchmark::DoNotOptimize(LookUpAll(alias, names));
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["us_per_lookup"] =
        benchmark::Counter(static_cast<double>(state.iterations() * count),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert,
                           benchmark::Counter::OneK::kIs1000);
}
BENCHMARK(BM_GetAlias_TextOrder)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);

void BM_SetAlias_Middle(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    CTalvorOcxAlias alias;
    alias.SetIniText(AliasText(count));
    const std::string name = MemberName(count / 2);
    alias.SetAlias(1, name.c_str(), "Changed", "Its description", "", English);
    CString check, description, enumText;
    alias.GetAlias(1, name.c_str(), check, description, enumText, English);
    if (check != "Changed")
        return state.SkipWithError("the update did not land");
    int round = 0;
    for (auto _ : state) {
        const std::string value = "Changed " + std::to_string(++round % 2);
        alias.SetAlias(1, name.c_str(), value.c_str(), "Its description", "", English);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SetAlias_Middle)->Arg(200)->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
