#include "typeinfo/capability_info.h"

#include "platform/codepage/code_page.h"
#include "platform/codepage/mbs_functions.h"
#include "platform/com/bstr.h"
#include "platform/com/hresult.h"

#include <memory>

namespace {

// Deeper type descriptions than this are no real member's type.
constexpr int MaxTypeDepth = 32;

CString Narrow(const OLECHAR* text) {
    return CString(talvor::platform::MultiByteFromWide(text).c_str());
}

// The names GetNames gives, freed at the end of the scope.
struct Names {
    BSTR items[64] = {};
    UINT count = 0;
    ~Names() {
        for (UINT i = 0; i < count; ++i)
            SysFreeString(items[i]);
    }
    CString At(UINT i) const { return i < count ? Narrow(items[i]) : CString(); }
};

const char* const SimpleTypeNames[73] = {"void",
                                         "null",
                                         "short",
                                         "long",
                                         "float",
                                         "double",
                                         "CURRENCY",
                                         "DATE",
                                         "BSTR",
                                         "IDispatch*",
                                         "SCODE",
                                         "bool",
                                         "VARIANT",
                                         "IUnknown*",
                                         "wchar_t",
                                         "",
                                         "char",
                                         "unsigned char",
                                         "unsigned short",
                                         "unsigned long",
                                         "int64",
                                         "uint64",
                                         "int",
                                         "unsigned int",
                                         "void",
                                         "HRESULT",
                                         "PTR",
                                         "SAFEARRAY",
                                         "CARRAY",
                                         "USERDEFINED",
                                         "String",
                                         "String",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "",
                                         "FILETIME",
                                         "BLOB",
                                         "STREAM",
                                         "STORAGE",
                                         "STREAMED_OBJECT",
                                         "STORED_OBJECT",
                                         "BLOB_OBJECT",
                                         "CF",
                                         "CLSID"};

struct Replacement {
    const char* name;
    const char* text;
};
const Replacement Replacements[] = {{"VARIANT", "VCF::VariantData"},
                                    {"BSTR", "VCF::String"},
                                    {"IUnknown", "VCF::Object"},
                                    {"IDispatch", "VCF::Object"},
                                    {"HRESULT", "unsigned long"}};

CString TypeText(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc, int depth) {
    if (!typeDesc || depth > MaxTypeDepth)
        return CString();
    const VARTYPE vt = typeDesc->vt;
    if (vt == VT_PTR)
        return TypeText(typeInfo, typeDesc->lptdesc, depth + 1) + "*";
    if ((vt & VT_TYPEMASK) == VT_CARRAY) {
        ARRAYDESC* array = typeDesc->lpadesc;
        if (!array)
            return CString();
        CString text = TypeText(typeInfo, &array->tdescElem, depth + 1);
        for (USHORT d = 0; d < array->cDims; ++d)
            text.AppendFormat("[%d]", static_cast<int>(array->rgbounds[d].cElements));
        return text;
    }
    if ((vt & VT_TYPEMASK) == VT_SAFEARRAY)
        return "SAFEARRAY(" + TypeText(typeInfo, typeDesc->lptdesc, depth + 1) + ")";
    if (vt == VT_USERDEFINED) {
        ITypeInfo* type = nullptr;
        if (!typeInfo || FAILED(typeInfo->GetRefTypeInfo(typeDesc->hreftype, &type)))
            return "<GetRefTypeInfo failed>";
        TYPEATTR* attr = nullptr;
        BSTR name = nullptr;
        CString text;
        if (SUCCEEDED(type->GetTypeAttr(&attr)) &&
            SUCCEEDED(type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
            text = Narrow(name);
        else
            text = "ITypeInfo::GetDocumentation() failed in TYPEDESCToString";
        SysFreeString(name);
        if (attr)
            type->ReleaseTypeAttr(attr);
        type->Release();
        return text;
    }
    return VTtoString(vt);
}

// The text of a function's parameters, or with `lastTypeOnly` the type of its last one.
CString ParameterList(ITypeInfo* typeInfo, const FUNCDESC* func, const Names* names,
                      bool lastTypeOnly) {
    if (!func || !names || func->cParams <= 0 || !func->lprgelemdescParam)
        return CString();
    CString text;
    for (SHORT p = 0; p < func->cParams; ++p) {
        tagTYPEDESC* desc = &func->lprgelemdescParam[p].tdesc;
        if (desc->vt == VT_CARRAY && desc->lpadesc)
            desc = &desc->lpadesc->tdescElem;
        const CString type = TYPEDESCToString(typeInfo, desc);
        if (lastTypeOnly) {
            text = type;
            continue;
        }
        CString name = names->At(static_cast<UINT>(p) + 1);
        if (name.IsEmpty())
            name = "Val";
        text += type + " " + name;
        if (p + 1 < func->cParams)
            text += ", ";
    }
    return text;
}

bool HasProperty(const CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos, const CString& name) {
    for (const tagAPTITUDEINFO& info : infos) {
        if (info.nKind == 2 &&
            _mbsicoll(reinterpret_cast<const unsigned char*>(info.strMember.GetString()),
                      reinterpret_cast<const unsigned char*>(name.GetString())) == 0)
            return true;
    }
    return false;
}

CString HelpString(ITypeInfo* typeInfo, MEMBERID memid) {
    BSTR help = nullptr;
    if (FAILED(typeInfo->GetDocumentation(memid, nullptr, &help, nullptr, nullptr)))
        return CString();
    CString text = Narrow(help);
    SysFreeString(help);
    return text;
}

void VariableRecord(ITypeInfo* typeInfo, UINT index,
                    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos) {
    VARDESC* var = nullptr;
    if (FAILED(typeInfo->GetVarDesc(index, &var)))
        return;
    const CString help = HelpString(typeInfo, var->memid);
    Names names;
    typeInfo->GetNames(var->memid, names.items, 64, &names.count);
    const CString name = names.At(0);
    if (!HasProperty(infos, name)) {
        tagAPTITUDEINFO info;
        info.strDeclaration = TYPEDESCToString(typeInfo, &var->elemdescVar.tdesc) + " " + name;
        info.strMember = name;
        info.strHelp = help;
        info.nKind = 2;
        infos.Add(info);
    }
    typeInfo->ReleaseVarDesc(var);
}

void FunctionRecord(ITypeInfo* typeInfo, UINT index,
                    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos) {
    FUNCDESC* func = nullptr;
    if (FAILED(typeInfo->GetFuncDesc(index, &func)))
        return;
    Names names;
    typeInfo->GetNames(func->memid, names.items, 64, &names.count);
    const CString name = names.At(0);
    tagAPTITUDEINFO info;
    info.strHelp = HelpString(typeInfo, func->memid);
    if (func->invkind & INVOKE_FUNC) {
        info.strDeclaration = TYPEDESCToString(typeInfo, &func->elemdescFunc.tdesc) + " " + name +
                              "( " + ParameterList(typeInfo, func, &names, false) + " )";
        info.strMember = name;
        info.nKind = 3;
        infos.Add(info);
    } else if (!HasProperty(infos, name)) {
        const CString type = (func->invkind & INVOKE_PROPERTYGET)
                                 ? TYPEDESCToString(typeInfo, &func->elemdescFunc.tdesc)
                                 : ParameterList(typeInfo, func, &names, true);
        info.strDeclaration = type + " " + name;
        info.strMember = name;
        info.nKind = 2;
        infos.Add(info);
    }
    typeInfo->ReleaseFuncDesc(func);
}

CString ValueName(ITypeInfo* enumType, MEMBERID memid) {
    BSTR name = nullptr;
    UINT count = 0;
    if (FAILED(enumType->GetNames(memid, &name, 1, &count)) || count == 0)
        return CString();
    CString text = Narrow(name);
    SysFreeString(name);
    return text;
}

void EnumerationRecords(ITypeInfo* enumType, const TYPEATTR& attr,
                        CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos) {
    BSTR enumNameWide = nullptr;
    enumType->GetDocumentation(MEMBERID_NIL, &enumNameWide, nullptr, nullptr, nullptr);
    const CString enumName = Narrow(enumNameWide);
    SysFreeString(enumNameWide);
    CString text = "enum " + enumName + " {\r\n";
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> records;
    for (UINT i = 0; i < attr.cVars; ++i) {
        VARDESC* var = nullptr;
        if (FAILED(enumType->GetVarDesc(i, &var)))
            continue;
        CString valueText;
        bool isString = false;
        if (var->varkind == VAR_CONST && var->lpvarValue) {
            VARIANT converted;
            VariantInit(&converted);
            const VARTYPE vt = var->lpvarValue->vt;
            isString = vt == VT_BSTR;
            if (SUCCEEDED(VariantChangeType(&converted, var->lpvarValue, 0, VT_BSTR))) {
                valueText = Narrow(converted.bstrVal);
                VariantClear(&converted);
            } else if (vt == VT_ERROR || vt == VT_HRESULT) {
                valueText = talvor::platform::GetHResultName(var->lpvarValue->scode);
            }
        }
        const CString name = ValueName(enumType, var->memid);
        text += name + " = ";
        tagAPTITUDEINFO info;
        info.strMember = "Enum " + enumName + "::" + name;
        info.nKind = 9;
        if (isString) {
            info.strConstant = "\"" + valueText + "\"";
            text += info.strConstant;
        } else {
            info.strConstant = valueText;
            text += valueText;
        }
        text += i + 1 < attr.cVars ? ",\r\n" : "\r\n";
        records.Add(info);
        enumType->ReleaseVarDesc(var);
    }
    text += "}\r\n";
    for (tagAPTITUDEINFO& info : records) {
        info.strHelp = text;
        infos.Add(info);
    }
}

} // namespace

CString VTtoString(VARTYPE vt) {
    const unsigned value = vt & VT_TYPEMASK;
    if (value > 72)
        return "BAD VARTYPE";
    std::string name = SimpleTypeNames[value];
    bool star = false;
    if (!name.empty() && name.back() == '*') {
        star = true;
        name.pop_back();
    }
    for (const Replacement& r : Replacements) {
        if (name == r.name) {
            name = r.text;
            break;
        }
    }
    if (star)
        name += '*';
    return CString(name.c_str());
}

CString TYPEDESCToString(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc) {
    return TypeText(typeInfo, typeDesc, 0);
}

void TVPfxGetComAptitudeInfo(ITypeInfo** typeInfo, CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos,
                             int event, const char* controlName) {
    if (!typeInfo || !*typeInfo)
        return;
    ITypeInfo* type = *typeInfo;
    TYPEATTR* attr = nullptr;
    if (FAILED(type->GetTypeAttr(&attr)))
        return;
    if (event == 0) {
        ITypeLib* lib = nullptr;
        UINT ownIndex = 0;
        if (SUCCEEDED(type->GetContainingTypeLib(&lib, &ownIndex)) && lib) {
            for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
                TYPEKIND kind = TKIND_MAX;
                ITypeInfo* candidate = nullptr;
                if (FAILED(lib->GetTypeInfoType(i, &kind)) || kind != TKIND_ENUM ||
                    FAILED(lib->GetTypeInfo(i, &candidate)))
                    continue;
                TYPEATTR* enumAttr = nullptr;
                if (SUCCEEDED(candidate->GetTypeAttr(&enumAttr))) {
                    EnumerationRecords(candidate, *enumAttr, infos);
                    candidate->ReleaseTypeAttr(enumAttr);
                }
                candidate->Release();
            }
            lib->Release();
        }
        for (UINT i = 0; i < attr->cVars; ++i)
            VariableRecord(type, i, infos);
        for (UINT i = 0; i < attr->cFuncs; ++i)
            FunctionRecord(type, i, infos);
    } else {
        CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> events;
        for (UINT i = 0; i < attr->cFuncs; ++i)
            FunctionRecord(type, i, events);
        const CString prefix = CString(controlName ? controlName : "") + "_";
        for (tagAPTITUDEINFO& info : events) {
            info.strMember = prefix + info.strMember;
            info.nKind = 4;
            infos.Add(info);
        }
    }
    type->ReleaseTypeAttr(attr);
}
