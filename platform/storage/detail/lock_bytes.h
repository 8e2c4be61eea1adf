// The bytes under a compound file: a file on disk or a buffer in memory. Reads are checked
// against the size; every write of the file passes the write fault seam of the file layer,
// whether it goes through the platform's one low-level write or, small and inside the file,
// into a shared mapping of it.
#pragma once

#include "platform/core/win_types.h"

#include <cstdint>
#include <memory>
#include <string>

namespace talvor::platform::storage::detail {

class LockBytes {
public:
    virtual ~LockBytes() = default;
    virtual std::uint64_t Size() const = 0;
    // False when the range is not wholly inside the bytes or the read fails.
    virtual bool ReadAt(std::uint64_t offset, void* out, std::size_t size) = 0;
    // False, with errno set, when the write fails.
    virtual bool WriteAt(std::uint64_t offset, const void* data, std::size_t size) = 0;
    virtual bool Flush() = 0;
    virtual bool Truncate(std::uint64_t size) = 0;
    virtual bool Writable() const = 0;
};

// Opens (or with create, creates or empties) a file. Null with a message when it cannot. A
// scratch file is this process's own (it goes when released): only there do small writes go
// through a shared mapping, since a mapped store faults when another process has cut the
// file short under it, and nobody else has any business with a scratch file.
std::unique_ptr<LockBytes> OpenFileBytes(const std::string& path, bool write, bool create,
                                         bool failIfThere, HRESULT& hr, std::string& error,
                                         bool scratch = false);
std::unique_ptr<LockBytes> MemoryBytes(std::string bytes, bool writable);

} // namespace talvor::platform::storage::detail
