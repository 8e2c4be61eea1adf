#include "platform/com/registry/property_frame.h"

#include "platform/com/hresult.h"

namespace talvor::platform {
namespace {

struct FrameState {
    PropertyFrameHandler handler;
    std::vector<PropertyFrameCall> recorded;
};

FrameState& State() {
    static FrameState state;
    return state;
}

} // namespace

void SetPropertyFrameHandler(PropertyFrameHandler handler) {
    State().handler = std::move(handler);
}

const std::vector<PropertyFrameCall>& RecordedPropertyFrames() {
    return State().recorded;
}

void ClearRecordedPropertyFrames() {
    State().recorded.clear();
}

} // namespace talvor::platform

HRESULT OleCreatePropertyFrame(HWND owner, UINT x, UINT y, LPCOLESTR caption, ULONG objectCount,
                               IUnknown** objects, ULONG pageCount, CLSID* pages, LCID lcid, DWORD,
                               void*) {
    if ((objectCount && !objects) || (pageCount && !pages))
        return E_POINTER;
    PropertyFrameCall call{owner, x, y, caption ? caption : L"", {}, {}, lcid};
    call.objects.assign(objects, objects + objectCount);
    call.pages.assign(pages, pages + pageCount);
    auto& state = talvor::platform::State();
    if (state.handler)
        return state.handler(call);
    state.recorded.push_back(std::move(call));
    return S_OK;
}
