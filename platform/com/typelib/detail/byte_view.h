// Checked little-endian reads from an input buffer: every read of a type library or a PE
// file goes through At(), which refuses a range that leaves the buffer and keeps the first
// failure as a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

namespace talvor::platform::typelib {

class ByteView {
public:
    ByteView() = default;
    explicit ByteView(std::span<const std::uint8_t> data) : m_data(data) {}

    std::size_t Size() const { return m_data.size(); }
    const std::uint8_t* Data() const { return m_data.data(); }
    bool Failed() const { return !m_error.empty(); }
    const std::string& Error() const { return m_error; }

    // Null, with the message kept, when [offset, offset + size) leaves the buffer.
    const std::uint8_t* At(std::uint64_t offset, std::uint64_t size, const char* what) {
        if (offset > m_data.size() || size > m_data.size() - offset) {
            Fail(what, offset);
            return nullptr;
        }
        return m_data.data() + offset;
    }
    bool U8(std::uint64_t offset, std::uint8_t& out, const char* what) {
        const std::uint8_t* p = At(offset, 1, what);
        if (!p)
            return false;
        out = p[0];
        return true;
    }
    bool U16(std::uint64_t offset, std::uint16_t& out, const char* what) {
        const std::uint8_t* p = At(offset, 2, what);
        if (!p)
            return false;
        out = static_cast<std::uint16_t>(p[0] | p[1] << 8);
        return true;
    }
    bool U32(std::uint64_t offset, std::uint32_t& out, const char* what) {
        const std::uint8_t* p = At(offset, 4, what);
        if (!p)
            return false;
        out = static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
              static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
        return true;
    }
    bool I32(std::uint64_t offset, std::int32_t& out, const char* what) {
        std::uint32_t value = 0;
        if (!U32(offset, value, what))
            return false;
        out = static_cast<std::int32_t>(value);
        return true;
    }
    bool U64(std::uint64_t offset, std::uint64_t& out, const char* what) {
        std::uint32_t low = 0, high = 0;
        if (!U32(offset, low, what) || !U32(offset + 4, high, what))
            return false;
        out = static_cast<std::uint64_t>(high) << 32 | low;
        return true;
    }

    // Keeps the first message; a later failure is a consequence of it.
    void Fail(const char* what, std::uint64_t offset) {
        if (!m_error.empty())
            return;
        char buffer[160];
        std::snprintf(buffer, sizeof buffer, "%s at 0x%llx runs past end of data (0x%zx bytes)",
                      what, static_cast<unsigned long long>(offset), m_data.size());
        m_error = buffer;
    }
    void FailWith(const std::string& message) {
        if (m_error.empty())
            m_error = message;
    }

private:
    std::span<const std::uint8_t> m_data;
    std::string m_error;
};

} // namespace talvor::platform::typelib
