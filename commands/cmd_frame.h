// CTalvorCmdFrame: the hidden frame that owns a design's command bars, the pool of controls
// offered in the designer, and their saved stream (in the state store, in files).
#pragma once

#include "commands/cmd_resource.h"
#include "host/bars/frame_wnd_vt.h"
#include "host/core/vp_state.h"

class CTalvorCmdFrame : public CVTMDIFrameWnd, public CVPState {
public:
    CTalvorCmdFrame();
    ~CTalvorCmdFrame() override;
    CTalvorCmdFrame(const CTalvorCmdFrame&) = delete;
    CTalvorCmdFrame& operator=(const CTalvorCmdFrame&) = delete;

    CVTControls* GetDesignerControls() const { return m_pDesignerControls; }

    // Creates the window and then loads the last state from the store; 0 when the window
    // can't be created.
    BOOL LoadFrame(UINT resourceId, DWORD style = 0, CWnd* parent = nullptr,
                   CCreateContext* context = nullptr) override;
    // The standard bars, images, theme and pool; -1 when the base or the bars can't be made.
    int OnCreate(CREATESTRUCT* create) override;
    // Writes the state to the store, then closes.
    void OnClose() override;
    // Keeps the frame hidden whatever the command.
    void ActivateFrame(int showCommand) override;
    // The frame handles no command.
    int OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;
    void OnUpdateFrameMenu(HMENU menu) override;

    // Back to the standard bars and pool.
    void ResetAllCommand();
    // 0, with nothing changed, when the file can't be opened; otherwise the pool is emptied
    // and the stream read (a damaged stream throws CArchiveException* and leaves bars, images,
    // shortcuts and options as they were).
    int LoadFromFile(const char* fileName);
    // Saves the whole state. Over an existing file only after the user confirms, written in
    // place; nothing when the file can't be opened.
    void SaveToFile(const char* fileName);
    // Saves with controls as the pool: all of them, or (bBuiltInOnly) only whole menus of the
    // menus category, as their items under the menu's caption. The pool is the same afterwards.
    void SaveToFile(const char* fileName, CVTControls* controls, int bBuiltInOnly);

    void SerializeState(CArchive& ar) override;
    void SaveState();
    int LoadState();

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTalvorCmdFrame; }
    static const CRuntimeClass classCTalvorCmdFrame;

    CVTControls* m_pDesignerControls;
    CTalvorCmdResource m_cmdResource;

private:
    int CreateCommandBar();
    void ReplaceControls(CVTToolBar* bar, CVTControls* controls);
    // Names and fills the pool from the bars and takes out the controls kept apart.
    void BuildPool();
    void RemoveKeptApartControls();
};
