// Edits of a statement list: the results and changes that each operation gives, on blocks
// with and without Else parts, and the structure that a run of random edits keeps.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace talvor::engine::testing {
namespace {

struct OpCase {
    const char* what;
    const char* before; // lines joined by "|"
    ENUM_CODE_OPERATE op;
    int index;
    const char* code;
    const char* after;
    int result;
};

CStringArray Split(const char* joined) {
    CStringArray lines;
    std::string text = joined;
    for (std::size_t start = 0; !text.empty() && start <= text.size();) {
        std::size_t bar = text.find('|', start);
        lines.Add(text.substr(start, bar - start).c_str());
        start = bar == std::string::npos ? text.size() + 1 : bar + 1;
    }
    return lines;
}

void RunCases(const OpCase* cases, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const OpCase& c = cases[i];
        SCOPED_TRACE(c.what);
        CStringArray lines = Split(c.before);
        EXPECT_EQ(Engine().CodeOperate(lines, c.code, c.op, c.index), c.result);
        EXPECT_EQ(Join(lines), c.after);
    }
}

TEST(CodeOperate, CommonChecksRefuseWithoutChanges) {
    const OpCase cases[] = {
        {"negative index", "a", CODE_OPERATE_DELETE, -1, "", "a", -1},
        {"index past the end", "a", CODE_OPERATE_NEW, 1, "x = 1", "a", -1},
        {"empty array: only a new block", "", CODE_OPERATE_INSERT_AFTER, 0, "x = 1", "", -1},
        {"a Select line has no positions", "Select Case a|Case 1|End Select", CODE_OPERATE_DELETE,
         1, "", "Select Case a|Case 1|End Select", -1},
        {"an operation out of range", "a", static_cast<ENUM_CODE_OPERATE>(10), 0, "", "a", -1},
    };
    RunCases(cases, std::size(cases));
}

TEST(CodeOperate, NewReplacesTheWholeBlockWithASkeleton) {
    const OpCase cases[] = {
        {"an If comes with its Else and End If", "", CODE_OPERATE_NEW, 0, "If a Then",
         "If a Then|Else|End If", 0},
        {"the old lines go", "x|y", CODE_OPERATE_NEW, 1, "Do While b", "Do While b|Loop", 0},
        {"an Exit gets the word that fits", "", CODE_OPERATE_NEW, 0, "Exit For", "Exit Sub", 0},
        {"a closing text leaves nothing", "x", CODE_OPERATE_NEW, 0, "End If", "", -1},
    };
    RunCases(cases, std::size(cases));
    CStringArray block = Lines({});
    Engine().CodeOperate(block, "If a Then", CODE_OPERATE_NEW, 0);
    EXPECT_EQ(Engine().CodeOperate(block, "y = 1", CODE_OPERATE_ADD_ELSE, 0), -1);
}

