// Corpus lookup for tests.
#include "tests/support/corpus.h"

#include "platform/files/file_system.h"

#include <algorithm>
#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace talvor::testing {

std::string CorpusDir() {
    return TALVOR_CORPUS_DIR;
}

std::vector<std::string> CorpusFiles(const std::string& folder) {
    std::vector<std::string> files;
    std::string dir = CorpusDir() + "/" + folder;
    DIR* handle = ::opendir(dir.c_str());
    if (handle == nullptr)
        return files;
    while (dirent* entry = ::readdir(handle)) {
        std::string path = dir + "/" + entry->d_name;
        struct stat st {};
        if (entry->d_name[0] != '.' && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode))
            files.push_back(path);
    }
    ::closedir(handle);
    std::sort(files.begin(), files.end());
    return files;
}

std::string ReadFileBytes(const std::string& path) {
    std::string contents, error;
    if (!platform::ReadWholeFile(path, contents, error))
        ADD_FAILURE() << error;
    return contents;
}

} // namespace talvor::testing
