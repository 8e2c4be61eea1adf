// CFileFind: the files of a folder that match a wildcard ("*.ini", "/path/to/*"), in name
// order. Wildcards compare without regard to case, as on the system the interfaces come from.
#pragma once

#include "platform/strings/cstring.h"

#include <string>
#include <vector>

class CFileFind {
public:
    CFileFind() = default;
    virtual ~CFileFind() = default;

    // Starts a search; FALSE when nothing matches. A null or empty name means "*" in the
    // current folder. Call FindNextFile before reading the first match.
    BOOL FindFile(const char* name = nullptr, DWORD unused = 0);
    // Moves to the next match; returns FALSE when the match it moved to is the last one (the
    // framework's convention: the loop body still runs for it).
    BOOL FindNextFile();
    void Close();

    CString GetFileName() const;
    CString GetFilePath() const;
    // The name without its extension.
    CString GetFileTitle() const;
    CString GetRoot() const { return CString(m_folder); }
    ULONGLONG GetLength() const;
    BOOL IsDirectory() const;
    BOOL IsDots() const;

private:
    struct Entry {
        std::string name;
        bool directory = false;
        ULONGLONG length = 0;
    };
    std::string m_folder;
    std::vector<Entry> m_entries;
    std::size_t m_next = 0;
    const Entry* m_current = nullptr;
};
