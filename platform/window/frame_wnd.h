// Windows as far as a document and its design frame need them without a screen: a window text,
// a placement rectangle and a show state. The frame of a design keeps its state here, and the
// document saves and restores it.
#pragma once

#include "platform/files/runtime_class.h"
#include "platform/strings/cstring.h"

struct RECT {
    LONG left = 0;
    LONG top = 0;
    LONG right = 0;
    LONG bottom = 0;
};

constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOWMINIMIZED = 2;
constexpr int SW_SHOWMAXIMIZED = 3;

class CWnd : public CObject {
public:
    void SetWindowText(const char* text) { m_strWindowText = text ? text : ""; }
    void GetWindowText(CString& text) const { text = m_strWindowText; }
    int GetWindowTextLength() const { return m_strWindowText.GetLength(); }
    // Places the window; a negative width or height counts as 0.
    void MoveWindow(int x, int y, int width, int height);
    void MoveWindow(const RECT& rect);
    void GetWindowRect(RECT* rect) const;
    BOOL ShowWindow(int showCommand); // TRUE when the window was visible before
    BOOL IsWindowVisible() const { return m_nShowCmd != SW_HIDE; }
    int GetShowCommand() const { return m_nShowCmd; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCWnd; }
    static const CRuntimeClass classCWnd;

protected:
    CString m_strWindowText;
    RECT m_rect;
    int m_nShowCmd = SW_HIDE;
};

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
