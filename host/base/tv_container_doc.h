// CTVContainerDoc: the host's form document, the container of a design's controls, with the
// form's own events and the scripts of the document.
#pragma once

#include "host/base/script_manager.h"
#include "host/ole/container_doc.h"
#include "host/ole/interface_info.h"

#include <memory>

class CTVContainerDoc : public CVXContainerDoc {
public:
    CTVContainerDoc();
    ~CTVContainerDoc() override;

    // The form's own events interface, held by the document: on first use the events of the
    // form's type library.
    CVXInterfaceInfo& GetEventsInterface();
    // Takes the methods of events as the form's events instead of those of the type library
    // (a host or tool that describes the form itself); events is left empty.
    void SetEventsInterface(CVXInterfaceInfo& events);

    // The document's script manager; null when create is 0 and there is none yet. load is
    // kept for the host's signature: the scripts live in memory only.
    CTVScriptManager* GetScriptManager(BOOL create = TRUE, BOOL load = TRUE);

    // Closes the document: its scripts go, and a document made by VfxNewOleDoc destroys
    // itself, so the pointer is invalid afterwards.
    virtual void OnCloseDocument();

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVContainerDoc; }
    static const CRuntimeClass classCTVContainerDoc;

    BOOL m_bAutoDelete = FALSE;

private:
    CVXInterfaceInfo m_formEvents;
    bool m_formEventsRead = false;
    std::unique_ptr<CTVScriptManager> m_scripts;
};

// A new, empty form document for temporary use, closed (and so destroyed) by OnCloseDocument.
CTVContainerDoc* VfxNewOleDoc();
