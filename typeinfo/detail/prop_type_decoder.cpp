#include "typeinfo/detail/prop_type_decoder.h"

#include "host/ole/container.h"
#include "platform/com/bstr.h"

namespace talvor::typeinfo {
namespace {

// Deeper pointer chains than this are no real member's type; they end as kind 0.
constexpr int MaxPointerDepth = 32;

void Reset(PropTypeTarget target) {
    target.names.RemoveAll();
    target.values.RemoveAll();
    target.kind = VP_PROP_NONE;
}

void DecodeEnumeration(ITypeInfo* type, const TYPEATTR& attr, PropTypeTarget target) {
    target.kind = VP_PROP_ENUM;
    for (UINT i = 0; i < attr.cVars; ++i) {
        VARDESC* var = nullptr;
        if (FAILED(type->GetVarDesc(i, &var))) {
            target.kind = VP_PROP_NONE;
            return;
        }
        BSTR name = nullptr;
        UINT count = 0;
        const HRESULT hr = type->GetNames(var->memid, &name, 1, &count);
        if (FAILED(hr)) {
            type->ReleaseVarDesc(var);
            target.kind = VP_PROP_NONE;
            return;
        }
        target.names.Add(CString(platform::MultiByteFromWide(count ? name : nullptr).c_str()));
        if (count)
            SysFreeString(name);
        tagVARIANT value;
        VariantInit(&value);
        if (var->varkind == VAR_CONST && var->lpvarValue)
            value = *var->lpvarValue; // a bit copy, as callers expect
        target.values.Add(value);
        type->ReleaseVarDesc(var);
    }
}

void Decode(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc, PropTypeTarget target, int depth) {
    Reset(target);
    if (!typeDesc || depth > MaxPointerDepth)
        return;
    switch (typeDesc->vt) {
    case VT_I2:
    case VT_I4:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
        target.kind = VP_PROP_INTEGER;
        return;
    case VT_R4:
    case VT_R8:
    case VT_CY:
        target.kind = VP_PROP_REAL;
        return;
    case VT_DATE:
        target.kind = VP_PROP_DATE;
        return;
    case VT_BSTR:
    case VT_VARIANT:
    case VT_I1:
    case VT_UI1:
        target.kind = VP_PROP_TEXT;
        return;
    case VT_BOOL:
        target.kind = VP_PROP_BOOL;
        return;
    case VT_PTR:
        Decode(typeInfo, typeDesc->lptdesc, target, depth + 1);
        return;
    case VT_USERDEFINED:
        break;
    default:
        return;
    }
    if (!typeInfo)
        return;
    ITypeInfo* type = nullptr;
    if (FAILED(typeInfo->GetRefTypeInfo(typeDesc->hreftype, &type)))
        return;
    TYPEATTR* attr = nullptr;
    if (FAILED(type->GetTypeAttr(&attr))) {
        type->Release();
        return;
    }
    switch (attr->typekind) {
    case TKIND_ENUM:
        if (attr->guid == GUID_OLE_COLOR)
            target.kind = VP_PROP_COLOR;
        else
            DecodeEnumeration(type, *attr, target);
        break;
    case TKIND_ALIAS:
        if (attr->guid == GUID_OLE_COLOR)
            target.kind = VP_PROP_COLOR;
        else
            Decode(type, &attr->tdescAlias, target, depth + 1);
        break;
    case TKIND_DISPATCH:
        if (attr->guid == IID_IFontDisp)
            target.kind = VP_PROP_FONT;
        else if (attr->guid == IID_IPictureDisp)
            target.kind = VP_PROP_PICTURE;
        break;
    case TKIND_INTERFACE:
        target.kind = VP_PROP_OBJECT;
        AppendFormControlsWith(attr->guid, target);
        break;
    default:
        break;
    }
    type->ReleaseTypeAttr(attr);
    type->Release();
}

void FreeCounted(CALPOLESTR& strings, CADWORD& cookies) {
    for (ULONG i = 0; i < strings.cElems && strings.pElems; ++i)
        CoTaskMemFree(strings.pElems[i]);
    CoTaskMemFree(strings.pElems);
    CoTaskMemFree(cookies.pElems);
}

} // namespace

void DecodePropType(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc, PropTypeTarget target) {
    Decode(typeInfo, typeDesc, target, 0);
}

void AppendFormControlsWith(const GUID& iid, PropTypeTarget target) {
    CVXContainerDoc* form = VfxGetActiveContainerDoc();
    if (!form)
        return;
    CVXContainerItem* first = form->GetNextTabItem(nullptr);
    CVXContainerItem* item = first;
    while (item) {
        IUnknown* unknown = nullptr;
        if (!item->m_lpObject || FAILED(item->m_lpObject->QueryInterface(
                                     IID_IUnknown, reinterpret_cast<void**>(&unknown))))
            return;
        if (TVPfxCheckInterface(unknown, iid)) {
            target.names.Add(item->GetDisplayName());
            tagVARIANT empty;
            VariantInit(&empty);
            target.values.Add(empty);
        }
        unknown->Release();
        item = form->GetNextTabItem(item);
        if (item == first)
            break;
    }
}

void RefinePropType(IDispatch* dispatch, long dispId, PropTypeTarget target) {
    if (!dispatch || target.kind == VP_PROP_ENUM || target.kind == VP_PROP_NONE)
        return;
    target.names.RemoveAll();
    target.values.RemoveAll();
    IPerPropertyBrowsing* browsing = nullptr;
    if (FAILED(dispatch->QueryInterface(IID_IPerPropertyBrowsing,
                                        reinterpret_cast<void**>(&browsing))))
        return;
    CALPOLESTR strings{0, nullptr};
    CADWORD cookies{0, nullptr};
    if (browsing->GetPredefinedStrings(dispId, &strings, &cookies) != S_OK) {
        FreeCounted(strings, cookies);
        browsing->Release();
        return;
    }
    for (ULONG i = 0; i < cookies.cElems; ++i) {
        tagVARIANT value;
        VariantInit(&value);
        if (FAILED(browsing->GetPredefinedValue(dispId, cookies.pElems[i], &value))) {
            FreeCounted(strings, cookies);
            browsing->Release();
            return;
        }
        target.values.Add(value);
    }
    for (ULONG i = 0; i < strings.cElems; ++i)
        target.names.Add(CString(platform::MultiByteFromWide(strings.pElems[i]).c_str()));
    FreeCounted(strings, cookies);
    browsing->Release();
    if (target.names.GetSize() > 0 && target.names.GetSize() == target.values.GetSize())
        target.kind = VP_PROP_ENUM;
}

} // namespace talvor::typeinfo
