// Keyboard shortcuts of the commands, one manager for the whole process as the command bar
// library keeps it; a frame's shortcuts travel in its saved stream.
#pragma once

#include "platform/core/win_types.h"

#include <vector>

class CArchive;
class CFrameWnd;

struct VT_ACCEL {
    BYTE fVirt = 0; // FCONTROL 0x08, FSHIFT 0x04, FALT 0x10, FVIRTKEY 0x01
    WORD key = 0;
    WORD cmd = 0;
    bool operator==(const VT_ACCEL&) const = default;
};

class CVTShortcutManager {
public:
    static CVTShortcutManager& Instance();
    CVTShortcutManager() = default;

    const std::vector<VT_ACCEL>& GetShortcuts() const { return m_accels; }
    void SetShortcuts(std::vector<VT_ACCEL> accels) { m_accels = std::move(accels); }
    void AddShortcut(VT_ACCEL accel) { m_accels.push_back(accel); }

    // Writes or reads the table; a stream that ends early leaves the table as it was.
    void SerializeShortcuts(CFrameWnd* frame, CArchive& ar);

private:
    std::vector<VT_ACCEL> m_accels;
};

// The process-wide manager, as the library names it.
inline CVTShortcutManager* VTShortcutManager() {
    return &CVTShortcutManager::Instance();
}
