// The command bar library: list operations, copies, unique names, and the saved form of bars,
// images, shortcuts and options, which must read back field for field and refuse damage.
#include "host/bars/command_bars.h"
#include "host/bars/shortcut_manager.h"
#include "platform/files/archive.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

struct BarsDeleter {
    void operator()(CVTCommandBars* bars) const { bars->InternalRelease(); }
};
using BarsPtr = std::unique_ptr<CVTCommandBars, BarsDeleter>;

BarsPtr NewBars() {
    return BarsPtr(new CVTCommandBars());
}

// A design with a menu bar (popup in popup), a tool bar with every kind of control and every
// field set to something other than its default.
void FillDesign(CVTCommandBars& bars) {
    CVTCommandBar* menu = bars.SetMenu("Menu Bar", 0);
    menu->SetFlags(0x1700);
    auto* file =
        static_cast<CVTControlPopup*>(menu->GetControls()->Add(vtControlPopup, 0, "&File"));
    CVTControl* open = file->GetCommandBar()->GetControls()->Add(vtControlButton, 57601, "&Open");
    open->SetIdName("ID_FILE_OPEN");
    open->SetTooltip("Opens a file");
    open->SetCategory("File");
    auto* recent = static_cast<CVTControlPopup*>(
        file->GetCommandBar()->GetControls()->Add(vtControlPopup, 0, "Recent"));
    recent->GetCommandBar()->GetControls()->Add(vtControlButton, 57616, "1 first.frm");
    recent->GetCommandBar()->SetTitle("Recent files");

    CVTCommandBar* tools = bars.Add("Tools", vtBarLeft, &CVTToolBar::classCVTToolBar);
    tools->SetBarID(600);
    tools->SetBarIDName("IDR_TOOLS");
    tools->SetFlags(0x8);
    tools->SetVisible(FALSE);
    static_cast<CVTToolBar*>(tools)->EnableDocking(0x30);
    CVTControl* button = tools->GetControls()->Add(vtControlButton, 700, "Run");
    button->SetBeginGroup(TRUE);
    button->SetIconId(57601);
    button->SetVisible(FALSE);
    button->SetFlags(button->GetFlags() | vtFlagChecked);
    tools->GetControls()->Add(vtControlStatic, 701, "Label");
    auto* list =
        static_cast<CVTControlListBox*>(tools->GetControls()->Add(vtControlListBox, 702, "Pick"));
    list->SetLinesCount(12);

    CVTImageManagerIcon icon;
    icon.width = 2;
    icon.height = 2;
    icon.pixels = {0x112233, CVTImageManagerIcon::Transparent, 0x445566, 0x778899};
    bars.GetImageManager()->SetMaskColor(0x00FF00);
    bars.GetImageManager()->SetIcon(57601, icon);
    bars.GetCommandBarsOptions()->bLargeIcons = TRUE;
    bars.GetCommandBarsOptions()->cxIcons = 32;
}

std::string Store(CVTCommandBars& bars) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    bars.SerializeCommandBars(ar);
    bars.GetImageManager()->Serialize(ar, TRUE);
    bars.GetCommandBarsOptions()->Serialize(ar);
    ar.Close();
    return file.Data();
}

void Load(CVTCommandBars& bars, const std::string& bytes) {
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    bars.SerializeCommandBars(ar);
    bars.GetImageManager()->Serialize(ar, TRUE);
    bars.GetCommandBarsOptions()->Serialize(ar);
}

// Everything a user can see of a list, popups' bars included, as text.
std::string Describe(const CVTControls* controls, int depth = 0);

std::string Describe(const CVTCommandBar* bar, int depth) {
    std::string text =
        std::string(static_cast<std::size_t>(depth) * 2, ' ') + "bar " +
        std::to_string(bar->GetBarID()) + " " + bar->GetBarIDName().GetString() + " '" +
        bar->GetTitle().GetString() + "' flags " + std::to_string(bar->GetFlags()) + " pos " +
        std::to_string(bar->GetPosition()) + " dock " + std::to_string(bar->GetDockingSides()) +
        " visible " + std::to_string(bar->IsVisible()) + " class " +
        bar->GetRuntimeClass()->m_lpszClassName + "\n";
    return text + Describe(bar->GetControls(), depth + 1);
}

