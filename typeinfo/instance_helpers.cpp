#include "typeinfo/instance_helpers.h"

#include "platform/codepage/code_page.h"
#include "platform/com/bstr.h"
#include "platform/com/registry/com_registry.h"

#include "platform/window/registered_messages.h"

#include <cctype>

UINT g_nTalvorRegisteredMessage = RegisterWindowMessageA("E0C3625A-2006-41f2-8BC7-213A0719814A");

long TVPfxCreateInstance(wchar_t* clsid, wchar_t* iid, IDispatch** object) {
    if (!object)
        return 1;
    // Both identifiers pass through their 8-bit form, as the system reads them.
    const std::string clsidText = talvor::platform::MultiByteFromWide(clsid);
    const std::string iidText = talvor::platform::MultiByteFromWide(iid);
    CLSID classId = GUID_NULL;
    IID interfaceId = GUID_NULL;
    const std::wstring clsidWide = talvor::platform::WideFromMultiByte(clsidText);
    const std::wstring iidWide = talvor::platform::WideFromMultiByte(iidText);
    CLSIDFromString(clsidWide.c_str(), &classId);
    IUnknown* unknown = nullptr;
    if (FAILED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(&unknown))))
        return 1;
    CLSIDFromString(iidWide.c_str(), &interfaceId);
    const HRESULT hr = unknown->QueryInterface(interfaceId, reinterpret_cast<void**>(object));
    unknown->Release();
    return FAILED(hr) ? 1 : 0;
}

GUID TVPfxGetCLSID(const char* text) {
    GUID clsid = GUID_NULL;
    if (!text)
        return clsid;
    const std::wstring wide = talvor::platform::WideFromMultiByte(text);
    CLSIDFromString(wide.c_str(), &clsid);
    return clsid;
}

CString TVPfxGetCLSID(GUID clsid) {
    LPOLESTR text = nullptr;
    if (FAILED(StringFromCLSID(clsid, &text)))
        return CString();
    CString result(talvor::platform::MultiByteFromWide(text).c_str());
    CoTaskMemFree(text);
    return result;
}

int TVPfxGetPropCat(IDispatch* dispatch, long dispId) {
    PROPCAT category = -1;
    ICategorizeProperties* categorize = nullptr;
    if (dispatch && SUCCEEDED(dispatch->QueryInterface(IID_ICategorizeProperties,
                                                       reinterpret_cast<void**>(&categorize)))) {
        categorize->MapPropertyToCategory(dispId, &category);
        categorize->Release();
    }
    return category;
}

long TVPfxGetPropPageCLSID(IDispatch* dispatch, long dispId, GUID* page) {
    if (!dispatch)
        return E_POINTER;
    IPerPropertyBrowsing* browsing = nullptr;
    const HRESULT hr =
        dispatch->QueryInterface(IID_IPerPropertyBrowsing, reinterpret_cast<void**>(&browsing));
    if (FAILED(hr))
        return hr;
    const HRESULT result = browsing->MapPropertyToPage(dispId, page);
    browsing->Release();
    return result;
}

int TVPfxCheckInterface(IUnknown* unknown, const GUID& iid) {
    if (!unknown)
        return 0;
    IUnknown* found = nullptr;
    if (FAILED(unknown->QueryInterface(iid, reinterpret_cast<void**>(&found))) || !found)
        return 0;
    found->Release();
    return 1;
}

CString StripChars(CString text) {
    text.MakeUpper();
    text.Remove('&');
    text.Remove(' ');
    int position = 0;
    while (position < text.GetLength()) {
        const char ch = text.GetAt(position);
        if (!std::isupper(static_cast<unsigned char>(ch)))
            text.Remove(ch); // every occurrence; the position stays
        else
            ++position;
    }
    return text;
}

int VSPStringDelete(CString& text, int position, int count) {
    if (count < 1 || position < 0 || position >= text.GetLength())
        return text.GetLength();
    text.Delete(position, count);
    return text.GetLength();
}

void VSPStringRemove(CString& text, char ch) {
    const std::string& source = text.Str();
    std::string kept;
    kept.reserve(source.size());
    std::size_t i = 0;
    while (i < source.size()) {
        const std::size_t length = talvor::platform::CharLengthAt(source, i);
        if (!(length == 1 && source[i] == ch))
            kept.append(source, i, length);
        i += length;
    }
    text = CString(kept);
}

const char* TVPfxGetHResultName(HRESULT value) {
    return talvor::platform::GetHResultName(value);
}
