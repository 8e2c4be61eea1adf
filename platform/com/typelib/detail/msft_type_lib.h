// The objects behind a loaded MSFT library: MsftTypeLib (ITypeLib) owns the image, the
// decoded members and one MsftTypeInfo (ITypeInfo) per type, plus the interface half of each
// dual interface. Type infos share the library's reference count, so a held type info keeps
// its library alive.
#pragma once

#include "platform/com/type_info.h"
#include "platform/com/typelib/detail/byte_view.h"
#include "platform/com/unknown.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace talvor::platform::typelib {

class MsftTypeLib;

// Where a member's texts are: the library whose tables hold them, and the offsets.
struct MemberTexts {
    const MsftTypeLib* lib = nullptr;
    std::int32_t name = -1;
    std::int32_t helpString = -1;
    std::uint32_t helpContext = 0;
    const std::int32_t* paramNames = nullptr; // one name offset per parameter as stored
    std::uint16_t storedParams = 0;
};

struct FuncEntry {
    FUNCDESC desc{};
    MemberTexts texts;
};

struct VarEntry {
    VARDESC desc{};
    MemberTexts texts;
};

struct ImplEntry {
    HREFTYPE href = 0;
    INT flags = 0;
};

class MsftTypeInfo final : public ITypeInfo {
public:
    enum class View { Plain, DispatchOfDual, InterfaceOfDual };
    MsftTypeInfo(MsftTypeLib& lib, UINT index, View view)
        : m_lib(lib), m_index(index), m_view(view) {}

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT GetTypeAttr(TYPEATTR** attr) override;
    HRESULT GetTypeComp(ITypeComp** comp) override;
    HRESULT GetFuncDesc(UINT index, FUNCDESC** desc) override;
    HRESULT GetVarDesc(UINT index, VARDESC** desc) override;
    HRESULT GetNames(MEMBERID memid, BSTR* names, UINT maxNames, UINT* count) override;
    HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* ref) override;
    HRESULT GetImplTypeFlags(UINT index, INT* flags) override;
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) override;
    HRESULT Invoke(void* instance, MEMBERID memid, WORD flags, DISPPARAMS* params, VARIANT* result,
                   EXCEPINFO* exception, UINT* argError) override;
    HRESULT GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT GetDllEntry(MEMBERID memid, INVOKEKIND kind, BSTR* dllName, BSTR* name,
                        WORD* ordinal) override;
    HRESULT GetRefTypeInfo(HREFTYPE ref, ITypeInfo** typeInfo) override;
    HRESULT AddressOfMember(MEMBERID memid, INVOKEKIND kind, void** address) override;
    HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT GetMops(MEMBERID memid, BSTR* mops) override;
    HRESULT GetContainingTypeLib(ITypeLib** typeLib, UINT* index) override;
    void ReleaseTypeAttr(TYPEATTR* attr) override;
    void ReleaseFuncDesc(FUNCDESC* desc) override;
    void ReleaseVarDesc(VARDESC* desc) override;

    // Filled by the library while it loads.
    TYPEATTR m_attr{};
    MemberTexts m_texts;
    std::vector<FuncEntry> m_funcs;
    std::vector<VarEntry> m_vars;
    std::vector<ImplEntry> m_impls;
    std::vector<std::int32_t> m_paramNames;
    std::vector<ELEMDESC> m_params;

    View GetView() const { return m_view; }
    UINT Index() const { return m_index; }

private:
    // The dispatch half of a dual is put together on first use: it needs the parents, which
    // may live in imported libraries.
    HRESULT Prepare();
    HRESULT BuildDispatchView();
    const MemberTexts* FindTexts(MEMBERID memid) const;

    MsftTypeLib& m_lib;
    UINT m_index;
    View m_view;
    bool m_prepared = false;
    HRESULT m_prepareResult = S_OK;
};

class MsftTypeLib final : public ITypeLib {
public:
    MsftTypeLib(std::vector<std::uint8_t> bytes, std::string folder);
    ~MsftTypeLib() override;

