// Folder listing with case-insensitive wildcards.
#include "platform/files/file_find.h"

#include <algorithm>
#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

BOOL CFileFind::FindFile(const char* name, DWORD) {
    Close();
    std::string pattern = (name == nullptr || *name == '\0') ? "*" : name;
    if (pattern == "*.*")
        pattern = "*";
    std::size_t slash = pattern.find_last_of('/');
    std::string folder =
        slash == std::string::npos ? "." : (slash == 0 ? "/" : pattern.substr(0, slash));
    std::string wildcard = slash == std::string::npos ? pattern : pattern.substr(slash + 1);
    if (wildcard == "*.*")
        wildcard = "*";
    DIR* dir = ::opendir(folder.c_str());
    if (dir == nullptr)
        return FALSE;
    m_folder = folder;
    while (dirent* entry = ::readdir(dir)) {
        if (::fnmatch(wildcard.c_str(), entry->d_name, FNM_CASEFOLD) != 0)
            continue;
        Entry found;
        found.name = entry->d_name;
        struct stat st {};
        std::string path = folder + "/" + found.name;
        if (::stat(path.c_str(), &st) == 0) {
            found.directory = S_ISDIR(st.st_mode);
            found.length = static_cast<ULONGLONG>(st.st_size);
        }
        m_entries.push_back(std::move(found));
    }
    ::closedir(dir);
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return m_entries.empty() ? FALSE : TRUE;
}

BOOL CFileFind::FindNextFile() {
    if (m_next >= m_entries.size())
        return FALSE;
    m_current = &m_entries[m_next++];
    return m_next < m_entries.size() ? TRUE : FALSE;
}

void CFileFind::Close() {
    m_folder.clear();
    m_entries.clear();
    m_next = 0;
    m_current = nullptr;
}

CString CFileFind::GetFileName() const {
    return m_current ? CString(m_current->name) : CString();
}

CString CFileFind::GetFilePath() const {
    if (m_current == nullptr)
        return CString();
    return CString(m_folder == "/" ? "/" + m_current->name : m_folder + "/" + m_current->name);
}

CString CFileFind::GetFileTitle() const {
    CString name = GetFileName();
    int dot = name.ReverseFind('.');
    return dot <= 0 ? name : name.Left(dot);
}

ULONGLONG CFileFind::GetLength() const {
    return m_current ? m_current->length : 0;
}
BOOL CFileFind::IsDirectory() const {
    return m_current && m_current->directory ? TRUE : FALSE;
}
BOOL CFileFind::IsDots() const {
    return m_current && (m_current->name == "." || m_current->name == "..") ? TRUE : FALSE;
}
