// Command bar controls (button, popup with a bar of its own, static text, list box) and the
// reference-counted lists that hold them: bars hold one each, and the designer's pool is a list
// on no bar. A control belongs to one list; a popup owns a reference to its bar.
#pragma once

#include "host/bars/bar_object.h"
#include "platform/strings/cstring.h"
#include "platform/window/list_box.h"

#include <memory>
#include <vector>

class CVTCommandBar;
class CVTCommandBars;
class CVTControls;
class CMenu;

enum VTControlType : int {
    vtControlError = 0, // as a search type: any control
    vtControlButton = 1,
    vtControlPopup = 2,
    vtControlStatic = 3,
    vtControlListBox = 4,
};

// Control flags kept with a control.
constexpr DWORD vtFlagBeginGroup = 0x0001; // a separator stands before the control
constexpr DWORD vtFlagDisabled = 0x0002;
constexpr DWORD vtFlagChecked = 0x0004;

class CVTControl : public CVTCmdTarget {
public:
    CVTControl() = default;
    ~CVTControl() override = default;

    virtual VTControlType GetType() const { return vtControlButton; }

    long GetID() const { return m_nId; }
    void SetID(long id) { m_nId = id; }
    CString GetIdName() const { return m_strIdName; }
    void SetIdName(const char* name) { m_strIdName = name ? name : ""; }
    CString GetCaption() const { return m_strCaption; }
    void SetCaption(const char* caption) { m_strCaption = caption ? caption : ""; }
    CString GetCategory() const { return m_strCategory; }
    void SetCategory(const char* category) { m_strCategory = category ? category : ""; }
    CString GetTooltip() const { return m_strTooltip; }
    void SetTooltip(const char* tooltip) { m_strTooltip = tooltip ? tooltip : ""; }
    DWORD GetFlags() const { return m_dwFlags; }
    void SetFlags(DWORD flags) { m_dwFlags = flags; }
    BOOL GetBeginGroup() const { return (m_dwFlags & vtFlagBeginGroup) != 0; }
    void SetBeginGroup(BOOL begin);
    BOOL IsVisible() const { return m_bVisible; }
    void SetVisible(BOOL visible) { m_bVisible = visible ? TRUE : FALSE; }
    // The icon shown for the control; 0 means the icon of its id.
    long GetIconId() const { return m_nIconId; }
    void SetIconId(long id) { m_nIconId = id; }

    // The list that holds the control, and that list's bar (null for the pool).
    CVTControls* GetControls() const { return m_pControls; }
    CVTCommandBar* GetParent() const;
    // Asks the control's bar to be drawn again later; nothing for a control on no bar.
    void DelayRedrawParent();

    // A new control of the same class and data, on no list. A popup's bar is copied with all
    // its controls when recursive is nonzero; otherwise the copy gets an empty bar.
    virtual CVTControl* Clone(BOOL recursive) const;
    // Copies the data (not the list membership, not a popup's bar) of another control.
    virtual void Copy(const CVTControl* other);

    // The control's own fields; a popup's bar travels separately (see CVTCommandBars).
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControl; }
    static const CRuntimeClass classCVTControl;

protected:
    friend class CVTControls;
    long m_nId = 0;
    CString m_strIdName;
    CString m_strCaption;
    CString m_strCategory;
    CString m_strTooltip;
    DWORD m_dwFlags = 0;
    BOOL m_bVisible = TRUE;
    long m_nIconId = 0;
    CVTControls* m_pControls = nullptr; // not owned
};

class CVTControlButton : public CVTControl {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControlButton; }
    static const CRuntimeClass classCVTControlButton;
};

class CVTControlPopup : public CVTControl {
public:
    CVTControlPopup() = default;
    ~CVTControlPopup() override;
    VTControlType GetType() const override { return vtControlPopup; }

    // The popup's bar, or null. SetCommandBar takes a reference to the new bar and gives up
    // the one to the former bar.
    CVTCommandBar* GetCommandBar() const { return m_pCommandBar; }
    void SetCommandBar(CVTCommandBar* bar);

