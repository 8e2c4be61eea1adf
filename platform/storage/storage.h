// Structured storage on compound files (version 3, 512-byte sectors): the storage and stream
// objects a host reaches through IStorage and IStream, and the functions that create and open
// a file. Every change is held until the root storage commits; a commit writes new sectors
// first and switches the file's header last, so an interrupted commit leaves the file as the
// last commit made it. A file that is damaged (bad header, sector chains that loop or leave the
// file, a broken directory) is refused with STG_E_DOCFILECORRUPT or STG_E_INVALIDHEADER, and
// StorageErrorText() says what is wrong where.
#pragma once

#include "platform/storage/storage_types.h"

#include <string>
#include <string_view>

namespace talvor::platform::storage {

// Reference counting as IUnknown has it: an object lives while its count is above zero.
class IStorageUnknown {
public:
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    virtual ~IStorageUnknown() = default;
};

class IStream : public IStorageUnknown {
public:
    // Reads up to cb bytes from the seek position; *pcbRead (may be null) gets how many.
    virtual HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) = 0;
    // Writes at the seek position, growing the stream; STG_E_ACCESSDENIED when opened to read.
    virtual HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) = 0;
    // STG_E_INVALIDFUNCTION for a position before the start or an unknown origin.
    virtual HRESULT Seek(LARGE_INTEGER dlibMove, DWORD dwOrigin,
                         ULARGE_INTEGER* plibNewPosition) = 0;
    // Grown streams read zeros in the new part.
    virtual HRESULT SetSize(ULARGE_INTEGER libNewSize) = 0;
    // Hands the stream's data to its storage; the file changes only when the root commits.
    virtual HRESULT Commit(DWORD grfCommitFlags) = 0;
    virtual HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) = 0;
};

class IEnumSTATSTG : public IStorageUnknown {
public:
    // Gives up to celt descriptions; S_FALSE when fewer than celt were left.
    virtual HRESULT Next(ULONG celt, STATSTG* rgelt, ULONG* pceltFetched) = 0;
    virtual HRESULT Skip(ULONG celt) = 0;
    virtual HRESULT Reset() = 0;
};

class IStorage : public IStorageUnknown {
public:
    // Names are at most 31 characters and hold none of '/', '\\', ':', '!'
    // (STG_E_INVALIDNAME). Sub-elements are opened with STGM_SHARE_EXCLUSIVE
    // (STG_E_INVALIDFLAG otherwise) and only once at a time (STG_E_ACCESSDENIED).
    // Without STGM_CREATE an existing name gives STG_E_FILEALREADYEXISTS; with it the old
    // element is replaced.
    virtual HRESULT CreateStream(LPCOLESTR pwcsName, DWORD grfMode, DWORD reserved1,
                                 DWORD reserved2, IStream** ppstm) = 0;
    // STG_E_FILENOTFOUND when there is no stream of that name.
    virtual HRESULT OpenStream(LPCOLESTR pwcsName, void* reserved1, DWORD grfMode, DWORD reserved2,
                               IStream** ppstm) = 0;
    virtual HRESULT CreateStorage(LPCOLESTR pwcsName, DWORD grfMode, DWORD reserved1,
                                  DWORD reserved2, IStorage** ppstg) = 0;
    virtual HRESULT OpenStorage(LPCOLESTR pwcsName, IStorage* pstgPriority, DWORD grfMode,
                                LPOLESTR* snbExclude, DWORD reserved, IStorage** ppstg) = 0;
    // On the root: writes every change since the last commit to the file (see above).
    // STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE skips flushing to the disk. On a sub-storage
    // the changes already belong to the root, and S_OK is all there is to do. A failed
    // commit reverts the root to the file's last committed state; objects opened below it
    // then answer STG_E_REVERTED.
    virtual HRESULT Commit(DWORD grfCommitFlags) = 0;
    // Drops every change since the last commit (root only; S_OK elsewhere).
    virtual HRESULT Revert() = 0;
    virtual HRESULT EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3,
                                 IEnumSTATSTG** ppenum) = 0;
    // Removes an element with everything below it; STG_E_ACCESSDENIED while it is open.
    virtual HRESULT DestroyElement(LPCOLESTR pwcsName) = 0;
    virtual HRESULT RenameElement(LPCOLESTR pwcsOldName, LPCOLESTR pwcsNewName) = 0;
    virtual HRESULT SetClass(const CLSID& clsid) = 0;
    virtual HRESULT Stat(STATSTG* pstatstg, DWORD grfStatFlag) = 0;
};

// Creates a compound file at path. Without STGM_CREATE an existing file gives
// STG_E_FILEALREADYEXISTS. The new, empty file is on disk when this returns.
// STGM_DELETEONRELEASE makes a scratch file: it is removed when the root storage is released,
// and as it never outlives the process its commits keep their order of writes (so a commit
// stopped half-way still leaves the last committed state) without waiting for the disk.
HRESULT StgCreateDocfile(const char* path, DWORD grfMode, DWORD reserved, IStorage** ppstgOpen);
// Opens a compound file at path; a damaged one is refused (see above).
HRESULT StgOpenStorage(const char* path, IStorage* pstgPriority, DWORD grfMode,
                       LPOLESTR* snbExclude, DWORD reserved, IStorage** ppstgOpen);
// Opens a compound file held in memory, read-only (for checking data that came from elsewhere).
HRESULT StgOpenStorageOnMemory(std::string_view bytes, IStorage** ppstgOpen);
// S_OK when the file starts with the compound file signature, S_FALSE when not.
HRESULT StgIsStorageFile(const char* path);

// What went wrong in the last failing call of this thread, lower-case, with positions:
// "compound file: sector chain of stream 'x' loops at sector 0x12". Empty after success.
const std::string& StorageErrorText();

// Memory of the names in STATSTG.
void* CoTaskMemAlloc(std::size_t size);
void CoTaskMemFree(void* memory);

// The order of names in a storage: shorter names first, then by upper-case characters; 0 when
// the two name the same element.
int CompareElementNames(std::u16string_view a, std::u16string_view b);

// A name from 8-bit text in the system code page, and back.
std::u16string ElementName(std::string_view text);
std::string ElementNameText(std::u16string_view name);

} // namespace talvor::platform::storage

// The published names, where the host's code calls them.
using talvor::platform::storage::IEnumSTATSTG;
using talvor::platform::storage::IStorage;
using talvor::platform::storage::IStream;
using talvor::platform::storage::STATSTG;
using talvor::platform::storage::StgCreateDocfile;
using talvor::platform::storage::StgIsStorageFile;
using talvor::platform::storage::StgOpenStorage;
