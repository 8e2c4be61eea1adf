// The queue and the set of living windows behind CWnd and AfxPumpMessages.
#pragma once

#include "platform/window/messages.h"

#include <deque>
#include <set>
#include <vector>

namespace talvor::platform::window_detail {
std::set<const CWnd*>& Living();
std::deque<MSG>& Queue();
// Windows waiting for idle time, in the order they asked.
std::vector<CWnd*>& IdleWaiting();
unsigned long long& Clock();
bool& Quit();
// Forgets the queued messages of a window that goes, and its wish for idle time.
void DropMessagesOf(const CWnd* wnd);
} // namespace talvor::platform::window_detail
