// CFile over POSIX file descriptors, CMemFile over a byte string.
#include "platform/files/file.h"

#include "platform/files/file_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
[[noreturn]] void ThrowErrno(const CString& path) {
    int error = errno;
    AfxThrowFileException(CFileException::CauseFromErrno(error), error, path.GetString());
}
} // namespace

CFile::CFile(const char* path, UINT openFlags) {
    CFileException error;
    if (!Open(path, openFlags, &error))
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName.GetString());
}

CFile::~CFile() {
    if (m_fd >= 0)
        ::close(m_fd);
}

BOOL CFile::Open(const char* path, UINT openFlags, CFileException* error) {
    Abort();
    if (path == nullptr || *path == '\0') {
        if (error != nullptr)
            *error = CFileException(CFileException::badPath, -1, path);
        return FALSE;
    }
    int flags = O_CLOEXEC;
    switch (openFlags & 0x3) {
    case modeWrite:
        flags |= O_WRONLY;
        break;
    case modeReadWrite:
        flags |= O_RDWR;
        break;
    default:
        flags |= O_RDONLY;
        break;
    }
    if (openFlags & modeCreate) {
        flags |= O_CREAT;
        if (!(openFlags & modeNoTruncate))
            flags |= O_TRUNC;
    }
    int fd = ::open(path, flags, 0666);
    if (fd < 0) {
        int osError = errno;
        if (error != nullptr)
            *error = CFileException(CFileException::CauseFromErrno(osError), osError, path);
        return FALSE;
    }
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
        ::close(fd);
        if (error != nullptr)
            *error = CFileException(CFileException::accessDenied, EISDIR, path);
        return FALSE;
    }
    m_fd = fd;
    m_strFilePath = path;
    return TRUE;
}

UINT CFile::Read(void* buffer, UINT count) {
    if (m_fd < 0)
        AfxThrowFileException(CFileException::invalidFile, -1, m_strFilePath.GetString());
    UINT total = 0;
    while (total < count) {
        ssize_t n = ::read(m_fd, static_cast<char*>(buffer) + total, count - total);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            ThrowErrno(m_strFilePath);
        }
        if (n == 0)
            break;
        total += static_cast<UINT>(n);
    }
    return total;
}

void CFile::Write(const void* buffer, UINT count) {
    if (m_fd < 0)
        AfxThrowFileException(CFileException::invalidFile, -1, m_strFilePath.GetString());
    if (!talvor::platform::WriteAll(m_fd, buffer, count))
        ThrowErrno(m_strFilePath);
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
    int whence = from == current ? SEEK_CUR : (from == end ? SEEK_END : SEEK_SET);
    off_t result = m_fd < 0 ? -1 : ::lseek(m_fd, offset, whence);
    if (result < 0)
        AfxThrowFileException(CFileException::badSeek, errno, m_strFilePath.GetString());
    return static_cast<ULONGLONG>(result);
}

ULONGLONG CFile::GetPosition() const {
    off_t result = m_fd < 0 ? -1 : ::lseek(m_fd, 0, SEEK_CUR);
    if (result < 0)
        AfxThrowFileException(CFileException::badSeek, errno, m_strFilePath.GetString());
    return static_cast<ULONGLONG>(result);
}

ULONGLONG CFile::GetLength() const {
    struct stat st {};
    if (m_fd < 0 || ::fstat(m_fd, &st) != 0)
        AfxThrowFileException(CFileException::invalidFile, errno, m_strFilePath.GetString());
    return static_cast<ULONGLONG>(st.st_size);
}

void CFile::SetLength(ULONGLONG length) {
    if (m_fd < 0 || ::ftruncate(m_fd, static_cast<off_t>(length)) != 0)
        ThrowErrno(m_strFilePath);
}

void CFile::Flush() {
    if (m_fd >= 0 && ::fsync(m_fd) != 0 && errno != EINVAL)
        ThrowErrno(m_strFilePath);
}

void CFile::Close() {
    if (m_fd < 0)
        return;
    int fd = m_fd;
    m_fd = -1;
    if (::close(fd) != 0)
        ThrowErrno(m_strFilePath);
}

void CFile::Abort() {
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

CString CFile::GetFileName() const {
    int slash = m_strFilePath.ReverseFind('/');
    return slash < 0 ? m_strFilePath : m_strFilePath.Mid(slash + 1);
}

void CFile::Remove(const char* path) {
    if (path == nullptr || ::unlink(path) != 0)
        ThrowErrno(path);
}

void CFile::Rename(const char* oldPath, const char* newPath) {
    if (oldPath == nullptr || newPath == nullptr || ::rename(oldPath, newPath) != 0)
        ThrowErrno(oldPath);
}

void CMemFile::Attach(const void* data, UINT size) {
    m_data.assign(static_cast<const char*>(data), size);
    m_position = 0;
}

BOOL CMemFile::Open(const char*, UINT, CFileException*) {
    return TRUE;
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (m_position >= m_data.size())
        return 0;
    std::size_t n = std::min<std::size_t>(count, m_data.size() - m_position);
    std::memcpy(buffer, m_data.data() + m_position, n);
    m_position += n;
    return static_cast<UINT>(n);
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (m_position > m_data.size())
        m_data.resize(m_position);
    std::size_t overlap = std::min<std::size_t>(count, m_data.size() - m_position);
    std::memcpy(m_data.data() + m_position, buffer, overlap);
    m_data.append(static_cast<const char*>(buffer) + overlap, count - overlap);
    m_position += count;
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from) {
    LONGLONG base = from == current ? static_cast<LONGLONG>(m_position)
                                    : (from == end ? static_cast<LONGLONG>(m_data.size()) : 0);
    if (base + offset < 0)
        AfxThrowFileException(CFileException::badSeek);
    m_position = static_cast<std::size_t>(base + offset);
    return m_position;
}

void CMemFile::SetLength(ULONGLONG length) {
    m_data.resize(static_cast<std::size_t>(length));
    if (m_position > m_data.size())
        m_position = m_data.size();
}
