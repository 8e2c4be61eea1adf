// Loading a form and its script for the script subcommands.
#include "tools/talvor/script_session.h"

#include "platform/codepage/code_page.h"
#include "platform/files/file_system.h"

namespace talvor::tool {
namespace {

std::string ProcedureName(const CString& text) {
    CStringArray lines;
    CTalvorScriptTextDisposal::GetDisposal().ChangeScripText(text, lines);
    if (lines.IsEmpty())
        return std::string();
    CString head = lines[0];
    int open = head.Find('(');
    CString beforeParenthesis = open >= 0 ? head.Left(open) : head;
    beforeParenthesis.Trim();
    int blank = beforeParenthesis.ReverseFind(' ');
    return beforeParenthesis.Mid(blank + 1).Str();
}

} // namespace

bool ScriptSession::Load(const std::string& formPath, const std::string& scriptPath,
                         std::string& error) {
    std::string formText, scriptText;
    if (!platform::ReadWholeFile(formPath, formText, error) ||
        !platform::ReadWholeFile(scriptPath, scriptText, error))
        return false;
    if (!ParseFormDescription(formText, form, error)) {
        error = formPath + ": " + error;
        return false;
    }
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    interfaces = std::make_unique<FormInterfaces>(form, engine.m_strSystemFuncName);
    script = CString(std::move(scriptText));
    engine.ChangeScripText(script, outside);
    engine.GetCodeInfoByScriptText(outside, interfaces->names, interfaces->formEvents,
                                   interfaces->interfaces, &info);
    return true;
}

namespace {

void AddEvents(CVXInterfaceInfo& target, const std::vector<EventDescription>& events) {
    for (const EventDescription& event : events) {
        auto* method = new CVXMethodInfo(CString(event.name.c_str()), event.id);
        for (const std::string& param : event.params)
            method->AddParam(new CVXMethodParamInfo(CString(param.c_str())));
        target.AddMethod(method);
    }
}

} // namespace

std::unique_ptr<CTVContainerDoc> ScriptSession::MakeDocument() const {
    auto doc = std::make_unique<CTVContainerDoc>();
    for (const ControlDescription& control : form.controls) {
        auto* item = new CVXContainerItem(CString(control.name.c_str()), nullptr);
        AddEvents(item->GetEventsInterface(), control.events);
        doc->AddItem(item);
    }
    CVXInterfaceInfo formEvents;
    AddEvents(formEvents, form.events);
    doc->SetEventsInterface(formEvents);
    return doc;
}

std::vector<Procedure> ScriptSession::Procedures() const {
    std::vector<Procedure> procedures;
    const std::pair<const CStringArray*, bool> arrays[] = {{&info.arrCtrlEventCode, false},
                                                           {&info.arrSubCode, false},
                                                           {&info.arrFunctionCode, true},
                                                           {&info.arrFormEventCode, false}};
    for (const auto& [blocks, isFunction] : arrays) {
        for (const CString& text : *blocks)
            procedures.push_back({ProcedureName(text), text, isFunction});
    }
    return procedures;
}

std::string ToUtf8(const CString& text) {
    std::u16string wide = platform::ToWide(text.View());
    std::string utf8;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t c = wide[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (wide[++i] - 0xDC00);
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD; // a byte that is no character of the page
        }
        if (c < 0x80) {
            utf8 += static_cast<char>(c);
        } else if (c < 0x800) {
            utf8 += static_cast<char>(0xC0 | (c >> 6));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            utf8 += static_cast<char>(0xE0 | (c >> 12));
            utf8 += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            utf8 += static_cast<char>(0xF0 | (c >> 18));
            utf8 += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            utf8 += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            utf8 += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return utf8;
}

} // namespace talvor::tool
