// The plain records that every operation of the script engine exchanges with the host, and the
// two enumerations of statement classes and code tree edits. The caller owns every record;
// the engine keeps no reference to one after a call returns.
#pragma once

#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

// The local variables and the parameters of one procedure, as parallel arrays: element i of
// a remark or value array belongs to element i of the name array it stands beside.
struct VB_VARIABLE_AND_PARAMETER_INFO {
    CStringArray arrVarRemark;   // comment of each variable, or empty
    CStringArray arrVarName;     // variable names in the order of the declaration
    CStringArray arrVarValue;    // initial value text of each variable, or empty
    CStringArray arrParamRemark; // comment of each parameter, or empty
    CStringArray arrParamName;   // parameter names in the order of the head line
};

// One Sub or Function taken apart for editing.
struct VB_SUB_PROGRAMME_INFO {
    CString strVariable;  // declaration lines, each ended by "\r\n"
    CString strParameter; // text between the parentheses of the head, then "'" and its comment
    CStringArray arrCode; // body lines without line ends, the end line excluded
};

// A whole script: the global block, then whole procedures, each as text whose every line is
// ended by "\r\n".
struct VB_ALL_PROGRAMME_INFO {
    CString strGlobal;                 // lines up to the first empty line of the script
    CStringArray arrFormEventCode;     // handlers of the form's own events
    CArray<long, long> arrFormEventID; // member id of each form handler, same index
    CStringArray arrCtrlEventCode;     // handlers of the controls' events
    CStringArray arrSubCode;           // every other Sub
    CStringArray arrFunctionCode;      // the Functions
};

// The generated command handler of a form, one of its two parts read at a time.
struct VB_COMMADN_PROGRAMME_INFO {
    CString strVariable;             // declaration block of the handler
    CString strParameter;            // parameter text of the handler
    CArray<long, long> arrCommandID; // value of each Case of the part that was read
    CStringArray arrCommandCode;     // code of each Case, same index
    CString strOtherPart;            // the lines of the other part, each ended by "\r\n"
};

// One place where a name is used.
struct NAME_APPEAR_INFO {
    int nAppearType = 0; // kind of place, 1 to 6; 0 when cleared
    CString strOwner;    // first text of the place: control or procedure name
    CString strMember;   // second text: event name or command id
    CString strName;     // the name that was looked for
};

// The kinds of a name check's result: what the name collides with.
enum ENUM_DENOMINATE_ERROR {
    DENOMINATE_OK = 0,           // nothing: the name is free
    DENOMINATE_BAD_CHAR = 1,     // not a letter followed by letters and digits
    DENOMINATE_KEYWORD = 2,      // a keyword of the language
    DENOMINATE_CONTROL = 3,      // a control of the form, or the form itself
    DENOMINATE_GLOBAL_VAR = 4,   // a variable of the global declarations
    DENOMINATE_EVENT_VAR = 5,    // a variable or parameter of an event handler
    DENOMINATE_FUNCTION_VAR = 6, // a variable or parameter of a Function
    DENOMINATE_SCOPE_VAR = 7,    // a variable or parameter of the scope the caller named
    DENOMINATE_FUNCTION = 8,     // a Function of the script
    DENOMINATE_SYSTEM = 9        // a name the system reserves, or a function of its library
};

// The result of a name check, passed by value. Kind 5 names the handler's control and event
// in strErrorName and strErrorOwner, kind 6 the function in strErrorName.
struct DENOMINATE_ERROR_INFO {
    int nErrorType = 0;
    CString strErrorName;
    CString strErrorOwner;
};

// The class of one statement line. Head and end pairs: FLOW_FOR with FLOW_NEXT, FLOW_DO_WHILE
// with FLOW_LOOP, FLOW_DO with FLOW_LOOP_WHILE, FLOW_SELECT with FLOW_END_SELECT, and FLOW_IF
// with FLOW_END_IF, FLOW_ELSE between them.
enum ENUM_FLOWLOOP {
    FLOW_NONE = 0,
    FLOW_IF = 1,
    FLOW_ELSE = 2,
    FLOW_END_IF = 3,
    FLOW_FOR = 4,
    FLOW_NEXT = 5,
    FLOW_DO_WHILE = 6,
    FLOW_LOOP = 7,
    FLOW_DO = 8,
    FLOW_LOOP_WHILE = 9,
    FLOW_SELECT = 10,
    FLOW_CASE = 11,
    FLOW_CASE_ELSE = 12,
    FLOW_END_SELECT = 13,
    FLOW_EXIT = 14
};

// The edits of the code tree, all done by CTalvorScriptTextDisposal::CodeOperate.
enum ENUM_CODE_OPERATE {
    CODE_OPERATE_NEW = 0,
    CODE_OPERATE_MODIFY = 1,
    CODE_OPERATE_DELETE = 2,
    CODE_OPERATE_INSERT_BEFORE = 3,
    CODE_OPERATE_INSERT_AFTER = 4,
    CODE_OPERATE_ADD_ELSE = 5,
    CODE_OPERATE_MOVE_UP = 6,
    CODE_OPERATE_MOVE_DOWN = 7,
    CODE_OPERATE_MOVE_TOP = 8,
    CODE_OPERATE_MOVE_BOTTOM = 9
};
