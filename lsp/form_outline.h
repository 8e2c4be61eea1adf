// What the server knows of the form a script belongs to: its controls in tab order and the
// events each offers, and the form's own events. The transport reads it from the form
// description beside the script and hands it over; the server does no I/O.
#pragma once

#include <string>
#include <vector>

namespace talvor::lsp {

struct FormEvent {
    std::string name;
    std::vector<std::string> params;
};

struct FormControl {
    std::string name;
    std::vector<FormEvent> events;
};

struct FormOutline {
    std::string name; // the name handlers of the form's own events use
    std::vector<FormControl> controls;
    std::vector<FormEvent> events;
};

} // namespace talvor::lsp
