// The host's compound-file document and its frame and container streams.
#include "host/base/tv_document.h"

#include "host/bars/frame_wnd_vt.h"
#include "platform/storage/ole_stream_file.h"

#include <memory>

using namespace talvor::platform::storage;

const CRuntimeClass CTVDocument::classCTVDocument =
    MakeRuntimeClass<CTVDocument>("CTVDocument", 0xFFFF, &CObject::classCObject);

namespace {
constexpr const char* FrameStreamName = "Frame";
constexpr const char* ContainerStreamName = "Container";
constexpr DWORD FrameStreamMagic = 0x53465654; // "TVFS"
constexpr WORD FrameStreamVersion = 2;
constexpr DWORD CreateMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD ReadMode = STGM_READ | STGM_SHARE_EXCLUSIVE;

// The command bars of a frame that has them, else null.
CVTCommandBars* CommandBarsOf(CFrameWnd* frame) {
    auto* withBars = dynamic_cast<CVTFrameWndImpl*>(frame);
    return withBars ? withBars->GetCommandBars() : nullptr;
}

struct ReleaseBars {
    void operator()(CVTCommandBars* bars) const { bars->InternalRelease(); }
};
} // namespace

CTVDocument::~CTVDocument() {
    ReleaseRootStorage();
}

void CTVDocument::ReleaseRootStorage() {
    if (m_lpRootStg)
        m_lpRootStg->Release();
    m_lpRootStg = nullptr;
}

BOOL CTVDocument::OnNewDocument() {
    ReleaseRootStorage();
    m_strPathName.Empty();
    return TRUE;
}

BOOL CTVDocument::DoSave(const char* path, int bReplace) {
    if (!path || !*path)
        return FALSE;
    IStorage* root = nullptr;
    const DWORD scratch = m_bScratchFile ? STGM_DELETEONRELEASE : 0;
    if (FAILED(StgCreateDocfile(path, CreateMode | STGM_TRANSACTED | scratch, 0, &root)))
        return FALSE;
    ReleaseRootStorage();
    m_lpRootStg = root;
    if (bReplace)
        SetPathName(path);
    return TRUE;
}

IStorage* CTVDocument::OpenStorage(const char* name, IStorage* parent, DWORD mode) {
    if (!name || !parent)
        return nullptr;
    const std::u16string wide = ElementName(name);
    IStorage* storage = nullptr;
    return SUCCEEDED(parent->OpenStorage(wide.c_str(), nullptr, mode, nullptr, 0, &storage))
               ? storage
               : nullptr;
}

BOOL CTVDocument::SaveFrameStream(CFrameWnd* frame, IStorage* storage) {
    if (!frame || !storage)
        return FALSE;
    COleStreamFile file;
    if (!file.CreateStream(storage, FrameStreamName, CreateMode))
        return FALSE;
    try {
        CArchive ar(&file, CArchive::store);
        CString text;
        frame->GetWindowText(text);
        RECT rect;
        frame->GetWindowRect(&rect);
        ar << FrameStreamMagic << FrameStreamVersion << text << frame->GetTitle();
        ar << rect.left << rect.top << rect.right << rect.bottom;
        ar << static_cast<LONG>(frame->GetShowCommand());
        // The bars in the command bar library's own form.
        CVTCommandBars* bars = CommandBarsOf(frame);
        ar << static_cast<BYTE>(bars ? 1 : 0);
        if (bars) {
            bars->GetCommandBarsOptions()->Serialize(ar);
            bars->SerializeCommandBars(ar);
        }
        ar.Close();
        file.Close();
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

BOOL CTVDocument::LoadFrameStream(CFrameWnd* frame, IStorage* storage) {
    if (!frame || !storage)
        return FALSE;
    COleStreamFile file;
    if (!file.OpenStream(storage, FrameStreamName, ReadMode))
        return FALSE;
    try {
        CArchive ar(&file, CArchive::load);
        DWORD magic = 0;
        WORD version = 0;
        ar >> magic >> version;
        if (magic != FrameStreamMagic || version != FrameStreamVersion)
            return FALSE;
        CString text, title;
        RECT rect;
        LONG show = 0;
        BYTE hasBars = 0;
        ar >> text >> title >> rect.left >> rect.top >> rect.right >> rect.bottom >> show;
        ar >> hasBars;
        if (hasBars > 1)
            return FALSE;
        // The bars are read into a set of their own, so a damaged stream leaves the frame's.
        VT_COMMANDBARS_OPTIONS options;
        std::unique_ptr<CVTCommandBars, ReleaseBars> loaded;
        if (hasBars) {
            options.Serialize(ar);
            loaded.reset(new CVTCommandBars);
            loaded->SerializeCommandBars(ar);
        }
        // Everything was read: only now does the frame change.
        frame->SetWindowText(text);
        frame->SetTitle(title);
        frame->MoveWindow(rect);
        frame->ShowWindow(show);
        if (CVTCommandBars* bars = CommandBarsOf(frame); bars && loaded) {
            *bars->GetCommandBarsOptions() = options;
            bars->MoveBarsFrom(loaded.get());
        }
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

BOOL CTVDocument::SaveContainerStream(CVXContainerDoc* container, IStorage* storage) {
    if (!container || !storage)
        return FALSE;
    COleStreamFile file;
    if (!file.CreateStream(storage, ContainerStreamName, CreateMode))
        return FALSE;
    try {
        // Room for a large form: the stream then gets it in one write, which the file
        // passes on to the disk without another copy.
        CArchive ar(&file, CArchive::store, 1 << 18);
        container->Serialize(ar);
        ar.Close();
        file.Close();
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

BOOL CTVDocument::LoadContainerStream(CVXContainerDoc* container, IStorage* storage) {
    if (!container || !storage)
        return FALSE;
    COleStreamFile file;
    if (!file.OpenStream(storage, ContainerStreamName, ReadMode))
        return FALSE;
    try {
        CArchive ar(&file, CArchive::load, 1 << 16);
        container->Serialize(ar);
    } catch (CException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

void CTVDocument::Serialize(CArchive&) {
    // The document lives in its compound file; it is never stored through an archive.
}
