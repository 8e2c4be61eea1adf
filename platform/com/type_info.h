// The type information of the component model: the published structures (TYPEATTR, FUNCDESC,
// VARDESC, TYPEDESC, ELEMDESC, IDLDESC, TLIBATTR) with their constants, and the interfaces
// ITypeLib, ITypeInfo and IDispatch. Every Get...Desc / GetTypeAttr has its Release... pair;
// what they hand out stays valid until that release.
#pragma once

#include "platform/com/unknown.h"
#include "platform/com/variant.h"

using DISPID = LONG;
using MEMBERID = DISPID;
using HREFTYPE = DWORD;
using INT = int;

constexpr MEMBERID MEMBERID_NIL = -1;
constexpr DISPID DISPID_UNKNOWN = -1;
constexpr DISPID DISPID_VALUE = 0;
constexpr DISPID DISPID_PROPERTYPUT = -3;
constexpr DISPID DISPID_NEWENUM = -4;
constexpr DISPID DISPID_EVALUATE = -5;
constexpr DISPID DISPID_CONSTRUCTOR = -6;
constexpr DISPID DISPID_DESTRUCTOR = -7;
constexpr DISPID DISPID_COLLECT = -8;

enum TYPEKIND {
    TKIND_ENUM = 0,
    TKIND_RECORD = 1,
    TKIND_MODULE = 2,
    TKIND_INTERFACE = 3,
    TKIND_DISPATCH = 4,
    TKIND_COCLASS = 5,
    TKIND_ALIAS = 6,
    TKIND_UNION = 7,
    TKIND_MAX = 8
};

enum SYSKIND { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 };

enum FUNCKIND {
    FUNC_VIRTUAL = 0,
    FUNC_PUREVIRTUAL = 1,
    FUNC_NONVIRTUAL = 2,
    FUNC_STATIC = 3,
    FUNC_DISPATCH = 4
};

enum INVOKEKIND {
    INVOKE_FUNC = 1,
    INVOKE_PROPERTYGET = 2,
    INVOKE_PROPERTYPUT = 4,
    INVOKE_PROPERTYPUTREF = 8
};

enum CALLCONV {
    CC_FASTCALL = 0,
    CC_CDECL = 1,
    CC_MSCPASCAL = 2,
    CC_PASCAL = 2,
    CC_MACPASCAL = 3,
    CC_STDCALL = 4,
    CC_FPFASTCALL = 5,
    CC_SYSCALL = 6,
    CC_MPWCDECL = 7,
    CC_MPWPASCAL = 8,
    CC_MAX = 9
};

enum VARKIND { VAR_PERINSTANCE = 0, VAR_STATIC = 1, VAR_CONST = 2, VAR_DISPATCH = 3 };

enum TYPEFLAGS {
    TYPEFLAG_FAPPOBJECT = 0x1,
    TYPEFLAG_FCANCREATE = 0x2,
    TYPEFLAG_FLICENSED = 0x4,
    TYPEFLAG_FPREDECLID = 0x8,
    TYPEFLAG_FHIDDEN = 0x10,
    TYPEFLAG_FCONTROL = 0x20,
    TYPEFLAG_FDUAL = 0x40,
    TYPEFLAG_FNONEXTENSIBLE = 0x80,
    TYPEFLAG_FOLEAUTOMATION = 0x100,
    TYPEFLAG_FRESTRICTED = 0x200,
    TYPEFLAG_FAGGREGATABLE = 0x400,
    TYPEFLAG_FREPLACEABLE = 0x800,
    TYPEFLAG_FDISPATCHABLE = 0x1000,
    TYPEFLAG_FREVERSEBIND = 0x2000,
    TYPEFLAG_FPROXY = 0x4000
};

enum FUNCFLAGS {
    FUNCFLAG_FRESTRICTED = 0x1,
    FUNCFLAG_FSOURCE = 0x2,
    FUNCFLAG_FBINDABLE = 0x4,
    FUNCFLAG_FREQUESTEDIT = 0x8,
    FUNCFLAG_FDISPLAYBIND = 0x10,
    FUNCFLAG_FDEFAULTBIND = 0x20,
    FUNCFLAG_FHIDDEN = 0x40,
    FUNCFLAG_FUSESGETLASTERROR = 0x80,
    FUNCFLAG_FDEFAULTCOLLELEM = 0x100,
    FUNCFLAG_FUIDEFAULT = 0x200,
    FUNCFLAG_FNONBROWSABLE = 0x400,
    FUNCFLAG_FREPLACEABLE = 0x800,
    FUNCFLAG_FIMMEDIATEBIND = 0x1000
};

