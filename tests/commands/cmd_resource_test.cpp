// Id names and the designer's pool: standard names, names counted upward, the pool built from
// the menu bar, and which operations overwrite a user's name.
#include "commands/cmd_resource.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <gtest/gtest.h>

namespace {

class CmdResource : public ::testing::Test {
protected:
    CmdResource() {
        m_pool->SetCommandBars(m_bars);
        m_resource.SetControls(m_pool);
    }
    ~CmdResource() override {
        m_pool->InternalRelease();
        m_bars->InternalRelease();
    }
    // A menu bar: "&File" (Open, Save, popup "Recent" with one item), "&Edit" (Cut), and a plain
    // button "Help" of id 57664 on the bar itself.
    void BuildMenuBar() {
        CVTCommandBar* menu = m_bars->SetMenu("Menu Bar", 0);
        auto* file =
            static_cast<CVTControlPopup*>(menu->GetControls()->Add(vtControlPopup, 0, "&File"));
        file->GetCommandBar()->GetControls()->Add(vtControlButton, 57601, "&Open");
        file->GetCommandBar()->GetControls()->Add(vtControlButton, 57603, "&Save");
        auto* recent = static_cast<CVTControlPopup*>(
            file->GetCommandBar()->GetControls()->Add(vtControlPopup, 900, "Recent"));
        recent->GetCommandBar()->GetControls()->Add(vtControlButton, 901, "first");
        auto* edit =
            static_cast<CVTControlPopup*>(menu->GetControls()->Add(vtControlPopup, 0, "&Edit"));
        edit->GetCommandBar()->GetControls()->Add(vtControlButton, 57635, "Cu&t");
        menu->GetControls()->Add(vtControlButton, 57664, "Help");
    }

    CVTCommandBars* m_bars = new CVTCommandBars();
    CVTControls* m_pool = new CVTControls();
    CTalvorCmdResource m_resource;
};

TEST_F(CmdResource, DefaultNamesComeFromThePoolThenTheTableThenCountUpward) {
    m_pool->Add(vtControlButton, 57603, "Save");
    EXPECT_EQ(m_resource.GetDefaultIdName(57603, nullptr), "ID_FILE_SAVE");
    // With a list that doesn't name the control, the table isn't consulted.
    CVTControls other;
    EXPECT_EQ(m_resource.GetDefaultIdName(57603, &other), "ID_57603");
    other.Add(vtControlButton, 57603, "Save")->SetIdName("MY_SAVE");
    EXPECT_EQ(m_resource.GetDefaultIdName(57603, &other), "MY_SAVE");
    // The bar rows are ordinary rows.
    EXPECT_EQ(m_resource.GetDefaultIdName(1, nullptr), "IDR_MENUBAR");
    EXPECT_EQ(m_resource.GetDefaultIdName(5402, nullptr), "IDR_STANDARD");
    // Made-up names skip the names the pool already uses.
    m_pool->Add(vtControlButton, 1, "x")->SetIdName("ID_700");
    EXPECT_EQ(m_resource.GetDefaultIdName(700, nullptr), "ID_701");
    m_pool->Add(vtControlButton, 2, "y")->SetIdName("id_701");
    EXPECT_EQ(m_resource.GetDefaultIdName(700, nullptr), "ID_702");
    // A named control of the id in the pool wins over the table.
    m_pool->Add(vtControlButton, 57601, "Open")->SetIdName("OPEN_IT");
    EXPECT_EQ(m_resource.GetDefaultIdName(57601, nullptr), "OPEN_IT");
}

TEST_F(CmdResource, OnlyInitCommandBarIdNameOverwritesAUsersName) {
    BuildMenuBar();
    CVTControls* menu = m_bars->GetMenuBar()->GetControls();
    menu->FindControl(57603)->SetIdName("MY_SAVE");
    m_pool->Add(vtControlButton, 57601, "Open")->SetIdName("MY_OPEN");
    m_pool->Add(vtControlButton, 57635, "Cut");
    m_pool->Add(vtControlButton, 0, "no id");

    m_resource.SetDefaultIdName();
    EXPECT_EQ(m_pool->FindControl(57601)->GetIdName(), "MY_OPEN");
    EXPECT_EQ(m_pool->FindControl(57635)->GetIdName(), "ID_EDIT_CUT");
    m_resource.InitControlIdName(nullptr, nullptr);
    EXPECT_EQ(m_pool->FindControl(57601)->GetIdName(), "MY_OPEN");
    EXPECT_EQ(m_pool->GetAt(2)->GetIdName(), "") << "a control of id 0 gets no name";

    m_resource.InitCommandBarIdName(nullptr);
    EXPECT_EQ(menu->FindControl(57603)->GetIdName(), "ID_FILE_SAVE");
    EXPECT_EQ(menu->FindControl(57601)->GetIdName(), "ID_FILE_OPEN");
    EXPECT_EQ(menu->FindControl(57664)->GetIdName(), "ID_APP_ABOUT");
    EXPECT_EQ(menu->FindControl(901)->GetIdName(), "") << "not a standard command";
}

TEST_F(CmdResource, InitControlIdNameWalksOneLevelOfPopupsAndPassesOverTheKeptApartIds) {
    auto* popup = static_cast<CVTControlPopup*>(m_pool->Add(vtControlPopup, 800, "Outer"));
    auto* inner = static_cast<CVTControlPopup*>(
        popup->GetCommandBar()->GetControls()->Add(vtControlPopup, 801, "Inner"));
    inner->GetCommandBar()->GetControls()->Add(vtControlButton, 802, "Deep");
    m_pool->Add(vtControlButton, 40000, "kept apart");
    auto* apart =
        static_cast<CVTControlPopup*>(m_pool->Add(vtControlPopup, 40001, "kept apart too"));
    apart->GetCommandBar()->GetControls()->Add(vtControlButton, 803, "under it");

    m_resource.InitControlIdName(nullptr, nullptr);
    EXPECT_EQ(popup->GetIdName(), "ID_800");
    EXPECT_EQ(inner->GetIdName(), "ID_801");
    EXPECT_EQ(m_pool->FindControl(802)->GetIdName(), "");
    EXPECT_EQ(m_pool->FindControl(40000)->GetIdName(), "");
    EXPECT_EQ(m_pool->FindControl(803)->GetIdName(), "");
}

TEST_F(CmdResource, BuildControlsTakesTheFirstLevelOfEachMenu) {
    BuildMenuBar();
    m_resource.BuildControls(nullptr);
    ASSERT_EQ(m_pool->GetCount(), 5);
    const char* captions[] = {"&Open", "&Save", "Recent", "Cu&t", "Help"};
    const char* categories[] = {"File", "File", "File", "Edit", ""};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(m_pool->GetAt(i)->GetCaption(), captions[i]);
        EXPECT_EQ(m_pool->GetAt(i)->GetCategory(), categories[i]);
    }
    EXPECT_EQ(m_pool->GetAt(0)->GetIdName(), "ID_FILE_OPEN");
    EXPECT_EQ(m_pool->GetAt(2)->GetIdName(), "ID_900");
    // A popup in a popup enters as one control, without its items.
    EXPECT_EQ(static_cast<CVTControlPopup*>(m_pool->GetAt(2))->GetCommandBar()->GetControlCount(),
              0);
    // The menu bar keeps its own controls.
    EXPECT_EQ(m_bars->GetMenuBar()->GetControlCount(), 3);
}

