// The design window: CTVMDIFrameWnd, a frame with command bars (the command bar library's
// frame) and the designer part CDesignerFrameImpl that knows the form document being designed.
#pragma once

#include "host/bars/frame_wnd_vt.h"
#include "host/base/tv_container_doc.h"

class CDesignerFrameImpl {
public:
    virtual ~CDesignerFrameImpl() = default;
    // The form document of the design; null before one is set.
    CTVContainerDoc* GetContainer() const { return m_pContainer; }
    void SetContainer(CTVContainerDoc* container) { m_pContainer = container; }

private:
    CTVContainerDoc* m_pContainer = nullptr; // not owned
};

class CTVMDIFrameWnd : public CVTMDIFrameWnd, public CDesignerFrameImpl {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVMDIFrameWnd; }
    static const CRuntimeClass classCTVMDIFrameWnd;
};
