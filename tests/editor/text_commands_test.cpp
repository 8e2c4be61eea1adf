// The text commands on real selections: line frames with their final selection, comment
// strings, and the selected-text transformations.
#include "tests/editor/editor_fixture.h"

#include "editor/detail/text_transforms.h"

namespace {

class TextCommands : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        Create(600, 300);
    }
    std::string Text() {
        CString text;
        edit.GetWindowText(text);
        return text.GetString();
    }
    void SelectLines(int firstLine, int firstOffset, int lastLine, int lastOffset) {
        edit.SetSel(edit.LineIndex(firstLine) + firstOffset, edit.LineIndex(lastLine) + lastOffset);
    }
};

TEST_F(TextCommands, IndentTouchesTheSelectedLinesAndSelectsThemWhole) {
    SetText("l1\r\nline2\r\nline3\r\nline4\r\nline5");
    SelectLines(1, 2, 3, 2);
    edit.OnEditMoveright();
    EXPECT_EQ(Text(), "l1\r\n\tline2\r\n\tline3\r\n\tline4\r\nline5");
    long s, e;
    edit.GetSel(s, e);
    EXPECT_EQ(s, edit.LineIndex(1));
    EXPECT_EQ(e, edit.LineIndex(4));
    EXPECT_EQ(edit.m_bModified, 1);

    SelectLines(1, 0, 4, 0);
    edit.OnEditMoveleft();
    EXPECT_EQ(Text(), "l1\r\nline2\r\nline3\r\nline4\r\nline5") << "line 5 is not reached";

    edit.SetSel(edit.GetTextLength(), edit.GetTextLength());
    edit.OnEditMoveright();
    EXPECT_EQ(Text(), "l1\r\nline2\r\nline3\r\nline4\r\n\tline5");
    edit.GetSel(s, e);
    EXPECT_EQ(e, edit.GetTextLength()) << "past the last line the selection reaches the end";
}

TEST_F(TextCommands, UnindentRemovesATabOrAllLeadingBlanks) {
    SetText("    a\r\n\t b\r\n   \r\nc");
    edit.SetSel(0, -1);
    edit.OnEditMoveleft();
    EXPECT_EQ(Text(), "a\r\n b\r\n\r\nc");
}

TEST_F(TextCommands, CommentAndUncommentWithTheLanguagesString) {
    edit.SelectLanguage(3);
    SetText("x = 1\r\n    ' y\r\nz");
    edit.SetSel(0, 0);
    edit.OnEditComment();
    EXPECT_EQ(Text(), "'x = 1\r\n    ' y\r\nz");
    edit.SetSel(0, -1);
    edit.OnEditUncomment();
    EXPECT_EQ(Text(), "x = 1\r\n     y\r\nz");

    edit.SelectLanguage(35); // plain text has no comment string
    edit.m_bModified = 0;
    edit.SetSel(0, -1);
    edit.OnEditComment();
    EXPECT_EQ(Text(), "x = 1\r\n     y\r\nz");
    EXPECT_EQ(edit.m_bModified, 0);
}

TEST_F(TextCommands, CaseCommandsKeepTheSelectionAndUndoInOneStep) {
    SetText("say hello WORLD");
    edit.SetSel(4, 15);
    edit.SendMessage(WM_COMMAND, 6012);
    EXPECT_EQ(Text(), "say Hello World");
    long s, e;
    edit.GetSel(s, e);
    EXPECT_EQ(s, 4);
    EXPECT_EQ(e, 15);
    edit.OnEditUcase();
    EXPECT_EQ(Text(), "say HELLO WORLD");
    edit.Undo();
    EXPECT_EQ(Text(), "say Hello World");
}

