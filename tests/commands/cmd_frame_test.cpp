// The hidden designer frame: standard bars and pool, the saved stream with the pool's carrier
// bar, saving over files, loading, and the state store.
#include "commands/cmd_frame.h"
#include "host/bars/shortcut_manager.h"
#include "platform/app/message_box.h"
#include "platform/files/archive.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteAll(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string Describe(const CVTControls* controls);

std::string Describe(const CVTControl* c) {
    std::string text = std::string(c->GetRuntimeClass()->m_lpszClassName) + " " +
                       std::to_string(c->GetID()) + " " + c->GetIdName().GetString() + " '" +
                       c->GetCaption().GetString() + "' [" + c->GetCategory().GetString() + "]";
    if (auto* popup = dynamic_cast<const CVTControlPopup*>(c); popup && popup->GetCommandBar())
        text += " {" + Describe(popup->GetCommandBar()->GetControls()) + "}";
    return text;
}

std::string Describe(const CVTControls* controls) {
    std::string text;
    for (int i = 0; i < controls->GetCount(); ++i)
        text += Describe(controls->GetAt(i)) + "; ";
    return text;
}

std::string Describe(CTalvorCmdFrame& frame) {
    std::string text;
    CVTCommandBars* bars = frame.GetCommandBars();
    for (int i = 0; i < bars->GetCount(); ++i) {
        CVTCommandBar* bar = bars->GetAt(i);
        text += "bar " + std::to_string(bar->GetBarID()) + " '" + bar->GetTitle().GetString() +
                "' " + std::to_string(bar->GetFlags()) +
                (bar == bars->GetMenuBar() ? " menu" : "") + ": " + Describe(bar->GetControls()) +
                "\n";
    }
    return text + "pool: " + Describe(frame.GetDesignerControls());
}

class CmdFrame : public ::testing::Test {
protected:
    CmdFrame() {
        char pattern[] = "/tmp/talvor-cmdframe-XXXXXX";
        m_dir = mkdtemp(pattern);
        m_frame.LoadFrame(5402);
    }
    ~CmdFrame() override {
        std::remove(Path("a.design").c_str());
        std::remove(Path("b.design").c_str());
        rmdir(m_dir.c_str());
    }
    std::string Path(const char* name) const { return m_dir + "/" + name; }

    std::string m_dir;
    CTalvorCmdFrame m_frame;
};

TEST_F(CmdFrame, CreationGivesTheStandardBarsAndPool) {
    CVTCommandBars* bars = m_frame.GetCommandBars();
    ASSERT_NE(bars, nullptr);
    ASSERT_EQ(bars->GetCount(), 2);
    CVTCommandBar* menu = bars->GetMenuBar();
    ASSERT_EQ(menu, bars->GetAt(0));
    EXPECT_EQ(menu->GetTitle(), talvor::resources::LoadTalvorString(IDS_MENU_BAR_TITLE).c_str());
    EXPECT_EQ(menu->GetFlags() & 0x1700u, 0x1700u);
    EXPECT_GT(menu->GetControlCount(), 0);
    CVTCommandBar* standard = bars->GetAt(1);
    EXPECT_EQ(standard->GetTitle(),
              talvor::resources::LoadTalvorString(IDS_STANDARD_BAR_TITLE).c_str());
    EXPECT_EQ(standard->GetBarID(), 5402u);
    EXPECT_EQ(standard->GetControl(0)->GetID(), 57600);
    EXPECT_EQ(standard->GetControl(0)->GetIdName(), "ID_FILE_NEW") << "bars get standard names";
    EXPECT_TRUE(bars->IsCustomizeMode());
    EXPECT_EQ(bars->GetImageManager()->GetMaskColor(), 0x00FF00u);
    // The icon set of the standard commands, the mask colour transparent, and each icon also
    // made at the width 32.
    CVTImageManagerIconSet* save = bars->GetImageManager()->GetIconSet(57603);
    ASSERT_NE(save, nullptr);
    CVTImageManagerIcon* small = save->GetIcon(16);
    ASSERT_NE(small, nullptr);
    EXPECT_EQ(small->height, 15);
    EXPECT_EQ(small->pixels[0], CVTImageManagerIcon::Transparent);
    EXPECT_NE(save->GetIcon(32), nullptr);
    EXPECT_EQ(bars->GetImageManager()->GetImages().size(), 8u);

    // The pool holds the first level of every menu under the menu's caption.
    CVTControls* pool = m_frame.GetDesignerControls();
    int expected = 0;
    for (int i = 0; i < menu->GetControlCount(); ++i) {
        auto* popup = dynamic_cast<CVTControlPopup*>(menu->GetControl(i));
        expected += popup ? popup->GetCommandBar()->GetControlCount() : 1;
    }
    EXPECT_EQ(pool->GetCount(), expected);
    EXPECT_EQ(pool->GetAt(0)->GetCategory(), "File");
    EXPECT_EQ(pool->GetAt(0)->GetIdName(), "ID_FILE_NEW");
    EXPECT_EQ(pool->GetCommandBars(), bars);

    m_frame.ActivateFrame(SW_SHOWNORMAL);
    EXPECT_FALSE(m_frame.IsWindowVisible());
    EXPECT_EQ(m_frame.OnCmdMsg(57600, 0, nullptr, nullptr), 0);
}

