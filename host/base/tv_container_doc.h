// CTVContainerDoc: the host's form document, the container of a design's controls.
#pragma once

#include "host/ole/container_doc.h"
#include "host/ole/interface_info.h"

class CTVContainerDoc : public CVXContainerDoc {
public:
    // The form's own events interface, held by the document.
    CVXInterfaceInfo& GetEventsInterface() { return m_formEvents; }

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVContainerDoc; }
    static const CRuntimeClass classCTVContainerDoc;

private:
    CVXInterfaceInfo m_formEvents;
};