enum VARFLAGS {
    VARFLAG_FREADONLY = 0x1,
    VARFLAG_FSOURCE = 0x2,
    VARFLAG_FBINDABLE = 0x4,
    VARFLAG_FREQUESTEDIT = 0x8,
    VARFLAG_FDISPLAYBIND = 0x10,
    VARFLAG_FDEFAULTBIND = 0x20,
    VARFLAG_FHIDDEN = 0x40,
    VARFLAG_FRESTRICTED = 0x80,
    VARFLAG_FDEFAULTCOLLELEM = 0x100,
    VARFLAG_FUIDEFAULT = 0x200,
    VARFLAG_FNONBROWSABLE = 0x400,
    VARFLAG_FREPLACEABLE = 0x800,
    VARFLAG_FIMMEDIATEBIND = 0x1000
};

enum LIBFLAGS {
    LIBFLAG_FRESTRICTED = 0x1,
    LIBFLAG_FCONTROL = 0x2,
    LIBFLAG_FHIDDEN = 0x4,
    LIBFLAG_FHASDISKIMAGE = 0x8
};

constexpr int IMPLTYPEFLAG_FDEFAULT = 0x1;
constexpr int IMPLTYPEFLAG_FSOURCE = 0x2;
constexpr int IMPLTYPEFLAG_FRESTRICTED = 0x4;
constexpr int IMPLTYPEFLAG_FDEFAULTVTABLE = 0x8;

constexpr USHORT PARAMFLAG_NONE = 0x0;
constexpr USHORT PARAMFLAG_FIN = 0x1;
constexpr USHORT PARAMFLAG_FOUT = 0x2;
constexpr USHORT PARAMFLAG_FLCID = 0x4;
constexpr USHORT PARAMFLAG_FRETVAL = 0x8;
constexpr USHORT PARAMFLAG_FOPT = 0x10;
constexpr USHORT PARAMFLAG_FHASDEFAULT = 0x20;
constexpr USHORT PARAMFLAG_FHASCUSTDATA = 0x40;

constexpr USHORT IDLFLAG_NONE = PARAMFLAG_NONE;
constexpr USHORT IDLFLAG_FIN = PARAMFLAG_FIN;
constexpr USHORT IDLFLAG_FOUT = PARAMFLAG_FOUT;
constexpr USHORT IDLFLAG_FLCID = PARAMFLAG_FLCID;
constexpr USHORT IDLFLAG_FRETVAL = PARAMFLAG_FRETVAL;

struct tagARRAYDESC;

struct tagTYPEDESC {
    union {
        tagTYPEDESC* lptdesc;  // VT_PTR, VT_SAFEARRAY: the type pointed to or held
        tagARRAYDESC* lpadesc; // VT_CARRAY
        HREFTYPE hreftype;     // VT_USERDEFINED
    };
    VARTYPE vt;
};
using TYPEDESC = tagTYPEDESC;

struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;
};

struct tagARRAYDESC {
    TYPEDESC tdescElem;
    USHORT cDims;
    SAFEARRAYBOUND rgbounds[1]; // cDims bounds follow
};
using ARRAYDESC = tagARRAYDESC;

struct PARAMDESCEX {
    ULONG cBytes;
    VARIANTARG varDefaultValue;
};
using LPPARAMDESCEX = PARAMDESCEX*;

struct PARAMDESC {
    LPPARAMDESCEX pparamdescex; // with PARAMFLAG_FHASDEFAULT
    USHORT wParamFlags;
};

struct IDLDESC {
    UINT_PTR dwReserved;
    USHORT wIDLFlags;
};

struct tagELEMDESC {
    TYPEDESC tdesc;
    union {
        IDLDESC idldesc;
        PARAMDESC paramdesc;
    };
};
using ELEMDESC = tagELEMDESC;

struct tagTYPEATTR {
    GUID guid;
    LCID lcid;
    DWORD dwReserved;
    MEMBERID memidConstructor;
    MEMBERID memidDestructor;
    LPOLESTR lpstrSchema;
    ULONG cbSizeInstance;
    TYPEKIND typekind;
    WORD cFuncs;
    WORD cVars;
    WORD cImplTypes;
    WORD cbSizeVft;
    WORD cbAlignment;
    WORD wTypeFlags;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    TYPEDESC tdescAlias; // TKIND_ALIAS: the type aliased
    IDLDESC idldescType;
};
using TYPEATTR = tagTYPEATTR;

