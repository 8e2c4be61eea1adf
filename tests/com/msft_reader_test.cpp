// The MSFT reader on Wine's real libraries, checked against facts of their IDL.
#include "tests/com/wine_libraries.h"

#include "platform/com/ole_control.h"

#include <gtest/gtest.h>

using talvor::platform::ComPtr;
using talvor::platform::GuidToText;
using talvor::platform::MakeGuid;
using namespace talvor::testing;

namespace {

struct AttrHolder {
    explicit AttrHolder(ITypeInfo* info) : m_info(info) {
        EXPECT_EQ(info->GetTypeAttr(&m_attr), S_OK);
    }
    ~AttrHolder() {
        if (m_attr)
            m_info->ReleaseTypeAttr(m_attr);
    }
    const TYPEATTR* operator->() const { return m_attr; }
    ITypeInfo* m_info;
    TYPEATTR* m_attr = nullptr;
};

struct FuncHolder {
    FuncHolder(ITypeInfo* info, UINT index) : m_info(info) {
        EXPECT_EQ(info->GetFuncDesc(index, &m_desc), S_OK);
    }
    ~FuncHolder() {
        if (m_desc)
            m_info->ReleaseFuncDesc(m_desc);
    }
    const FUNCDESC* operator->() const { return m_desc; }
    ITypeInfo* m_info;
    FUNCDESC* m_desc = nullptr;
};

ComPtr<ITypeInfo> RefType(ITypeInfo* info, HREFTYPE href) {
    ITypeInfo* target = nullptr;
    EXPECT_EQ(info->GetRefTypeInfo(href, &target), S_OK);
    return ComPtr<ITypeInfo>(target);
}

} // namespace

TEST(MsftReader, Stdole2LibraryAttributes) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("stdole2.tlb");
    ASSERT_TRUE(lib);
    EXPECT_EQ(lib->GetTypeInfoCount(), 42u);
    TLIBATTR* attr = nullptr;
    ASSERT_EQ(lib->GetLibAttr(&attr), S_OK);
    EXPECT_EQ(GuidToText(attr->guid), "{00020430-0000-0000-C000-000000000046}");
    EXPECT_EQ(attr->wMajorVerNum, 2);
    EXPECT_EQ(attr->wMinorVerNum, 0);
    EXPECT_EQ(attr->syskind, SYS_WIN64);
    lib->ReleaseTLibAttr(attr);
    BSTR name = nullptr, doc = nullptr;
    ASSERT_EQ(lib->GetDocumentation(-1, &name, &doc, nullptr, nullptr), S_OK);
    EXPECT_EQ(Take(name), "stdole");
    EXPECT_EQ(Take(doc), "OLE Automation");
    EXPECT_EQ(lib->GetDocumentation(42, &name, nullptr, nullptr, nullptr), TYPE_E_ELEMENTNOTFOUND);
}

TEST(MsftReader, EnumerationConstantsInDeclarationOrder) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("stdole2.tlb");
    ComPtr<ITypeInfo> info = FindType(lib.Get(), "LoadPictureConstants");
    ASSERT_TRUE(info);
    AttrHolder attr(info.Get());
    ASSERT_EQ(attr->typekind, TKIND_ENUM);
    ASSERT_EQ(attr->cVars, 4);
    const char* names[] = {"Default", "Monochrome", "VgaColor", "Color"};
    const LONG values[] = {0, 1, 2, 4};
    for (UINT i = 0; i < 4; ++i) {
        VARDESC* var = nullptr;
        ASSERT_EQ(info->GetVarDesc(i, &var), S_OK);
        EXPECT_EQ(var->varkind, VAR_CONST);
        EXPECT_EQ(MemberName(info.Get(), var->memid), names[i]);
        EXPECT_EQ(var->lpvarValue->vt, VT_I4);
        EXPECT_EQ(var->lpvarValue->lVal, values[i]);
        info->ReleaseVarDesc(var);
    }
    VARDESC* var = nullptr;
    EXPECT_EQ(info->GetVarDesc(4, &var), TYPE_E_ELEMENTNOTFOUND);
}

