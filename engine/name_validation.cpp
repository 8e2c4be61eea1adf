// Name checks: whether a name the user gives is free in the form and its script, the message
// for a collision, and what the checks need (a procedure's name, the form's interfaces and
// names, the procedures a script text defines).
#include "engine/detail/text_compare.h"
#include "engine/script_text_disposal.h"
#include "host/base/api_code.h"
#include "host/base/tv_container_doc.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"
#include "text/regular_expressions.h"

namespace {

constexpr short On = -1;
using talvor::engine::detail::SameNoCase;

CString Trimmed(CString text) {
    text.Trim(' ');
    return text;
}

// Frees the members of a description when the scope ends, on every way out.
class MemberGuard {
public:
    MemberGuard(CTalvorScriptTextDisposal& engine, CVXInterfaceInfo& info)
        : m_engine(engine), m_info(info) {}
    ~MemberGuard() { m_engine.DeleteComInfoByFunctions(&m_info); }
    MemberGuard(const MemberGuard&) = delete;
    MemberGuard& operator=(const MemberGuard&) = delete;

private:
    CTalvorScriptTextDisposal& m_engine;
    CVXInterfaceInfo& m_info;
};

// The texts in front of and behind the first "_" of a handler's name; both empty without one.
void SplitHandlerName(const CString& name, CString& owner, CString& member) {
    const int at = name.Find('_');
    if (at < 0)
        return;
    owner = name.Left(at);
    member = name.Mid(at + 1);
}

} // namespace

DENOMINATE_ERROR_INFO CTalvorScriptTextDisposal::CheckName(CString name, CString script,
                                                           CTVContainerDoc* doc,
                                                           VB_VARIABLE_AND_PARAMETER_INFO* vars,
                                                           int bScope) {
    name.Trim(' ');
    DENOMINATE_ERROR_INFO result;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    GetAllEventsInterfacesAndCtrlNames(doc, interfaces, names);
    CStringArray lines;
    ChangeScripText(script, lines);
    VB_ALL_PROGRAMME_INFO all;
    GetCodeInfoByScriptText(lines, names, nullptr, interfaces, &all);

    if (CheckNameByChar(name) == 0)
        result.nErrorType = DENOMINATE_BAD_CHAR;
    else if (CheckNameByKeyWords(name) == 0)
        result.nErrorType = DENOMINATE_KEYWORD;
    else if (CheckNameByCtrl(name, names) == 0)
        result.nErrorType = DENOMINATE_CONTROL;
    else if (CheckNameByFuntionName(name, all.arrFunctionCode) == 0)
        result.nErrorType = DENOMINATE_FUNCTION;
    else if (CheckNameBySystemFunc(name) == 0)
        result.nErrorType = DENOMINATE_SYSTEM;
    if (result.nErrorType != DENOMINATE_OK)
        return result;

    if (bScope != 0) {
        if (CheckNameByVarOrPar(name, vars) == 0)
            result.nErrorType = DENOMINATE_SCOPE_VAR;
        return result;
    }

    VB_VARIABLE_AND_PARAMETER_INFO declared;
    InitDataByCode(all.strGlobal, "", &declared);
    if (CheckNameByVarOrPar(name, &declared) == 0) {
        result.nErrorType = DENOMINATE_GLOBAL_VAR;
        return result;
    }
    // The locals and parameters of one procedure text.
    auto collides = [&](const CString& code) {
        VB_SUB_PROGRAMME_INFO procedure;
        GetDataByEventCode(code, &procedure);
        InitDataByCode(procedure.strVariable, procedure.strParameter, &declared);
        return CheckNameByVarOrPar(name, &declared) == 0;
    };
    for (const CString& code : all.arrCtrlEventCode) {
        if (collides(code)) {
            result.nErrorType = DENOMINATE_EVENT_VAR;
            SplitHandlerName(GetDisposalName(code), result.strErrorName, result.strErrorOwner);
            return result;
        }
    }
    for (const CString& code : all.arrFunctionCode) {
        if (collides(code)) {
            result.nErrorType = DENOMINATE_FUNCTION_VAR;
            result.strErrorName = GetDisposalName(code);
            return result;
        }
    }
    return result;
}

int CTalvorScriptTextDisposal::CheckNameByChar(CString name) {
    return TVPfxTestByRegExp("^[a-zA-Z]{1}[a-zA-Z0-9]*$", Trimmed(name), On, On) != 0 ? 1 : 0;
}

int CTalvorScriptTextDisposal::CheckNameByKeyWords(CString name) {
    name.Trim(' ');
    for (const CString& keyword : m_arrKeyWords)
        if (SameNoCase(name, keyword))
            return 0;
    return 1;
}

int CTalvorScriptTextDisposal::CheckNameByCtrl(CString name, CStringArray& names) {
    name.Trim(' ');
    for (const CString& control : names)
        if (SameNoCase(name, control))
            return 0;
    return 1;
}

int CTalvorScriptTextDisposal::CheckNameByVarOrPar(CString name,
                                                   VB_VARIABLE_AND_PARAMETER_INFO* vars) {
    if (vars == nullptr)
        return 1;
    name.Trim(' ');
    for (const CStringArray* list : {&vars->arrVarName, &vars->arrParamName})
        for (const CString& declared : *list)
            if (SameNoCase(name, declared))
                return 0;
    return 1;
}

