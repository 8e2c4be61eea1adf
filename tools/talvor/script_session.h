// A form script as the script subcommands work on it: the form description and the script
// read from files, split and parsed by the engine as the host does.
#pragma once

#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "tools/talvor/form_description.h"

#include <memory>
#include <string>
#include <vector>

namespace talvor::tool {

struct Procedure {
    std::string name;        // between the keyword and the "(" of the head line
    CString text;            // the whole block, each line ended by "\r\n"
    bool isFunction = false; // from the array that holds it
};

class ScriptSession {
public:
    // Reads both files and parses the script. False, with a message, when a file can't be
    // read or the form description is malformed.
    bool Load(const std::string& formPath, const std::string& scriptPath, std::string& error);

    // The form as the host's document: one item per control in tab order with its events,
    // and the form's own events.
    std::unique_ptr<CTVContainerDoc> MakeDocument() const;
    // The script text as read.
    CString script;

    // Every procedure of the record: control handlers, Subs, Functions, form handlers.
    std::vector<Procedure> Procedures() const;

    FormDescription form;
    std::unique_ptr<FormInterfaces> interfaces;
    VB_ALL_PROGRAMME_INFO info;
    CStringArray outside; // the lines that belonged to no block
};

// UTF-8 form of text in the system code page, for JSON output; bytes that are no character
// of the page become U+FFFD.
std::string ToUtf8(const CString& text);

} // namespace talvor::tool
