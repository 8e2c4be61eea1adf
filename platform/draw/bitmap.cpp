// The 32-bit raster behind CBitmap.
#include "platform/draw/bitmap.h"

#include <utility>

using talvor::platform::ColorFromPixel;
using talvor::platform::PixelFromColor;

CBitmap::CBitmap(CBitmap&& other) noexcept : m_raster(std::move(other.m_raster)) {
    m_created = other.m_created;
    other.m_created = false;
}

CBitmap& CBitmap::operator=(CBitmap&& other) noexcept {
    m_raster = std::move(other.m_raster);
    m_created = other.m_created;
    other.m_created = false;
    return *this;
}

BOOL CBitmap::CreateCompatibleBitmap(CDC*, int width, int height) {
    return CreateFilledBitmap(width, height, RGB(0, 0, 0));
}

BOOL CBitmap::CreateFilledBitmap(int width, int height, COLORREF color) {
    if (width < 1 || height < 1 || width > MaxSide || height > MaxSide ||
        static_cast<long long>(width) * height > MaxPixels)
        return FALSE;
    auto raster = std::make_shared<talvor::platform::Raster>();
    raster->width = width;
    raster->height = height;
    raster->pixels.assign(static_cast<std::size_t>(width) * height, PixelFromColor(color));
    m_raster = std::move(raster);
    m_created = true;
    return TRUE;
}

BOOL CBitmap::CreateCopy(const CBitmap& other) {
    if (!other.m_raster)
        return FALSE;
    m_raster = std::make_shared<talvor::platform::Raster>(*other.m_raster);
    m_created = true;
    return TRUE;
}

BOOL CBitmap::DeleteObject() {
    m_raster.reset();
    return CGdiObject::DeleteObject();
}

int CBitmap::GetBitmap(BITMAP* info) const {
    if (!m_raster || !info)
        return 0;
    info->bmType = 0;
    info->bmWidth = m_raster->width;
    info->bmHeight = m_raster->height;
    info->bmWidthBytes = m_raster->width * 4;
    info->bmPlanes = 1;
    info->bmBitsPixel = 32;
    info->bmBits = m_raster->pixels.data();
    return sizeof(BITMAP);
}

const std::uint32_t* CBitmap::GetPixels() const {
    return m_raster ? m_raster->pixels.data() : nullptr;
}

std::uint32_t* CBitmap::GetPixels() {
    return m_raster ? m_raster->pixels.data() : nullptr;
}

COLORREF CBitmap::GetPixelColor(int x, int y) const {
    if (!m_raster || x < 0 || y < 0 || x >= m_raster->width || y >= m_raster->height)
        return CLR_INVALID;
    return ColorFromPixel(m_raster->pixels[static_cast<std::size_t>(y) * m_raster->width + x]);
}
