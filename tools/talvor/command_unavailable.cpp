// Subcommands whose subsystems are not part of this build yet.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunRender(const Args&) {
    return NotAvailable("render");
}
int RunAlias(const Args&) {
    return NotAvailable("alias");
}
int RunCommands(const Args&) {
    return NotAvailable("commands");
}
int RunUndo(const Args&) {
    return NotAvailable("undo");
}
} // namespace talvor::tool
