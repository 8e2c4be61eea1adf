// Key states and the clipboard of the process.
#include "platform/window/input_state.h"

#include <optional>

namespace {
struct KeyState {
    bool down = false;
    bool toggled = false;
};
KeyState g_keys[256];
std::optional<std::string> g_clipboard;
POINT g_cursor{0, 0};
} // namespace

SHORT GetKeyState(int virtualKey) {
    if (virtualKey < 0 || virtualKey > 255)
        return 0;
    const KeyState& key = g_keys[virtualKey];
    return static_cast<SHORT>((key.down ? 0x8000 : 0) | (key.toggled ? 1 : 0));
}

SHORT GetAsyncKeyState(int virtualKey) {
    return static_cast<SHORT>(GetKeyState(virtualKey) & 0x8000);
}

BOOL IsClipboardFormatAvailable(UINT format) {
    return format == CF_TEXT && g_clipboard.has_value() ? TRUE : FALSE;
}

BOOL GetCursorPos(LPPOINT point) {
    if (!point)
        return FALSE;
    *point = g_cursor;
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    g_cursor = POINT{x, y};
    return TRUE;
}

namespace talvor::platform {

void SetKeyDown(int virtualKey, bool down) {
    if (virtualKey < 0 || virtualKey > 255)
        return;
    KeyState& key = g_keys[virtualKey];
    if (down && !key.down)
        key.toggled = !key.toggled;
    key.down = down;
}

void ReleaseAllKeys() {
    for (KeyState& key : g_keys)
        key.down = false;
}

void SetClipboardText(const std::string& text) {
    g_clipboard = text;
}

bool GetClipboardText(std::string& text) {
    text = g_clipboard.value_or(std::string());
    return g_clipboard.has_value();
}

void EmptyClipboard() {
    g_clipboard.reset();
}

} // namespace talvor::platform
