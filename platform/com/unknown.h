// IUnknown, the root of every interface: reference counting and QueryInterface. The identifiers
// of the interfaces this platform knows are the published ones.
#pragma once

#include "platform/com/guid.h"
#include "platform/com/hresult.h"

#include <atomic>

class IUnknown {
public:
    // S_OK and an added reference in *object, or E_NOINTERFACE and null; E_POINTER for a null
    // out pointer.
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    virtual ~IUnknown() = default;
};
using LPUNKNOWN = IUnknown*;

extern const IID IID_IUnknown;              // {00000000-0000-0000-C000-000000000046}
extern const IID IID_IDispatch;             // {00020400-0000-0000-C000-000000000046}
extern const IID IID_ITypeInfo;             // {00020401-0000-0000-C000-000000000046}
extern const IID IID_ITypeLib;              // {00020402-0000-0000-C000-000000000046}
extern const IID IID_ITypeComp;             // {00020403-0000-0000-C000-000000000046}
extern const IID IID_IEnumVARIANT;          // {00020404-0000-0000-C000-000000000046}
extern const IID IID_IClassFactory;         // {00000001-0000-0000-C000-000000000046}
extern const IID IID_IProvideClassInfo;     // {B196B283-BAB4-101A-B69C-00AA00341D07}
extern const IID IID_IPerPropertyBrowsing;  // {376BD3AA-3845-101B-84ED-08002B2EC713}
extern const IID IID_ICategorizeProperties; // {4D07FC10-F931-11CE-B001-00AA006884E5}
extern const IID IID_IFontDisp;             // {BEF6E003-A874-101A-8BBA-00AA00300CAB}
extern const IID IID_IPictureDisp;          // {7BF80981-BF32-101A-8BBB-00AA00300CAB}
extern const GUID GUID_OLE_COLOR;           // {66504301-BE0F-101A-8BBB-00AA00300CAB}
extern const GUID LIBID_STDOLE2;            // {00020430-0000-0000-C000-000000000046}

namespace talvor::platform {

// The reference count of an object that implements one or more interfaces: the object
// deletes itself when the count reaches zero. It starts at one for the creator.
class RefCount {
public:
    ULONG Add() { return ++m_count; }
    // True when the last reference has gone.
    bool Drop(ULONG& remaining) {
        remaining = --m_count;
        return remaining == 0;
    }

private:
    std::atomic<ULONG> m_count{1};
};

// Releases an interface pointer at the end of a scope; Detach hands the reference on.
template <class T> class ComPtr {
public:
    ComPtr() = default;
    explicit ComPtr(T* p) : m_p(p) {} // takes over a reference
    ComPtr(const ComPtr& other) : m_p(other.m_p) {
        if (m_p)
            m_p->AddRef();
    }
    ComPtr& operator=(ComPtr other) {
        std::swap(m_p, other.m_p);
        return *this;
    }
    ~ComPtr() {
        if (m_p)
            m_p->Release();
    }
    T* Get() const { return m_p; }
    T* operator->() const { return m_p; }
    explicit operator bool() const { return m_p != nullptr; }
    T** Out() {
        Reset();
        return &m_p;
    }
    void Reset() {
        if (m_p)
            m_p->Release();
        m_p = nullptr;
    }
    T* Detach() {
        T* p = m_p;
        m_p = nullptr;
        return p;
    }

private:
    T* m_p = nullptr;
};

} // namespace talvor::platform
