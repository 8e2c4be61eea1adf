// CTalvorCmdClipboard: the clipboard forms of a command bar control and of a whole bar (popups
// in popups included), and the rules by which a pasted bar fits in with the bars already there.
#pragma once

#include "host/bars/command_bars.h"
#include "host/core/vp_clipboard.h"

class CTalvorCmdClipboard : public CVPClipboard {
public:
    CTalvorCmdClipboard() = default;
    CTalvorCmdClipboard(const CTalvorCmdClipboard&) : CVPClipboard() {}
    CTalvorCmdClipboard& operator=(const CTalvorCmdClipboard&) { return *this; }
    ~CTalvorCmdClipboard() override = default;

    // The control, then the tree of its bar when it is a popup.
    void SaveToClipboard(CArchive& archive, CVTControl* control);
    // The bar, then the tree of each popup on it (except the ids 40000 and 40001).
    void SaveToClipboard(CArchive& archive, CVTCommandBar* bar);
    // Appends the control read to controls and gives it; null when a popup's tree failed.
    // Throws CArchiveException (badClass for an object of another class, or the archive's own
    // cause); controls is then as it was.
    CVTControl* LoadFromClipboard(CArchive& archive, CVTControls* controls);
    // Adds the bar read to bars under a free id, id name and title, and gives it; null (with
    // bars unchanged) for a second menu bar or bar of id 2. Throws as the other form does.
    CVTCommandBar* LoadFromClipboard(CArchive& archive, CVTCommandBars* bars);

private:
    void _SaveToClipboard(CArchive& archive, CVTControlPopup* popup);
    int _LoadFromClipboard(CArchive& archive, CVTControlPopup* popup, CVTCommandBars* bars);
    int _CheckControlID(CVTControls* controls, CVTCommandBars* bars);
};
