// talvor script: filled by the script engine's commands.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunScript(const Args&) { return NotAvailable("script"); }
} // namespace talvor::tool
