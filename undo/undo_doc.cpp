// Snapshots of a design in numbered sub-storages of a temporary compound file.
#include "undo/undo_doc.h"

#include "host/base/designer_frame.h"
#include "host/core/vp_storage.h"
#include "platform/files/temp_files.h"
#include "resources/resource_guard.h"

using namespace talvor::platform::storage;

const CRuntimeClass CTalvorUndoDoc::classCTalvorUndoDoc =
    MakeRuntimeClass<CTalvorUndoDoc>("CTalvorUndoDoc", 0xFFFF, &CTVDocument::classCTVDocument);

namespace {
constexpr UINT ActionNamesId = 8405;
// String ids of the object names by index; 0: no name.
constexpr UINT ObjectNameIds[18] = {0,    8234, 8237, 8238, 8239, 8124, 8111, 8153, 8233,
                                    8235, 8236, 8240, 8245, 5418, 5426, 5424, 5425, 5427};
constexpr DWORD CreateMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE; // 0x1012
constexpr DWORD ReplaceMode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;              // 0x12
constexpr DWORD ReadMode = STGM_READ | STGM_SHARE_EXCLUSIVE;                      // 0x10

CString SnapshotName(DWORD index) {
    CString name;
    name.Format("%d", static_cast<int>(index));
    return name;
}
} // namespace

CTalvorUndoDoc::CTalvorUndoDoc() {
    char folder[260] = {};
    char path[260] = {};
    const DWORD length = GetTempPath(sizeof folder, folder);
    if (length > 0 && length < sizeof folder && GetTempFileName(folder, "~", 0, path) != 0) {
        OnNewDocument();
        // The history dies with the document, so its commits need not wait for the disk.
        m_bScratchFile = TRUE;
        if (!DoSave(path, TRUE))
            DeleteFile(path); // no compound file: leave nothing behind
    }

    talvor::resources::ResourceGuard guard;
    CString actions;
    actions.LoadString(ActionNamesId);
    CString piece;
    for (int i = 0; AfxExtractSubString(piece, actions, i, '\n'); ++i)
        m_arrActionName.Add(piece);
    for (UINT id : ObjectNameIds) {
        CString name;
        if (id != 0)
            name.LoadString(id);
        m_arrObjectName.Add(name);
    }
}

CTalvorUndoDoc::~CTalvorUndoDoc() {
    ReleaseRootStorage();
    if (!m_strPathName.IsEmpty())
        DeleteFile(m_strPathName);
}

CObject* CTalvorUndoDoc::CreateObject() {
    return new CTalvorUndoDoc;
}

void CTalvorUndoDoc::SetOperationObject(CFrameWnd* pFrame) {
    m_pOperationFrame = pFrame;
}

CTVContainerDoc* CTalvorUndoDoc::GetTVContainerDoc() {
    auto* frame = dynamic_cast<CTVMDIFrameWnd*>(m_pOperationFrame);
    return frame ? frame->GetContainer() : nullptr;
}

int CTalvorUndoDoc::Add(unsigned int nObject, unsigned int nAction, int bNew) {
    if (!m_lpRootStg)
        return 0;
    IStorage* storage = nullptr;
    if (bNew) {
        storage = CVPStorage::CreateStorage(SnapshotName(GetCount()), m_lpRootStg, CreateMode, 0);
    } else {
        if (m_nCurr >= GetCount())
            return 0;
        storage = OpenStorage(SnapshotName(m_nCurr), m_lpRootStg, ReplaceMode);
    }
    if (!storage)
        return 0;
    const bool saved = SaveFrameStream(m_pOperationFrame, storage) &&
                       SaveContainerStream(GetTVContainerDoc(), storage);
    storage->Release();
    if (!saved) {
        m_lpRootStg->Revert(); // the committed snapshots stay as they are
        return 0;
    }
    if (FAILED(m_lpRootStg->Commit(STGC_ONLYIFCURRENT)))
        return 0;
    const DWORD code = MAKELONG(static_cast<WORD>(nObject), static_cast<WORD>(nAction));
    if (bNew) {
        m_arrOperation.Add(code);
        m_nCurr = GetCount() - 1;
    } else {
        m_arrOperation.SetAt(m_nCurr, code);
    }
    return 1;
}

int CTalvorUndoDoc::LoadFrame() {
    if (!m_lpRootStg || m_nCurr >= GetCount())
        return 0;
    const CString name = SnapshotName(m_nCurr);
    if (!CVPStorage::FindElement(name, m_lpRootStg, STGTY_STORAGE))
        return 0;
    IStorage* storage = OpenStorage(name, m_lpRootStg, ReadMode);
    if (!storage)
        return 0;
    const bool loaded = LoadFrameStream(m_pOperationFrame, storage) &&
                        LoadContainerStream(GetTVContainerDoc(), storage);
    storage->Release();
    return loaded ? 1 : 0;
}

int CTalvorUndoDoc::MoveTo(unsigned int n) {
    if (n >= GetCount())
        return 0;
    m_nCurr = n;
    return 1;
}

int CTalvorUndoDoc::MoveNext() {
    return MoveTo(m_nCurr + 1);
}

int CTalvorUndoDoc::MovePrev() {
    return MoveTo(m_nCurr - 1);
}

unsigned int CTalvorUndoDoc::GetCurr() {
    return m_nCurr;
}

unsigned int CTalvorUndoDoc::GetCount() {
    return static_cast<unsigned int>(m_arrOperation.GetSize());
}

CString CTalvorUndoDoc::GetOperationName(unsigned int n) {
    if (n >= GetCount())
        return CString();
    const DWORD code = m_arrOperation[n];
    const INT_PTR action = HIWORD(code);
    const INT_PTR object = LOWORD(code);
    CString name = action < m_arrActionName.GetSize() ? m_arrActionName[action] : CString();
    name += " ";
    if (object < m_arrObjectName.GetSize())
        name += m_arrObjectName[object];
    return name;
}

void CTalvorUndoDoc::Serialize(CArchive&) {}
