// Small helpers round the description of controls: instances, property pages, categories,
// interface tests, GUID text, caption normalising and the names of result codes.
#pragma once

#include "platform/com/ole_control.h"
#include "platform/strings/cstring.h"

class CVXContainerItem;
class CWnd;
class CVTControls;
class CVTControl;

// The window message the library registers when it is loaded ("E0C3625A-2006-41f2-8BC7-
// 213A0719814A"); kept for hosts, read by nothing in the library.
extern UINT g_nTalvorRegisteredMessage;

// 0 with the object in *object, 1 on any failure.
long TVPfxCreateInstance(wchar_t* clsid, wchar_t* iid, IDispatch** object);
// The identifier the registry text spells; all zero for text that isn't one.
GUID TVPfxGetCLSID(const char* text);
// "{XXXXXXXX-...}" in upper case; empty on failure.
CString TVPfxGetCLSID(GUID clsid);
// The control's category of a property; -1 when it has no ICategorizeProperties.
int TVPfxGetPropCat(IDispatch* dispatch, long dispId);
// The property page of a property: MapPropertyToPage's result, or the failure of asking for
// IPerPropertyBrowsing.
long TVPfxGetPropPageCLSID(IDispatch* dispatch, long dispId, GUID* page);
// Shows one property page of the item's control, modally, in a property frame owned by
// `parent`; nothing happens without a parent that has a window or without an item.
void TVPfxCreatePropertyPage(CVXContainerItem* item, GUID page, CWnd* parent);
// 1 if `control` itself (not a copy of it) stands in `controls` or on the bar of a popup
// among them, at any depth; else 0, also for null arguments.
int TVPfxIsControlExist(CVTControls* controls, CVTControl* control);
// 1 if the object has the interface, else 0.
int TVPfxCheckInterface(IUnknown* unknown, const GUID& iid);
// The upper-case letters of a caption: "&File 2 Name..." gives "FILENAME".
CString StripChars(CString text);
// Deletes `count` bytes from `position` (fewer at the end); gives the new length.
int VSPStringDelete(CString& text, int position, int count);
// Removes every `ch`, stepping by whole characters so a trail byte is never taken for it.
void VSPStringRemove(CString& text, char ch);
// The name of a result code ("E_NOTIMPL"), or "0x12345678" in a buffer the next call reuses.
const char* TVPfxGetHResultName(HRESULT value);