TEST(MsftReader, AliasesOfColourAndFont) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("stdole2.tlb");
    ComPtr<ITypeInfo> color = FindType(lib.Get(), "OLE_COLOR");
    ASSERT_TRUE(color);
    {
        AttrHolder attr(color.Get());
        EXPECT_EQ(attr->typekind, TKIND_ALIAS);
        EXPECT_TRUE(attr->guid == GUID_OLE_COLOR);
        EXPECT_EQ(attr->tdescAlias.vt, VT_UI4);
    }
    // IFontDisp is an alias of the dispinterface Font, which carries the IFontDisp identifier.
    ComPtr<ITypeInfo> fontDisp = FindType(lib.Get(), "IFontDisp");
    ASSERT_TRUE(fontDisp);
    AttrHolder alias(fontDisp.Get());
    ASSERT_EQ(alias->typekind, TKIND_ALIAS);
    ASSERT_EQ(alias->tdescAlias.vt, VT_USERDEFINED);
    ComPtr<ITypeInfo> font = RefType(fontDisp.Get(), alias->tdescAlias.hreftype);
    ASSERT_TRUE(font);
    EXPECT_EQ(TypeName(font.Get()), "Font");
    AttrHolder fontAttr(font.Get());
    EXPECT_EQ(fontAttr->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(fontAttr->guid == IID_IFontDisp);
    // Properties of a dispinterface are variables: Name, Size, Bold, Italic, Underline,
    // Strikethrough, Weight, Charset with ids 0, 2 to 8.
    ASSERT_EQ(fontAttr->cVars, 8);
    const VARTYPE types[] = {VT_BSTR, VT_CY, VT_BOOL, VT_BOOL, VT_BOOL, VT_BOOL, VT_I2, VT_I2};
    const MEMBERID ids[] = {0, 2, 3, 4, 5, 6, 7, 8};
    for (UINT i = 0; i < 8; ++i) {
        VARDESC* var = nullptr;
        ASSERT_EQ(font->GetVarDesc(i, &var), S_OK);
        EXPECT_EQ(var->varkind, VAR_DISPATCH);
        EXPECT_EQ(var->memid, ids[i]);
        EXPECT_EQ(var->elemdescVar.tdesc.vt, types[i]);
        font->ReleaseVarDesc(var);
    }
    EXPECT_EQ(MemberName(font.Get(), 6), "Strikethrough");
    // The implemented interface of a pure dispinterface is IDispatch.
    HREFTYPE href = 0;
    ASSERT_EQ(font->GetRefTypeOfImplType(0, &href), S_OK);
    EXPECT_EQ(TypeName(RefType(font.Get(), href).Get()), "IDispatch");
    EXPECT_EQ(font->GetRefTypeOfImplType(static_cast<UINT>(-1), &href), TYPE_E_ELEMENTNOTFOUND);
}

TEST(MsftReader, LibraryImportingItselfResolvesEveryTime) {
    TV_NEED_WINE();
    // stdole2 names IDispatch as an import of stdole2; Font and Picture both inherit it.
    ComPtr<ITypeLib> lib = LoadWine("stdole2.tlb");
    for (const char* name : {"Font", "Picture", "FontEvents"}) {
        SCOPED_TRACE(name);
        ComPtr<ITypeInfo> info = FindType(lib.Get(), name);
        ASSERT_TRUE(info);
        for (int round = 0; round < 2; ++round) {
            HREFTYPE href = 0;
            ASSERT_EQ(info->GetRefTypeOfImplType(0, &href), S_OK);
            EXPECT_EQ(TypeName(RefType(info.Get(), href).Get()), "IDispatch");
        }
    }
}

TEST(MsftReader, CoclassListsItsInterfacesWithFlags) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("stdole2.tlb");
    ComPtr<ITypeInfo> stdFont = FindType(lib.Get(), "StdFont");
    ASSERT_TRUE(stdFont);
    AttrHolder attr(stdFont.Get());
    ASSERT_EQ(attr->typekind, TKIND_COCLASS);
    ASSERT_EQ(attr->cImplTypes, 2);
    const char* names[] = {"Font", "IFont"};
    const INT flags[] = {IMPLTYPEFLAG_FDEFAULT, 0};
    for (UINT i = 0; i < 2; ++i) {
        HREFTYPE href = 0;
        INT implFlags = -1;
        ASSERT_EQ(stdFont->GetRefTypeOfImplType(i, &href), S_OK);
        ASSERT_EQ(stdFont->GetImplTypeFlags(i, &implFlags), S_OK);
        EXPECT_EQ(TypeName(RefType(stdFont.Get(), href).Get()), names[i]);
        EXPECT_EQ(implFlags, flags[i]);
    }
}

