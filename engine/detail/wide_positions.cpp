#include "engine/detail/wide_positions.h"

#include "platform/codepage/code_page.h"

namespace talvor::engine::detail {

WidePositions::WidePositions(std::string_view text) : m_length(text.size()) {
    for (unsigned char byte : text)
        if (byte >= 0x80) {
            m_identity = false;
            break;
        }
    if (m_identity)
        return;
    // Character by character, as the code page converts: each character adds as many wide
    // units as its own wide form has (a character outside the basic plane gives two).
    m_byteOfWide.reserve(text.size() + 1);
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t length = platform::CharLengthAt(text, pos);
        std::size_t units = length == 1 && static_cast<unsigned char>(text[pos]) < 0x80
                                ? 1
                                : platform::ToWide(text.substr(pos, length)).size();
        for (std::size_t u = 0; u < units; ++u)
            m_byteOfWide.push_back(pos);
        pos += length;
    }
    m_byteOfWide.push_back(text.size());
}

std::size_t WidePositions::ToByte(long wide) const {
    if (wide <= 0)
        return 0;
    if (m_identity)
        return static_cast<std::size_t>(wide) < m_length ? static_cast<std::size_t>(wide)
                                                         : m_length;
    if (static_cast<std::size_t>(wide) >= m_byteOfWide.size())
        return m_length;
    return m_byteOfWide[static_cast<std::size_t>(wide)];
}

} // namespace talvor::engine::detail
