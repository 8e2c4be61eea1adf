// Hot paths of the script engine: the whole-script round trip on generated form scripts of
// growing size (its cost must grow in proportion to the script), and line classification.
#include "engine/code_tree.h"
#include "engine/script_text_disposal.h"
#include "host/ole/interface_builder.h"
#include "platform/codepage/code_page.h"
#include "platform/files/file_system.h"
#include "tests/reference/reference_whole_script.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

CTalvorScriptTextDisposal& Engine() {
    return CTalvorScriptTextDisposal::GetDisposal();
}

const char* const EventNames[] = {"Click",  "DblClick", "KeyDown",   "KeyPress",
                                  "Change", "GotFocus", "LostFocus", "MouseMove"};

// A form of controls with eight events each, and a script in the system's own order that
// handles five of them per control, then Subs and Functions, then the form's handlers: about
// lineCount lines in all.
struct GeneratedForm {
    explicit GeneratedForm(int lineCount) {
        CTalvorScriptTextDisposal& engine = Engine();
        std::string subs, functions;
        script = "Option Explicit\r\nDim total\r\n\r\n";
        for (int control = 0; Count(script) + Count(subs) + Count(functions) < lineCount;
             ++control) {
            const std::string name = "ctl" + std::to_string(control);
            const std::string number = std::to_string(control);
            std::vector<talvor::host::MemberDescription> events;
            for (int e = 0; e < 8; ++e)
                events.push_back(
                    {EventNames[e], e + 1,
                     e % 2 ? std::vector<std::string>{"X", "Y"} : std::vector<std::string>{}});
            owned.push_back(talvor::host::BuildInterface(name, events));
            interfaces.Add(owned.back().get());
            names.Add(name.c_str());
            for (int e = 0; e < 5; ++e) {
                VB_SUB_PROGRAMME_INFO body;
                body.strParameter = e % 2 ? "X, Y" : "";
                body.strVariable = "Dim n'counter\r\n";
                for (const std::string& line :
                     {std::string("If (n > 0) Then"), std::string("total = total + n"),
                      std::string("Else"), "Call Helper" + number + "(n)", std::string("End If")})
                    body.arrCode.Add(line.c_str());
                script +=
                    engine.SetEventCodeByData((name + "_" + EventNames[e]).c_str(), &body, 0).Str();
                script += "\r\n";
            }
            subs += "Sub Helper" + number + "(v)\r\ntotal = total - v\r\nEnd Sub\r\n\r\n";
            functions += "Function Twice" + number + "(v)\r\nTwice" + number +
                         " = 2 * v\r\nEnd Function\r\n\r\n";
        }
        script += subs + functions;
        auto form = talvor::host::BuildInterface("Form", {{"Load", 1, {}}});
        interfaces.Add(form.get());
        names.Add(engine.m_strSystemFuncName);
        formEvents = form.get();
        owned.push_back(std::move(form));
        script +=
            "Sub " + engine.m_strSystemFuncName.Str() + "_Load()\r\ntotal = 0\r\nEnd Sub\r\n\r\n";
        lineTotal = Count(script);
    }
    static int Count(const std::string& text) {
        return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    }

    std::string script;
    int lineTotal = 0;
    std::vector<std::unique_ptr<CVXInterfaceInfo>> owned;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    CStringArray names;
    CVXInterfaceInfo* formEvents = nullptr;
};

CString RoundTrip(GeneratedForm& form) {
    CStringArray lines;
    VB_ALL_PROGRAMME_INFO info;
    Engine().ChangeScripText(CString(form.script), lines);
    Engine().GetCodeInfoByScriptText(lines, form.names, form.formEvents, form.interfaces, &info);
    return Engine().SetScriptTextByCodeInfo(&info);
}

