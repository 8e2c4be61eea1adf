// A control's capabilities as text records: one per property, method, event and enumeration
// constant, with a declaration in the form of a source line and the library's help text.
#pragma once

#include "platform/com/type_info.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

struct tagAPTITUDEINFO {
    CString strMember;      // the name it is looked up by
    CString strDeclaration; // its declaration as text
    CString strHelp;        // help text; for an enumeration constant the whole enumeration
    int nKind = 0;          // 2 property, 3 method, 4 event, 9 enumeration constant
    CString strConstant;    // kind 9: the constant's value as text
};

// Appends the records of interface `*typeInfo` to `infos` (which isn't emptied). With
// `event` not 0 the functions are events of the control `controlName` ("Gauge1_Click").
// A type whose attributes can't be read adds nothing.
void TVPfxGetComAptitudeInfo(ITypeInfo** typeInfo, CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos,
                             int event, const char* controlName);

// The name of a simple type ("long", "VCF::String", "VCF::Object*"); "BAD VARTYPE" above 72.
CString VTtoString(VARTYPE vt);
// The name of any type description ("long[3][4]", "SAFEARRAY(long)", "GaugeStyle*").
CString TYPEDESCToString(ITypeInfo* typeInfo, tagTYPEDESC* typeDesc);
