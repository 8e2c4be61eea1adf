// AfxMessageBox: every message the library shows to a user goes to one handler that the host
// installs. Without a handler the text goes to standard error and the box "answers" with its
// first button, so a library without a user interface never blocks.
#pragma once

#include "platform/core/win_types.h"

#include <functional>

constexpr UINT MB_OK = 0x00;
constexpr UINT MB_OKCANCEL = 0x01;
constexpr UINT MB_ABORTRETRYIGNORE = 0x02;
constexpr UINT MB_YESNOCANCEL = 0x03;
constexpr UINT MB_YESNO = 0x04;
constexpr UINT MB_RETRYCANCEL = 0x05;
constexpr UINT MB_ICONSTOP = 0x10;
constexpr UINT MB_ICONERROR = 0x10;
constexpr UINT MB_ICONHAND = 0x10;
constexpr UINT MB_ICONQUESTION = 0x20;
constexpr UINT MB_ICONEXCLAMATION = 0x30;
constexpr UINT MB_ICONWARNING = 0x30;
constexpr UINT MB_ICONINFORMATION = 0x40;

constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// Shows text; the result is the id of the button the user chose.
int AfxMessageBox(const char* text, UINT type = MB_OK, UINT helpId = 0);
// Shows string promptId of the current resource source (an empty text when it is missing).
int AfxMessageBox(UINT promptId, UINT type = MB_OK, UINT helpId = static_cast<UINT>(-1));

namespace talvor::platform {

using MessageBoxHandler = std::function<int(const char* text, UINT type)>;

// Installs the handler for all later message boxes and returns the one it replaces. An empty
// handler restores the default (standard error, first button).
MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

// The id of the first button of a box of this type: what the default handler answers.
int DefaultMessageBoxAnswer(UINT type);

} // namespace talvor::platform
