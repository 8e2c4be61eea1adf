// Node texts of the code tree, from the title strings and the expressions of the statement.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

namespace talvor::engine::testing {
namespace {

struct TitleCase {
    const char* what;
    const char* code;
    const char* title;
};

TEST(GetTreeTitleByCode, TitlesPutExpressionsBetweenTheFixedWords) {
    const TitleCase cases[] = {
        {"empty", "", ""},
        {"an odd number of quotes", "If (x = \"a) Then", ""},
        {"no test holds: as written", "x = Foo(1,  \"a\")  ' note", "x = Foo(1,  \"a\")  ' note"},
        {"If with a literal in its group", "If (name = \"Bob\") Then",
         "If    name = \"Bob\"    is true, then"},
        {"inner brackets stay", "If ((a Or b) And c) Then",
         "If    (a Or b) And c    is true, then"},
        {"Else", "Else", "Otherwise"},
        {"Else with a blank in front fails the equal test", " Else", " Else"},
        {"End If", "end if", "End of condition"},
        {"loop head", "Do While (i < 10)", "Loop    i < 10"},
        {"loop end", "Loop", "End of loop"},
        {"loop end with condition", "Loop While (x > \"\")", "End of loop    x > \"\""},
        {"loop head without condition", "Do", "Loop"},
        {"For with a step", "For i = (1) To (10) Step (2)",
         "Count    i = 1    up to    10    in steps of    2"},
        {"For without a step counts by one", "For i = (1) To (n)",
         "Count    i = 1    up to    n    in steps of    1"},
        {"an empty step group counts by one", "For i = (1) To (n) Step ()",
         "Count    i = 1    up to    n    in steps of    1"},
        {"literals go back into the groups that used them",
         "For k = (Len(\"ab\")) To (Len(\"abc\"))",
         "Count    k = Len(\"ab\")    up to    Len(\"abc\")    in steps of    1"},
        {"For without groups falls through to the later tests", "For i = 1 To 10",
         "For i = 1 To 10"},
        {"Next", "Next", "Next count"},
        {"Exit", "Exit For", "Leave the block"},
        {"Call: the rest of the statement", "  call   DoIt(1, \"x\")", "Call    DoIt(1, \"x\")"},
        {"Call needs white space behind it", "Call", "Call"},
        {"Set", "Set box = Nothing", "Set object    box = Nothing"},
        {"a Select line is shown as written", "Select Case (k)", "Select Case (k)"},
    };
    for (const TitleCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Engine().GetTreeTitleByCode(c.code), c.title);
    }
}

TEST(GetTreeTitleByCode, MissingGroupsNeverReadPastTheList) {
    // Statements the tree does not write: the title is the statement as written.
    const TitleCase cases[] = {
        {"If without a group", "If a Then", "If a Then"},
        {"loop head without a group", "Do While a", "Do While a"},
        {"loop end without a group", "Loop While a", "Loop While a"},
        {"For with one group", "For i = (1) To 10", "For i = (1) To 10"},
        {"For without ' = '", "For (i) To (2)", "For (i) To (2)"},
        {"a '(' that nothing closes", "If (a Then", "If (a Then"},
        {"an unclosed group after a closed one", "If (a) Then (b", "If    a    is true, then"},
        {"a mask character with no literal left", "If (\x08) Then", "If    \x08    is true, then"},
    };
    for (const TitleCase& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(Engine().GetTreeTitleByCode(c.code), c.title);
    }
}

} // namespace
} // namespace talvor::engine::testing
