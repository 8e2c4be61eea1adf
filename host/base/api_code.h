// The system's script library: VBScript helper procedures that every form script may call,
// whose names are therefore reserved.
#pragma once

#include "platform/strings/cstring.h"

// The whole text of the library, every line ended by "\r\n".
CString VfxGetAPICode();
