// PNG output and input through libpng. libpng reports errors by longjmp, so the functions that
// call it hold no object with a destructor; C++ state stays in their callers.
#include "platform/draw/png_file.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace talvor::platform {

namespace {

struct Messages {
    char text[200];
};

void OnPngError(png_structp png, png_const_charp message) {
    auto* messages = static_cast<Messages*>(png_get_error_ptr(png));
    std::snprintf(messages->text, sizeof messages->text, "%s", message);
    png_longjmp(png, 1);
}

void OnPngWarning(png_structp, png_const_charp) {}

// Writes the rows to an open file; false with the message of libpng.
bool EncodeRows(std::FILE* file, int width, int height, png_bytep* rows, Messages* messages) {
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, messages, OnPngError, OnPngWarning);
    if (!png)
        return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

// Reads the header, then the image as 8-bit RGB rows into pixels (allocated by the callback
// through the size it is told). Two steps, so no vector lives in the frame that libpng may jump
// out of.
struct DecodeTarget {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<png_byte> bytes;
    std::vector<png_bytep> rows;
    bool Prepare(std::uint32_t w, std::uint32_t h) {
        if (w < 1 || h < 1 || w > static_cast<std::uint32_t>(CBitmap::MaxSide) ||
            h > static_cast<std::uint32_t>(CBitmap::MaxSide) ||
            static_cast<long long>(w) * h > CBitmap::MaxPixels)
            return false;
        width = w;
        height = h;
        bytes.resize(static_cast<std::size_t>(w) * h * 3);
        rows.resize(h);
        for (std::uint32_t y = 0; y < h; ++y)
            rows[y] = bytes.data() + static_cast<std::size_t>(y) * w * 3;
        return true;
    }
};

bool DecodeFile(std::FILE* file, DecodeTarget* target, Messages* messages) {
    png_structp png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, messages, OnPngError, OnPngWarning);
    if (!png)
        return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_init_io(png, file);
    png_read_info(png, info);
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_strip_alpha(png);
    png_set_gray_to_rgb(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_channels(png, info) != 3 ||
        !target->Prepare(png_get_image_width(png, info), png_get_image_height(png, info))) {
        std::snprintf(messages->text, sizeof messages->text,
                      "image of %ux%u pixels is too large or of an unknown layout",
                      png_get_image_width(png, info), png_get_image_height(png, info));
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_read_image(png, target->rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

} // namespace

bool WritePng(const CBitmap& bitmap, const std::string& path, std::string& error) {
    const std::uint32_t* pixels = bitmap.GetPixels();
    const int width = bitmap.GetWidth(), height = bitmap.GetHeight();
    if (!pixels || width < 1 || height < 1) {
        error = "png: " + path + ": the bitmap holds no pixels";
        return false;
    }
    std::vector<png_byte> bytes(static_cast<std::size_t>(width) * height * 3);
    std::vector<png_bytep> rows(height);
    for (int y = 0; y < height; ++y) {
        rows[y] = bytes.data() + static_cast<std::size_t>(y) * width * 3;
        for (int x = 0; x < width; ++x) {
            const std::uint32_t p = pixels[static_cast<std::size_t>(y) * width + x];
            rows[y][x * 3] = static_cast<png_byte>(p >> 16);
            rows[y][x * 3 + 1] = static_cast<png_byte>(p >> 8);
            rows[y][x * 3 + 2] = static_cast<png_byte>(p);
        }
    }

    std::string temp = path + ".XXXXXX";
    const int fd = mkstemp(temp.data());
    if (fd < 0) {
        error = "png: " + path + ": can't create a file beside it: " + std::strerror(errno);
        return false;
    }
    fchmod(fd, 0644);
    std::FILE* file = fdopen(fd, "wb");
    if (!file) {
        error = "png: " + temp + ": " + std::strerror(errno);
        close(fd);
        unlink(temp.c_str());
        return false;
    }
    Messages messages{};
    bool ok = EncodeRows(file, width, height, rows.data(), &messages);
    if (!ok)
        error = "png: " + path + ": " + messages.text;
    if (ok && (std::fflush(file) != 0 || fsync(fileno(file)) != 0)) {
        error = "png: " + path + ": " + std::strerror(errno);
        ok = false;
    }
    if (std::fclose(file) != 0 && ok) {
        error = "png: " + path + ": " + std::strerror(errno);
        ok = false;
    }
    if (ok && std::rename(temp.c_str(), path.c_str()) != 0) {
        error = "png: " + path + ": can't rename " + temp + " to it: " + std::strerror(errno);
        ok = false;
    }
    if (!ok)
        unlink(temp.c_str());
    return ok;
}

bool ReadPng(const std::string& path, CBitmap& bitmap, std::string& error) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        error = "png: " + path + ": " + std::strerror(errno);
        return false;
    }
    Messages messages{};
    DecodeTarget target;
    const bool ok = DecodeFile(file, &target, &messages);
    std::fclose(file);
    if (!ok) {
        error = "png: " + path + ": " + messages.text;
        return false;
    }
    CBitmap made;
    if (!made.CreateFilledBitmap(static_cast<int>(target.width), static_cast<int>(target.height),
                                 RGB(0, 0, 0))) {
        error = "png: " + path + ": image too large";
        return false;
    }
    std::uint32_t* out = made.GetPixels();
    for (std::size_t i = 0; i < static_cast<std::size_t>(target.width) * target.height; ++i)
        out[i] = (static_cast<std::uint32_t>(target.bytes[i * 3]) << 16) |
                 (static_cast<std::uint32_t>(target.bytes[i * 3 + 1]) << 8) |
                 target.bytes[i * 3 + 2];
    bitmap = std::move(made);
    return true;
}

} // namespace talvor::platform
