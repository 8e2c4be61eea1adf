// The resource guard and the registration of TalvorRes.
#include "resources/resource_guard.h"

#include "platform/app/resource_script.h"
#include "platform/draw/png_memory.h"
#include "platform/strings/cstring.h"
#include "resources/builtin_script.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace talvor::resources {
namespace {
std::shared_ptr<platform::ResourceModule> BuildTalvorRes() {
    auto module = std::make_shared<platform::ResourceModule>(ModuleName);
    std::string error;
    const char* path = std::getenv("TALVOR_RESOURCES");
    if (path != nullptr && *path != '\0') {
        if (platform::ParseResourceScriptFile(path, *module, error))
            return module;
        std::fprintf(stderr, "talvor: %s; using the built-in texts\n", error.c_str());
        module = std::make_shared<platform::ResourceModule>(ModuleName);
    }
    if (!platform::ParseResourceScript(BuiltInScript(), *module, error))
        std::fprintf(stderr, "talvor: built-in resources: %s\n", error.c_str());
    return module;
}
} // namespace

void RegisterTalvorRes() {
    static std::once_flag once;
    std::call_once(once, [] {
        // Translated copies of the script include the ids header too, wherever they are kept.
        platform::RegisterResourceInclude(IdsHeaderName, std::string(BuiltInIdsHeader()));
        platform::RegisterResourceInclude(StandardIconsName, std::string(BuiltInStandardIcons()));
        platform::SetBitmapDecoder([](std::string_view bytes, platform::BitmapResource& bitmap,
                                      std::string& error) {
            return platform::DecodePng(bytes, bitmap.width, bitmap.height, bitmap.pixels, error);
        });
        platform::RegisterResourceProvider(ModuleName, BuildTalvorRes);
    });
}

ResourceGuard::ResourceGuard() {
    RegisterTalvorRes();
    HINSTANCE module = AfxLoadLibrary(ModuleName);
    if (module == nullptr)
        return;
    m_former = AfxGetResourceHandle();
    AfxSetResourceHandle(module);
    m_selected = true;
}

ResourceGuard::~ResourceGuard() {
    if (m_selected)
        AfxSetResourceHandle(m_former);
}

std::string LoadTalvorString(unsigned id) {
    ResourceGuard guard;
    CString text;
    text.LoadString(id);
    return text.Str();
}

} // namespace talvor::resources
