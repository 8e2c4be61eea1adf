// The framework's archive format. Tags: 0 null object, 0xFFFF new class, 0x8000|i class
// index i, i (< 0x7FFF) object index i, 0x7FFF followed by a DWORD for large indexes.
#include "platform/files/archive.h"

#include <algorithm>
#include <unordered_map>

namespace {
constexpr WORD NullTag = 0;
constexpr WORD NewClassTag = 0xFFFF;
constexpr WORD ClassTag = 0x8000;
constexpr DWORD BigClassTag = 0x80000000u;
constexpr WORD BigObjectTag = 0x7FFF;
constexpr DWORD MaxMapCount = 0x3FFFFFFE;
} // namespace

CArchive::CArchive(CFile* file, UINT mode, int bufferSize, void* /*buffer*/)
    : m_pFile(file), m_nMode(mode),
      m_bufferSize(bufferSize < 128 ? 128 : static_cast<std::size_t>(bufferSize)) {
    if (IsStoring() && m_pFile != nullptr) {
        m_store.reset(new char[m_bufferSize]);
        m_storeNext = m_store.get();
        m_storeEnd = m_storeNext + m_bufferSize;
    }
    m_loadClasses.push_back(nullptr);
    m_loadObjects.push_back(nullptr);
}

CArchive::~CArchive() {
    if (!m_closed && IsStoring() && m_pFile != nullptr) {
        try {
            Flush();
        } catch (CException* e) { // a destructor must not throw; the data is lost as it would be
            e->Delete();
        }
    }
}

CString CArchive::FileName() const {
    return m_pFile != nullptr ? m_pFile->GetFilePath() : CString();
}

void CArchive::CheckMode(bool loading) const {
    if (loading && !IsLoading())
        AfxThrowArchiveException(CArchiveException::writeOnly, FileName().GetString());
    if (!loading && IsLoading())
        AfxThrowArchiveException(CArchiveException::readOnly, FileName().GetString());
}

UINT CArchive::GetObjectSchema() {
    UINT schema = m_nObjectSchema;
    m_nObjectSchema = static_cast<UINT>(-1);
    return schema;
}

void CArchive::FillBuffer() {
    m_buffer.erase(0, m_bufferPos);
    m_bufferPos = 0;
    std::size_t have = m_buffer.size();
    m_buffer.resize(have + m_bufferSize);
    UINT got = m_pFile->Read(m_buffer.data() + have, static_cast<UINT>(m_bufferSize));
    m_buffer.resize(have + got);
}

UINT CArchive::Read(void* buffer, UINT count) {
    CheckMode(true);
    if (m_pFile == nullptr || count == 0)
        return 0;
    auto* out = static_cast<char*>(buffer);
    UINT done = 0;
    while (done < count) {
        if (m_bufferPos >= m_buffer.size()) {
            FillBuffer();
            if (m_buffer.empty())
                break;
        }
        std::size_t n = std::min<std::size_t>(count - done, m_buffer.size() - m_bufferPos);
        std::memcpy(out + done, m_buffer.data() + m_bufferPos, n);
        m_bufferPos += n;
        done += static_cast<UINT>(n);
    }
    return done;
}

void CArchive::ReadExactly(void* buffer, UINT count) {
    if (Read(buffer, count) != count)
        AfxThrowArchiveException(CArchiveException::endOfFile, FileName().GetString());
}

void CArchive::WriteThrough(const void* buffer, UINT count) {
    CheckMode(false);
    if (m_pFile == nullptr)
        return;
    const char* from = static_cast<const char*>(buffer);
    if (Stored() != 0) {
        // Only a write that fills the buffer comes here: fill it, write it, go on with the
        // rest.
        const std::size_t room = static_cast<std::size_t>(m_storeEnd - m_storeNext);
        std::memcpy(m_storeNext, from, room);
        m_storeNext = m_storeEnd;
        from += room;
        count -= static_cast<UINT>(room);
        Flush();
    }
    if (count >= m_bufferSize) {
        m_pFile->Write(from, count); // a large block needn't pass through the buffer
        return;
    }
    std::memcpy(m_storeNext, from, count);
    m_storeNext += count;
}

