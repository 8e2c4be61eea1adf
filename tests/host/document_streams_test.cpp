// The host's document on a compound file: frame and container streams round trip through a
// sub-storage, damaged or missing streams change nothing, and sub-storages are found by name
// and type.
#include "../platform/storage_test_support.h"
#include "design_description.h"
#include "host/base/designer_frame.h"
#include "host/base/tv_document.h"
#include "host/core/vp_storage.h"
#include "platform/storage/ole_stream_file.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {
using namespace talvor::testing;
using namespace talvor::platform::storage;

constexpr DWORD CreateMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD WriteMode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD ReadMode = STGM_READ | STGM_SHARE_EXCLUSIVE;

std::string Numbered(const char* prefix, int n) {
    char text[64];
    std::snprintf(text, sizeof text, "%s%d", prefix, n);
    return text;
}

// Bars that differ with the variant: one to three tool bars of buttons and a popup with a bar of
// its own, a menu bar for odd variants.
void FillBars(CTVMDIFrameWnd& frame, int variant) {
    ASSERT_TRUE(frame.InitCommandBars());
    CVTCommandBars* bars = frame.GetCommandBars();
    bars->RemoveAll();
    bars->GetCommandBarsOptions()->bLargeIcons = variant % 2;
    for (int b = 0; b <= variant % 3; ++b) {
        CVTCommandBar* bar = bars->Add(Numbered("Bar ", b * 10 + variant).c_str(),
                                       b % 2 ? vtBarLeft : vtBarTop, &CVTToolBar::classCVTToolBar);
        bar->SetBarID(100 + b);
        for (int c = 0; c < 2 + variant; ++c)
            bar->GetControls()->Add(vtControlButton, 1000 + c,
                                    Numbered("Button ", c * variant).c_str());
        auto* popup =
            static_cast<CVTControlPopup*>(bar->GetControls()->Add(vtControlPopup, 0, "More"));
        popup->GetCommandBar()->GetControls()->Add(vtControlButton, 2000 + variant, "Inside");
    }
    if (variant % 2)
        bars->SetMenuBar(bars->GetAt(0), 59392);
}

void FillDesign(CTVMDIFrameWnd& frame, CTVContainerDoc& form, int variant) {
    frame.SetWindowText((Numbered("Form", variant)).c_str());
    frame.SetTitle("Designer");
    frame.MoveWindow(10 + variant, 20, 640, 480);
    frame.ShowWindow(SW_SHOWMAXIMIZED);
    FillBars(frame, variant);
    form.RemoveAll();
    for (int i = 0; i < 3 + variant; ++i) {
        const int c = form.AddControl((Numbered("Button", i)).c_str(), "VX.Button");
        form.SetProperty(c, "Caption", (Numbered("Press ", i * variant)).c_str());
        form.SetProperty(c, "Left", std::to_string(i * 12).c_str());
    }
}

std::string Describe(const CTVMDIFrameWnd& frame, const CVXContainerDoc& form) {
    CString text;
    frame.GetWindowText(text);
    RECT r;
    frame.GetWindowRect(&r);
    std::ostringstream out;
    out << text.GetString() << '|' << frame.GetTitle().GetString() << '|' << r.left << ',' << r.top
        << ',' << r.right << ',' << r.bottom << '|' << frame.GetShowCommand() << '|'
        << DescribeBars(frame.GetCommandBars());
    for (int i = 0; i < form.GetControlCount(); ++i) {
        const CVXContainerDoc::Control* c = form.GetControl(i);
        out << '|' << c->m_strName.GetString() << ':' << c->m_strClass.GetString();
        for (INT_PTR p = 0; p < c->m_arrPropertyNames.GetSize(); ++p)
            out << ';' << c->m_arrPropertyNames[p].GetString() << '='
                << c->m_arrPropertyValues[p].GetString();
    }
    return out.str();
}

