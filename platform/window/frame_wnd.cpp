// Run-time classes of the frames.
#include "platform/window/frame_wnd.h"

const CRuntimeClass CFrameWnd::classCFrameWnd =
    MakeRuntimeClass<CFrameWnd>("CFrameWnd", 0xFFFF, &CWnd::classCWnd);
const CRuntimeClass CMDIFrameWnd::classCMDIFrameWnd =
    MakeRuntimeClass<CMDIFrameWnd>("CMDIFrameWnd", 0xFFFF, &CFrameWnd::classCFrameWnd);
