// Statement classes, skeletons of new statements, and the block positions found by counting
// the classes of the lines around a line.
#include "engine/script_text_disposal.h"
#include "platform/codepage/code_page.h"
#include "tests/engine/engine_test_support.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

struct FlowCase {
    const char* line;
    ENUM_FLOWLOOP flow;
};

TEST(CheckCodeFlow, ClassifiesStatementLines) {
    const FlowCase cases[] = {
        {"", FLOW_NONE},
        {"x = 1", FLOW_NONE},
        {"If a = 1 Then", FLOW_IF},
        {"  if (a) then", FLOW_IF},
        {"If x Then y = 1", FLOW_IF},
        {"If (a = \"Then\") Then", FLOW_IF},
        {"Else", FLOW_ELSE},
        {"ELSE", FLOW_ELSE},
        {" Else", FLOW_NONE},
        {"Else ' otherwise", FLOW_NONE},
        {"End If", FLOW_END_IF},
        {"end if", FLOW_END_IF},
        {"Do While i < 10", FLOW_DO_WHILE},
        {"Loop", FLOW_LOOP},
        {"For i = 1 To 10 Step 2", FLOW_FOR},
        {"For Each item In list", FLOW_NONE},
        {"Next", FLOW_NEXT},
        {"Next i", FLOW_NONE},
        {"Loop While x < 3", FLOW_LOOP_WHILE},
        {"Loop Until x", FLOW_NONE},
        {"Do", FLOW_DO},
        {"Select Case key", FLOW_SELECT},
        {"Case 1, 2", FLOW_CASE},
        {"Case Else", FLOW_CASE_ELSE},
        {"End Select", FLOW_END_SELECT},
        {"Exit For", FLOW_EXIT},
        {"Exit", FLOW_EXIT},
        {"Exited = True", FLOW_NONE},
        {"total = 0 ' Exit early", FLOW_EXIT},
        {"x = \"If a Then\"", FLOW_NONE},
        {"Report(a If b Then c)", FLOW_NONE},
        {"MsgBox \"say \"\"Exit\"\"\"", FLOW_NONE},
        {"x = \"unbalanced", FLOW_NONE},
        {"If a Then \"", FLOW_NONE},
        {"If (a Then", FLOW_NONE}, // nothing closes the "(": the rest is one expression
        {"(((", FLOW_NONE},
        {"f(a)) If b Then", FLOW_IF},
    };
    for (const FlowCase& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(Engine().CheckCodeFlow(c.line), c.flow);
    }
    EXPECT_TRUE(talvor::testing::ShownMessages().empty());
}

TEST(CheckCodeFlow, ALeadByteSwallowsTheQuoteBehindIt) {
    const char* line = "If \"\x81\" Then";
    EXPECT_EQ(Engine().CheckCodeFlow(line), FLOW_IF); // two quotes in code page 1252
    ASSERT_TRUE(platform::SetSystemCodePage(936));
    EXPECT_EQ(Engine().CheckCodeFlow(line), FLOW_NONE); // one quote and one double-byte character
}

TEST(GetArryByFlowType, SkeletonsCompleteTheBlockOfTheirStatement) {
    const struct {
        const char* code;
        ENUM_FLOWLOOP flow;
        const char* lines;
    } cases[] = {
        {"x = 1", FLOW_NONE, "x = 1"},
        {"If a Then", FLOW_IF, "If a Then|Else|End If"},
        {"For i = 1 To 3", FLOW_FOR, "For i = 1 To 3|Next"},
        {"Do While a", FLOW_DO_WHILE, "Do While a|Loop"},
        {"Loop While a", FLOW_LOOP_WHILE, "Do|Loop While a"},
        {"Exit For", FLOW_EXIT, "Exit"},
        {"Do", FLOW_DO, ""},
        {"End If", FLOW_END_IF, ""},
        {"Select Case a", FLOW_SELECT, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.code);
        CStringArray lines = Lines({"stale"});
        EXPECT_EQ(Engine().GetArryByFlowType(lines, c.code), c.flow);
        EXPECT_EQ(Join(lines), c.lines);
    }
}

struct Positions {
    int index;
    int start, middle, end, indexAfter;
};

void ExpectPositions(CStringArray& lines, const Positions& p) {
    SCOPED_TRACE("line " + std::to_string(p.index));
    int index = p.index, start = 7, middle = 7, end = 7;
    Engine().GetFlowPosByKeyWord(lines, index, start, middle, end);
    EXPECT_EQ(start, p.start);
    EXPECT_EQ(middle, p.middle);
    EXPECT_EQ(end, p.end);
    EXPECT_EQ(index, p.indexAfter);
}

CStringArray NestedWithElses() {
    return Lines({"If a Then",        // 0
                  "x = 1",            // 1
                  "For i = 1 To 3",   // 2
                  "If b Then",        // 3
                  "y = 1",            // 4
                  "Else",             // 5
                  "y = 2",            // 6
                  "End If",           // 7
                  "Next",             // 8
                  "Else",             // 9
                  "Do While c",       // 10
                  "Exit Do",          // 11
                  "Loop",             // 12
                  "End If",           // 13
                  "Do",               // 14
                  "z = 1",            // 15
                  "Loop While z < 3", // 16
                  "Select Case k",    // 17
                  "Case 1",           // 18
                  "Select Case j",    // 19
                  "Case 2",           // 20
                  "End Select",       // 21
                  "Case Else",        // 22
                  "End Select"});     // 23
}

