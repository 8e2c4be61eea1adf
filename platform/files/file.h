// CFile (a file of the operating system) and CMemFile (a file in memory), with the framework's
// open flags and seek origins. Failures throw CFileException, except Open, which reports.
#pragma once

#include "platform/files/exceptions.h"

#include <string>

class CFile {
public:
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

    CFile() = default;
    // Opens path; throws CFileException when it can't.
    CFile(const char* path, UINT openFlags);
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // FALSE, with the cause in *error when given, when the file can't be opened.
    virtual BOOL Open(const char* path, UINT openFlags, CFileException* error = nullptr);
    // Reads up to count bytes; returns the number read, 0 at the end.
    virtual UINT Read(void* buffer, UINT count);
    virtual void Write(const void* buffer, UINT count);
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    virtual void SetLength(ULONGLONG length);
    virtual void Flush();
    virtual void Close();
    // Closes without throwing.
    virtual void Abort();
    virtual bool IsOpen() const { return m_fd >= 0; }

    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }
    CString GetFilePath() const { return m_strFilePath; }
    CString GetFileName() const;

    static void Remove(const char* path);
    static void Rename(const char* oldPath, const char* newPath);

protected:
    CString m_strFilePath;

private:
    int m_fd = -1;
};

// A file in memory that grows as it is written; how archives are kept in memory and tested.
class CMemFile : public CFile {
public:
    CMemFile() = default;
    // A file over a copy of the given bytes, positioned at the start.
    CMemFile(const void* data, UINT size) { Attach(data, size); }
    void Attach(const void* data, UINT size);
    const std::string& Data() const { return m_data; }

    BOOL Open(const char*, UINT, CFileException* error = nullptr) override;
    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    ULONGLONG GetPosition() const override { return m_position; }
    ULONGLONG GetLength() const override { return m_data.size(); }
    void SetLength(ULONGLONG length) override;
    void Flush() override {}
    void Close() override {}
    void Abort() override {}
    bool IsOpen() const override { return true; }

private:
    std::string m_data;
    std::size_t m_position = 0;
};