TEST(TVDocument, FrameAndContainerStreamsRoundTripThroughASubStorage) {
    const std::string path = TestFolder("host") + "/design.cfb";
    CTVDocument doc;
    ASSERT_TRUE(doc.DoSave(path.c_str(), TRUE));
    EXPECT_EQ(std::string(doc.GetPathName()), path);
    ASSERT_NE(doc.GetRootStorage(), nullptr);

    CTVMDIFrameWnd frame;
    CTVContainerDoc form;
    frame.SetContainer(&form);
    FillDesign(frame, form, 2);
    const std::string saved = Describe(frame, form);
    IStorage* snapshot = CVPStorage::CreateStorage("0", doc.GetRootStorage(), CreateMode, 0);
    ASSERT_NE(snapshot, nullptr);
    EXPECT_TRUE(doc.SaveFrameStream(&frame, snapshot));
    EXPECT_TRUE(doc.SaveContainerStream(frame.GetContainer(), snapshot));
    snapshot->Release();
    ASSERT_EQ(doc.GetRootStorage()->Commit(STGC_ONLYIFCURRENT), S_OK);

    EXPECT_TRUE(CVPStorage::FindElement("0", doc.GetRootStorage(), STGTY_STORAGE));
    EXPECT_FALSE(CVPStorage::FindElement("0", doc.GetRootStorage(), STGTY_STREAM));
    EXPECT_FALSE(CVPStorage::FindElement("1", doc.GetRootStorage(), STGTY_STORAGE));

    FillDesign(frame, form, 5);
    ASSERT_NE(Describe(frame, form), saved);
    IStorage* reopened = doc.OpenStorage("0", doc.GetRootStorage(), ReadMode);
    ASSERT_NE(reopened, nullptr);
    EXPECT_TRUE(doc.LoadFrameStream(&frame, reopened));
    EXPECT_TRUE(doc.LoadContainerStream(&form, reopened));
    reopened->Release();
    EXPECT_EQ(Describe(frame, form), saved);

    // An independent reader sees the storage with its two streams.
    const Listing listing = ListWithOlefile(path);
    ASSERT_EQ(listing.count("0/Frame"), 1u);
    ASSERT_EQ(listing.count("0/Container"), 1u);
    EXPECT_EQ(listing.at("0"), "<storage>");
    EXPECT_EQ(listing.at("0/Frame").substr(0, 4), "TVFS");
}

TEST(TVDocument, MissingOrDamagedStreamsLoadNothing) {
    const std::string path = TestFolder("host") + "/damaged.cfb";
    CTVDocument doc;
    ASSERT_TRUE(doc.DoSave(path.c_str(), TRUE));
    CTVMDIFrameWnd frame;
    CTVContainerDoc form;
    FillDesign(frame, form, 1);
    const std::string before = Describe(frame, form);

    IStorage* empty = CVPStorage::CreateStorage("empty", doc.GetRootStorage(), CreateMode, 0);
    ASSERT_NE(empty, nullptr);
    EXPECT_FALSE(doc.LoadFrameStream(&frame, empty));
    EXPECT_FALSE(doc.LoadContainerStream(&form, empty));
    empty->Release();

    // Streams cut short in the middle of a record, and a frame stream of another kind.
    IStorage* cut = CVPStorage::CreateStorage("cut", doc.GetRootStorage(), CreateMode, 0);
    ASSERT_NE(cut, nullptr);
    CTVMDIFrameWnd other;
    CTVContainerDoc otherForm;
    FillDesign(other, otherForm, 4);
    ASSERT_TRUE(doc.SaveFrameStream(&other, cut));
    ASSERT_TRUE(doc.SaveContainerStream(&otherForm, cut));
    for (const char* name : {"Frame", "Container"}) {
        COleStreamFile file;
        ASSERT_TRUE(file.OpenStream(cut, name, WriteMode));
        file.SetLength(file.GetLength() - 3);
    }
    EXPECT_FALSE(doc.LoadFrameStream(&frame, cut));
    EXPECT_FALSE(doc.LoadContainerStream(&form, cut));
    EXPECT_EQ(Describe(frame, form), before);
    ASSERT_EQ(WriteStream(cut, "Frame", "MZ not a frame stream at all", STGM_CREATE), S_OK);
    EXPECT_FALSE(doc.LoadFrameStream(&frame, cut));
    EXPECT_EQ(Describe(frame, form), before);
    cut->Release();

    EXPECT_FALSE(doc.SaveFrameStream(nullptr, doc.GetRootStorage()));
    EXPECT_FALSE(doc.LoadContainerStream(&form, nullptr));
    EXPECT_EQ(doc.OpenStorage("nothing", doc.GetRootStorage(), ReadMode), nullptr);
}

