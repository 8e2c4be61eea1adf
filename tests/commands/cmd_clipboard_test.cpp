// Clipboard forms of controls and bars, and the paste rules: one menu bar, unique ids, names
// and titles, the empty title, and damaged streams that change nothing.
#include "commands/cmd_clipboard.h"
#include "platform/files/archive.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

struct Bars {
    Bars() : bars(new CVTCommandBars()) {}
    ~Bars() { bars->InternalRelease(); }
    CVTCommandBars* operator->() const { return bars; }
    CVTCommandBars* bars;
};

std::string Stored(const std::function<void(CArchive&)>& write) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    write(ar);
    ar.Close();
    return file.Data();
}

// A tool bar "Tools" (id 300, id name IDR_TOOLS) with a button and a popup "Outer" that holds
// a popup "Inner" with one item.
CVTCommandBar* AddTools(CVTCommandBars* bars, const char* title = "Tools") {
    CVTCommandBar* bar = bars->Add(title, vtBarTop, &CVTToolBar::classCVTToolBar);
    bar->SetBarID(300);
    bar->SetBarIDName("IDR_TOOLS");
    bar->GetControls()->Add(vtControlButton, 301, "Run")->SetIdName("ID_RUN");
    auto* outer =
        static_cast<CVTControlPopup*>(bar->GetControls()->Add(vtControlPopup, 302, "Outer"));
    outer->GetCommandBar()->SetTitle("outer bar");
    auto* inner = static_cast<CVTControlPopup*>(
        outer->GetCommandBar()->GetControls()->Add(vtControlPopup, 303, "Inner"));
    inner->GetCommandBar()->SetTitle("inner bar");
    inner->GetCommandBar()->GetControls()->Add(vtControlButton, 304, "Deep");
    return bar;
}

template <class Result, class Target>
Result* Paste(const std::string& bytes, Target* target, std::size_t length = std::string::npos) {
    CMemFile file(bytes.data(), static_cast<UINT>(std::min(length, bytes.size())));
    CArchive ar(&file, CArchive::load);
    CTalvorCmdClipboard clipboard;
    return clipboard.LoadFromClipboard(ar, target);
}

TEST(CmdClipboard, ABarIsWrittenWithItsPopupTreesInOrder) {
    Bars source;
    CVTCommandBar* tools = AddTools(source.bars);
    const std::string bytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools); });

    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    const char* titles[] = {"Tools", "outer bar", "inner bar"};
    for (const char* title : titles) {
        auto* bar = dynamic_cast<CVTCommandBar*>(ar.ReadObject(&CVTCommandBar::classCVTCommandBar));
        ASSERT_NE(bar, nullptr);
        EXPECT_EQ(bar->GetTitle(), title);
        bar->InternalRelease();
    }
    char extra;
    EXPECT_EQ(ar.Read(&extra, 1), 0u) << "nothing follows the last tree";
}

TEST(CmdClipboard, PastedBarsGetFreeIdsNamesAndNumberedTitles) {
    Bars source;
    CVTCommandBar* tools = AddTools(source.bars);
    const std::string bytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools); });

    Bars target;
    AddTools(target.bars);
    target->Add("Tools1", vtBarTop, nullptr)->SetBarID(301);
    CVTCommandBar* pasted = Paste<CVTCommandBar>(bytes, target.bars);
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(pasted->GetTitle(), "Tools2");
    EXPECT_EQ(pasted->GetBarID(), 302u);
    EXPECT_EQ(pasted->GetBarIDName(), "IDR_TOOLS1");
    EXPECT_EQ(pasted->GetPosition(), vtBarTop) << "the copy takes the position of the copied bar";
    EXPECT_EQ(target->GetAt(target->GetCount() - 1), pasted);
    EXPECT_TRUE(pasted->IsKindOf(&CVTMenuBar::classCVTMenuBar));
    // The whole tree came along, bound to the target.
    auto* outer = static_cast<CVTControlPopup*>(pasted->GetControl(1));
    auto* inner = static_cast<CVTControlPopup*>(outer->GetCommandBar()->GetControl(0));
    EXPECT_EQ(inner->GetCommandBar()->GetControl(0)->GetCaption(), "Deep");
    EXPECT_EQ(inner->GetCommandBar()->GetCommandBars(), target.bars);
    // Control ids and names are left as they came.
    EXPECT_EQ(pasted->GetControl(0)->GetIdName(), "ID_RUN");

    // The empty title becomes the standard bar's title, numbered when it is taken.
    const CString standard(talvor::resources::LoadTalvorString(IDS_STANDARD_BAR_TITLE));
    tools->SetTitle("");
    const std::string untitled =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools); });
    EXPECT_EQ(Paste<CVTCommandBar>(untitled, target.bars)->GetTitle(), standard);
    CString numbered = standard;
    numbered += "1";
    EXPECT_EQ(Paste<CVTCommandBar>(untitled, target.bars)->GetTitle(), numbered);
}

