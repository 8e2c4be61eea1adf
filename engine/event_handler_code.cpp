// One procedure's text into a VB_SUB_PROGRAMME_INFO and back. Handlers that the system writes
// carry two event object lines behind their head; reading hides them, writing adds them.
#include "engine/script_text_disposal.h"

#include "engine/detail/text_compare.h"

namespace {

constexpr const char* EventObjectLine = "Set VEvent = new VfxEvent";
constexpr const char* EventInitCall = "Call VEvent.Init";
constexpr int EventInitArgumentCount = 100;

// The arguments of the event object's Init call: the parameter list padded with zeros to 100
// arguments, without a comma at the very end.
CString EventInitArguments(const CString& list) {
    CString arguments = list;
    int commas = 0;
    for (int at = list.Find(','); at >= 0; at = list.Find(',', at + 1))
        ++commas;
    int zeros = list.IsEmpty() ? EventInitArgumentCount : EventInitArgumentCount - 1 - commas;
    for (int i = 0; i < zeros; ++i) {
        if (!arguments.IsEmpty())
            arguments += ",";
        arguments += "0";
    }
    arguments.TrimRight(',');
    return arguments;
}

} // namespace

void CTalvorScriptTextDisposal::GetDataByEventCode(CString code, VB_SUB_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    ClearData(pInfo);
    CStringArray lines;
    ChangeScripText(code, lines);
    if (lines.GetSize() < 2)
        return;

    // Parameters: between the first "(" and the first ")" of the head line, followed by the
    // head's comment from the first "'" behind that ")". Without parameters the comment is
    // not read.
    const CString head = lines[0];
    int open = head.Find('(');
    int close = head.Find(')');
    if (open >= 0 && close >= 0 && close > open)
        pInfo->strParameter = head.Mid(open + 1, close - open - 1);
    if (!pInfo->strParameter.IsEmpty()) {
        int quote = head.Find('\'', close);
        if (quote >= 0)
            pInfo->strParameter += head.Mid(quote);
    }

    lines.RemoveAt(lines.GetSize() - 1);
    lines.RemoveAt(0);

    if (lines.GetSize() >= 3 && talvor::engine::detail::SameNoCase(lines[0], EventObjectLine) &&
        talvor::engine::detail::Contains(lines[1], EventInitCall))
        lines.RemoveAt(0, 3);

    // Declarations: up to the first empty line, which goes with them. Without an empty line
    // nothing is removed and the lines are body lines as well.
    for (INT_PTR i = 0; i < lines.GetSize(); ++i) {
        if (lines[i].IsEmpty()) {
            lines.RemoveAt(0, i + 1);
            break;
        }
        pInfo->strVariable += lines[i];
        pInfo->strVariable += "\r\n";
    }

    CopyStrArry(pInfo->arrCode, lines);
}

CString CTalvorScriptTextDisposal::SetEventCodeByData(CString name, VB_SUB_PROGRAMME_INFO* pInfo,
                                                      int bFunction) {
    if (name.IsEmpty() || pInfo == nullptr)
        return CString();

    // The parameter text packs the list and, behind a "'", the head's comment; anything
    // behind a second "'" is dropped.
    CString list;
    CString comment;
    AfxExtractSubString(list, pInfo->strParameter, 0, '\'');
    AfxExtractSubString(comment, pInfo->strParameter, 1, '\'');
    if (!comment.IsEmpty())
        comment = "'" + comment;

    CString text =
        (bFunction ? m_strFunction : m_strSub) + " " + name + "(" + list + ")" + comment + "\r\n";
    if (!bFunction) {
        text += EventObjectLine;
        text += "\r\n";
        text += EventInitCall;
        text += "(" + EventInitArguments(list) + ")\r\n\r\n";
    }
    text += pInfo->strVariable;
    text += "\r\n";
    for (const CString& line : pInfo->arrCode) {
        text += line;
        text += "\r\n";
    }
    text += bFunction ? m_strEndFunction : m_strEndSub;
    text += "\r\n";
    return text;
}
