#include "platform/window/combo_box.h"

const CRuntimeClass CComboBox::classCComboBox =
    MakeRuntimeClass<CComboBox>("CComboBox", 0xFFFF, &CObject::classCObject);

BOOL CComboBox::Create(DWORD style) {
    m_style = style;
    m_created = true;
    return TRUE;
}

BOOL CComboBox::DestroyWindow() {
    if (!m_created)
        return FALSE;
    OnDestroy();
    ResetContent();
    m_created = false;
    return TRUE;
}

int CComboBox::AddString(const char* text) {
    if (text == nullptr)
        return CB_ERR;
    std::size_t place = m_items.size();
    if (m_style & CBS_SORT) {
        place = 0;
        while (place < m_items.size() && m_items[place].text.CompareNoCase(text) <= 0)
            ++place;
    }
    m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(place), Item{CString(text), 0});
    if (m_selection != CB_ERR && static_cast<std::size_t>(m_selection) >= place)
        ++m_selection;
    return static_cast<int>(place);
}

int CComboBox::DeleteString(UINT index) {
    if (index >= m_items.size())
        return CB_ERR;
    m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(index));
    if (m_selection == static_cast<int>(index))
        m_selection = CB_ERR;
    else if (m_selection > static_cast<int>(index))
        --m_selection;
    return GetCount();
}

void CComboBox::ResetContent() {
    m_items.clear();
    m_selection = CB_ERR;
}

int CComboBox::GetLBText(int index, CString& text) const {
    if (!Valid(index)) {
        text.Empty();
        return CB_ERR;
    }
    text = m_items[static_cast<std::size_t>(index)].text;
    return text.GetLength();
}

int CComboBox::SetItemData(int index, DWORD_PTR data) {
    if (!Valid(index))
        return CB_ERR;
    m_items[static_cast<std::size_t>(index)].data = data;
    return 0;
}

DWORD_PTR CComboBox::GetItemData(int index) const {
    if (!Valid(index))
        return static_cast<DWORD_PTR>(CB_ERR);
    return m_items[static_cast<std::size_t>(index)].data;
}

void* CComboBox::GetItemDataPtr(int index) const {
    return reinterpret_cast<void*>(GetItemData(index));
}

int CComboBox::SetCurSel(int index) {
    m_selection = Valid(index) ? index : CB_ERR;
    return m_selection;
}
