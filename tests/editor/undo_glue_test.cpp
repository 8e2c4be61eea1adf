// The editor's context menu, the caption of the host's undo and redo lists, and the change
// notification reflected by the parent window.
#include "tests/editor/editor_fixture.h"

#include "host/bars/command_bar.h"
#include "host/bars/command_bars.h"
#include "host/bars/controls.h"
#include "platform/app/menu.h"

#include <string>
#include <vector>

namespace {

class ContextMenu : public EditorTest {
protected:
    void TearDown() override {
        talvor::host::SetPopupMenuHandler(nullptr);
        EditorTest::TearDown();
    }
    std::string Text() {
        CString text;
        edit.GetWindowText(text);
        return text.GetString();
    }
};

TEST_F(ContextMenu, WritableEditorOffersItsMenuAtTheCursor) {
    Create();
    SetText("say hello");
    edit.SetSel(4, 9);
    SetCursorPos(300, 220);
    int shown = 0;
    UINT flags = 0;
    POINT at{};
    std::vector<long> ids;
    talvor::host::SetPopupMenuHandler([&](const CVTCommandBar& popup, UINT f, POINT p) -> UINT {
        ++shown;
        flags = f;
        at = p;
        for (int i = 0; i < popup.GetControlCount(); ++i)
            ids.push_back(popup.GetControl(i)->GetID());
        return 6007; // upper case
    });
    edit.SendMessage(WM_RBUTTONDOWN, 0, MAKELPARAM(10, 10));
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(flags, TPM_RIGHTBUTTON);
    EXPECT_EQ(at.x, 300) << "at the cursor, not at the click's client position";
    EXPECT_EQ(at.y, 220);
    ASSERT_FALSE(ids.empty());
    EXPECT_EQ(ids.front(), 57643) << "the first popup of menu 5428 starts with Undo";
    EXPECT_EQ(Text(), "say hello") << "the choice arrives as a command after the menu closes";
    AfxPumpMessages();
    EXPECT_EQ(Text(), "say HELLO");

    // Read-only: no menu.
    edit.SetReadOnly(TRUE);
    edit.SendMessage(WM_RBUTTONDOWN, 0, MAKELPARAM(10, 10));
    AfxPumpMessages();
    EXPECT_EQ(shown, 1);
}

TEST_F(ContextMenu, DismissedMenuSendsNothing) {
    Create();
    SetText("abc");
    edit.SetSel(0, 3);
    edit.m_bModified = 0;
    edit.SendMessage(WM_RBUTTONDOWN, 0, 0); // default handler: the user dismisses the menu
    AfxPumpMessages();
    EXPECT_EQ(Text(), "abc");
    EXPECT_EQ(edit.m_bModified, 0);
}

// A bar as a host's undo drop-down has it: button, caption, list; the list's rows are steps.
struct UndoBar {
    explicit UndoBar(long id, int rows) {
        bar->GetControls()->Add(vtControlButton, id, "Undo");
        other = bar->GetControls()->Add(vtControlStatic, id + 100, "other caption");
        caption = bar->GetControls()->Add(vtControlStatic, id, "caption");
        list = static_cast<CVTControlListBox*>(bar->GetControls()->Add(vtControlListBox, id));
        for (int i = 0; i < rows; ++i)
            list->GetListCtrl()->AddString(("step " + std::to_string(i)).c_str());
    }
    ~UndoBar() { bar->InternalRelease(); }
    CVTCommandBar* bar = new CVTCommandBar;
    CVTControl* other;
    CVTControl* caption;
    CVTControlListBox* list;
};

TEST_F(ContextMenu, UndoListCaptionCountsTheSelectedRows) {
    Create();
    UndoBar undo(57643, 5);
    for (int i = 0; i < 3; ++i)
        undo.list->GetListCtrl()->SetSel(i, TRUE);
    edit.SetUndoMessage(undo.list);
    EXPECT_EQ(undo.caption->GetCaption(), CString("Undo 3 action(s)"));
    EXPECT_EQ(undo.other->GetCaption(), CString("other caption")) << "another identifier";
    EXPECT_TRUE(undo.bar->IsRedrawPending());

    UndoBar redo(57644, 2);
    redo.list->GetListCtrl()->SetSel(-1, TRUE);
    edit.SetUndoMessage(redo.list);
    EXPECT_EQ(redo.caption->GetCaption(), CString("Redo 2 action(s)"));

    // Without a caption of the list's identifier nothing changes; a list on no bar or none at
    // all is no harm either.
    UndoBar lone(57643, 1);
    lone.bar->GetControls()->Remove(lone.caption);
    edit.SetUndoMessage(lone.list);
    EXPECT_EQ(lone.other->GetCaption(), CString("other caption"));
    EXPECT_FALSE(lone.bar->IsRedrawPending());
    CVTControlListBox orphan;
    edit.SetUndoMessage(&orphan);
    edit.SetUndoMessage(nullptr);
}

// A parent that counts the notifications that reach it.
struct Parent : CWnd {
    int changes = 0;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        const LRESULT result = CWnd::WindowProc(message, wParam, lParam);
        return result;
    }
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE)
            ++changes;
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
};

TEST_F(ContextMenu, ChangeNotificationIsReflectedToTheEditor) {
    Parent parent;
    ASSERT_TRUE(parent.Create(nullptr, nullptr, WS_VISIBLE, RECT{0, 0, 500, 300}, nullptr, 0));
    ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE, RECT{0, 0, 400, 200}, &parent, 7));
    AfxPumpMessages();
    SetText("abc");
    edit.m_bModified = 0;
    edit.SetSel(0, 0);
    edit.SendMessage(WM_KEYDOWN, VK_DELETE);
    ASSERT_EQ(Text(), "bc");
    EXPECT_EQ(edit.m_bModified, 1) << "deleting is a change";
    EXPECT_EQ(parent.changes, 0) << "the editor handles the reflected notification";
    edit.m_bModified = 0;
    edit.OnEditundo();
    EXPECT_EQ(edit.m_bModified, 1) << "undoing is a change too";

    // A plain control leaves the notification to its parent.
    CRichEditCtrl plain;
    ASSERT_TRUE(plain.Create(WS_CHILD | WS_VISIBLE, RECT{0, 0, 100, 50}, &parent, 8));
    plain.ReplaceSel("x", TRUE);
    EXPECT_EQ(parent.changes, 1);
    plain.SetWindowText("whole new text");
    EXPECT_EQ(parent.changes, 1) << "setting the whole text is no edit";
    plain.DestroyWindow();
    edit.DestroyWindow();
}

} // namespace