int CTalvorScriptTextDisposal::CheckNameByFuntionName(CString name, CStringArray& functions) {
    // The script engine says what is defined: a script of the functions' empty frames.
    CString skeleton;
    for (const CString& function : functions) {
        CStringArray lines;
        ChangeScripText(function, lines);
        if (lines.GetSize() < 2)
            continue;
        skeleton += lines[0] + "\r\n" + lines[lines.GetSize() - 1] + "\r\n" + "\r\n";
    }
    CVXInterfaceInfo defined;
    MemberGuard guard(*this, defined);
    if (SetCOMInfoByStript(skeleton, &defined) == 0)
        return 1;
    for (int i = 0; i < defined.GetNumMethods(); ++i) {
        const CVXMethodInfo* member = defined.GetMethod(i);
        if (member != nullptr && SameNoCase(name, member->GetName()))
            return 0;
    }
    return 1;
}

int CTalvorScriptTextDisposal::CheckNameBySystemFunc(CString name) {
    for (const CString& reserved :
         {CString("ScriptCmdMsg"), m_strSystemFuncName, CString("SystemUIEnable"),
          CString("SystemUICheck"), CString("Sfx_DataBinding")})
        if (SameNoCase(name, reserved))
            return 0;
    CVXInterfaceInfo library;
    MemberGuard guard(*this, library);
    SetCOMInfoByStript(VfxGetAPICode(), &library);
    for (int i = 0; i < library.GetNumMethods(); ++i) {
        const CVXMethodInfo* member = library.GetMethod(i);
        if (member != nullptr && member->GetInvokeKind() == INVOKE_FUNC &&
            SameNoCase(name, member->GetName()))
            return 0;
    }
    return 1;
}

int CTalvorScriptTextDisposal::SetCOMInfoByStript(CString script, CVXInterfaceInfo* info) {
    if (info == nullptr)
        return 0;
    if (script.IsEmpty()) {
        DeleteComInfoByFunctions(info);
        return 1;
    }
    CTVContainerDoc* doc = VfxNewOleDoc();
    CTVScriptManager* manager = doc->GetScriptManager(1, 1);
    manager->RemoveAllScripts();
    ITypeInfo* typeInfo = nullptr;
    POSITION position = nullptr;
    CTVScript* loaded = nullptr;
    if (manager->LoadScript(script, 1, nullptr) != 0 ||
        (position = manager->GetFirstScriptPosition()) == nullptr ||
        (loaded = manager->GetNextScript(position)) == nullptr ||
        loaded->GetTypeInfo(&typeInfo) != S_OK) {
        doc->OnCloseDocument();
        return 0;
    }
    DeleteComInfoByFunctions(info);
    info->Init(typeInfo);
    // The command handler and the form's name are the system's, not the script's.
    for (INT_PTR i = info->m_arrMethods.GetSize() - 1; i >= 0; --i) {
        auto* member = static_cast<CVXMethodInfo*>(info->m_arrMethods[i]);
        if (member != nullptr && (SameNoCase(member->GetName(), "ScriptCmdMsg") ||
                                  SameNoCase(member->GetName(), m_strSystemFuncName))) {
            delete member;
            info->m_arrMethods.RemoveAt(i);
        }
    }
    typeInfo->Release();
    doc->OnCloseDocument();
    return 1;
}

CString CTalvorScriptTextDisposal::GetDisposalName(CString code) {
    const int lineEnd = code.Find('\n');
    const CString head = lineEnd < 0 ? code : code.Left(lineEnd);
    if (head.IsEmpty())
        return CString();
    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    if (TVPfxGetInfoByRegExp("\\s+\\w+\\s*\\(", head, matches, On, On) == 0 || matches.IsEmpty())
        return CString();
    CString name = matches[0].strValue;
    name.Trim('(');
    name.Trim(' ');
    return name;
}

CString CTalvorScriptTextDisposal::GetErrorClew(DENOMINATE_ERROR_INFO info) {
    if (info.nErrorType < DENOMINATE_BAD_CHAR || info.nErrorType > DENOMINATE_SYSTEM)
        return CString();
    CString text;
    {
        talvor::resources::ResourceGuard guard;
        if (!text.LoadString(IDS_NAME_ERRORS))
            return CString();
    }
    // Line n - 1 belongs to kind n; reading stops at the first empty line.
    CString line;
    for (int i = 0; i < info.nErrorType; ++i) {
        if (!AfxExtractSubString(line, text, i, '\n') || line.IsEmpty()) {
            line.Empty();
            break;
        }
    }
    if (info.nErrorType != DENOMINATE_EVENT_VAR && info.nErrorType != DENOMINATE_FUNCTION_VAR)
        return line;
    // The names go between the tab-separated pieces; pieces behind the first empty one count
    // as empty.
    const int pieceCount = info.nErrorType == DENOMINATE_EVENT_VAR ? 3 : 2;
    CString pieces[3];
    for (int i = 0; i < pieceCount; ++i)
        if (!AfxExtractSubString(pieces[i], line, i, '\t') || pieces[i].IsEmpty()) {
            pieces[i].Empty();
            break;
        }
    if (info.nErrorType == DENOMINATE_EVENT_VAR)
        return pieces[0] + info.strErrorName + pieces[1] + info.strErrorOwner + pieces[2];
    return pieces[0] + info.strErrorName + pieces[1];
}
