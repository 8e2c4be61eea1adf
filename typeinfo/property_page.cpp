// A control's property page in a property frame.
#include "typeinfo/instance_helpers.h"

#include "host/ole/container_doc.h"
#include "platform/com/bstr.h"
#include "platform/com/registry/property_frame.h"
#include "platform/intl/language_ids.h"
#include "platform/window/wnd.h"

void TVPfxCreatePropertyPage(CVXContainerItem* item, GUID page, CWnd* parent) {
    if (parent == nullptr || parent->GetSafeHwnd() == nullptr || item == nullptr)
        return;
    const std::wstring caption = talvor::platform::WideFromMultiByte(item->GetDisplayName().View());
    IUnknown* object = item->m_lpObject;
    // The frame's answer (OK, Cancel or a failure) changes nothing here.
    OleCreatePropertyFrame(parent->GetSafeHwnd(), 0, 0, caption.c_str(), 1, &object, 1, &page,
                           GetUserDefaultLCID(), 0, nullptr);
}
