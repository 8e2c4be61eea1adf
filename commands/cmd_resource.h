// CTalvorCmdResource: id names for command bar controls, and the pool of controls the command
// designer offers, built from the menu bar and from the built-in menu of TalvorRes.
#pragma once

#include "host/bars/command_bars.h"
#include "platform/app/menu.h"
#include "platform/strings/cstring.h"

class CTalvorCmdResource {
public:
    explicit CTalvorCmdResource(CVTControls* controls = nullptr) : m_pControls(controls) {}
    CTalvorCmdResource(const CTalvorCmdResource&) = default;
    CTalvorCmdResource& operator=(const CTalvorCmdResource&) = default;
    virtual ~CTalvorCmdResource() = default;

    void SetControls(CVTControls* controls) { m_pControls = controls; }

    // Gives the controls of the pool their standard names where they have none.
    void SetDefaultIdName();
    // Gives the controls of controls (of every bar when null) their standard names,
    // overwriting names that are there.
    void InitCommandBarIdName(CVTControls* controls);
    // The name a control of id should have: the name a control of that id already has (in
    // controls, or in the pool and then the standard table when controls is null), else the
    // first "ID_<n>" from n = id upward that no control of the pool bears.
    CString GetDefaultIdName(unsigned int id, CVTControls* controls);
    // Names one control that has no name (never one of id 0), or, when control is null, every
    // control of the pool and of its popups' first level, passing over 40000 and 40001.
    void InitControlIdName(CVTControl* control, CVTControls* controls);
    // Appends the first level of every menu of the menu bar to the pool, each under its menu's
    // caption; nothing when there is no menu bar.
    void BuildControls(CVTControls* controls);
    // Empties the pool and builds it again, followed by whole copies of the menus under the
    // category of menus. Returns 1.
    int ResetBuildInControls(CVTControls* controls);
    // Appends the items of the built-in menu under the category of menus. Returns 1.
    int AddBuildInControls(CVTControls* controls);

    CVTControls* m_pControls; // the pool; not owned

private:
    int AddCategory(CString category, CMenu* menu, CVTControls* controls);
};
