#include "platform/com/registry/described_control.h"

#include "platform/codepage/code_page.h"

#include <algorithm>
#include <cwctype>
#include <memory>
#include <sstream>

namespace talvor::platform {
namespace {

std::wstring UpperWide(std::wstring text) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(std::towupper(c));
    return text;
}

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    const std::size_t last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

std::vector<std::string> SplitBars(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (true) {
        const std::size_t bar = text.find('|', start);
        parts.push_back(
            Trim(text.substr(start, bar == std::string::npos ? std::string::npos : bar - start)));
        if (bar == std::string::npos)
            return parts;
        start = bar + 1;
    }
}

bool ParseValue(const std::string& text, VARIANT& value) {
    VariantInit(&value);
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
        value.vt = VT_BSTR;
        value.bstrVal = AllocBstr(WideFromMultiByte(text.substr(1, text.size() - 2)));
        return true;
    }
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 0);
    if (text.empty() || *end != 0 || number < INT32_MIN || number > UINT32_MAX)
        return false;
    value.vt = VT_I4;
    value.lVal = static_cast<LONG>(number);
    return true;
}

} // namespace

ControlManifest::~ControlManifest() {
    for (auto& [name, member] : members) {
        for (VARIANT& value : member.values)
            VariantClear(&value);
    }
}

bool ControlManifest::HasBrowsing() const {
    return std::any_of(members.begin(), members.end(), [](const auto& entry) {
        return !entry.second.strings.empty() || entry.second.hasPage;
    });
}

bool ControlManifest::HasCategories() const {
    return std::any_of(members.begin(), members.end(),
                       [](const auto& entry) { return entry.second.hasCategory; });
}

