// Frames that own command bars, without a screen: creation runs OnCreate, closing runs OnClose,
// activation shows or hides. CVTMDIFrameWnd is the frame class a designer derives from.
#pragma once

#include "host/bars/command_bars.h"
#include "platform/window/frame_wnd.h"
#include "platform/window/messages.h"

struct CCreateContext;
struct AFX_CMDHANDLERINFO;
struct HMENU__;
using HMENU = HMENU__*;

// The command bars of a frame.
class CVTFrameWndImpl {
public:
    virtual ~CVTFrameWndImpl();
    CVTCommandBars* GetCommandBars() const { return m_pCommandBars; }

protected:
    CVTCommandBars* m_pCommandBars = nullptr;
};

template <class TBase> class CVTFrameWndBase : public TBase, public CVTFrameWndImpl {
public:
    // Creates the frame's command bars (once); FALSE when they can't be made.
    BOOL InitCommandBars() {
        if (m_pCommandBars == nullptr) {
            m_pCommandBars = new CVTCommandBars();
            m_pCommandBars->SetSite(this);
        }
        return TRUE;
    }

    // Creates the window: OnCreate runs, and a result of -1 leaves the frame uncreated.
    virtual BOOL LoadFrame(UINT resourceId, DWORD style = 0, CWnd* parent = nullptr,
                           CCreateContext* context = nullptr) {
        (void)parent;
        (void)context;
        if (m_bCreated)
            return FALSE;
        m_nIDHelp = resourceId;
        CREATESTRUCT create;
        create.style = style;
        if (OnCreate(&create) == -1)
            return FALSE;
        m_bCreated = true;
        return TRUE;
    }
    virtual int OnCreate(CREATESTRUCT*) { return 0; }
    // Closing destroys the window (the object lives on until its owner deletes it).
    virtual void OnClose() { m_bCreated = false; }
    virtual void ActivateFrame(int showCommand) { this->ShowWindow(showCommand); }
    virtual int OnCmdMsg(UINT, int, void*, AFX_CMDHANDLERINFO*) { return 0; }
    virtual void OnUpdateFrameMenu(HMENU) {}

    // Dispatches the messages a frame handles here; 0 for others.
    LONG SendMessage(UINT message, CREATESTRUCT* create = nullptr) {
        switch (message) {
        case WM_CREATE:
            return OnCreate(create);
        case WM_CLOSE:
            OnClose();
            return 0;
        default:
            return 0;
        }
    }
    bool IsCreated() const { return m_bCreated; }
    UINT GetResourceId() const { return m_nIDHelp; }

protected:
    bool m_bCreated = false;
    UINT m_nIDHelp = 0;
};

class CVTMDIFrameWnd : public CVTFrameWndBase<CMDIFrameWnd> {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTMDIFrameWnd; }
    static const CRuntimeClass classCVTMDIFrameWnd;
};