CArchive& CArchive::WriteStringThrough(const CString& text) {
    // Length prefix: one byte below 255, else 0xFF and a WORD below 0xFFFE, else 0xFFFF and a
    // DWORD, else 0xFFFFFFFF and a ULONGLONG. Strings are stored as 8-bit text.
    std::size_t length = static_cast<std::size_t>(text.GetLength());
    if (length < 255) {
        *this << static_cast<BYTE>(length);
    } else {
        *this << static_cast<BYTE>(0xFF);
        if (length < 0xFFFE) {
            *this << static_cast<WORD>(length);
        } else {
            *this << static_cast<WORD>(0xFFFF);
            if (length < 0xFFFFFFFFu)
                *this << static_cast<DWORD>(length);
            else
                *this << static_cast<DWORD>(0xFFFFFFFFu) << static_cast<ULONGLONG>(length);
        }
    }
    Write(text.GetString(), static_cast<UINT>(length));
    return *this;
}

void CArchive::Flush() {
    if (IsStoring() && m_pFile != nullptr && Stored() != 0) {
        // The buffer is emptied whether or not the write throws (nothing is written twice).
        const std::size_t stored = Stored();
        m_storeNext = m_store.get();
        m_pFile->Write(m_store.get(), static_cast<UINT>(stored));
    }
}

void CArchive::Close() {
    if (m_closed)
        return;
    Flush();
    m_closed = true;
}

void CArchive::Abort() {
    m_buffer.clear();
    m_storeNext = m_store.get();
    m_closed = true;
}

void CArchive::WriteString(const char* text) {
    if (text != nullptr)
        Write(text, static_cast<UINT>(std::strlen(text)));
}

BOOL CArchive::ReadString(CString& text) {
    text.Empty();
    std::string line;
    char c;
    bool any = false;
    while (Read(&c, 1) == 1) {
        any = true;
        if (c == '\n')
            break;
        line.push_back(c);
    }
    if (!any)
        return FALSE;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    text = CString(line);
    return TRUE;
}

void CArchive::WriteCount(DWORD_PTR count) {
    if (count < 0xFFFF) {
        *this << static_cast<WORD>(count);
        return;
    }
    *this << static_cast<WORD>(0xFFFF);
    if (count < 0xFFFFFFFFu) {
        *this << static_cast<DWORD>(count);
        return;
    }
    *this << static_cast<DWORD>(0xFFFFFFFFu) << static_cast<ULONGLONG>(count);
}

DWORD_PTR CArchive::ReadCount() {
    WORD small = 0;
    *this >> small;
    if (small != 0xFFFF)
        return small;
    DWORD medium = 0;
    *this >> medium;
    if (medium != 0xFFFFFFFFu)
        return medium;
    ULONGLONG large = 0;
    *this >> large;
    return static_cast<DWORD_PTR>(large);
}

