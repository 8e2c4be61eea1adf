// The snapshot undo history on its temporary compound file: what Add stores, what LoadFrame
// brings back, moves that load nothing, operation names, and failures that change nothing.
#include "undo/undo_doc.h"

#include "../host/design_description.h"
#include "../platform/storage_test_support.h"
#include "host/base/designer_frame.h"
#include "platform/files/file_system.h"
#include "resources/resource_guard.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {
using namespace talvor::testing;
using namespace talvor::platform::storage;

// A design window with its form, put into a state numbered by variant.
struct Design {
    CTVMDIFrameWnd frame;
    CTVContainerDoc form;
    Design() { frame.SetContainer(&form); }
    void Become(int variant) {
        std::ostringstream text;
        text << "state " << variant;
        frame.SetWindowText(text.str().c_str());
        frame.MoveWindow(variant, 2 * variant, 300, 200);
        form.RemoveAll();
        for (int i = 0; i <= variant % 4; ++i) {
            const int c = form.AddControl("Label", "VX.Label");
            form.SetProperty(c, "Caption", text.str().c_str());
        }
    }
    std::string State() const {
        CString text;
        frame.GetWindowText(text);
        RECT r;
        frame.GetWindowRect(&r);
        std::ostringstream out;
        out << text.GetString() << '@' << r.left << ',' << r.top << '#' << form.GetControlCount();
        if (form.GetControlCount() > 0)
            out << ':' << form.GetProperty(0, "Caption").GetString();
        return out.str();
    }
};

