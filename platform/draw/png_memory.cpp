// PNG decoding from memory through libpng's simplified reading interface.
#include "platform/draw/png_memory.h"

#include <png.h>

namespace talvor::platform {

bool DecodePng(std::string_view bytes, int& width, int& height, std::vector<std::uint32_t>& pixels,
               std::string& error) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) {
        error = std::string("png: ") + image.message;
        return false;
    }
    if (image.width == 0 || image.height == 0 || image.width > 4096 || image.height > 4096) {
        png_image_free(&image);
        error = "png: picture of " + std::to_string(image.width) + " x " +
                std::to_string(image.height) + " pixels is out of range";
        return false;
    }
    image.format = PNG_FORMAT_BGRA; // little-endian words 0xAARRGGBB
    std::vector<std::uint32_t> data(static_cast<std::size_t>(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, data.data(), 0, nullptr)) {
        error = std::string("png: ") + image.message;
        png_image_free(&image);
        return false;
    }
    for (std::uint32_t& p : data)
        p &= 0x00FFFFFFu;
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    pixels.swap(data);
    return true;
}

} // namespace talvor::platform