TEST(CmdClipboard, OneMenuBarAndOneBarOfIdTwo) {
    Bars source;
    CVTCommandBar* menu = source->SetMenu("Menu Bar", 0);
    menu->GetControls()->Add(vtControlButton, 5, "x");
    const std::string menuBytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, menu); });

    Bars target;
    target->Add("Other", vtBarTop, nullptr)->SetBarID(7);
    CVTCommandBar* pasted = Paste<CVTCommandBar>(menuBytes, target.bars);
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(target->GetMenuBar(), pasted);
    EXPECT_EQ(pasted->GetBarID(), 1u);
    EXPECT_EQ(pasted->GetTitle(), "Menu Bar");
    const int count = target->GetCount();
    EXPECT_EQ(Paste<CVTCommandBar>(menuBytes, target.bars), nullptr);
    EXPECT_EQ(target->GetCount(), count);

    CVTCommandBar* context = source->Add("Context", vtBarPopup, nullptr);
    context->SetBarID(2);
    const std::string contextBytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, context); });
    CVTCommandBar* second = Paste<CVTCommandBar>(contextBytes, target.bars);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->GetPosition(), vtBarPopup) << "copied from the read bar";
    EXPECT_EQ(second->GetFlags() & 8u, 8u);
    EXPECT_EQ(second->GetDockingSides(), 0x30u);
    EXPECT_EQ(Paste<CVTCommandBar>(contextBytes, target.bars), nullptr);
}

TEST(CmdClipboard, APastedControlGoesToTheEndWithItsTree) {
    Bars source;
    CVTCommandBar* tools = AddTools(source.bars);
    auto* outer = tools->GetControl(1);
    const std::string bytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, outer); });

    CVTControls list;
    list.SetCommandBars(source.bars);
    list.Add(vtControlButton, 1, "a");
    list.Add(vtControlButton, 2, "b");
    list.Add(vtControlButton, 3, "c");
    auto* pasted = dynamic_cast<CVTControlPopup*>(Paste<CVTControl>(bytes, &list));
    ASSERT_NE(pasted, nullptr);
    EXPECT_EQ(list.GetAt(3), pasted);
    EXPECT_EQ(pasted->GetCaption(), "Outer");
    auto* inner = static_cast<CVTControlPopup*>(pasted->GetCommandBar()->GetControl(0));
    EXPECT_EQ(inner->GetCommandBar()->GetControl(0)->GetID(), 304);

    // A plain button pastes the same way.
    const std::string button = Stored(
        [&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools->GetControl(0)); });
    CVTControl* runCopy = Paste<CVTControl>(button, &list);
    EXPECT_EQ(runCopy, list.GetAt(4));
    EXPECT_EQ(list.GetAt(4)->GetIdName(), "ID_RUN");
}

TEST(CmdClipboard, TopLevelPopupsOfTheKeptApartIdsAreWrittenWithoutTrees) {
    Bars source;
    CVTCommandBar* bar = source->Add("Bar", vtBarTop, nullptr);
    static_cast<CVTControlPopup*>(bar->GetControls()->Add(vtControlPopup, 40000, "apart"))
        ->GetCommandBar()
        ->SetTitle("apart bar");
    const std::string bytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, bar); });
    EXPECT_EQ(bytes.find("apart bar"), std::string::npos);
    // Reading expects a tree for every popup, so such a bar can't be pasted.
    Bars target;
    EXPECT_THROW(
        {
            try {
                Paste<CVTCommandBar>(bytes, target.bars);
            } catch (CArchiveException* e) {
                e->Delete();
                throw 1;
            }
        },
        int);
    EXPECT_EQ(target->GetCount(), 0);
}

TEST(CmdClipboard, WrongClassesAndDamagedStreamsThrowAndChangeNothing) {
    Bars source;
    CVTCommandBar* tools = AddTools(source.bars);
    const std::string barBytes =
        Stored([&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools); });
    const std::string controlBytes = Stored(
        [&](CArchive& ar) { CTalvorCmdClipboard().SaveToClipboard(ar, tools->GetControl(1)); });

    CVTControls list;
    list.Add(vtControlButton, 1, "keep");
    Bars target;
    target->Add("keep", vtBarTop, nullptr);
    auto cause = [](const std::function<void()>& paste) {
        try {
            paste();
        } catch (CArchiveException* e) {
            const int c = e->m_cause;
            e->Delete();
            return c;
        }
        return -1;
    };
    EXPECT_EQ(cause([&] { Paste<CVTControl>(barBytes, &list); }), CArchiveException::badClass);
    EXPECT_EQ(cause([&] { Paste<CVTCommandBar>(controlBytes, target.bars); }),
              CArchiveException::badClass);
    for (std::size_t length = 0; length < barBytes.size(); ++length)
        EXPECT_NE(cause([&] { Paste<CVTCommandBar>(barBytes, target.bars, length); }), -1)
            << length;
    for (std::size_t length = 0; length < controlBytes.size(); ++length)
        EXPECT_NE(cause([&] { Paste<CVTControl>(controlBytes, &list, length); }), -1) << length;
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(target->GetCount(), 1);
}

TEST(CmdClipboard, TheClipboardCarriesAControlBetweenDesigns) {
    // SaveClipboard and LoadClipboard of the base move the archive through the clipboard.
    struct ControlClipboard : CTalvorCmdClipboard {
        CVTControl* control = nullptr;
        CVTControls* target = nullptr;
        CVTControl* pasted = nullptr;
        void SerializeClipboard(CArchive& ar) override {
            if (ar.IsStoring())
                SaveToClipboard(ar, control);
            else
                pasted = LoadFromClipboard(ar, target);
        }
    };
    CVTControls from, to;
    ControlClipboard copy;
    copy.control = from.Add(vtControlButton, 9, "Nine");
    ASSERT_TRUE(copy.SaveClipboard());
    ControlClipboard paste;
    paste.target = &to;
    ASSERT_TRUE(paste.LoadClipboard());
    ASSERT_NE(paste.pasted, nullptr);
    EXPECT_EQ(paste.pasted->GetCaption(), "Nine");
    EXPECT_EQ(to.GetCount(), 1);
}

} // namespace
