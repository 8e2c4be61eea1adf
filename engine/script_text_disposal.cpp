// The engine object: the one instance of the process, and the record helpers that every
// operation shares.
#include "engine/script_text_disposal.h"

CTalvorScriptTextDisposal::CTalvorScriptTextDisposal() {
    InitKeyWords();
}

CTalvorScriptTextDisposal::~CTalvorScriptTextDisposal() = default;

CTalvorScriptTextDisposal& CTalvorScriptTextDisposal::GetDisposal() {
    // Built on first use, so the keywords are read when TalvorRes is first needed and never
    // again; destroyed at process end.
    static CTalvorScriptTextDisposal disposal;
    return disposal;
}

void CTalvorScriptTextDisposal::ClearData(VB_VARIABLE_AND_PARAMETER_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    pInfo->arrVarRemark.RemoveAll();
    pInfo->arrVarName.RemoveAll();
    pInfo->arrVarValue.RemoveAll();
    pInfo->arrParamRemark.RemoveAll();
    pInfo->arrParamName.RemoveAll();
}

void CTalvorScriptTextDisposal::ClearData(VB_COMMADN_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    pInfo->strVariable.Empty();
    pInfo->strParameter.Empty();
    pInfo->arrCommandID.RemoveAll();
    pInfo->arrCommandCode.RemoveAll();
    pInfo->strOtherPart.Empty();
}

void CTalvorScriptTextDisposal::ClearData(VB_ALL_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    pInfo->strGlobal.Empty();
    pInfo->arrFormEventCode.RemoveAll();
    pInfo->arrFormEventID.RemoveAll();
    pInfo->arrCtrlEventCode.RemoveAll();
    pInfo->arrSubCode.RemoveAll();
    pInfo->arrFunctionCode.RemoveAll();
}

void CTalvorScriptTextDisposal::ClearData(VB_SUB_PROGRAMME_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    pInfo->strVariable.Empty();
    pInfo->strParameter.Empty();
    pInfo->arrCode.RemoveAll();
}

void CTalvorScriptTextDisposal::ClearData(NAME_APPEAR_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    pInfo->nAppearType = 0;
    pInfo->strOwner.Empty();
    pInfo->strMember.Empty();
}

void CTalvorScriptTextDisposal::CopyStrArry(CStringArray& dst, CStringArray& src) {
    // Copying an array onto itself keeps it as it is instead of emptying it first.
    if (&dst == &src)
        return;
    dst.RemoveAll();
    for (const CString& line : src)
        dst.Add(line);
}

void CTalvorScriptTextDisposal::CopylongArry(CArray<long, long>& dst, CArray<long, long>& src) {
    if (&dst == &src)
        return;
    dst.RemoveAll();
    for (long value : src)
        dst.Add(value);
}
