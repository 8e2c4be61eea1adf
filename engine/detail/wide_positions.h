// Positions of the regular expression facade count UTF-16 units of the wide form of a text;
// edits of the 8-bit text need byte positions. WidePositions maps one to the other.
#pragma once

#include <string_view>
#include <vector>

namespace talvor::engine::detail {

class WidePositions {
public:
    explicit WidePositions(std::string_view text);
    // The byte position of wide position `wide`; positions past the end give the text's
    // length, and a position inside a character gives the character's first byte.
    std::size_t ToByte(long wide) const;

private:
    std::size_t m_length = 0;
    bool m_identity = true;                // ASCII text: a wide position is a byte position
    std::vector<std::size_t> m_byteOfWide; // one entry per wide unit, plus the end
};

} // namespace talvor::engine::detail
