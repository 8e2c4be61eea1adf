// Type library hot paths on Wine's mshtml.tlb (1.2 MB, 393 type infos): the load, and the
// decoding of every member of every dispatch type (description, names, property kind).
//   build/bench/typelib_bench --benchmark_counters_tabular=true
#include "platform/com/bstr.h"
#include "platform/com/typelib/pe_resource.h"
#include "platform/com/typelib/type_lib.h"
#include "typeinfo/member_types.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

using talvor::platform::ComPtr;

std::string WineBinaries() {
    const char* env = std::getenv("TALVOR_WINE_DIR");
    return std::string(env ? env : TALVOR_SOURCE_DIR "/build/wine") +
           "/usr/lib/x86_64-linux-gnu/wine/x86_64-windows";
}

std::vector<std::uint8_t> ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

ComPtr<ITypeLib> Load(const std::vector<std::uint8_t>& bytes) {
    ITypeLib* lib = nullptr;
    talvor::platform::LoadTypeLibFromMemory(bytes.data(), bytes.size(), WineBinaries(), &lib);
    return ComPtr<ITypeLib>(lib);
}

// Decodes every function and variable of every dispatch type; gives the number of members,
// and the sum of their kinds as a check.
std::size_t DecodeAll(ITypeLib* lib, long& kindSum) {
    std::size_t members = 0;
    kindSum = 0;
    tagACTIVEXPROPTYPEINFO info;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        TYPEKIND kind = TKIND_MAX;
        ITypeInfo* type = nullptr;
        if (FAILED(lib->GetTypeInfoType(i, &kind)) || kind != TKIND_DISPATCH ||
            FAILED(lib->GetTypeInfo(i, &type)))
            continue;
        TYPEATTR* attr = nullptr;
        type->GetTypeAttr(&attr);
        for (UINT f = 0; f < attr->cFuncs; ++f) {
            FUNCDESC* func = nullptr;
            type->GetFuncDesc(f, &func);
            BSTR names[16];
            UINT count = 0;
            type->GetNames(func->memid, names, 16, &count);
            for (UINT n = 0; n < count; ++n)
                SysFreeString(names[n]);
            TYPEDESC* decoded = func->invkind == INVOKE_PROPERTYGET || func->cParams == 0
                                    ? &func->elemdescFunc.tdesc
                                    : &func->lprgelemdescParam[func->cParams - 1].tdesc;
            TVPfxGetPropTypeInfo(type, decoded, &info);
            kindSum += info.nPropType;
            type->ReleaseFuncDesc(func);
            ++members;
        }
        for (UINT v = 0; v < attr->cVars; ++v) {
            VARDESC* var = nullptr;
            type->GetVarDesc(v, &var);
            BSTR name = nullptr;
            UINT count = 0;
            type->GetNames(var->memid, &name, 1, &count);
            if (count)
                SysFreeString(name);
            TVPfxGetPropTypeInfo(type, &var->elemdescVar.tdesc, &info);
            kindSum += info.nPropType;
            type->ReleaseVarDesc(var);
            ++members;
        }
        type->ReleaseTypeAttr(attr);
        type->Release();
    }
    return members;
}

void BM_Load_Mshtml(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = ReadFile(WineBinaries() + "/mshtml.tlb");
    ComPtr<ITypeLib> check = Load(bytes);
    if (!check || check->GetTypeInfoCount() != 393)
        return state.SkipWithError("mshtml.tlb didn't load with 393 type infos");
    for (auto _ : state) {
        ComPtr<ITypeLib> lib = Load(bytes);
        benchmark::DoNotOptimize(lib.Get());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_Load_Mshtml)->Unit(benchmark::kMillisecond);

// Every member once more on a loaded library: what a property grid pays per member.
void BM_DecodeMembers_Mshtml(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = ReadFile(WineBinaries() + "/mshtml.tlb");
    ComPtr<ITypeLib> lib = Load(bytes);
    if (!lib)
        return state.SkipWithError("mshtml.tlb didn't load");
    long kindSum = 0;
    const std::size_t members = DecodeAll(lib.Get(), kindSum);
    if (members < 20000 || kindSum == 0)
        return state.SkipWithError("fewer members than mshtml.idl declares");
    for (auto _ : state)
        benchmark::DoNotOptimize(DecodeAll(lib.Get(), kindSum));
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * members));
    state.counters["members"] = static_cast<double>(members);
    state.counters["us_per_member"] = benchmark::Counter(
        static_cast<double>(members) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert, benchmark::Counter::kIs1000);
}
BENCHMARK(BM_DecodeMembers_Mshtml)->Unit(benchmark::kMillisecond);

// A fresh load followed by the first decoding of every member, dispatch views included.
void BM_LoadAndFirstDecode_Mshtml(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = ReadFile(WineBinaries() + "/mshtml.tlb");
    long kindSum = 0;
    for (auto _ : state) {
        ComPtr<ITypeLib> lib = Load(bytes);
        if (!lib)
            return state.SkipWithError("mshtml.tlb didn't load");
        benchmark::DoNotOptimize(DecodeAll(lib.Get(), kindSum));
    }
}
BENCHMARK(BM_LoadAndFirstDecode_Mshtml)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
