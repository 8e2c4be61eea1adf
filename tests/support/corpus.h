// Paths to the real-world input files that tests read (never copied into the project).
#pragma once

#include <string>
#include <vector>

namespace talvor::testing {

// Folder of the shared corpus ("../shared/corpus" beside the project).
std::string CorpusDir();
// All files of a corpus folder, sorted, full paths; empty when the folder is missing.
std::vector<std::string> CorpusFiles(const std::string& folder);
// Whole file as bytes; fails the current test when it can't be read.
std::string ReadFileBytes(const std::string& path);

} // namespace talvor::testing
