// CComboBox: the framework's drop-down list as a small list model without a screen: items with
// text and item data, a current selection, the sort style, and destruction through OnDestroy.
// Indices and failures follow the control's messages (CB_ADDSTRING, CB_SETCURSEL, ...).
#pragma once

#include "platform/files/runtime_class.h"
#include "platform/strings/cstring.h"

#include <vector>

constexpr int CB_ERR = -1;
constexpr DWORD CBS_SORT = 0x0100;

class CComboBox : public CObject {
public:
    CComboBox() = default;
    ~CComboBox() override = default;
    CComboBox(const CComboBox&) = delete;
    CComboBox& operator=(const CComboBox&) = delete;

    // Makes the box with its style bits (CBS_SORT keeps the items in order of their text,
    // compared without regard to case). Always succeeds.
    BOOL Create(DWORD style);
    DWORD GetStyle() const { return m_style; }
    // Sends the destroy message (OnDestroy) and then drops every item; a box never created, or
    // destroyed already, gives FALSE.
    BOOL DestroyWindow();

    // Index at which the text landed: the end, or its sorted place with CBS_SORT; CB_ERR for a
    // null text.
    int AddString(const char* text);
    // Count of items left, or CB_ERR for an index outside the list.
    int DeleteString(UINT index);
    void ResetContent();
    int GetCount() const { return static_cast<int>(m_items.size()); }
    // Text of an item; CB_ERR with text emptied for an index outside the list, else its length.
    int GetLBText(int index, CString& text) const;

    // CB_ERR for an index outside the list, else a value other than CB_ERR.
    int SetItemData(int index, DWORD_PTR data);
    int SetItemDataPtr(int index, void* data) { return SetItemData(index, DWORD_PTR(data)); }
    // The item data; CB_ERR (as a number) for an index outside the list.
    DWORD_PTR GetItemData(int index) const;
    void* GetItemDataPtr(int index) const;

    // Selects an item and returns its index; an index outside the list (-1 among them) clears
    // the selection and returns CB_ERR.
    int SetCurSel(int index);
    // The selected index, or CB_ERR when nothing is selected.
    int GetCurSel() const { return m_selection; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCComboBox; }
    static const CRuntimeClass classCComboBox;

protected:
    // The handler of the destroy message; the items are still there while it runs.
    virtual void OnDestroy() {}

private:
    struct Item {
        CString text;
        DWORD_PTR data = 0;
    };
    bool Valid(int index) const { return index >= 0 && index < GetCount(); }

    std::vector<Item> m_items;
    DWORD m_style = 0;
    bool m_created = false;
    int m_selection = CB_ERR;
};
