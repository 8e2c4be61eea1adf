// The texts of the failure codes that the library's stand-ins report: the script runtime's
// regular-expression and resource errors and the common component-model codes.
#include "platform/core/error_text.h"

#include <cstdio>

namespace talvor::platform {
namespace {

struct MessageEntry {
    DWORD code;
    const char* text;
};

// Sorted by code, so the lookup can stop early; texts as the system formats them.
constexpr MessageEntry MessageTable[] = {
    {0x00000000u, "The operation completed successfully.\r\n"},
    {0x80004001u, "Not implemented\r\n"},
    {0x80004002u, "No such interface supported\r\n"},
    {0x80004003u, "Invalid pointer\r\n"},
    {0x80004004u, "Operation aborted\r\n"},
    {0x80004005u, "Unspecified error\r\n"},
    {0x8000FFFFu, "Catastrophic failure\r\n"},
    {0x80020003u, "Member not found.\r\n"},
    {0x80020005u, "Type mismatch.\r\n"},
    {0x80020009u, "Exception occurred.\r\n"},
    {0x8002000Bu, "Invalid index.\r\n"},
    {0x80040154u, "Class not registered\r\n"},
    {0x800401F0u, "CoInitialize has not been called.\r\n"},
    {0x800401F3u, "Invalid class string\r\n"},
    {0x80070005u, "Access is denied.\r\n"},
    {0x80070006u, "The handle is invalid.\r\n"},
    {0x8007000Eu, "Not enough memory resources are available to complete this operation.\r\n"},
    {0x80070057u, "The parameter is incorrect.\r\n"},
    {0x800A0005u, "Invalid procedure call or argument\r\n"},
    {0x800A0006u, "Overflow\r\n"},
    {0x800A0007u, "Out of memory\r\n"},
    {0x800A0009u, "Subscript out of range\r\n"},
    {0x800A000Du, "Type mismatch\r\n"},
    {0x800A001Cu, "Out of stack space\r\n"},
    {0x800A01A8u, "Object required\r\n"},
    {0x800A01B6u, "Object doesn't support this property or method\r\n"},
    {0x800A1398u, "Regular Expression object expected\r\n"},
    {0x800A1399u, "Syntax error in regular expression\r\n"},
    {0x800A139Au, "Unexpected quantifier\r\n"},
    {0x800A139Bu, "Expected ']' in regular expression\r\n"},
    {0x800A139Cu, "Expected ')' in regular expression\r\n"},
    {0x800A139Du, "Invalid range in character set\r\n"},
};

} // namespace

bool FormatSystemMessage(HRESULT code, std::string& text) {
    const DWORD wanted = static_cast<DWORD>(code);
    for (const MessageEntry& entry : MessageTable) {
        if (entry.code == wanted) {
            text = entry.text;
            return true;
        }
        if (entry.code > wanted)
            break;
    }
    return false;
}

std::string ComErrorMessage(HRESULT code) {
    std::string text;
    if (FormatSystemMessage(code, text)) {
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.pop_back();
        return text;
    }
    const DWORD value = static_cast<DWORD>(code);
    char buffer[64];
    // The interface codes of a dispatch server: their number lives in the low word, counted
    // from 0x200; the code 0x80040200 itself has none.
    if (value >= 0x80040200u && value <= 0x8004FFFFu && value != 0x80040200u) {
        std::snprintf(buffer, sizeof buffer, "IDispatch error #%d",
                      static_cast<int>((value & 0xFFFFu) - 0x200u));
        return buffer;
    }
    std::snprintf(buffer, sizeof buffer, "Unknown error 0x%0lX", static_cast<unsigned long>(value));
    return buffer;
}

} // namespace talvor::platform
