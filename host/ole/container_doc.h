// CVXContainerDoc: the controls of a form in tab order, each with its name, class and property
// values, and their archive form. The undo history saves and restores a design through it.
#pragma once

#include "platform/files/archive.h"
#include "platform/strings/arrays.h"

#include <vector>

class CVXContainerDoc : public CObject {
public:
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
};
