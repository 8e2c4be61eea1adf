// Loading and inserting files, the filter list of the insert dialog, and the font dialog, with
// the dialogs answered as a user would.
#include "tests/editor/editor_fixture.h"
#include "tests/support/test_environment.h"

#include "platform/app/profile.h"
#include "platform/window/file_dialog.h"
#include "platform/window/font_dialog.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

using talvor::platform::FileDialogAnswer;
using talvor::platform::FontDialogAnswer;

constexpr const char* InsertFileSection = "MainWnd\\DockingPaneLayouts\\PaneMacro\\InsertFile";

class FileCommands : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        talvor::platform::ClearFileDialogAnswers();
        talvor::platform::ClearFontDialogAnswers();
    }
    void TearDown() override {
        talvor::platform::ClearFileDialogAnswers();
        talvor::platform::ClearFontDialogAnswers();
        talvor::platform::SetFileDialogHandler(nullptr);
        talvor::platform::SetFontDialogHandler(nullptr);
        for (const std::string& path : m_files)
            std::remove(path.c_str());
        EditorTest::TearDown();
    }
    std::string WriteFile(const std::string& name, const std::string& bytes) {
        const std::string path = "/tmp/talvor-editor-" + std::to_string(::getpid()) + "-" + name;
        std::FILE* f = std::fopen(path.c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
        m_files.push_back(path);
        return path;
    }
    std::string Text() {
        CString text;
        edit.GetWindowText(text);
        return text.GetString();
    }
    void SetFileTypes(std::initializer_list<std::pair<int, const char*>> values) {
        for (const auto& [number, value] : values)
            AfxGetApp()->WriteProfileString(
                "FileTypes", ("FileTypes #" + std::to_string(number)).c_str(), value);
    }
    std::vector<std::string> m_files;
};

TEST_F(FileCommands, FilterListIsBuiltFromTheFileTypesOfTheProfile) {
    Create();
    EXPECT_EQ(edit.GetInsertFileFilter(), CString("*.*|*.*||")) << "an empty list";

    // Numbers with gaps are read all the same; a value without "|*." is a pattern that keeps
    // the name of the value before it; the first three characters are never part of the type.
    SetFileTypes({{1, "C:\\Scripts|*.vbs"},
                  {2, "1. *.bas"},
                  {4, "xx Web pages|*.htm;*.html"},
                  {255, "ab Last|*.txt"},
                  {256, "ab Beyond|*.no"}});
    EXPECT_EQ(edit.GetInsertFileFilter(), CString("Scripts(*.vbs)|*.vbs|"
                                                  "Scripts(*.bas)|*.bas|"
                                                  "Web pages(*.htm;*.html)|*.htm;*.html|"
                                                  "Last(*.txt)|*.txt|"
                                                  "*.*|*.*||"));
}

TEST_F(FileCommands, InsertAsksWithTheFilterAndKeepsTheChosenIndex) {
    Create();
    SetFileTypes({{1, "C:\\Scripts|*.vbs"}});
    AfxGetApp()->WriteProfileInt(InsertFileSection, "nFilterIndex", 2);
    DWORD flags = 0, indexShown = 0;
    std::string filter;
    talvor::platform::SetFileDialogHandler([&](CFileDialog& dialog) -> INT_PTR {
        flags = dialog.m_ofn.Flags;
        indexShown = dialog.m_ofn.nFilterIndex;
        filter = dialog.GetFilterText().GetString();
        EXPECT_TRUE(dialog.IsOpenFileDialog());
        EXPECT_EQ(dialog.m_ofn.lpstrDefExt, nullptr);
        EXPECT_TRUE(dialog.GetPathName().IsEmpty());
        dialog.m_ofn.nFilterIndex = 1; // the user picks another filter, then cancels
        return IDCANCEL;
    });
    SetText("keep");
    edit.m_bModified = 0;
    edit.SendMessage(WM_COMMAND, 6010);
    EXPECT_EQ(flags, OFN_HIDEREADONLY);
    EXPECT_EQ(indexShown, 2u);
    EXPECT_EQ(filter, "Scripts(*.vbs)|*.vbs|*.*|*.*||");
    EXPECT_EQ(AfxGetApp()->GetProfileInt(InsertFileSection, "nFilterIndex", -1), 1u)
        << "the index is written back on Cancel too";
    EXPECT_EQ(Text(), "keep");
    EXPECT_EQ(edit.m_bModified, 0) << "Cancel inserts nothing";
}

TEST_F(FileCommands, InsertedFileReplacesTheSelectionAndIsUndoable) {
    Create();
    SetText("Dim a\r\nDim b");
    edit.EmptyUndoBuffer();
    edit.SetSel(4, 5);
    const std::string path = WriteFile("insert.vbs", "x = 1\r\ny = 2");
    talvor::platform::QueueFileDialogAnswer(FileDialogAnswer{IDOK, path, 3});
    edit.OnEditInsertfile();
    EXPECT_EQ(Text(), "Dim x = 1\r\ny = 2\r\nDim b");
    EXPECT_EQ(edit.m_bModified, 1);
    EXPECT_EQ(CWnd::GetFocus(), &edit);
    EXPECT_EQ(AfxGetApp()->GetProfileInt(InsertFileSection, "nFilterIndex", -1), 3u);
    long start, end;
    edit.GetSel(start, end);
    EXPECT_EQ(start, 15) << "the caret stands behind the inserted text";
    EXPECT_EQ(end, 15);
    ASSERT_TRUE(edit.CanUndo());
    edit.OnEditundo();
    EXPECT_EQ(Text(), "Dim a\r\nDim b");
}

