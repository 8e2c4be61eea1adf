// Storage, stream and enumerator objects over a compound file, and the functions that create
// and open one.
#include "platform/storage/storage.h"

#include "platform/codepage/code_page.h"
#include "platform/storage/detail/compound_file.h"

#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace talvor::platform::storage {
namespace {
using detail::CompoundFile;
using detail::NoStream;

thread_local std::string t_error;

HRESULT Report(HRESULT hr, std::string text) {
    t_error = std::move(text);
    return hr;
}
HRESULT Succeed() {
    t_error.clear();
    return S_OK;
}

std::u16string_view NameOf(LPCOLESTR name) {
    std::size_t length = 0;
    while (name[length] != 0 && length <= detail::MaxNameLength)
        ++length;
    return {name, length};
}

bool Writes(DWORD mode) {
    return (mode & 3) == STGM_WRITE || (mode & 3) == STGM_READWRITE;
}

// Checks the mode of a sub-element: valid access bits, exclusive sharing.
HRESULT CheckChildMode(DWORD mode) {
    if ((mode & 3) == 3)
        return Report(STG_E_INVALIDFLAG, "compound file: access mode 3 is not valid");
    if ((mode & 0x70) != STGM_SHARE_EXCLUSIVE)
        return Report(STG_E_INVALIDFLAG,
                      "compound file: elements inside a file open with STGM_SHARE_EXCLUSIVE");
    return S_OK;
}

void FillStat(const detail::DirEntry& e, std::uint64_t size, DWORD mode, DWORD flag,
              STATSTG* stat) {
    *stat = STATSTG{};
    if (!(flag & STATFLAG_NONAME)) {
        stat->pwcsName =
            static_cast<LPOLESTR>(CoTaskMemAlloc((e.name.size() + 1) * sizeof(OLECHAR)));
        std::memcpy(stat->pwcsName, e.name.data(), e.name.size() * sizeof(OLECHAR));
        stat->pwcsName[e.name.size()] = 0;
    }
    stat->type = e.type == detail::TypeStream ? STGTY_STREAM : STGTY_STORAGE;
    stat->cbSize.QuadPart = e.type == detail::TypeStream ? size : 0;
    stat->mtime.dwLowDateTime = static_cast<DWORD>(e.modified);
    stat->mtime.dwHighDateTime = static_cast<DWORD>(e.modified >> 32);
    stat->ctime.dwLowDateTime = static_cast<DWORD>(e.created);
    stat->ctime.dwHighDateTime = static_cast<DWORD>(e.created >> 32);
    stat->grfMode = mode;
    std::memcpy(&stat->clsid, e.clsid, 16);
    stat->grfStateBits = e.stateBits;
}

// What every object of one file shares: the file, its entry, the generation it was opened in.
class Element {
protected:
    Element(std::shared_ptr<CompoundFile> file, std::uint32_t entry, DWORD mode, bool root)
        : m_file(std::move(file)), m_entry(entry), m_mode(mode), m_root(root),
          m_generation(m_file->Generation()) {}
    // Objects below the root die with a revert; the root stays, on the reverted state.
    HRESULT CheckAlive() const {
        if (!m_root && m_file->Generation() != m_generation)
            return Report(STG_E_REVERTED,
                          "compound file: the element was opened before a revert or failed commit");
        if (!m_file->Usable())
            return Report(STG_E_REVERTED, "compound file: the file could not be read back");
        return S_OK;
    }
    HRESULT CheckWrite() const {
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        if (!Writes(m_mode) || !m_file->Writable())
            return Report(STG_E_ACCESSDENIED,
                          "compound file: the element is open for reading only");
        return S_OK;
    }
    HRESULT FromFile(HRESULT hr) const {
        if (FAILED(hr))
            return Report(hr, m_file->LastError());
        return Succeed();
    }

