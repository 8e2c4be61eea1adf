// Command bars: a bar holds a reference-counted control list and knows its id, id name, title,
// flags, position and docking sides. CVTToolBar and CVTMenuBar are the two kinds a design has;
// the bar of a popup is a plain CVTCommandBar.
#pragma once

#include "host/bars/controls.h"

// Positions of a bar in its frame.
constexpr int vtBarTop = 0;
constexpr int vtBarBottom = 1;
constexpr int vtBarLeft = 2;
constexpr int vtBarRight = 3;
constexpr int vtBarFloating = 4;
constexpr int vtBarPopup = 5;

// Docking sides, as bits.
constexpr DWORD vtDockTop = 0x01;
constexpr DWORD vtDockBottom = 0x02;
constexpr DWORD vtDockLeft = 0x04;
constexpr DWORD vtDockRight = 0x08;
constexpr DWORD vtDockFloating = 0x10;
constexpr DWORD vtDockPopup = 0x20;

class CVTCommandBar : public CVTCmdTarget {
public:
    CVTCommandBar();
    ~CVTCommandBar() override;

    UINT GetBarID() const { return m_nBarID; }
    void SetBarID(UINT id) { m_nBarID = id; }
    CString GetBarIDName() const { return m_strBarIDName; }
    void SetBarIDName(const char* name) { m_strBarIDName = name ? name : ""; }
    CString GetTitle() const { return m_strTitle; }
    void SetTitle(const char* title) { m_strTitle = title ? title : ""; }
    DWORD GetFlags() const { return m_dwFlags; }
    // Adds the bits of add, then clears the bits of remove.
    void SetFlags(DWORD add, DWORD remove = 0) { m_dwFlags = (m_dwFlags | add) & ~remove; }
    int GetPosition() const { return m_nPosition; }
    void SetPosition(int position) { m_nPosition = position; }
    DWORD GetDockingSides() const { return m_dwDockingSides; }
    BOOL IsVisible() const { return m_bVisible; }
    void SetVisible(BOOL visible) { m_bVisible = visible ? TRUE : FALSE; }
    // Asks for the bar to be drawn again when the host next draws its bars; the host clears
    // the request when it has drawn.
    void DelayRedraw() { m_bRedrawPending = TRUE; }
    BOOL IsRedrawPending() const { return m_bRedrawPending; }
    void ClearRedrawPending() { m_bRedrawPending = FALSE; }

    // The bar's list (null only after someone put null in m_pControls).
    CVTControls* GetControls() const { return m_pControls; }
    int GetControlCount() const { return m_pControls ? m_pControls->GetCount() : 0; }
    CVTControl* GetControl(int index) const {
        return m_pControls ? m_pControls->GetAt(index) : nullptr;
    }

    // Binds the bar, its list and the bars of its popups to a set of bars.
    void SetCommandBars(CVTCommandBars* bars);
    CVTCommandBars* GetCommandBars() const { return m_pCommandBars; }

    // Copies identity, title, flags, position, docking and copies of the controls of another
    // bar into this one (its former controls go); recursive copies popups' bars as well.
    void Copy(const CVTCommandBar* other, BOOL recursive);
    // Fills the bar from the tool bar resource of that id of the current resource source:
    // a button per command, a group start after each separator. The bar's id becomes the
    // resource id. FALSE when the source has no such tool bar; the bar is left as it was.
    BOOL LoadToolBar(UINT resourceId, BOOL loadIcons = TRUE);
    // Fills the bar from a menu: popups for sub-menus, buttons for items.
    void LoadMenu(CMenu* menu);

    // Identity, title, flags, position, docking, visibility and the control list. Popups' bars
    // are not part of this form.
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTCommandBar; }
    static const CRuntimeClass classCVTCommandBar;

    // The list the bar shows; the bar holds one reference to it. Whoever replaces it adjusts
    // the references.
    CVTControls* m_pControls;

protected:
    UINT m_nBarID = 0;
    CString m_strBarIDName;
    CString m_strTitle;
    DWORD m_dwFlags = 0;
    int m_nPosition = vtBarPopup;
    DWORD m_dwDockingSides = vtDockTop | vtDockBottom | vtDockLeft | vtDockRight | vtDockFloating;
    BOOL m_bVisible = TRUE;
    BOOL m_bRedrawPending = FALSE;
    CVTCommandBars* m_pCommandBars = nullptr; // not owned
};

class CVTToolBar : public CVTCommandBar {
public:
    void EnableDocking(DWORD sides) { m_dwDockingSides = sides; }
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTToolBar; }
    static const CRuntimeClass classCVTToolBar;
};

class CVTMenuBar : public CVTToolBar {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTMenuBar; }
    static const CRuntimeClass classCVTMenuBar;
};
