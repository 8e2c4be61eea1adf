// Which colouring language a file name suggests, by its extension.
#pragma once

#include "platform/core/win_types.h"

#include <string>

namespace talvor::tool {

// The language code for the file's extension (case ignored), or 35 (plain text) when the
// extension is unknown or missing.
UINT GuessLanguageFromFileName(const std::string& path);

} // namespace talvor::tool
