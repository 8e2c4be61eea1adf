// PNG pictures held in memory (resources carry their bitmaps this way).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::platform {

// Decodes PNG bytes of any colour type into 0x00RRGGBB pixels, row by row from the top
// (alpha dropped). False with a message when the bytes are no PNG or the picture is larger
// than 4096 x 4096.
bool DecodePng(std::string_view bytes, int& width, int& height, std::vector<std::uint32_t>& pixels,
               std::string& error);

} // namespace talvor::platform
