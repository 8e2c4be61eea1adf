// Where the running program lies: the framework's GetModuleFileNameA, read from /proc/self/exe
// unless the host names another path (a packaged install that keeps its data elsewhere, a test
// that wants its own folder).
#pragma once

#include "platform/core/win_types.h"

#include <string>

using HMODULE = void*;

// Copies the full path of the executable into buffer (cut to size - 1 bytes and ended by a
// NUL) and returns the number of bytes copied without the NUL; 0 when the path is unknown or
// size is 0. module must be null (the process itself); any other module gives 0.
DWORD GetModuleFileNameA(HMODULE module, char* buffer, DWORD size);

namespace talvor::platform {

// The path GetModuleFileNameA reports from now on; an empty path returns to /proc/self/exe.
void SetExecutablePath(std::string path);

} // namespace talvor::platform
