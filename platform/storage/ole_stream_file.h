// COleStreamFile: a CFile over a stream of a storage, so archives read and write streams.
// A failing stream call throws CFileException (hardIO, or diskFull when the medium is full).
#pragma once

#include "platform/files/file.h"
#include "platform/storage/storage.h"

class COleStreamFile : public CFile {
public:
    // Attaches the stream; the file takes over the caller's reference.
    explicit COleStreamFile(IStream* stream = nullptr) : m_lpStream(stream) {}
    ~COleStreamFile() override;

    void Attach(IStream* stream);
    // Gives the stream back without releasing it.
    IStream* Detach();
    IStream* GetStream() const { return m_lpStream; }
    // Creates (replacing) or opens a stream of the storage; FALSE when it cannot.
    BOOL CreateStream(IStorage* storage, const char* name, DWORD mode);
    BOOL OpenStream(IStorage* storage, const char* name, DWORD mode);

    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    ULONGLONG GetPosition() const override;
    ULONGLONG GetLength() const override;
    void SetLength(ULONGLONG length) override;
    void Flush() override;
    void Close() override;
    void Abort() override;
    bool IsOpen() const override { return m_lpStream != nullptr; }

private:
    void Check(HRESULT hr) const;
    IStream* m_lpStream;
};