CArchive& CArchive::operator>>(CString& text) {
    // The same prefix; 0xFF 0xFFFE marks a wide string whose length in characters follows.
    bool wide = false;
    ULONGLONG length = 0;
    for (;;) {
        BYTE b = 0;
        *this >> b;
        if (b < 0xFF) {
            length = b;
            break;
        }
        WORD w = 0;
        *this >> w;
        if (w == 0xFFFE) {
            if (wide) // a second marker is no string this archive wrote
                AfxThrowArchiveException(CArchiveException::genericException,
                                         FileName().GetString());
            wide = true;
            continue;
        }
        if (w < 0xFFFF) {
            length = w;
            break;
        }
        DWORD d = 0;
        *this >> d;
        if (d < 0xFFFFFFFFu) {
            length = d;
            break;
        }
        *this >> length;
        break;
    }
    ULONGLONG bytes = wide ? length * 2 : length;
    if (wide && bytes / 2 != length)
        AfxThrowArchiveException(CArchiveException::endOfFile, FileName().GetString());
    std::string data;
    while (data.size() < bytes) { // piecewise, so a damaged length can't allocate wildly
        UINT chunk = static_cast<UINT>(std::min<ULONGLONG>(ReadChunk, bytes - data.size()));
        std::size_t old = data.size();
        data.resize(old + chunk);
        ReadExactly(data.data() + old, chunk);
    }
    if (!wide) {
        text = CString(std::move(data));
        return *this;
    }
    std::u16string units(data.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<char16_t>(static_cast<unsigned char>(data[2 * i]) |
                                         (static_cast<unsigned char>(data[2 * i + 1]) << 8));
    text = CString(talvor::platform::FromWide(units));
    return *this;
}

CArchive& CArchive::operator>>(bool& value) {
    BYTE b = 0;
    *this >> b;
    value = b != 0;
    return *this;
}

void CArchive::WriteClass(const CRuntimeClass* classRef) {
    CheckMode(false);
    if (classRef == nullptr || classRef->m_wSchema == 0xFFFF)
        AfxThrowArchiveException(CArchiveException::badClass, FileName().GetString());
    auto found = m_storeMap.find(classRef);
    if (found != m_storeMap.end()) {
        DWORD index = found->second;
        if (index < BigObjectTag) {
            *this << static_cast<WORD>(ClassTag | index);
        } else {
            *this << BigObjectTag << static_cast<DWORD>(BigClassTag | index);
        }
        return;
    }
    *this << NewClassTag;
    classRef->Store(*this);
    if (m_storeCount > MaxMapCount)
        AfxThrowArchiveException(CArchiveException::badIndex, FileName().GetString());
    m_storeMap[classRef] = m_storeCount++;
}

void CArchive::WriteObject(const CObject* object) {
    CheckMode(false);
    if (object == nullptr) {
        *this << NullTag;
        return;
    }
    auto found = m_storeMap.find(object);
    if (found != m_storeMap.end()) {
        DWORD index = found->second;
        if (index < BigObjectTag) {
            *this << static_cast<WORD>(index);
        } else {
            *this << BigObjectTag << index;
        }
        return;
    }
    WriteClass(object->GetRuntimeClass());
    if (m_storeCount > MaxMapCount)
        AfxThrowArchiveException(CArchiveException::badIndex, FileName().GetString());
    m_storeMap[object] = m_storeCount++;
    const_cast<CObject*>(object)->Serialize(*this);
}

const CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* requiredClass, UINT* schema,
                                         DWORD* objectTag) {
    CheckMode(true);
    WORD tag = 0;
    *this >> tag;
    DWORD fullTag;
    if (tag == BigObjectTag) {
        *this >> fullTag;
    } else {
        fullTag = (static_cast<DWORD>(tag & ClassTag) << 16) | (tag & ~ClassTag);
    }
    if (tag != NewClassTag && !(fullTag & BigClassTag)) { // an object reference, not a class
        if (objectTag != nullptr)
            *objectTag = fullTag;
        return nullptr;
    }
    const CRuntimeClass* classRef;
    UINT storedSchema = 0;
    if (tag == NewClassTag) {
        classRef = CRuntimeClass::Load(*this, &storedSchema);
        if (classRef == nullptr)
            AfxThrowArchiveException(CArchiveException::badClass, FileName().GetString());
        if ((classRef->m_wSchema & ~VERSIONABLE_SCHEMA) != storedSchema &&
            !(classRef->m_wSchema & VERSIONABLE_SCHEMA))
            AfxThrowArchiveException(CArchiveException::badSchema, FileName().GetString());
        if (m_loadClasses.size() > MaxMapCount)
            AfxThrowArchiveException(CArchiveException::badIndex, FileName().GetString());
        m_loadClasses.push_back(classRef);
        m_loadObjects.push_back(nullptr);
    } else {
        DWORD index = fullTag & ~BigClassTag;
        if (index == 0 || index >= m_loadClasses.size() || m_loadClasses[index] == nullptr)
            AfxThrowArchiveException(CArchiveException::badIndex, FileName().GetString());
        classRef = m_loadClasses[index];
        storedSchema = classRef->m_wSchema & ~VERSIONABLE_SCHEMA;
    }
    if (requiredClass != nullptr && !classRef->IsDerivedFrom(requiredClass))
        AfxThrowArchiveException(CArchiveException::badClass, FileName().GetString());
    if (schema != nullptr)
        *schema = storedSchema;
    if (objectTag != nullptr)
        *objectTag = fullTag;
    return classRef;
}

CObject* CArchive::ReadObject(const CRuntimeClass* requiredClass) {
    UINT schema = 0;
    DWORD tag = 0;
    const CRuntimeClass* classRef = ReadClass(requiredClass, &schema, &tag);
    if (classRef == nullptr) {
        if (tag >= m_loadObjects.size() || (tag != 0 && m_loadObjects[tag] == nullptr))
            AfxThrowArchiveException(CArchiveException::badIndex, FileName().GetString());
        CObject* object = m_loadObjects[tag];
        if (object != nullptr && requiredClass != nullptr && !object->IsKindOf(requiredClass))
            AfxThrowArchiveException(CArchiveException::badClass, FileName().GetString());
        return object;
    }
    CObject* object = classRef->CreateObject();
    if (object == nullptr)
        AfxThrowArchiveException(CArchiveException::badClass, FileName().GetString());
    m_loadClasses.push_back(nullptr);
    m_loadObjects.push_back(object);
    UINT formerSchema = m_nObjectSchema;
    m_nObjectSchema = schema;
    try {
        object->Serialize(*this);
    } catch (...) {
        // The object is not handed out; forget and free it so nothing refers to freed memory.
        m_loadObjects.back() = nullptr;
        delete object;
        throw;
    }
    m_nObjectSchema = formerSchema;
    return object;
}
