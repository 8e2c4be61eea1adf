// The HTML and XML line parser: the documented run lists, tags, strings and comments inside
// tags, script bodies across lines, and words at the end of a line.
#include "tests/syntax/parser_harness.h"

#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

struct LineCase {
    const char* what;
    unsigned long in;
    const char* line;
    const char* runs;
    unsigned long out;
};

template <std::size_t N> void ExpectLines(ParserUnderTest& parser, const LineCase (&cases)[N]) {
    for (const LineCase& c : cases) {
        SCOPED_TRACE(c.what);
        ParsedLine parsed = Parse(parser, c.in, c.line);
        EXPECT_EQ(parsed.runs, c.runs);
        EXPECT_EQ(parsed.cookie, c.out);
    }
}

TEST(HtmlLineParser, DocumentedExamples) {
    ParserUnderTest html;
    UseLanguage(html, 14);
    const LineCase cases[] = {
        {"anchor", 0, "<a href=\"x\">text</a> ",
         "(0,2) (0,1) (1,1) (2,2) (3,1) (7,2) (8,4) (11,2) (11,1) (12,2) (16,1) (18,1) (19,1) "
         "(20,2)",
         0},
        {"script", 0, "<script>var a;</script> ",
         "(0,2) (0,1) (1,1) (7,1) (8,4) (14,1) (14,1) (16,1) (22,1) (23,2)", 0},
    };
    ExpectLines(html, cases);
}

TEST(HtmlLineParser, TextOutsideTags) {
    ParserUnderTest html;
    UseLanguage(html, 14);
    const LineCase cases[] = {
        // n bytes of ">" give 2n + 1 runs, the most the parser may add.
        {"greater-than signs alone", 0, ">>>", "(0,2) (0,1) (1,2) (1,1) (2,2) (2,1) (3,2)", 0},
        {"quotes and entities stay plain", 0, "a \"b\" &amp; 12", "(0,2)", 0},
        {"number rule wins over an attribute value", 0, "<font color=#FF0000>",
         "(0,2) (0,1) (1,1) (5,2) (6,1) (11,2) (12,3) (19,1) (20,2)", 0},
        {"unquoted value is normal", 0, "<td width=x>",
         "(0,2) (0,1) (1,1) (3,2) (4,1) (9,2) (10,2) (11,1) (12,2)", 0},
        {"greater-than in a string keeps the tag open", 0, "<a t=\"x>y\" zz",
         "(0,2) (0,1) (1,1) (2,2) (3,1) (4,2) (5,4) (10,2)", 0x80},
    };
    ExpectLines(html, cases);
}

TEST(HtmlLineParser, CommentsExistOnlyInsideTags) {
    ParserUnderTest html;
    UseLanguage(html, 14);
    const LineCase cases[] = {
        // The comment replaces the keyword run of its "<"; after "-->" the tag stays open.
        {"comment on one line", 0, "<!-- x -->", "(0,2) (0,0) (10,2)", 0x80},
        {"comment goes on", 0, "<!-- open", "(0,2) (0,0)", 0x84},
        {"carried comment closes", 0x84, "end -->", "(0,0) (7,2)", 0x80},
        {"text behind a closed comment is tag content", 0x84, "--> x>",
         "(0,0) (3,2) (4,1) (5,1) (6,2)", 0},
    };
    ExpectLines(html, cases);

    ParserUnderTest xml;
    UseLanguage(xml, 34);
    const LineCase xmlCases[] = {
        {"xml comment", 0, "<!-- c --> <a/>",
         "(0,2) (0,0) (10,2) (11,1) (12,1) (13,2) (14,1) (15,2)", 0},
        {"xml has no strings", 0, "<a b=\"<\">",
         "(0,2) (0,1) (1,1) (2,2) (3,1) (4,2) (6,1) (8,1) (9,2)", 0},
    };
    ExpectLines(xml, xmlCases);
}

TEST(HtmlLineParser, ScriptBodies) {
    ParserUnderTest html;
    UseLanguage(html, 14);
    const LineCase cases[] = {
        {"upper-case opening tag", 0, "<SCRIPT>", "(0,2) (0,1) (1,1) (7,1) (8,4)", 0x40},
        {"body line", 0x40, "if (a < b) x = \"<\";", "(0,4)", 0x40},
        {"mixed-case closing tag", 0x40, "x</Script> ", "(0,4) (1,1) (1,1) (3,1) (9,1) (10,2)", 0},
        // The closing tag needs all of "</script" inside the line.
        {"too short for a closing tag", 0x40, "</scrip", "(0,4)", 0x40},
    };
    ExpectLines(html, cases);
}

TEST(HtmlLineParser, WordAtLineEndAsksTheKeywordList) {
    ParserUnderTest html;
    UseLanguage(html, 14, "script,td");
    const LineCase cases[] = {
        {"keyword behind a slash starts at the slash", 0, "</td", "(0,2) (0,1) (1,1)", 0x80},
        {"script at the end opens a body", 0, "<script", "(0,2) (0,1) (1,1)", 0xC0},
        {"closing script filling the line", 0x40, "</script", "(0,4) (0,1) (1,1)", 0x80},
        {"closing script with the tag open", 0xC0, "</script", "(0,4) (0,1) (1,1)", 0x80},
        {"number at the end", 0x80, "#ABC", "(0,2) (0,3)", 0x80},
        {"other word at the end", 0x80, "name", "(0,2)", 0x80},
    };
    ExpectLines(html, cases);
}

TEST(HtmlLineParser, CookieOnlyCallWithoutCommentRulesKeepsTheCookie) {
    ParserUnderTest html;
    AfxGetApp()->WriteProfileString(RuleSection + CString("HTML"), "BeginCommentExStr0", " ");
    UseLanguage(html, 14);
    ASSERT_EQ(html.m_nBeginCommentExCount, 0);
    CString line("<b");
    int count = 0;
    EXPECT_EQ(html.ParseLine(0, line, nullptr, count), 0u);
    std::vector<COLORINFO> runs(5);
    EXPECT_EQ(html.ParseLine(0, line, runs.data(), count), 0x80u); // with runs it does parse
}

} // namespace
} // namespace talvor::testing
