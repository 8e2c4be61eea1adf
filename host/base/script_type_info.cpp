#include "host/base/script_type_info.h"

#include "platform/com/bstr.h"
#include "platform/com/hresult.h"
#include "platform/com/unknown.h"

#include <strings.h>

#include <atomic>
#include <memory>
#include <string>

namespace talvor::host {
namespace {

// Member ids of script procedures, as script engines number them.
constexpr MEMBERID FirstMemberId = 0x60020000;

struct Member {
    std::string name;
    INVOKEKIND kind = INVOKE_FUNC;
    std::vector<std::string> params;
};

INVOKEKIND KindOf(vbscript::ProcedureKind kind) {
    switch (kind) {
    case vbscript::ProcedureKind::PropertyGet:
        return INVOKE_PROPERTYGET;
    case vbscript::ProcedureKind::PropertyLet:
        return INVOKE_PROPERTYPUT;
    case vbscript::ProcedureKind::PropertySet:
        return INVOKE_PROPERTYPUTREF;
    default:
        return INVOKE_FUNC;
    }
}

class ScriptTypeInfo final : public ITypeInfo {
public:
    explicit ScriptTypeInfo(std::vector<Member> members) : m_members(std::move(members)) {}

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr)
            return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_ITypeInfo) {
            *object = static_cast<ITypeInfo*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++m_refs; }
    ULONG Release() override {
        ULONG left = --m_refs;
        if (left == 0)
            delete this;
        return left;
    }

    HRESULT GetTypeAttr(TYPEATTR** attr) override {
        if (attr == nullptr)
            return E_POINTER;
        auto* made = new TYPEATTR{};
        made->guid = GUID_NULL;
        made->memidConstructor = MEMBERID_NIL;
        made->memidDestructor = MEMBERID_NIL;
        made->typekind = TKIND_DISPATCH;
        made->cFuncs = static_cast<WORD>(m_members.size());
        made->cbSizeVft = 7 * sizeof(void*);
        made->cbAlignment = 4;
        *attr = made;
        return S_OK;
    }
    void ReleaseTypeAttr(TYPEATTR* attr) override { delete attr; }

    HRESULT GetFuncDesc(UINT index, FUNCDESC** desc) override {
        if (desc == nullptr)
            return E_POINTER;
        if (index >= m_members.size())
            return TYPE_E_ELEMENTNOTFOUND;
        const Member& member = m_members[index];
        auto* made = new FUNCDESC{};
        made->memid = FirstMemberId + static_cast<MEMBERID>(index);
        made->funckind = FUNC_DISPATCH;
        made->invkind = member.kind;
        made->callconv = CC_STDCALL;
        made->cParams = static_cast<SHORT>(member.params.size());
        if (!member.params.empty()) {
            made->lprgelemdescParam = new ELEMDESC[member.params.size()]{};
            for (std::size_t p = 0; p < member.params.size(); ++p)
                made->lprgelemdescParam[p].tdesc.vt = VT_VARIANT;
        }
        made->elemdescFunc.tdesc.vt = VT_VARIANT;
        *desc = made;
        return S_OK;
    }
    void ReleaseFuncDesc(FUNCDESC* desc) override {
        if (desc != nullptr)
            delete[] desc->lprgelemdescParam;
        delete desc;
    }

    HRESULT GetNames(MEMBERID memid, BSTR* names, UINT maxNames, UINT* count) override {
        if (names == nullptr || count == nullptr)
            return E_POINTER;
        *count = 0;
        const Member* member = Find(memid);
        if (member == nullptr)
            return TYPE_E_ELEMENTNOTFOUND;
        if (maxNames > 0)
            names[(*count)++] = Allocate(member->name);
        for (const std::string& param : member->params)
            if (*count < maxNames)
                names[(*count)++] = Allocate(param);
        return S_OK;
    }

    HRESULT GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString, DWORD* helpContext,
                             BSTR* helpFile) override {
        const Member* member = memid == MEMBERID_NIL ? nullptr : Find(memid);
        if (memid != MEMBERID_NIL && member == nullptr)
            return TYPE_E_ELEMENTNOTFOUND;
        if (name != nullptr)
            *name = Allocate(member != nullptr ? member->name : std::string("Script"));
        if (docString != nullptr)
            *docString = nullptr;
        if (helpContext != nullptr)
            *helpContext = 0;
        if (helpFile != nullptr)
            *helpFile = nullptr;
        return S_OK;
    }

    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) override {
        if (names == nullptr || ids == nullptr || count == 0)
            return E_INVALIDARG;
        const std::string wanted = platform::MultiByteFromWide(names[0]);
        for (std::size_t i = 0; i < m_members.size(); ++i) {
            if (strcasecmp(m_members[i].name.c_str(), wanted.c_str()) == 0) {
                ids[0] = FirstMemberId + static_cast<MEMBERID>(i);
                for (UINT k = 1; k < count; ++k)
                    ids[k] = MEMBERID_NIL;
                return S_OK;
            }
        }
        return DISP_E_UNKNOWNNAME;
    }

    // What a described procedure list has no answer for.
    HRESULT GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT GetVarDesc(UINT, VARDESC**) override { return TYPE_E_ELEMENTNOTFOUND; }
    HRESULT GetRefTypeOfImplType(UINT, HREFTYPE*) override { return TYPE_E_ELEMENTNOTFOUND; }
    HRESULT GetImplTypeFlags(UINT, INT*) override { return TYPE_E_ELEMENTNOTFOUND; }
    HRESULT Invoke(void*, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    HRESULT GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return TYPE_E_ELEMENTNOTFOUND; }
    HRESULT AddressOfMember(MEMBERID, INVOKEKIND, void**) override { return E_NOTIMPL; }
    HRESULT CreateInstance(IUnknown*, REFIID, void**) override { return E_NOTIMPL; }
    HRESULT GetMops(MEMBERID, BSTR* mops) override {
        if (mops != nullptr)
            *mops = nullptr;
        return S_OK;
    }
    HRESULT GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
    void ReleaseVarDesc(VARDESC*) override {}

private:
    ~ScriptTypeInfo() override = default;

    const Member* Find(MEMBERID memid) const {
        const long index = static_cast<long>(memid) - FirstMemberId;
        if (index < 0 || index >= static_cast<long>(m_members.size()))
            return nullptr;
        return &m_members[static_cast<std::size_t>(index)];
    }
    static BSTR Allocate(const std::string& text) {
        const std::wstring wide = platform::WideFromMultiByte(text);
        return SysAllocStringLen(wide.c_str(), static_cast<UINT>(wide.size()));
    }

    std::vector<Member> m_members;
    std::atomic<ULONG> m_refs{1};
};

} // namespace

HRESULT CreateScriptTypeInfo(const std::vector<vbscript::ProcedureInfo>& procedures,
                             ITypeInfo** typeInfo) {
    if (typeInfo == nullptr)
        return E_POINTER;
    std::vector<Member> members;
    for (const vbscript::ProcedureInfo& procedure : procedures) {
        if (!procedure.className.empty())
            continue; // members of a class are not procedures of the script
        Member member{procedure.name, KindOf(procedure.kind), {}};
        for (const vbscript::ParameterInfo& param : procedure.parameters)
            member.params.push_back(param.name);
        members.push_back(std::move(member));
    }
    *typeInfo = new ScriptTypeInfo(std::move(members));
    return S_OK;
}

} // namespace talvor::host