TEST_F(CmdFrame, SaveThenLoadGivesTheSameBarsPoolAndNames) {
    CVTCommandBars* bars = m_frame.GetCommandBars();
    CVTCommandBar* tools = bars->Add("Tools", vtBarLeft, &CVTToolBar::classCVTToolBar);
    tools->SetBarID(700);
    tools->GetControls()->Add(vtControlButton, 7001, "Run")->SetIdName("ID_RUN");
    m_frame.GetDesignerControls()->Add(vtControlButton, 7002, "Extra")->SetIdName("ID_EXTRA");
    VTShortcutManager()->SetShortcuts({{0x09, 'R', 7001}});
    const std::string before = Describe(m_frame);

    m_frame.SaveToFile(Path("a.design").c_str());
    const std::string bytes = ReadAll(Path("a.design"));
    ASSERT_GE(bytes.size(), 4u);
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x01\x00\x00\x00", 4));
    EXPECT_EQ(Describe(m_frame), before) << "the carrier bar is gone after saving";

    // Change everything, then load.
    m_frame.ResetAllCommand();
    VTShortcutManager()->SetShortcuts({});
    bars->GetCommandBarsOptions()->bLargeIcons = TRUE;
    ASSERT_NE(Describe(m_frame), before);
    EXPECT_EQ(m_frame.LoadFromFile(Path("a.design").c_str()), 1);
    EXPECT_EQ(Describe(m_frame), before);
    EXPECT_EQ(bars->FindCommandBar(0xFFEEFFu), nullptr);
    EXPECT_EQ(m_frame.GetDesignerControls()->GetParent(), nullptr);
    EXPECT_EQ(m_frame.GetDesignerControls()->GetCommandBars(), bars);
    EXPECT_EQ(VTShortcutManager()->GetShortcuts().size(), 1u);
    EXPECT_FALSE(bars->GetCommandBarsOptions()->bLargeIcons);
    EXPECT_TRUE(bars->IsCustomizeMode());
    // Saving what was loaded writes the same stream.
    std::remove(Path("b.design").c_str());
    m_frame.SaveToFile(Path("b.design").c_str());
    EXPECT_EQ(ReadAll(Path("b.design")), bytes);
}

TEST_F(CmdFrame, LoadingNamesWhatWasStoredWithoutANameAndDropsTheKeptApartControls) {
    CVTControls* pool = m_frame.GetDesignerControls();
    pool->RemoveAll();
    pool->Add(vtControlButton, 40000, "apart");
    pool->Add(vtControlButton, 57603, "Save");
    pool->Add(vtControlButton, 40001, "apart too");
    m_frame.SaveToFile(Path("a.design").c_str());
    ASSERT_EQ(m_frame.LoadFromFile(Path("a.design").c_str()), 1);
    pool = m_frame.GetDesignerControls();
    ASSERT_EQ(pool->GetCount(), 1);
    EXPECT_EQ(pool->GetAt(0)->GetIdName(), "ID_FILE_SAVE");
}

