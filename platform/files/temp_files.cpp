// Temporary folder, unique temporary files, deletion.
#include "platform/files/temp_files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {
constexpr std::size_t MaxPath = 260;
}

DWORD GetTempPath(DWORD bufferLength, char* buffer) {
    const char* folder = std::getenv("TMPDIR");
    std::string path = folder && *folder ? folder : "/tmp";
    if (path.back() != '/')
        path += '/';
    if (!buffer || bufferLength < path.size() + 1)
        return static_cast<DWORD>(path.size() + 1);
    std::memcpy(buffer, path.c_str(), path.size() + 1);
    return static_cast<DWORD>(path.size());
}

UINT GetTempFileName(const char* pathName, const char* prefix, UINT unique, char* tempFileName) {
    if (!pathName || !tempFileName)
        return 0;
    std::string folder = pathName;
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    const std::string start = std::string(prefix ? prefix : "").substr(0, 3);
    auto makeName = [&](UINT number) {
        char hex[16];
        std::snprintf(hex, sizeof hex, "%X", number & 0xFFFFu);
        return folder + start + hex + ".tmp";
    };
    if (unique != 0) {
        const std::string name = makeName(unique);
        if (name.size() + 1 > MaxPath)
            return 0;
        std::memcpy(tempFileName, name.c_str(), name.size() + 1);
        return unique;
    }
    // As the system does: numbers from a time-based start, the first free one wins.
    UINT number = static_cast<UINT>(std::time(nullptr) ^ ::getpid()) & 0xFFFFu;
    for (int tries = 0; tries < 0x10000; ++tries, number = (number + 1) & 0xFFFFu) {
        if (number == 0)
            continue;
        const std::string name = makeName(number);
        if (name.size() + 1 > MaxPath)
            return 0;
        int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            ::close(fd);
            std::memcpy(tempFileName, name.c_str(), name.size() + 1);
            return number;
        }
        if (errno != EEXIST)
            return 0;
    }
    return 0;
}

BOOL DeleteFile(const char* fileName) {
    return fileName && ::unlink(fileName) == 0;
}
