// Arbitrary text read as an INI profile, as people edit them by hand. Whatever was read must
// be written so that it reads back the same, and writing that again must change nothing; the
// application object's readers (integers, texts, hexadecimal binary values) must answer for
// every value without reading outside it.
#include "platform/app/profile.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using talvor::platform::IniFileProfile;
    using talvor::platform::MemoryProfile;
    using talvor::platform::ProfileData;
    std::string_view text(reinterpret_cast<const char*>(data), size);

    ProfileData read;
    IniFileProfile::Parse(text, read);
    const std::string written = IniFileProfile::Serialize(read);
    ProfileData again;
    IniFileProfile::Parse(written, again);
    Check(again == read);
    Check(IniFileProfile::Serialize(again) == written);

    // Every value through the application object, the way the library reads its settings.
    // Names with a NUL cannot reach it: its interface takes C strings.
    auto store = std::make_shared<MemoryProfile>();
    CWinApp app("fuzz");
    app.SetProfileStore(store);
    for (const auto& [section, keys] : read) {
        for (const auto& [key, value] : keys) {
            store->Set(section, key, value);
            if (section.find('\0') != std::string::npos || key.find('\0') != std::string::npos)
                continue;
            CString got = app.GetProfileString(section.c_str(), key.c_str(), "default");
            if (value.find('\0') == std::string::npos)
                Check(got.Str() == value);
            app.GetProfileInt(section.c_str(), key.c_str(), -1);
            BYTE* bytes = nullptr;
            UINT count = 0;
            if (app.GetProfileBinary(section.c_str(), key.c_str(), &bytes, &count)) {
                Check(count == value.size() / 2);
                Check(app.WriteProfileBinary("fuzz", "copy", bytes, count));
                BYTE* copy = nullptr;
                UINT copyCount = 0;
                Check(app.GetProfileBinary("fuzz", "copy", &copy, &copyCount));
                Check(copyCount == count && std::equal(bytes, bytes + count, copy));
                delete[] copy;
            } else {
                Check(bytes == nullptr && count == 0);
            }
            delete[] bytes;
        }
    }
    return 0;
}
