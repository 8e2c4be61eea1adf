// The list box's rows and selection, by member and by message.
#include "platform/window/list_box.h"

#include <cstring>

const CRuntimeClass CListBox::classCListBox =
    MakeRuntimeClass<CListBox>("CListBox", 0xFFFF, &CWnd::classCWnd);

int CListBox::AddString(const char* text) {
    return InsertString(-1, text);
}

int CListBox::InsertString(int index, const char* text) {
    if (!text || index > GetCount())
        return LB_ERR;
    if (index < 0)
        index = GetCount();
    m_rows.insert(m_rows.begin() + index, Row{CString(text), false});
    if (m_current >= index)
        ++m_current;
    return index;
}

int CListBox::DeleteString(UINT index) {
    if (index >= m_rows.size())
        return LB_ERR;
    m_rows.erase(m_rows.begin() + index);
    if (m_current == static_cast<int>(index))
        m_current = LB_ERR;
    else if (m_current > static_cast<int>(index))
        --m_current;
    return GetCount();
}

void CListBox::ResetContent() {
    m_rows.clear();
    m_current = LB_ERR;
}

int CListBox::GetTextLen(int index) const {
    if (index < 0 || index >= GetCount())
        return LB_ERR;
    return m_rows[static_cast<std::size_t>(index)].text.GetLength();
}

int CListBox::GetText(int index, CString& text) const {
    if (index < 0 || index >= GetCount())
        return LB_ERR;
    text = m_rows[static_cast<std::size_t>(index)].text;
    return text.GetLength();
}

int CListBox::SetSel(int index, BOOL select) {
    if (!IsMultiple() || index >= GetCount())
        return LB_ERR;
    if (index < 0) {
        for (Row& row : m_rows)
            row.selected = select != FALSE;
        return 0;
    }
    m_rows[static_cast<std::size_t>(index)].selected = select != FALSE;
    return 0;
}

int CListBox::GetSel(int index) const {
    if (index < 0 || index >= GetCount())
        return LB_ERR;
    if (!IsMultiple())
        return index == m_current ? 1 : 0;
    return m_rows[static_cast<std::size_t>(index)].selected ? 1 : 0;
}

int CListBox::GetSelCount() const {
    if (!IsMultiple())
        return LB_ERR;
    int count = 0;
    for (const Row& row : m_rows)
        count += row.selected ? 1 : 0;
    return count;
}

int CListBox::SetCurSel(int index) {
    if (IsMultiple())
        return LB_ERR;
    if (index < 0 || index >= GetCount()) {
        m_current = LB_ERR;
        return LB_ERR;
    }
    m_current = index;
    return index;
}

int CListBox::GetCurSel() const {
    return IsMultiple() ? LB_ERR : m_current;
}

LRESULT CListBox::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto index = static_cast<int>(static_cast<INT_PTR>(wParam));
    switch (message) {
    case LB_ADDSTRING:
        return AddString(reinterpret_cast<const char*>(lParam));
    case LB_INSERTSTRING:
        return InsertString(index, reinterpret_cast<const char*>(lParam));
    case LB_DELETESTRING:
        return DeleteString(static_cast<UINT>(wParam));
    case LB_RESETCONTENT:
        ResetContent();
        return 0;
    case LB_SETSEL:
        // wParam: select or clear; lParam: the row, -1 for all.
        return SetSel(static_cast<int>(lParam), wParam ? TRUE : FALSE);
    case LB_GETSEL:
        return GetSel(index);
    case LB_SETCURSEL:
        return SetCurSel(index);
    case LB_GETCURSEL:
        return GetCurSel();
    case LB_GETCOUNT:
        return GetCount();
    case LB_GETSELCOUNT:
        return GetSelCount();
    case LB_GETTEXTLEN:
        return GetTextLen(index);
    case LB_GETTEXT: {
        // lParam: room for the text and its terminating zero.
        CString text;
        if (GetText(index, text) == LB_ERR || !lParam)
            return LB_ERR;
        std::memcpy(reinterpret_cast<char*>(lParam), text.GetString(),
                    static_cast<std::size_t>(text.GetLength()) + 1);
        return text.GetLength();
    }
    default:
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
}
