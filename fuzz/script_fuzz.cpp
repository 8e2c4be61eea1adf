// Arbitrary text through the script engine's parsers. Byte 0 chooses the code page; the rest
// is a script. The whole-script parse must give what the plain walk of its rules gives, also
// for the script it writes; procedure, declaration and flow readers must keep their arrays
// parallel and their positions inside the lines; and a run of code operations chosen by the
// bytes of the input must keep every result a line of the list, or -1 with the list as it was.
#include "engine/script_text_disposal.h"
#include "host/ole/interface_builder.h"
#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"
#include "tests/reference/reference_whole_script.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

std::string Joined(const CStringArray& lines) {
    std::string text;
    for (const CString& line : lines) {
        text += line.Str();
        text += '\n';
    }
    return text;
}

bool SameRecords(const VB_ALL_PROGRAMME_INFO& a, const VB_ALL_PROGRAMME_INFO& b) {
    if (a.arrFormEventID.GetSize() != b.arrFormEventID.GetSize())
        return false;
    for (INT_PTR i = 0; i < a.arrFormEventID.GetSize(); ++i) {
        if (a.arrFormEventID[i] != b.arrFormEventID[i])
            return false;
    }
    return a.strGlobal == b.strGlobal && Joined(a.arrFormEventCode) == Joined(b.arrFormEventCode) &&
           Joined(a.arrCtrlEventCode) == Joined(b.arrCtrlEventCode) &&
           Joined(a.arrSubCode) == Joined(b.arrSubCode) &&
           Joined(a.arrFunctionCode) == Joined(b.arrFunctionCode);
}

struct Form {
    Form() {
        Add("cmdOK", {{"Click", -600, {}}, {"KeyDown", -602, {"KeyCode", "Shift"}}});
        Add("txt", {{"Change", 1, {}}});
        Add(CTalvorScriptTextDisposal::GetDisposal().m_strSystemFuncName.Str(),
            {{"Load", 1, {}}, {"Unload", 2, {"Cancel"}}});
        formEvents = owned.back().get();
    }
    void Add(const std::string& name, const std::vector<talvor::host::MemberDescription>& events) {
        owned.push_back(talvor::host::BuildInterface(name, events));
        interfaces.Add(owned.back().get());
        names.Add(name.c_str());
    }
    std::vector<std::unique_ptr<CVXInterfaceInfo>> owned;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    CVXInterfaceInfo* formEvents = nullptr;
};

// Parses script both ways, checks that they agree, and returns the script written back.
CString ParseBothWays(Form& form, const CString& script) {
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    CStringArray fastLines, plainLines;
    VB_ALL_PROGRAMME_INFO fast, plain;
    engine.ChangeScripText(script, fastLines);
    plainLines = fastLines;
    engine.GetCodeInfoByScriptText(fastLines, form.names, form.formEvents, form.interfaces, &fast);
    talvor::engine::testing::ReferenceParse(engine, plainLines, form.names, form.formEvents,
                                            form.interfaces, plain);
    Check(SameRecords(fast, plain));
    Check(Joined(fastLines) == Joined(plainLines));
    Check(fast.arrFormEventID.GetSize() == fast.arrFormEventCode.GetSize());
    return engine.SetScriptTextByCodeInfo(&fast);
}

void CheckProcedure(const CString& text) {
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    VB_SUB_PROGRAMME_INFO sub;
    engine.GetDataByEventCode(text, &sub);
    VB_VARIABLE_AND_PARAMETER_INFO vars;
    engine.InitDataByCode(sub.strVariable, sub.strParameter, &vars);
    Check(vars.arrVarName.GetSize() == vars.arrVarValue.GetSize());
    Check(vars.arrVarName.GetSize() == vars.arrVarRemark.GetSize());
    Check(vars.arrParamName.GetSize() == vars.arrParamRemark.GetSize());
    engine.GetVariableStr(&vars, sub.strVariable, sub.strParameter);
    engine.SetEventCodeByData("fuzz_Event", &sub, 0);
    engine.SetEventCodeByData("Fuzz", &sub, 1);
}

void CheckFlow(CStringArray& lines, const uint8_t* choices, size_t count) {
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    const int size = static_cast<int>(lines.GetSize());
    for (int i = 0; i < size; ++i) {
        ENUM_FLOWLOOP flow = engine.CheckCodeFlow(lines[i]);
        Check(flow >= FLOW_NONE && flow <= FLOW_EXIT);
        engine.GetTreeTitleByCode(lines[i]);
        int index = i, start, middle, end;
        engine.GetFlowPosByKeyWord(lines, index, start, middle, end);
        for (int position : {index, start, middle, end})
            Check(position >= -1 && position < size);
        if (flow == FLOW_SELECT) {
            int select, caseElse, endSelect;
            CArray<int, int> cases;
            engine.GetCasePosByKeyWord(lines, index, select, caseElse, endSelect, cases);
            for (int position : cases)
                Check(position > i && position < size);
        }
    }
    // Code operations: each choice byte picks an operation, a line and a code text.
    CStringArray block = lines;
    for (size_t c = 0; c + 1 < count && c < 32; c += 2) {
        auto op = static_cast<ENUM_CODE_OPERATE>(choices[c] % 11); // 10 is out of range
        int index = block.IsEmpty() ? 0 : choices[c + 1] % (block.GetSize() + 1);
        const CString code = lines.IsEmpty() ? CString("x = 1") : lines[choices[c + 1] % size];
        CStringArray before = block;
        int result = engine.CodeOperate(block, code, op, index);
        Check(result >= -1 && result < block.GetSize());
        if (result == -1 && !block.IsEmpty())
            Check(Joined(block) == Joined(before));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool installed = [] {
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) { return IDOK; });
        return true;
    }();
    (void)installed;
    if (size < 1 || size > 4096)
        return 0;
    static const unsigned Pages[] = {1252, 936, 65001, 1252};
    talvor::platform::SetSystemCodePage(Pages[data[0] & 3]);
    static Form form;

    const CString script(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    CString once = ParseBothWays(form, script);
    ParseBothWays(form, once);

    CheckProcedure(script);
    CStringArray lines;
    CTalvorScriptTextDisposal::GetDisposal().ChangeScripText(script, lines);
    if (lines.GetSize() > 64)
        lines.SetSize(64);
    CheckFlow(lines, data, size);
    return 0;
}