void BM_ScriptRoundTrip(benchmark::State& state) {
    GeneratedForm form(static_cast<int>(state.range(0)));
    // The script is in the system's order already, so the round trip gives it back unchanged.
    if (RoundTrip(form).Str() != form.script)
        return state.SkipWithError("the round trip changed the generated script");
    for (auto _ : state)
        benchmark::DoNotOptimize(RoundTrip(form));
    state.SetItemsProcessed(state.iterations() * form.lineTotal);
    state.counters["lines"] = form.lineTotal;
}
// With --benchmark_repetitions, "min" is the figure least disturbed by other work on the
// machine: compare the two sizes by it.
double Fastest(const std::vector<double>& times) {
    return *std::min_element(times.begin(), times.end());
}
BENCHMARK(BM_ScriptRoundTrip)
    ->Arg(5000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", Fastest);

// The phases of the round trip on their own.
void BM_ChangeScripText(benchmark::State& state) {
    GeneratedForm form(static_cast<int>(state.range(0)));
    CString script(form.script);
    CStringArray lines;
    for (auto _ : state) {
        Engine().ChangeScripText(script, lines);
        benchmark::DoNotOptimize(lines.GetData());
    }
    state.SetItemsProcessed(state.iterations() * form.lineTotal);
}
BENCHMARK(BM_ChangeScripText)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

void BM_SetScriptTextByCodeInfo(benchmark::State& state) {
    GeneratedForm form(static_cast<int>(state.range(0)));
    CStringArray lines;
    VB_ALL_PROGRAMME_INFO info;
    Engine().ChangeScripText(CString(form.script), lines);
    Engine().GetCodeInfoByScriptText(lines, form.names, form.formEvents, form.interfaces, &info);
    for (auto _ : state)
        benchmark::DoNotOptimize(Engine().SetScriptTextByCodeInfo(&info));
    state.SetItemsProcessed(state.iterations() * form.lineTotal);
}
BENCHMARK(BM_SetScriptTextByCodeInfo)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

// The same round trip with the plain walk of the rules: every event searches the lines from
// the start and every block shifts the array. For comparison only.
void BM_ScriptRoundTripPlainWalk(benchmark::State& state) {
    GeneratedForm form(static_cast<int>(state.range(0)));
    auto plain = [&form] {
        CStringArray lines;
        VB_ALL_PROGRAMME_INFO info;
        Engine().ChangeScripText(CString(form.script), lines);
        talvor::engine::testing::ReferenceParse(Engine(), lines, form.names, form.formEvents,
                                                form.interfaces, info);
        return Engine().SetScriptTextByCodeInfo(&info);
    };
    if (plain().Str() != form.script)
        return state.SkipWithError("the round trip changed the generated script");
    for (auto _ : state)
        benchmark::DoNotOptimize(plain());
    state.SetItemsProcessed(state.iterations() * form.lineTotal);
}
BENCHMARK(BM_ScriptRoundTripPlainWalk)->Arg(5000)->Unit(benchmark::kMillisecond);

// Statement lines of every class, as the code tree writes them, with their classes.
struct ClassifiedLine {
    const char* line;
    ENUM_FLOWLOOP flow;
};
const ClassifiedLine StatementMix[] = {
    {"total = total + Price(i) * 2", FLOW_NONE},
    {"MsgBox \"Saved \" & name, vbInformation, \"Order\"", FLOW_NONE},
    {"If (count > 0 And name <> \"\") Then", FLOW_IF},
    {"Else", FLOW_ELSE},
    {"End If", FLOW_END_IF},
    {"For i = (1) To (UBound(items)) Step (2)", FLOW_FOR},
    {"Next", FLOW_NEXT},
    {"Do While (Not rs.EOF)", FLOW_DO_WHILE},
    {"Loop", FLOW_LOOP},
    {"Do", FLOW_DO},
    {"Loop While (retries < 3)", FLOW_LOOP_WHILE},
    {"Select Case key", FLOW_SELECT},
    {"Case 1, 2", FLOW_CASE},
    {"Case Else", FLOW_CASE_ELSE},
    {"End Select", FLOW_END_SELECT},
    {"Exit For", FLOW_EXIT},
    {"Call txtName.SetFocus()", FLOW_NONE},
    {"Set conn = CreateObject(\"ADODB.Connection\")", FLOW_NONE},
};

void BM_CheckCodeFlow_StatementMix(benchmark::State& state) {
    for (const ClassifiedLine& line : StatementMix) {
        if (Engine().CheckCodeFlow(line.line) != line.flow)
            return state.SkipWithError((std::string("misclassified: ") + line.line).c_str());
    }
    std::vector<CString> lines;
    for (const ClassifiedLine& line : StatementMix)
        lines.emplace_back(line.line);
    for (auto _ : state) {
        for (const CString& line : lines)
            benchmark::DoNotOptimize(Engine().CheckCodeFlow(line));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}
BENCHMARK(BM_CheckCodeFlow_StatementMix);

// Every line of the real scripts of the corpus, most of them no flow statement.
void BM_CheckCodeFlow_Corpus(benchmark::State& state) {
    std::vector<CString> lines;
    std::string dir = std::string(TALVOR_CORPUS_DIR) + "/vbscript";
    for (const std::string& name :
         talvor::platform::ListFolder(dir, talvor::platform::FolderEntries::Files)) {
        std::string text, error;
        if (name.size() < 4 || name.substr(name.size() - 4) != ".vbs" ||
            !talvor::platform::ReadWholeFile(dir + "/" + name, text, error))
            continue;
        CStringArray split;
        Engine().ChangeScripText(CString(text), split);
        for (const CString& line : split)
            lines.push_back(line);
    }
    if (lines.empty())
        return state.SkipWithError("corpus not found");
    for (auto _ : state) {
        for (const CString& line : lines)
            benchmark::DoNotOptimize(Engine().CheckCodeFlow(line));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}
BENCHMARK(BM_CheckCodeFlow_Corpus)->Unit(benchmark::kMillisecond);

// A procedure body of about lineCount lines as people write them: plain statements, Ifs with
// Else, loops of the three forms, Selects and Exits, nested up to four deep, all inside one
// outer loop (a message loop, a retry), whose end a walk from any Exit line has to reach.
CStringArray NestedBody(int lineCount) {
    const std::vector<std::vector<const char*>> pieces = {
        {"total = total + Price(i) * 2", "MsgBox \"Saved \" & name, vbInformation, \"Order\""},
        {"If (count > 0 And name <> \"\") Then", "Call txtName.SetFocus()", "Else", "Exit Sub",
         "End If"},
        {"For i = (1) To (UBound(items)) Step (2)", "If (items(i) = \"\") Then", "Exit For", "Else",
         "items(i) = Trim(items(i))", "End If", "Next"},
        {"Do While (Not rs.EOF)", "Set item = rs.Fields(0)", "rs.MoveNext", "Loop"},
        {"Do", "retries = retries + 1", "If (retries > 5) Then", "Exit Do", "Else", "End If",
         "Loop While (retries < 3)"},
        {"Select Case key", "Case 1, 2", "x = 1", "Case Else", "x = 2", "End Select"},
    };
    CStringArray body;
    body.Add("Do While (running)");
    int depth = 0, piece = 0;
    while (body.GetSize() < lineCount - 1) {
        // Open an outer loop now and then, and close it some pieces later.
        if (piece % 7 == 0 && depth < 4) {
            body.Add("For n = (1) To (10)");
            ++depth;
        }
        for (const char* line : pieces[static_cast<std::size_t>(piece) % pieces.size()])
            body.Add(line);
        if (piece % 5 == 4 && depth > 0) {
            body.Add("Next");
            --depth;
        }
        ++piece;
    }
    for (; depth > 0; --depth)
        body.Add("Next");
    body.Add("Loop");
    return body;
}

// The whole code tree of a body in one pass: titles, flow classes, positions, nesting and
// Exit words.
void BM_CodeTree_OnePass(benchmark::State& state) {
    CStringArray body = NestedBody(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(talvor::engine::BuildCodeTree(Engine(), body));
    state.SetItemsProcessed(state.iterations() * body.GetSize());
    state.counters["lines"] = static_cast<double>(body.GetSize());
}
BENCHMARK(BM_CodeTree_OnePass)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);

// The same answers asked line by line, as the tool asked them before: every line's walk goes
// over the body again. For comparison only.
void BM_CodeTree_LineByLine(benchmark::State& state) {
    CStringArray body = NestedBody(static_cast<int>(state.range(0)));
    const int size = static_cast<int>(body.GetSize());
    for (auto _ : state) {
        for (int i = 0; i < size; ++i) {
            benchmark::DoNotOptimize(Engine().GetTreeTitleByCode(body[i]));
            int index = i, start, middle, end;
            Engine().GetFlowPosByKeyWord(body, index, start, middle, end);
            if (Engine().CheckCodeFlow(body[i]) == FLOW_EXIT)
                benchmark::DoNotOptimize(Engine().GetExitStr(body, i));
        }
    }
    state.SetItemsProcessed(state.iterations() * size);
    state.counters["lines"] = size;
}
BENCHMARK(BM_CodeTree_LineByLine)->Arg(500)->Arg(2000)->Unit(benchmark::kMillisecond);

// Renaming a control: a script of state.range(0) lines in which one line of 25 uses the
// control (a handler head, a property beside a literal that must stay, an argument, a
// comment): 2,000 uses per 50,000 lines. Time per line must stay flat as the script grows.
CString RenameScript(int lineCount) {
    std::string script;
    for (int line = 0; line < lineCount; ++line) {
        switch (line % 100) {
        case 0:
            script += "Sub btnSave_Click()\r\n";
            break;
        case 25:
            script += "btnSave.Caption = \"btnSave \" & total\r\n";
            break;
        case 50:
            script += "Call Show(btnSave, total.Left + 1)\r\n";
            break;
        case 75:
            script += "If total > 2 Then total = total + 1 ' btnSave\r\n";
            break;
        default:
            script += "total = total + " + std::to_string(line) + " ' plain line of the form\r\n";
        }
    }
    return CString(std::move(script));
}

void BM_ChangeNameToScriptTxt(benchmark::State& state) {
    const int lineCount = static_cast<int>(state.range(0));
    const CString script = RenameScript(lineCount);
    std::vector<talvor::host::MemberDescription> events;
    for (int e = 0; e < 8; ++e)
        events.push_back({EventNames[e], e + 1, {}});
    auto buttonEvents = talvor::host::BuildInterface("ButtonEvents", events);
    for (auto _ : state) {
        CString text = script;
        Engine().ChangeNameToScriptTxt(text, "btnSave", "cmdStore", buttonEvents.get());
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * lineCount);
    state.counters["lines"] = lineCount;
    state.counters["uses"] = lineCount / 100 * 4;
}
BENCHMARK(BM_ChangeNameToScriptTxt)
    ->Arg(12500)
    ->Arg(25000)
    ->Arg(50000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