bool ControlManifest::Parse(const std::string& text, std::string& error) {
    std::istringstream in(text);
    std::string line;
    int number = 0;
    ManifestMember* member = nullptr;
    bool inCategories = false;
    auto fail = [&](const std::string& what) {
        error = "line " + std::to_string(number) + ": " + what;
        return false;
    };
    while (std::getline(in, line)) {
        ++number;
        line = Trim(line);
        if (line.empty() || line[0] == ';' || line[0] == '#')
            continue;
        if (line.front() == '[') {
            if (line.back() != ']')
                return fail("section without ']'");
            const std::string section = Trim(line.substr(1, line.size() - 2));
            member = nullptr;
            inCategories = section == "categories";
            if (inCategories)
                continue;
            if (section.rfind("member ", 0) != 0)
                return fail("unknown section \"" + section + "\"");
            member = &members[UpperWide(WideFromMultiByte(Trim(section.substr(7))))];
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return fail("no '=' in the line");
        const std::string key = Trim(line.substr(0, equals));
        const std::string value = Trim(line.substr(equals + 1));
        if (inCategories) {
            char* end = nullptr;
            const long id = std::strtol(key.c_str(), &end, 0);
            if (key.empty() || *end != 0)
                return fail("category id \"" + key + "\" is not a number");
            categoryNames[static_cast<PROPCAT>(id)] = WideFromMultiByte(value);
            continue;
        }
        if (!member)
            return fail("a value outside a section");
        if (key == "strings") {
            for (const std::string& s : SplitBars(value))
                member->strings.push_back(WideFromMultiByte(s));
        } else if (key == "values") {
            for (const std::string& s : SplitBars(value)) {
                VARIANT v;
                if (!ParseValue(s, v))
                    return fail("value \"" + s + "\" is neither a number nor quoted text");
                member->values.push_back(v);
            }
        } else if (key == "category") {
            char* end = nullptr;
            const long id = std::strtol(value.c_str(), &end, 0);
            if (value.empty() || *end != 0)
                return fail("category \"" + value + "\" is not a number");
            member->hasCategory = true;
            member->category = static_cast<PROPCAT>(id);
        } else if (key == "page") {
            if (!GuidFromText(value, member->page))
                return fail("page \"" + value + "\" is not a class identifier");
            member->hasPage = true;
        } else {
            return fail("unknown key \"" + key + "\"");
        }
    }
    return true;
}

namespace {

// The object: one reference count, the interfaces as separate bases.
class DescribedControl final : public IDispatch,
                               public IProvideClassInfo,
                               public IPerPropertyBrowsing,
                               public ICategorizeProperties {
public:
    DescribedControl(ITypeInfo* coclass, ITypeInfo* dispatchType,
                     std::shared_ptr<const ControlManifest> manifest)
        : m_coclass(coclass), m_dispatch(dispatchType), m_manifest(std::move(manifest)) {}

    HRESULT Init() {
        TYPEATTR* attr = nullptr;
        HRESULT hr = m_coclass->GetTypeAttr(&attr);
        if (FAILED(hr))
            return hr;
        for (UINT i = 0; i < attr->cImplTypes; ++i) {
            INT flags = 0;
            HREFTYPE href = 0;
            ITypeInfo* impl = nullptr;
            if (FAILED(m_coclass->GetImplTypeFlags(i, &flags)) || (flags & IMPLTYPEFLAG_FSOURCE) ||
                FAILED(m_coclass->GetRefTypeOfImplType(i, &href)) ||
                FAILED(m_coclass->GetRefTypeInfo(href, &impl)))
                continue;
            AddInterfaceChain(impl);
            impl->Release();
        }
        m_coclass->ReleaseTypeAttr(attr);
        return S_OK;
    }

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (iid == IID_IUnknown || iid == IID_IDispatch)
            *object = static_cast<IDispatch*>(this);
        else if (iid == IID_IProvideClassInfo)
            *object = static_cast<IProvideClassInfo*>(this);
        else if (iid == IID_IPerPropertyBrowsing && m_manifest && m_manifest->HasBrowsing())
            *object = static_cast<IPerPropertyBrowsing*>(this);
        else if (iid == IID_ICategorizeProperties && m_manifest && m_manifest->HasCategories())
            *object = static_cast<ICategorizeProperties*>(this);
        else if (std::find(m_interfaces.begin(), m_interfaces.end(), iid) != m_interfaces.end())
            *object = static_cast<IDispatch*>(this); // every interface of the class is dual here
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG AddRef() override { return m_refs.Add(); }
    ULONG Release() override {
        ULONG remaining = 0;
        if (m_refs.Drop(remaining))
            delete this;
        return remaining;
    }

    // IDispatch
    HRESULT GetTypeInfoCount(UINT* count) override {
        if (!count)
            return E_INVALIDARG;
        *count = m_dispatch ? 1 : 0;
        return S_OK;
    }
    HRESULT GetTypeInfo(UINT index, LCID, ITypeInfo** typeInfo) override {
        if (!typeInfo)
            return E_INVALIDARG;
        *typeInfo = nullptr;
        if (index != 0 || !m_dispatch)
            return DISP_E_BADINDEX;
        *typeInfo = m_dispatch.Get();
        m_dispatch->AddRef();
        return S_OK;
    }
    HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        if (!m_dispatch)
            return DISP_E_UNKNOWNNAME;
        return m_dispatch->GetIDsOfNames(names, count, ids);
    }
    // Properties hold what was put into them; methods do nothing.
    HRESULT Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO*, UINT*) override {
        if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
            if (!params || params->cArgs != 1)
                return DISP_E_BADPARAMCOUNT;
            VARIANT& slot = m_values[member];
            return VariantCopy(&slot, &params->rgvarg[0]);
        }
        if (result)
            VariantInit(result);
        auto found = m_values.find(member);
        if ((flags & DISPATCH_PROPERTYGET) && found != m_values.end() && result)
            return VariantCopy(result, &found->second);
        return S_OK;
    }

    // IProvideClassInfo
    HRESULT GetClassInfo(ITypeInfo** typeInfo) override {
        if (!typeInfo)
            return E_POINTER;
        *typeInfo = m_coclass.Get();
        m_coclass->AddRef();
        return S_OK;
    }

    // IPerPropertyBrowsing
    HRESULT GetDisplayString(DISPID id, BSTR* text) override {
        if (!text)
            return E_POINTER;
        *text = nullptr;
        const ManifestMember* member = Member(id);
        if (!member || member->strings.empty())
            return E_NOTIMPL;
        auto found = m_values.find(id);
        if (found == m_values.end())
            return S_FALSE;
        for (std::size_t i = 0; i < member->values.size() && i < member->strings.size(); ++i) {
            VARIANT a = member->values[i];
            const VARIANT& b = found->second;
            if (a.vt == b.vt && a.llVal == b.llVal) {
                *text = AllocBstr(member->strings[i]);
                return S_OK;
            }
        }
        return S_FALSE;
    }
    HRESULT MapPropertyToPage(DISPID id, CLSID* page) override {
        if (!page)
            return E_POINTER;
        const ManifestMember* member = Member(id);
        if (!member || !member->hasPage) {
            *page = GUID_NULL;
            return PERPROP_E_NOPAGEAVAILABLE;
        }
        *page = member->page;
        return S_OK;
    }
    HRESULT GetPredefinedStrings(DISPID id, CALPOLESTR* strings, CADWORD* cookies) override {
        if (!strings || !cookies)
            return E_POINTER;
        strings->cElems = 0;
        strings->pElems = nullptr;
        cookies->cElems = 0;
        cookies->pElems = nullptr;
        const ManifestMember* member = Member(id);
        if (!member || member->strings.empty())
            return E_NOTIMPL;
        const ULONG count = static_cast<ULONG>(member->strings.size());
        // One cookie per value, which may be fewer than the strings: the manifest says so.
        const ULONG cookieCount = static_cast<ULONG>(member->values.size());
        strings->pElems = static_cast<LPOLESTR*>(CoTaskMemAlloc(sizeof(LPOLESTR) * count));
        cookies->pElems = static_cast<DWORD*>(CoTaskMemAlloc(sizeof(DWORD) * (cookieCount + 1)));
        for (ULONG i = 0; i < count; ++i) {
            const std::wstring& s = member->strings[i];
            strings->pElems[i] =
                static_cast<LPOLESTR>(CoTaskMemAlloc(sizeof(OLECHAR) * (s.size() + 1)));
            std::copy(s.begin(), s.end(), strings->pElems[i]);
            strings->pElems[i][s.size()] = 0;
        }
        for (ULONG i = 0; i < cookieCount; ++i)
            cookies->pElems[i] = i;
        strings->cElems = count;
        cookies->cElems = cookieCount;
        return S_OK;
    }
    HRESULT GetPredefinedValue(DISPID id, DWORD cookie, VARIANT* value) override {
        if (!value)
            return E_POINTER;
        const ManifestMember* member = Member(id);
        if (!member || cookie >= member->values.size())
            return E_INVALIDARG;
        VariantInit(value);
        return VariantCopy(value, &member->values[cookie]);
    }

    // ICategorizeProperties
    HRESULT MapPropertyToCategory(DISPID id, PROPCAT* category) override {
        if (!category)
            return E_POINTER;
        const ManifestMember* member = Member(id);
        if (!member || !member->hasCategory)
            return E_FAIL;
        *category = member->category;
        return S_OK;
    }
    HRESULT GetCategoryName(PROPCAT category, LCID, BSTR* name) override {
        if (!name)
            return E_POINTER;
        *name = nullptr;
        auto found = m_manifest->categoryNames.find(category);
        if (found == m_manifest->categoryNames.end())
            return E_FAIL;
        *name = AllocBstr(found->second);
        return S_OK;
    }

