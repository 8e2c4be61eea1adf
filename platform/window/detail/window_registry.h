// The queue and the set of living windows behind CWnd and AfxPumpMessages.
#pragma once

#include "platform/window/messages.h"

#include <deque>
#include <set>

namespace talvor::platform::window_detail {
std::set<const CWnd*>& Living();
std::deque<MSG>& Queue();
unsigned long long& Clock();
bool& Quit();
void DropMessagesOf(const CWnd* wnd);
} // namespace talvor::platform::window_detail
