// Loading a file into the control and saving the control's text.
#include "editor/syntax_edit.h"

#include "platform/files/file_system.h"

void CTalvorSyntaxEdit::LoadFile(CString strPath) {
    SetWindowText("");
    ResetParseCookie();
    SetMacroEditFont(m_lfFont);
    std::string text, error;
    // A file that cannot be read leaves the control empty, without a message.
    if (talvor::platform::ReadWholeFile(strPath.GetString(), text, error))
        PutText(text);
    SetModify(FALSE);
}

void CTalvorSyntaxEdit::SaveTheContext(const char* pszPath) {
    if (!pszPath || !*pszPath)
        return;
    std::string error;
    if (talvor::platform::WriteFileAtomically(pszPath, TakeText(), error))
        SetModify(FALSE);
}
