#include "host/ole/container.h"

#include "platform/com/registry/com_registry.h"

#include <algorithm>

CVXContainerItem::CVXContainerItem(const CString& displayName, IUnknown* object)
    : m_lpObject(object), m_strDisplayName(displayName) {
    if (m_lpObject)
        m_lpObject->AddRef();
}

CVXContainerItem::~CVXContainerItem() {
    if (m_lpObject)
        m_lpObject->Release();
}

CVXContainerDoc::~CVXContainerDoc() {
    for (CVXContainerItem* item : m_items)
        delete item;
}

void CVXContainerDoc::AddItem(CVXContainerItem* item) {
    if (item)
        m_items.push_back(item);
}

CVXContainerItem* CVXContainerDoc::GetNextTabItem(CVXContainerItem* item) const {
    if (m_items.empty())
        return nullptr;
    if (!item)
        return m_items.front();
    auto found = std::find(m_items.begin(), m_items.end(), item);
    if (found == m_items.end())
        return nullptr;
    ++found;
    return found == m_items.end() ? m_items.front() : *found;
}

namespace {
CVXContainerDoc* g_activeDoc = nullptr;
}

CVXContainerDoc* VfxGetActiveContainerDoc() {
    return g_activeDoc;
}

void VfxSetActiveContainerDoc(CVXContainerDoc* doc) {
    g_activeDoc = doc;
}

CString VfxGetActiveXName(const char* clsid) {
    return CString(talvor::platform::GetActiveXDisplayName(clsid ? clsid : "").c_str());
}
