// CArchive in the framework's published binary form: little-endian primitives, strings with
// their length prefix, counts, and objects with new-class / class-index / object-index tags and
// schema numbers. A stream that ends early, names an unknown class or refers to an object that
// does not exist throws CArchiveException; reads never go past the data.
#pragma once

#include "platform/codepage/code_page.h"
#include "platform/files/exceptions.h"
#include "platform/files/file.h"
#include "platform/files/runtime_class.h"
#include "platform/strings/cstring.h"

#include <cstring>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class CArchive {
public:
    enum Mode : UINT { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

    CArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);
    // A storing archive that was not closed writes what it holds.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_nMode & load) != 0; }
    BOOL IsStoring() const { return (m_nMode & load) == 0; }
    CFile* GetFile() const { return m_pFile; }
    UINT GetObjectSchema();
    void SetObjectSchema(UINT schema) { m_nObjectSchema = schema; }

    // Raw bytes. Read returns how many it got (fewer at the end of the data).
    UINT Read(void* buffer, UINT count);
    void Write(const void* buffer, UINT count) {
        // Most writes are a few bytes into a buffer with room: no call for them. A loading
        // archive, or one without a file, has no room and goes through the checks.
        if (count < static_cast<std::size_t>(m_storeEnd - m_storeNext)) {
            if (count != 0) // buffer may be null then
                std::memcpy(m_storeNext, buffer, count);
            m_storeNext += count;
            return;
        }
        WriteThrough(buffer, count);
    }
    void Flush();
    void Close();
    void Abort();

    // Text lines: WriteString writes the text as it is; ReadString reads up to a line feed and
    // drops the "\r\n" or "\n"; FALSE at the end of the data.
    void WriteString(const char* text);
    BOOL ReadString(CString& text);

    void WriteCount(DWORD_PTR count);
    DWORD_PTR ReadCount();

    void WriteObject(const CObject* object);
    // Reads an object (or a reference to one read before); throws badClass when it is not of
    // requiredClass (when given), badIndex for a reference to nothing.
    CObject* ReadObject(const CRuntimeClass* requiredClass);
    void WriteClass(const CRuntimeClass* classRef);
    const CRuntimeClass* ReadClass(const CRuntimeClass* requiredClass = nullptr,
                                   UINT* schema = nullptr, DWORD* objectTag = nullptr);

    CArchive& operator<<(BYTE value) { return WriteValue(value); }
    CArchive& operator<<(WORD value) { return WriteValue(value); }
    CArchive& operator<<(LONG value) { return WriteValue(value); }
    CArchive& operator<<(DWORD value) { return WriteValue(value); }
    CArchive& operator<<(LONGLONG value) { return WriteValue(value); }
    CArchive& operator<<(ULONGLONG value) { return WriteValue(value); }
    CArchive& operator<<(float value) { return WriteValue(value); }
    CArchive& operator<<(double value) { return WriteValue(value); }
    CArchive& operator<<(SHORT value) { return WriteValue(value); }
    CArchive& operator<<(char value) { return WriteValue(value); }
    CArchive& operator<<(bool value) { return WriteValue(static_cast<BYTE>(value ? 1 : 0)); }
    CArchive& operator<<(const CString& text) {
        // A short string into a buffer with room: length byte and text in one step.
        const std::size_t length = static_cast<std::size_t>(text.GetLength());
        if (length < 255 && length + 1 < static_cast<std::size_t>(m_storeEnd - m_storeNext)) {
            *m_storeNext = static_cast<char>(length);
            CopyShort(m_storeNext + 1, text.GetString(), length);
            m_storeNext += length + 1;
            return *this;
        }
        return WriteStringThrough(text);
    }
    CArchive& operator<<(const CObject* object) {
        WriteObject(object);
        return *this;
    }

    CArchive& operator>>(BYTE& value) { return ReadValue(value); }
    CArchive& operator>>(WORD& value) { return ReadValue(value); }
    CArchive& operator>>(LONG& value) { return ReadValue(value); }
    CArchive& operator>>(DWORD& value) { return ReadValue(value); }
    CArchive& operator>>(LONGLONG& value) { return ReadValue(value); }
    CArchive& operator>>(ULONGLONG& value) { return ReadValue(value); }
    CArchive& operator>>(float& value) { return ReadValue(value); }
    CArchive& operator>>(double& value) { return ReadValue(value); }
    CArchive& operator>>(SHORT& value) { return ReadValue(value); }
    CArchive& operator>>(char& value) { return ReadValue(value); }
    CArchive& operator>>(bool& value);
    CArchive& operator>>(CString& text);
    CArchive& operator>>(CObject*& object) {
        object = ReadObject(nullptr);
        return *this;
    }

    // The largest string or count the reader accepts before it checks for the data; longer ones
    // are read in pieces so a damaged length can't make it allocate more than the file holds.
    static constexpr UINT ReadChunk = 1u << 16;

private:
    // Copies a few bytes without a call into the library: two overlapping moves of a fixed
    // width cover every length up to twice that width. Most strings of a form are short.
    static void CopyShort(char* to, const char* from, std::size_t n) {
        if (n >= 16) {
            if (n > 32) {
                std::memcpy(to, from, n);
                return;
            }
            std::memcpy(to, from, 16);
            std::memcpy(to + n - 16, from + n - 16, 16);
        } else if (n >= 8) {
            std::memcpy(to, from, 8);
            std::memcpy(to + n - 8, from + n - 8, 8);
        } else if (n >= 4) {
            std::memcpy(to, from, 4);
            std::memcpy(to + n - 4, from + n - 4, 4);
        } else if (n > 0) {
            to[0] = from[0];
            to[n / 2] = from[n / 2];
            to[n - 1] = from[n - 1];
        }
    }
    template <class T> CArchive& WriteValue(T value) {
        unsigned char bytes[sizeof(T)];
        std::memcpy(bytes, &value, sizeof(T)); // the platforms we build for are little-endian
        Write(bytes, sizeof(T));               // a loading archive refuses it there
        return *this;
    }
    // Write for a loading archive (refused), a buffer without room, or no file.
    void WriteThrough(const void* buffer, UINT count);
    CArchive& WriteStringThrough(const CString& text);
    std::size_t Stored() const { return static_cast<std::size_t>(m_storeNext - m_store.get()); }
    template <class T> CArchive& ReadValue(T& value) {
        CheckMode(true);
        unsigned char bytes[sizeof(T)];
        ReadExactly(bytes, sizeof(T));
        std::memcpy(&value, bytes, sizeof(T));
        return *this;
    }
    void CheckMode(bool loading) const;
    void ReadExactly(void* buffer, UINT count);
    void FillBuffer();
    CString FileName() const;

    CFile* m_pFile;
    UINT m_nMode;
    UINT m_nObjectSchema = static_cast<UINT>(-1);
    bool m_closed = false;
    std::string m_buffer;        // loading: bytes read ahead
    std::size_t m_bufferPos = 0; // loading: next byte of m_buffer to hand out
    std::size_t m_bufferSize;
    // Storing: bytes not yet written, from m_store to m_storeNext; m_storeEnd ends the
    // buffer. All three are null for a loading archive and one without a file.
    std::unique_ptr<char[]> m_store;
    char* m_storeNext = nullptr;
    char* m_storeEnd = nullptr;
    // Shared index space of classes and objects, as the binary form numbers them; index 0 is
    // the null object.
    std::unordered_map<const void*, DWORD> m_storeMap;
    DWORD m_storeCount = 1;
    std::vector<const CRuntimeClass*> m_loadClasses; // same index as m_loadObjects
    std::vector<CObject*> m_loadObjects;
};
