// The script text engine: turns VBScript text into the records of script_model.h and back,
// classifies statement lines, titles them for the code tree and edits statement lists.
// One object per process (GetDisposal); its only state is the keywords it reads at start.
#pragma once

#include "engine/script_model.h"
#include "host/ole/interface_info.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

class CTVContainerDoc;

class CTalvorScriptTextDisposal {
public:
    // Starts with empty members and reads the keywords once (InitKeyWords).
    CTalvorScriptTextDisposal();
    ~CTalvorScriptTextDisposal();
    CTalvorScriptTextDisposal(const CTalvorScriptTextDisposal&) = delete;
    CTalvorScriptTextDisposal& operator=(const CTalvorScriptTextDisposal&) = delete;

    // The one engine of the process, built on the first call; later calls read nothing again.
    static CTalvorScriptTextDisposal& GetDisposal();

    // Empty a record; arrays keep their growth setting. A null pointer is ignored. The
    // NAME_APPEAR_INFO form keeps strName. The engine's own operations call these virtually.
    virtual void ClearData(VB_VARIABLE_AND_PARAMETER_INFO* pInfo);
    virtual void ClearData(VB_COMMADN_PROGRAMME_INFO* pInfo);
    virtual void ClearData(VB_ALL_PROGRAMME_INFO* pInfo);
    virtual void ClearData(VB_SUB_PROGRAMME_INFO* pInfo);
    virtual void ClearData(NAME_APPEAR_INFO* pInfo);

    // Empty dst, then append every element of src in order (dst and src may be one array).
    void CopyStrArry(CStringArray& dst, CStringArray& src);
    void CopylongArry(CArray<long, long>& dst, CArray<long, long>& src);

    // Text to lines: cut at every line feed, drop the carriage returns at the end of each
    // piece, keep empty pieces, then drop the last piece. So a last line without a line feed
    // is lost, and a text without any line feed gives no line.
    void ChangeScripText(CString text, CStringArray& lines);

    // Reads the keyword members from the string resources of TalvorRes and the reserved words
    // from the profile. A missing string leaves its members as they were. The constructor
    // calls it; a second call appends the reserved words again.
    void InitKeyWords();

    // Whole script. Takes lines (made by ChangeScripText) apart into pInfo, which is cleared
    // first; on return lines holds what belonged to no block. names and interfaces are
    // parallel; null interfaces, events and parameters are skipped, and an interface without
    // a name has no handlers. Handlers of pFormEvents go to arrFormEventCode with their ids.
    // A null pInfo leaves lines untouched.
    void GetCodeInfoByScriptText(CStringArray& lines, CStringArray& names,
                                 CVXInterfaceInfo* pFormEvents,
                                 CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
                                 VB_ALL_PROGRAMME_INFO* pInfo);
    // The whole script in the system's order: global block, an empty line, control handlers,
    // Subs, Functions, form handlers, each block followed by an empty line. An empty record
    // (or a null pointer) gives the empty text.
    CString SetScriptTextByCodeInfo(VB_ALL_PROGRAMME_INFO* pInfo);

    // One procedure. Reads the text of a procedure into pInfo (cleared first), hiding the
    // two event object lines; text of fewer than two lines leaves the record empty.
    void GetDataByEventCode(CString code, VB_SUB_PROGRAMME_INFO* pInfo);
    // Writes a procedure named name: a Sub with its event object lines when bFunction is 0,
    // else a Function. An empty name or a null pInfo gives the empty text.
    CString SetEventCodeByData(CString name, VB_SUB_PROGRAMME_INFO* pInfo, int bFunction);

    // Declarations. Fills pInfo (cleared first) from a declaration block and a parameter
    // text; what does not follow the format is skipped. A comment list with more pieces than
    // there are names adds the rest, commas included, to the last comment.
    void InitDataByCode(CString code, CString params, VB_VARIABLE_AND_PARAMETER_INFO* pInfo);
    // Writes the two texts back. strVariable is left alone when the name and remark arrays
    // differ in size; strParameter when the joined names are empty.
    void GetVariableStr(VB_VARIABLE_AND_PARAMETER_INFO* pInfo, CString& strVariable,
                        CString& strParameter);

