// Routing of message boxes to the host's handler.
#include "platform/app/message_box.h"

#include "platform/strings/cstring.h"

#include <cstdio>
#include <utility>

namespace talvor::platform {
MessageBoxHandler& Handler() {
    static MessageBoxHandler handler;
    return handler;
}

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
    return std::exchange(Handler(), std::move(handler));
}

int DefaultMessageBoxAnswer(UINT type) {
    switch (type & 0x0F) {
    case MB_ABORTRETRYIGNORE:
        return IDABORT;
    case MB_YESNOCANCEL:
    case MB_YESNO:
        return IDYES;
    case MB_RETRYCANCEL:
        return IDRETRY;
    default:
        return IDOK;
    }
}

} // namespace talvor::platform

int AfxMessageBox(const char* text, UINT type, UINT /*helpId*/) {
    const char* shown = text == nullptr ? "" : text;
    // A copy, so a handler that installs another handler does not destroy itself mid-call.
    talvor::platform::MessageBoxHandler handler = talvor::platform::Handler();
    if (handler)
        return handler(shown, type);
    std::fprintf(stderr, "talvor: %s\n", shown);
    return talvor::platform::DefaultMessageBoxAnswer(type);
}

int AfxMessageBox(UINT promptId, UINT type, UINT helpId) {
    CString text;
    text.LoadString(promptId);
    return AfxMessageBox(text.GetString(), type, helpId);
}
