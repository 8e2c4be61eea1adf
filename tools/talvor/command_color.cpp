// talvor color: filled by the syntax colouring commands.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunColor(const Args&) { return NotAvailable("color"); }
} // namespace talvor::tool