struct tagFUNCDESC {
    MEMBERID memid;
    SCODE* lprgscode;
    ELEMDESC* lprgelemdescParam; // cParams parameters
    FUNCKIND funckind;
    INVOKEKIND invkind;
    CALLCONV callconv;
    SHORT cParams;
    SHORT cParamsOpt;
    SHORT oVft;
    SHORT cScodes;
    ELEMDESC elemdescFunc; // the result
    WORD wFuncFlags;
};
using FUNCDESC = tagFUNCDESC;

struct tagVARDESC {
    MEMBERID memid;
    LPOLESTR lpstrSchema;
    union {
        ULONG oInst;         // VAR_PERINSTANCE, VAR_DISPATCH
        VARIANT* lpvarValue; // VAR_CONST
    };
    ELEMDESC elemdescVar;
    WORD wVarFlags;
    VARKIND varkind;
};
using VARDESC = tagVARDESC;

struct tagTLIBATTR {
    GUID guid;
    LCID lcid;
    SYSKIND syskind;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    WORD wLibFlags;
};
using TLIBATTR = tagTLIBATTR;

struct DISPPARAMS {
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

struct EXCEPINFO {
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    void* pvReserved;
    HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
    SCODE scode;
};

constexpr WORD DISPATCH_METHOD = 0x1;
constexpr WORD DISPATCH_PROPERTYGET = 0x2;
constexpr WORD DISPATCH_PROPERTYPUT = 0x4;
constexpr WORD DISPATCH_PROPERTYPUTREF = 0x8;

class ITypeLib;
class ITypeComp;

class ITypeInfo : public IUnknown {
public:
    virtual HRESULT GetTypeAttr(TYPEATTR** attr) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    // TYPE_E_ELEMENTNOTFOUND for an index at or past cFuncs.
    virtual HRESULT GetFuncDesc(UINT index, FUNCDESC** desc) = 0;
    virtual HRESULT GetVarDesc(UINT index, VARDESC** desc) = 0;
    // The member's name, then its parameters' names, at most `maxNames`; TYPE_E_ELEMENTNOTFOUND
    // for an unknown id.
    virtual HRESULT GetNames(MEMBERID memid, BSTR* names, UINT maxNames, UINT* count) = 0;
    // Index -1 on the dispatch half of a dual interface gives its interface half.
    virtual HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* ref) = 0;
    virtual HRESULT GetImplTypeFlags(UINT index, INT* flags) = 0;
    virtual HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) = 0;
    virtual HRESULT Invoke(void* instance, MEMBERID memid, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* exception, UINT* argError) = 0;
    // Each out pointer may be null. MEMBERID_NIL describes the type itself.
    virtual HRESULT GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString,
                                     DWORD* helpContext, BSTR* helpFile) = 0;
    virtual HRESULT GetDllEntry(MEMBERID memid, INVOKEKIND kind, BSTR* dllName, BSTR* name,
                                WORD* ordinal) = 0;
    virtual HRESULT GetRefTypeInfo(HREFTYPE ref, ITypeInfo** typeInfo) = 0;
    virtual HRESULT AddressOfMember(MEMBERID memid, INVOKEKIND kind, void** address) = 0;
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT GetMops(MEMBERID memid, BSTR* mops) = 0;
    virtual HRESULT GetContainingTypeLib(ITypeLib** typeLib, UINT* index) = 0;
    virtual void ReleaseTypeAttr(TYPEATTR* attr) = 0;
    virtual void ReleaseFuncDesc(FUNCDESC* desc) = 0;
    virtual void ReleaseVarDesc(VARDESC* desc) = 0;
};
using LPTYPEINFO = ITypeInfo*;

class ITypeLib : public IUnknown {
public:
    virtual UINT GetTypeInfoCount() = 0;
    virtual HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    virtual HRESULT GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetLibAttr(TLIBATTR** attr) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    // Index -1 describes the library itself.
    virtual HRESULT GetDocumentation(INT index, BSTR* name, BSTR* docString, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    virtual HRESULT IsName(LPOLESTR name, ULONG hash, BOOL* found) = 0;
    virtual HRESULT FindName(LPOLESTR name, ULONG hash, ITypeInfo** typeInfos, MEMBERID* ids,
                             USHORT* found) = 0;
    virtual void ReleaseTLibAttr(TLIBATTR* attr) = 0;
};
using LPTYPELIB = ITypeLib*;

class IDispatch : public IUnknown {
public:
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID lcid, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                  DISPID* ids) = 0;
    virtual HRESULT Invoke(DISPID member, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* exception, UINT* argError) = 0;
};
using LPDISPATCH = IDispatch*;
