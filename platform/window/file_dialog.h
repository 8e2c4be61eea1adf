// CFileDialog: the open and save file dialog. There is no screen, so the dialog is answered by a
// handler that the host installs; the default handler gives the answers queued for it, oldest
// first, and Cancel when none is left, so a library without a user never blocks.
#pragma once

#include "platform/app/message_box.h"
#include "platform/window/wnd.h"

#include <functional>
#include <string>

constexpr DWORD OFN_READONLY = 0x00000001;
constexpr DWORD OFN_OVERWRITEPROMPT = 0x00000002;
constexpr DWORD OFN_HIDEREADONLY = 0x00000004;
constexpr DWORD OFN_NOCHANGEDIR = 0x00000008;
constexpr DWORD OFN_ALLOWMULTISELECT = 0x00000200;
constexpr DWORD OFN_PATHMUSTEXIST = 0x00000800;
constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;

// The part of the dialog's description a handler reads and answers in.
struct OPENFILENAME {
    DWORD Flags = 0;
    // Pairs of display name and pattern, each ended by a zero byte, the list by a second one;
    // null without a filter. Points into the dialog.
    const char* lpstrFilter = nullptr;
    // 1-based index of the filter shown; 0 stands for no filter of the list.
    DWORD nFilterIndex = 0;
    const char* lpstrDefExt = nullptr;
};

class CFileDialog {
public:
    // filter: pairs of display name and pattern, each ended by "|", the list by "||", as the
    // framework takes them.
    explicit CFileDialog(BOOL bOpenFileDialog, const char* lpszDefExt = nullptr,
                         const char* lpszFileName = nullptr,
                         DWORD dwFlags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT,
                         const char* lpszFilter = nullptr, CWnd* pParentWnd = nullptr);
    CFileDialog(const CFileDialog&) = delete;
    CFileDialog& operator=(const CFileDialog&) = delete;

    // IDOK (1) when a file was chosen, IDCANCEL (2) otherwise.
    INT_PTR DoModal();
    // The chosen path; the file name given at construction until a choice is made.
    CString GetPathName() const { return m_strPath; }
    void SetPathName(const char* path) { m_strPath = path ? path : ""; }
    CString GetFileName() const;
    BOOL IsOpenFileDialog() const { return m_bOpenFileDialog; }
    // The filter as it was given, with its bars.
    const CString& GetFilterText() const { return m_strFilterText; }
    CWnd* GetParentWnd() const { return m_pParentWnd; }

    OPENFILENAME m_ofn;

private:
    BOOL m_bOpenFileDialog;
    CString m_strPath;
    CString m_strDefExt;
    CString m_strFilterText;
    std::string m_filter; // the filter with zero bytes for bars
    CWnd* m_pParentWnd;
};

namespace talvor::platform {

// Answers a file dialog in place of a user: fills in the path (SetPathName) and, when it likes,
// m_ofn.nFilterIndex, and gives IDOK; or gives IDCANCEL.
using FileDialogHandler = std::function<INT_PTR(CFileDialog& dialog)>;
// Installs the handler for all later dialogs and returns the one it replaces; an empty handler
// restores the default.
FileDialogHandler SetFileDialogHandler(FileDialogHandler handler);

// One answer of the default handler: OK with a path (and a filter index, unless it is -1), or
// Cancel (a filter index may still be chosen before cancelling).
struct FileDialogAnswer {
    INT_PTR result = IDCANCEL;
    std::string path;
    int filterIndex = -1;
};
void QueueFileDialogAnswer(FileDialogAnswer answer);
// Forgets the answers not yet given.
void ClearFileDialogAnswers();

} // namespace talvor::platform
