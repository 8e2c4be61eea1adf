// Items and design records of a form, and the records' archive form.
#include "host/ole/container_doc.h"

#include "platform/com/ole_control.h"

#include <algorithm>

const CRuntimeClass CVXContainerDoc::classCVXContainerDoc =
    MakeRuntimeClass<CVXContainerDoc>("CVXContainerDoc", 1, &CObject::classCObject);

CVXContainerItem::CVXContainerItem(const CString& displayName, IUnknown* object)
    : m_lpObject(object), m_strDisplayName(displayName) {
    if (m_lpObject)
        m_lpObject->AddRef();
}

CVXContainerItem::~CVXContainerItem() {
    if (m_lpObject)
        m_lpObject->Release();
}

namespace {

// The default source interface of the object's class, or null.
ITypeInfo* DefaultSourceOf(IUnknown* object) {
    IProvideClassInfo* provider = nullptr;
    if (object == nullptr ||
        FAILED(object->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&provider))))
        return nullptr;
    ITypeInfo* coclass = nullptr;
    HRESULT hr = provider->GetClassInfo(&coclass);
    provider->Release();
    if (FAILED(hr) || coclass == nullptr)
        return nullptr;
    ITypeInfo* source = nullptr;
    TYPEATTR* attr = nullptr;
    if (SUCCEEDED(coclass->GetTypeAttr(&attr))) {
        for (UINT i = 0; i < attr->cImplTypes && source == nullptr; ++i) {
            INT flags = 0;
            HREFTYPE href = 0;
            if (SUCCEEDED(coclass->GetImplTypeFlags(i, &flags)) &&
                (flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE)) ==
                    (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE) &&
                SUCCEEDED(coclass->GetRefTypeOfImplType(i, &href)))
                coclass->GetRefTypeInfo(href, &source);
        }
        coclass->ReleaseTypeAttr(attr);
    }
    coclass->Release();
    return source;
}

} // namespace

CVXInterfaceInfo& CVXContainerItem::GetEventsInterface() {
    if (!m_eventsRead) {
        m_eventsRead = true;
        if (m_eventsInfo.GetNumMethods() == 0) {
            if (ITypeInfo* source = DefaultSourceOf(m_lpObject)) {
                m_eventsInfo.Init(source);
                source->Release();
            }
        }
    }
    return m_eventsInfo;
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

CVXContainerDoc::Control* CVXContainerDoc::GetControl(int index) {
    return index >= 0 && index < GetControlCount() ? &m_controls[index] : nullptr;
}

const CVXContainerDoc::Control* CVXContainerDoc::GetControl(int index) const {
    return index >= 0 && index < GetControlCount() ? &m_controls[index] : nullptr;
}

int CVXContainerDoc::AddControl(const char* name, const char* classId) {
    Control control;
    control.m_strName = name ? name : "";
    control.m_strClass = classId ? classId : "";
    m_controls.push_back(control);
    return GetControlCount() - 1;
}

BOOL CVXContainerDoc::SetProperty(int index, const char* property, const char* value) {
    Control* control = GetControl(index);
    if (!control || !property)
        return FALSE;
    for (INT_PTR i = 0; i < control->m_arrPropertyNames.GetSize(); ++i)
        if (control->m_arrPropertyNames[i] == property) {
            control->m_arrPropertyValues[i] = value ? value : "";
            return TRUE;
        }
    control->m_arrPropertyNames.Add(property);
    control->m_arrPropertyValues.Add(value ? value : "");
    return TRUE;
}

CString CVXContainerDoc::GetProperty(int index, const char* property) const {
    const Control* control = GetControl(index);
    if (!control || !property)
        return CString();
    for (INT_PTR i = 0; i < control->m_arrPropertyNames.GetSize(); ++i)
        if (control->m_arrPropertyNames[i] == property)
            return control->m_arrPropertyValues[i];
    return CString();
}

void CVXContainerDoc::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar << static_cast<DWORD>(m_controls.size());
        for (const Control& control : m_controls) {
            ar << control.m_strName << control.m_strClass;
            ar << static_cast<DWORD>(control.m_arrPropertyNames.GetSize());
            for (INT_PTR i = 0; i < control.m_arrPropertyNames.GetSize(); ++i)
                ar << control.m_arrPropertyNames[i] << control.m_arrPropertyValues[i];
        }
        return;
    }
    // Read into a new list first, so a damaged form changes nothing.
    std::vector<Control> controls;
    DWORD count = 0;
    ar >> count;
    for (DWORD c = 0; c < count; ++c) {
        Control control;
        DWORD properties = 0;
        ar >> control.m_strName >> control.m_strClass >> properties;
        for (DWORD p = 0; p < properties; ++p) {
            CString name, value;
            ar >> name >> value;
            control.m_arrPropertyNames.Add(name);
            control.m_arrPropertyValues.Add(value);
        }
        controls.push_back(std::move(control));
    }
    m_controls = std::move(controls);
}
