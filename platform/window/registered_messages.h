// Window messages registered by name: each distinct name (compared without regard to case, as
// the window system compares them) gets its own number from 0xC000 up, the same number every
// time it is asked for again in the process.
#pragma once

#include "platform/core/win_types.h"

// 0 for a null or empty name, or when the 16,384 numbers are used up.
UINT RegisterWindowMessageA(const char* name);
inline UINT RegisterWindowMessage(const char* name) {
    return RegisterWindowMessageA(name);
}
