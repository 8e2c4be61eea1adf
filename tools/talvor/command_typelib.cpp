// talvor typelib dump FILE | props FILE CLASS: the capability records of a type library or
// PE file, and the property kinds of a control class with their named values.
#include "tools/talvor/commands.h"

#include "platform/com/bstr.h"
#include "platform/com/registry/described_control.h"
#include "platform/com/typelib/type_lib.h"
#include "typeinfo/member_types.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>

namespace talvor::tool {
namespace {

using platform::ComPtr;
using Json = nlohmann::ordered_json;

const char* const KindNames[] = {"VP_PROP_NONE", "VP_PROP_TEXT",    "VP_PROP_COLOR",
                                 "VP_PROP_FONT", "VP_PROP_ENUM",    "VP_PROP_PICTURE",
                                 "VP_PROP_BOOL", "VP_PROP_INTEGER", "VP_PROP_REAL",
                                 "VP_PROP_DATE", "VP_PROP_PAGE",    "VP_PROP_OBJECT"};

const char* RecordKind(int kind) {
    switch (kind) {
    case 2:
        return "property";
    case 3:
        return "method";
    case 4:
        return "event";
    case 9:
        return "constant";
    default:
        return "?";
    }
}

std::string Name(ITypeInfo* info, MEMBERID id = MEMBERID_NIL) {
    BSTR name = nullptr;
    if (FAILED(info->GetDocumentation(id, &name, nullptr, nullptr, nullptr)))
        return std::string();
    std::string text = platform::MultiByteFromWide(name);
    SysFreeString(name);
    return text;
}

struct Options {
    std::vector<std::string> positional;
    bool json = false;
    std::string manifest;
};

bool ParseOptions(const Args& args, Options& options, std::string& error) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--json") {
            options.json = true;
        } else if (args[i] == "--search" || args[i] == "--manifest") {
            if (i + 1 >= args.size()) {
                error = args[i] + " needs a value";
                return false;
            }
            if (args[i] == "--search")
                platform::AddTypeLibSearchPath(args[++i]);
            else
                options.manifest = args[++i];
        } else if (args[i].rfind("--", 0) == 0) {
            error = "typelib: unknown option '" + args[i] + "'";
            return false;
        } else {
            options.positional.push_back(args[i]);
        }
    }
    return true;
}

int Load(const std::string& path, ComPtr<ITypeLib>& lib) {
    ITypeLib* raw = nullptr;
    std::string error;
    const HRESULT hr = platform::LoadTypeLibFromFile(path, &raw, &error);
    if (FAILED(hr))
        return UserError(path + ": " + (error.empty() ? platform::GetHResultName(hr) : error));
    lib = ComPtr<ITypeLib>(raw);
    return ExitOk;
}

// The interface a coclass names with these implementation flags (masked with 7), or null.
ComPtr<ITypeInfo> ImplementedWith(ITypeInfo* coclass, int wanted) {
    TYPEATTR* attr = nullptr;
    if (FAILED(coclass->GetTypeAttr(&attr)))
        return ComPtr<ITypeInfo>();
    ComPtr<ITypeInfo> found;
    for (UINT i = 0; i < attr->cImplTypes && !found; ++i) {
        INT flags = 0;
        HREFTYPE href = 0;
        ITypeInfo* impl = nullptr;
        if (SUCCEEDED(coclass->GetImplTypeFlags(i, &flags)) && (flags & 7) == wanted &&
            SUCCEEDED(coclass->GetRefTypeOfImplType(i, &href)) &&
            SUCCEEDED(coclass->GetRefTypeInfo(href, &impl)))
            found = ComPtr<ITypeInfo>(impl);
    }
    coclass->ReleaseTypeAttr(attr);
    return found;
}

struct Section {
    std::string interfaceName;
    std::string className;
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> records;
};

