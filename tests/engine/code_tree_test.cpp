// The one-pass code tree against the per-line operations it replaces: CheckCodeFlow,
// GetTreeTitleByCode, GetFlowPosByKeyWord and GetExitStr asked line by line, and the nesting
// computed from their positions, on every procedure of the corpus, on bodies with the odd
// shapes the walks have rules for, and on bodies made from a fixed seed.
#include "engine/code_tree.h"

#include "tests/engine/engine_test_support.h"
#include "tests/support/corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace talvor::engine::testing {
namespace {

// Nesting as a caller builds it from the per-line operations: the lines between a block's
// start and end are one level deeper, its Else line is not; in a Select block the lines behind
// each Case are one level deeper again.
std::vector<int> DepthsLineByLine(CStringArray& body) {
    const int size = static_cast<int>(body.GetSize());
    std::vector<int> depth(static_cast<std::size_t>(size), 0);
    for (int i = 0; i < size; ++i) {
        ENUM_FLOWLOOP flow = Engine().CheckCodeFlow(body[i]);
        if (flow == FLOW_IF || flow == FLOW_FOR || flow == FLOW_DO_WHILE || flow == FLOW_DO) {
            int index = i, start, middle, end;
            Engine().GetFlowPosByKeyWord(body, index, start, middle, end);
            for (int j = start + 1; end > start && j < end; ++j)
                depth[static_cast<std::size_t>(j)] += j != middle;
        } else if (flow == FLOW_SELECT) {
            int index = i, select, caseElse, endSelect;
            CArray<int, int> cases;
            Engine().GetCasePosByKeyWord(body, index, select, caseElse, endSelect, cases);
            if (endSelect <= select)
                continue;
            std::vector<int> marks(cases.begin(), cases.end());
            if (caseElse > select)
                marks.push_back(caseElse);
            std::sort(marks.begin(), marks.end());
            marks.push_back(endSelect);
            for (int j = select + 1; j < endSelect; ++j)
                ++depth[static_cast<std::size_t>(j)];
            for (std::size_t m = 0; m + 1 < marks.size(); ++m)
                for (int j = marks[m] + 1; j < marks[m + 1]; ++j)
                    ++depth[static_cast<std::size_t>(j)];
        }
    }
    return depth;
}

// Every field of every line of the tree equals the per-line answer; the first difference is
// reported with the body around it. Gives the number of lines compared.
int ExpectSameAsLineByLine(CStringArray& body) {
    const std::vector<CodeTreeLine> tree = BuildCodeTree(Engine(), body);
    const int size = static_cast<int>(body.GetSize());
    EXPECT_EQ(static_cast<int>(tree.size()), size);
    if (static_cast<int>(tree.size()) != size)
        return 0;
    const std::vector<int> depth = DepthsLineByLine(body);
    for (int i = 0; i < size; ++i) {
        const CodeTreeLine& line = tree[static_cast<std::size_t>(i)];
        int index = i, start, middle, end;
        Engine().GetFlowPosByKeyWord(body, index, start, middle, end);
        const ENUM_FLOWLOOP flow = Engine().CheckCodeFlow(body[i]);
        const CString exitWord = flow == FLOW_EXIT ? Engine().GetExitStr(body, i) : CString();
        const bool same = line.flow == flow && line.start == start && line.middle == middle &&
                          line.end == end && line.depth == depth[static_cast<std::size_t>(i)] &&
                          line.exitWord == exitWord &&
                          line.title == Engine().GetTreeTitleByCode(body[i]);
        if (!same) {
            std::string shown;
            for (int k = std::max(0, i - 8); k < std::min(size, i + 8); ++k)
                shown += std::to_string(k) + ": " + body[k].GetString() + "\n";
            ADD_FAILURE() << "line " << i << " '" << body[i].GetString() << "': tree flow "
                          << line.flow << " (" << line.start << "," << line.middle << ","
                          << line.end << ") depth " << line.depth << " exit '"
                          << line.exitWord.GetString() << "'; line by line flow " << flow << " ("
                          << start << "," << middle << "," << end << ") depth "
                          << depth[static_cast<std::size_t>(i)] << " exit '" << exitWord.GetString()
                          << "'\n"
                          << shown;
            return i;
        }
    }
    return size;
}

CStringArray Body(std::initializer_list<const char*> lines) {
    CStringArray body;
    for (const char* line : lines)
        body.Add(line);
    return body;
}

TEST(CodeTree, AgreesWithTheLineByLineAnswersOnEveryProcedureOfTheCorpus) {
    int lines = 0, procedures = 0;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        CString extension(path.substr(path.find_last_of('.') + 1));
        extension.MakeLower();
        if (extension != "vbs" && extension != "asp" && extension != "hta")
            continue;
        SCOPED_TRACE(path);
        TestForm form({}, {});
        VB_ALL_PROGRAMME_INFO info;
        CStringArray scriptLines;
        form.Parse(CString(talvor::testing::ReadFileBytes(path)), info, scriptLines);
        for (const CStringArray* blocks : {&info.arrSubCode, &info.arrFunctionCode}) {
            for (const CString& block : *blocks) {
                VB_SUB_PROGRAMME_INFO procedure;
                Engine().GetDataByEventCode(block, &procedure);
                lines += ExpectSameAsLineByLine(procedure.arrCode);
                ++procedures;
            }
        }
    }
    EXPECT_GT(procedures, 250);
    EXPECT_GT(lines, 2500);
}

