#include "platform/app/module_path.h"

#include <algorithm>
#include <cstring>
#include <limits.h>
#include <unistd.h>

namespace {

std::string& OverridePath() {
    static std::string path;
    return path;
}

std::string ExecutablePath() {
    if (!OverridePath().empty())
        return OverridePath();
    char path[PATH_MAX];
    ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path)
        return {};
    return std::string(path, static_cast<std::size_t>(length));
}

} // namespace

DWORD GetModuleFileNameA(HMODULE module, char* buffer, DWORD size) {
    if (module != nullptr || buffer == nullptr || size == 0)
        return 0;
    const std::string path = ExecutablePath();
    const std::size_t copied = std::min<std::size_t>(path.size(), size - 1);
    std::memcpy(buffer, path.data(), copied);
    buffer[copied] = '\0';
    return static_cast<DWORD>(copied);
}

namespace talvor::platform {

void SetExecutablePath(std::string path) {
    OverridePath() = std::move(path);
}

} // namespace talvor::platform
