// Resource modules: string tables (and later menus, tool bars, icon sets) by numeric id, read
// from Windows resource-script text. A module is found by name the way the framework finds a
// resource library; the current resource source is what LoadString and friends read.
#pragma once

#include "platform/core/win_types.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::platform {

struct MenuData;

// A tool bar resource: the button size and the command of each button, 0 for a separator.
struct ToolBarResource {
    int buttonWidth = 16;
    int buttonHeight = 15;
    std::vector<UINT> ids;
};

// A bitmap resource: 0x00RRGGBB pixels, row by row from the top. A bitmap read from a
// resource script keeps its file's bytes in encoded until it is first asked for.
struct BitmapResource {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
    std::string encoded;
};

// Turns a bitmap file's bytes into pixels; false with a message. The drawing layer installs
// the PNG decoder; without one, encoded bitmaps stay without pixels.
using BitmapDecoder =
    std::function<bool(std::string_view bytes, BitmapResource& bitmap, std::string& error)>;
void SetBitmapDecoder(BitmapDecoder decoder);

class ResourceModule {
public:
    explicit ResourceModule(std::string name) : m_name(std::move(name)) {}
    const std::string& Name() const { return m_name; }

    // False, with text untouched, when the module has no string of that id.
    bool FindString(UINT id, std::string& text) const;
    // False when the id is already taken; the module keeps the first text.
    bool AddString(UINT id, std::string text);
    std::size_t StringCount() const { return m_strings.size(); }
    const std::map<UINT, std::string>& Strings() const { return m_strings; }

    // Menus, tool bars and bitmaps by id; null when the module has none of that id. Adding
    // an id that is taken replaces the former resource.
    const MenuData* FindMenu(UINT id) const;
    void AddMenu(UINT id, std::shared_ptr<MenuData> menu);
    const ToolBarResource* FindToolBar(UINT id) const;
    void AddToolBar(UINT id, ToolBarResource toolBar);
    // Null also when the bitmap's bytes can't be decoded.
    const BitmapResource* FindBitmap(UINT id) const;
    void AddBitmap(UINT id, BitmapResource bitmap);
    const std::map<UINT, std::shared_ptr<MenuData>>& Menus() const { return m_menus; }
    const std::map<UINT, ToolBarResource>& ToolBars() const { return m_toolBars; }

private:
    std::string m_name;
    std::map<UINT, std::string> m_strings;
    std::map<UINT, std::shared_ptr<MenuData>> m_menus;
    std::map<UINT, ToolBarResource> m_toolBars;
    mutable std::map<UINT, BitmapResource> m_bitmaps; // decoded on first use
};

// Makes module findable under its name (replacing a module of that name).
void RegisterResourceModule(std::shared_ptr<ResourceModule> module);
// Registers a maker that builds the module of that name on its first load.
void RegisterResourceProvider(const std::string& name,
                              std::function<std::shared_ptr<ResourceModule>()> provider);
// Replaces the module of that name with one read from a resource-script file: how a second
// language is put in place at run time. False with a message when the file can't be read.
bool LoadResourceModuleFile(const std::string& name, const std::string& path, std::string& error);
// Forgets a file override or registration, so the provider builds the module again.
void ResetResourceModule(const std::string& name);

} // namespace talvor::platform

using HINSTANCE = talvor::platform::ResourceModule*;

// The current resource source (a module of the application itself, empty unless the host
// fills it, until something selects another).
HINSTANCE AfxGetResourceHandle();
void AfxSetResourceHandle(HINSTANCE module);
// The module of that name ("TalvorRes" or "TalvorRes.dll" alike), or null when there is none.
// A name that is no registered module but a readable resource-script file is loaded from it.
HINSTANCE AfxLoadLibrary(const char* name);
BOOL AfxFreeLibrary(HINSTANCE module);
// Copies string id of module (of the current source when null) into buffer, cut to fit;
// returns the length copied, 0 when there is no such string.
int LoadStringA(HINSTANCE module, UINT id, char* buffer, int bufferSize);
