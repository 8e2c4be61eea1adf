// The form description file of the tool: a form's controls in tab order with the events each
// offers (name, member id, parameter names), and the form's own events. Read from JSON and
// turned into the event interfaces and names that the script engine takes.
#pragma once

#include "host/ole/interface_info.h"
#include "platform/strings/arrays.h"

#include <memory>
#include <string>
#include <vector>

namespace talvor::tool {

struct EventDescription {
    std::string name;
    long id = 0;
    std::vector<std::string> params;
};

struct ControlDescription {
    std::string name;
    std::vector<EventDescription> events;
};

struct FormDescription {
    std::string name; // for display only; handlers of the form use the engine's form name
    std::vector<ControlDescription> controls;
    std::vector<EventDescription> events;
};

// Parses the JSON text of a form description:
//   {"form": "Order", "events": [EVENT...], "controls": [{"name": "cmdOK", "events": [EVENT...]}]}
// with EVENT = {"name": "KeyDown", "id": -602, "params": ["KeyCode", "Shift"]}. Instead of its
// "events", a control may name "typelib" (a type library file, .tlb or a PE file that carries
// one) and "class" (a coclass in it): its events are then the class's default source interface.
// False, with a message that names the place ("controls[1].events[0].id: ..."), for text of another
// shape.
bool ParseFormDescription(const std::string& json, FormDescription& form, std::string& error);

// The engine's view of a form: one events interface per control in tab order, the form's
// last under formName, and the parallel names.
class FormInterfaces {
public:
    FormInterfaces(const FormDescription& form, const CString& formName);

    CStringArray names;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CVXInterfaceInfo* formEvents = nullptr;

private:
    std::vector<std::unique_ptr<CVXInterfaceInfo>> m_owned;
};

} // namespace talvor::tool
