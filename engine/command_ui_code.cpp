// The UI part of the command handler: for each command id the expressions that say when the
// command is enabled and when it is checked, written as Cases and read back from them.
#include "engine/script_text_disposal.h"
#include "text/regular_expressions.h"

namespace {

constexpr short On = -1;

// The expression of one assignment line "Name = (expression)": the matched left side goes,
// then the line end and blanks, then the first and last character, the parentheses the
// writer put there (whatever they are).
CString ExpressionOf(const CString& pattern, const CString& line) {
    CString rest = line;
    TVPfxReplaceByRegExp(pattern, line, "", rest, On, On);
    rest.TrimRight('\r');
    rest.TrimRight(' ');
    rest.TrimLeft(' ');
    if (!rest.IsEmpty())
        rest.Delete(rest.GetLength() - 1);
    if (!rest.IsEmpty())
        rest.Delete(0);
    return rest;
}

} // namespace

CString CTalvorScriptTextDisposal::SetCommandFuncOtherUI(CArray<long, long>& ids,
                                                         CStringArray& codes) {
    CString cases;
    for (INT_PTR i = 0; i < ids.GetSize(); ++i) {
        cases.AppendFormat("%s %ld\r\n", m_strCase.GetString(), ids[i]);
        if (i < codes.GetSize())
            cases += codes[i];
    }
    return m_strUISelectHead + cases + m_strUISelectTail;
}

CString CTalvorScriptTextDisposal::SetCommandFuncOtherUIEx(CArray<long, long>& ids,
                                                           CStringArray& enables,
                                                           CStringArray& checks) {
    CString cases;
    for (INT_PTR i = 0; i < ids.GetSize(); ++i) {
        cases.AppendFormat("%s %ld\r\n", m_strCase.GetString(), ids[i]);
        if (i < enables.GetSize() && !enables[i].IsEmpty())
            cases += CString("SystemUIEnable") + " = (" + enables[i] + ")" + "\r\n";
        if (i < checks.GetSize() && !checks[i].IsEmpty())
            cases += CString("SystemUICheck") + " = (" + checks[i] + ")" + "\r\n";
    }
    return m_strUISelectHead + cases + m_strUISelectTail;
}

void CTalvorScriptTextDisposal::GetCommandFuncOtherUI(CStringArray& lines, int index,
                                                      CArray<long, long>& ids,
                                                      CStringArray& enables, CStringArray& checks) {
    ids.RemoveAll();
    enables.RemoveAll();
    checks.RemoveAll();
    CStringArray bodies;
    ReadCases(lines, index, ids, bodies);
    for (const CString& body : bodies) {
        CString enable;
        CString check;
        DecomposeUISubCode(body, enable, check);
        enables.Add(enable);
        checks.Add(check);
    }
}

void CTalvorScriptTextDisposal::DecomposeUISubCode(CString code, CString& enable, CString& check) {
    enable.Empty();
    check.Empty();
    const CString enablePattern = CString("^\\s*") + "SystemUIEnable" + "\\s*=\\s*";
    const CString checkPattern = CString("^\\s*") + "SystemUICheck" + "\\s*=\\s*";
    CString line;
    for (int i = 0; AfxExtractSubString(line, code, i, '\n'); ++i) {
        // A line of a CRLF body cut at "\n" that holds only "\r" is empty too.
        if (line.IsEmpty() || line == "\r")
            break;
        if (TVPfxTestByRegExp(enablePattern, line, On, On) != 0)
            enable = ExpressionOf(enablePattern, line);
        else if (TVPfxTestByRegExp(checkPattern, line, On, On) != 0)
            check = ExpressionOf(checkPattern, line);
    }
}
