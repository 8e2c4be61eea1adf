// The key state the framework answers (GetKeyState, GetAsyncKeyState), set by the host's input
// layer or by a test, and the process-wide text clipboard.
#pragma once

#include "platform/core/win_types.h"
#include "platform/draw/gdi_types.h"

#include <string>

constexpr UINT CF_TEXT = 1;

// Negative (high bit set) while the key is down; bit 0 toggles with each press.
SHORT GetKeyState(int virtualKey);
SHORT GetAsyncKeyState(int virtualKey);
BOOL IsClipboardFormatAvailable(UINT format);
// The mouse cursor in screen coordinates, as the host's input layer (or a test) last set it;
// (0, 0) until then.
BOOL GetCursorPos(LPPOINT point);
BOOL SetCursorPos(int x, int y);

namespace talvor::platform {
void SetKeyDown(int virtualKey, bool down);
void ReleaseAllKeys();

// The clipboard holds text in the system code page, line ends as given.
void SetClipboardText(const std::string& text);
// False (and text emptied) when the clipboard holds no text.
bool GetClipboardText(std::string& text);
void EmptyClipboard();
} // namespace talvor::platform
