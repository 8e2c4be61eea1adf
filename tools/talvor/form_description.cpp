// Reading form description files, and the event interfaces built from them.
#include "tools/talvor/form_description.h"

#include "host/ole/interface_builder.h"
#include "platform/com/bstr.h"
#include "platform/com/typelib/type_lib.h"

#include <nlohmann/json.hpp>

#include <limits>

namespace talvor::tool {
namespace {

using Json = nlohmann::json;

// Each reader returns false with error set to "where: what".
bool Fail(std::string& error, const std::string& where, const std::string& what) {
    error = where + ": " + what;
    return false;
}

bool ReadName(const Json& object, const std::string& where, std::string& name, std::string& error) {
    auto found = object.find("name");
    if (found == object.end())
        return Fail(error, where, "missing \"name\"");
    if (!found->is_string() || found->get<std::string>().empty())
        return Fail(error, where + ".name", "expected a non-empty string");
    name = found->get<std::string>();
    return true;
}

bool ReadEvents(const Json& object, const std::string& where, std::vector<EventDescription>& events,
                std::string& error) {
    auto list = object.find("events");
    if (list == object.end())
        return true; // a control without events
    if (!list->is_array())
        return Fail(error, where + "events", "expected an array");
    for (std::size_t i = 0; i < list->size(); ++i) {
        const Json& item = (*list)[i];
        const std::string at = where + "events[" + std::to_string(i) + "]";
        if (!item.is_object())
            return Fail(error, at, "expected an object");
        EventDescription event;
        if (!ReadName(item, at, event.name, error))
            return false;
        auto id = item.find("id");
        if (id == item.end())
            return Fail(error, at, "missing \"id\"");
        if (!id->is_number_integer() ||
            id->get<long long>() < std::numeric_limits<int32_t>::min() ||
            id->get<long long>() > std::numeric_limits<int32_t>::max())
            return Fail(error, at + ".id", "expected a 32-bit integer");
        event.id = static_cast<long>(id->get<long long>());
        auto params = item.find("params");
        if (params != item.end()) {
            if (!params->is_array())
                return Fail(error, at + ".params", "expected an array of names");
            for (std::size_t p = 0; p < params->size(); ++p) {
                if (!(*params)[p].is_string())
                    return Fail(error, at + ".params[" + std::to_string(p) + "]",
                                "expected a string");
                event.params.push_back((*params)[p].get<std::string>());
            }
        }
        events.push_back(std::move(event));
    }
    return true;
}

// The default source interface of the coclass named className in the type library at path.
bool ReadClassEvents(const std::string& path, const std::string& className,
                     const std::string& where, std::vector<EventDescription>& events,
                     std::string& error) {
    ITypeLib* library = nullptr;
    std::string why;
    if (FAILED(platform::LoadTypeLibFromFile(path, &library, &why)) || library == nullptr)
        return Fail(error, where + "typelib",
                    "can't read '" + path + "'" + (why.empty() ? "" : ": " + why));
    ITypeInfo* source = nullptr;
    bool classFound = false;
    for (UINT i = 0; i < library->GetTypeInfoCount() && !classFound; ++i) {
        TYPEKIND kind{};
        BSTR name = nullptr;
        if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS ||
            FAILED(
                library->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr)))
            continue;
        classFound =
            CString(platform::MultiByteFromWide(name).c_str()).CompareNoCase(className.c_str()) ==
            0;
        SysFreeString(name);
        ITypeInfo* coclass = nullptr;
        if (!classFound || FAILED(library->GetTypeInfo(i, &coclass)))
            continue;
        TYPEATTR* attr = nullptr;
        if (SUCCEEDED(coclass->GetTypeAttr(&attr))) {
            for (UINT k = 0; k < attr->cImplTypes && source == nullptr; ++k) {
                INT flags = 0;
                HREFTYPE href = 0;
                if (SUCCEEDED(coclass->GetImplTypeFlags(k, &flags)) &&
                    (flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) ==
                        (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE) &&
                    SUCCEEDED(coclass->GetRefTypeOfImplType(k, &href)))
                    coclass->GetRefTypeInfo(href, &source);
            }
            coclass->ReleaseTypeAttr(attr);
        }
        coclass->Release();
    }
    library->Release();
    if (!classFound)
        return Fail(error, where + "class", "no class '" + className + "' in '" + path + "'");
    if (source == nullptr)
        return true; // a class without events
    std::unique_ptr<CVXInterfaceInfo> described = host::BuildInterfaceFromTypeInfo(source);
    source->Release();
    for (int i = 0; described && i < described->GetNumMethods(); ++i) {
        const CVXMethodInfo* method = described->GetMethod(i);
        if (method == nullptr)
            continue;
        EventDescription event{method->GetName().Str(), method->GetID(), {}};
        for (int p = 0; p < method->GetNumParams(); ++p)
            if (const CVXMethodParamInfo* param = method->GetParam(p))
                event.params.push_back(param->GetName().Str());
        events.push_back(std::move(event));
    }
    return true;
}