TEST_F(CmdFrame, SavingOverAFileAsksAndWritesInPlace) {
    const std::string longer(100000, 'x');
    WriteAll(Path("a.design"), longer);
    talvor::testing::ClearShownMessages();
    auto former =
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) { return IDCANCEL; });
    m_frame.SaveToFile(Path("a.design").c_str());
    EXPECT_EQ(ReadAll(Path("a.design")), longer) << "a refusal writes nothing";

    talvor::platform::SetMessageBoxHandler(former);
    talvor::testing::ClearShownMessages();
    m_frame.ResetAllCommand();
    m_frame.SaveToFile(Path("a.design").c_str());
    ASSERT_EQ(talvor::testing::ShownMessages().size(), 1u);
    EXPECT_EQ(talvor::testing::ShownMessages()[0],
              talvor::resources::LoadTalvorString(IDS_REPLACE_EXISTING_FILE));
    const std::string written = ReadAll(Path("a.design"));
    ASSERT_EQ(written.size(), longer.size()) << "the old tail stays behind the stream";
    EXPECT_EQ(written.back(), 'x');
    // The tail does no harm to a load.
    const std::string before = Describe(m_frame);
    m_frame.GetDesignerControls()->RemoveAll();
    EXPECT_EQ(m_frame.LoadFromFile(Path("a.design").c_str()), 1);
    EXPECT_EQ(Describe(m_frame), before);
}

TEST_F(CmdFrame, MissingAndDamagedFiles) {
    const std::string before = Describe(m_frame);
    EXPECT_EQ(m_frame.LoadFromFile(Path("missing.design").c_str()), 0);
    EXPECT_EQ(Describe(m_frame), before);
    m_frame.SaveToFile((m_dir + "/no/such/folder.design").c_str()); // no message, no exception

    m_frame.SaveToFile(Path("a.design").c_str());
    const std::string bytes = ReadAll(Path("a.design"));
    const std::string barsBefore = before.substr(0, before.find("pool:"));
    for (std::size_t cut :
         {std::size_t{0}, std::size_t{3}, std::size_t{40}, bytes.size() / 2, bytes.size() - 1}) {
        std::remove(Path("b.design").c_str());
        WriteAll(Path("b.design"), bytes.substr(0, cut));
        bool threw = false;
        try {
            m_frame.LoadFromFile(Path("b.design").c_str());
        } catch (CArchiveException* e) {
            threw = true;
            e->Delete();
        }
        EXPECT_TRUE(threw) << cut;
        const std::string after = Describe(m_frame);
        EXPECT_EQ(after.substr(0, after.find("pool:")), barsBefore) << cut;
        EXPECT_EQ(m_frame.GetDesignerControls()->GetCount(), 0)
            << "the pool is emptied before reading";
        ASSERT_EQ(m_frame.LoadFromFile(Path("a.design").c_str()), 1);
    }
}

TEST_F(CmdFrame, SavingBuiltInMenusWritesTheirItemsAndKeepsThePool) {
    const std::string before = Describe(m_frame.GetDesignerControls());
    const CString menus(talvor::resources::LoadTalvorString(IDS_MENUS_CATEGORY));
    CVTControls list;
    auto* popup = static_cast<CVTControlPopup*>(list.Add(vtControlPopup, 0, "&Tools"));
    popup->SetCategory(menus);
    popup->GetCommandBar()->GetControls()->Add(vtControlButton, 801, "One")->SetCategory("x");
    popup->GetCommandBar()->GetControls()->Add(vtControlButton, 802, "Two");
    list.Add(vtControlButton, 803, "Single")->SetCategory(menus);
    list.Add(vtControlButton, 804, "Other")->SetCategory("Edit");
    list.Add(vtControlButton, 805, "None");

    m_frame.SaveToFile(Path("a.design").c_str(), &list, 1);
    EXPECT_EQ(Describe(m_frame.GetDesignerControls()), before);

    CTalvorCmdFrame other;
    other.LoadFrame(5402);
    ASSERT_EQ(other.LoadFromFile(Path("a.design").c_str()), 1);
    CVTControls* pool = other.GetDesignerControls();
    ASSERT_EQ(pool->GetCount(), 3);
    EXPECT_EQ(pool->GetAt(0)->GetCaption(), "One");
    EXPECT_EQ(pool->GetAt(0)->GetCategory(), "Tools");
    EXPECT_EQ(pool->GetAt(1)->GetCategory(), "Tools");
    EXPECT_EQ(pool->GetAt(2)->GetCaption(), "Single");
    EXPECT_EQ(pool->GetAt(2)->GetCategory(), "");

    std::remove(Path("a.design").c_str());
    m_frame.SaveToFile(Path("a.design").c_str(), &list, 0);
    ASSERT_EQ(other.LoadFromFile(Path("a.design").c_str()), 1);
    // All controls, popups with their items; the load names what was stored without a name.
    pool = other.GetDesignerControls();
    ASSERT_EQ(pool->GetCount(), 4);
    EXPECT_EQ(static_cast<CVTControlPopup*>(pool->GetAt(0))->GetCommandBar()->GetControlCount(), 2);
    EXPECT_EQ(pool->GetAt(3)->GetIdName(), "ID_805");
    EXPECT_EQ(pool->GetAt(2)->GetCategory(), "Edit");
}

