// The command bars of one frame: the bars in order, which of them is the menu bar, the image
// and paint managers, the options and customize mode, and the saved form of all bars.
#pragma once

#include "host/bars/command_bar.h"
#include "host/bars/image_manager.h"
#include "host/bars/paint_manager.h"

#include <functional>
#include <vector>

class CFrameWnd;
class CMenu;
class CWnd;

// Options of all bars of a frame.
struct VT_COMMANDBARS_OPTIONS {
    BOOL bAlwaysShowFullMenus = TRUE;
    BOOL bShowFullAfterDelay = TRUE;
    BOOL bToolBarScreenTips = TRUE;
    BOOL bToolBarAccelTips = FALSE;
    BOOL bLargeIcons = FALSE;
    BOOL bShowExpandButtonAlways = TRUE;
    int nAnimationType = 0;
    int cxIcons = 16;
    int cyIcons = 16;

    // A schema word, then the fields. Loading sets the fields only when all were read.
    void Serialize(CArchive& ar);
    bool operator==(const VT_COMMANDBARS_OPTIONS&) const = default;
};

class CVTCommandBars : public CVTCmdTarget {
public:
    CVTCommandBars();
    ~CVTCommandBars() override;

    int GetCount() const { return static_cast<int>(m_bars.size()); }
    CVTCommandBar* GetAt(int index) const;
    // The menu bar, or null when there is none.
    CVTCommandBar* GetMenuBar() const { return m_pMenuBar; }

    // A new menu bar with that title, filled from the menu menuId of the current resource
    // source (empty for 0 or a missing menu), at the top, in place of a former menu bar.
    CVTMenuBar* SetMenu(const char* title, UINT menuId);
    // Makes a bar of this set the menu bar, with the bar id id.
    void SetMenuBar(CVTCommandBar* bar, UINT id);
    // Adds a new bar of the class (a tool bar when barClass is no bar class) with the title at
    // the position; null when the class can't be made.
    CVTCommandBar* Add(const char* title, int position, const CRuntimeClass* barClass);
    // Takes a bar that is in no set (the set holds the caller's reference from then on).
    void AddBar(CVTCommandBar* bar);
    // Removes a bar of this set and gives up the set's reference; other bars are not touched.
    void Remove(CVTCommandBar* bar);
    void RemoveAll();
    // Puts the bars of other (with its menu bar) in place of this set's bars; other is left
    // without bars.
    void MoveBarsFrom(CVTCommandBars* other);

    CVTToolBar* GetToolBar(UINT barId) const;
    CVTCommandBar* FindCommandBar(UINT barId) const;
    // The first bar of that title; noCase nonzero compares without regard to case.
    CVTCommandBar* FindCommandBar(const char* title, BOOL noCase) const;
    // The first control of that id on any bar, popups' bars included.
    CVTControl* FindControl(long id) const;
    // id when no bar has it, else the first free id above it.
    UINT GetUniqueBarID(UINT id) const;
    // name when no bar has it (an empty name is always free), else name followed by the first
    // free number from 1.
    CString GetUniqueBarIDName(const char* name) const;

    CVTImageManager* GetImageManager() const { return m_pImageManager; }
    // Takes the manager (null: a new empty one) and gives up the former one.
    void SetImageManager(CVTImageManager* manager);
    CVTPaintManager* GetPaintManager() { return &m_paintManager; }
    VT_COMMANDBARS_OPTIONS* GetCommandBarsOptions() { return &m_options; }
    void SetCustomizeMode(BOOL on) { m_bCustomizeMode = on ? TRUE : FALSE; }
    BOOL IsCustomizeMode() const { return m_bCustomizeMode; }
    // Shows a menu as a popup bar at the screen point (x, y) and lets the user pick. Without
    // TPM_RETURNCMD in flags the command picked is posted to pWnd as WM_COMMAND and the result
    // is TRUE when the menu was shown; with it the result is the command, 0 for none. A null
    // or empty menu shows nothing. There is no screen: the popup menu handler answers.
    static BOOL TrackPopupMenu(CMenu* pMenu, UINT nFlags, int x, int y, CWnd* pWnd,
                               LPCRECT rcExclude = nullptr, CWnd* pWndOwner = nullptr,
                               CVTCommandBars* pCommandBars = nullptr);
    CFrameWnd* GetSite() const { return m_pFrame; }
    void SetSite(CFrameWnd* frame) { m_pFrame = frame; }

    // Writes or reads all bars with their controls, the bars of every popup on them, and which
    // bar is the menu bar. Loading builds the new bars apart and puts them in place only after
    // the whole form has been read: a damaged stream throws CArchiveException and the bars stay
    // as they were.
    void SerializeCommandBars(CArchive& ar);

    // Writes the bars of the popups of a list, depth first (null for a popup without a bar).
    static void StorePopupBars(CArchive& ar, const CVTControls* controls);
    // Reads what StorePopupBars wrote and gives each popup its bar.
    static void LoadPopupBars(CArchive& ar, CVTControls* controls, int depth = 0);
    // Popups in popups deeper than this are refused as damaged.
    static constexpr int MaxPopupDepth = 64;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCVTCommandBars; }
    static const CRuntimeClass classCVTCommandBars;

private:
    std::vector<CVTCommandBar*> m_bars; // one reference each
    CVTCommandBar* m_pMenuBar = nullptr;
    CVTImageManager* m_pImageManager = nullptr;
    CVTPaintManager m_paintManager;
    VT_COMMANDBARS_OPTIONS m_options;
    BOOL m_bCustomizeMode = FALSE;
    CFrameWnd* m_pFrame = nullptr;
};

namespace talvor::host {
// Answers a tracked popup menu in place of a user: the command picked from the popup's bar,
// or 0 when the menu is dismissed. The default handler dismisses every menu.
using PopupMenuHandler = std::function<UINT(const CVTCommandBar& popup, UINT flags, POINT at)>;
// Installs the handler for all later menus and returns the one it replaces; an empty handler
// restores the default.
PopupMenuHandler SetPopupMenuHandler(PopupMenuHandler handler);
} // namespace talvor::host