// Points the temporary folder at a folder of the test while it lives.
class TempFolder {
public:
    explicit TempFolder(const std::string& folder) {
        const char* old = std::getenv("TMPDIR");
        m_had = old != nullptr;
        if (old)
            m_old = old;
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    ~TempFolder() {
        if (m_had)
            ::setenv("TMPDIR", m_old.c_str(), 1);
        else
            ::unsetenv("TMPDIR");
    }

private:
    bool m_had = false;
    std::string m_old;
};

std::string Snapshots(const std::string& path) {
    std::string names;
    for (const auto& [name, content] : ListWithOlefile(path))
        if (content == "<storage>")
            names += name + " ";
    return names;
}

TEST(TalvorUndoDoc, LivesInATemporaryCompoundFileThatDestructionDeletes) {
    const std::string folder = TestFolder("undo_temp");
    TempFolder temp(folder);
    std::string path;
    {
        CTalvorUndoDoc doc;
        path = doc.GetPathName().GetString();
        EXPECT_EQ(path.rfind(folder + "/~", 0), 0u) << path;
        EXPECT_EQ(StgIsStorageFile(path.c_str()), S_OK);
        EXPECT_EQ(doc.GetCount(), 0u);
        EXPECT_EQ(doc.GetCurr(), 0xFFFFFFFFu);
        EXPECT_EQ(Snapshots(path), "");
    }
    EXPECT_FALSE(talvor::platform::FileExists(path));

    // Two documents at once have two files.
    auto a = std::make_unique<CTalvorUndoDoc>();
    std::unique_ptr<CObject> b(CTalvorUndoDoc::CreateObject());
    auto* second = dynamic_cast<CTalvorUndoDoc*>(b.get());
    ASSERT_NE(second, nullptr);
    EXPECT_NE(a->GetPathName(), second->GetPathName());
    EXPECT_TRUE(b->IsKindOf(&CTVDocument::classCTVDocument));
}

TEST(TalvorUndoDoc, NameTablesComeFromTheResourceStrings) {
    CTalvorUndoDoc doc;
    const std::string actions = talvor::resources::LoadTalvorString(8405);
    std::string joined;
    for (INT_PTR i = 0; i < doc.m_arrActionName.GetSize(); ++i)
        joined.append(i ? "\n" : "").append(doc.m_arrActionName[i].GetString());
    EXPECT_EQ(joined, actions);
    EXPECT_GT(doc.m_arrActionName.GetSize(), 1);
    ASSERT_EQ(doc.m_arrObjectName.GetSize(), 18);
    EXPECT_EQ(doc.m_arrObjectName[0], "");
    const UINT ids[18] = {0,    8234, 8237, 8238, 8239, 8124, 8111, 8153, 8233,
                          8235, 8236, 8240, 8245, 5418, 5426, 5424, 5425, 5427};
    for (int i = 1; i < 18; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(std::string(doc.m_arrObjectName[i].GetString()),
                  talvor::resources::LoadTalvorString(ids[i]));
        EXPECT_FALSE(doc.m_arrObjectName[i].IsEmpty());
    }
}

TEST(TalvorUndoDoc, SnapshotsAreAddedReplacedAndLoadedBack) {
    TempFolder temp(TestFolder("undo_add"));
    Design design;
    CTalvorUndoDoc doc;
    doc.SetOperationObject(&design.frame);
    const std::string path = doc.GetPathName().GetString();

    EXPECT_EQ(doc.Add(1, 0, FALSE), 0) << "nothing to replace yet";
    EXPECT_EQ(doc.LoadFrame(), 0);
    std::vector<std::string> states;
    for (int v = 0; v < 3; ++v) {
        design.Become(v);
        states.push_back(design.State());
        ASSERT_EQ(doc.Add(1, 0, TRUE), 1);
        EXPECT_EQ(doc.GetCurr(), static_cast<unsigned>(v));
    }
    EXPECT_EQ(Snapshots(path), "0 1 2 ");

    // Moves load nothing; LoadFrame does.
    design.Become(9);
    const std::string nine = design.State();
    ASSERT_EQ(doc.MoveTo(0), 1);
    EXPECT_EQ(design.State(), nine);
    ASSERT_EQ(doc.LoadFrame(), 1);
    EXPECT_EQ(design.State(), states[0]);
    EXPECT_EQ(doc.MovePrev(), 0);
    EXPECT_EQ(doc.GetCurr(), 0u);
    ASSERT_EQ(doc.MoveNext(), 1);
    ASSERT_EQ(doc.LoadFrame(), 1);
    EXPECT_EQ(design.State(), states[1]);

    // A new snapshot after an undo goes to the end; nothing is cut off.
    ASSERT_EQ(doc.MoveTo(0), 1);
    design.Become(3);
    states.push_back(design.State());
    ASSERT_EQ(doc.Add(2, 1, TRUE), 1);
    EXPECT_EQ(doc.GetCount(), 4u);
    EXPECT_EQ(doc.GetCurr(), 3u);
    EXPECT_EQ(doc.MoveNext(), 0);
    EXPECT_EQ(doc.GetCurr(), 3u);
    EXPECT_EQ(Snapshots(path), "0 1 2 3 ");
    for (unsigned i = 0; i < 4; ++i) {
        ASSERT_EQ(doc.MoveTo(i), 1);
        ASSERT_EQ(doc.LoadFrame(), 1);
        EXPECT_EQ(design.State(), states[i]) << i;
    }

    // Replacing snapshot 1 in place: its storage and its code change, the count stays.
    ASSERT_EQ(doc.MoveTo(1), 1);
    design.Become(7);
    ASSERT_EQ(doc.Add(8, 9, FALSE), 1);
    EXPECT_EQ(doc.GetCount(), 4u);
    EXPECT_EQ(doc.GetCurr(), 1u);
    EXPECT_EQ(doc.m_arrOperation[1], 0x00090008u);
    EXPECT_EQ(ListWithOlefile(path).at("1/Container").size(),
              ListWithOlefile(path).at("3/Container").size())
        << "variants 7 and 3 have the same form";
    design.Become(0);
    ASSERT_EQ(doc.LoadFrame(), 1);
    design.Become(7);
    const std::string seven = design.State();
    design.Become(0);
    ASSERT_EQ(doc.LoadFrame(), 1);
    EXPECT_EQ(design.State(), seven);
    EXPECT_EQ(doc.MoveTo(4), 0);
    EXPECT_EQ(doc.MoveTo(0xFFFFFFFFu), 0);
    EXPECT_EQ(doc.GetCurr(), 1u);
}

TEST(TalvorUndoDoc, UndoAndRedoBringBackTheCommandBarsOfEachSnapshot) {
    TempFolder temp(TestFolder("undo_bars"));
    Design design;
    ASSERT_TRUE(design.frame.InitCommandBars());
    CVTCommandBars* bars = design.frame.GetCommandBars();
    CTalvorUndoDoc doc;
    doc.SetOperationObject(&design.frame);
    std::vector<std::string> saved;

    // 0: one tool bar with two buttons.
    CVTCommandBar* standard = bars->Add("Standard", vtBarTop, &CVTToolBar::classCVTToolBar);
    standard->SetBarID(100);
    standard->GetControls()->Add(vtControlButton, 57600, "New");
    standard->GetControls()->Add(vtControlButton, 57601, "Open");
    saved.push_back(DescribeBars(bars));
    ASSERT_EQ(doc.Add(1, 0, TRUE), 1);

    // 1: the bar renamed and moved, a button added behind a separator, a menu bar with a
    // popup in a popup.
    standard->SetTitle("Main");
    standard->SetPosition(vtBarLeft);
    standard->GetControls()->Add(vtControlButton, 57603, "Save")->SetBeginGroup(TRUE);
    CVTCommandBar* menu = bars->Add("Menu Bar", vtBarTop, &CVTMenuBar::classCVTMenuBar);
    bars->SetMenuBar(menu, 59392);
    auto* file = static_cast<CVTControlPopup*>(menu->GetControls()->Add(vtControlPopup, 0, "File"));
    auto* recent = static_cast<CVTControlPopup*>(
        file->GetCommandBar()->GetControls()->Add(vtControlPopup, 0, "Recent"));
    recent->GetCommandBar()->GetControls()->Add(vtControlButton, 57616, "1 first.frm");
    bars->GetCommandBarsOptions()->bLargeIcons = TRUE;
    saved.push_back(DescribeBars(bars));
    ASSERT_EQ(doc.Add(2, 1, TRUE), 1);

    // 2: the tool bar deleted.
    bars->Remove(standard);
    saved.push_back(DescribeBars(bars));
    ASSERT_EQ(doc.Add(3, 2, TRUE), 1);
    ASSERT_NE(saved[0], saved[1]);
    ASSERT_NE(saved[1], saved[2]);

    // Undo to each snapshot and redo again: the frame's own set holds the bars of that
    // snapshot, bound to it, with its menu bar.
    for (unsigned n : {1u, 0u, 1u, 2u, 0u}) {
        SCOPED_TRACE(n);
        ASSERT_EQ(doc.MoveTo(n), 1);
        ASSERT_EQ(doc.LoadFrame(), 1);
        EXPECT_EQ(design.frame.GetCommandBars(), bars);
        EXPECT_EQ(DescribeBars(bars), saved[n]);
    }
    ASSERT_EQ(doc.MoveTo(1), 1);
    ASSERT_EQ(doc.LoadFrame(), 1);
    ASSERT_NE(bars->GetMenuBar(), nullptr);
    EXPECT_EQ(bars->GetMenuBar()->GetTitle(), "Menu Bar");
    EXPECT_NE(bars->FindControl(57616), nullptr) << "the popup's popup came back with its bar";

    // A snapshot replaced in place carries the bars as they are now.
    bars->GetMenuBar()->SetTitle("Renamed menu");
    const std::string renamed = DescribeBars(bars);
    ASSERT_EQ(doc.Add(2, 1, FALSE), 1);
    ASSERT_EQ(doc.MoveTo(0), 1);
    ASSERT_EQ(doc.LoadFrame(), 1);
    ASSERT_EQ(doc.MoveTo(1), 1);
    ASSERT_EQ(doc.LoadFrame(), 1);
    EXPECT_EQ(DescribeBars(bars), renamed);
}

TEST(TalvorUndoDoc, NamesAreDecimalWithoutPadding) {
    TempFolder temp(TestFolder("undo_names"));
    Design design;
    CTalvorUndoDoc doc;
    doc.SetOperationObject(&design.frame);
    for (int v = 0; v < 12; ++v)
        ASSERT_EQ(doc.Add(1, 0, TRUE), 1);
    EXPECT_EQ(Snapshots(doc.GetPathName().GetString()), "0 1 10 11 2 3 4 5 6 7 8 9 ");
}

TEST(TalvorUndoDoc, OperationNamesJoinActionAndObject) {
    TempFolder temp(TestFolder("undo_op"));
    Design design;
    CTalvorUndoDoc doc;
    doc.SetOperationObject(&design.frame);
    const struct {
        unsigned object, action;
    } codes[] = {{1, 0}, {0, 1}, {3, 9}, {17, 2}, {500, 0}, {1, 400}};
    for (const auto& c : codes)
        ASSERT_EQ(doc.Add(c.object, c.action, TRUE), 1);
    auto expected = [&](unsigned object, unsigned action) {
        std::string text = action < 11 ? doc.m_arrActionName[action].GetString() : "";
        return text.append(" ").append(object < 18 ? doc.m_arrObjectName[object].GetString() : "");
    };
    EXPECT_EQ(std::string(doc.GetOperationName(0).GetString()), expected(1, 0));
    EXPECT_EQ(std::string(doc.GetOperationName(0).GetString()),
              std::string(doc.m_arrActionName[0].GetString()) + " " +
                  doc.m_arrObjectName[1].GetString());
    EXPECT_EQ(std::string(doc.GetOperationName(1).GetString()),
              std::string(doc.m_arrActionName[1].GetString()) + " ")
        << "object 0 leaves a trailing blank";
    EXPECT_EQ(std::string(doc.GetOperationName(2).GetString()), expected(3, 9));
    EXPECT_EQ(std::string(doc.GetOperationName(3).GetString()), expected(17, 2));
    EXPECT_EQ(std::string(doc.GetOperationName(4).GetString()), expected(500, 0));
    EXPECT_EQ(std::string(doc.GetOperationName(5).GetString()), expected(1, 400));
    EXPECT_EQ(doc.GetOperationName(6), "");
}

TEST(TalvorUndoDoc, FailuresChangeNothing) {
    TempFolder temp(TestFolder("undo_fail"));
    Design design;
    CTalvorUndoDoc doc;
    EXPECT_EQ(doc.Add(1, 0, TRUE), 0) << "no frame";
    EXPECT_EQ(doc.GetCount(), 0u);
    CFrameWnd plain; // a frame without a form
    doc.SetOperationObject(&plain);
    EXPECT_EQ(doc.Add(1, 0, TRUE), 0);
    EXPECT_EQ(doc.GetCount(), 0u);

    doc.SetOperationObject(&design.frame);
    design.Become(1);
    ASSERT_EQ(doc.Add(1, 0, TRUE), 1);
    const std::string path = doc.GetPathName().GetString();
    // A commit that fails (the disk fills up) leaves list, position and file as they were.
    for (int failAt = 1; failAt <= 3; ++failAt) {
        design.Become(2);
        talvor::platform::FailNthWrite(failAt);
        EXPECT_EQ(doc.Add(1, 0, TRUE), 0) << failAt;
        talvor::platform::FailNthWrite(0);
        EXPECT_EQ(doc.GetCount(), 1u);
        EXPECT_EQ(doc.GetCurr(), 0u);
        EXPECT_EQ(Snapshots(path), "0 ");
        talvor::platform::FailNthWrite(failAt);
        EXPECT_EQ(doc.Add(1, 0, FALSE), 0) << failAt;
        talvor::platform::FailNthWrite(0);
        ASSERT_EQ(doc.LoadFrame(), 1);
        design.Become(1);
        const std::string one = design.State();
        design.Become(5);
        ASSERT_EQ(doc.LoadFrame(), 1);
        EXPECT_EQ(design.State(), one);
    }
    design.Become(2);
    ASSERT_EQ(doc.Add(1, 0, TRUE), 1) << "the document works on after a failed commit";
    EXPECT_EQ(Snapshots(path), "0 1 ");

    // A snapshot whose form stream is damaged loads the frame but reports failure.
    IStorage* root = doc.GetRootStorage();
    IStorage* one = nullptr;
    ASSERT_EQ(root->OpenStorage(W("1").c_str(), nullptr, STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                nullptr, 0, &one),
              S_OK);
    ASSERT_EQ(WriteStream(one, "Container", "\xFF\xFF", STGM_CREATE), S_OK);
    one->Release();
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    design.Become(3);
    EXPECT_EQ(doc.LoadFrame(), 0);
    EXPECT_EQ(design.frame.GetWindowTextLength(), 7) << "the frame was loaded: \"state 2\"";
}

TEST(TalvorUndoDoc, WithoutATemporaryFolderEveryAddFails) {
    TempFolder temp("/nonexistent/talvor");
    Design design;
    CTalvorUndoDoc doc;
    doc.SetOperationObject(&design.frame);
    EXPECT_TRUE(doc.GetPathName().IsEmpty());
    EXPECT_EQ(doc.Add(1, 0, TRUE), 0);
    EXPECT_EQ(doc.LoadFrame(), 0);
    EXPECT_EQ(doc.m_arrObjectName.GetSize(), 18) << "the names are there all the same";
}

} // namespace