    std::shared_ptr<CompoundFile> m_file;
    std::uint32_t m_entry;
    DWORD m_mode;
    bool m_root;
    std::uint64_t m_generation;
    ULONG m_refs = 1;
};

class CompoundStream final : public IStream, Element {
public:
    CompoundStream(std::shared_ptr<CompoundFile> file, std::uint32_t entry, DWORD mode)
        : Element(std::move(file), entry, mode, false) {
        m_file->MarkOpen(entry);
    }
    ~CompoundStream() override {
        if (m_file->Generation() == m_generation) {
            m_file->CloseStream(m_entry);
            m_file->MarkClosed(m_entry);
        }
    }
    ULONG AddRef() override { return ++m_refs; }
    ULONG Release() override {
        const ULONG left = --m_refs;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT Read(void* pv, ULONG cb, ULONG* pcbRead) override {
        if (pcbRead)
            *pcbRead = 0;
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        if (!pv && cb)
            return Report(STG_E_INVALIDPOINTER, "compound file: no buffer to read into");
        std::size_t got = 0;
        if (HRESULT hr = m_file->ReadStream(m_entry, m_pos, pv, cb, got); FAILED(hr))
            return FromFile(hr);
        m_pos += got;
        if (pcbRead)
            *pcbRead = static_cast<ULONG>(got);
        return Succeed();
    }
    HRESULT Write(const void* pv, ULONG cb, ULONG* pcbWritten) override {
        if (pcbWritten)
            *pcbWritten = 0;
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        if (!pv && cb)
            return Report(STG_E_INVALIDPOINTER, "compound file: no data to write");
        if (HRESULT hr = m_file->WriteStream(m_entry, m_pos, pv, cb); FAILED(hr))
            return FromFile(hr);
        m_pos += cb;
        if (pcbWritten)
            *pcbWritten = cb;
        return Succeed();
    }
    HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) override {
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        LONGLONG base = origin == STREAM_SEEK_SET   ? 0
                        : origin == STREAM_SEEK_CUR ? static_cast<LONGLONG>(m_pos)
                        : origin == STREAM_SEEK_END
                            ? static_cast<LONGLONG>(m_file->StreamSize(m_entry))
                            : -1;
        if (base < 0)
            return Report(STG_E_INVALIDFUNCTION, "compound file: unknown seek origin");
        if (move.QuadPart < -base)
            return Report(STG_E_INVALIDFUNCTION, "compound file: seek before the stream's start");
        m_pos = static_cast<std::uint64_t>(base + move.QuadPart);
        if (newPosition)
            newPosition->QuadPart = m_pos;
        return Succeed();
    }
    HRESULT SetSize(ULARGE_INTEGER size) override {
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        return FromFile(m_file->SetStreamSize(m_entry, size.QuadPart));
    }
    HRESULT Commit(DWORD) override {
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        return FromFile(m_file->FlushStream(m_entry));
    }
    HRESULT Stat(STATSTG* stat, DWORD flag) override {
        if (!stat)
            return Report(STG_E_INVALIDPOINTER, "compound file: no STATSTG to fill");
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        FillStat(m_file->Entry(m_entry), m_file->StreamSize(m_entry), m_mode, flag, stat);
        return Succeed();
    }

private:
    std::uint64_t m_pos = 0;
};

class StatEnumerator final : public IEnumSTATSTG {
public:
    explicit StatEnumerator(std::vector<STATSTG> items) : m_items(std::move(items)) {}
    ~StatEnumerator() override {
        for (STATSTG& item : m_items)
            CoTaskMemFree(item.pwcsName);
    }
    ULONG AddRef() override { return ++m_refs; }
    ULONG Release() override {
        const ULONG left = --m_refs;
        if (left == 0)
            delete this;
        return left;
    }
    HRESULT Next(ULONG count, STATSTG* out, ULONG* fetched) override {
        ULONG n = 0;
        for (; n < count && m_next < m_items.size(); ++n, ++m_next) {
            out[n] = m_items[m_next];
            const std::size_t length = std::char_traits<char16_t>::length(m_items[m_next].pwcsName);
            out[n].pwcsName = static_cast<LPOLESTR>(CoTaskMemAlloc((length + 1) * sizeof(OLECHAR)));
            std::memcpy(out[n].pwcsName, m_items[m_next].pwcsName, (length + 1) * sizeof(OLECHAR));
        }
        if (fetched)
            *fetched = n;
        return n == count ? S_OK : S_FALSE;
    }
    HRESULT Skip(ULONG count) override {
        const std::size_t left = m_items.size() - m_next;
        m_next += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT Reset() override {
        m_next = 0;
        return S_OK;
    }

private:
    std::vector<STATSTG> m_items;
    std::size_t m_next = 0;
    ULONG m_refs = 1;
};

class CompoundStorage final : public IStorage, Element {
public:
    CompoundStorage(std::shared_ptr<CompoundFile> file, std::uint32_t entry, DWORD mode, bool root)
        : Element(std::move(file), entry, mode, root) {
        if (!root)
            m_file->MarkOpen(entry);
    }
    ~CompoundStorage() override {
        const bool scratch = m_root && !m_deleteOnRelease.empty();
        if (m_root && !scratch && Writes(m_mode) && !(m_mode & STGM_TRANSACTED) &&
            m_file->Writable())
            m_file->Commit(true); // a direct-mode root keeps what was written
        if (!m_root && m_file->Generation() == m_generation)
            m_file->MarkClosed(m_entry);
        if (scratch)
            ::unlink(m_deleteOnRelease.c_str());
    }
    // With STGM_DELETEONRELEASE: the file to remove when the root goes.
    void DeleteOnRelease(const std::string& path) { m_deleteOnRelease = path; }
    ULONG AddRef() override { return ++m_refs; }
    ULONG Release() override {
        const ULONG left = --m_refs;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT CreateStream(LPCOLESTR name, DWORD mode, DWORD, DWORD, IStream** out) override {
        return CreateElement(name, mode, detail::TypeStream, reinterpret_cast<void**>(out));
    }
    HRESULT OpenStream(LPCOLESTR name, void*, DWORD mode, DWORD, IStream** out) override {
        return OpenElement(name, mode, detail::TypeStream, reinterpret_cast<void**>(out));
    }
    HRESULT CreateStorage(LPCOLESTR name, DWORD mode, DWORD, DWORD, IStorage** out) override {
        return CreateElement(name, mode, detail::TypeStorage, reinterpret_cast<void**>(out));
    }
    HRESULT OpenStorage(LPCOLESTR name, IStorage*, DWORD mode, LPOLESTR*, DWORD,
                        IStorage** out) override {
        return OpenElement(name, mode, detail::TypeStorage, reinterpret_cast<void**>(out));
    }
    HRESULT Commit(DWORD flags) override {
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        if (!m_root || !Writes(m_mode))
            return Succeed();
        // A scratch file never outlives the process: its commits keep their order of writes
        // but do not wait for the disk.
        const bool flush =
            !(flags & STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE) && !(m_mode & STGM_DELETEONRELEASE);
        return FromFile(m_file->Commit(flush));
    }
    HRESULT Revert() override {
        if (HRESULT hr = CheckAlive(); FAILED(hr))
            return hr;
        if (!m_root || !Writes(m_mode))
            return Succeed();
        HRESULT hr = FromFile(m_file->Revert());
        m_generation = m_file->Generation();
        return hr;
    }
    HRESULT EnumElements(DWORD, void*, DWORD, IEnumSTATSTG** out) override {
        if (!out)
            return Report(STG_E_INVALIDPOINTER, "compound file: no place for the enumerator");
        *out = nullptr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        std::vector<STATSTG> items;
        for (std::uint32_t id : m_file->Children(m_entry)) {
            STATSTG stat;
            FillStat(m_file->Entry(id), m_file->StreamSize(id), 0, STATFLAG_DEFAULT, &stat);
            items.push_back(stat);
        }
        *out = new StatEnumerator(std::move(items));
        return Succeed();
    }
    HRESULT DestroyElement(LPCOLESTR name) override {
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        if (!name)
            return Report(STG_E_INVALIDPOINTER, "compound file: no name");
        const std::uint32_t id = m_file->FindChild(m_entry, NameOf(name));
        if (id == NoStream)
            return Report(STG_E_FILENOTFOUND, "compound file: no element of that name");
        if (OpenBelow(id))
            return Report(STG_E_ACCESSDENIED,
                          "compound file: the element or one inside it is open");
        return FromFile(m_file->RemoveChild(m_entry, id));
    }
    HRESULT RenameElement(LPCOLESTR oldName, LPCOLESTR newName) override {
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        if (!oldName || !newName)
            return Report(STG_E_INVALIDPOINTER, "compound file: no name");
        const std::uint32_t id = m_file->FindChild(m_entry, NameOf(oldName));
        if (id == NoStream)
            return Report(STG_E_FILENOTFOUND, "compound file: no element of that name");
        if (m_file->IsOpen(id))
            return Report(STG_E_ACCESSDENIED, "compound file: the element is open");
        return FromFile(m_file->RenameChild(m_entry, id, NameOf(newName)));
    }
    HRESULT SetClass(const CLSID& clsid) override {
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        std::uint8_t bytes[16];
        detail::Put32(bytes, clsid.Data1);
        detail::Put16(bytes + 4, clsid.Data2);
        detail::Put16(bytes + 6, clsid.Data3);
        std::memcpy(bytes + 8, clsid.Data4, 8);
        m_file->SetClass(m_entry, bytes);
        return Succeed();
    }
    HRESULT Stat(STATSTG* stat, DWORD flag) override {
        if (!stat)
            return Report(STG_E_INVALIDPOINTER, "compound file: no STATSTG to fill");
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        FillStat(m_file->Entry(m_entry), 0, m_mode, flag, stat);
        std::uint8_t bytes[16];
        std::memcpy(bytes, m_file->Entry(m_entry).clsid, 16);
        stat->clsid.Data1 = detail::Get32(bytes);
        stat->clsid.Data2 = detail::Get16(bytes + 4);
        stat->clsid.Data3 = detail::Get16(bytes + 6);
        std::memcpy(stat->clsid.Data4, bytes + 8, 8);
        return Succeed();
    }

private:
    std::string m_deleteOnRelease;
    HRESULT Usable() const { return CheckAlive(); }
    bool OpenBelow(std::uint32_t id) const {
        if (m_file->IsOpen(id))
            return true;
        for (std::uint32_t child : m_file->Children(id))
            if (OpenBelow(child))
                return true;
        return false;
    }
    HRESULT CreateElement(LPCOLESTR name, DWORD mode, std::uint8_t type, void** out) {
        if (!out)
            return Report(STG_E_INVALIDPOINTER, "compound file: no place for the new element");
        *out = nullptr;
        if (!name)
            return Report(STG_E_INVALIDPOINTER, "compound file: no name");
        if (HRESULT hr = CheckChildMode(mode); FAILED(hr))
            return hr;
        if (HRESULT hr = CheckWrite(); FAILED(hr))
            return hr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        const std::u16string_view key = NameOf(name);
        const std::uint32_t existing = m_file->FindChild(m_entry, key);
        if (existing != NoStream) {
            if (!(mode & STGM_CREATE))
                return Report(STG_E_FILEALREADYEXISTS,
                              "compound file: the storage already holds an element of that name");
            if (OpenBelow(existing))
                return Report(STG_E_ACCESSDENIED, "compound file: the element to replace is open");
            m_file->RemoveChild(m_entry, existing);
        }
        std::uint32_t id = 0;
        if (HRESULT hr = m_file->AddChild(m_entry, key, type, id); FAILED(hr))
            return FromFile(hr);
        if (type == detail::TypeStream) {
            if (HRESULT hr = m_file->OpenStream(id); FAILED(hr))
                return FromFile(hr);
            *out = static_cast<IStream*>(new CompoundStream(m_file, id, mode));
        } else {
            *out = static_cast<IStorage*>(new CompoundStorage(m_file, id, mode, false));
        }
        return Succeed();
    }
    HRESULT OpenElement(LPCOLESTR name, DWORD mode, std::uint8_t type, void** out) {
        if (!out)
            return Report(STG_E_INVALIDPOINTER, "compound file: no place for the element");
        *out = nullptr;
        if (!name)
            return Report(STG_E_INVALIDPOINTER, "compound file: no name");
        if (HRESULT hr = CheckChildMode(mode); FAILED(hr))
            return hr;
        if (HRESULT hr = Usable(); FAILED(hr))
            return hr;
        if (mode & STGM_CREATE)
            return Report(STG_E_INVALIDFLAG, "compound file: STGM_CREATE does not open");
        if (Writes(mode) && (!Writes(m_mode) || !m_file->Writable()))
            return Report(STG_E_ACCESSDENIED,
                          "compound file: cannot open for writing inside an element open to read");
        const std::uint32_t id = m_file->FindChild(m_entry, NameOf(name));
        if (id == NoStream || m_file->Entry(id).type != type)
            return Report(STG_E_FILENOTFOUND, type == detail::TypeStream
                                                  ? "compound file: no stream of that name"
                                                  : "compound file: no storage of that name");
        if (m_file->IsOpen(id))
            return Report(STG_E_ACCESSDENIED, "compound file: the element is open already");
        if (type == detail::TypeStream) {
            if (HRESULT hr = m_file->OpenStream(id); FAILED(hr))
                return FromFile(hr);
            *out = static_cast<IStream*>(new CompoundStream(m_file, id, mode));
        } else {
            *out = static_cast<IStorage*>(new CompoundStorage(m_file, id, mode, false));
        }
        return Succeed();
    }
};

} // namespace

const std::string& StorageErrorText() {
    return t_error;
}

void* CoTaskMemAlloc(std::size_t size) {
    return std::malloc(size == 0 ? 1 : size);
}

void CoTaskMemFree(void* memory) {
    std::free(memory);
}

int CompareElementNames(std::u16string_view a, std::u16string_view b) {
    return detail::CompareNames(a, b);
}

std::u16string ElementName(std::string_view text) {
    return platform::ToWide(text);
}

std::string ElementNameText(std::u16string_view name) {
    return platform::FromWide(name);
}

HRESULT StgCreateDocfile(const char* path, DWORD mode, DWORD, IStorage** out) {
    if (!out)
        return Report(STG_E_INVALIDPOINTER, "compound file: no place for the storage");
    *out = nullptr;
    if (!path || !*path)
        return Report(STG_E_INVALIDNAME, "compound file: no file name");
    if (!Writes(mode))
        return Report(STG_E_INVALIDFLAG, "compound file: a new file is opened for writing");
    HRESULT hr = S_OK;
    std::string error;
    auto bytes = detail::OpenFileBytes(path, true, true, !(mode & STGM_CREATE), hr, error,
                                       (mode & STGM_DELETEONRELEASE) != 0);
    if (!bytes)
        return Report(hr, error);
    std::shared_ptr<CompoundFile> file;
    hr = CompoundFile::Create(std::move(bytes), file, error, !(mode & STGM_DELETEONRELEASE));
    if (FAILED(hr))
        return Report(hr, error);
    auto* root = new CompoundStorage(file, 0, mode, true);
    if (mode & STGM_DELETEONRELEASE)
        root->DeleteOnRelease(path);
    *out = root;
    return Succeed();
}

HRESULT StgOpenStorage(const char* path, IStorage*, DWORD mode, LPOLESTR*, DWORD, IStorage** out) {
    if (!out)
        return Report(STG_E_INVALIDPOINTER, "compound file: no place for the storage");
    *out = nullptr;
    if (!path || !*path)
        return Report(STG_E_INVALIDNAME, "compound file: no file name");
    if ((mode & 3) == 3)
        return Report(STG_E_INVALIDFLAG, "compound file: access mode 3 is not valid");
    HRESULT hr = S_OK;
    std::string error;
    auto bytes = detail::OpenFileBytes(path, Writes(mode), false, false, hr, error);
    if (!bytes)
        return Report(hr, error);
    std::shared_ptr<CompoundFile> file;
    hr = CompoundFile::Open(std::move(bytes), file, error);
    if (FAILED(hr))
        return Report(hr, error + " ('" + path + "')");
    *out = new CompoundStorage(file, 0, mode, true);
    return Succeed();
}

HRESULT StgOpenStorageOnMemory(std::string_view data, IStorage** out) {
    if (!out)
        return Report(STG_E_INVALIDPOINTER, "compound file: no place for the storage");
    *out = nullptr;
    std::shared_ptr<CompoundFile> file;
    std::string error;
    HRESULT hr = CompoundFile::Open(detail::MemoryBytes(std::string(data), false), file, error);
    if (FAILED(hr))
        return Report(hr, error);
    *out = new CompoundStorage(file, 0, STGM_READ, true);
    return Succeed();
}

HRESULT StgIsStorageFile(const char* path) {
    HRESULT hr = S_OK;
    std::string error;
    auto bytes = detail::OpenFileBytes(path ? path : "", false, false, false, hr, error);
    if (!bytes)
        return Report(hr, error);
    std::uint8_t signature[8];
    if (!bytes->ReadAt(0, signature, 8) ||
        std::memcmp(signature, detail::Signature, sizeof signature) != 0)
        return S_FALSE;
    return S_OK;
}

} // namespace talvor::platform::storage
