// A host outside the source tree, built against an installed Talvor: it splits a script into
// records and writes it back, then colours one line, and says what it got. Exit 0 only when
// both answers are right.
#include "engine/script_text_disposal.h"
#include "syntax/syntax.h"

#include <cstdio>
#include <cstring>

namespace {

// A host reaches the line parser the way the editor does: as a class derived from the syntax.
struct LineColourer : CTalvorSyntax {
    using CTalvorSyntax::LoadSynWord;
    using CTalvorSyntax::ParseLine;
};

} // namespace

int main() {
    const char* script = "Dim total\r\n"
                         "\r\n"
                         "Sub AddItem(price)\r\n"
                         "total = total + price\r\n"
                         "End Sub\r\n";
    CTalvorScriptTextDisposal& engine = CTalvorScriptTextDisposal::GetDisposal();
    CStringArray lines;
    engine.ChangeScripText(script, lines);
    CStringArray names;
    CArray<CVXInterfaceInfo*, CVXInterfaceInfo*> interfaces;
    VB_ALL_PROGRAMME_INFO info;
    engine.GetCodeInfoByScriptText(lines, names, nullptr, interfaces, &info);
    CString again = engine.SetScriptTextByCodeInfo(&info);
    std::printf("script written back:\n%s", again.GetString());
    // The system's order puts an empty line behind every block.
    const char* expected = "Dim total\r\n\r\nSub AddItem(price)\r\ntotal = total + price\r\n"
                           "End Sub\r\n\r\n";

    LineColourer colourer;
    colourer.SetLanguage(3); // Basic
    colourer.LoadSynWord();
    CString line("If total > 10 Then ' a comment");
    COLORINFO runs[64];
    int count = 0;
    colourer.ParseLine(0, line, runs, count);
    std::printf("colour runs: %d\n", count);
    return again == expected && count >= 4 ? 0 : 1;
}
