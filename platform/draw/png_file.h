// PNG files of a bitmap, by libpng: 8-bit RGB, no alpha.
#pragma once

#include "platform/draw/bitmap.h"

#include <string>

namespace talvor::platform {

// Writes the bitmap to path as a PNG. The file is written under a temporary name beside it and
// renamed, so a failure never leaves half a picture under the name. False, with a message in
// error, for an empty bitmap or a file that can't be written; the old file is then kept.
bool WritePng(const CBitmap& bitmap, const std::string& path, std::string& error);

// Reads a PNG of any colour type and depth into a new bitmap (alpha is dropped, no blending).
// False, with a message in error, for a missing or damaged file or one too large for a bitmap.
bool ReadPng(const std::string& path, CBitmap& bitmap, std::string& error);

} // namespace talvor::platform
