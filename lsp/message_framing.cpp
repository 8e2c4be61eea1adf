#include "lsp/message_framing.h"

#include <cctype>
#include <charconv>
#include <strings.h>

namespace talvor::lsp {
namespace {

constexpr std::string_view HeaderEnd = "\r\n\r\n";

// The value of Content-Length in a header block; -1 when it is missing or not a number.
long long ContentLength(std::string_view header) {
    std::size_t pos = 0;
    while (pos < header.size()) {
        std::size_t end = header.find("\r\n", pos);
        if (end == std::string_view::npos)
            end = header.size();
        const std::string_view line = header.substr(pos, end - pos);
        pos = end + 2;
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || colon != 14 ||
            strncasecmp(line.data(), "Content-Length", 14) != 0)
            continue;
        std::string_view value = line.substr(colon + 1);
        while (!value.empty() && (value.front() == ' ' || value.front() == '\t'))
            value.remove_prefix(1);
        while (!value.empty() && (value.back() == ' ' || value.back() == '\t'))
            value.remove_suffix(1);
        long long length = -1;
        const auto [ptr, ec] = std::from_chars(value.data(), value.data() + value.size(), length);
        if (ec != std::errc() || ptr != value.data() + value.size() || length < 0)
            return -1;
        return length;
    }
    return -1;
}

} // namespace

void MessageReader::Feed(std::string_view bytes) {
    if (m_start > 0 && m_start >= m_buffer.size() / 2) {
        m_buffer.erase(0, m_start);
        m_start = 0;
    }
    m_buffer.append(bytes);
}

bool MessageReader::Next(std::string& body, std::string& error) {
    error.clear();
    const std::string_view pending = std::string_view(m_buffer).substr(m_start);
    const std::size_t headerEnd = pending.find(HeaderEnd);
    if (headerEnd == std::string_view::npos) {
        if (pending.size() > 64 * 1024) { // no header is that long: drop what can't be one
            error = "lsp: header longer than 65536 bytes without an empty line; dropped";
            m_start = m_buffer.size();
        }
        return false;
    }
    const long long length = ContentLength(pending.substr(0, headerEnd));
    const std::size_t bodyStart = headerEnd + HeaderEnd.size();
    if (length < 0 || static_cast<unsigned long long>(length) > MaxMessageBytes) {
        error = length < 0 ? "lsp: message header without a valid Content-Length; skipped"
                           : "lsp: message of " + std::to_string(length) +
                                 " bytes is larger than the limit; skipped";
        m_start += bodyStart;
        return false;
    }
    if (pending.size() - bodyStart < static_cast<std::size_t>(length))
        return false;
    body.assign(pending.substr(bodyStart, static_cast<std::size_t>(length)));
    m_start += bodyStart + static_cast<std::size_t>(length);
    return true;
}

std::string FrameMessage(std::string_view body) {
    std::string message = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    message.append(body);
    return message;
}

} // namespace talvor::lsp
