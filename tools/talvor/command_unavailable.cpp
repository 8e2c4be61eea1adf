// Subcommands whose subsystems are not part of this build yet.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunRender(const Args&, std::FILE*) {
    return NotAvailable("render");
}
} // namespace talvor::tool