int Dump(const Options& options, std::FILE* output) {
    if (options.positional.size() != 2)
        return UserError("usage: talvor typelib dump FILE [--json] [--search DIR]");
    ComPtr<ITypeLib> lib;
    if (const int code = Load(options.positional[1], lib))
        return code;
    std::vector<std::unique_ptr<Section>> sections;
    bool anyClass = false;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        TYPEKIND kind = TKIND_MAX;
        ITypeInfo* raw = nullptr;
        if (FAILED(lib->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS ||
            FAILED(lib->GetTypeInfo(i, &raw)))
            continue;
        ComPtr<ITypeInfo> coclass(raw);
        anyClass = true;
        const std::string className = Name(coclass.Get());
        for (int event = 0; event < 2; ++event) {
            ComPtr<ITypeInfo> type =
                ImplementedWith(coclass.Get(), event ? IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE
                                                     : IMPLTYPEFLAG_FDEFAULT);
            if (!type)
                continue;
            auto section = std::make_unique<Section>();
            section->interfaceName = Name(type.Get());
            section->className = className;
            ITypeInfo* pointer = type.Get();
            TVPfxGetComAptitudeInfo(&pointer, section->records, event, (className + "1").c_str());
            sections.push_back(std::move(section));
        }
    }
    if (!anyClass) {
        // A library without classes: every interface by itself.
        for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
            TYPEKIND kind = TKIND_MAX;
            ITypeInfo* raw = nullptr;
            if (FAILED(lib->GetTypeInfoType(i, &kind)) ||
                (kind != TKIND_DISPATCH && kind != TKIND_INTERFACE) ||
                FAILED(lib->GetTypeInfo(i, &raw)))
                continue;
            ComPtr<ITypeInfo> type(raw);
            auto section = std::make_unique<Section>();
            section->interfaceName = Name(type.Get());
            ITypeInfo* pointer = type.Get();
            TVPfxGetComAptitudeInfo(&pointer, section->records, 0, nullptr);
            sections.push_back(std::move(section));
        }
    }
    if (options.json) {
        Json out = Json::array();
        for (const auto& section : sections) {
            Json records = Json::array();
            for (const tagAPTITUDEINFO& r : section->records) {
                records.push_back({{"member", r.strMember.Str()},
                                   {"kind", r.nKind},
                                   {"declaration", r.strDeclaration.Str()},
                                   {"help", r.strHelp.Str()},
                                   {"constant", r.strConstant.Str()}});
            }
            out.push_back({{"interface", section->interfaceName},
                           {"class", section->className},
                           {"records", records}});
        }
        std::fprintf(output, "%s\n",
                     out.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
        return ExitOk;
    }
    for (const auto& section : sections) {
        std::fprintf(output, "interface %s", section->interfaceName.c_str());
        if (!section->className.empty())
            std::fprintf(output, " (class %s)", section->className.c_str());
        std::fprintf(output, "\n");
        for (const tagAPTITUDEINFO& r : section->records) {
            if (r.nKind == 9) {
                std::fprintf(output, "  %-9s %s = %s\n", RecordKind(r.nKind),
                             r.strMember.GetString(), r.strConstant.GetString());
                continue;
            }
            std::fprintf(output, "  %-9s %s", RecordKind(r.nKind), r.strDeclaration.GetString());
            if (r.nKind == 4)
                std::fprintf(output, "  [%s]", r.strMember.GetString());
            if (!r.strHelp.IsEmpty())
                std::fprintf(output, "  -- %s", r.strHelp.GetString());
            std::fprintf(output, "\n");
        }
    }
    return ExitOk;
}