// The shapes the walks have special rules for: ends before their heads, an Else or End If on
// line 0, heads that nothing closes, an Else behind the End If, Exit on line 0, Selects
// nested and unclosed, and loop forms that close each other's heads not.
TEST(CodeTree, AgreesOnTheOddShapes) {
    std::vector<CStringArray> bodies = {
        Body({}),
        Body({"End If", "x = 1", "If (a) Then", "Else", "End If"}),
        Body({"Else", "If (a) Then", "End If", "End If"}),
        Body({"x = 1", "Else", "y = 2"}),
        Body({"For i = (1) To (3)", "Else", "End If"}),
        Body({"If (a) Then", "x = 1", "If (b) Then", "Else", "End If"}),
        Body({"If (a) Then", "End If", "Else", "x = 1"}),
        Body({"Exit For", "For i = (1) To (3)", "Exit For", "Next", "Exit Do"}),
        Body({"Do While (a)", "If (b) Then", "Exit Do", "Else", "Exit Do", "End If", "Loop",
              "Exit Do"}),
        Body({"Do", "For i = (1) To (2)", "Loop While (x)", "Exit For", "Next"}),
        Body({"Next", "Loop", "Loop While (a)", "For i = (1) To (2)", "Do", "Do While (b)"}),
        Body({"Select Case a", "Case 1", "Select Case b", "Case 2", "x = 1", "End Select",
              "Case Else", "y = 2", "End Select", "End Select", "Case 3"}),
        Body({"Select Case a", "Case 1", "x = 1", "Case Else", "Case 2", "y = 2"}),
        Body({"If (a) Then", "Select Case b", "Case 1", "Exit Sub", "End Select", "Else",
              "For i = (1) To (2)", "Exit For", "Next", "End If"}),
    };
    for (CStringArray& body : bodies)
        EXPECT_EQ(ExpectSameAsLineByLine(body), body.GetSize());
}

// Bodies of flow statements in random order: most of them badly nested, which is where a
// pairing rule that differs from the walks shows.
TEST(CodeTree, AgreesOnBodiesFromAFixedSeed) {
    const char* const statements[] = {"If (a) Then",    "Else",
                                      "End If",         "For i = (1) To (2)",
                                      "Next",           "Do While (b)",
                                      "Loop",           "Do",
                                      "Loop While (c)", "Select Case d",
                                      "Case 1",         "Case Else",
                                      "End Select",     "Exit For",
                                      "Exit Do",        "x = x + 1",
                                      "Call F(x)",      "MsgBox \"End If\""};
    std::mt19937 random(20261124);
    std::uniform_int_distribution<int> pick(0, static_cast<int>(std::size(statements)) - 1);
    std::uniform_int_distribution<int> length(0, 40);
    for (int round = 0; round < 300; ++round) {
        CStringArray body;
        for (int n = length(random); n > 0; --n)
            body.Add(statements[pick(random)]);
        SCOPED_TRACE(round);
        ASSERT_EQ(ExpectSameAsLineByLine(body), body.GetSize());
    }
}

} // namespace
} // namespace talvor::engine::testing
