// talvor script check: syntax errors of VBScript files as FILE:LINE:COLUMN: message.
#pragma once

#include "tools/talvor/commands.h"

namespace talvor::tool {

// args are what follows "check": one or more script files, optionally --json.
int RunScriptCheck(const Args& args);

} // namespace talvor::tool