TEST(CodeOperate, ModifyFollowsTheRowOfBothClasses) {
    const char* block = "a = 1|If x Then|b = 2|Else|c = 3|End If|d = 4";
    const char* loop = "For i = 1 To 3|x|Next|y";
    const OpCase cases[] = {
        {"plain to plain", block, CODE_OPERATE_MODIFY, 0, "z = 9",
         "z = 9|If x Then|b = 2|Else|c = 3|End If|d = 4", 0},
        {"plain to Exit: the word that fits, not the text", block, CODE_OPERATE_MODIFY, 0,
         "Exit Do", "Exit Sub|If x Then|b = 2|Else|c = 3|End If|d = 4", 0},
        {"plain to a block, not the last line", block, CODE_OPERATE_MODIFY, 0, "For i = 1 To 2",
         "For i = 1 To 2|Next|If x Then|b = 2|Else|c = 3|End If|d = 4", 0},
        {"plain to a block on the last line", block, CODE_OPERATE_MODIFY, 6, "Do While y",
         "a = 1|If x Then|b = 2|Else|c = 3|End If|Do While y|Loop", 7},
        {"plain to a closing text: the line goes", block, CODE_OPERATE_MODIFY, 0, "End If",
         "If x Then|b = 2|Else|c = 3|End If|d = 4", 0},
        {"a new If on the Else line changes the If line", block, CODE_OPERATE_MODIFY, 3,
         "If y Then", "a = 1|If y Then|b = 2|Else|c = 3|End If|d = 4", 1},
        {"If to plain", block, CODE_OPERATE_MODIFY, 1, "q = 1", "a = 1|q = 1|b = 2|c = 3|d = 4", 1},
        {"Else to plain", block, CODE_OPERATE_MODIFY, 3, "q = 1", "a = 1|b = 2|q = 1|c = 3|d = 4",
         2},
        {"End If to plain keeps both parts", block, CODE_OPERATE_MODIFY, 5, "q = 1",
         "a = 1|b = 2|c = 3|q = 1|d = 4", 3},
        {"If to Exit", block, CODE_OPERATE_MODIFY, 1, "Exit Do", "a = 1|Exit Sub|b = 2|c = 3|d = 4",
         1},
        {"If to a loop", block, CODE_OPERATE_MODIFY, 5, "For i = 1 To 3",
         "a = 1|For i = 1 To 3|b = 2|c = 3|Next|d = 4", 1},
        {"If to a closing text: nothing changes", block, CODE_OPERATE_MODIFY, 1, "Loop",
         "a = 1|If x Then|b = 2|Else|c = 3|End If|d = 4", -1},
        {"loop head to plain", loop, CODE_OPERATE_MODIFY, 0, "z", "z|x|y", 0},
        {"loop end to plain", loop, CODE_OPERATE_MODIFY, 2, "z", "x|z|y", 1},
        {"loop end to Exit", loop, CODE_OPERATE_MODIFY, 2, "Exit For", "x|Exit Sub|y", 1},
        {"loop to If: the body goes before the Else", loop, CODE_OPERATE_MODIFY, 0, "If a Then",
         "If a Then|x|Else|End If|y", 0},
        {"loop to If on the last line", "Do While a|x|Loop", CODE_OPERATE_MODIFY, 2, "If b Then",
         "If b Then|x|Else|End If", 0},
        {"loop to another loop", loop, CODE_OPERATE_MODIFY, 2, "Loop While k",
         "Do|x|Loop While k|y", 0},
    };
    RunCases(cases, std::size(cases));
}

TEST(CodeOperate, DeleteKeepsTheBodyOfABlock) {
    const OpCase cases[] = {
        {"the only line", "a", CODE_OPERATE_DELETE, 0, "", "", -1},
        {"the last of several", "a|b", CODE_OPERATE_DELETE, 1, "", "a", 0},
        {"a middle line", "a|b|c", CODE_OPERATE_DELETE, 1, "", "a|c", 1},
        {"an If from its Else", "If a Then|x|Else|y|End If|z", CODE_OPERATE_DELETE, 2, "", "x|y|z",
         0},
        {"a block at the end", "z|If a Then|Else|End If", CODE_OPERATE_DELETE, 3, "", "z", 0},
        {"its Exit now serves the enclosing loop", "Do While a|For i = 1 To 2|Exit For|Next|Loop",
         CODE_OPERATE_DELETE, 3, "", "Do While a|Exit Do|Loop", 1},
        {"a one-line If is a lone statement", "a|If x Then y = 1|b", CODE_OPERATE_DELETE, 1, "",
         "a|b", 1},
        {"a stray End If is a lone statement", "a|End If", CODE_OPERATE_DELETE, 1, "", "a", 0},
    };
    RunCases(cases, std::size(cases));
}

TEST(CodeOperate, InsertAndAddElseBringTheWholeSkeleton) {
    const OpCase cases[] = {
        {"before", "a|b", CODE_OPERATE_INSERT_BEFORE, 1, "For i = 1 To 2",
         "a|For i = 1 To 2|Next|b", 1},
        {"an Exit inserted in a loop", "For i = 1 To 2|x|Next", CODE_OPERATE_INSERT_BEFORE, 1,
         "Exit Sub", "For i = 1 To 2|Exit For|x|Next", 1},
        {"after", "a|b", CODE_OPERATE_INSERT_AFTER, 0, "Do While c", "a|Do While c|Loop|b", 1},
        {"after the last line", "a|b", CODE_OPERATE_INSERT_AFTER, 1, "If c Then",
         "a|b|If c Then|Else|End If", 2},
        {"an Exit after a line in a loop", "Do|x|Loop While y", CODE_OPERATE_INSERT_AFTER, 1,
         "Exit", "Do|x|Exit Do|Loop While y", 2},
        {"nothing to insert after the last line", "a", CODE_OPERATE_INSERT_AFTER, 0, "Next", "a",
         -1},
        {"an Else part", "If a Then|x|End If", CODE_OPERATE_ADD_ELSE, 0, "y = 1",
         "If a Then|x|Else|y = 1|End If", 2},
        {"a block that has an Else", "If a Then|Else|End If", CODE_OPERATE_ADD_ELSE, 2, "y",
         "If a Then|Else|End If", -1},
        {"a simple line has no end", "a", CODE_OPERATE_ADD_ELSE, 0, "y", "a", -1},
        {"a loop gets the Else all the same", "For i = 1 To 2|x|Next", CODE_OPERATE_ADD_ELSE, 2,
         "y", "For i = 1 To 2|x|Else|y|Next", 2},
    };
    RunCases(cases, std::size(cases));
}

