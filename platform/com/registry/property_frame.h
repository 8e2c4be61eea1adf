// OleCreatePropertyFrame: shows property pages of objects. There is no dialog on this
// platform; the call goes to a handler the host installs, and without one it is recorded.
#pragma once

#include "platform/com/unknown.h"

#include <functional>
#include <string>
#include <vector>

struct PropertyFrameCall {
    HWND owner;
    UINT x;
    UINT y;
    std::wstring caption;
    std::vector<IUnknown*> objects; // not referenced: valid during the call only
    std::vector<CLSID> pages;
    LCID lcid;
};

HRESULT OleCreatePropertyFrame(HWND owner, UINT x, UINT y, LPCOLESTR caption, ULONG objectCount,
                               IUnknown** objects, ULONG pageCount, CLSID* pages, LCID lcid,
                               DWORD reserved, void* reservedPointer);

namespace talvor::platform {

using PropertyFrameHandler = std::function<HRESULT(const PropertyFrameCall& call)>;
// Null restores the recording default.
void SetPropertyFrameHandler(PropertyFrameHandler handler);
// The calls the default handler has seen, oldest first.
const std::vector<PropertyFrameCall>& RecordedPropertyFrames();
void ClearRecordedPropertyFrames();

} // namespace talvor::platform
