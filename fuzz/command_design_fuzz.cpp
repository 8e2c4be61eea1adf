// Arbitrary bytes as a saved command bar design (first byte 0), a bar on the clipboard (1) or a
// control on the clipboard (2). A damaged stream must end in CArchiveException with the design
// unchanged; a stream that loads must save and load again to the same bytes. Leaks show under
// the sanitizer.
#include "commands/cmd_clipboard.h"
#include "commands/cmd_frame.h"
#include "platform/app/profile.h"
#include "platform/files/archive.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

std::string Saved(CTalvorCmdFrame& frame) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    frame.SerializeState(ar);
    ar.Close();
    return file.Data();
}

void Load(CTalvorCmdFrame& frame, const std::string& bytes) {
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    frame.SerializeState(ar);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool once = [] {
        AfxGetApp()->SetProfileStore(std::make_shared<talvor::platform::MemoryProfile>());
        return true;
    }();
    (void)once;
    if (size < 1)
        return 0;
    const int mode = data[0] % 3;
    CTalvorCmdFrame frame;
    frame.LoadFrame(0);
    const std::string before = Saved(frame);
    CMemFile file(data + 1, static_cast<UINT>(size - 1));
    CArchive ar(&file, CArchive::load);
    try {
        if (mode == 0) {
            frame.SerializeState(ar);
        } else if (mode == 1) {
            CTalvorCmdClipboard().LoadFromClipboard(ar, frame.GetCommandBars());
        } else {
            CTalvorCmdClipboard().LoadFromClipboard(ar, frame.GetDesignerControls());
        }
    } catch (CArchiveException* e) {
        e->Delete();
        if (Saved(frame) != before)
            std::abort(); // a failed read changed the design
        return 0;
    }
    // Whatever loaded saves, and what was saved loads back to the same stream. Each load takes
    // one visible control 40000 and one 40001 out of the pool, so a pool that still holds one
    // changes on the next load by design.
    const std::string once1 = Saved(frame);
    CTalvorCmdFrame again;
    again.LoadFrame(0);
    Load(again, once1);
    CVTControls* pool = frame.GetDesignerControls();
    const bool shrinks = pool->FindControl(vtControlError, 40000, TRUE, FALSE) != nullptr ||
                         pool->FindControl(vtControlError, 40001, TRUE, FALSE) != nullptr;
    if (!shrinks && Saved(again) != once1)
        std::abort();
    return 0;
}
