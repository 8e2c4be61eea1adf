// Frames as far as a document and its design frame need them: a title on top of a window's
// text, placement and show state. The frame of a design keeps its state here, and the document
// saves and restores it.
#pragma once

#include "platform/window/wnd.h"

class CFrameWnd : public CWnd {
public:
    void SetTitle(const char* title) { m_strTitle = title ? title : ""; }
    CString GetTitle() const { return m_strTitle; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCFrameWnd; }
    static const CRuntimeClass classCFrameWnd;

protected:
    CString m_strTitle;
};

class CMDIFrameWnd : public CFrameWnd {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCMDIFrameWnd; }
    static const CRuntimeClass classCMDIFrameWnd;
};
