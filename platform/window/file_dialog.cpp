// The file dialog and its headless default answers.
#include "platform/window/file_dialog.h"

#include "platform/app/message_box.h"

#include <deque>
#include <utility>

namespace {
talvor::platform::FileDialogHandler& Handler() {
    static talvor::platform::FileDialogHandler handler;
    return handler;
}
std::deque<talvor::platform::FileDialogAnswer>& Answers() {
    static std::deque<talvor::platform::FileDialogAnswer> answers;
    return answers;
}

INT_PTR AnswerFromQueue(CFileDialog& dialog) {
    if (Answers().empty())
        return IDCANCEL;
    const talvor::platform::FileDialogAnswer answer = Answers().front();
    Answers().pop_front();
    if (answer.filterIndex >= 0)
        dialog.m_ofn.nFilterIndex = static_cast<DWORD>(answer.filterIndex);
    if (answer.result != IDOK)
        return IDCANCEL;
    dialog.SetPathName(answer.path.c_str());
    return IDOK;
}
} // namespace

CFileDialog::CFileDialog(BOOL bOpenFileDialog, const char* lpszDefExt, const char* lpszFileName,
                         DWORD dwFlags, const char* lpszFilter, CWnd* pParentWnd)
    : m_bOpenFileDialog(bOpenFileDialog), m_strPath(lpszFileName), m_strDefExt(lpszDefExt),
      m_strFilterText(lpszFilter), m_pParentWnd(pParentWnd) {
    m_ofn.Flags = dwFlags;
    m_ofn.lpstrDefExt = lpszDefExt ? m_strDefExt.GetString() : nullptr;
    if (lpszFilter) {
        // The system takes the list with zero bytes where the framework's text has bars.
        m_filter = lpszFilter;
        for (char& c : m_filter)
            if (c == '|')
                c = '\0';
        m_filter.push_back('\0');
        m_ofn.lpstrFilter = m_filter.c_str();
    }
}

INT_PTR CFileDialog::DoModal() {
    const INT_PTR result = Handler() ? Handler()(*this) : AnswerFromQueue(*this);
    return result == IDOK ? IDOK : IDCANCEL;
}

CString CFileDialog::GetFileName() const {
    const int slash = m_strPath.ReverseFind('/');
    return slash < 0 ? m_strPath : m_strPath.Mid(slash + 1);
}

namespace talvor::platform {

FileDialogHandler SetFileDialogHandler(FileDialogHandler handler) {
    return std::exchange(Handler(), std::move(handler));
}

void QueueFileDialogAnswer(FileDialogAnswer answer) {
    Answers().push_back(std::move(answer));
}

void ClearFileDialogAnswers() {
    Answers().clear();
}

} // namespace talvor::platform
