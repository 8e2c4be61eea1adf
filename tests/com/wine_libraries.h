// Real type libraries of Debian's Wine build, unpacked into the build folder by bootstrap.
#pragma once

#include "platform/com/bstr.h"
#include "platform/com/type_info.h"
#include "platform/com/typelib/type_lib.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace talvor::testing {

inline std::string WineDir() {
    if (const char* env = std::getenv("TALVOR_WINE_DIR"))
        return env;
    return TALVOR_WINE_DIR;
}

inline std::string WineBinaryDir() {
    return WineDir() + "/usr/lib/x86_64-linux-gnu/wine/x86_64-windows";
}

inline std::string WineIdlDir() {
    return WineDir() + "/usr/include/wine/wine/windows";
}

inline bool WineIsThere() {
    std::ifstream in(WineBinaryDir() + "/stdole2.tlb");
    return static_cast<bool>(in);
}

#define TV_NEED_WINE()                                                                             \
    do {                                                                                           \
        if (!::talvor::testing::WineIsThere())                                                     \
            GTEST_SKIP() << "libwine is not unpacked in " << ::talvor::testing::WineDir()          \
                         << "; scripts/bootstrap does it";                                         \
    } while (0)

inline platform::ComPtr<ITypeLib> LoadWine(const char* file) {
    platform::AddTypeLibSearchPath(WineBinaryDir());
    ITypeLib* lib = nullptr;
    std::string error;
    const HRESULT hr = platform::LoadTypeLibFromFile(WineBinaryDir() + "/" + file, &lib, &error);
    EXPECT_EQ(hr, S_OK) << file << ": " << error;
    return platform::ComPtr<ITypeLib>(lib);
}

inline std::vector<std::uint8_t> ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

// The text of a BSTR, which it frees.
inline std::string Take(BSTR text) {
    std::string out = platform::MultiByteFromWide(text);
    SysFreeString(text);
    return out;
}

inline std::string TypeName(ITypeInfo* info) {
    BSTR name = nullptr;
    if (FAILED(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
        return "?";
    return Take(name);
}

inline std::string MemberName(ITypeInfo* info, MEMBERID id) {
    BSTR names[1] = {};
    UINT count = 0;
    if (FAILED(info->GetNames(id, names, 1, &count)) || count == 0)
        return "?";
    return Take(names[0]);
}

// The type info of the library named so, or null.
inline platform::ComPtr<ITypeInfo> FindType(ITypeLib* lib, const std::string& name) {
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo* info = nullptr;
        if (FAILED(lib->GetTypeInfo(i, &info)))
            continue;
        if (TypeName(info) == name)
            return platform::ComPtr<ITypeInfo>(info);
        info->Release();
    }
    return platform::ComPtr<ITypeInfo>();
}

} // namespace talvor::testing
