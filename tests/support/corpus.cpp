// Corpus lookup for tests.
#include "tests/support/corpus.h"

#include "platform/files/file_system.h"

#include <gtest/gtest.h>

namespace talvor::testing {

std::string CorpusDir() {
    return TALVOR_CORPUS_DIR;
}

std::vector<std::string> CorpusFiles(const std::string& folder) {
    std::vector<std::string> files;
    std::string dir = CorpusDir() + "/" + folder;
    for (const std::string& name : platform::ListFolder(dir, platform::FolderEntries::Files))
        files.push_back(dir + "/" + name);
    return files;
}

std::string ReadFileBytes(const std::string& path) {
    std::string contents, error;
    if (!platform::ReadWholeFile(path, contents, error))
        ADD_FAILURE() << error;
    return contents;
}

} // namespace talvor::testing