TEST(TVDocument, TheFrameStreamCarriesTheCommandBars) {
    const std::string path = TestFolder("host") + "/bars.cfb";
    CTVDocument doc;
    ASSERT_TRUE(doc.DoSave(path.c_str(), TRUE));
    IStorage* root = doc.GetRootStorage();
    CTVMDIFrameWnd saved, target;
    CTVContainerDoc savedForm, targetForm;
    FillDesign(saved, savedForm, 3);
    FillDesign(target, targetForm, 2);
    const std::string savedBars = DescribeBars(saved.GetCommandBars());
    ASSERT_NE(DescribeBars(target.GetCommandBars()), savedBars);
    IStorage* storage = CVPStorage::CreateStorage("bars", root, CreateMode, 0);
    ASSERT_NE(storage, nullptr);
    ASSERT_TRUE(doc.SaveFrameStream(&saved, storage));

    // Into another design frame: its own set of bars now holds the saved bars, bound to it.
    CVTCommandBars* targetBars = target.GetCommandBars();
    ASSERT_TRUE(doc.LoadFrameStream(&target, storage));
    EXPECT_EQ(target.GetCommandBars(), targetBars);
    EXPECT_EQ(DescribeBars(targetBars), savedBars);
    ASSERT_NE(targetBars->GetMenuBar(), nullptr);
    EXPECT_EQ(targetBars->GetMenuBar(), targetBars->GetAt(0));

    // Every shorter form of the stream is refused and leaves the frame and its bars alone.
    COleStreamFile file;
    ASSERT_TRUE(file.OpenStream(storage, "Frame", ReadMode));
    std::string whole(static_cast<std::size_t>(file.GetLength()), '\0');
    ASSERT_EQ(file.Read(whole.data(), static_cast<UINT>(whole.size())), whole.size());
    file.Close();
    FillDesign(target, targetForm, 4);
    const std::string before = Describe(target, targetForm);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_EQ(WriteStream(storage, "Frame", whole.substr(0, length), STGM_CREATE), S_OK);
        ASSERT_FALSE(doc.LoadFrameStream(&target, storage)) << length;
    }
    EXPECT_EQ(Describe(target, targetForm), before);

    // A frame without command bars takes the rest and drops the bars; what it saves leaves a
    // design frame's bars as they are.
    ASSERT_EQ(WriteStream(storage, "Frame", whole, STGM_CREATE), S_OK);
    CMDIFrameWnd plain;
    ASSERT_TRUE(doc.LoadFrameStream(&plain, storage));
    CString text;
    plain.GetWindowText(text);
    EXPECT_EQ(text, "Form3");
    ASSERT_TRUE(doc.SaveFrameStream(&plain, storage));
    const std::string barsBefore = DescribeBars(target.GetCommandBars());
    ASSERT_TRUE(doc.LoadFrameStream(&target, storage));
    EXPECT_EQ(DescribeBars(target.GetCommandBars()), barsBefore);
    storage->Release();
}

TEST(VPStorage, CreateStorageReplacesOrOpensAndFindElementIgnoresCase) {
    const std::string path = TestFolder("host") + "/vp.cfb";
    CTVDocument doc;
    ASSERT_TRUE(doc.DoSave(path.c_str(), TRUE));
    IStorage* root = doc.GetRootStorage();
    IStorage* first = CVPStorage::CreateStorage("Snap", root, CreateMode, 0);
    ASSERT_NE(first, nullptr);
    ASSERT_EQ(WriteStream(first, "data", "old"), S_OK);
    first->Release();
    EXPECT_EQ(CVPStorage::CreateStorage("Snap", root, WriteMode, 0), nullptr)
        << "exists, and no STGM_CREATE";
    IStorage* opened = CVPStorage::CreateStorage("Snap", root, WriteMode, 1);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(ReadStream(opened, "data"), "old");
    opened->Release();
    IStorage* replaced = CVPStorage::CreateStorage("Snap", root, CreateMode, 0);
    ASSERT_NE(replaced, nullptr);
    EXPECT_EQ(ReadStream(replaced, "data"), "<error 0x80030002>");
    replaced->Release();
    EXPECT_TRUE(CVPStorage::FindElement("SNAP", root, STGTY_STORAGE));
    EXPECT_FALSE(CVPStorage::FindElement("Snap", nullptr, STGTY_STORAGE));
    EXPECT_EQ(CVPStorage::CreateStorage("bad/name", root, CreateMode, 0), nullptr);
}

} // namespace
