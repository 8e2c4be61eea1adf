// Subcommands whose subsystems are not part of this build yet.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunRender(const Args&, std::FILE*) {
    return NotAvailable("render");
}
int RunCommands(const Args&, std::FILE*) {
    return NotAvailable("commands");
}
} // namespace talvor::tool
