// Member type decoding for the host's property grid: a member's type description becomes a
// property kind with, where the kind has them, names and values. Also the capability records
// (capability_info.h) and the helpers round instances, pages and GUID text
// (instance_helpers.h), which this header brings along.
#pragma once

#include "platform/com/ole_control.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"
#include "typeinfo/capability_info.h"
#include "typeinfo/instance_helpers.h"

// The property kind; callers store and compare the numbers.
enum VPPropTypes {
    VP_PROP_NONE = 0,    // no type the grid can edit
    VP_PROP_TEXT = 1,    // text, a variant or a single character
    VP_PROP_COLOR = 2,   // OLE_COLOR
    VP_PROP_FONT = 3,    // IFontDisp
    VP_PROP_ENUM = 4,    // one of a list of named values
    VP_PROP_PICTURE = 5, // IPictureDisp
    VP_PROP_BOOL = 6,
    VP_PROP_INTEGER = 7,
    VP_PROP_REAL = 8, // floating point or currency
    VP_PROP_DATE = 9,
    VP_PROP_PAGE = 10,  // edited through a property page of the control
    VP_PROP_OBJECT = 11 // a reference to one of the form's controls with a given interface
};

// The caller owns it. For kinds 4 and 11: names with one variant each at the same index
// (for 11 the variants are VT_EMPTY). Variants are bit copies and are never cleared here.
struct tagACTIVEXPROPTYPEINFO {
    VPPropTypes nPropType = VP_PROP_NONE;
    CStringArray arrNames;
    CArray<tagVARIANT, tagVARIANT> arrValues;
};

// Decodes one type description; a null `info` does nothing. Failures of the component calls
// give kind 0.
void TVPfxGetPropTypeInfo(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc, tagACTIVEXPROPTYPEINFO* info);
// Refines a decoded kind with the control's own value list (IPerPropertyBrowsing); kinds 0
// and 4, or null arguments, leave `info` as it was.
void TVPfxGetPropTypeInfoEx(IDispatch* dispatch, long dispId, tagACTIVEXPROPTYPEINFO* info);
// Finds member `dispId` of `typeInfo` (a browsable variable, or a property put with one
// parameter) and decodes it completely; kind 0 when there is none.
void TVPfxGetItemPropTypeInfo(IDispatch* dispatch, ITypeInfo* typeInfo, long dispId,
                              tagACTIVEXPROPTYPEINFO* info);
// The default interface (event 0) or default source interface of a control class: 1 with a
// reference the caller releases, else 0. The control is created and released on the way.
int TVPfxGetActiveXTypeInfo(GUID clsid, int event, ITypeInfo** typeInfo);
// The same for the form, from its type library; 0 for a null `typeInfo`.
int TVPfxGetContainerDocTypeInfo(int event, ITypeInfo** typeInfo);
