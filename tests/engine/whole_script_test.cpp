// A whole script into its record and back: the global block, handlers found by their exact
// head lines, Subs and Functions by their first and last lines, the system's order of blocks.
#include "engine/script_text_disposal.h"
#include "resources/talvor_res_ids.h"
#include "tests/engine/engine_test_support.h"
#include "tests/reference/reference_whole_script.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace talvor::engine::testing {
namespace {

TestForm OrderForm() {
    return TestForm({{"cmdOK", {{"Click", -600, {}}, {"KeyDown", -602, {"KeyCode", "Shift"}}}},
                     {"txtName", {{"Change", 1, {}}, {"KeyPress", -603, {"KeyAscii"}}}}},
                    {{"Load", 1, {}}, {"Unload", 2, {"Cancel"}}});
}

const char* const OrderScript = "Option Explicit\r\n"
                                "Dim counter\r\n"
                                "\r\n"
                                "Sub Form_Load()\r\n"
                                "counter = 0\r\n"
                                "End Sub\r\n"
                                "\r\n"
                                "Function Twice(x)\r\n"
                                "Twice = 2 * x\r\n"
                                "End Function\r\n"
                                "\r\n"
                                "Sub cmdOK_KeyDown(KeyCode, Shift)\r\n"
                                "\r\n"
                                "counter = KeyCode\r\n"
                                "End Sub\r\n"
                                "\r\n"
                                "' a comment between blocks\r\n"
                                "Sub Helper()\r\n"
                                "End Sub\r\n"
                                "\r\n"
                                "sub TXTNAME_change()\r\n"
                                "End Sub\r\n"
                                "\r\n"
                                "Sub cmdOK_Click()\r\n"
                                "MsgBox \"ok\"\r\n"
                                "End Sub\r\n";

TEST(WholeScript, BlocksGoToTheirArraysAndComeBackInTheSystemsOrder) {
    TestForm form = OrderForm();
    VB_ALL_PROGRAMME_INFO info;
    CStringArray lines;
    form.Parse(OrderScript, info, lines);

    EXPECT_EQ(info.strGlobal, "Option Explicit\r\nDim counter\r\n");
    ASSERT_EQ(info.arrCtrlEventCode.GetSize(), 3);
    // In the order of the interfaces and their events, not of the text.
    EXPECT_EQ(info.arrCtrlEventCode[0], "Sub cmdOK_Click()\r\nMsgBox \"ok\"\r\nEnd Sub\r\n");
    EXPECT_EQ(info.arrCtrlEventCode[1],
              "Sub cmdOK_KeyDown(KeyCode, Shift)\r\n\r\ncounter = KeyCode\r\nEnd Sub\r\n");
    EXPECT_EQ(info.arrCtrlEventCode[2], "sub TXTNAME_change()\r\nEnd Sub\r\n");
    EXPECT_EQ(Join(info.arrSubCode), "Sub Helper()\r\nEnd Sub\r\n");
    EXPECT_EQ(Join(info.arrFunctionCode), "Function Twice(x)\r\nTwice = 2 * x\r\nEnd Function\r\n");
    EXPECT_EQ(Join(info.arrFormEventCode), "Sub Form_Load()\r\ncounter = 0\r\nEnd Sub\r\n");
    EXPECT_EQ(JoinIds(info.arrFormEventID), "1");
    EXPECT_EQ(Join(lines), "' a comment between blocks");

    EXPECT_EQ(Engine().SetScriptTextByCodeInfo(&info),
              "Option Explicit\r\nDim counter\r\n\r\n"
              "Sub cmdOK_Click()\r\nMsgBox \"ok\"\r\nEnd Sub\r\n\r\n"
              "Sub cmdOK_KeyDown(KeyCode, Shift)\r\n\r\ncounter = KeyCode\r\nEnd Sub\r\n\r\n"
              "sub TXTNAME_change()\r\nEnd Sub\r\n\r\n"
              "Sub Helper()\r\nEnd Sub\r\n\r\n"
              "Function Twice(x)\r\nTwice = 2 * x\r\nEnd Function\r\n\r\n"
              "Sub Form_Load()\r\ncounter = 0\r\nEnd Sub\r\n\r\n");
}

struct ParseCase {
    const char* what;
    const char* script;
    const char* ctrl; // arrCtrlEventCode joined by "|"
    const char* subs;
    const char* functions;
    const char* left; // what stays in lines
};

TEST(WholeScript, HeadLinesAndBlockEndsDecideWhereABlockGoes) {
    const ParseCase cases[] = {
        {"a trailing blank makes a handler a Sub", "\r\nSub cmdOK_Click() \r\nEnd Sub\r\n", "",
         "Sub cmdOK_Click() \r\nEnd Sub\r\n", "", ""},
        {"a head with a comment is a Sub", "\r\nSub cmdOK_Click() ' go\r\nEnd Sub\r\n", "",
         "Sub cmdOK_Click() ' go\r\nEnd Sub\r\n", "", ""},
        {"parameters must match the event's names", "\r\nSub cmdOK_KeyDown(k, s)\r\nEnd Sub\r\n",
         "", "Sub cmdOK_KeyDown(k, s)\r\nEnd Sub\r\n", "", ""},
        {"an event the control lacks is a Sub", "\r\nSub cmdOK_Paint()\r\nEnd Sub\r\n", "",
         "Sub cmdOK_Paint()\r\nEnd Sub\r\n", "", ""},
        {"a second handler for one event is a Sub",
         "\r\nSub cmdOK_Click()\r\na\r\nEnd Sub\r\n\r\nSub cmdOK_Click()\r\nb\r\nEnd Sub\r\n",
         "Sub cmdOK_Click()\r\na\r\nEnd Sub\r\n", "Sub cmdOK_Click()\r\nb\r\nEnd Sub\r\n", "", ""},
        {"the closing line decides the array", "\r\nSub odd()\r\nEnd Function\r\n", "", "",
         "Sub odd()\r\nEnd Function\r\n", ""},
        {"the Sub word must begin the line in its case",
         "\r\nsub lower()\r\nEnd Sub\r\n\r\n  Sub indented()\r\nEnd Sub\r\n", "", "", "",
         "sub lower()|End Sub||  Sub indented()|End Sub"},
        {"the word may begin a longer word", "\r\nSubtotal = 1\r\nEnd Sub\r\n", "",
         "Subtotal = 1\r\nEnd Sub\r\n", "", ""},
        {"an unclosed block stays in lines", "\r\nFunction f()\r\nx\r\n", "", "", "",
         "Function f()|x"},
        {"a further start is collected with the open block",
         "\r\nSub a()\r\nSub b()\r\nEnd Sub\r\n\r\nz\r\n", "", "Sub a()\r\nSub b()\r\nEnd Sub\r\n",
         "", "z"},
        {"a handler without end line runs to the end", "\r\nSub cmdOK_Click()\r\nx\r\n\r\ny\r\n",
         "Sub cmdOK_Click()\r\nx\r\n\r\ny\r\n", "", "", ""},
        {"the line behind a block goes with it, whatever it is",
         "\r\nSub a()\r\nEnd Sub\r\nSub b()\r\nEnd Sub\r\n", "", "Sub a()\r\nEnd Sub\r\n", "",
         "End Sub"},
        {"end lines compare without regard to case", "\r\nSub a()\r\nEND SUB\r\n", "",
         "Sub a()\r\nEND SUB\r\n", "", ""},
    };
    for (const ParseCase& c : cases) {
        SCOPED_TRACE(c.what);
        TestForm form = OrderForm();
        VB_ALL_PROGRAMME_INFO info;
        CStringArray lines;
        form.Parse(c.script, info, lines);
        EXPECT_EQ(Join(info.arrCtrlEventCode), c.ctrl);
        EXPECT_EQ(Join(info.arrSubCode), c.subs);
        EXPECT_EQ(Join(info.arrFunctionCode), c.functions);
        EXPECT_EQ(Join(lines), c.left);
        EXPECT_TRUE(info.strGlobal.IsEmpty());
        EXPECT_EQ(info.arrFormEventID.GetSize(), info.arrFormEventCode.GetSize());
    }
}

TEST(WholeScript, GlobalBlockEndsAtTheFirstEmptyLine) {
    TestForm form = OrderForm();
    VB_ALL_PROGRAMME_INFO info;
    CStringArray lines;

    form.Parse("\r\nSub a()\r\nEnd Sub\r\n", info, lines);
    EXPECT_TRUE(info.strGlobal.IsEmpty());
    EXPECT_EQ(Engine().SetScriptTextByCodeInfo(&info), "\r\nSub a()\r\nEnd Sub\r\n\r\n");

    // Without an empty line every line is global, and the blocks are found all the same.
    form.Parse("Dim a\r\n   \r\nSub a()\r\nEnd Sub\r\n", info, lines);
    EXPECT_EQ(info.strGlobal, "Dim a\r\n   \r\nSub a()\r\nEnd Sub\r\n");
    EXPECT_EQ(Join(info.arrSubCode), "Sub a()\r\nEnd Sub\r\n");
    EXPECT_EQ(Join(lines), "Dim a|   ");
}

TEST(WholeScript, EmptyInputAndEmptyRecords) {
    TestForm form = OrderForm();
    VB_ALL_PROGRAMME_INFO info;
    info.strGlobal = "stale";
    info.arrSubCode.Add("stale");
    CStringArray lines;
    form.Parse("", info, lines);
    EXPECT_TRUE(info.strGlobal.IsEmpty());
    EXPECT_TRUE(info.arrSubCode.IsEmpty());
    EXPECT_EQ(Engine().SetScriptTextByCodeInfo(&info), "");
    EXPECT_EQ(Engine().SetScriptTextByCodeInfo(nullptr), "");

    // A record with only a block still gets the separating empty line in front.
    info.arrFunctionCode.Add("Function f()\r\nEnd Function\r\n");
    EXPECT_EQ(Engine().SetScriptTextByCodeInfo(&info), "\r\nFunction f()\r\nEnd Function\r\n\r\n");
}

TEST(WholeScript, NullInterfacesEventsAndParametersAreSkipped) {
    TestForm form = OrderForm();
    auto gaps = std::make_unique<CVXInterfaceInfo>();
    gaps->AddMethod(nullptr);
    auto* event = new CVXMethodInfo("Move", 9);
    event->AddParam(nullptr);
    event->AddParam(new CVXMethodParamInfo("X"));
    gaps->AddMethod(event);
    form.m_interfaces.InsertAt(0, gaps.get());
    form.m_names.InsertAt(0, CString("pic"));
    form.m_interfaces.InsertAt(0, static_cast<CVXInterfaceInfo*>(nullptr));
    form.m_names.InsertAt(0, CString("nothing"));
    // A name list shorter than the interfaces: the interface without a name has no handlers.
    form.m_interfaces.Add(gaps.get());

    VB_ALL_PROGRAMME_INFO info;
    CStringArray lines;
    form.Parse("\r\nSub pic_Move(X)\r\nEnd Sub\r\n", info, lines);
    EXPECT_EQ(Join(info.arrCtrlEventCode), "Sub pic_Move(X)\r\nEnd Sub\r\n");
}

TEST(WholeScript, FormHandlersKeepTheirIdsInTheOrderOfTheInterface) {
    TestForm form = OrderForm();
    VB_ALL_PROGRAMME_INFO info;
    CStringArray lines;
    form.Parse("\r\nSub Form_Unload(Cancel)\r\nEnd Sub\r\n\r\nSub Form_Load()\r\nEnd Sub\r\n", info,
               lines);
    EXPECT_EQ(JoinIds(info.arrFormEventID), "1,2");
    EXPECT_EQ(Join(info.arrFormEventCode),
              "Sub Form_Load()\r\nEnd Sub\r\n|Sub Form_Unload(Cancel)\r\nEnd Sub\r\n");

    // Without form events every handler is a control's.
    lines.RemoveAll();
    Engine().ChangeScripText("\r\nSub Form_Load()\r\nEnd Sub\r\n", lines);
    Engine().GetCodeInfoByScriptText(lines, form.m_names, nullptr, form.m_interfaces, &info);
    EXPECT_EQ(Join(info.arrCtrlEventCode), "Sub Form_Load()\r\nEnd Sub\r\n");
    EXPECT_TRUE(info.arrFormEventID.IsEmpty());
}

// Scripts made of lines that exercise every rule: handler heads in all spellings, Sub and
// Function heads, end lines, blank and empty lines, stray text.
CString RandomScript(std::mt19937& random, int lineCount) {
    static const char* const pool[] = {"",
                                       "",
                                       "",
                                       "Sub cmdOK_Click()",
                                       "sub CMDOK_CLICK()",
                                       "Sub cmdOK_Click() ",
                                       "Sub cmdOK_KeyDown(KeyCode, Shift)",
                                       "Sub txtName_Change()",
                                       "Sub txtName_KeyPress(KeyAscii)",
                                       "Sub Form_Load()",
                                       "Sub Form_Unload(Cancel)",
                                       "Sub Helper()",
                                       "Subtotal = 3",
                                       "Function F(x)",
                                       "function g()",
                                       "End Sub",
                                       "end sub",
                                       "End Function",
                                       "END FUNCTION",
                                       "End Sub ",
                                       "x = 1",
                                       "' comment",
                                       "  Sub indented()",
                                       "Set VEvent = new VfxEvent",
                                       "   ",
                                       "Dim a"};
    std::uniform_int_distribution<std::size_t> pick(0, std::size(pool) - 1);
    CString script;
    for (int i = 0; i < lineCount; ++i) {
        script += pool[pick(random)];
        script += random() % 7 == 0 ? "\n" : "\r\n";
    }
    if (random() % 3 == 0)
        script += "tail without line end";
    return script;
}

void ExpectSameRecords(const VB_ALL_PROGRAMME_INFO& a, const VB_ALL_PROGRAMME_INFO& b) {
    EXPECT_EQ(a.strGlobal, b.strGlobal);
    EXPECT_EQ(Join(a.arrCtrlEventCode), Join(b.arrCtrlEventCode));
    EXPECT_EQ(Join(a.arrSubCode), Join(b.arrSubCode));
    EXPECT_EQ(Join(a.arrFunctionCode), Join(b.arrFunctionCode));
    EXPECT_EQ(Join(a.arrFormEventCode), Join(b.arrFormEventCode));
    EXPECT_EQ(JoinIds(a.arrFormEventID), JoinIds(b.arrFormEventID));
}

TEST(WholeScript, IndexedParseEqualsThePlainWalkOnGeneratedScripts) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 400; ++round) {
        CString script = RandomScript(random, static_cast<int>(random() % 60));
        SCOPED_TRACE(script.Str());
        TestForm form = OrderForm();
        VB_ALL_PROGRAMME_INFO fast, plain;
        CStringArray fastLines, plainLines;
        form.Parse(script, fast, fastLines);
        Engine().ChangeScripText(script, plainLines);
        ReferenceParse(Engine(), plainLines, form.m_names, form.m_form, form.m_interfaces, plain);
        ExpectSameRecords(fast, plain);
        EXPECT_EQ(Join(fastLines), Join(plainLines));
        if (::testing::Test::HasFailure())
            return;
    }
}

