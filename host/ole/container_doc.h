// CVXContainerDoc: a form of the designer. It keeps two views of its controls: the design
// records (name, class and property values as text, with their archive form, which the undo
// history saves and restores) and the live items in tab order (display name and object, which
// the type description walks).
#pragma once

#include "host/ole/interface_info.h"
#include "platform/com/unknown.h"
#include "platform/files/archive.h"
#include "platform/strings/arrays.h"

#include <vector>

// A control placed on a form, as the framework's client item holds it.
class CVXContainerItem {
public:
    // Takes a reference to `object` (may be null).
    CVXContainerItem(const CString& displayName, IUnknown* object);
    ~CVXContainerItem();
    CVXContainerItem(const CVXContainerItem&) = delete;
    CVXContainerItem& operator=(const CVXContainerItem&) = delete;

    CString GetDisplayName() const { return m_strDisplayName; }
    // The control's events: on first use, the default source interface of the object's class
    // (IProvideClassInfo), empty when the object tells none. A host that knows the events
    // otherwise fills it itself before that.
    CVXInterfaceInfo& GetEventsInterface();

    // The control's object.
    IUnknown* m_lpObject = nullptr;

private:
    CString m_strDisplayName;
    CVXInterfaceInfo m_eventsInfo;
    bool m_eventsRead = false;
};

class CVXContainerDoc : public CObject {
public:
    CVXContainerDoc() = default;
    ~CVXContainerDoc() override;
    CVXContainerDoc(const CVXContainerDoc&) = delete;
    CVXContainerDoc& operator=(const CVXContainerDoc&) = delete;

    // Live items. Takes ownership; the item goes to the end of the tab order.
    void AddItem(CVXContainerItem* item);
    // The item after `item` in tab order: the first for null, the first again after the
    // last; null when the form has no item or `item` isn't on it.
    CVXContainerItem* GetNextTabItem(CVXContainerItem* item) const;
    int GetItemCount() const { return static_cast<int>(m_items.size()); }

    // Design records.
    struct Control {
        CString m_strName;
        CString m_strClass; // class identifier or program id
        CStringArray m_arrPropertyNames;
        CStringArray m_arrPropertyValues; // one value per name, as text
    };

    int GetControlCount() const { return static_cast<int>(m_controls.size()); }
    // Null for an index out of range.
    Control* GetControl(int index);
    const Control* GetControl(int index) const;
    // Appends a control and gives its index.
    int AddControl(const char* name, const char* classId);
    // Sets or adds a property value; FALSE for a control index out of range.
    BOOL SetProperty(int control, const char* property, const char* value);
    // Empty when the control or the property does not exist.
    CString GetProperty(int control, const char* property) const;
    void RemoveAll() { m_controls.clear(); }

    // Archive form: DWORD count, then per control name, class, DWORD property count and
    // name/value pairs. A damaged form throws CArchiveException and leaves the controls as
    // they were.
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCVXContainerDoc; }
    static const CRuntimeClass classCVXContainerDoc;

private:
    std::vector<Control> m_controls;
    std::vector<CVXContainerItem*> m_items;
};
