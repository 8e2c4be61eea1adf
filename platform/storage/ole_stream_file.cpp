// Archives over streams of a storage.
#include "platform/storage/ole_stream_file.h"

using namespace talvor::platform::storage;

COleStreamFile::~COleStreamFile() {
    Abort();
}

void COleStreamFile::Attach(IStream* stream) {
    Abort();
    m_lpStream = stream;
}

IStream* COleStreamFile::Detach() {
    IStream* stream = m_lpStream;
    m_lpStream = nullptr;
    return stream;
}

BOOL COleStreamFile::CreateStream(IStorage* storage, const char* name, DWORD mode) {
    Abort();
    if (!storage || !name)
        return FALSE;
    const std::u16string wide = ElementName(name);
    return SUCCEEDED(storage->CreateStream(wide.c_str(), mode, 0, 0, &m_lpStream));
}

BOOL COleStreamFile::OpenStream(IStorage* storage, const char* name, DWORD mode) {
    Abort();
    if (!storage || !name)
        return FALSE;
    const std::u16string wide = ElementName(name);
    return SUCCEEDED(storage->OpenStream(wide.c_str(), nullptr, mode, 0, &m_lpStream));
}

void COleStreamFile::Check(HRESULT hr) const {
    if (SUCCEEDED(hr))
        return;
    throw new CFileException(hr == STG_E_MEDIUMFULL     ? CFileException::diskFull
                             : hr == STG_E_ACCESSDENIED ? CFileException::accessDenied
                                                        : CFileException::hardIO,
                             hr);
}

UINT COleStreamFile::Read(void* buffer, UINT count) {
    if (!m_lpStream)
        throw new CFileException(CFileException::genericException);
    ULONG got = 0;
    Check(m_lpStream->Read(buffer, count, &got));
    return got;
}

void COleStreamFile::Write(const void* buffer, UINT count) {
    if (!m_lpStream)
        throw new CFileException(CFileException::genericException);
    Check(m_lpStream->Write(buffer, count, nullptr));
}

ULONGLONG COleStreamFile::Seek(LONGLONG offset, UINT from) {
    if (!m_lpStream)
        throw new CFileException(CFileException::genericException);
    LARGE_INTEGER move;
    move.QuadPart = offset;
    ULARGE_INTEGER position;
    HRESULT hr = m_lpStream->Seek(move, from, &position);
    if (FAILED(hr))
        throw new CFileException(CFileException::badSeek, hr);
    return position.QuadPart;
}

ULONGLONG COleStreamFile::GetPosition() const {
    if (!m_lpStream)
        return 0;
    LARGE_INTEGER none;
    ULARGE_INTEGER position;
    return SUCCEEDED(m_lpStream->Seek(none, STREAM_SEEK_CUR, &position)) ? position.QuadPart : 0;
}

ULONGLONG COleStreamFile::GetLength() const {
    if (!m_lpStream)
        return 0;
    STATSTG stat;
    return SUCCEEDED(m_lpStream->Stat(&stat, STATFLAG_NONAME)) ? stat.cbSize.QuadPart : 0;
}

void COleStreamFile::SetLength(ULONGLONG length) {
    if (!m_lpStream)
        throw new CFileException(CFileException::genericException);
    ULARGE_INTEGER size;
    size.QuadPart = length;
    Check(m_lpStream->SetSize(size));
}

void COleStreamFile::Flush() {
    if (m_lpStream)
        Check(m_lpStream->Commit(STGC_DEFAULT));
}

void COleStreamFile::Close() {
    if (!m_lpStream)
        return;
    HRESULT hr = m_lpStream->Commit(STGC_DEFAULT);
    m_lpStream->Release();
    m_lpStream = nullptr;
    Check(hr);
}

void COleStreamFile::Abort() {
    if (m_lpStream)
        m_lpStream->Release();
    m_lpStream = nullptr;
}