    CVTControl* Clone(BOOL recursive) const override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControlPopup; }
    static const CRuntimeClass classCVTControlPopup;

private:
    CVTCommandBar* m_pCommandBar = nullptr;
};

class CVTControlStatic : public CVTControl {
public:
    VTControlType GetType() const override { return vtControlStatic; }
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControlStatic; }
    static const CRuntimeClass classCVTControlStatic;
};

class CVTControlListBox : public CVTControl {
public:
    VTControlType GetType() const override { return vtControlListBox; }
    // The number of lines the list shows when it drops down.
    int GetLinesCount() const { return m_nLines; }
    void SetLinesCount(int lines) { m_nLines = lines < 1 ? 1 : lines; }
    // The list window the control drops down: multiple selection, made on first use. Its rows
    // belong to whoever fills it (an undo list fills it with the steps it offers).
    CListBox* GetListCtrl();
    void Copy(const CVTControl* other) override;
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControlListBox; }
    static const CRuntimeClass classCVTControlListBox;

private:
    int m_nLines = 8;
    std::unique_ptr<CListBox> m_pListCtrl;
};

class CVTControls : public CVTCmdTarget {
public:
    CVTControls() = default;
    ~CVTControls() override;

    int GetCount() const { return static_cast<int>(m_controls.size()); }
    // Null for an index outside the list.
    CVTControl* GetAt(int index) const;

    CVTCommandBars* GetCommandBars() const { return m_pCommandBars; }
    void SetCommandBars(CVTCommandBars* bars) { m_pCommandBars = bars; }
    CVTCommandBar* GetParent() const { return m_pParent; }
    void SetParent(CVTCommandBar* bar) { m_pParent = bar; }

    // Appends a new control of the type (button for an unknown type) before index (-1: at the
    // end). Gives the control; the list holds it.
    CVTControl* Add(VTControlType type, long id, const char* caption = nullptr, int before = -1);
    // Takes a control that is on no list; before -1 is the end.
    CVTControl* Add(CVTControl* control, int before = -1);
    // Appends a copy of control before index (-1: the end); null when control is null.
    CVTControl* AddClone(const CVTControl* control, int before = -1, BOOL recursive = FALSE);
    // Appends copies of every control of another list.
    void AddClone(const CVTControls* controls, BOOL recursive);
    // A control made from the menu item at a position: a popup (with the items of the sub-menu
    // as its bar) or a button; null for a separator or a position outside the menu.
    CVTControl* AddMenuItem(CMenu* menu, int position);
    // A new list with copies of all controls; its caller holds the one reference.
    CVTControls* Duplicate(BOOL recursive) const;

    // The first control of that id, in list order, looking into popups after each control.
    CVTControl* FindControl(long id) const;
    // The same for an int id, so that FindControl(0) means the id 0 and not a null name.
    CVTControl* FindControl(int id) const { return FindControl(static_cast<long>(id)); }
    // The first control whose id name equals idName (without regard to case), looked for the
    // same way; null for a null or empty name.
    CVTControl* FindControl(const char* idName) const;
    // The first control of the type (vtControlError: any) and id; visible only visible ones;
    // recursive looks into popups too.
    CVTControl* FindControl(int type, long id, BOOL visible, BOOL recursive) const;
    // The index of control in this list, or -1.
    int IndexOf(const CVTControl* control) const;

    // Moves a control of this list so that it stands before index (the count: at the end).
    void MoveBefore(CVTControl* control, int index);
    // Removes a control of this list and gives up the list's reference to it.
    void Remove(CVTControl* control);
    void RemoveAt(int index);
    void RemoveAll();
    // Sets the id name of every control of that id, popups' bars included.
    void SetControlIdName(long id, const char* name);

    // Count and controls, each as an object of its class.
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTControls; }
    static const CRuntimeClass classCVTControls;

private:
    std::vector<CVTControl*> m_controls; // one reference each
    CVTCommandBars* m_pCommandBars = nullptr;
    CVTCommandBar* m_pParent = nullptr;
};