TEST_F(CmdResource, ResetBuildInControlsAddsWholeMenusUnderTheMenusCategory) {
    BuildMenuBar();
    m_pool->Add(vtControlButton, 5, "old");
    EXPECT_EQ(m_resource.ResetBuildInControls(nullptr), 1);
    ASSERT_EQ(m_pool->GetCount(), 8);
    EXPECT_EQ(m_pool->FindControl(5), nullptr);
    const CString menus(talvor::resources::LoadTalvorString(IDS_MENUS_CATEGORY));
    ASSERT_FALSE(menus.IsEmpty());
    auto* file = dynamic_cast<CVTControlPopup*>(m_pool->GetAt(5));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->GetCaption(), "&File");
    EXPECT_EQ(file->GetCategory(), menus);
    EXPECT_EQ(file->GetCommandBar()->GetControlCount(), 3);
    auto* recent = static_cast<CVTControlPopup*>(file->GetCommandBar()->GetControl(2));
    EXPECT_EQ(recent->GetCommandBar()->GetControlCount(), 1)
        << "whole menus are copied with all levels";
    EXPECT_EQ(m_pool->GetAt(7)->GetCategory(), menus);
}

TEST_F(CmdResource, WithoutAMenuBarThePoolStaysEmpty) {
    m_bars->Add("Tools", vtBarTop, nullptr)->GetControls()->Add(vtControlButton, 1, "x");
    m_pool->Add(vtControlButton, 5, "old");
    EXPECT_EQ(m_resource.ResetBuildInControls(nullptr), 1);
    EXPECT_EQ(m_pool->GetCount(), 0);
    m_resource.BuildControls(nullptr);
    EXPECT_EQ(m_pool->GetCount(), 0);
    // Empty popups add nothing and no category.
    CVTCommandBar* menu = m_bars->SetMenu("Menu Bar", 0);
    menu->GetControls()->Add(vtControlPopup, 0, "&Empty");
    m_resource.BuildControls(nullptr);
    EXPECT_EQ(m_pool->GetCount(), 0);
}

TEST_F(CmdResource, AddBuildInControlsListsTheBuiltInMenu) {
    EXPECT_EQ(m_resource.AddBuildInControls(nullptr), 1);
    CMenu menu;
    {
        talvor::resources::ResourceGuard guard;
        ASSERT_TRUE(menu.LoadMenu(5416));
    }
    int items = 0;
    for (int i = 0; i < menu.GetMenuItemCount(); ++i)
        items += menu.GetMenuItemID(i) != 0 ? 1 : 0;
    ASSERT_GT(items, 0);
    EXPECT_EQ(m_pool->GetCount(), items);
    const CString menus(talvor::resources::LoadTalvorString(IDS_MENUS_CATEGORY));
    for (int i = 0; i < m_pool->GetCount(); ++i)
        EXPECT_EQ(m_pool->GetAt(i)->GetCategory(), menus);
}

} // namespace
