// The resource guard: while it lives, TalvorRes is the source of every string, menu and tool
// bar that is loaded; at its end the former source comes back. Every load of the library's
// own texts runs under one.
#pragma once

#include "platform/app/resource_module.h"

namespace talvor::resources {

// The name under which the framework finds the library's resources.
inline constexpr const char* ModuleName = "TalvorRes";

// Makes TalvorRes findable: the built-in English texts, or the resource-script file named by
// the environment variable TALVOR_RESOURCES when it is set and readable. Runs once; the
// guard calls it.
void RegisterTalvorRes();

class ResourceGuard {
public:
    ResourceGuard();
    ~ResourceGuard();
    ResourceGuard(const ResourceGuard&) = delete;
    ResourceGuard& operator=(const ResourceGuard&) = delete;

    // False when TalvorRes could not be found; the current source is then left as it was.
    bool IsSelected() const { return m_selected; }

private:
    HINSTANCE m_former = nullptr;
    bool m_selected = false;
};

// Loads string id of TalvorRes under a guard; empty when the string is missing.
std::string LoadTalvorString(unsigned id);

} // namespace talvor::resources
