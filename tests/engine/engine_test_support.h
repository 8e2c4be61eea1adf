// Helpers shared by the engine's tests: short ways to write line arrays, show them, and
// build the event interfaces of a form.
#pragma once

#include "engine/script_text_disposal.h"
#include "host/ole/interface_builder.h"
#include "platform/app/resource_module.h"
#include "resources/resource_guard.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace talvor::engine::testing {

inline CTalvorScriptTextDisposal& Engine() {
    return CTalvorScriptTextDisposal::GetDisposal();
}

inline CStringArray Lines(std::initializer_list<const char*> lines) {
    CStringArray array;
    for (const char* line : lines)
        array.Add(line);
    return array;
}

// Elements joined by "|", so that expectations read on one line.
inline std::string Join(const CStringArray& lines) {
    std::string text;
    for (INT_PTR i = 0; i < lines.GetSize(); ++i) {
        if (i > 0)
            text += "|";
        text += lines[i].Str();
    }
    return text;
}

inline std::string JoinIds(const CArray<long, long>& ids) {
    std::string text;
    for (INT_PTR i = 0; i < ids.GetSize(); ++i) {
        if (i > 0)
            text += ",";
        text += std::to_string(ids[i]);
    }
    return text;
}

// Puts a TalvorRes with the given strings in place for the life of the object.
class ReplacedResources {
public:
    explicit ReplacedResources(std::initializer_list<std::pair<UINT, const char*>> strings) {
        resources::RegisterTalvorRes();
        auto module = std::make_shared<platform::ResourceModule>(resources::ModuleName);
        for (const auto& [id, text] : strings)
            module->AddString(id, text);
        platform::RegisterResourceModule(module);
    }
    ~ReplacedResources() { platform::ResetResourceModule(resources::ModuleName); }
};

// A form: controls in tab order with their events, the form's own events last, under the
// engine's name for the form.
struct ControlEvents {
    std::string name;
    std::vector<talvor::host::MemberDescription> events;
};

class TestForm {
public:
    TestForm(const std::vector<ControlEvents>& controls,
             const std::vector<talvor::host::MemberDescription>& formEvents) {
        for (const ControlEvents& control : controls)
            Add(control.name, control.events);
        Add(Engine().m_strSystemFuncName.Str(), formEvents);
        m_form = m_owned.back().get();
    }

    // Parses script as the host does: ChangeScripText, then GetCodeInfoByScriptText. lines
    // keeps what belonged to no block.
    void Parse(const CString& script, VB_ALL_PROGRAMME_INFO& info, CStringArray& lines) {
        Engine().ChangeScripText(script, lines);
        Engine().GetCodeInfoByScriptText(lines, m_names, m_form, m_interfaces, &info);
    }
    CString RoundTrip(const CString& script) {
        VB_ALL_PROGRAMME_INFO info;
        CStringArray lines;
        Parse(script, info, lines);
        return Engine().SetScriptTextByCodeInfo(&info);
    }

    CStringArray m_names;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> m_interfaces;
    CVXInterfaceInfo* m_form = nullptr;

private:
    void Add(const std::string& name, const std::vector<talvor::host::MemberDescription>& events) {
        m_owned.push_back(talvor::host::BuildInterface(name + "Events", events));
        m_interfaces.Add(m_owned.back().get());
        m_names.Add(name.c_str());
    }
    std::vector<std::unique_ptr<CVXInterfaceInfo>> m_owned;
};

} // namespace talvor::engine::testing
