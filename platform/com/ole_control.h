// The interfaces by which a control describes itself to a property grid: its class
// (IProvideClassInfo), value lists and pages per property (IPerPropertyBrowsing) and property
// categories (ICategorizeProperties).
#pragma once

#include "platform/com/type_info.h"

using PROPCAT = int;
constexpr PROPCAT PROPCAT_Nil = -1;
constexpr PROPCAT PROPCAT_Misc = -2;
constexpr PROPCAT PROPCAT_Font = -3;
constexpr PROPCAT PROPCAT_Position = -4;
constexpr PROPCAT PROPCAT_Appearance = -5;
constexpr PROPCAT PROPCAT_Behavior = -6;
constexpr PROPCAT PROPCAT_Data = -7;
constexpr PROPCAT PROPCAT_List = -8;
constexpr PROPCAT PROPCAT_Text = -9;
constexpr PROPCAT PROPCAT_Scale = -10;
constexpr PROPCAT PROPCAT_DDE = -11;

// Counted arrays whose elements and block the receiver frees with CoTaskMemFree.
struct CALPOLESTR {
    ULONG cElems;
    LPOLESTR* pElems;
};
struct CADWORD {
    ULONG cElems;
    DWORD* pElems;
};

class IProvideClassInfo : public IUnknown {
public:
    // The coclass's type information, with a reference for the caller.
    virtual HRESULT GetClassInfo(ITypeInfo** typeInfo) = 0;
};

class IPerPropertyBrowsing : public IUnknown {
public:
    virtual HRESULT GetDisplayString(DISPID id, BSTR* text) = 0;
    // S_OK with the page's class, or PERPROP_E_NOPAGEAVAILABLE.
    virtual HRESULT MapPropertyToPage(DISPID id, CLSID* page) = 0;
    // S_OK with strings and cookies of equal count, or E_NOTIMPL / S_FALSE for no list.
    virtual HRESULT GetPredefinedStrings(DISPID id, CALPOLESTR* strings, CADWORD* cookies) = 0;
    virtual HRESULT GetPredefinedValue(DISPID id, DWORD cookie, VARIANT* value) = 0;
};

class ICategorizeProperties : public IUnknown {
public:
    virtual HRESULT MapPropertyToCategory(DISPID id, PROPCAT* category) = 0;
    virtual HRESULT GetCategoryName(PROPCAT category, LCID lcid, BSTR* name) = 0;
};

constexpr HRESULT PERPROP_E_NOPAGEAVAILABLE = static_cast<HRESULT>(0x80040200u);