TEST(CodeOperate, MovesStepOverWholeBlocks) {
    const OpCase cases[] = {
        {"up from the first line", "a|b", CODE_OPERATE_MOVE_UP, 0, "", "a|b", 0},
        {"up: a plain line swaps", "a|b", CODE_OPERATE_MOVE_UP, 1, "", "b|a", 0},
        {"up: an Exit leaving its loop", "For i = 1 To 2|Exit For|Next", CODE_OPERATE_MOVE_UP, 1,
         "", "Exit Sub|For i = 1 To 2|Next", 0},
        {"up: a loop end passing an Exit", "Do While a|Exit Do|Loop", CODE_OPERATE_MOVE_UP, 2, "",
         "Do While a|Loop|Exit Sub", 1},
        {"up: the End If of an empty If stays", "If a Then|End If", CODE_OPERATE_MOVE_UP, 1, "",
         "If a Then|End If", 1},
        {"up: the End If below its own Else stays", "If a Then|Else|End If", CODE_OPERATE_MOVE_UP,
         2, "", "If a Then|Else|End If", 2},
        {"up: a head jumps over the block above", "For i = 1 To 2|x|Next|If a Then|Else|End If",
         CODE_OPERATE_MOVE_UP, 3, "", "If a Then|For i = 1 To 2|x|Next|Else|End If", 0},
        {"up: a block leaves the enclosing block", "Do While a|If b Then|Else|End If|Loop",
         CODE_OPERATE_MOVE_UP, 1, "", "If b Then|Else|End If|Do While a|Loop", 0},
        {"up: a block passes from the Else part into the Then part",
         "If a Then|x|Else|For i = 1 To 2|Next|End If", CODE_OPERATE_MOVE_UP, 3, "",
         "If a Then|x|For i = 1 To 2|Next|Else|End If", 2},
        {"down from the last line", "a|b", CODE_OPERATE_MOVE_DOWN, 1, "", "a|b", 1},
        {"down: a plain line swaps", "a|b", CODE_OPERATE_MOVE_DOWN, 0, "", "b|a", 1},
        {"down: an Exit entering a loop", "Exit Sub|For i = 1 To 2|Next", CODE_OPERATE_MOVE_DOWN, 0,
         "", "For i = 1 To 2|Exit For|Next", 1},
        {"down: a head above its own Else stays", "If a Then|Else|End If", CODE_OPERATE_MOVE_DOWN,
         0, "", "If a Then|Else|End If", 0},
        {"down: an end jumps over the block below", "If a Then|Else|End If|For i = 1 To 2|x|Next",
         CODE_OPERATE_MOVE_DOWN, 2, "", "If a Then|Else|For i = 1 To 2|x|Next|End If", 5},
        {"down: a block leaves the enclosing block", "Do While a|If b Then|Else|End If|Loop",
         CODE_OPERATE_MOVE_DOWN, 3, "", "Do While a|Loop|If b Then|Else|End If", 4},
        {"down: a block passes into the Else part", "If a Then|For i = 1 To 2|Next|Else|x|End If",
         CODE_OPERATE_MOVE_DOWN, 2, "", "If a Then|Else|For i = 1 To 2|Next|x|End If", 3},
        {"to the top: the whole block", "a|If b Then|Else|End If|c", CODE_OPERATE_MOVE_TOP, 2, "",
         "If b Then|Else|End If|a|c", 0},
        {"to the top: an Exit is reworded", "For i = 1 To 2|Exit For|Next", CODE_OPERATE_MOVE_TOP,
         1, "", "Exit Sub|For i = 1 To 2|Next", 0},
        {"to the bottom: the whole block", "a|For i = 1 To 2|Next|b", CODE_OPERATE_MOVE_BOTTOM, 1,
         "", "a|b|For i = 1 To 2|Next", 3},
        {"to the bottom from the last line", "a|b", CODE_OPERATE_MOVE_BOTTOM, 1, "", "a|b", 1},
        {"to the bottom: an Exit leaving its loop", "Do|Exit Do|Loop While y|z",
         CODE_OPERATE_MOVE_BOTTOM, 1, "", "Do|Loop While y|z|Exit Sub", 3},
        {"a one-line If moves as a lone statement", "If a Then b|For i = 1 To 2|Next",
         CODE_OPERATE_MOVE_DOWN, 0, "", "For i = 1 To 2|If a Then b|Next", 1},
    };
    RunCases(cases, std::size(cases));
}

