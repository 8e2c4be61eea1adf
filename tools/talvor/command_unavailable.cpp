// Subcommands whose subsystems are not part of this build yet.
#include "tools/talvor/commands.h"

namespace talvor::tool {
int RunRender(const Args&) {
    return NotAvailable("render");
}
int RunTypelib(const Args&) {
    return NotAvailable("typelib");
}
int RunAlias(const Args&) {
    return NotAvailable("alias");
}
int RunCommands(const Args&) {
    return NotAvailable("commands");
}
} // namespace talvor::tool
