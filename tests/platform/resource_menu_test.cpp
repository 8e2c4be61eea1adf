// Menus and tool bars in resource scripts, and CMenu over them.
#include "platform/app/menu.h"
#include "platform/app/resource_script.h"

#include <gtest/gtest.h>

namespace talvor::platform {
namespace {

constexpr const char* Script = R"(
#define IDR_MAIN 100
#define ID_OPEN 57601
IDR_MAIN MENU DISCARDABLE
BEGIN
    POPUP "&File"
    BEGIN
        MENUITEM "&Open\tCtrl+O", ID_OPEN
        MENUITEM SEPARATOR
        POPUP "&Recent", GRAYED
        BEGIN
            MENUITEM "one", 901, CHECKED, GRAYED
        END
        MENUITEM "E&xit", 57665
    END
    MENUITEM "&Help", 57664, HELP
END
200 TOOLBAR 16, 15
BEGIN
    BUTTON ID_OPEN
    SEPARATOR
    BUTTON 57664
END
)";

TEST(ResourceMenus, MenusWithNestedPopupsFlagsAndSeparators) {
    ResourceModule module("test");
    std::string error;
    ASSERT_TRUE(ParseResourceScript(Script, module, error)) << error;
    ASSERT_NE(module.FindMenu(100), nullptr);
    CMenu menu;
    menu.Attach(std::make_shared<MenuData>(*module.FindMenu(100)));
    ASSERT_EQ(menu.GetMenuItemCount(), 2);
    EXPECT_EQ(menu.GetMenuItemID(0), static_cast<UINT>(-1)) << "a popup";
    EXPECT_EQ(menu.GetMenuItemID(1), 57664u);
    EXPECT_TRUE(menu.GetMenuState(1, MF_BYPOSITION) & MF_HELP);
    CMenu* file = menu.GetSubMenu(0);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(menu.GetSubMenu(0), file) << "the same sub-menu object each time";
    ASSERT_EQ(file->GetMenuItemCount(), 4);
    CString text;
    file->GetMenuString(0, text, MF_BYPOSITION);
    EXPECT_EQ(text, "&Open\tCtrl+O");
    EXPECT_EQ(file->GetMenuItemID(1), 0u) << "a separator";
    EXPECT_TRUE(file->GetMenuState(2, MF_BYPOSITION) & MF_GRAYED);
    EXPECT_EQ(file->GetSubMenu(2)->GetMenuItemID(0), 901u);
    EXPECT_EQ(file->GetSubMenu(2)->GetMenuState(0, MF_BYPOSITION) & (MF_CHECKED | MF_GRAYED),
              MF_CHECKED | MF_GRAYED);
    EXPECT_EQ(menu.GetMenuString(901, text, MF_BYCOMMAND), 3);
    EXPECT_EQ(menu.GetMenuItemID(5), static_cast<UINT>(-1));
    EXPECT_EQ(menu.GetSubMenu(1), nullptr);

    const ToolBarResource* toolBar = module.FindToolBar(200);
    ASSERT_NE(toolBar, nullptr);
    EXPECT_EQ(toolBar->buttonWidth, 16);
    EXPECT_EQ(toolBar->buttonHeight, 15);
    EXPECT_EQ(toolBar->ids, (std::vector<UINT>{57601, 0, 57664}));
}

TEST(ResourceMenus, DamagedMenusAndToolBarsNameTheirLine) {
    struct Case {
        const char* script;
        const char* message;
    } cases[] = {
        {"1 MENU\nBEGIN\n  POPUP \"a\"\n  BEGIN\n  MENUITEM \"x\", 5\n", "MENU without END"},
        {"1 MENU\nBEGIN\n  MENUITEM 5, \"x\"\nEND\n", "line 3: expected a caption or SEPARATOR"},
        {"1 MENU\nBEGIN\n  POPUP \"a\" MENUITEM \"x\", 5\nEND\n", "expected BEGIN after POPUP"},
        {"1 MENU\nBEGIN\n  FOO\nEND\n", "line 3: expected MENUITEM, POPUP or END"},
        {"2 TOOLBAR 0, 15\nBEGIN\nEND\n", "line 1: TOOLBAR needs a button width"},
        {"2 TOOLBAR 16, 15\nBEGIN\n BUTTON NOPE\nEND\n", "unknown symbol 'NOPE'"},
        {"3 DIALOG\n", "unsupported resource statement 'DIALOG'"},
    };
    for (const Case& c : cases) {
        ResourceModule module("test");
        std::string error;
        EXPECT_FALSE(ParseResourceScript(c.script, module, error)) << c.script;
        EXPECT_NE(error.find(c.message), std::string::npos) << error;
    }
    // Deep nesting is refused, not followed down the stack.
    std::string deep = "1 MENU\nBEGIN\n";
    for (int i = 0; i < 200; ++i)
        deep += "POPUP \"p\" BEGIN\n";
    ResourceModule module("test");
    std::string error;
    EXPECT_FALSE(ParseResourceScript(deep, module, error));
    EXPECT_NE(error.find("nested deeper"), std::string::npos) << error;
}

TEST(ResourceMenus, BitmapsAreFoundBesideTheScriptAndDecodedOnFirstUse) {
    ResourceModule module("test");
    std::string error;
    auto reader = [](const std::string& name, std::string& bytes) {
        if (name != "strip.bin")
            return false;
        bytes = "raw bytes";
        return true;
    };
    ASSERT_TRUE(ParseResourceScript("7 BITMAP \"strip.bin\"\n", module, error, reader)) << error;
    SetBitmapDecoder([](std::string_view bytes, BitmapResource& bitmap, std::string&) {
        if (bytes != "raw bytes")
            return false;
        bitmap.width = 1;
        bitmap.height = 1;
        bitmap.pixels = {0x123456};
        return true;
    });
    const BitmapResource* bitmap = module.FindBitmap(7);
    ASSERT_NE(bitmap, nullptr);
    EXPECT_EQ(bitmap->pixels, std::vector<std::uint32_t>{0x123456});
    SetBitmapDecoder(nullptr);
    EXPECT_FALSE(ParseResourceScript("8 BITMAP \"missing.png\"\n", module, error, reader));
    EXPECT_NE(error.find("bitmap file \"missing.png\" not found"), std::string::npos) << error;
}

} // namespace
} // namespace talvor::platform
