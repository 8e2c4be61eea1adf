// CTVContainerDoc: the host's form document, the container of a design's controls.
#pragma once

#include "host/ole/container_doc.h"

class CTVContainerDoc : public CVXContainerDoc {
public:
    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVContainerDoc; }
    static const CRuntimeClass classCTVContainerDoc;
};
