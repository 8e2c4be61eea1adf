// Run-time classes of the design window and its form document.
#include "host/base/designer_frame.h"

const CRuntimeClass CTVContainerDoc::classCTVContainerDoc =
    MakeRuntimeClass<CTVContainerDoc>("CTVContainerDoc", 1, &CVXContainerDoc::classCVXContainerDoc);
const CRuntimeClass CTVMDIFrameWnd::classCTVMDIFrameWnd = MakeRuntimeClass<CTVMDIFrameWnd>(
    "CTVMDIFrameWnd", 0xFFFF, &CVTMDIFrameWnd::classCVTMDIFrameWnd);
