// The command handler ScriptCmdMsg(nID, bCommand): reading one of its two parts into a
// record, writing it back, and renumbering or removing a command id in a whole script.
#include "engine/detail/text_compare.h"
#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "text/regular_expressions.h"

#include <cstdint>
#include <cstdlib>

namespace {

constexpr short On = -1;
constexpr const char* HandlerParameters = "nID, bCommand";

// Lines first..last (both included, clipped to the array), each ended by "\r\n".
CString JoinLines(const CStringArray& lines, int first, int last) {
    CString text;
    if (first < 0)
        first = 0;
    if (last >= static_cast<int>(lines.GetSize()))
        last = static_cast<int>(lines.GetSize()) - 1;
    for (int i = first; i <= last; ++i) {
        text += lines[i];
        text += "\r\n";
    }
    return text;
}

// The index of value in ids, or -1.
int IndexOf(const CArray<long, long>& ids, long value) {
    for (INT_PTR i = 0; i < ids.GetSize(); ++i)
        if (ids[i] == value)
            return static_cast<int>(i);
    return -1;
}

// Command ids travel as unsigned numbers but stand in the script as signed 32-bit values.
long AsScriptId(unsigned int id) {
    return static_cast<long>(static_cast<std::int32_t>(id));
}

} // namespace

long CTalvorScriptTextDisposal::CaseLineId(CString caseLine) {
    // The keyword goes by its set of characters, with regard to case: "case 5" keeps "case 5"
    // and converts to 0.
    caseLine.TrimLeft(m_strCase.GetString());
    caseLine.TrimRight(' ');
    caseLine.TrimLeft(' ');
    return std::atol(caseLine.GetString());
}

void CTalvorScriptTextDisposal::ReadCases(CStringArray& lines, int selectLine,
                                          CArray<long, long>& ids, CStringArray& bodies) {
    int select = -1;
    int caseElse = -1;
    int endSelect = -1;
    CArray<int, int> casePos;
    // Refuses an index outside lines or a line that is no Select Case: no Case then.
    GetCasePosByKeyWord(lines, selectLine, select, caseElse, endSelect, casePos);
    for (INT_PTR k = 0; k < casePos.GetSize(); ++k) {
        const int line = casePos[k];
        CString body;
        if (k + 1 < casePos.GetSize())
            body = JoinLines(lines, line + 1, casePos[k + 1] - 1);
        else if (caseElse > line)
            body = JoinLines(lines, line + 1, caseElse - 1);
        bodies.Add(body);
        ids.Add(CaseLineId(lines[line]));
    }
}

void CTalvorScriptTextDisposal::GetCommandInfo(CString code, int bCommand,
                                               VB_COMMADN_PROGRAMME_INFO* info) {
    if (info == nullptr)
        return;
    ClearData(info);
    VB_SUB_PROGRAMME_INFO sub;
    GetDataByEventCode(code, &sub);
    sub.strParameter = HandlerParameters;
    info->strVariable = sub.strVariable;
    info->strParameter = sub.strParameter;

    CStringArray& body = sub.arrCode;
    if (body.IsEmpty() || CheckCodeFlow(body[0]) != FLOW_IF)
        return;
    int index = 0;
    int start = -1;
    int middle = -1;
    int end = -1;
    GetFlowPosByKeyWord(body, index, start, middle, end);
    if (start == -1 || middle == -1 || end == -1)
        return; // no Else: the handler has no parts

    int selectLine = 0;
    if (bCommand != 0) {
        info->strOtherPart = JoinLines(body, middle + 1, end - 1);
        selectLine = start + 2;
    } else {
        info->strOtherPart = JoinLines(body, start + 1, middle - 1);
        selectLine = middle + 4;
    }
    ReadCases(body, selectLine, info->arrCommandID, info->arrCommandCode);
}

