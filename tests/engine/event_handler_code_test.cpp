// One procedure into its record and back, with the event object lines that the system writes
// behind the head of every handler.
#include "engine/script_text_disposal.h"
#include "tests/engine/engine_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace talvor::engine::testing {
namespace {

// "0,0,...,0": count zeros joined by commas.
std::string Zeros(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += i == 0 ? "0" : ",0";
    return text;
}

int ArgumentCount(const std::string& initLine) {
    std::size_t open = initLine.find('('), close = initLine.rfind(')');
    std::string arguments = initLine.substr(open + 1, close - open - 1);
    return 1 + static_cast<int>(std::count(arguments.begin(), arguments.end(), ','));
}

VB_SUB_PROGRAMME_INFO Record(const char* variable, const char* parameter,
                             std::initializer_list<const char*> code) {
    return VB_SUB_PROGRAMME_INFO{variable, parameter, Lines(code)};
}

TEST(EventHandlerCode, AnEmptyHandlerHasItsEventObjectLinesWithAHundredZeros) {
    VB_SUB_PROGRAMME_INFO empty;
    EXPECT_EQ(Engine().SetEventCodeByData("cmdOK_Click", &empty, 0).Str(),
              "Sub cmdOK_Click()\r\n"
              "Set VEvent = new VfxEvent\r\n"
              "Call VEvent.Init(" +
                  Zeros(100) +
                  ")\r\n"
                  "\r\n"
                  "\r\n"
                  "End Sub\r\n");
    EXPECT_EQ(Engine().SetEventCodeByData("Twice", &empty, 1),
              "Function Twice()\r\n\r\nEnd Function\r\n");
    EXPECT_EQ(Engine().SetEventCodeByData("", &empty, 0), "");
    EXPECT_EQ(Engine().SetEventCodeByData("x", nullptr, 0), "");
}

TEST(EventHandlerCode, InitArgumentsArePaddedToAHundred) {
    struct Case {
        const char* what;
        std::string parameter;
        std::string arguments;
    };
    std::string ninetyNineCommas = "p0";
    for (int i = 1; i < 100; ++i)
        ninetyNineCommas += ",p" + std::to_string(i);
    const Case cases[] = {
        {"one name and 99 zeros", "KeyAscii", "KeyAscii," + Zeros(99)},
        {"two names and 98 zeros", "KeyCode, Shift", "KeyCode, Shift," + Zeros(98)},
        {"the list keeps its blanks", " a ,  b", " a ,  b," + Zeros(98)},
        {"the comment is no argument", "a'first", "a," + Zeros(99)},
        {"a hundred names need no zero", ninetyNineCommas, ninetyNineCommas},
        {"no comma at the very end", ninetyNineCommas + ",", ninetyNineCommas},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        VB_SUB_PROGRAMME_INFO info;
        info.strParameter = c.parameter.c_str();
        CStringArray lines;
        Engine().ChangeScripText(Engine().SetEventCodeByData("h", &info, 0), lines);
        ASSERT_GE(lines.GetSize(), 3);
        EXPECT_EQ(lines[2].Str(), "Call VEvent.Init(" + c.arguments + ")");
        EXPECT_EQ(ArgumentCount(lines[2].Str()), 100);
    }
}

TEST(EventHandlerCode, HeadCommentIsWrittenBehindTheParentheses) {
    VB_SUB_PROGRAMME_INFO info = Record("", "a, b'first'dropped", {"x = a"});
    CString text = Engine().SetEventCodeByData("Add", &info, 1);
    EXPECT_EQ(text, "Function Add(a, b)'first\r\n\r\nx = a\r\nEnd Function\r\n");
}

TEST(EventHandlerCode, WrittenTextReadsBackAsTheSameRecord) {
    const VB_SUB_PROGRAMME_INFO records[] = {
        Record("Dim a, b'one,two\r\na = 1\r\n", "KeyCode, Shift'keys",
               {"If a Then", "b = 2 ' two", "End If"}),
        Record("", "x", {}),
        Record("Dim t'\r\n", "p", {"", "t = p", ""}),
    };
    for (int bFunction : {0, 1}) {
        for (const VB_SUB_PROGRAMME_INFO& record : records) {
            SCOPED_TRACE(record.strParameter.Str() + " as " + (bFunction ? "Function" : "Sub"));
            VB_SUB_PROGRAMME_INFO copy = record;
            CString text = Engine().SetEventCodeByData("ctl_Event", &copy, bFunction);
            VB_SUB_PROGRAMME_INFO read;
            Engine().GetDataByEventCode(text, &read);
            EXPECT_EQ(read.strVariable, record.strVariable);
            EXPECT_EQ(read.strParameter, record.strParameter);
            EXPECT_EQ(Join(read.arrCode), Join(record.arrCode));
            EXPECT_EQ(read.arrCode.GetSize(), record.arrCode.GetSize());
        }
    }
}

TEST(EventHandlerCode, ReadingTakesTheHeadApart) {
    struct Case {
        const char* what;
        const char* code;
        const char* variable;
        const char* parameter;
        const char* body;
        int bodySize;
    };
    const Case cases[] = {
        {"one line gives an empty record", "Sub a(x)\r\n", "", "", "", 0},
        {"head and end give an empty body", "Sub a(x)\r\nEnd Sub\r\n", "", "x", "", 0},
        {"a comment without parameters is lost", "Sub a() ' note\r\n\r\ny\r\nEnd Sub\r\n", "", "",
         "y", 1},
        {"the comment counts from the first ')'", "Sub a(x) 'c (d) 'e\r\n\r\nEnd Sub\r\n", "",
         "x'c (d) 'e", "", 0},
        {"')' before '(' gives no parameters", "Sub a)x(\r\n\r\nEnd Sub\r\n", "", "", "", 0},
        {"without an empty line the lines are declarations and body",
         "Sub a(x)\r\nDim v\r\nv = x\r\nEnd Sub\r\n", "Dim v\r\nv = x\r\n", "x", "Dim v|v = x", 2},
        {"hand-written handler without event object lines",
         "Sub a(x)\r\nDim v\r\n\r\nv = x ' keep\r\nEnd Sub\r\n", "Dim v\r\n", "x", "v = x ' keep",
         1},
        {"event object lines in other case are found",
         "Sub a()\r\nset vevent = NEW VFXEVENT\r\nCall VEvent.Init(0)\r\n\r\n\r\nz\r\nEnd Sub\r\n",
         "", "", "z", 1},
        {"the Init call must have its case",
         "Sub a()\r\nSet VEvent = new VfxEvent\r\ncall vevent.init(0)\r\n\r\nz\r\nEnd Sub\r\n",
         "Set VEvent = new VfxEvent\r\ncall vevent.init(0)\r\n", "", "z", 1},
        {"the last line is dropped whatever it is", "Sub a(x)\r\n\r\ny\r\nz\r\n", "", "x", "y", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        VB_SUB_PROGRAMME_INFO info = Record("stale\r\n", "stale", {"stale"});
        Engine().GetDataByEventCode(c.code, &info);
        EXPECT_EQ(info.strVariable, c.variable);
        EXPECT_EQ(info.strParameter, c.parameter);
        EXPECT_EQ(Join(info.arrCode), c.body);
        EXPECT_EQ(info.arrCode.GetSize(), c.bodySize);
    }
}

TEST(EventHandlerCode, AHandWrittenHandlerGetsItsEventObjectLinesWhenWritten) {
    VB_SUB_PROGRAMME_INFO info;
    Engine().GetDataByEventCode("Sub txt_KeyPress(KeyAscii)\r\n\r\nBeep\r\nEnd Sub\r\n", &info);
    EXPECT_EQ(Engine().SetEventCodeByData("txt_KeyPress", &info, 0).Str(),
              "Sub txt_KeyPress(KeyAscii)\r\n"
              "Set VEvent = new VfxEvent\r\n"
              "Call VEvent.Init(KeyAscii," +
                  Zeros(99) +
                  ")\r\n"
                  "\r\n"
                  "\r\n"
                  "Beep\r\n"
                  "End Sub\r\n");
}

} // namespace
} // namespace talvor::engine::testing