    // Flow analysis. The class of one statement line: literals and bracketed expressions are
    // masked, then keywords are sought as whole words. Unbalanced quotes give FLOW_NONE; a "("
    // that nothing closes masks the rest of the line.
    ENUM_FLOWLOOP CheckCodeFlow(CString code);
    // Fills lines with the skeleton of a new statement (closing lines included) and returns
    // the class of code; classes that close a block give an empty skeleton.
    ENUM_FLOWLOOP GetArryByFlowType(CStringArray& lines, CString code);
    // Start, middle and end of the block of line nIndex, -1 for none; all three -1 for an
    // index outside lines or a line of the Select family. A walk that finds no partner gives
    // 0 for the position it sought. For classes 1 to 9, nIndex becomes nEnd.
    void GetFlowPosByKeyWord(CStringArray& lines, int& nIndex, int& nStart, int& nMiddle,
                             int& nEnd);
    // Parts of the Select block that starts at line nIndex: Case lines at the block's own
    // depth are appended to casePos (not emptied first). Empty lines change nothing.
    void GetCasePosByKeyWord(CStringArray& lines, int& nIndex, int& nSelect, int& nCaseElse,
                             int& nEndSelect, CArray<int, int>& casePos);
    // The Exit statement that fits position nIndex: the word of the nearest enclosing For or
    // Do loop, else the word of the procedure.
    CString GetExitStr(CStringArray& lines, int nIndex);

    // The node text of one statement in the code tree, from the title strings of TalvorRes.
    // Unbalanced quotes give the empty text; a statement without the bracket groups its title
    // needs comes back as written.
    CString GetTreeTitleByCode(CString code);

    // Edits the statement list lines in place and returns the line to select, or -1 with the
    // list unchanged when the operation cannot be done there. A line whose partner lines are
    // missing (a one-line If, a stray End If) is edited as a lone statement.
    int CodeOperate(CStringArray& lines, CString code, ENUM_CODE_OPERATE op, int index);

    // The command handler ScriptCmdMsg(nID, bCommand). GetCommandInfo reads the command part
    // (bCommand non-zero) or the UI part (zero) of the handler text code into info, the other
    // part as text; a handler without an If ... Else ... End If body gives only strVariable and
    // strParameter. SetCommandFunc writes the handler from a record read with the same
    // bCommand; from a command record it also brings the UI entries up to date (strOtherPart
    // changes). DisposalCommandIDByScriptText renumbers oldID to newID, or removes it when
    // bDelete is non-zero, in both parts of the handler of a whole script; a script without a
    // handler stays as it is, otherwise it is written again in the system's order of blocks.
    void GetCommandInfo(CString code, int bCommand, VB_COMMADN_PROGRAMME_INFO* info);
    CString SetCommandFunc(int bCommand, VB_COMMADN_PROGRAMME_INFO* info);
    void DisposalCommandIDByScriptText(CString& script, unsigned int oldID, unsigned int newID,
                                       CTVContainerDoc* doc, int bDelete);

    // The UI part of the handler. SetCommandFuncOtherUI writes it from finished Case bodies,
    // SetCommandFuncOtherUIEx from enable and check expressions (a Case line alone for two
    // empty ones). GetCommandFuncOtherUI reads the three arrays from lines, index being the
    // Select Case line; an index outside lines or at another line gives three empty arrays.
    // DecomposeUISubCode takes the two expressions out of one Case body, up to its first empty
    // line, dropping the first and last character of each (the parentheses).
    CString SetCommandFuncOtherUI(CArray<long, long>& ids, CStringArray& codes);
    CString SetCommandFuncOtherUIEx(CArray<long, long>& ids, CStringArray& enables,
                                    CStringArray& checks);
    void GetCommandFuncOtherUI(CStringArray& lines, int index, CArray<long, long>& ids,
                               CStringArray& enables, CStringArray& checks);
    void DecomposeUISubCode(CString code, CString& enable, CString& check);

    // Renames oldName to newName across the plain text of script: every whole-word use outside
    // string literals (a word in front of a point too, not one behind a point), and with info
    // the name part of the handlers and calls oldName_<event of info>(. A use needs a character
    // on each side, so the very first and last text of the script stay. Comments are plain
    // text. oldName goes into the patterns as it stands; an empty oldName renames nothing.
    void ChangeNameToScriptTxt(CString& script, CString oldName, CString newName,
                               CVXInterfaceInfo* info);

    // Taking code out. GetFunctionsCodeByVBScript fills functions with each Function block of
    // script, head to end line, every line ended by "\r\n"; an unfinished block at the end
    // gives no entry. A head that stands inside an open Function ends that one's entry: the
    // entry then holds its text from its head up to the next head. DeleteFunctionCodeByName
    // removes the first Function whose head line holds " name(" (blanks allowed before the
    // parenthesis) and writes the script again in the system's order of blocks; with none it
    // leaves script to the letter. DelEventsCode removes every handler of the control name and
    // writes the script again (also when the name is unknown). DeleteComInfoByFunctions
    // destroys the members of info and empties it.
    void GetFunctionsCodeByVBScript(CString script, CStringArray& functions);
    void DeleteFunctionCodeByName(CString& script, CString name, CTVContainerDoc* doc);
    void DelEventsCode(CString& script, CString name, CTVContainerDoc* doc);
    void DeleteComInfoByFunctions(CVXInterfaceInfo* info);

