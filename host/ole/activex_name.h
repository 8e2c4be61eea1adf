// VfxGetActiveXName: the display name of a control, asked by its class identifier. The host's
// control registry answers it; until a host installs its source, no control has a name.
#pragma once

#include "platform/strings/cstring.h"

#include <functional>

// The display name of the control whose class identifier is clsid in registry form
// ("{...}"); empty for a null or unknown identifier.
CString VfxGetActiveXName(const char* clsid);

namespace talvor::host {

// Where VfxGetActiveXName takes its names from; an empty function answers empty for every
// identifier.
void SetActiveXNameSource(std::function<CString(const char* clsid)> source);

} // namespace talvor::host
