#include "host/base/tv_container_doc.h"

#include "host/ole/form_type_library.h"
#include "platform/com/registry/com_registry.h"
#include "platform/com/typelib/type_lib.h"

CTVContainerDoc::CTVContainerDoc() = default;
CTVContainerDoc::~CTVContainerDoc() = default;

CVXInterfaceInfo& CTVContainerDoc::GetEventsInterface() {
    if (!m_formEventsRead) {
        m_formEventsRead = true;
        talvor::host::RegisterFormTypeLibrary();
        ITypeLib* library = nullptr;
        if (SUCCEEDED(LoadRegTypeLib(talvor::host::LIBID_TalvorForm, 1, 0, 0, &library))) {
            ITypeInfo* events = nullptr;
            if (SUCCEEDED(
                    library->GetTypeInfoOfGuid(talvor::host::DIID_ITalvorFormEvents, &events))) {
                m_formEvents.Init(events);
                events->Release();
            }
            library->Release();
        }
    }
    return m_formEvents;
}

void CTVContainerDoc::SetEventsInterface(CVXInterfaceInfo& events) {
    m_formEvents.RemoveAllMethods();
    m_formEvents.SetName(events.GetName());
    m_formEvents.SetIID(events.GetIID());
    for (INT_PTR i = 0; i < events.m_arrMethods.GetSize(); ++i)
        m_formEvents.m_arrMethods.Add(events.m_arrMethods[i]);
    events.m_arrMethods.RemoveAll(); // the methods have moved here
    m_formEventsRead = true;
}

CTVScriptManager* CTVContainerDoc::GetScriptManager(BOOL create, BOOL /*load*/) {
    if (!m_scripts && create)
        m_scripts = std::make_unique<CTVScriptManager>();
    return m_scripts.get();
}

void CTVContainerDoc::OnCloseDocument() {
    if (m_scripts)
        m_scripts->RemoveAllScripts();
    if (m_bAutoDelete)
        delete this;
}

CTVContainerDoc* VfxNewOleDoc() {
    auto* doc = new CTVContainerDoc;
    doc->m_bAutoDelete = TRUE;
    return doc;
}