std::string Describe(const CVTControls* controls, int depth) {
    std::string text;
    for (int i = 0; i < controls->GetCount(); ++i) {
        const CVTControl* c = controls->GetAt(i);
        text += std::string(static_cast<std::size_t>(depth) * 2, ' ') +
                c->GetRuntimeClass()->m_lpszClassName + " " + std::to_string(c->GetID()) + " " +
                c->GetIdName().GetString() + " '" + c->GetCaption().GetString() + "' cat '" +
                c->GetCategory().GetString() + "' tip '" + c->GetTooltip().GetString() +
                "' flags " + std::to_string(c->GetFlags()) + " visible " +
                std::to_string(c->IsVisible()) + " icon " + std::to_string(c->GetIconId());
        if (auto* list = dynamic_cast<const CVTControlListBox*>(c))
            text += " lines " + std::to_string(list->GetLinesCount());
        text += "\n";
        if (auto* popup = dynamic_cast<const CVTControlPopup*>(c); popup && popup->GetCommandBar())
            text += Describe(popup->GetCommandBar(), depth + 1);
    }
    return text;
}

std::string Describe(const CVTCommandBars& bars) {
    std::string text;
    for (int i = 0; i < bars.GetCount(); ++i) {
        text += Describe(bars.GetAt(i), 0);
        if (bars.GetAt(i) == bars.GetMenuBar())
            text += "(menu bar)\n";
    }
    return text;
}

TEST(CommandBars, EveryFieldReadsBackAsItWasWritten) {
    BarsPtr original = NewBars();
    FillDesign(*original);
    const std::string bytes = Store(*original);

    BarsPtr copy = NewBars();
    copy->Add("stale", vtBarTop, nullptr);
    Load(*copy, bytes);
    EXPECT_EQ(Describe(*original), Describe(*copy));
    ASSERT_EQ(copy->GetCount(), 2);
    EXPECT_EQ(copy->GetMenuBar(), copy->GetAt(0));
    EXPECT_EQ(copy->GetImageManager()->GetMaskColor(), 0x00FF00u);
    const CVTImageManagerIcon* icon = copy->GetImageManager()->GetIconSet(57601)->GetIcon(2);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->pixels, (std::vector<std::uint32_t>{0x112233, CVTImageManagerIcon::Transparent,
                                                        0x445566, 0x778899}));
    EXPECT_EQ(*copy->GetCommandBarsOptions(), *original->GetCommandBarsOptions());
    // Loaded bars are bound to the set that read them, popups' bars too.
    auto* file = static_cast<CVTControlPopup*>(copy->GetMenuBar()->GetControl(0));
    EXPECT_EQ(file->GetCommandBar()->GetCommandBars(), copy.get());
    EXPECT_EQ(copy->FindControl(57616)->GetCaption(), "1 first.frm");
    // A second round trip gives the same bytes.
    EXPECT_EQ(Store(*copy), bytes);
}

TEST(CommandBars, EveryTruncationOrDamageThrowsAndChangesNothing) {
    BarsPtr original = NewBars();
    FillDesign(*original);
    const std::string bytes = Store(*original);

    BarsPtr target = NewBars();
    target->Add("Mine", vtBarTop, nullptr)->GetControls()->Add(vtControlButton, 5, "Keep");
    const std::string before = Describe(*target);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        CMemFile file(bytes.data(), static_cast<UINT>(length));
        CArchive ar(&file, CArchive::load);
        bool threw = false;
        try {
            target->SerializeCommandBars(ar);
            target->GetImageManager()->Serialize(ar, TRUE);
            target->GetCommandBarsOptions()->Serialize(ar);
        } catch (CArchiveException* e) {
            threw = true;
            e->Delete();
        }
        ASSERT_TRUE(threw) << "prefix of " << length << " bytes";
        // The bars are replaced only by a complete bar section.
        if (Describe(*target) != before) {
            EXPECT_EQ(Describe(*target), Describe(*original)) << "prefix of " << length << " bytes";
            target = NewBars();
            target->Add("Mine", vtBarTop, nullptr)->GetControls()->Add(vtControlButton, 5, "Keep");
        }
    }
    // A class name the library doesn't know, and a bar where a control belongs.
    std::string damaged = bytes;
    const std::size_t at = damaged.find("CVTControlPopup");
    ASSERT_NE(at, std::string::npos);
    damaged[at + 3] = 'X';
    CMemFile file(damaged.data(), static_cast<UINT>(damaged.size()));
    CArchive ar(&file, CArchive::load);
    try {
        target->SerializeCommandBars(ar);
        FAIL() << "an unknown class was accepted";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::badClass);
        e->Delete();
    }
    EXPECT_EQ(Describe(*target), before);
}

