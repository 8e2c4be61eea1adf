// The recent file list read from and written to the application profile.
#include "platform/app/recent_file_list.h"

#include "platform/app/profile.h"

#include <algorithm>

CRecentFileList::CRecentFileList(UINT nStart, const char* lpszSection, const char* lpszEntryFormat,
                                 int nSize, int nMaxDispLen)
    : m_arrNames(static_cast<std::size_t>(std::max(1, nSize))), m_strSectionName(lpszSection),
      m_strEntryFormat(lpszEntryFormat), m_nStart(nStart),
      m_nMaxDisplayLength(std::max(4, nMaxDispLen)) {}

CString CRecentFileList::EntryKey(int index) const {
    CString key;
    key.Format(m_strEntryFormat.GetString(), static_cast<int>(m_nStart) + index);
    return key;
}

CString CRecentFileList::operator[](int index) const {
    if (index < 0 || index >= GetSize())
        return CString();
    return m_arrNames[static_cast<std::size_t>(index)];
}

void CRecentFileList::Add(const char* lpszPathName) {
    if (!lpszPathName || !*lpszPathName)
        return;
    const CString name(lpszPathName);
    auto found = std::find(m_arrNames.begin(), m_arrNames.end(), name);
    if (found == m_arrNames.end())
        found = m_arrNames.end() - 1; // the oldest entry drops out
    std::rotate(m_arrNames.begin(), found, found + 1);
    m_arrNames.front() = name;
}

void CRecentFileList::Remove(int index) {
    if (index < 0 || index >= GetSize())
        return;
    m_arrNames.erase(m_arrNames.begin() + index);
    m_arrNames.emplace_back();
}

void CRecentFileList::ReadList() {
    for (int i = 0; i < GetSize(); ++i)
        m_arrNames[static_cast<std::size_t>(i)] = AfxGetApp()->GetProfileString(
            m_strSectionName.GetString(), EntryKey(i).GetString(), "");
}

void CRecentFileList::WriteList() {
    for (int i = 0; i < GetSize(); ++i) {
        const CString& name = m_arrNames[static_cast<std::size_t>(i)];
        AfxGetApp()->WriteProfileString(m_strSectionName.GetString(), EntryKey(i).GetString(),
                                        name.IsEmpty() ? nullptr : name.GetString());
    }
}

BOOL CRecentFileList::GetDisplayName(CString& strName, int nIndex) const {
    const CString path = (*this)[nIndex];
    if (path.IsEmpty())
        return FALSE;
    const int slash = path.ReverseFind('/');
    strName = slash < 0 ? path : path.Mid(slash + 1);
    if (strName.GetLength() > m_nMaxDisplayLength) {
        // Keep the start and the end of the name, as a menu shows a long one.
        const int keep = m_nMaxDisplayLength - 3;
        strName = strName.Left(keep - keep / 2) + "..." + strName.Right(keep / 2);
    }
    return TRUE;
}
