// Files and memory buffers under compound files.
#include "platform/storage/detail/lock_bytes.h"

#include "platform/files/file_system.h"
#include "platform/storage/storage_types.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/falloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>
#include <vector>

namespace talvor::platform::storage::detail {
namespace {

// A commit changes a few dozen sectors scattered over the file. In a scratch file, small writes
// inside the file go to a shared mapping of it, where a store costs no system call; the kernel
// writes those pages back as it writes the others, and Flush waits for them too. Only pages
// whose every block this object has already written through pwrite are written so: their disk
// space is reserved, so a store there cannot meet a full disk (which a mapping could only report
// as a signal). Writes that grow the file, large ones, and any other go through pwrite. Other
// files are never mapped: another process that cut such a file short under an open writer would
// make its next store fault.
//
// A file that grows reserves its disk space ahead, an eighth of its size at a time (at least
// ReserveStep), past its end where its size does not show it: writes into reserved space
// skip the file system's per-page reservation of delayed allocation. Closing gives back what
// was reserved and not used. Where the file system cannot reserve, writes go on without.
class FileBytes : public LockBytes {
public:
    FileBytes(int fd, bool writable, bool mappedWrites) : m_fd(fd), m_writable(writable) {
        struct stat st {};
        m_size = ::fstat(fd, &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
        m_reserved = m_size;
        m_reserve = writable;
        const long page = ::sysconf(_SC_PAGESIZE);
        struct statfs fs {};
        if (mappedWrites && page > 0 && ::fstatfs(fd, &fs) == 0 && fs.f_bsize > 0 &&
            page % fs.f_bsize == 0) {
            m_pageSize = static_cast<std::uint64_t>(page);
            m_blockSize = static_cast<std::uint64_t>(fs.f_bsize);
        }
    }
    ~FileBytes() override {
        if (m_map)
            ::munmap(m_map, m_mapSize);
        // Truncating to the size it has frees the blocks reserved past the end.
        if (m_reserved > m_size)
            (void)::ftruncate(m_fd, static_cast<off_t>(m_size));
        ::close(m_fd);
    }
    std::uint64_t Size() const override { return m_size; }
    bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
        if (offset > m_size || size > m_size - offset)
            return false;
        if (size != 0 && offset + size <= m_mapSize) {
            std::memcpy(out, m_map + offset, size); // inside the file and the mapping
            return true;
        }
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
        if (size != 0 && size <= MappedWriteLimit && Mappable(offset, size)) {
            // A write of nothing passes the write fault seam without a system call, so a
            // mapped write fails where a written one would.
            if (!platform::WriteAllAt(m_fd, data, 0, offset))
                return false;
            std::memcpy(m_map + offset, data, size);
            return true;
        }
        if (offset + size > m_reserved)
            Reserve(offset + size);
        if (!platform::WriteAllAt(m_fd, data, size, offset))
            return false;
        if (offset + size > m_size)
            m_size = offset + size;
        MarkWritten(offset, size);
        return true;
    }
    bool Flush() override { return ::fdatasync(m_fd) == 0; }
    bool Truncate(std::uint64_t size) override {
        if (::ftruncate(m_fd, static_cast<off_t>(size)) != 0)
            return false;
        // Blocks reserved past the new end are gone (also when the size stays).
        if (size <= m_size)
            m_reserved = std::min(m_reserved, size);
        m_size = size;
        // A grown file has holes past the old end; a shrunk one lost its blocks there.
        if (m_blockSize != 0 && m_written.size() > (size + m_blockSize - 1) / m_blockSize)
            m_written.resize((size + m_blockSize - 1) / m_blockSize);
        return true;
    }
    bool Writable() const override { return m_writable; }

private:
    static constexpr std::size_t MappedWriteLimit = 64 * 1024;
    static constexpr std::uint64_t ReserveStep = 1u << 20;

    void Reserve(std::uint64_t end) {
        if (!m_reserve)
            return;
        const std::uint64_t step = std::max<std::uint64_t>(ReserveStep, m_size / 8);
        const std::uint64_t to = (end + step - 1) / step * step;
        if (::fallocate(m_fd, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(m_reserved),
                        static_cast<off_t>(to - m_reserved)) == 0)
            m_reserved = to;
        else
            m_reserve = false; // a full disk or no support: the writes tell which
    }

    void MarkWritten(std::uint64_t offset, std::size_t size) {
        if (m_blockSize == 0 || size == 0)
            return;
        const std::uint64_t first = offset / m_blockSize, last = (offset + size - 1) / m_blockSize;
        if (m_written.size() <= last)
            m_written.resize(last + 1, false);
        for (std::uint64_t b = first; b <= last; ++b)
            m_written[b] = true;
    }
    // Whether [offset, offset + size) lies inside the file, in pages whose blocks below the
    // end of the file have all been written, and the mapping covers it (mapping it if not).
    bool Mappable(std::uint64_t offset, std::size_t size) {
        if (m_blockSize == 0 || offset + size > m_size)
            return false;
        const std::uint64_t firstPage = offset / m_pageSize;
        const std::uint64_t lastPage = (offset + size - 1) / m_pageSize;
        const std::uint64_t endBlock =
            std::min<std::uint64_t>((lastPage + 1) * m_pageSize, m_size + m_blockSize - 1) /
            m_blockSize;
        if (endBlock > m_written.size())
            return false;
        for (std::uint64_t b = firstPage * m_pageSize / m_blockSize; b < endBlock; ++b)
            if (!m_written[b])
                return false;
        return Map(offset + size);
    }
    bool Map(std::uint64_t end) {
        if (end <= m_mapSize)
            return true;
        if (m_mapFailed)
            return false;
        // Room for the file to grow: mapping again is rare.
        std::uint64_t want = std::max<std::uint64_t>(MinimumMap, 2 * end);
        want = (want + m_pageSize - 1) / m_pageSize * m_pageSize;
        if (m_map)
            ::munmap(m_map, m_mapSize);
        m_map = nullptr;
        m_mapSize = 0;
        void* map = ::mmap(nullptr, want, PROT_READ | PROT_WRITE, MAP_SHARED, m_fd, 0);
        if (map == MAP_FAILED) {
            m_mapFailed = true; // pwrite serves every write from now on
            return false;
        }
        m_map = static_cast<char*>(map);
        m_mapSize = want;
        return true;
    }

    static constexpr std::uint64_t MinimumMap = std::uint64_t(1) << 30;

    int m_fd;
    bool m_writable;
    std::uint64_t m_size = 0;
    std::uint64_t m_pageSize = 0;
    std::uint64_t m_blockSize = 0; // 0: no mapped writes
    std::vector<bool> m_written;   // by block: written through pwrite since the file was opened
    char* m_map = nullptr;
    std::uint64_t m_mapSize = 0;
    bool m_mapFailed = false;
    bool m_reserve = false;       // false once reserving failed
    std::uint64_t m_reserved = 0; // the end of the space reserved (or written)
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
                                         bool failIfThere, HRESULT& hr, std::string& error,
                                         bool scratch) {
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
    return std::make_unique<FileBytes>(fd, write, write && scratch);
}

std::unique_ptr<LockBytes> MemoryBytes(std::string bytes, bool writable) {
    return std::make_unique<BufferBytes>(std::move(bytes), writable);
}

} // namespace talvor::platform::storage::detail