// Scripts of whole blocks, each head used once: handlers (in any case), Subs and Functions
// with bodies of plain lines, stray lines and runs of empty lines between them, in any order.
CString WellFormedScript(std::mt19937& random) {
    static const char* const heads[] = {"Sub cmdOK_Click()",    "sub CMDOK_KEYDOWN(KeyCode, Shift)",
                                        "Sub txtName_Change()", "Sub txtName_KeyPress(KeyAscii)",
                                        "Sub Form_Load()",      "Sub Form_Unload(Cancel)",
                                        "Sub Helper()",         "Sub cmdOK_Click() ' not a handler",
                                        "Function F(x)",        "Function G()"};
    static const char* const body[] = {
        "x = 1", "  If a Then", "' Sub in a comment", "", "Call Helper()", "\tEnd If", "   "};
    static const char* const stray[] = {"' stray", "Dim late", ""};
    std::vector<const char*> order(std::begin(heads), std::end(heads));
    std::shuffle(order.begin(), order.end(), random);
    CString script;
    for (int i = 0; i < static_cast<int>(random() % 4); ++i)
        script += CString("Dim g") + CString('0' + i) + "\r\n";
    for (const char* head : order) {
        if (random() % 3 == 0)
            continue;
        for (int i = 0; i < static_cast<int>(random() % 3); ++i)
            script += CString(stray[random() % std::size(stray)]) + "\r\n";
        script += CString(head) + "\r\n";
        for (int i = 0; i < static_cast<int>(random() % 4); ++i)
            script += CString(body[random() % std::size(body)]) + "\r\n";
        script += head[0] == 'F' ? "End Function\r\n" : "End Sub\r\n";
    }
    return script;
}

