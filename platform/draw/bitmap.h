// CBitmap: a 32-bit raster of width x height pixels, rows top to bottom. Each pixel is a
// 32-bit value 0x00RRGGBB (red in bits 16-23, blue in bits 0-7: the framework's 32-bit DIB
// layout, bytes B, G, R, 0 in memory), NOT the COLORREF order 0x00BBGGRR; GetPixelColor and
// the device context convert. A device context that selects the bitmap shares its pixels, so
// drawing shows in the bitmap at once.
#pragma once

#include "platform/draw/gdi_object.h"

#include <cstdint>
#include <memory>
#include <vector>

class CDC;

namespace talvor::platform {
struct Raster {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; // width * height values 0x00RRGGBB, row by row
};

// One pixel value of the raster from a COLORREF and back.
constexpr std::uint32_t PixelFromColor(COLORREF c) {
    return ((c & 0xFFu) << 16) | (c & 0xFF00u) | ((c >> 16) & 0xFFu);
}
constexpr COLORREF ColorFromPixel(std::uint32_t p) {
    return ((p & 0xFFu) << 16) | (p & 0xFF00u) | ((p >> 16) & 0xFFu);
}
} // namespace talvor::platform

class CBitmap : public CGdiObject {
public:
    // Largest side and largest pixel count of a raster; beyond them creation fails.
    static constexpr int MaxSide = 32767;
    static constexpr long long MaxPixels = 1ll << 28;

    CBitmap() = default;
    CBitmap(CBitmap&& other) noexcept;
    CBitmap& operator=(CBitmap&& other) noexcept;

    // A raster of the given size, all black. The context only tells the framework which
    // format to use; every raster here is 32-bit, so it may be null. A size below 1 or above the
    // limits gives FALSE and leaves the bitmap as it was.
    BOOL CreateCompatibleBitmap(CDC* pDC, int width, int height);
    // A raster filled with one colour.
    BOOL CreateFilledBitmap(int width, int height, COLORREF color);
    // A deep copy of another bitmap's pixels (FALSE when it holds none).
    BOOL CreateCopy(const CBitmap& other);
    BOOL DeleteObject() override;

    // bmWidth, bmHeight, 32 bits per pixel, bmBits pointing at the pixels; 0 when empty.
    int GetBitmap(BITMAP* info) const;
    int GetWidth() const { return m_raster ? m_raster->width : 0; }
    int GetHeight() const { return m_raster ? m_raster->height : 0; }
    // Pixels as 0x00RRGGBB, row by row; null when empty.
    const std::uint32_t* GetPixels() const;
    std::uint32_t* GetPixels();
    // The pixel at (x, y) as a COLORREF; CLR_INVALID outside the raster.
    COLORREF GetPixelColor(int x, int y) const;

    // The shared raster (the device context draws into it).
    const std::shared_ptr<talvor::platform::Raster>& Raster() const { return m_raster; }

private:
    std::shared_ptr<talvor::platform::Raster> m_raster;
};
