// Frames with command bars.
#include "host/bars/frame_wnd_vt.h"

const CRuntimeClass CVTMDIFrameWnd::classCVTMDIFrameWnd =
    MakeRuntimeClass<CVTMDIFrameWnd>("CVTMDIFrameWnd", 0xFFFF, &CMDIFrameWnd::classCMDIFrameWnd);

CVTFrameWndImpl::~CVTFrameWndImpl() {
    if (m_pCommandBars != nullptr)
        m_pCommandBars->InternalRelease();
}