    // Reads and checks the whole library; false with the reason in Error().
    bool Load();
    const std::string& Error() const { return m_view.Error(); }

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    UINT GetTypeInfoCount() override;
    HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) override;
    HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) override;
    HRESULT GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) override;
    HRESULT GetLibAttr(TLIBATTR** attr) override;
    HRESULT GetTypeComp(ITypeComp** comp) override;
    HRESULT GetDocumentation(INT index, BSTR* name, BSTR* docString, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT IsName(LPOLESTR name, ULONG hash, BOOL* found) override;
    HRESULT FindName(LPOLESTR name, ULONG hash, ITypeInfo** typeInfos, MEMBERID* ids,
                     USHORT* found) override;
    void ReleaseTLibAttr(TLIBATTR* attr) override;

    // For the type infos.
    BSTR NameText(std::int32_t offset) const;
    BSTR StringText(std::int32_t offset) const;
    std::wstring NameWide(std::int32_t offset) const;
    BSTR HelpFile() const { return StringText(m_helpFile); }
    HRESULT ResolveHref(HREFTYPE href, ITypeInfo** typeInfo);
    // A reference of this library to a type info of another: a new href that ResolveHref
    // understands.
    HREFTYPE AddForeignRef(ITypeInfo* typeInfo);
    // Copies a type description of another library into this one, its references made
    // foreign ones; null when a reference can't be followed.
    const TYPEDESC* AdoptTypeDesc(const TYPEDESC& source, ITypeInfo& owner, int depth);
    std::deque<TYPEDESC>& TypeDescArena() { return m_typeDescs; }
    MsftTypeInfo* InterfaceHalf(UINT index) const { return m_halves[index].get(); }
    HREFTYPE DispatchHref() const { return m_dispatchHref; }
    WORD PointerSize() const { return m_attr.syskind == SYS_WIN64 ? 8 : 4; }
    ULONG SharedAddRef();
    ULONG SharedRelease();

private:
    bool ReadHeader();
    bool ReadTypeInfo(UINT index);
    bool ReadMembers(MsftTypeInfo& info, std::uint32_t memOffset, std::uint32_t cFuncs,
                     std::uint32_t cVars);
    bool ReadImplTypes(MsftTypeInfo& info, std::int32_t dataType1, std::uint32_t count);
    bool CheckName(std::int32_t offset, const char* what);
    bool CheckString(std::int32_t offset, const char* what);
    bool ReadGuid(std::int32_t offset, GUID& guid, const char* what);
    const TYPEDESC* DecodeType(std::uint32_t encoded, int depth);
    bool DecodeTypeInto(std::uint32_t encoded, TYPEDESC& out, int depth);
    bool ReadValue(std::int32_t encoded, VARIANT& value, const char* what);
    bool SegmentRange(int segment, std::int64_t offset, std::uint32_t size, std::uint64_t& at,
                      const char* what);
    HRESULT LoadImport(std::uint32_t fileOffset, ITypeLib** lib);

    std::vector<std::uint8_t> m_bytes;
    std::string m_folder;
    ByteView m_view;
    RefCount m_refs;
    TLIBATTR m_attr{};
    std::int32_t m_name = -1;
    std::int32_t m_helpString = -1;
    std::int32_t m_helpFile = -1;
    std::uint32_t m_helpContext = 0;
    HREFTYPE m_dispatchHref = 0;
    struct SegmentEntry {
        std::int32_t offset = -1;
        std::uint32_t length = 0;
    };
    SegmentEntry m_segments[15];
    std::vector<std::unique_ptr<MsftTypeInfo>> m_infos;
    std::vector<std::unique_ptr<MsftTypeInfo>> m_halves; // by index, for duals only
    std::deque<TYPEDESC> m_typeDescs;
    std::vector<const TYPEDESC*> m_typeDescCache; // by typedesc table entry
    std::vector<std::unique_ptr<std::uint8_t[]>> m_arrayDescs;
    std::deque<VARIANT> m_values;
    std::deque<PARAMDESCEX> m_defaults;
    std::vector<ComPtr<ITypeInfo>> m_foreign;
    struct ImportEntry {
        std::uint32_t fileOffset = 0;
        ComPtr<ITypeLib> lib;
        bool tried = false;
        HRESULT result = S_OK;
    };
    std::vector<ImportEntry> m_imports;
};

} // namespace talvor::platform::typelib
