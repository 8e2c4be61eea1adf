#include "host/ole/container.h"

#include "platform/com/registry/com_registry.h"

namespace {
CVXContainerDoc* g_activeDoc = nullptr;
}

CVXContainerDoc* VfxGetActiveContainerDoc() {
    return g_activeDoc;
}

void VfxSetActiveContainerDoc(CVXContainerDoc* doc) {
    g_activeDoc = doc;
}

CString VfxGetActiveXName(const char* clsid) {
    return CString(talvor::platform::GetActiveXDisplayName(clsid ? clsid : "").c_str());
}
