// The declaration block and the parameter text of a procedure into the parallel arrays of a
// VB_VARIABLE_AND_PARAMETER_INFO and back. The format is the system's own: one declaration
// line whose trailing comment lists the comments of all variables by position, then one
// "name = value" line per initial value.
#include "engine/script_text_disposal.h"

#include "engine/detail/text_compare.h"
#include "resources/resource_guard.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

// Names of a list cut at ",": piece by piece up to the first empty piece, blanks at the left
// of each removed. A blank elsewhere stays part of the name.
std::vector<CString> NamePieces(const CString& list) {
    std::vector<CString> names;
    CString piece;
    for (int i = 0; AfxExtractSubString(piece, list, i, ',') && !piece.IsEmpty(); ++i)
        names.push_back(piece.TrimLeft(' '));
    return names;
}

// Puts the comments of a list, by position, into remarks. A comment may itself hold a
// comma, so pieces beyond the last name are added, with their commas, to the last comment
// rather than dropped.
void ApplyRemarks(const CString& list, CStringArray& remarks) {
    CString piece;
    for (int i = 0; AfxExtractSubString(piece, list, i, ',') && !piece.IsEmpty(); ++i) {
        if (i < remarks.GetSize()) {
            remarks[i] = piece.TrimLeft(' ');
        } else if (!remarks.IsEmpty()) {
            CString& last = remarks[remarks.GetSize() - 1];
            last += ",";
            last += piece;
        }
    }
}

void SplitAtQuote(const CString& text, CString& before, CString& comment) {
    AfxExtractSubString(before, text, 0, '\'');
    AfxExtractSubString(comment, text, 1, '\'');
}

} // namespace

void CTalvorScriptTextDisposal::InitDataByCode(CString code, CString params,
                                               VB_VARIABLE_AND_PARAMETER_INFO* pInfo) {
    if (pInfo == nullptr)
        return;
    talvor::resources::ResourceGuard guard;
    ClearData(pInfo);

    if (!params.IsEmpty()) {
        CString names, comments;
        SplitAtQuote(params, names, comments);
        for (const CString& name : NamePieces(names)) {
            pInfo->arrParamName.Add(name);
            pInfo->arrParamRemark.Add(CString());
        }
        ApplyRemarks(comments, pInfo->arrParamRemark);
    }

    if (code.IsEmpty())
        return;
    // Lines up to the first empty piece between line feeds (a lone carriage return is not
    // empty); unlike ChangeScripText this keeps a last line without a line feed.
    std::vector<CString> lines;
    std::string_view rest = code.View();
    for (;;) {
        std::size_t feed = rest.find('\n');
        std::string_view piece = rest.substr(0, feed);
        if (piece.empty())
            break;
        while (!piece.empty() && piece.back() == '\r')
            piece.remove_suffix(1);
        lines.emplace_back(piece);
        if (feed == std::string_view::npos)
            break;
        rest.remove_prefix(feed + 1);
    }
    if (lines.empty())
        return;

    // The declaration line: the keyword and a blank (four characters, whatever they are),
    // the names, and behind a "'" their comments.
    if (talvor::engine::detail::Contains(lines[0], m_strDim)) {
        CString names, comments;
        SplitAtQuote(lines[0].Mid(4), names, comments);
        for (const CString& name : NamePieces(names)) {
            pInfo->arrVarName.Add(name);
            pInfo->arrVarValue.Add(CString());
            pInfo->arrVarRemark.Add(CString());
        }
        ApplyRemarks(comments, pInfo->arrVarRemark);
    }

    // Initial values: "name = value", matched to the first declared name without regard to
    // case. Every " = " becomes a tab first, so a value keeps a tab for each further one.
    for (std::size_t i = 1; i < lines.size(); ++i) {
        CString line = lines[i];
        line.Replace(" = ", "\t");
        int tab = line.Find('\t');
        if (tab < 0)
            continue;
        CString name = line.Left(tab);
        for (INT_PTR j = 0; j < pInfo->arrVarName.GetSize(); ++j) {
            if (talvor::engine::detail::SameNoCase(pInfo->arrVarName[j], name)) {
                pInfo->arrVarValue[j] = line.Mid(tab + 1);
                break;
            }
        }
    }
}

void CTalvorScriptTextDisposal::GetVariableStr(VB_VARIABLE_AND_PARAMETER_INFO* pInfo,
                                               CString& strVariable, CString& strParameter) {
    if (pInfo == nullptr)
        return;

    const INT_PTR varCount = pInfo->arrVarName.GetSize();
    if (varCount == pInfo->arrVarRemark.GetSize()) {
        if (varCount == 0) {
            strVariable.Empty();
        } else {
            CString declaration;
            CString values;
            for (INT_PTR i = 0; i < varCount; ++i) {
                const CString& name = pInfo->arrVarName[i];
                declaration += i == 0 ? m_strDim + " " + name : ", " + name;
                // A value array shorter than the names counts as empty values.
                if (i < pInfo->arrVarValue.GetSize() && !pInfo->arrVarValue[i].IsEmpty())
                    values += name + " = " + pInfo->arrVarValue[i] + "\r\n";
            }
            declaration += "'";
            for (INT_PTR i = 0; i < varCount; ++i) {
                const CString& remark = pInfo->arrVarRemark[i];
                if (remark.IsEmpty())
                    continue;
                declaration += remark;
                if (i != varCount - 1)
                    declaration += ",";
            }
            strVariable = declaration + "\r\n" + values;
        }
    }

    if (pInfo->arrParamName.IsEmpty()) {
        strParameter.Empty();
        return;
    }
    CString parameters;
    for (INT_PTR i = 0; i < pInfo->arrParamName.GetSize(); ++i) {
        if (i > 0)
            parameters += ", ";
        parameters += pInfo->arrParamName[i];
    }
    if (parameters.IsEmpty())
        return;
    bool first = true;
    for (const CString& remark : pInfo->arrParamRemark) {
        if (remark.IsEmpty())
            continue;
        parameters += first ? "'" : ", ";
        parameters += remark;
        first = false;
    }
    strParameter = parameters;
}
