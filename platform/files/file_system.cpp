// Whole-file reads, atomic writes (temporary file, fsync, rename) and the write fault seam.
#include "platform/files/file_system.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvor::platform {
namespace {
std::atomic<int> g_writesUntilFailure{0};

std::string Describe(const char* what, const std::string& path) {
    return std::string(what) + " '" + path + "': " + std::strerror(errno);
}

std::string ParentOf(const std::string& path) {
    std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}
} // namespace

void FailNthWrite(int n) {
    g_writesUntilFailure.store(n < 0 ? 0 : n);
}

bool WriteAll(int fd, const void* data, std::size_t size) {
    int countdown = g_writesUntilFailure.load();
    if (countdown > 0) {
        g_writesUntilFailure.store(countdown - 1);
        if (countdown == 1) {
            errno = ENOSPC;
            return false;
        }
    }
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        ssize_t written = ::write(fd, p, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool WriteAllAt(int fd, const void* data, std::size_t size, std::uint64_t offset) {
    int countdown = g_writesUntilFailure.load();
    if (countdown > 0) {
        g_writesUntilFailure.store(countdown - 1);
        if (countdown == 1) {
            errno = ENOSPC;
            return false;
        }
    }
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        ssize_t written = ::pwrite(fd, p, size, static_cast<off_t>(offset));
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        p += written;
        offset += static_cast<std::uint64_t>(written);
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool ReadWholeFile(const std::string& path, std::string& contents, std::string& error) {
    contents.clear();
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = Describe("cannot open", path);
        return false;
    }
    char buffer[65536];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            error = Describe("cannot read", path);
            ::close(fd);
            return false;
        }
        if (n == 0)
            break;
        contents.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return true;
}

bool CreateDirectories(const std::string& path) {
    if (path.empty())
        return false;
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    std::string parent = ParentOf(path);
    if (parent != path && parent != "." && parent != "/" && !CreateDirectories(parent))
        return false;
    return ::mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

bool FileExists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

bool WriteFileAtomically(const std::string& path, std::string_view contents, std::string& error) {
    std::string folder = ParentOf(path);
    if (!CreateDirectories(folder)) {
        error = Describe("cannot create folder", folder);
        return false;
    }
    std::string temp = path + ".tmpXXXXXX";
    int fd = ::mkstemp(temp.data());
    if (fd < 0) {
        error = Describe("cannot create temporary file for", path);
        return false;
    }
    bool ok = WriteAll(fd, contents.data(), contents.size());
    if (!ok)
        error = Describe("cannot write", temp);
    if (ok && ::fsync(fd) != 0) {
        error = Describe("cannot flush", temp);
        ok = false;
    }
    // Keep the permissions of the file being replaced, else the usual ones.
    struct stat st {};
    ::fchmod(fd, ::stat(path.c_str(), &st) == 0 ? (st.st_mode & 07777) : 0644);
    if (::close(fd) != 0 && ok) {
        error = Describe("cannot close", temp);
        ok = false;
    }
    if (ok && ::rename(temp.c_str(), path.c_str()) != 0) {
        error = Describe("cannot rename temporary file over", path);
        ok = false;
    }
    if (!ok)
        ::unlink(temp.c_str());
    return ok;
}

std::vector<std::string> ListFolder(const std::string& folder, FolderEntries which) {
    std::vector<std::string> names;
    DIR* handle = ::opendir(folder.c_str());
    if (handle == nullptr)
        return names;
    while (dirent* entry = ::readdir(handle)) {
        if (entry->d_name[0] == '.')
            continue;
        struct stat st {};
        if (::stat((folder + "/" + entry->d_name).c_str(), &st) != 0)
            continue;
        bool wanted = which == FolderEntries::Folders ? S_ISDIR(st.st_mode) : S_ISREG(st.st_mode);
        if (wanted)
            names.push_back(entry->d_name);
    }
    ::closedir(handle);
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace talvor::platform
