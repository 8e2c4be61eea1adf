// The design window: CTVMDIFrameWnd, a frame with the designer part CDesignerFrameImpl that
// knows the form document being designed and keeps the frame's design state.
#pragma once

#include "host/base/tv_container_doc.h"
#include "platform/window/frame_wnd.h"

class CDesignerFrameImpl {
public:
    virtual ~CDesignerFrameImpl() = default;
    // The form document of the design; null before one is set.
    CTVContainerDoc* GetContainer() const { return m_pContainer; }
    void SetContainer(CTVContainerDoc* container) { m_pContainer = container; }

    // The designer's own state that a frame snapshot carries (the layout of its bars, as text).
    CString m_strDesignerState;

private:
    CTVContainerDoc* m_pContainer = nullptr; // not owned
};

class CTVMDIFrameWnd : public CMDIFrameWnd, public CDesignerFrameImpl {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVMDIFrameWnd; }
    static const CRuntimeClass classCTVMDIFrameWnd;
};