CString CTalvorScriptTextDisposal::SetCommandFunc(int bCommand, VB_COMMADN_PROGRAMME_INFO* info) {
    if (info == nullptr)
        return CString();
    if (bCommand == 0) {
        // The UI part comes from the record alone; the command part rides along.
        CString uiPart = SetCommandFuncOtherUI(info->arrCommandID, info->arrCommandCode);
        if (info->strOtherPart.IsEmpty())
            info->strOtherPart = m_strCmdSelectHead + m_strCmdSelectTail;
        return m_strCmdFuncHead + info->strVariable + "\r\n" + m_strCmdIf + info->strOtherPart +
               m_strElse + "\r\n" + uiPart + m_strEndIf + "\r\n" + m_strEndFunction + "\r\n";
    }

    // The UI entries follow the commands: a new command is enabled by default, and a default
    // entry of a command that has gone is dropped.
    CStringArray uiLines;
    ChangeScripText(info->strOtherPart, uiLines);
    CArray<long, long> uiIds;
    CStringArray enables;
    CStringArray checks;
    GetCommandFuncOtherUI(uiLines, 3, uiIds, enables, checks);
    for (long id : info->arrCommandID) {
        const int k = IndexOf(uiIds, id);
        if (k < 0) {
            uiIds.Add(id);
            enables.Add("1");
            checks.Add("");
        } else if (enables[k].IsEmpty()) {
            enables[k] = "1";
        }
    }
    for (int k = static_cast<int>(uiIds.GetSize()) - 1; k >= 0; --k) {
        if (IndexOf(info->arrCommandID, uiIds[k]) >= 0)
            continue;
        CString enable = enables[k];
        enable.Trim(' ');
        if (!talvor::engine::detail::SameNoCase(enable, "1") &&
            !talvor::engine::detail::SameNoCase(enable, m_strTrue))
            continue;
        if (checks[k].IsEmpty()) {
            uiIds.RemoveAt(k);
            enables.RemoveAt(k);
            checks.RemoveAt(k);
        } else {
            enables[k].Empty();
        }
    }
    info->strOtherPart = SetCommandFuncOtherUIEx(uiIds, enables, checks);

    CString cases;
    for (INT_PTR i = 0; i < info->arrCommandID.GetSize(); ++i) {
        cases.AppendFormat("%s %ld\r\n", m_strCase.GetString(), info->arrCommandID[i]);
        if (i < info->arrCommandCode.GetSize())
            cases += info->arrCommandCode[i];
    }
    return m_strCmdFuncHead + info->strVariable + "\r\n" + m_strCmdIf + m_strCmdSelectHead + cases +
           m_strCmdSelectTail + m_strElse + "\r\n" + info->strOtherPart + m_strEndIf + "\r\n" +
           m_strEndFunction + "\r\n";
}

void CTalvorScriptTextDisposal::DisposalCommandIDByScriptText(CString& script, unsigned int oldID,
                                                              unsigned int newID,
                                                              CTVContainerDoc* doc, int bDelete) {
    CVXInterfaceInfo* formEvents = doc != nullptr ? &doc->GetEventsInterface() : nullptr;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    interfaces.Add(formEvents);
    CStringArray names;
    names.Add(m_strSystemFuncName);

    CStringArray lines;
    ChangeScripText(script, lines);
    VB_ALL_PROGRAMME_INFO all;
    GetCodeInfoByScriptText(lines, names, formEvents, interfaces, &all);

    const CString pattern = CString("\\s*") + m_strFunction + "\\s+" + "ScriptCmdMsg" + "\\(\\s*" +
                            "nID" + "\\s*\\,\\s*" + "bCommand" + "\\s*\\)";
    int handlerIndex = -1;
    for (INT_PTR i = 0; i < all.arrFunctionCode.GetSize(); ++i) {
        const CString& code = all.arrFunctionCode[i];
        const int lineEnd = code.Find('\n');
        const CString head = lineEnd < 0 ? code : code.Left(lineEnd);
        if (TVPfxTestByRegExp(pattern, head, On, On) != 0) {
            handlerIndex = static_cast<int>(i);
            break;
        }
    }
    if (handlerIndex < 0)
        return;

    const long from = AsScriptId(oldID);
    const long to = AsScriptId(newID);
    CString handler = all.arrFunctionCode[handlerIndex];
    // The command part first: rewriting it brings the UI part up to date, so a plain default
    // entry of the old id is gone before the UI part is searched.
    for (int part : {1, 0}) {
        VB_COMMADN_PROGRAMME_INFO info;
        GetCommandInfo(handler, part, &info);
        const int k = IndexOf(info.arrCommandID, from);
        if (k < 0)
            continue;
        if (bDelete != 0) {
            info.arrCommandID.RemoveAt(k);
            if (k < info.arrCommandCode.GetSize())
                info.arrCommandCode.RemoveAt(k);
        } else {
            info.arrCommandID[k] = to;
        }
        handler = SetCommandFunc(part, &info);
    }
    all.arrFunctionCode[handlerIndex] = handler;
    script = SetScriptTextByCodeInfo(&all);
}
