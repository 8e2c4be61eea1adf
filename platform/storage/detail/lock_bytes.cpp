// Files and memory buffers under compound files.
#include "platform/storage/detail/lock_bytes.h"

#include "platform/files/file_system.h"
#include "platform/storage/storage_types.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvor::platform::storage::detail {
namespace {

class FileBytes : public LockBytes {
public:
    FileBytes(int fd, bool writable) : m_fd(fd), m_writable(writable) {
        struct stat st {};
        m_size = ::fstat(fd, &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
    }
    ~FileBytes() override { ::close(m_fd); }
    std::uint64_t Size() const override { return m_size; }
    bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
        if (offset > m_size || size > m_size - offset)
            return false;
        char* p = static_cast<char*>(out);
        while (size > 0) {
            ssize_t got = ::pread(m_fd, p, size, static_cast<off_t>(offset));
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                return false;
            p += got;
            offset += static_cast<std::uint64_t>(got);
            size -= static_cast<std::size_t>(got);
        }
        return true;
    }
    bool WriteAt(std::uint64_t offset, const void* data, std::size_t size) override {
        if (!platform::WriteAllAt(m_fd, data, size, offset))
            return false;
        if (offset + size > m_size)
            m_size = offset + size;
        return true;
    }
    bool Flush() override { return ::fdatasync(m_fd) == 0; }
    bool Truncate(std::uint64_t size) override {
        if (::ftruncate(m_fd, static_cast<off_t>(size)) != 0)
            return false;
        m_size = size;
        return true;
    }
    bool Writable() const override { return m_writable; }

private:
    int m_fd;
    bool m_writable;
    std::uint64_t m_size = 0;
};

class BufferBytes : public LockBytes {
public:
    BufferBytes(std::string bytes, bool writable)
        : m_bytes(std::move(bytes)), m_writable(writable) {}
    std::uint64_t Size() const override { return m_bytes.size(); }
    bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
        if (offset > m_bytes.size() || size > m_bytes.size() - offset)
            return false;
        std::memcpy(out, m_bytes.data() + offset, size);
        return true;
    }
    bool WriteAt(std::uint64_t offset, const void* data, std::size_t size) override {
        if (!m_writable) {
            errno = EACCES;
            return false;
        }
        if (offset + size > m_bytes.size())
            m_bytes.resize(offset + size);
        std::memcpy(m_bytes.data() + offset, data, size);
        return true;
    }
    bool Flush() override { return true; }
    bool Truncate(std::uint64_t size) override {
        m_bytes.resize(size);
        return true;
    }
    bool Writable() const override { return m_writable; }

private:
    std::string m_bytes;
    bool m_writable;
};

} // namespace

std::unique_ptr<LockBytes> OpenFileBytes(const std::string& path, bool write, bool create,
                                         bool failIfThere, HRESULT& hr, std::string& error) {
    int flags = O_CLOEXEC | (write ? O_RDWR : O_RDONLY);
    if (create)
        flags |= O_CREAT | (failIfThere ? O_EXCL : O_TRUNC);
    int fd = ::open(path.c_str(), flags, 0644);
    if (fd < 0) {
        int err = errno;
        error = "compound file: cannot open '" + path + "': " + std::strerror(err);
        hr = err == ENOENT    ? STG_E_FILENOTFOUND
             : err == EEXIST  ? STG_E_FILEALREADYEXISTS
             : err == EACCES  ? STG_E_ACCESSDENIED
             : err == ENOTDIR ? STG_E_PATHNOTFOUND
             : err == EMFILE  ? STG_E_TOOMANYOPENFILES
                              : STG_E_ACCESSDENIED;
        return nullptr;
    }
    hr = S_OK;
    return std::make_unique<FileBytes>(fd, write);
}

std::unique_ptr<LockBytes> MemoryBytes(std::string bytes, bool writable) {
    return std::make_unique<BufferBytes>(std::move(bytes), writable);
}

} // namespace talvor::platform::storage::detail
