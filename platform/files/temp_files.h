// The system's temporary folder and unique temporary files, and file deletion, under the names
// the Windows API gives them.
#pragma once

#include "platform/core/win_types.h"

// Copies the temporary folder ($TMPDIR, else /tmp), with a final '/', into buffer. Returns its
// length, or the size needed (with the terminator) when the buffer is too small; 0 on failure.
DWORD GetTempPath(DWORD bufferLength, char* buffer);
// With unique 0: creates a new empty file "<folder>/<prefix, up to 3 characters><hex>.tmp"
// that did not exist and returns its number; with unique set, only makes the name from that
// number. The buffer must hold 260 bytes. 0 when no file could be created.
UINT GetTempFileName(const char* pathName, const char* prefix, UINT unique, char* tempFileName);
// TRUE when the file was removed.
BOOL DeleteFile(const char* fileName);
