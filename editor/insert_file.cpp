// Inserting a file at the caret: the file types of the profile become the open dialog's filter
// list, and the filter the user last chose is kept for the next time.
#include "editor/syntax_edit.h"

#include "platform/app/message_box.h"
#include "platform/app/profile.h"
#include "platform/app/recent_file_list.h"
#include "platform/window/file_dialog.h"

namespace {
constexpr const char* InsertFileSection = "MainWnd\\DockingPaneLayouts\\PaneMacro\\InsertFile";
constexpr const char* FilterIndexKey = "nFilterIndex";
constexpr const char* TypeSeparator = "|*.";
} // namespace

CString CTalvorSyntaxEdit::GetInsertFileFilter() {
    CRecentFileList types(1, "FileTypes", "FileTypes #%d", 255, 30);
    types.ReadList();
    CString filter;
    CString name;
    for (int i = 0; i < types.GetSize(); ++i) {
        const CString value = types[i];
        if (value.IsEmpty())
            continue;
        // The first three characters are the entry's own prefix and never part of the type.
        const CString rest = value.Mid(3);
        CString pattern = rest;
        const int separator = rest.Find(TypeSeparator);
        if (separator >= 0) {
            name = rest.Left(separator);
            pattern = rest.Mid(separator + 1);
        }
        // Without a separator the value is a pattern only and keeps the name before it.
        filter += name + "(" + pattern + ")|" + pattern + "|";
    }
    filter += "*.*|*.*||";
    return filter;
}

void CTalvorSyntaxEdit::OnEditInsertfile() {
    const CString filter = GetInsertFileFilter();
    CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY, filter.GetString(), this);
    dialog.m_ofn.nFilterIndex = AfxGetApp()->GetProfileInt(InsertFileSection, FilterIndexKey, 0);
    const INT_PTR answer = dialog.DoModal();
    AfxGetApp()->WriteProfileInt(InsertFileSection, FilterIndexKey,
                                 static_cast<int>(dialog.m_ofn.nFilterIndex));
    if (answer != IDOK)
        return;
    const CString path = dialog.GetPathName();
    if (path.IsEmpty())
        return;
    // A file that cannot be read has shown its message and inserts nothing, yet the command
    // still counts as a change.
    const CString text = GetFileContext(path);
    ReplaceSel(text.GetString(), TRUE);
    SetFocus();
    m_bModified = 1;
}