TEST(MsftReader, DualInterfaceDispatchHalfListsInheritedFunctionsFirst) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("mshtml.tlb");
    ASSERT_TRUE(lib);
    EXPECT_EQ(lib->GetTypeInfoCount(), 393u);
    ITypeInfo* raw = nullptr;
    ASSERT_EQ(lib->GetTypeInfoOfGuid(MakeGuid("{332C4425-26CB-11D0-B483-00C04FD90119}"), &raw),
              S_OK);
    ComPtr<ITypeInfo> doc2(raw);
    EXPECT_EQ(TypeName(doc2.Get()), "IHTMLDocument2");
    AttrHolder attr(doc2.Get());
    EXPECT_EQ(attr->typekind, TKIND_DISPATCH);
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FDUAL);
    // IUnknown 3 + IDispatch 4 + IHTMLDocument 1 + its own 108 (mshtml.idl).
    ASSERT_EQ(attr->cFuncs, 116);
    EXPECT_EQ(attr->cbSizeVft, 7 * 8);
    const char* first[] = {"QueryInterface", "AddRef",        "Release", "GetTypeInfoCount",
                           "GetTypeInfo",    "GetIDsOfNames", "Invoke",  "Script"};
    for (UINT i = 0; i < 8; ++i) {
        FuncHolder f(doc2.Get(), i);
        EXPECT_EQ(f->funckind, FUNC_DISPATCH);
        EXPECT_EQ(MemberName(doc2.Get(), f->memid), first[i]);
    }
    // get_Script: [propget, id(1001)] HRESULT Script([retval, out] IDispatch **p)
    FuncHolder script(doc2.Get(), 7);
    EXPECT_EQ(script->memid, 1001);
    EXPECT_EQ(script->invkind, INVOKE_PROPERTYGET);
    EXPECT_EQ(script->cParams, 0);
    EXPECT_EQ(script->elemdescFunc.tdesc.vt, VT_DISPATCH);
    // QueryInterface keeps its parameters, from stdole2: REFIID riid, void **ppvObj.
    FuncHolder query(doc2.Get(), 0);
    EXPECT_EQ(query->cParams, 2);
    EXPECT_EQ(query->elemdescFunc.tdesc.vt, VT_VOID);
    ASSERT_EQ(query->lprgelemdescParam[0].tdesc.vt, VT_PTR);
    ASSERT_EQ(query->lprgelemdescParam[0].tdesc.lptdesc->vt, VT_USERDEFINED);
    ComPtr<ITypeInfo> guid =
        RefType(doc2.Get(), query->lprgelemdescParam[0].tdesc.lptdesc->hreftype);
    EXPECT_EQ(TypeName(guid.Get()), "GUID");

    // The interface half: only the own functions, as stored, with the retval parameter.
    HREFTYPE half = 0;
    ASSERT_EQ(doc2->GetRefTypeOfImplType(static_cast<UINT>(-1), &half), S_OK);
    ComPtr<ITypeInfo> iface = RefType(doc2.Get(), half);
    AttrHolder ifaceAttr(iface.Get());
    EXPECT_EQ(ifaceAttr->typekind, TKIND_INTERFACE);
    ASSERT_EQ(ifaceAttr->cFuncs, 108);
    FuncHolder all(iface.Get(),
                   0); // [propget] HRESULT all([retval, out] IHTMLElementCollection **p)
    EXPECT_EQ(all->funckind, FUNC_PUREVIRTUAL);
    EXPECT_EQ(all->elemdescFunc.tdesc.vt, VT_HRESULT);
    ASSERT_EQ(all->cParams, 1);
    EXPECT_TRUE(all->lprgelemdescParam[0].paramdesc.wParamFlags & PARAMFLAG_FRETVAL);
    HREFTYPE parentRef = 0;
    ASSERT_EQ(iface->GetRefTypeOfImplType(0, &parentRef), S_OK);
    ComPtr<ITypeInfo> parent = RefType(iface.Get(), parentRef);
    EXPECT_EQ(TypeName(parent.Get()), "IHTMLDocument");
    AttrHolder parentAttr(parent.Get());
    EXPECT_EQ(parentAttr->typekind, TKIND_INTERFACE);
}

