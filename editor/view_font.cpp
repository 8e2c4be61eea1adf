// Choosing the editor's font: the font dialog starts from the format at the caret or of the
// selection, and a new font keeps the text and the modified state. Tab stops keep their
// distance, so they are not measured again.
#include "editor/syntax_edit.h"

#include "platform/app/message_box.h"
#include "platform/window/font_dialog.h"
#include "resources/resource_guard.h"

void CTalvorSyntaxEdit::OnViewFont() {
    const BOOL modified = GetModify();
    ShowWindow(SW_HIDE);
    std::string text = TakeText();

    CHARFORMAT2 format;
    long start = 0, end = 0;
    GetSel(start, end);
    if (text.empty()) {
        // An empty control has no character to take a format from: the text comes back as a
        // single blank.
        text = " ";
        SetSel(0, 0);
        GetSelectionCharFormat(format);
    } else if (start == end) {
        if (start > 0)
            SetSel(start - 1, start);
        else
            SetSel(0, 1);
        GetSelectionCharFormat(format);
        SetSel(start, end);
    } else {
        GetSelectionCharFormat(format);
    }
    ShowWindow(SW_SHOW);

    CFontDialog dialog(format, CF_SCREENFONTS | CF_PRINTERFONTS | CF_NOVECTORFONTS, nullptr, this);
    INT_PTR answer = IDCANCEL;
    {
        talvor::resources::ResourceGuard guard;
        answer = dialog.DoModal();
    }
    if (answer != IDOK)
        return;
    LockWindowUpdate();
    SetWindowText("");
    LOGFONT font;
    dialog.GetCurrentFont(&font);
    SetMacroEditFont(font);
    PutText(text);
    SetModify(modified);
    UnlockWindowUpdate();
}
