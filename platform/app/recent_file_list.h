// CRecentFileList: a numbered list of texts kept in one section of the application profile,
// one key per entry made from a format and a number ("File%d" from 1, say). Entry 0 is the
// newest; Add puts a text first, moving it up when it is there already.
#pragma once

#include "platform/strings/cstring.h"

#include <vector>

class CRecentFileList {
public:
    // Entries nStart to nStart + nSize - 1 of the section, keys made by entryFormat (one %d).
    // Display names are cut to maxDisplayLength characters. A size below 1 counts as 1.
    CRecentFileList(UINT nStart, const char* lpszSection, const char* lpszEntryFormat, int nSize,
                    int nMaxDispLen = 30);
    virtual ~CRecentFileList() = default;

    int GetSize() const { return static_cast<int>(m_arrNames.size()); }
    // Entry index, empty for an index outside the list.
    CString operator[](int index) const;
    // Puts the text first; an empty text is not added.
    virtual void Add(const char* lpszPathName);
    virtual void Remove(int index);
    // Reads every entry of the list (a missing key reads as empty).
    virtual void ReadList();
    // Writes the entries; empty ones are removed from the profile.
    virtual void WriteList();
    // The entry as a menu shows it: the file name, or the path cut in the middle with "..."
    // when longer than the display length. FALSE for an empty entry.
    BOOL GetDisplayName(CString& strName, int nIndex) const;

private:
    CString EntryKey(int index) const;

    std::vector<CString> m_arrNames;
    CString m_strSectionName;
    CString m_strEntryFormat;
    UINT m_nStart;
    int m_nMaxDisplayLength;
};
