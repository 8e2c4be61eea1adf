// CMenu over the menu data of a resource module.
#include "platform/app/menu.h"

#include "platform/app/resource_module.h"

using talvor::platform::MenuData;
using talvor::platform::MenuItem;

namespace {

std::shared_ptr<MenuData> DeepCopy(const MenuData& source) {
    auto copy = std::make_shared<MenuData>();
    copy->items = source.items;
    for (MenuItem& item : copy->items) {
        if (item.popup)
            item.popup = DeepCopy(*item.popup);
    }
    return copy;
}

const MenuItem* FindById(const MenuData& data, UINT id) {
    for (const MenuItem& item : data.items) {
        if (item.popup) {
            if (const MenuItem* inner = FindById(*item.popup, id))
                return inner;
        } else if (item.id == id && (item.flags & MF_SEPARATOR) == 0) {
            return &item;
        }
    }
    return nullptr;
}

} // namespace

BOOL CMenu::CreateMenu() {
    m_data = std::make_shared<MenuData>();
    m_subMenus.clear();
    return TRUE;
}

BOOL CMenu::LoadMenu(UINT resourceId) {
    HINSTANCE module = AfxGetResourceHandle();
    const MenuData* found = module ? module->FindMenu(resourceId) : nullptr;
    if (found == nullptr)
        return FALSE;
    m_data = DeepCopy(*found);
    m_subMenus.clear();
    return TRUE;
}

BOOL CMenu::DestroyMenu() {
    const bool had = m_data != nullptr;
    m_data.reset();
    m_subMenus.clear();
    return had ? TRUE : FALSE;
}

void CMenu::Attach(std::shared_ptr<MenuData> data) {
    m_data = std::move(data);
    m_subMenus.clear();
}

const MenuItem* CMenu::ItemAt(int position) const {
    if (!m_data || position < 0 || position >= static_cast<int>(m_data->items.size()))
        return nullptr;
    return &m_data->items[static_cast<std::size_t>(position)];
}

int CMenu::GetMenuItemCount() const {
    return m_data ? static_cast<int>(m_data->items.size()) : -1;
}

UINT CMenu::GetMenuItemID(int position) const {
    const MenuItem* item = ItemAt(position);
    if (item == nullptr || item->popup)
        return static_cast<UINT>(-1);
    return (item->flags & MF_SEPARATOR) ? 0 : item->id;
}

int CMenu::GetMenuString(UINT idOrPosition, CString& text, UINT flags) const {
    const MenuItem* item = nullptr;
    if (flags & MF_BYPOSITION)
        item = ItemAt(static_cast<int>(idOrPosition));
    else if (m_data)
        item = FindById(*m_data, idOrPosition);
    text = item ? item->text.c_str() : "";
    return text.GetLength();
}

UINT CMenu::GetMenuState(UINT idOrPosition, UINT flags) const {
    const MenuItem* item = nullptr;
    if (flags & MF_BYPOSITION)
        item = ItemAt(static_cast<int>(idOrPosition));
    else if (m_data)
        item = FindById(*m_data, idOrPosition);
    if (item == nullptr)
        return static_cast<UINT>(-1);
    return item->popup ? (item->flags | MF_POPUP) : item->flags;
}

CMenu* CMenu::GetSubMenu(int position) const {
    const MenuItem* item = ItemAt(position);
    if (item == nullptr || !item->popup)
        return nullptr;
    for (const auto& sub : m_subMenus) {
        if (sub->m_data == item->popup)
            return sub.get();
    }
    auto sub = std::make_unique<CMenu>();
    sub->m_data = item->popup;
    m_subMenus.push_back(std::move(sub));
    return m_subMenus.back().get();
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR idOrPopup, const char* text) {
    if (!m_data)
        return FALSE;
    MenuItem item;
    item.flags = flags & ~MF_POPUP;
    item.text = text ? text : "";
    if (flags & MF_POPUP) {
        const CMenu* popup = reinterpret_cast<const CMenu*>(idOrPopup);
        item.popup =
            popup && popup->m_data ? DeepCopy(*popup->m_data) : std::make_shared<MenuData>();
    } else if ((flags & MF_SEPARATOR) == 0) {
        item.id = static_cast<UINT>(idOrPopup);
    }
    m_data->items.push_back(std::move(item));
    return TRUE;
}
