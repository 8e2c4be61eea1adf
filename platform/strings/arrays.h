// The framework's growing arrays: CArray<TYPE, ARG_TYPE>, CStringArray, CPtrArray and friends.
// Indices are int-sized as in the framework; an index outside the array is a caller's fault
// that asserts in debug builds and is ignored (or gives a default value) otherwise, never a
// read or write outside the storage.
#pragma once

#include "platform/strings/cstring.h"

#include <cassert>
#include <cstdint>
#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&> class CArray {
public:
    CArray() = default;
    virtual ~CArray() = default;
    CArray(const CArray& other) : m_data(other.begin(), other.end()), m_growBy(other.m_growBy) {}
    CArray& operator=(const CArray& other) {
        if (this != &other) {
            m_data.assign(other.begin(), other.end());
            m_front = 0;
            m_growBy = other.m_growBy;
            Touch();
        }
        return *this;
    }

    // A number that changes whenever the array may have changed: every call that changes it,
    // and every non-const access, which hands out a way to change it. Lets a reader keep
    // what it worked out of the array until the array changes.
    std::uint64_t GetVersion() const { return m_version; }

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size() - m_front); }
    INT_PTR GetCount() const { return GetSize(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return GetSize() == 0; }

    // Sets the size; new elements are value-initialised. growBy -1 keeps the growth setting,
    // so emptying an array with SetSize(0) or RemoveAll keeps it.
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) {
        if (growBy >= 0)
            m_growBy = growBy;
        if (newSize < 0)
            newSize = 0;
        Touch();
        Compact();
        m_data.resize(static_cast<std::size_t>(newSize));
    }
    INT_PTR GetGrowBy() const { return m_growBy; }
    void FreeExtra() {
        Touch();
        Compact();
        m_data.shrink_to_fit();
    }
    void RemoveAll() { SetSize(0, -1); }

    const TYPE& GetAt(INT_PTR index) const {
        assert(Valid(index) && "CArray::GetAt: index out of range");
        return Valid(index) ? Slot(index) : Fallback();
    }
    TYPE& GetAt(INT_PTR index) { return ElementAt(index); }
    void SetAt(INT_PTR index, ARG_TYPE element) {
        Touch();
        assert(Valid(index) && "CArray::SetAt: index out of range");
        if (Valid(index))
            Slot(index) = element;
    }
    TYPE& ElementAt(INT_PTR index) {
        Touch();
        assert(Valid(index) && "CArray::ElementAt: index out of range");
        if (!Valid(index)) {
            m_scratch = TYPE();
            return m_scratch;
        }
        return Slot(index);
    }
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    TYPE& operator[](INT_PTR index) { return ElementAt(index); }

    const TYPE* GetData() const { return m_data.data() + m_front; }
    TYPE* GetData() {
        Touch();
        return m_data.data() + m_front;
    }

    // Grows the array as needed so that index exists; a negative index is ignored.
    void SetAtGrow(INT_PTR index, ARG_TYPE element) {
        if (index < 0)
            return;
        Touch();
        if (index >= GetSize()) {
            TYPE copy = element; // element may refer into the array
            Compact();
            m_data.resize(static_cast<std::size_t>(index) + 1);
            m_data[static_cast<std::size_t>(index)] = copy;
            return;
        }
        Slot(index) = element;
    }
    INT_PTR Add(ARG_TYPE element) {
        Touch();
        m_data.push_back(element);
        return GetSize() - 1;
    }
    INT_PTR Append(const CArray& other) {
        INT_PTR old = GetSize();
        std::vector<TYPE> copy(other.begin(), other.end()); // other may be this array
        Touch();
        m_data.insert(m_data.end(), copy.begin(), copy.end());
        return old;
    }
    void Copy(const CArray& other) {
        if (this != &other) {
            Touch();
            m_data.assign(other.begin(), other.end());
            m_front = 0;
        }
    }

    // Inserts count copies at index; an index past the end grows the array to reach it.
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1) {
        if (index < 0 || count <= 0)
            return;
        TYPE copy = element;
        Touch();
        Compact();
        if (index >= GetSize())
            m_data.resize(static_cast<std::size_t>(index));
        m_data.insert(m_data.begin() + index, static_cast<std::size_t>(count), copy);
    }
    void InsertAt(INT_PTR startIndex, const CArray* other) {
        if (other == nullptr || startIndex < 0)
            return;
        std::vector<TYPE> copy(other->begin(), other->end());
        Touch();
        Compact();
        if (startIndex > GetSize())
            m_data.resize(static_cast<std::size_t>(startIndex));
        m_data.insert(m_data.begin() + startIndex, copy.begin(), copy.end());
    }
    // Removes count elements from index; the part outside the array is ignored.
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        assert(index >= 0 && count >= 0 && index + count <= GetSize() &&
               "CArray::RemoveAt: range out of the array");
        if (index < 0 || count <= 0 || index >= GetSize())
            return;
        INT_PTR end = index + count > GetSize() ? GetSize() : index + count;
        Touch();
        if (index == 0) {
            // Removing from the front only moves the start, so taking the first element and
            // appending it again (a move-to-back cache) costs no shift of the rest.
            for (INT_PTR i = 0; i < end; ++i)
                Slot(i) = TYPE();
            m_front += static_cast<std::size_t>(end);
            if (m_front > m_data.size() / 2)
                Compact();
            return;
        }
        m_data.erase(m_data.begin() + static_cast<std::ptrdiff_t>(m_front) + index,
                     m_data.begin() + static_cast<std::ptrdiff_t>(m_front) + end);
    }

    auto begin() {
        Touch();
        return m_data.begin() + static_cast<std::ptrdiff_t>(m_front);
    }
    auto end() {
        Touch();
        return m_data.end();
    }
    auto begin() const { return m_data.begin() + static_cast<std::ptrdiff_t>(m_front); }
    auto end() const { return m_data.end(); }

private:
    void Touch() { ++m_version; }
    TYPE& Slot(INT_PTR index) { return m_data[m_front + static_cast<std::size_t>(index)]; }
    const TYPE& Slot(INT_PTR index) const {
        return m_data[m_front + static_cast<std::size_t>(index)];
    }
    // Drops the removed elements in front, so the elements start at m_data[0] again.
    void Compact() {
        if (m_front == 0)
            return;
        m_data.erase(m_data.begin(), m_data.begin() + static_cast<std::ptrdiff_t>(m_front));
        m_front = 0;
    }
    bool Valid(INT_PTR index) const { return index >= 0 && index < GetSize(); }
    static const TYPE& Fallback() {
        static const TYPE value{};
        return value;
    }

    std::vector<TYPE> m_data; // the elements are m_data[m_front] onwards
    std::size_t m_front = 0;
    INT_PTR m_growBy = 0;
    std::uint64_t m_version = 0;
    TYPE m_scratch{};
};

class CStringArray : public CArray<CString, const CString&> {
public:
    using CArray::Add;
    INT_PTR Add(const char* text) { return CArray::Add(CString(text)); }
};

class CPtrArray : public CArray<void*, void*> {};
class CDWordArray : public CArray<DWORD, DWORD> {};
class CUIntArray : public CArray<UINT, UINT> {};
class CWordArray : public CArray<WORD, WORD> {};
class CByteArray : public CArray<BYTE, BYTE> {};
