// Where a script still uses a name: one record per event handler, procedure, command or UI
// expression that speaks of it, named in the user's terms.
#include "engine/detail/text_compare.h"
#include "engine/script_text_disposal.h"
#include "text/regular_expressions.h"

namespace {

constexpr short On = -1;

NAME_APPEAR_INFO Record(int type, const CString& owner, const CString& member,
                        const CString& name) {
    NAME_APPEAR_INFO info;
    info.nAppearType = type;
    info.strOwner = owner;
    info.strMember = member;
    info.strName = name;
    return info;
}

CString IdText(long id) {
    CString text;
    text.Format("%ld", id);
    return text;
}

} // namespace

int CTalvorScriptTextDisposal::GetAttachInfoByCtrlOrFunction(
    CString script, CStringArray& names, CString name,
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*>& interfaces,
    CArray<NAME_APPEAR_INFO, NAME_APPEAR_INFO>& result) {
    CVXInterfaceInfo* ownEvents = nullptr;
    for (INT_PTR i = 0; i < names.GetSize(); ++i) {
        if (talvor::engine::detail::SameNoCase(names[i], name)) {
            ownEvents = i < interfaces.GetSize() ? interfaces[i] : nullptr;
            break;
        }
    }
    if (name.IsEmpty())
        return 0;
    result.RemoveAll();

    // The control's own handlers are read as the form's and so are not searched.
    CStringArray lines;
    ChangeScripText(script, lines);
    VB_ALL_PROGRAMME_INFO all;
    GetCodeInfoByScriptText(lines, names, ownEvents, interfaces, &all);

    const CString usePattern = CString("[^\\w\\.]{1}\\s*") + name + "\\s*\\W{1}";
    auto uses = [&](const CString& text) {
        return TVPfxTestByRegExp(usePattern, text, On, On) != 0;
    };
    // String literals don't count; comments do.
    auto clean = [](const CString& code) {
        CString text = code;
        TVPfxReplaceByRegExp("\"[^\"]*\"", code, "", text, On, On);
        return text;
    };

    for (const CString& code : all.arrCtrlEventCode) {
        const CString text = clean(code);
        if (!uses(text))
            continue;
        const CString handler = GetDisposalName(text);
        const int at = handler.Find('_');
        if (at >= 0)
            result.Add(Record(1, handler.Left(at), handler.Mid(at + 1), name));
    }
    for (const CString& code : all.arrSubCode) {
        const CString text = clean(code);
        if (!uses(text))
            continue;
        const CString procedure = GetDisposalName(text);
        if (!procedure.IsEmpty())
            result.Add(Record(6, procedure, "", name));
    }
    const CString definition = CString("\\s+") + name + "\\s*\\(";
    for (const CString& code : all.arrFunctionCode) {
        const CString text = clean(code);
        if (!uses(text))
            continue;
        const int lineEnd = text.Find('\n');
        if (TVPfxTestByRegExp(definition, lineEnd < 0 ? text : text.Left(lineEnd), On, On) != 0)
            continue; // the function name itself
        const CString function = GetDisposalName(text);
        if (function.IsEmpty())
            continue;
        if (!talvor::engine::detail::SameNoCase(function, "ScriptCmdMsg")) {
            result.Add(Record(5, function, "", name));
            continue;
        }
        // The command handler: its commands first, then the UI expressions Case by Case.
        VB_COMMADN_PROGRAMME_INFO commands;
        GetCommandInfo(text, 1, &commands);
        for (INT_PTR i = 0; i < commands.arrCommandID.GetSize(); ++i)
            if (i < commands.arrCommandCode.GetSize() &&
                uses(" " + commands.arrCommandCode[i] + " "))
                result.Add(Record(2, "ScriptCmdMsg", IdText(commands.arrCommandID[i]), name));
        VB_COMMADN_PROGRAMME_INFO ui;
        GetCommandInfo(text, 0, &ui);
        for (INT_PTR i = 0; i < ui.arrCommandID.GetSize() && i < ui.arrCommandCode.GetSize(); ++i) {
            CString enable;
            CString check;
            DecomposeUISubCode(ui.arrCommandCode[i], enable, check);
            if (uses(" " + enable + " "))
                result.Add(Record(3, "ScriptCmdMsg", IdText(ui.arrCommandID[i]), name));
            if (uses(" " + check + " "))
                result.Add(Record(4, "ScriptCmdMsg", IdText(ui.arrCommandID[i]), name));
        }
    }
    return 1;
}
