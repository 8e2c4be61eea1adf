// One line of text laid out for a device context: the glyph of each character and its pen
// position from the start, both from the same advances, so what is measured is what is drawn.
#pragma once

#include "platform/draw/dc.h"
#include "platform/draw/detail/font_face.h"

#include <vector>

struct CDC::TextLayout {
    std::vector<char32_t> codePoints;
    std::vector<int> byteLengths;
    std::vector<const talvor::platform::draw_detail::Glyph*> glyphs;
    std::vector<int> positions; // pen position of each character, from 0
    int width = 0;
};