private:
    ~DescribedControl() {
        for (auto& [id, value] : m_values)
            VariantClear(&value);
    }

    void AddInterfaceChain(ITypeInfo* info) {
        for (int depth = 0; info && depth < 32; ++depth) {
            TYPEATTR* attr = nullptr;
            if (FAILED(info->GetTypeAttr(&attr)))
                return;
            m_interfaces.push_back(attr->guid);
            const bool hasParent = attr->cImplTypes > 0 && attr->typekind == TKIND_INTERFACE;
            info->ReleaseTypeAttr(attr);
            HREFTYPE href = 0;
            ITypeInfo* parent = nullptr;
            if (!hasParent || FAILED(info->GetRefTypeOfImplType(0, &href)) ||
                FAILED(info->GetRefTypeInfo(href, &parent)))
                return;
            m_parents.emplace_back(parent);
            info = parent;
        }
    }

    // The manifest entry of the member with this id, by the member's name.
    const ManifestMember* Member(DISPID id) const {
        if (!m_manifest || !m_dispatch)
            return nullptr;
        BSTR name = nullptr;
        UINT count = 0;
        if (FAILED(m_dispatch->GetNames(id, &name, 1, &count)) || count == 0)
            return nullptr;
        std::wstring key = UpperWide(name ? std::wstring(name) : std::wstring());
        SysFreeString(name);
        auto found = m_manifest->members.find(key);
        return found == m_manifest->members.end() ? nullptr : &found->second;
    }

    RefCount m_refs;
    ComPtr<ITypeInfo> m_coclass;
    ComPtr<ITypeInfo> m_dispatch;
    std::vector<ComPtr<ITypeInfo>> m_parents;
    std::shared_ptr<const ControlManifest> m_manifest;
    std::vector<IID> m_interfaces;
    std::map<DISPID, VARIANT> m_values;
};

} // namespace

HRESULT CreateDescribedControl(ITypeInfo* coclass, std::shared_ptr<const ControlManifest> manifest,
                               REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!coclass)
        return E_INVALIDARG;
    TYPEATTR* attr = nullptr;
    HRESULT hr = coclass->GetTypeAttr(&attr);
    if (FAILED(hr))
        return hr;
    const bool isClass = attr->typekind == TKIND_COCLASS;
    const WORD implCount = attr->cImplTypes;
    coclass->ReleaseTypeAttr(attr);
    if (!isClass)
        return TYPE_E_WRONGTYPEKIND;
    // The default interface gives the dispatch type info.
    ITypeInfo* dispatchType = nullptr;
    for (UINT i = 0; i < implCount && !dispatchType; ++i) {
        INT flags = 0;
        HREFTYPE href = 0;
        if (SUCCEEDED(coclass->GetImplTypeFlags(i, &flags)) &&
            (flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) == IMPLTYPEFLAG_FDEFAULT &&
            SUCCEEDED(coclass->GetRefTypeOfImplType(i, &href)))
            coclass->GetRefTypeInfo(href, &dispatchType);
    }
    coclass->AddRef();
    auto* control = new DescribedControl(coclass, dispatchType, std::move(manifest));
    hr = control->Init();
    if (SUCCEEDED(hr))
        hr = control->QueryInterface(iid, object);
    control->Release();
    return hr;
}

} // namespace talvor::platform