    // The events interfaces and display names of the form's controls in tab order, appended
    // to the two arrays, and last the form's own events under m_strSystemFuncName (a null
    // interface without a document).
    void
    GetAllEventsInterfacesAndCtrlNames(CTVContainerDoc* doc,
                                       CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
                                       CStringArray& names);

    // Name checks. CheckName trims blanks from name and runs, in this order, the checks of its
    // form (kind 1), the keywords (2), the controls and the form (3), the script's Functions
    // (8) and the system's names (9); then with bScope non-zero only vars (7), else the global
    // declarations (4), every event handler (5) and every Function (6). The first collision
    // gives the result; DENOMINATE_OK when there is none. Each single check gives 1 when the
    // name is free of that collision, else 0; names compare without regard to case.
    DENOMINATE_ERROR_INFO CheckName(CString name, CString script, CTVContainerDoc* doc,
                                    VB_VARIABLE_AND_PARAMETER_INFO* vars, int bScope);
    int CheckNameByChar(CString name);
    int CheckNameByKeyWords(CString name);
    int CheckNameByCtrl(CString name, CStringArray& names);
    int CheckNameByVarOrPar(CString name, VB_VARIABLE_AND_PARAMETER_INFO* vars);
    // Asks the script engine which procedures the head and end lines of the functions
    // define; a text that does not compile collides with nothing.
    int CheckNameByFuntionName(CString name, CStringArray& functions);
    // The reserved names, then the functions of the system's script library.
    int CheckNameBySystemFunc(CString name);
    // The message of a check's result from the string resources; empty for DENOMINATE_OK and
    // unknown kinds.
    CString GetErrorClew(DENOMINATE_ERROR_INFO info);
    // The name of the procedure whose text is code: the first word in front of "(" of its
    // first line; empty when there is none.
    CString GetDisposalName(CString code);
    // Fills info with the procedures that script defines, as the host's script engine
    // compiles it (the command handler and the form's name left out): 1, or 0 with info as it
    // was when the script does not compile. An empty script empties info and gives 1.
    int SetCOMInfoByStript(CString script, CVXInterfaceInfo* info);

    // The places of script that use name, one record each, in this order: event handlers of
    // other controls and of the form (1), Subs (6), then per Function one record (5) or, for
    // the command handler, its commands (2) and Case by Case its enable (3) and check (4)
    // expressions. Literals don't count, comments do; the global declarations, the handlers
    // of the control name itself and the Function that defines name are not searched. names
    // and interfaces are the form's (GetAllEventsInterfacesAndCtrlNames). Empties result and
    // gives 1; an empty name gives 0 and leaves result alone.
    int GetAttachInfoByCtrlOrFunction(CString script, CStringArray& names, CString name,
                                      CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
                                      CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO>& result);

    // Keywords of the script language, read by InitKeyWords; read-only for every operation.
    CString m_strIf;
    CString m_strThen;
    CString m_strElse;
    CString m_strEndIf;
    CString m_strDoWhile;
    CString m_strLoop;
    CString m_strFor;
    CString m_strTo;
    CString m_strNext;
    CString m_strLoopWhile;
    CString m_strDo;
    CString m_strExit;
    CString m_strExitDo;
    CString m_strExitFor;
    CString m_strExitFunction; // read from the resources, used by no operation
    CString m_strExitProperty; // read from the resources, used by no operation
    CString m_strExitSub;
    CString m_strCall;
    CString m_strSet;
    CString m_strSelectCase;
    CString m_strCase;
    CString m_strCaseElse;
    CString m_strEndSelect;
    CString m_strSystemFuncName;
    CString m_strSystemMe; // the host's own object names: read, used by no operation
    CString m_strSystemApplication;
    CString m_strSystemScreen;
    CString m_strSub;
    CString m_strEndSub;
    CString m_strFunction;
    CString m_strEndFunction;
    CString m_strDim;
    // Fixed pieces of the generated command handler, built from the keywords.
    CString m_strCmdFuncHead;
    CString m_strCmdIf;
    CString m_strCmdSelectHead;
    CString m_strCmdSelectTail;
    CString m_strUISelectHead;
    CString m_strUISelectTail;
    CString m_strTrue;
    CString m_strFalse;
    // Reserved words for name checks.
    CStringArray m_arrKeyWords;

private:
    // The id of a Case line: the characters of m_strCase go from its left, then blanks.
    long CaseLineId(CString caseLine);
    // Appends the value and the body lines (each ended by "\r\n") of every Case of the Select
    // at selectLine; the last Case runs to the Case Else line, and is empty without one.
    void ReadCases(CStringArray& lines, int selectLine, CArray<long, long>& ids,
                   CStringArray& bodies);
};
