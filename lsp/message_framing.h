// The base protocol of the Language Server Protocol: messages framed by a "Content-Length"
// header and an empty line. The reader takes bytes as they come and hands out whole message
// bodies; the writer frames a body. No I/O here: the transport feeds and sends.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace talvor::lsp {

// A body larger than this is refused; a 10 MB document and its JSON escaping fit.
constexpr std::size_t MaxMessageBytes = 64 * 1024 * 1024;

class MessageReader {
public:
    // Adds bytes read from the client.
    void Feed(std::string_view bytes);
    // The next whole body; false with error empty when more bytes are needed. A header
    // without a valid Content-Length, or a length over MaxMessageBytes, is skipped: false with
    // a message in error, and the next call reads on behind that header.
    bool Next(std::string& body, std::string& error);

private:
    std::string m_buffer;
    std::size_t m_start = 0; // bytes before it are consumed
};

// The body with its header, ready to send.
std::string FrameMessage(std::string_view body);

} // namespace talvor::lsp
