// Reader of Windows resource-script text into a resource module, with the #include files a
// script names found beside it or among the headers a library registers.
#pragma once

#include "platform/app/resource_module.h"

#include <functional>
#include <string>
#include <string_view>

namespace talvor::platform {

// Gives the text of the file that #include names; false when it has none of that name.
using ResourceIncludeReader = std::function<bool(const std::string& name, std::string& text)>;

// Reads resource-script text into module: comments, #define, #include and #pragma lines,
// LANGUAGE statements, and STRINGTABLE blocks of `id, "text"` lines (ids as numbers or
// #define names; escapes \n \t \r \\ \" \a \xhh \ooo and "" for a quote). An included file is
// read through readInclude, then among the registered includes (RegisterResourceInclude),
// and its #define names count from there on; an include found in neither is passed over, and
// a name it would have defined is reported unknown with the missing file named. False with a
// message "resources: line N: ..." (or "resources: <include>: line N: ...") in error at the
// first fault; the module then holds what was read before it.
bool ParseResourceScript(std::string_view script, ResourceModule& module, std::string& error,
                         const ResourceIncludeReader& readInclude = {});

// Reads the resource-script file at path; the files it includes are looked up in its folder
// first. False with the message of the read, or with path, ": " and the first fault.
bool ParseResourceScriptFile(const std::string& path, ResourceModule& module, std::string& error);

// Makes text the content of #include "name" for any script that does not find a file of that
// name itself (a later registration replaces an earlier one): how a resource library ships
// the header of its ids with its built-in script, so translated copies can include it.
void RegisterResourceInclude(const std::string& name, std::string text);

} // namespace talvor::platform
