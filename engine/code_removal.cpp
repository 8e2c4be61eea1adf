// Taking code out of a script or a description: the Function blocks of a text as a list, one
// Function or all handlers of a control out of a whole script, the members of a description.
#include "engine/detail/text_compare.h"
#include "engine/script_text_disposal.h"
#include "host/base/tv_container_doc.h"
#include "text/regular_expressions.h"

namespace {

constexpr short On = -1;

CString FirstLine(const CString& code) {
    const int lineEnd = code.Find('\n');
    return lineEnd < 0 ? code : code.Left(lineEnd);
}

} // namespace

void CTalvorScriptTextDisposal::GetFunctionsCodeByVBScript(CString script,
                                                           CStringArray& functions) {
    functions.RemoveAll();
    CStringArray lines;
    ChangeScripText(script, lines);
    const CString head = CString("^\\s*") + m_strFunction + "\\s+";
    const CString end = CString("^\\s*") + m_strEndFunction + "\\s*$";

    int start = -1;
    CString text;
    // A finished block leaves the array, and the walk goes on where it began: the lines in
    // front of it were walked already and hold no head.
    for (int i = 0; i < static_cast<int>(lines.GetSize()); ++i) {
        const CString& line = lines[i];
        if (TVPfxTestByRegExp(head, line, On, On) != 0) {
            if (start != -1) {
                // A head inside an open Function ends that one's text here: the text from its
                // head up to this line is one entry, and its lines leave the array.
                functions.Add(text);
                lines.RemoveAt(start, i - start);
                i = start;
                text.Empty();
            }
            start = i;
        }
        if (start == -1)
            continue;
        text += lines[i];
        text += "\r\n";
        if (TVPfxTestByRegExp(end, lines[i], On, On) != 0) {
            functions.Add(text);
            lines.RemoveAt(start, i - start + 1);
            i = start - 1;
            start = -1;
            text.Empty();
        }
    }
}

void CTalvorScriptTextDisposal::DeleteFunctionCodeByName(CString& script, CString name,
                                                         CTVContainerDoc* doc) {
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    GetAllEventsInterfacesAndCtrlNames(doc, interfaces, names);
    const CString pattern = CString("\\s+") + name + "\\s*\\(";

    CStringArray lines;
    ChangeScripText(script, lines);
    VB_ALL_PROGRAMME_INFO all;
    GetCodeInfoByScriptText(lines, names, nullptr, interfaces, &all);
    for (INT_PTR i = 0; i < all.arrFunctionCode.GetSize(); ++i) {
        if (TVPfxTestByRegExp(pattern, FirstLine(all.arrFunctionCode[i]), On, On) != 0) {
            all.arrFunctionCode.RemoveAt(i);
            script = SetScriptTextByCodeInfo(&all);
            return;
        }
    }
}

void CTalvorScriptTextDisposal::DelEventsCode(CString& script, CString name, CTVContainerDoc* doc) {
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    GetAllEventsInterfacesAndCtrlNames(doc, interfaces, names);
    CVXInterfaceInfo* events = nullptr;
    for (INT_PTR i = 0; i < names.GetSize(); ++i) {
        if (talvor::engine::detail::SameNoCase(names[i], name)) {
            events = interfaces[i];
            break;
        }
    }
    // The control's handlers are read as the form's, and then dropped.
    CStringArray lines;
    ChangeScripText(script, lines);
    VB_ALL_PROGRAMME_INFO all;
    GetCodeInfoByScriptText(lines, names, events, interfaces, &all);
    all.arrFormEventCode.RemoveAll();
    all.arrFormEventID.RemoveAll();
    script = SetScriptTextByCodeInfo(&all);
}

void CTalvorScriptTextDisposal::DeleteComInfoByFunctions(CVXInterfaceInfo* info) {
    if (info == nullptr)
        return;
    for (INT_PTR i = 0; i < info->m_arrMethods.GetSize(); ++i)
        delete static_cast<CVXMethodInfo*>(info->m_arrMethods[i]);
    info->m_arrMethods.SetSize(0);
}

void CTalvorScriptTextDisposal::GetAllEventsInterfacesAndCtrlNames(
    CTVContainerDoc* doc, CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
    CStringArray& names) {
    if (doc != nullptr) {
        CVXContainerItem* first = doc->GetNextTabItem(nullptr);
        for (CVXContainerItem* item = first; item != nullptr;) {
            interfaces.Add(&item->GetEventsInterface());
            names.Add(item->GetDisplayName());
            item = doc->GetNextTabItem(item);
            if (item == first)
                break; // the walk came round
        }
    }
    // The form itself is the last entry; without a document it has no events.
    interfaces.Add(doc != nullptr ? &doc->GetEventsInterface() : nullptr);
    names.Add(m_strSystemFuncName);
}