TEST(MsftReader, PropertyTypedAsDualInterfaceLeadsToItsDispatchHalf) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("mshtml.tlb");
    ComPtr<ITypeInfo> doc2 = FindType(lib.Get(), "IHTMLDocument2");
    ASSERT_TRUE(doc2);
    AttrHolder attr(doc2.Get());
    bool seen = false;
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FuncHolder f(doc2.Get(), i);
        if (MemberName(doc2.Get(), f->memid) != "body" || f->invkind != INVOKE_PROPERTYGET)
            continue;
        seen = true;
        // [propget] HRESULT body([retval, out] IHTMLElement **p): the result is IHTMLElement*.
        ASSERT_EQ(f->cParams, 0);
        ASSERT_EQ(f->elemdescFunc.tdesc.vt, VT_PTR);
        ASSERT_EQ(f->elemdescFunc.tdesc.lptdesc->vt, VT_USERDEFINED);
        ComPtr<ITypeInfo> element = RefType(doc2.Get(), f->elemdescFunc.tdesc.lptdesc->hreftype);
        EXPECT_EQ(TypeName(element.Get()), "IHTMLElement");
        AttrHolder elementAttr(element.Get());
        EXPECT_EQ(elementAttr->typekind, TKIND_DISPATCH);
    }
    EXPECT_TRUE(seen);
}

TEST(MsftReader, EventDispinterfaceListsOnlyItsOwnMembers) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("mshtml.tlb");
    ComPtr<ITypeInfo> events = FindType(lib.Get(), "HTMLDocumentEvents");
    ASSERT_TRUE(events);
    AttrHolder attr(events.Get());
    EXPECT_EQ(attr->typekind, TKIND_DISPATCH);
    ASSERT_EQ(attr->cFuncs, 38); // 38 methods in mshtml.idl
    FuncHolder click(events.Get(), 1);
    EXPECT_EQ(MemberName(events.Get(), click->memid), "onclick");
    EXPECT_EQ(click->memid, -600); // DISPID_CLICK
    EXPECT_EQ(click->funckind, FUNC_DISPATCH);
    EXPECT_EQ(click->elemdescFunc.tdesc.vt, VT_BOOL);
}

TEST(MsftReader, EveryMemberOfEveryTypeDecodes) {
    TV_NEED_WINE();
    for (const char* file : {"mshtml.tlb", "stdole2.tlb", "scrrun.dll", "msscript.ocx",
                             "ieframe.dll", "msxml3.dll", "vbscript.dll"}) {
        SCOPED_TRACE(file);
        ComPtr<ITypeLib> lib = LoadWine(file);
        ASSERT_TRUE(lib);
        std::size_t members = 0;
        for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
            ITypeInfo* raw = nullptr;
            ASSERT_EQ(lib->GetTypeInfo(i, &raw), S_OK);
            ComPtr<ITypeInfo> info(raw);
            SCOPED_TRACE(TypeName(info.Get()));
            AttrHolder attr(info.Get());
            ASSERT_TRUE(attr.m_attr);
            for (UINT f = 0; f < attr->cFuncs; ++f) {
                FuncHolder desc(info.Get(), f);
                ASSERT_TRUE(desc.m_desc);
                BSTR names[32] = {};
                UINT count = 0;
                ASSERT_EQ(info->GetNames(desc->memid, names, 32, &count), S_OK);
                EXPECT_GE(count, 1u);
                for (UINT n = 0; n < count; ++n)
                    SysFreeString(names[n]);
                ++members;
            }
            for (UINT v = 0; v < attr->cVars; ++v) {
                VARDESC* var = nullptr;
                ASSERT_EQ(info->GetVarDesc(v, &var), S_OK);
                EXPECT_NE(MemberName(info.Get(), var->memid), "?");
                info->ReleaseVarDesc(var);
                ++members;
            }
        }
        EXPECT_GT(members, 0u);
    }
}

TEST(MsftReader, ControlClassNamesItsDefaultAndSourceInterfaces) {
    TV_NEED_WINE();
    ComPtr<ITypeLib> lib = LoadWine("msscript.ocx");
    ComPtr<ITypeInfo> control = FindType(lib.Get(), "ScriptControl");
    ASSERT_TRUE(control);
    AttrHolder attr(control.Get());
    ASSERT_EQ(attr->typekind, TKIND_COCLASS);
    std::string defaultName, sourceName;
    for (UINT i = 0; i < attr->cImplTypes; ++i) {
        INT flags = 0;
        HREFTYPE href = 0;
        ASSERT_EQ(control->GetImplTypeFlags(i, &flags), S_OK);
        ASSERT_EQ(control->GetRefTypeOfImplType(i, &href), S_OK);
        if ((flags & 7) == IMPLTYPEFLAG_FDEFAULT)
            defaultName = TypeName(RefType(control.Get(), href).Get());
        if ((flags & 7) == (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE))
            sourceName = TypeName(RefType(control.Get(), href).Get());
    }
    EXPECT_EQ(defaultName, "IScriptControl");
    EXPECT_EQ(sourceName, "DScriptControlSource");
}