TEST(CommandBars, AStreamThatNamesOneControlTwiceIsRefused) {
    // Two lists that share one control object would free it twice.
    BarsPtr bars = NewBars();
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        auto* bar = new CVTToolBar();
        CVTControl* shared = bar->GetControls()->Add(vtControlButton, 1, "x");
        ar << WORD{1};
        ar.WriteCount(1);
        // The bar's own form, by hand, with the same control object twice.
        ar.WriteClass(bar->GetRuntimeClass());
        ar << DWORD{0} << CString("") << CString("t") << DWORD{0} << LONG{0} << DWORD{0} << LONG{1};
        ar.WriteCount(2);
        ar.WriteObject(shared);
        ar.WriteObject(shared);
        ar << LONG{-1};
        ar.Close();
        bar->InternalRelease();
    }
    CMemFile in(file.Data().data(), static_cast<UINT>(file.Data().size()));
    CArchive ar(&in, CArchive::load);
    try {
        bars->SerializeCommandBars(ar);
        FAIL() << "a shared control was accepted";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::badIndex);
        e->Delete();
    }
    EXPECT_EQ(bars->GetCount(), 0);
}

TEST(Controls, FindMoveRemoveAndNames) {
    BarsPtr bars = NewBars();
    FillDesign(*bars);
    CVTControls* menu = bars->GetMenuBar()->GetControls();
    // Look-ups go into popups, depth first, and names compare without case.
    EXPECT_EQ(menu->FindControl(57616)->GetCaption(), "1 first.frm");
    EXPECT_EQ(menu->FindControl("id_file_open")->GetID(), 57601);
    EXPECT_EQ(menu->FindControl(""), nullptr);
    EXPECT_EQ(menu->FindControl(vtControlButton, 57601, TRUE, FALSE), nullptr);
    EXPECT_NE(menu->FindControl(vtControlButton, 57601, TRUE, TRUE), nullptr);
    CVTControls* tools = bars->FindCommandBar(600)->GetControls();
    EXPECT_EQ(tools->FindControl(vtControlError, 700, TRUE, FALSE), nullptr) << "700 is hidden";
    EXPECT_NE(tools->FindControl(vtControlError, 700, FALSE, FALSE), nullptr);
    EXPECT_EQ(tools->FindControl(vtControlStatic, 700, FALSE, FALSE), nullptr);

    CVTControl* first = tools->GetAt(0);
    tools->MoveBefore(first, tools->GetCount());
    EXPECT_EQ(tools->GetAt(2), first);
    tools->MoveBefore(first, 0);
    EXPECT_EQ(tools->GetAt(0), first);
    tools->MoveBefore(tools->GetAt(0), 2);
    EXPECT_EQ(tools->GetAt(1), first);

    menu->SetControlIdName(57616, "ID_RECENT1");
    EXPECT_EQ(menu->FindControl(57616)->GetIdName(), "ID_RECENT1");

    tools->Remove(tools->GetAt(0));
    EXPECT_EQ(tools->GetCount(), 2);
    tools->RemoveAll();
    EXPECT_EQ(tools->GetCount(), 0);
    EXPECT_EQ(tools->GetAt(0), nullptr);
}

TEST(Controls, ClonesAndDuplicatesAreDeepOnlyWhenAsked) {
    BarsPtr bars = NewBars();
    FillDesign(*bars);
    auto* file = static_cast<CVTControlPopup*>(bars->GetMenuBar()->GetControl(0));
    CVTControls pool;
    auto* flat = static_cast<CVTControlPopup*>(pool.AddClone(file, -1, FALSE));
    auto* deep = static_cast<CVTControlPopup*>(pool.AddClone(file, 0, TRUE));
    EXPECT_EQ(pool.GetAt(0), deep);
    EXPECT_EQ(flat->GetCommandBar()->GetControlCount(), 0);
    ASSERT_EQ(deep->GetCommandBar()->GetControlCount(), 2);
    EXPECT_NE(deep->GetCommandBar(), file->GetCommandBar());
    EXPECT_EQ(Describe(deep->GetCommandBar()->GetControls()),
              Describe(file->GetCommandBar()->GetControls()));
    EXPECT_EQ(pool.AddClone(static_cast<const CVTControl*>(nullptr), -1, TRUE), nullptr);

    CVTControls* dup = pool.Duplicate(TRUE);
    EXPECT_EQ(Describe(dup), Describe(&pool));
    dup->GetAt(0)->SetCaption("changed");
    EXPECT_EQ(pool.GetAt(0)->GetCaption(), "&File");
    // The duplicate outlives a second reference given up.
    dup->InternalAddRef();
    EXPECT_EQ(dup->InternalRelease(), 1u);
    dup->InternalRelease();
}

