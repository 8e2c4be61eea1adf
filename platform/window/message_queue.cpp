// The one message queue of the user-interface thread, the set of living windows (so a message
// for a destroyed window is dropped, never delivered), and the timer clock.
#include "platform/window/detail/window_registry.h"
#include "platform/window/wnd.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace talvor::platform::window_detail {

namespace {
struct QueueState {
    std::deque<MSG> queue;
    std::vector<CWnd*> idleWaiting;
    std::set<const CWnd*> living;
    bool quit = false;
    unsigned long long clock = 0;
};
QueueState& State() {
    static QueueState state;
    return state;
}
} // namespace

std::set<const CWnd*>& Living() {
    return State().living;
}
std::deque<MSG>& Queue() {
    return State().queue;
}
std::vector<CWnd*>& IdleWaiting() {
    return State().idleWaiting;
}
unsigned long long& Clock() {
    return State().clock;
}
bool& Quit() {
    return State().quit;
}

void DropMessagesOf(const CWnd* wnd) {
    auto& queue = Queue();
    std::erase_if(queue, [wnd](const MSG& m) { return m.hwnd == wnd; });
    std::erase(IdleWaiting(), wnd);
}

} // namespace talvor::platform::window_detail

using namespace talvor::platform::window_detail;

int AfxPumpMessages() {
    constexpr int Limit = 1000000;
    int handled = 0;
    while (!Queue().empty() && handled < Limit) {
        MSG msg = Queue().front();
        Queue().pop_front();
        ++handled;
        if (msg.message == WM_QUIT) {
            Quit() = true;
            break;
        }
        if (!msg.hwnd || !Living().count(msg.hwnd))
            continue;
        if (msg.message == WM_PAINT) {
            msg.hwnd->m_paintQueued = false;
            const bool posted = std::exchange(msg.hwnd->m_paintPosted, false);
            if (!posted && msg.hwnd->m_update.IsRectEmpty())
                continue; // painted meanwhile: nothing is left to paint
        }
        if (msg.hwnd->PreTranslateMessage(&msg))
            continue;
        msg.hwnd->SendMessage(msg.message, msg.wParam, msg.lParam);
    }
    return handled;
}

BOOL AfxIdle(LONG count) {
    // A copy: OnIdle may create or destroy windows, or ask again.
    const std::vector<CWnd*> waiting = IdleWaiting();
    for (CWnd* wnd : waiting) {
        if (!Living().count(wnd) ||
            std::find(IdleWaiting().begin(), IdleWaiting().end(), wnd) == IdleWaiting().end())
            continue; // gone, or gone and made again, meanwhile
        if (!wnd->OnIdle(count))
            std::erase(IdleWaiting(), wnd);
    }
    return IdleWaiting().empty() ? FALSE : TRUE;
}

void PostQuitMessage(int exitCode) {
    Queue().push_back(MSG{nullptr, WM_QUIT, static_cast<WPARAM>(exitCode), 0});
}

BOOL AfxQuitRequested() {
    return Quit() ? TRUE : FALSE;
}
void AfxResetQuit() {
    Quit() = false;
}
int AfxQueuedMessageCount() {
    return static_cast<int>(Queue().size());
}

void AfxAdvanceTimers(unsigned milliseconds) {
    Clock() += milliseconds;
    for (const CWnd* living : std::vector<const CWnd*>(Living().begin(), Living().end())) {
        auto* wnd = const_cast<CWnd*>(living);
        for (auto& [id, timer] : wnd->m_timers) {
            if (timer.due > Clock())
                continue;
            const unsigned long long step = timer.elapse ? timer.elapse : 1;
            while (timer.due <= Clock())
                timer.due += step;
            wnd->PostMessage(WM_TIMER, id, 0);
        }
    }
}
