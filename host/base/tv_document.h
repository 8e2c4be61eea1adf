// CTVDocument: the host's compound-file document. It holds the root storage of its file and the
// file's path, and saves and loads a design frame's state and a form's controls as streams of a
// storage ("Frame" and "Container").
#pragma once

#include "host/ole/container_doc.h"
#include "platform/storage/storage.h"
#include "platform/window/frame_wnd.h"

class CTVDocument : public CObject {
public:
    CTVDocument() = default;
    // Releases the root storage; changes not committed are dropped.
    ~CTVDocument() override;
    CTVDocument(const CTVDocument&) = delete;
    CTVDocument& operator=(const CTVDocument&) = delete;

    // Starts a new, empty document: no storage, no path.
    virtual BOOL OnNewDocument();
    // Creates the compound file at path (replacing a file there), keeps its root storage open
    // for later commits and, with bReplace set, makes path the document's path. FALSE when the
    // file cannot be created; the document is then as before.
    BOOL DoSave(const char* path, int bReplace = TRUE);
    // The sub-storage name of parent opened with mode, or null. The caller releases it.
    IStorage* OpenStorage(const char* name, IStorage* parent, DWORD mode);

    // Writes the frame's window text, title, placement and show state, and for a frame with
    // command bars the bars' options and every bar with its controls and the bars of its
    // popups, as the stream "Frame" of storage (replacing it). FALSE when the stream cannot be
    // written.
    BOOL SaveFrameStream(CFrameWnd* frame, IStorage* storage);
    // Writes the form's controls with their properties as the stream "Container".
    BOOL SaveContainerStream(CVXContainerDoc* container, IStorage* storage);
    // Restores what SaveFrameStream wrote, the command bars in place of the frame's bars; FALSE,
    // with the frame and its bars unchanged, when the stream is missing or damaged. Bars saved
    // from a frame are dropped for a frame without command bars; a frame saved without bars
    // keeps the bars it has.
    BOOL LoadFrameStream(CFrameWnd* frame, IStorage* storage);
    // Restores what SaveContainerStream wrote; FALSE, with the controls unchanged, when the
    // stream is missing or damaged.
    BOOL LoadContainerStream(CVXContainerDoc* container, IStorage* storage);

    IStorage* GetRootStorage() const { return m_lpRootStg; }
    const CString& GetPathName() const { return m_strPathName; }
    void SetPathName(const char* path) { m_strPathName = path ? path : ""; }

    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCTVDocument; }
    static const CRuntimeClass classCTVDocument;

protected:
    void ReleaseRootStorage();

    IStorage* m_lpRootStg = nullptr;
    CString m_strPathName;
    // Set before DoSave for a file that lives only as long as the document (a scratch file:
    // removed when its root storage is released, commits not waited for on the disk).
    BOOL m_bScratchFile = FALSE;
};
