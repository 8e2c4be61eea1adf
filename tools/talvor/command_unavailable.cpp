// Subcommands whose subsystems are not part of this build yet.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunCommands(const Args&, std::FILE*) {
    return NotAvailable("commands");
}
} // namespace talvor::tool