int Props(const Options& options, std::FILE* output) {
    if (options.positional.size() != 3)
        return UserError("usage: talvor typelib props FILE CLASS [--json] [--manifest FILE]");
    ComPtr<ITypeLib> lib;
    if (const int code = Load(options.positional[1], lib))
        return code;
    const std::string& wanted = options.positional[2];
    ComPtr<ITypeInfo> coclass;
    for (UINT i = 0; i < lib->GetTypeInfoCount() && !coclass; ++i) {
        TYPEKIND kind = TKIND_MAX;
        ITypeInfo* raw = nullptr;
        if (FAILED(lib->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS ||
            FAILED(lib->GetTypeInfo(i, &raw)))
            continue;
        ComPtr<ITypeInfo> candidate(raw);
        TYPEATTR* attr = nullptr;
        bool match = Name(candidate.Get()) == wanted;
        if (!match && SUCCEEDED(candidate->GetTypeAttr(&attr))) {
            GUID id{};
            match = platform::GuidFromText(wanted, id) && id == attr->guid;
            candidate->ReleaseTypeAttr(attr);
        }
        if (match)
            coclass = candidate;
    }
    if (!coclass)
        return UserError(options.positional[1] + ": no class '" + wanted + "'");
    std::shared_ptr<platform::ControlManifest> manifest;
    if (!options.manifest.empty()) {
        std::ifstream in(options.manifest);
        if (!in)
            return UserError(options.manifest + ": can't read the manifest");
        std::stringstream text;
        text << in.rdbuf();
        manifest = std::make_shared<platform::ControlManifest>();
        std::string error;
        if (!manifest->Parse(text.str(), error))
            return UserError(options.manifest + ": " + error);
    }
    IDispatch* raw = nullptr;
    if (FAILED(platform::CreateDescribedControl(coclass.Get(), manifest, IID_IDispatch,
                                                reinterpret_cast<void**>(&raw))))
        return UserError(wanted + ": the class has no dispatch interface");
    ComPtr<IDispatch> control(raw);
    ComPtr<ITypeInfo> type = ImplementedWith(coclass.Get(), IMPLTYPEFLAG_FDEFAULT);
    TYPEATTR* attr = nullptr;
    if (!type || FAILED(type->GetTypeAttr(&attr)))
        return UserError(wanted + ": the class has no default interface");
    // Each property once, in the order of the type: variables, then put functions.
    std::vector<MEMBERID> ids;
    for (UINT i = 0; i < attr->cVars; ++i) {
        VARDESC* var = nullptr;
        if (SUCCEEDED(type->GetVarDesc(i, &var))) {
            ids.push_back(var->memid);
            type->ReleaseVarDesc(var);
        }
    }
    for (UINT i = 0; i < attr->cFuncs; ++i) {
        FUNCDESC* func = nullptr;
        if (FAILED(type->GetFuncDesc(i, &func)))
            continue;
        if ((func->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) &&
            std::find(ids.begin(), ids.end(), func->memid) == ids.end())
            ids.push_back(func->memid);
        type->ReleaseFuncDesc(func);
    }
    type->ReleaseTypeAttr(attr);
    Json out = Json::array();
    for (MEMBERID id : ids) {
        tagACTIVEXPROPTYPEINFO info;
        TVPfxGetItemPropTypeInfo(control.Get(), type.Get(), id, &info);
        const std::string name = Name(type.Get(), id);
        const int kind = info.nPropType;
        std::vector<std::pair<std::string, std::string>> values;
        if (kind == VP_PROP_ENUM || kind == VP_PROP_OBJECT) {
            for (INT_PTR v = 0; v < info.arrNames.GetSize(); ++v) {
                std::string text;
                if (v < info.arrValues.GetSize()) {
                    VARIANT converted;
                    VariantInit(&converted);
                    if (SUCCEEDED(VariantChangeType(&converted, &info.arrValues[v], 0, VT_BSTR)))
                        text = platform::MultiByteFromWide(converted.bstrVal);
                    VariantClear(&converted);
                }
                values.emplace_back(info.arrNames[v].Str(), text);
            }
        }
        if (options.json) {
            Json entry = {
                {"name", name}, {"id", id}, {"kind", kind}, {"kindName", KindNames[kind]}};
            Json list = Json::array();
            for (const auto& [n, v] : values)
                list.push_back({{"name", n}, {"value", v}});
            entry["values"] = list;
            out.push_back(entry);
            continue;
        }
        std::fprintf(output, "%-20s %2d %-16s", name.c_str(), kind, KindNames[kind]);
        for (std::size_t v = 0; v < values.size(); ++v)
            std::fprintf(output, "%s%s=%s", v ? ", " : " ", values[v].first.c_str(),
                         values[v].second.c_str());
        std::fprintf(output, "\n");
    }
    if (options.json)
        std::fprintf(output, "%s\n",
                     out.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return ExitOk;
}

} // namespace

int RunTypelib(const Args& args, std::FILE* output) {
    Options options;
    std::string error;
    if (!ParseOptions(args, options, error))
        return UserError(error);
    if (options.positional.empty())
        return UserError("usage: talvor typelib dump FILE | props FILE CLASS [--json]");
    if (options.positional[0] == "dump")
        return Dump(options, output);
    if (options.positional[0] == "props")
        return Props(options, output);
    return UserError("typelib: unknown action '" + options.positional[0] + "' (dump, props)");
}

} // namespace talvor::tool
