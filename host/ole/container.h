// The host's form as the type description sees it: controls in tab order, each with its
// display name and its object. The host makes its active form known through
// VfxSetActiveContainerDoc; VfxGetActiveContainerDoc stands for the walk from the active view
// to the designer frame's form.
#pragma once

#include "platform/com/unknown.h"
#include "platform/strings/cstring.h"

#include <vector>

class CVXContainerItem {
public:
    // Takes a reference to `object` (may be null).
    CVXContainerItem(const CString& displayName, IUnknown* object);
    ~CVXContainerItem();
    CVXContainerItem(const CVXContainerItem&) = delete;
    CVXContainerItem& operator=(const CVXContainerItem&) = delete;

    CString GetDisplayName() const { return m_strDisplayName; }

    // The control's object, as the framework's client item keeps it.
    IUnknown* m_lpObject = nullptr;

private:
    CString m_strDisplayName;
};

class CVXContainerDoc {
public:
    CVXContainerDoc() = default;
    ~CVXContainerDoc();
    CVXContainerDoc(const CVXContainerDoc&) = delete;
    CVXContainerDoc& operator=(const CVXContainerDoc&) = delete;

    // Takes ownership; the item goes to the end of the tab order.
    void AddItem(CVXContainerItem* item);
    // The control after `item` in tab order: the first for null, the first again after the
    // last; null when the form has no control or `item` isn't on it.
    CVXContainerItem* GetNextTabItem(CVXContainerItem* item) const;
    int GetItemCount() const { return static_cast<int>(m_items.size()); }

private:
    std::vector<CVXContainerItem*> m_items;
};

// The form of the active designer, or null; the host sets it when a form becomes active.
CVXContainerDoc* VfxGetActiveContainerDoc();
void VfxSetActiveContainerDoc(CVXContainerDoc* doc);

// The display name of a control class given in registry text form; empty if it has none.
CString VfxGetActiveXName(const char* clsid);