TEST_F(FileCommands, UnreadableInsertedFileInsertsNothingButCountsAsAChange) {
    Create();
    SetText("abc");
    edit.SetSel(1, 2);
    edit.m_bModified = 0;
    talvor::testing::ClearShownMessages();
    talvor::platform::QueueFileDialogAnswer(
        FileDialogAnswer{IDOK, "/nonexistent/talvor/file.vbs", -1});
    edit.OnEditInsertfile();
    EXPECT_EQ(Text(), "ac") << "the selection gives way to the empty text";
    EXPECT_EQ(edit.m_bModified, 1);
    EXPECT_EQ(talvor::testing::ShownMessages().size(), 1u) << "the file error is shown once";
    EXPECT_EQ(AfxGetApp()->GetProfileInt(InsertFileSection, "nFilterIndex", -1), 0u)
        << "the default index is stored";
}

TEST_F(FileCommands, LoadFileReplacesTheTextAndClearsTheModifiedState) {
    Create();
    SetText("old text");
    edit.SetModify(TRUE);
    std::string big;
    for (int i = 0; i < 5000; ++i)
        big += "Line " + std::to_string(i) + "\r\n";
    const std::string path = WriteFile("load.vbs", big);
    edit.LoadFile(path.c_str());
    EXPECT_EQ(Text(), big) << "streamed in through several blocks";
    EXPECT_FALSE(edit.GetModify());
    EXPECT_FALSE(edit.CanUndo()) << "loading is no undo step";

    // A file that cannot be opened empties the control silently.
    edit.SetModify(TRUE);
    talvor::testing::ClearShownMessages();
    edit.LoadFile("/nonexistent/talvor/file.vbs");
    EXPECT_EQ(Text(), "");
    EXPECT_FALSE(edit.GetModify());
    EXPECT_TRUE(talvor::testing::ShownMessages().empty());
}

TEST_F(FileCommands, FontChangeKeepsTextAndModifiedState) {
    Create();
    SetText("If a Then\r\n\tb = 1\r\nEnd If");
    edit.SetSel(3, 3);
    const int tabWidth = edit.m_nTabWidth;
    int lineHeights[2] = {};
    for (const BOOL modified : {TRUE, FALSE}) {
        SCOPED_TRACE(modified ? "modified" : "unmodified");
        edit.SetModify(modified);
        LOGFONT font = edit.GetMacroEditFont();
        font.lfHeight = modified ? -20 : -14;
        talvor::platform::QueueFontDialogAnswer(FontDialogAnswer{IDOK, font});
        edit.OnViewFont();
        EXPECT_EQ(Text(), "If a Then\r\n\tb = 1\r\nEnd If");
        EXPECT_EQ(edit.GetModify(), modified);
        EXPECT_EQ(edit.GetMacroEditFont().lfHeight, font.lfHeight);
        lineHeights[modified ? 0 : 1] = edit.m_nLineHeight;
        EXPECT_EQ(edit.m_nTabWidth, tabWidth) << "tab stops are not measured again";
        EXPECT_TRUE(edit.IsWindowVisible());
        EXPECT_FALSE(edit.IsUpdateLocked());
    }
    EXPECT_GT(lineHeights[0], lineHeights[1]) << "the line height follows the font";
}

TEST_F(FileCommands, FontDialogStartsFromTheFormatAtTheCaret) {
    Create();
    SetText("abc");
    edit.SetSel(2, 2);
    DWORD flags = 0;
    CString face;
    LONG height = 0;
    talvor::platform::SetFontDialogHandler([&](CFontDialog& dialog) -> INT_PTR {
        flags = dialog.m_cf.Flags;
        face = dialog.GetFaceName();
        height = dialog.m_lf.lfHeight;
        return IDCANCEL;
    });
    edit.OnViewFont();
    EXPECT_EQ(flags & 0x803u, 0x803u);
    EXPECT_EQ(face, CString(edit.GetMacroEditFont().lfFaceName));
    EXPECT_LT(height, 0) << "a character height from the format's size";
    long start, end;
    edit.GetSel(start, end);
    EXPECT_EQ(start, 2) << "the caret stays";
    EXPECT_EQ(end, 2);
    EXPECT_EQ(Text(), "abc") << "Cancel changes nothing";
    EXPECT_TRUE(edit.IsWindowVisible());
}

TEST_F(FileCommands, FontChangeOnAnEmptyEditorLeavesOneBlank) {
    Create();
    SetText("");
    edit.SetModify(FALSE);
    talvor::platform::QueueFontDialogAnswer(FontDialogAnswer{IDOK, edit.GetMacroEditFont()});
    edit.OnViewFont();
    EXPECT_EQ(Text(), " ");
    EXPECT_FALSE(edit.GetModify());

    // Nothing queued: the dialog is cancelled and the control keeps its text.
    SetText("x");
    edit.OnViewFont();
    EXPECT_EQ(Text(), "x");
}

} // namespace
