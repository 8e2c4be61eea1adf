// The decoding shared by the free functions of member_types.h and the members of
// CTalvorMethodInfo: both keep a kind, names and values, in different places.
#pragma once

#include "typeinfo/member_types.h"

namespace talvor::typeinfo {

struct PropTypeTarget {
    VPPropTypes& kind;
    CStringArray& names;
    CArray<tagVARIANT, tagVARIANT>& values;
};

void DecodePropType(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc, PropTypeTarget target);
void RefinePropType(IDispatch* dispatch, long dispId, PropTypeTarget target);

// The form's controls that have interface `iid`, in tab order, as names with empty values.
void AppendFormControlsWith(const GUID& iid, PropTypeTarget target);

constexpr WORD HiddenOrNonBrowsable = 0x440;

} // namespace talvor::typeinfo
