// Registry of resource modules by name and the current resource source.
#include "platform/app/resource_module.h"

#include "platform/app/menu.h"
#include "platform/app/resource_script.h"

#include "platform/core/ascii.h"
#include "platform/files/file_system.h"
#include "platform/strings/cstring.h"

#include <algorithm>
#include <cstring>
#include <strings.h>
#include <vector>

namespace talvor::platform {
namespace {

struct Registry {
    std::map<std::string, std::shared_ptr<ResourceModule>> modules;
    std::map<std::string, std::function<std::shared_ptr<ResourceModule>()>> providers;
};

Registry& TheRegistry() {
    static Registry registry;
    return registry;
}

// "TalvorRes.dll" and "talvorres" name the same module.
std::string KeyOf(std::string_view name) {
    std::string key(name);
    if (key.size() > 4 && strcasecmp(key.c_str() + key.size() - 4, ".dll") == 0)
        key.resize(key.size() - 4);
    for (char& c : key)
        c = AsciiLower(c);
    return key;
}

ResourceModule& ApplicationModule() {
    static ResourceModule module("application");
    return module;
}

// Replaced modules stay alive: a guard in progress may still have one selected.
void Retire(std::shared_ptr<ResourceModule> module) {
    static std::vector<std::shared_ptr<ResourceModule>> retired;
    retired.push_back(std::move(module));
}

HINSTANCE& CurrentSource() {
    static HINSTANCE current = &ApplicationModule();
    return current;
}

} // namespace

bool ResourceModule::FindString(UINT id, std::string& text) const {
    auto it = m_strings.find(id);
    if (it == m_strings.end())
        return false;
    text = it->second;
    return true;
}

bool ResourceModule::AddString(UINT id, std::string text) {
    return m_strings.emplace(id, std::move(text)).second;
}

const MenuData* ResourceModule::FindMenu(UINT id) const {
    auto it = m_menus.find(id);
    return it == m_menus.end() ? nullptr : it->second.get();
}

void ResourceModule::AddMenu(UINT id, std::shared_ptr<MenuData> menu) {
    m_menus[id] = std::move(menu);
}

const ToolBarResource* ResourceModule::FindToolBar(UINT id) const {
    auto it = m_toolBars.find(id);
    return it == m_toolBars.end() ? nullptr : &it->second;
}

void ResourceModule::AddToolBar(UINT id, ToolBarResource toolBar) {
    m_toolBars[id] = std::move(toolBar);
}

namespace {
BitmapDecoder& TheBitmapDecoder() {
    static BitmapDecoder decoder;
    return decoder;
}
} // namespace

void SetBitmapDecoder(BitmapDecoder decoder) {
    TheBitmapDecoder() = std::move(decoder);
}

const BitmapResource* ResourceModule::FindBitmap(UINT id) const {
    auto it = m_bitmaps.find(id);
    if (it == m_bitmaps.end())
        return nullptr;
    BitmapResource& bitmap = it->second;
    if (bitmap.pixels.empty() && !bitmap.encoded.empty()) {
        std::string error;
        if (!TheBitmapDecoder() || !TheBitmapDecoder()(bitmap.encoded, bitmap, error))
            return nullptr;
        bitmap.encoded.clear();
    }
    return bitmap.pixels.empty() ? nullptr : &bitmap;
}

void ResourceModule::AddBitmap(UINT id, BitmapResource bitmap) {
    m_bitmaps[id] = std::move(bitmap);
}

void RegisterResourceModule(std::shared_ptr<ResourceModule> module) {
    if (module)
        TheRegistry().modules[KeyOf(module->Name())] = std::move(module);
}

void RegisterResourceProvider(const std::string& name,
                              std::function<std::shared_ptr<ResourceModule>()> provider) {
    TheRegistry().providers[KeyOf(name)] = std::move(provider);
}

bool LoadResourceModuleFile(const std::string& name, const std::string& path, std::string& error) {
    auto module = std::make_shared<ResourceModule>(name);
    if (!ParseResourceScriptFile(path, *module, error))
        return false;
    auto found = TheRegistry().modules.find(KeyOf(name));
    if (found != TheRegistry().modules.end())
        Retire(found->second);
    RegisterResourceModule(std::move(module));
    return true;
}

void ResetResourceModule(const std::string& name) {
    auto& modules = TheRegistry().modules;
    auto found = modules.find(KeyOf(name));
    if (found == modules.end())
        return;
    Retire(found->second);
    modules.erase(found);
}

} // namespace talvor::platform

HINSTANCE AfxGetResourceHandle() {
    return talvor::platform::CurrentSource();
}

void AfxSetResourceHandle(HINSTANCE module) {
    talvor::platform::CurrentSource() =
        module != nullptr ? module : &talvor::platform::ApplicationModule();
}

HINSTANCE AfxLoadLibrary(const char* name) {
    using namespace talvor::platform;
    if (name == nullptr || *name == '\0')
        return nullptr;
    Registry& registry = TheRegistry();
    std::string key = KeyOf(name);
    auto found = registry.modules.find(key);
    if (found != registry.modules.end())
        return found->second.get();
    auto provider = registry.providers.find(key);
    if (provider != registry.providers.end() && provider->second) {
        std::shared_ptr<ResourceModule> module = provider->second();
        if (module) {
            HINSTANCE handle = module.get();
            registry.modules[key] = std::move(module);
            return handle;
        }
    }
    std::string error;
    if (FileExists(name) && LoadResourceModuleFile(name, name, error))
        return registry.modules[key].get();
    return nullptr;
}

BOOL AfxFreeLibrary(HINSTANCE module) {
    return module != nullptr ? TRUE : FALSE;
}

int LoadStringA(HINSTANCE module, UINT id, char* buffer, int bufferSize) {
    if (module == nullptr)
        module = AfxGetResourceHandle();
    std::string text;
    if (module == nullptr || !module->FindString(id, text)) {
        if (buffer != nullptr && bufferSize > 0)
            buffer[0] = '\0';
        return 0;
    }
    if (buffer == nullptr || bufferSize <= 0)
        return 0;
    int n = std::min<int>(static_cast<int>(text.size()), bufferSize - 1);
    std::memcpy(buffer, text.data(), static_cast<std::size_t>(n));
    buffer[n] = '\0';
    return n;
}

BOOL CString::LoadString(UINT id) {
    std::string text;
    HINSTANCE module = AfxGetResourceHandle();
    if (module == nullptr || !module->FindString(id, text)) {
        Empty();
        return FALSE;
    }
    *this = CString(text);
    return TRUE;
}