TEST(CommandBars, UniqueIdsNamesAndTitles) {
    BarsPtr bars = NewBars();
    bars->Add("Tools", vtBarTop, nullptr)->SetBarID(100);
    bars->GetAt(0)->SetBarIDName("IDR_TOOLS");
    bars->Add("Tools1", vtBarTop, nullptr)->SetBarID(101);
    bars->GetAt(1)->SetBarIDName("IDR_TOOLS1");
    EXPECT_EQ(bars->GetUniqueBarID(50), 50u);
    EXPECT_EQ(bars->GetUniqueBarID(100), 102u);
    EXPECT_EQ(bars->GetUniqueBarIDName("IDR_OTHER"), "IDR_OTHER");
    EXPECT_EQ(bars->GetUniqueBarIDName("idr_tools"), "idr_tools2");
    EXPECT_EQ(bars->GetUniqueBarIDName(""), "");
    EXPECT_EQ(bars->FindCommandBar("tools", TRUE), bars->GetAt(0));
    EXPECT_EQ(bars->FindCommandBar("tools", FALSE), nullptr);
    EXPECT_EQ(bars->GetToolBar(101), bars->GetAt(1));
    EXPECT_EQ(bars->GetMenuBar(), nullptr);
    bars->SetMenuBar(bars->GetAt(1), 1);
    EXPECT_EQ(bars->GetMenuBar(), bars->GetAt(1));
    EXPECT_EQ(bars->GetAt(1)->GetBarID(), 1u);
    bars->Remove(bars->GetAt(1));
    EXPECT_EQ(bars->GetMenuBar(), nullptr);
}

TEST(PaintManager, StripMnemonics) {
    EXPECT_EQ(CVTPaintManager::StripMnemonics("&File"), "File");
    EXPECT_EQ(CVTPaintManager::StripMnemonics("Save && E&xit"), "Save & Exit");
    EXPECT_EQ(CVTPaintManager::StripMnemonics("Datei(&F)"), "Datei");
    EXPECT_EQ(CVTPaintManager::StripMnemonics("end&"), "end");
}

TEST(ImageManager, IconsAreScaledFromTheNearestWidthOnRequest) {
    CVTImageManagerIconSet set(5);
    EXPECT_EQ(set.GetIcon(32, TRUE), nullptr);
    CVTImageManagerIcon icon;
    icon.width = 2;
    icon.height = 2;
    icon.pixels = {1, 2, 3, 4};
    set.SetIcon(icon);
    EXPECT_EQ(set.GetIcon(4, FALSE), nullptr);
    CVTImageManagerIcon* big = set.GetIcon(4, TRUE);
    ASSERT_NE(big, nullptr);
    EXPECT_EQ(big->height, 4);
    EXPECT_EQ(big->pixels,
              (std::vector<std::uint32_t>{1, 1, 2, 2, 1, 1, 2, 2, 3, 3, 4, 4, 3, 3, 4, 4}));
    EXPECT_EQ(set.GetIcons().size(), 2u);
}

TEST(ShortcutManager, RoundTripAndDamage) {
    CVTShortcutManager manager;
    manager.SetShortcuts({{0x09, 'S', 57603}, {0x01, 0x70, 57667}});
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        manager.SerializeShortcuts(nullptr, ar);
    }
    CVTShortcutManager copy;
    copy.AddShortcut({1, 2, 3});
    const std::string bytes = file.Data();
    CMemFile cut(bytes.data(), static_cast<UINT>(bytes.size() - 1));
    CArchive cutAr(&cut, CArchive::load);
    EXPECT_THROW(
        {
            try {
                copy.SerializeShortcuts(nullptr, cutAr);
            } catch (CArchiveException* e) {
                e->Delete();
                throw std::runtime_error("archive");
            }
        },
        std::runtime_error);
    EXPECT_EQ(copy.GetShortcuts().size(), 1u);
    CMemFile whole(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&whole, CArchive::load);
    copy.SerializeShortcuts(nullptr, ar);
    EXPECT_EQ(copy.GetShortcuts(), manager.GetShortcuts());
}

} // namespace