TEST(GetFlowPosByKeyWord, EveryLineOfABlockGivesTheSamePositions) {
    CStringArray lines = NestedWithElses();
    const Positions cases[] = {
        {0, 0, 9, 13, 13},    {9, 0, 9, 13, 13},    {13, 0, 9, 13, 13},   {3, 3, 5, 7, 7},
        {5, 3, 5, 7, 7},      {7, 3, 5, 7, 7},      {2, 2, -1, 8, 8},     {8, 2, -1, 8, 8},
        {10, 10, -1, 12, 12}, {12, 10, -1, 12, 12}, {14, 14, -1, 16, 16}, {16, 14, -1, 16, 16},
        {1, 1, -1, -1, 1},    {11, 11, -1, -1, 11}, {17, -1, -1, -1, 17}, {18, -1, -1, -1, 18},
        {-1, -1, -1, -1, -1}, {24, -1, -1, -1, 24},
    };
    for (const Positions& p : cases)
        ExpectPositions(lines, p);
}

TEST(GetFlowPosByKeyWord, AnIfWithoutElsePutsTheCountersOutOfStep) {
    CStringArray lines =
        Lines({"If a Then", "If b Then", "x = 1", "End If", "Else", "y = 2", "End If"});
    ExpectPositions(lines, {0, 0, -1, 6, 6}); // the outer Else is not found as the middle
    ExpectPositions(lines, {4, 1, -1, 3, 3}); // the walk from it ends at the nested If
    ExpectPositions(lines, {6, 0, -1, 6, 6}); // If and End If don't depend on Else lines
}

TEST(GetFlowPosByKeyWord, AWalkThatFindsNothingGivesZero) {
    CStringArray oneLineIf = Lines({"x = 0", "If a Then b = 1", "c = 2"});
    ExpectPositions(oneLineIf, {1, 1, -1, 0, 0});
    CStringArray openFor = Lines({"x", "For i = 1 To 2", "y"});
    ExpectPositions(openFor, {1, 1, -1, 0, 0});
    CStringArray strayNext = Lines({"x", "y", "Next"});
    ExpectPositions(strayNext, {2, 0, -1, 2, 2});
    // An Else without an If answers as line 0 does; line 0 is a plain line here.
    CStringArray strayElse = Lines({"x", "Else", "End If"});
    ExpectPositions(strayElse, {1, 0, -1, -1, 0});
    ExpectPositions(strayElse, {2, 0, -1, -1, 0});
    // Where line 0 is itself an Else, it stands for a plain line instead of asking again.
    CStringArray elseFirst = Lines({"Else", "End If"});
    ExpectPositions(elseFirst, {1, 0, -1, -1, 0});
    ExpectPositions(elseFirst, {0, 0, -1, -1, 0});
}

TEST(GetCasePosByKeyWord, ReportsTheCasesOfItsOwnDepth) {
    CStringArray lines = NestedWithElses();
    int index = 17, select = 0, caseElse = 0, endSelect = 0;
    CArray<int, int> cases;
    Engine().GetCasePosByKeyWord(lines, index, select, caseElse, endSelect, cases);
    EXPECT_EQ(select, 17);
    EXPECT_EQ(caseElse, 22);
    EXPECT_EQ(endSelect, 23);
    ASSERT_EQ(cases.GetSize(), 1);
    EXPECT_EQ(cases[0], 18);
    EXPECT_EQ(index, 17);

    index = 19;
    cases.Add(99); // not emptied: the caller brings an empty array
    Engine().GetCasePosByKeyWord(lines, index, select, caseElse, endSelect, cases);
    EXPECT_EQ(select, 19);
    EXPECT_EQ(caseElse, -1);
    EXPECT_EQ(endSelect, 21);
    ASSERT_EQ(cases.GetSize(), 3);
    EXPECT_EQ(cases[2], 20);

    index = 18; // not a Select line
    Engine().GetCasePosByKeyWord(lines, index, select, caseElse, endSelect, cases);
    EXPECT_EQ(select, -1);
    EXPECT_EQ(endSelect, -1);

    CStringArray empty;
    select = caseElse = endSelect = 5;
    Engine().GetCasePosByKeyWord(empty, index, select, caseElse, endSelect, cases);
    EXPECT_EQ(select + caseElse + endSelect, 15); // untouched
}

TEST(GetExitStr, TheNearestEnclosingBlockDecides) {
    CStringArray lines = NestedWithElses();
    EXPECT_EQ(Engine().GetExitStr(lines, 0), "Exit Sub");
    EXPECT_EQ(Engine().GetExitStr(lines, 24), "Exit Sub");
    EXPECT_EQ(Engine().GetExitStr(lines, 11), "Exit Do");
    EXPECT_EQ(Engine().GetExitStr(lines, 4), "Exit Sub"); // an If inside a For
    EXPECT_EQ(Engine().GetExitStr(lines, 8), "Exit Sub"); // the Else of the If at 0 is below
    EXPECT_EQ(Engine().GetExitStr(lines, 15), "Exit Do");

    CStringArray loop = Lines({"For i = 1 To 2", "x", "Next", "y"});
    EXPECT_EQ(Engine().GetExitStr(loop, 1), "Exit For");
    EXPECT_EQ(Engine().GetExitStr(loop, 2), "Exit Sub"); // the Next itself ends the loop there
    EXPECT_EQ(Engine().GetExitStr(loop, 3), "Exit Sub");

    CStringArray select =
        Lines({"Do", "Select Case a", "Case 1", "x", "End Select", "Loop While b"});
    EXPECT_EQ(Engine().GetExitStr(select, 3), "Exit Do"); // a Select is no block here
}

} // namespace
} // namespace talvor::engine::testing