TEST_F(CmdFrame, TheStateStoreCarriesTheDesignFromCloseToTheNextLoad) {
    m_frame.GetCommandBars()->Add("Mine", vtBarRight, &CVTToolBar::classCVTToolBar)->SetBarID(900);
    m_frame.OnClose();
    std::string stored;
    EXPECT_TRUE(talvor::testing::TestProfile().Get("Settings", "ResoureControls", stored));
    CTalvorCmdFrame next;
    ASSERT_TRUE(next.LoadFrame(5402));
    EXPECT_NE(next.GetCommandBars()->FindCommandBar(900u), nullptr);
    EXPECT_EQ(Describe(next), Describe(m_frame));

    // A damaged state leaves the standard bars.
    talvor::testing::TestProfile().Set("Settings", "ResoureControls", "0100");
    CTalvorCmdFrame third;
    ASSERT_TRUE(third.LoadFrame(5402));
    EXPECT_EQ(third.GetCommandBars()->GetCount(), 2);
    EXPECT_EQ(third.LoadState(), 0);
}

} // namespace

namespace {

TEST(CmdFrameLanguage, ASecondLanguageLoadedAtRunTimeGivesItsMenusAndTitles) {
    talvor::resources::RegisterTalvorRes();
    char pattern[] = "/tmp/talvor-cmdlang-XXXXXX";
    const std::string dir = mkdtemp(pattern);
    const std::string script = dir + "/talvor_de.rc";
    WriteAll(script, "#include \"talvor_res_ids.h\"\n"
                     "STRINGTABLE\nBEGIN\n"
                     "    IDS_MENU_BAR_TITLE \"Menueleiste\"\n"
                     "    IDS_STANDARD_BAR_TITLE \"Standard DE\"\n"
                     "END\n"
                     "IDR_DESIGNER_MENU MENU\nBEGIN\n"
                     "    POPUP \"&Datei\"\n    BEGIN\n"
                     "        MENUITEM \"&Neu\", ID_FILE_NEW\n"
                     "    END\n"
                     "END\n"
                     "IDR_STANDARD_TOOLBAR TOOLBAR 16, 15\nBEGIN\n    BUTTON ID_FILE_NEW\nEND\n");
    std::string error;
    ASSERT_TRUE(
        talvor::platform::LoadResourceModuleFile(talvor::resources::ModuleName, script, error))
        << error;
    {
        CTalvorCmdFrame frame;
        ASSERT_TRUE(frame.LoadFrame(5402));
        CVTCommandBars* bars = frame.GetCommandBars();
        EXPECT_EQ(bars->GetMenuBar()->GetTitle(), "Menueleiste");
        ASSERT_EQ(bars->GetMenuBar()->GetControlCount(), 1);
        EXPECT_EQ(bars->GetMenuBar()->GetControl(0)->GetCaption(), "&Datei");
        EXPECT_EQ(bars->GetAt(1)->GetTitle(), "Standard DE");
        EXPECT_EQ(bars->GetAt(1)->GetControlCount(), 1);
        ASSERT_EQ(frame.GetDesignerControls()->GetCount(), 1);
        EXPECT_EQ(frame.GetDesignerControls()->GetAt(0)->GetCategory(), "Datei");
        // This language has no icon set.
        EXPECT_TRUE(bars->GetImageManager()->GetImages().empty());
    }
    talvor::platform::ResetResourceModule(talvor::resources::ModuleName);
    std::remove(script.c_str());
    rmdir(dir.c_str());
    CTalvorCmdFrame english;
    ASSERT_TRUE(english.LoadFrame(5402));
    EXPECT_EQ(english.GetCommandBars()->GetMenuBar()->GetControlCount(), 5);
}

} // namespace