TEST(WholeScript, ASecondRoundTripChangesNothing) {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        CString script = WellFormedScript(random);
        SCOPED_TRACE(script.Str());
        TestForm form = OrderForm();
        CString once = form.RoundTrip(script);
        EXPECT_EQ(form.RoundTrip(once), once);
        if (::testing::Test::HasFailure())
            return;
    }
    TestForm form = OrderForm();
    CString once = form.RoundTrip(OrderScript);
    EXPECT_EQ(form.RoundTrip(once), once);
}

TEST(WholeScript, KeywordsBeyondAsciiAreFoundWithoutRegardToCase) {
    // A Sub keyword with a letter of code page 1252: head lines are matched by the full
    // comparison of the page, in which the capital and the small letter are one.
    TestForm form = OrderForm();
    ReplacedResources resources(
        {{IDS_PROCEDURE_KEYWORDS, "S\xfc\x62\nEnde S\xfc\x62\nFunktion\nEnde Funktion\nDim"}});
    CTalvorScriptTextDisposal engine;
    const CString script = "\r\nS\xdc\x42 CMDOK_click()\r\nx\r\nende s\xfc\x62\r\n\r\n"
                           "S\xfc\x62 helper()\r\nEnde S\xfc\x62\r\n";
    CStringArray fastLines, plainLines;
    VB_ALL_PROGRAMME_INFO fast, plain;
    engine.ChangeScripText(script, fastLines);
    plainLines = fastLines;
    engine.GetCodeInfoByScriptText(fastLines, form.m_names, form.m_form, form.m_interfaces, &fast);
    ReferenceParse(engine, plainLines, form.m_names, form.m_form, form.m_interfaces, plain);
    EXPECT_EQ(Join(fast.arrCtrlEventCode), "S\xdc\x42 CMDOK_click()\r\nx\r\nende s\xfc\x62\r\n");
    EXPECT_EQ(Join(fast.arrSubCode), "S\xfc\x62 helper()\r\nEnde S\xfc\x62\r\n");
    ExpectSameRecords(fast, plain);
    EXPECT_EQ(Join(fastLines), Join(plainLines));
}

TEST(WholeScript, AHandlerWithoutEndLineTakesTheTrailingEmptyLineNextTime) {
    // The text of such a handler runs to the end of the script, so each parse adds the empty
    // line that the previous writing put behind the last block.
    TestForm form = OrderForm();
    CString once = form.RoundTrip("\r\nSub cmdOK_Click()\r\nx\r\n");
    EXPECT_EQ(once, "\r\nSub cmdOK_Click()\r\nx\r\n\r\n");
    EXPECT_EQ(form.RoundTrip(once), "\r\nSub cmdOK_Click()\r\nx\r\n\r\n\r\n");
}

} // namespace
} // namespace talvor::engine::testing