TEST_F(TextCommands, ShortcutsBecomeCommands) {
    SetText("abc");
    edit.SetSel(0, 3);
    talvor::platform::SetKeyDown(VK_CONTROL, true);
    MSG msg{&edit, WM_KEYDOWN, 'U', 0};
    edit.PreTranslateMessage(&msg);
    EXPECT_EQ(Text(), "ABC");
    talvor::platform::SetKeyDown(VK_SHIFT, true);
    msg.wParam = 'K';
    edit.PreTranslateMessage(&msg);
    EXPECT_EQ(Text(), "aBC") << "Ctrl+Shift+K flips the first letter";
    msg.wParam = 'M';
    edit.PreTranslateMessage(&msg);
    EXPECT_EQ(Text(), "aBC");
}

TEST_F(TextCommands, TrimmingTurnsLineEndsIntoTheControlsOwn) {
    SetText("a  \r\nb \t \r\nc  ");
    edit.SetSel(0, -1);
    edit.OnEditTrimtraillingspace();
    EXPECT_EQ(Text(), "a\r\nb \t\r\nc");
}

TEST(TextTransforms, AsTheCommandsDescribeThem) {
    using namespace talvor::editor;
    EXPECT_EQ(Capitalize("don't stop 2day"), "Don'T Stop 2Day");
    EXPECT_EQ(SentenceCase("Hello\r\nworld x"), "hello\r\nWorld x");
    EXPECT_EQ(InvertCase("aB1\xe9"), "Ab1\xe9");
    EXPECT_EQ(SpacesToTabs("      x", 4), "\t  x");
    EXPECT_EQ(TabsToSpaces("\tx", 3), "   x");
    EXPECT_EQ(LeadingSpacesToTabs("    a    b\r\n    c    d", 4), "\ta    b\r\n\tc    d");
    EXPECT_EQ(TrimTrailing("x \t ", ' '), "x \t");
    EXPECT_EQ(TrimTrailing("ab\t\t", '\t'), "ab");
}

} // namespace

namespace {

// Found by the fuzz target: in a window narrower than a tab each inserted tab added a display
// line, and the walk over the lines never ended.
TEST_F(TextCommands, IndentInATinyWrappingWindowEnds) {
    edit.SetWrapMode(2);
    edit.MoveWindow(0, 0, 30, 40);
    SetText("abcdefgh");
    edit.SetSel(0, 0);
    edit.OnEditMoveright();
    EXPECT_EQ(Text().substr(0, 1), "\t");
    EXPECT_NE(Text().find("abcdefgh"), std::string::npos);
}

} // namespace

namespace {

TEST_F(TextCommands, EnableStatesFollowSelectionReadOnlyClipboardAndUndo) {
    SetText("abc");
    edit.SetSel(1, 1);
    auto enabled = [&](UINT id) {
        CCmdUI ui(id);
        EXPECT_TRUE(edit.UpdateCommandUI(&ui)) << id;
        return ui.m_bEnabled;
    };
    EXPECT_TRUE(enabled(6000));
    EXPECT_FALSE(enabled(57635)) << "cut needs a selection";
    EXPECT_FALSE(enabled(57634));
    EXPECT_FALSE(enabled(57643)) << "nothing to undo after new text";
    edit.SetSel(0, 2);
    EXPECT_TRUE(enabled(6007));
    EXPECT_TRUE(enabled(6012));
    talvor::platform::EmptyClipboard();
    EXPECT_FALSE(enabled(57637));
    edit.OnEditcopy();
    EXPECT_TRUE(enabled(57637));
    EXPECT_EQ(edit.m_bModified, 0) << "copy changes nothing";
    edit.OnClear();
    EXPECT_TRUE(enabled(57643));
    EXPECT_FALSE(enabled(57644));
    edit.SetReadOnly(TRUE);
    edit.SetSel(0, 1);
    EXPECT_FALSE(enabled(6000));
    EXPECT_FALSE(enabled(6007));
    EXPECT_FALSE(enabled(57643));
    EXPECT_TRUE(enabled(6012)) << "capitalize only needs a selection";
    CCmdUI other(1234);
    EXPECT_FALSE(edit.UpdateCommandUI(&other));
}

} // namespace