// Statement lists of nested blocks, every If with its Else, as the code tree writes them.
void AddBlock(std::mt19937& random, CStringArray& lines, int depth) {
    int count = 1 + static_cast<int>(random() % 3);
    for (int i = 0; i < count; ++i) {
        switch (depth < 3 ? random() % 7 : 0) {
        case 0:
        case 1:
            lines.Add(CString("x = ") + CString('0' + static_cast<char>(random() % 10)));
            break;
        case 2:
            lines.Add(random() % 2 ? "Exit For" : "Exit Do");
            break;
        case 3:
            lines.Add("If (a) Then");
            AddBlock(random, lines, depth + 1);
            lines.Add("Else");
            if (random() % 2)
                AddBlock(random, lines, depth + 1);
            lines.Add("End If");
            break;
        case 4:
            lines.Add("For i = (1) To (3)");
            AddBlock(random, lines, depth + 1);
            lines.Add("Next");
            break;
        case 5:
            lines.Add("Do While (b)");
            AddBlock(random, lines, depth + 1);
            lines.Add("Loop");
            break;
        default:
            lines.Add("Do");
            AddBlock(random, lines, depth + 1);
            lines.Add("Loop While (c)");
            break;
        }
    }
}

// True when every head is closed by its own end and every If has exactly one Else.
bool WellFormed(CStringArray& lines) {
    std::vector<std::pair<ENUM_FLOWLOOP, bool>> open; // head and whether an Else was seen
    for (const CString& line : lines) {
        ENUM_FLOWLOOP flow = Engine().CheckCodeFlow(line);
        switch (flow) {
        case FLOW_IF:
        case FLOW_FOR:
        case FLOW_DO_WHILE:
        case FLOW_DO:
            open.emplace_back(flow, false);
            break;
        case FLOW_ELSE:
            if (open.empty() || open.back().first != FLOW_IF || open.back().second)
                return false;
            open.back().second = true;
            break;
        case FLOW_END_IF:
            if (open.empty() || open.back().first != FLOW_IF || !open.back().second)
                return false;
            open.pop_back();
            break;
        case FLOW_NEXT:
        case FLOW_LOOP:
        case FLOW_LOOP_WHILE:
            if (open.empty() || open.back().first != flow - 1)
                return false;
            open.pop_back();
            break;
        default:
            break;
        }
    }
    return open.empty();
}

TEST(CodeOperate, RandomEditsKeepTheBlocksWellFormed) {
    const char* const codes[] = {"y = 1",        "If (k) Then",    "For j = (1) To (2)",
                                 "Do While (q)", "Loop While (q)", "Exit Do",
                                 "End If",       "Next",           "Do",
                                 "Else"};
    std::mt19937 random(4242);
    for (int round = 0; round < 300; ++round) {
        CStringArray lines;
        AddBlock(random, lines, 0);
        for (int step = 0; step < 12; ++step) {
            auto op = static_cast<ENUM_CODE_OPERATE>(random() % 10);
            int index = static_cast<int>(random() % (lines.GetSize() + 2)) - 1;
            CString code = codes[random() % std::size(codes)];
            if (op == CODE_OPERATE_ADD_ELSE && index >= 0 && index < lines.GetSize() &&
                Engine().CheckCodeFlow(lines[index]) != FLOW_IF)
                continue; // an Else in a loop is what the caller asked for, not well formed
            CStringArray before = lines;
            SCOPED_TRACE("op " + std::to_string(op) + " at " + std::to_string(index) + " with '" +
                         code.Str() + "' on " + Join(before));
            int result = Engine().CodeOperate(lines, code, op, index);
            EXPECT_GE(result, -1);
            EXPECT_LT(result, lines.GetSize());
            if (result == -1 && !lines.IsEmpty()) {
                EXPECT_EQ(Join(lines), Join(before));
            }
            EXPECT_TRUE(WellFormed(lines)) << Join(lines);
            if (::testing::Test::HasFailure())
                return;
            if (lines.IsEmpty())
                AddBlock(random, lines, 0);
        }
    }
}

} // namespace
} // namespace talvor::engine::testing
