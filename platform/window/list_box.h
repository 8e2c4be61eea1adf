// CListBox: a list of text rows with a selection, single or multiple (LBS_MULTIPLESEL), without
// a screen. The LB_ messages work on a created window; the members work either way.
#pragma once

#include "platform/window/wnd.h"

#include <vector>

constexpr DWORD LBS_NOTIFY = 0x0001;
constexpr DWORD LBS_MULTIPLESEL = 0x0008;
constexpr DWORD LBS_EXTENDEDSEL = 0x0800;

constexpr UINT LB_ADDSTRING = 0x0180;
constexpr UINT LB_INSERTSTRING = 0x0181;
constexpr UINT LB_DELETESTRING = 0x0182;
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETSEL = 0x0185;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETSEL = 0x0187;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;
constexpr UINT LB_GETTEXTLEN = 0x018A;
constexpr UINT LB_GETCOUNT = 0x018B;
constexpr UINT LB_GETSELCOUNT = 0x0190;
constexpr int LB_ERR = -1;

class CListBox : public CWnd {
public:
    // The index of the new row; LB_ERR for a null text.
    int AddString(const char* text);
    // Inserts before index (-1: at the end); LB_ERR for an index beyond the end.
    int InsertString(int index, const char* text);
    // The rows left; LB_ERR for an index outside the list.
    int DeleteString(UINT index);
    void ResetContent();
    int GetCount() const { return static_cast<int>(m_rows.size()); }
    // The row's text length and text; LB_ERR for an index outside the list.
    int GetTextLen(int index) const;
    int GetText(int index, CString& text) const;

    // Multiple selection: selects or clears a row, all rows for index -1. A single-selection
    // list answers LB_ERR.
    int SetSel(int index, BOOL select = TRUE);
    // Positive when the row is selected, 0 when not, LB_ERR outside the list.
    int GetSel(int index) const;
    // The number of selected rows; LB_ERR for a single-selection list.
    int GetSelCount() const;
    // Single selection: the selected row or LB_ERR.
    int SetCurSel(int index);
    int GetCurSel() const;

    const CRuntimeClass* GetRuntimeClass() const override { return &classCListBox; }
    static const CRuntimeClass classCListBox;

protected:
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool IsMultiple() const { return (GetStyle() & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0; }

    struct Row {
        CString text;
        bool selected = false;
    };
    std::vector<Row> m_rows;
    int m_current = LB_ERR;
};
