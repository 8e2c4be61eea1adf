// The system's message table: the text of a failure code (HRESULT), and the text a component
// error object gives for a code, with the fallbacks it uses for codes without a text.
#pragma once

#include "platform/core/win_types.h"

#include <string>

namespace talvor::platform {

// Failure codes of the script runtime: 0x800A0000 | error number.
constexpr HRESULT ScriptRuntimeError(unsigned number) {
    return static_cast<HRESULT>(0x800A0000u | (number & 0xFFFFu));
}

// The text of code in the message table, as the system formats it: a sentence that ends with
// "\r\n". False, with text untouched, for a code the table has no text for.
bool FormatSystemMessage(HRESULT code, std::string& text);

// What a component error object shows for code: the table text with its trailing line end
// cut; for a code without a text "IDispatch error #n" with n = (code & 0xFFFF) - 0x200 for
// the interface codes 0x80040201 to 0x8004FFFF, otherwise "Unknown error 0x%0lX" with the code.
std::string ComErrorMessage(HRESULT code);

} // namespace talvor::platform
