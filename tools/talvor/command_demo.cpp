// talvor demo: runs the bundled sample through the subcommands that are available.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunDemo(const Args&) { return NotAvailable("demo"); }
} // namespace talvor::tool
