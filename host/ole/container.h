// The active form and control names as the type description asks for them. The host makes
// its active form known through VfxSetActiveContainerDoc; VfxGetActiveContainerDoc stands for
// the walk from the active view to the designer frame's form.
#pragma once

#include "host/ole/container_doc.h"

// The form of the active designer, or null; the host sets it when a form becomes active.
CVXContainerDoc* VfxGetActiveContainerDoc();
void VfxSetActiveContainerDoc(CVXContainerDoc* doc);

// The display name of a control class given in registry text form; empty if it has none.
CString VfxGetActiveXName(const char* clsid);
