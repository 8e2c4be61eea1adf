// Menus as the resource library holds them and as CMenu hands them out: items with an id, a
// caption and flags, separators, and popups with items of their own. A CMenu made by LoadMenu
// owns a copy of the resource, so destroying it never touches the library.
#pragma once

#include "platform/core/win_types.h"
#include "platform/strings/cstring.h"

#include <memory>
#include <vector>

constexpr UINT MF_STRING = 0x0000;
constexpr UINT MF_GRAYED = 0x0001;
constexpr UINT MF_DISABLED = 0x0002;
constexpr UINT MF_CHECKED = 0x0008;
constexpr UINT MF_POPUP = 0x0010;
constexpr UINT MF_MENUBARBREAK = 0x0020;
constexpr UINT MF_MENUBREAK = 0x0040;
constexpr UINT MF_SEPARATOR = 0x0800;
constexpr UINT MF_HELP = 0x4000;
constexpr UINT MF_BYCOMMAND = 0x0000;
constexpr UINT MF_BYPOSITION = 0x0400;

// Flags of a popup menu that is tracked: the mouse button that picks, where the menu stands
// against the point, and whether the choice comes back as the result instead of as WM_COMMAND.
constexpr UINT TPM_LEFTBUTTON = 0x0000;
constexpr UINT TPM_RIGHTBUTTON = 0x0002;
constexpr UINT TPM_CENTERALIGN = 0x0004;
constexpr UINT TPM_RIGHTALIGN = 0x0008;
constexpr UINT TPM_NONOTIFY = 0x0080;
constexpr UINT TPM_RETURNCMD = 0x0100;

namespace talvor::platform {

struct MenuItem {
    UINT id = 0;                            // 0 for a separator and for a popup
    std::string text;                       // caption with its "&" mnemonic marks
    UINT flags = MF_STRING;                 // MF_ values
    std::shared_ptr<struct MenuData> popup; // the items of a popup, else null
};

struct MenuData {
    std::vector<MenuItem> items;
};

} // namespace talvor::platform

class CMenu {
public:
    CMenu() = default;
    BOOL CreateMenu();
    BOOL CreatePopupMenu() { return CreateMenu(); }
    // The menu of that id of the current resource source; FALSE when it has none.
    BOOL LoadMenu(UINT resourceId);
    // Forgets the menu; FALSE when there was none.
    BOOL DestroyMenu();
    bool IsLoaded() const { return m_data != nullptr; }

    // -1 when there is no menu.
    int GetMenuItemCount() const;
    // The item's id; 0 for a separator, -1 (as UINT) for a popup or a position outside the menu.
    UINT GetMenuItemID(int position) const;
    // The caption of the item at a position (flags MF_BYPOSITION) or of the first item of an id
    // (MF_BYCOMMAND, looked for in popups too); the length, 0 when there is no such item.
    int GetMenuString(UINT idOrPosition, CString& text, UINT flags) const;
    // The item's flags, or -1 (as UINT) when there is no such item.
    UINT GetMenuState(UINT idOrPosition, UINT flags) const;
    // The popup at a position, or null. The returned menu lives as long as this one.
    CMenu* GetSubMenu(int position) const;
    // Appends an item; a popup (MF_POPUP) takes the items of popupMenu.
    BOOL AppendMenu(UINT flags, UINT_PTR idOrPopup = 0, const char* text = nullptr);

    const talvor::platform::MenuData* Data() const { return m_data.get(); }
    void Attach(std::shared_ptr<talvor::platform::MenuData> data);

private:
    const talvor::platform::MenuItem* ItemAt(int position) const;
    std::shared_ptr<talvor::platform::MenuData> m_data;
    mutable std::vector<std::unique_ptr<CMenu>> m_subMenus; // handed out by GetSubMenu
};
