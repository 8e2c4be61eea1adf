// The library's one funnel to the file system for whole-file reads, atomic writes and folder
// listings. All
// writes go through here, so a test can make the Nth write fail and prove that an interrupted
// save leaves the last complete file in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::platform {

// Reads the whole file. False, with a message in error, when it cannot be opened or read.
bool ReadWholeFile(const std::string& path, std::string& contents, std::string& error);

// Writes contents under a temporary name in the same folder, flushes it to disk and renames it
// over path, so readers see either the old file or the new one, never a part. Creates missing
// parent folders. False, with a message in error and the old file untouched, on any failure.
bool WriteFileAtomically(const std::string& path, std::string_view contents, std::string& error);

// Creates the folder and its missing parents; true when it exists afterwards.
bool CreateDirectories(const std::string& path);

bool FileExists(const std::string& path);

enum class FolderEntries { Files, Folders };
// Names (not paths) of the regular files, or of the folders, directly inside folder, sorted
// byte by byte; names that start with "." are left out, and a link counts as what it points
// to. Empty when the folder cannot be read.
std::vector<std::string> ListFolder(const std::string& folder, FolderEntries which);

// Fault injection for tests: the nth low-level write from now on (1 = the next one) fails as if
// the disk were full. 0 switches it off. Counts writes of every file.
void FailNthWrite(int n);

// The low-level write that every writer of the library uses; honours FailNthWrite.
// Returns false on failure with errno set.
bool WriteAll(int fd, const void* data, std::size_t size);
// The same at a position of the file (the file's own position does not move).
bool WriteAllAt(int fd, const void* data, std::size_t size, std::uint64_t offset);

} // namespace talvor::platform