// Events listed, or named by "typelib" (a type library file) and "class" (a coclass in it).
bool ReadControlEvents(const Json& item, const std::string& where,
                       std::vector<EventDescription>& events, std::string& error) {
    auto typelib = item.find("typelib");
    if (typelib == item.end())
        return ReadEvents(item, where, events, error);
    auto className = item.find("class");
    if (!typelib->is_string())
        return Fail(error, where + "typelib", "expected a file name");
    if (className == item.end() || !className->is_string())
        return Fail(error, where + "class", "expected the name of a class of the type library");
    if (item.find("events") != item.end())
        return Fail(error, where + "events", "give either events or typelib and class");
    return ReadClassEvents(typelib->get<std::string>(), className->get<std::string>(), where,
                           events, error);
}

std::vector<host::MemberDescription> Members(const std::vector<EventDescription>& events) {
    std::vector<host::MemberDescription> members;
    for (const EventDescription& event : events)
        members.push_back({event.name, event.id, event.params});
    return members;
}

} // namespace

bool ParseFormDescription(const std::string& json, FormDescription& form, std::string& error) {
    Json root = Json::parse(json, nullptr, false);
    if (root.is_discarded())
        return Fail(error, "form description", "not valid JSON");
    if (!root.is_object())
        return Fail(error, "form description", "expected an object");
    form = FormDescription();
    if (auto name = root.find("form"); name != root.end()) {
        if (!name->is_string())
            return Fail(error, "form", "expected a string");
        form.name = name->get<std::string>();
    }
    if (!ReadEvents(root, "", form.events, error))
        return false;
    auto controls = root.find("controls");
    if (controls == root.end())
        return true;
    if (!controls->is_array())
        return Fail(error, "controls", "expected an array");
    for (std::size_t i = 0; i < controls->size(); ++i) {
        const Json& item = (*controls)[i];
        const std::string at = "controls[" + std::to_string(i) + "]";
        if (!item.is_object())
            return Fail(error, at, "expected an object");
        ControlDescription control;
        if (!ReadName(item, at, control.name, error) ||
            !ReadControlEvents(item, at + ".", control.events, error))
            return false;
        form.controls.push_back(std::move(control));
    }
    return true;
}

FormInterfaces::FormInterfaces(const FormDescription& form, const CString& formName) {
    for (const ControlDescription& control : form.controls) {
        m_owned.push_back(host::BuildInterface(control.name, Members(control.events)));
        interfaces.Add(m_owned.back().get());
        names.Add(control.name.c_str());
    }
    m_owned.push_back(host::BuildInterface(form.name, Members(form.events)));
    formEvents = m_owned.back().get();
    interfaces.Add(formEvents);
    names.Add(formName);
}

} // namespace talvor::tool
