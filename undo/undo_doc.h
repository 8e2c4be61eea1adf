// CTalvorUndoDoc: the undo history of a design window as full snapshots. Each snapshot is the
// design frame's state and its form's controls, saved into a numbered sub-storage ("0", "1",
// ...) of a temporary compound file that the document creates and deletes again. Each snapshot
// carries an operation code: object name index in the low 16 bits, action name index in the
// high 16 bits.
#pragma once

#include "host/base/tv_document.h"
#include "platform/strings/arrays.h"

class CTVContainerDoc;

class CTalvorUndoDoc : public CTVDocument {
public:
    // Creates the temporary file "~....tmp" in the system's temporary folder as an empty
    // compound file and reads the name tables. Without a temporary file every Add gives 0.
    CTalvorUndoDoc();
    // Deletes the temporary file.
    ~CTalvorUndoDoc() override;

    static CObject* CreateObject();

    // The frame of all later snapshots (not owned). Add and LoadFrame give 0 without one.
    void SetOperationObject(CFrameWnd* pFrame);
    // Saves the frame and its form as a new snapshot at the end of the list (bNew set; it
    // becomes current), or over the current one (bNew clear). 1 on success; 0, with the list,
    // the position and the file's committed snapshots unchanged, when there is no current
    // snapshot to replace, no storage, a stream cannot be written or the commit fails.
    int Add(unsigned int nObject, unsigned int nAction, int bNew);
    // Loads the current snapshot into the frame and its form. 0 when there is no current
    // snapshot, its storage is missing, or a stream is missing or damaged (the frame may then
    // be loaded and the form not).
    int LoadFrame();
    // Makes snapshot n current; 0, changing nothing, when n is no valid index. Loads nothing.
    int MoveTo(unsigned int n);
    int MoveNext();
    // At snapshot 0 the index wraps and the move fails.
    int MovePrev();
    unsigned int GetCurr();
    unsigned int GetCount();
    // The action name of snapshot n, a blank, its object name. Empty for an invalid n; a name
    // index outside its table counts as an empty name.
    CString GetOperationName(unsigned int n);

    // Empty: the history is never stored through an archive.
    void Serialize(CArchive& ar) override;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCTalvorUndoDoc; }
    static const CRuntimeClass classCTalvorUndoDoc;

    CFrameWnd* m_pOperationFrame = nullptr;
    DWORD m_nCurr = 0xFFFFFFFF;
    CDWordArray m_arrOperation;
    CStringArray m_arrActionName;
    CStringArray m_arrObjectName;

private:
    CTVContainerDoc* GetTVContainerDoc();
};
