// ITypeInfo over a loaded MSFT library: the plain view of a type, and both halves of a dual
// interface. The dispatch half is put together from the interface half and its parents.
#include "platform/com/typelib/detail/msft_type_lib.h"

#include <cwchar>

namespace talvor::platform::typelib {
namespace {

constexpr int MaxInheritance = 64; // a loop of parents in a damaged file ends here

} // namespace

HRESULT MsftTypeInfo::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_ITypeInfo) {
        *object = static_cast<ITypeInfo*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG MsftTypeInfo::AddRef() {
    return m_lib.SharedAddRef();
}

ULONG MsftTypeInfo::Release() {
    return m_lib.SharedRelease();
}

HRESULT MsftTypeInfo::Prepare() {
    if (m_prepared)
        return m_prepareResult;
    m_prepared = true;
    m_prepareResult = m_view == View::DispatchOfDual ? BuildDispatchView() : S_OK;
    return m_prepareResult;
}

HRESULT MsftTypeInfo::BuildDispatchView() {
    // The interface chain from the root (IUnknown) down to this interface's own half.
    std::vector<ComPtr<ITypeInfo>> chain;
    MsftTypeInfo* own = m_lib.InterfaceHalf(m_index);
    own->AddRef();
    chain.emplace_back(own);
    for (int depth = 0;; ++depth) {
        ITypeInfo* current = chain.back().Get();
        TYPEATTR* attr = nullptr;
        HRESULT hr = current->GetTypeAttr(&attr);
        if (FAILED(hr))
            return hr;
        const WORD implCount = attr->cImplTypes;
        current->ReleaseTypeAttr(attr);
        if (implCount == 0)
            break;
        if (depth >= MaxInheritance)
            return TYPE_E_CIRCULARTYPE;
        HREFTYPE href = 0;
        ITypeInfo* parent = nullptr;
        hr = current->GetRefTypeOfImplType(0, &href);
        if (SUCCEEDED(hr))
            hr = current->GetRefTypeInfo(href, &parent);
        if (FAILED(hr))
            return hr;
        // A parent that is itself dual: its functions are those of its interface half.
        ITypeInfo* parentInterface = nullptr;
        HREFTYPE halfRef = 0;
        if (SUCCEEDED(parent->GetRefTypeOfImplType(static_cast<UINT>(-1), &halfRef)) &&
            SUCCEEDED(parent->GetRefTypeInfo(halfRef, &parentInterface))) {
            parent->Release();
            parent = parentInterface;
        }
        chain.emplace_back(parent);
    }
    std::vector<FuncEntry> funcs;
    std::vector<std::ptrdiff_t> copiedParams; // where a copy's parameters start in m_params
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        ITypeInfo* source = it->Get();
        // Member texts come from our own reader; another provider isn't expected as a parent.
        auto* local = dynamic_cast<MsftTypeInfo*>(source);
        if (!local)
            return TYPE_E_WRONGTYPEKIND;
        HRESULT hr = local->Prepare();
        if (FAILED(hr))
            return hr;
        // Functions of this library are shared as they are; those of another library have
        // their references made foreign ones of this library, which also keeps their texts.
        const bool sameLib = &local->m_lib == &m_lib;
        if (!sameLib)
            m_lib.AddForeignRef(source);
        for (const FuncEntry& original : local->m_funcs) {
            FuncEntry entry = original;
            if (sameLib) {
                funcs.push_back(entry);
                copiedParams.push_back(-1);
                continue;
            }
            const TYPEDESC* result = m_lib.AdoptTypeDesc(entry.desc.elemdescFunc.tdesc, *source, 0);
            if (!result)
                return TYPE_E_CANTLOADLIBRARY;
            entry.desc.elemdescFunc.tdesc = *result;
            copiedParams.push_back(static_cast<std::ptrdiff_t>(m_params.size()));
            for (SHORT p = 0; p < entry.desc.cParams; ++p) {
                ELEMDESC param = entry.desc.lprgelemdescParam[p];
                const TYPEDESC* t = m_lib.AdoptTypeDesc(param.tdesc, *source, 0);
                if (!t)
                    return TYPE_E_CANTLOADLIBRARY;
                param.tdesc = *t;
                m_params.push_back(param);
            }
            funcs.push_back(entry);
        }
    }
    // Point copied parameters into their final storage, then apply the dispatch view.
    for (std::size_t i = 0; i < funcs.size(); ++i) {
        FUNCDESC& d = funcs[i].desc;
        if (copiedParams[i] >= 0)
            d.lprgelemdescParam = d.cParams ? m_params.data() + copiedParams[i] : nullptr;
        d.funckind = FUNC_DISPATCH;
        d.oVft = 0;
        if (d.elemdescFunc.tdesc.vt == VT_HRESULT) {
            if (d.cParams > 0 &&
                (d.lprgelemdescParam[d.cParams - 1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL)) {
                const TYPEDESC& last = d.lprgelemdescParam[d.cParams - 1].tdesc;
                d.elemdescFunc.tdesc = last.vt == VT_PTR ? *last.lptdesc : last;
                d.elemdescFunc.paramdesc = {};
                --d.cParams;
                if (d.cParamsOpt > d.cParams)
                    d.cParamsOpt = d.cParams;
            } else {
                d.elemdescFunc.tdesc = TYPEDESC{};
                d.elemdescFunc.tdesc.vt = VT_VOID;
            }
        }
    }
    m_funcs = std::move(funcs);
    m_attr.cFuncs = static_cast<WORD>(m_funcs.size());
    m_attr.cVars = 0;
    m_attr.cImplTypes = 1;
    m_attr.cbSizeVft = static_cast<WORD>(7 * m_lib.PointerSize());
    m_impls.assign(1, ImplEntry{m_lib.DispatchHref(), 0});
    return S_OK;
}

HRESULT MsftTypeInfo::GetTypeAttr(TYPEATTR** attr) {
    if (!attr)
        return E_INVALIDARG;
    *attr = nullptr;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    *attr = new TYPEATTR(m_attr);
    return S_OK;
}

void MsftTypeInfo::ReleaseTypeAttr(TYPEATTR* attr) {
    delete attr;
}

HRESULT MsftTypeInfo::GetTypeComp(ITypeComp** comp) {
    if (comp)
        *comp = nullptr;
    return E_NOTIMPL;
}

HRESULT MsftTypeInfo::GetFuncDesc(UINT index, FUNCDESC** desc) {
    if (!desc)
        return E_INVALIDARG;
    *desc = nullptr;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    if (index >= m_funcs.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *desc = new FUNCDESC(m_funcs[index].desc);
    return S_OK;
}

void MsftTypeInfo::ReleaseFuncDesc(FUNCDESC* desc) {
    delete desc;
}

HRESULT MsftTypeInfo::GetVarDesc(UINT index, VARDESC** desc) {
    if (!desc)
        return E_INVALIDARG;
    *desc = nullptr;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    if (index >= m_vars.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *desc = new VARDESC(m_vars[index].desc);
    return S_OK;
}

void MsftTypeInfo::ReleaseVarDesc(VARDESC* desc) {
    delete desc;
}

const MemberTexts* MsftTypeInfo::FindTexts(MEMBERID memid) const {
    for (const FuncEntry& f : m_funcs) {
        if (f.desc.memid == memid)
            return &f.texts;
    }
    for (const VarEntry& v : m_vars) {
        if (v.desc.memid == memid)
            return &v.texts;
    }
    return nullptr;
}

HRESULT MsftTypeInfo::GetNames(MEMBERID memid, BSTR* names, UINT maxNames, UINT* count) {
    if (!names || !count)
        return E_INVALIDARG;
    *count = 0;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    const MemberTexts* texts = FindTexts(memid);
    if (!texts)
        return TYPE_E_ELEMENTNOTFOUND;
    if (maxNames == 0)
        return S_OK;
    names[(*count)++] = texts->lib->NameText(texts->name);
    for (std::uint16_t p = 0; p < texts->storedParams && *count < maxNames; ++p) {
        // A parameter without a name ends the list, as a property put's value has none.
        if (texts->paramNames[p] < 0)
            break;
        names[(*count)++] = texts->lib->NameText(texts->paramNames[p]);
    }
    return S_OK;
}

HRESULT MsftTypeInfo::GetRefTypeOfImplType(UINT index, HREFTYPE* ref) {
    if (!ref)
        return E_INVALIDARG;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    if (index == static_cast<UINT>(-1)) {
        if (m_view != View::DispatchOfDual)
            return TYPE_E_ELEMENTNOTFOUND;
        *ref = m_index * 0x64u | 2u; // the interface half of this entry
        return S_OK;
    }
    if (index >= m_impls.size())
        return TYPE_E_ELEMENTNOTFOUND;
    HREFTYPE href = m_impls[index].href;
    // The interface half inherits from the interface half of a dual parent.
    if (m_view == View::InterfaceOfDual && (href & 3) == 0)
        href |= 2;
    *ref = href;
    return S_OK;
}

HRESULT MsftTypeInfo::GetImplTypeFlags(UINT index, INT* flags) {
    if (!flags)
        return E_INVALIDARG;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    if (index >= m_impls.size())
        return TYPE_E_ELEMENTNOTFOUND;
    *flags = m_impls[index].flags;
    return S_OK;
}

HRESULT MsftTypeInfo::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) {
    if (!names || !ids || count == 0)
        return E_INVALIDARG;
    const HRESULT hr = Prepare();
    if (FAILED(hr))
        return hr;
    for (UINT i = 0; i < count; ++i)
        ids[i] = MEMBERID_NIL;
    for (const FuncEntry& f : m_funcs) {
        if (wcscasecmp(f.texts.lib->NameWide(f.texts.name).c_str(), names[0]) != 0)
            continue;
        ids[0] = f.desc.memid;
        HRESULT result = S_OK;
        for (UINT i = 1; i < count; ++i) {
            for (std::uint16_t p = 0; p < f.texts.storedParams; ++p) {
                if (wcscasecmp(f.texts.lib->NameWide(f.texts.paramNames[p]).c_str(), names[i]) == 0)
                    ids[i] = p;
            }
            if (ids[i] == MEMBERID_NIL)
                result = DISP_E_UNKNOWNNAME;
        }
        return result;
    }
    for (const VarEntry& v : m_vars) {
        if (wcscasecmp(v.texts.lib->NameWide(v.texts.name).c_str(), names[0]) == 0) {
            ids[0] = v.desc.memid;
            return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
        }
    }
    return DISP_E_UNKNOWNNAME;
}

HRESULT MsftTypeInfo::Invoke(void*, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) {
    // Calls through a vtable described by a library need machine code of the platform the
    // library was made for; no object here has one.
    return E_NOTIMPL;
}

HRESULT MsftTypeInfo::GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString,
                                       DWORD* helpContext, BSTR* helpFile) {
    const MemberTexts* texts = &m_texts;
    if (memid != MEMBERID_NIL) {
        const HRESULT hr = Prepare();
        if (FAILED(hr))
            return hr;
        texts = FindTexts(memid);
        if (!texts)
            return TYPE_E_ELEMENTNOTFOUND;
    }
    if (name)
        *name = texts->lib->NameText(texts->name);
    if (docString)
        *docString = texts->lib->StringText(texts->helpString);
    if (helpContext)
        *helpContext = texts->helpContext;
    if (helpFile)
        *helpFile = m_lib.HelpFile();
    return S_OK;
}

HRESULT MsftTypeInfo::GetDllEntry(MEMBERID, INVOKEKIND, BSTR* dllName, BSTR* name, WORD* ordinal) {
    if (dllName)
        *dllName = nullptr;
    if (name)
        *name = nullptr;
    if (ordinal)
        *ordinal = 0;
    return TYPE_E_BADMODULEKIND;
}

HRESULT MsftTypeInfo::GetRefTypeInfo(HREFTYPE ref, ITypeInfo** typeInfo) {
    if (!typeInfo)
        return E_INVALIDARG;
    *typeInfo = nullptr;
    if (ref == static_cast<HREFTYPE>(-1))
        return TYPE_E_ELEMENTNOTFOUND;
    return m_lib.ResolveHref(ref, typeInfo);
}

HRESULT MsftTypeInfo::AddressOfMember(MEMBERID, INVOKEKIND, void** address) {
    if (address)
        *address = nullptr;
    return TYPE_E_BADMODULEKIND;
}

HRESULT MsftTypeInfo::CreateInstance(IUnknown*, REFIID, void** object) {
    if (object)
        *object = nullptr;
    return TYPE_E_WRONGTYPEKIND;
}

HRESULT MsftTypeInfo::GetMops(MEMBERID, BSTR* mops) {
    if (!mops)
        return E_INVALIDARG;
    *mops = nullptr;
    return S_OK;
}

HRESULT MsftTypeInfo::GetContainingTypeLib(ITypeLib** typeLib, UINT* index) {
    if (typeLib) {
        *typeLib = &m_lib;
        m_lib.AddRef();
    }
    if (index)
        *index = m_index;
    return S_OK;
}

} // namespace talvor::platform::typelib
