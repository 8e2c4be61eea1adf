// Loading a file into the control and saving the control's text.
#include "editor/syntax_edit.h"

#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"
#include "platform/files/file.h"
#include "platform/files/file_system.h"

#include <cstring>

namespace {
// Stream callback whose cookie is the open file; a read error ends the stream.
DWORD ReadFromFile(DWORD_PTR cookie, BYTE* buffer, LONG size, LONG* read) {
    *read = 0;
    try {
        *read = static_cast<LONG>(
            reinterpret_cast<CFile*>(cookie)->Read(buffer, static_cast<UINT>(size)));
    } catch (CFileException* e) {
        e->Delete();
        return 1;
    }
    return 0;
}
} // namespace

void CTalvorSyntaxEdit::LoadFile(CString strPath) {
    SetWindowText("");
    ResetParseCookie();
    SetMacroEditFont(m_lfFont);
    // Other programs may go on reading and writing the file meanwhile. A file that cannot be
    // opened or read leaves the control as far as it got, without a message.
    CFile file;
    if (file.Open(strPath.GetString(), CFile::modeRead | CFile::shareDenyNone)) {
        EDITSTREAM es;
        es.dwCookie = reinterpret_cast<DWORD_PTR>(&file);
        es.pfnCallback = ReadFromFile;
        StreamIn(SF_TEXT, es); // EM_STREAMIN, also before the window exists
        file.Abort();
    }
    SetModify(FALSE);
}

void CTalvorSyntaxEdit::SaveTheContext(const char* pszPath) {
    if (!pszPath || !*pszPath)
        return;
    std::string error;
    if (talvor::platform::WriteFileAtomically(pszPath, TakeText(), error))
        SetModify(FALSE);
}

CString CTalvorSyntaxEdit::GetFileContext(CString strPath) {
    std::string bytes, error;
    if (!talvor::platform::ReadWholeFile(strPath.GetString(), bytes, error)) {
        AfxMessageBox(
            ("Cannot open the file " + std::string(strPath.GetString()) + ": " + error).c_str(),
            MB_OK | MB_ICONERROR);
        return CString();
    }
    if (bytes.empty())
        return CString();
    if (static_cast<unsigned char>(bytes[0]) == 0xFF) {
        // 16-bit little-endian text behind a two-byte mark; an odd last byte is lost.
        std::u16string wide((bytes.size() - std::min<std::size_t>(bytes.size(), 2)) / 2, u'\0');
        for (std::size_t i = 0; i < wide.size(); ++i)
            wide[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 + 2 * i]) |
                                            static_cast<unsigned char>(bytes[3 + 2 * i]) << 8);
        const std::size_t end = wide.find(u'\0');
        if (end != std::u16string::npos)
            wide.resize(end);
        return CString(std::string_view(talvor::platform::FromWide(wide)));
    }
    // Read as a C string: text behind a zero byte is lost.
    return CString(bytes.c_str());
}

int CTalvorSyntaxEdit::IsFileExist(CString& strPath) {
    if (strPath.IsEmpty())
        return 0;
    std::string bytes, error;
    return talvor::platform::ReadWholeFile(strPath.GetString(), bytes, error) ? 1 : 0;
}
