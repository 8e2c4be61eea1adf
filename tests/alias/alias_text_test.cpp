// The text primitives of the alias store, byte for byte, in single-byte, double-byte and UTF-8
// code pages.
#include "tests/alias/alias_probe.h"

#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>

using talvor::testing::AliasProbe;

namespace {

// Restores the code page a test switched.
struct CodePageScope {
    explicit CodePageScope(unsigned page) : m_former(talvor::platform::SystemCodePage()) {
        talvor::platform::SetSystemCodePage(page);
    }
    ~CodePageScope() { talvor::platform::SetSystemCodePage(m_former); }
    unsigned m_former;
};

} // namespace

TEST(AliasText, ValueStandsBetweenFirstAndLastPartner) {
    struct Case {
        const char* line;
        char sep;
        const char* value;
    } cases[] = {
        {"Alias=\"Title\"", 0, "Title"},
        {"Alias=\"say \"hi\" twice\"", 0, "say \"hi\" twice"},
        {"Alias=\"a\"b\"", '"', "a\"b"},
        {"Alias=\"", 0, ""},    // one quote: the two positions coincide
        {"Alias=\"\"", 0, ""},  // two adjacent quotes
        {"Alias=Title", 0, ""}, // no quote at all
        {"Default=[0x0804]", '[', "0x0804"},
        {"x=(a(b)c)", '(', "a(b)c"},
        {"x={abc}", '{', "abc"},
        {"x=<a>", '<', "a"},
        {"x=\"v\"", ' ', "v"}, // a blank separator means the quote
        {"x=]a[", '[', ""},    // the partner stands before the separator
        {"", 0, ""},
    };
    AliasProbe alias;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(alias.GetValue(c.line, c.sep), c.value);
    }
    EXPECT_EQ(alias.GetValue(nullptr, 0), "");
}

TEST(AliasText, ValueLinesMatchKeysAsCaseInsensitivePrefixes) {
    struct Case {
        const char* line;
        const char* key;
        const char* value;
        char sep;
        int expected;
    } cases[] = {
        {"Name=\"Caption\"", "Name", nullptr, 0, 1},
        {"NAME=\"Caption\"", "name", "CAPTION", 0, 1},
        {"Names=\"Caption\"", "Name", "Caption", 0, 1}, // a longer word still is the key
        {"Name=\"Caption\"", "Name", "Value", 0, 0},
        {"Name=\"\"", "Name", "", 0, 1},         // no value asked for
        {"Name=\"\"", "Name", "x", 0, 0},        // an empty value never matches
        {"Nam", "Name", nullptr, 0, 0},          // shorter than the key
        {" Name=\"a\"", "Name", nullptr, 0, 0},  // without sep nothing is trimmed
        {"[0x0804]", "0x0804", nullptr, '[', 1}, // separators go, then blanks
        {"  [0x0804]  ", "0x0804", nullptr, '[', 1},
        {"[0x0804]", "0x0409", nullptr, '[', 0},
        {"Default=[0x0409]", "Default", "0x0409", '[', 1},
        {"", "Name", nullptr, 0, 0},
    };
    AliasProbe alias;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(alias.IsValueLine(c.line, c.key, c.value, c.sep), c.expected);
    }
}

TEST(AliasText, FindLineTrimsTheTextButNotTheWantedLine) {
    AliasProbe alias;
    const char* text = "a\r\n  ;Gauge Control \r\nCLSID=\"x\"";
    EXPECT_EQ(alias.FindLine(text, ";gauge control"), 1);
    EXPECT_EQ(alias.FindLine(text, " ;Gauge Control"), 0);
    EXPECT_EQ(alias.FindLine(text, "CLSID"), 0);
    EXPECT_EQ(alias.FindLine("", ""), 1); // the empty text is one empty line
}

TEST(AliasText, SectionsRunFromTheirHeadToTheNextPrefix) {
    AliasProbe alias;
    const char* text = "x\r\n  [.Properties]  \r\nName=\"A\"\r\n\r\n  [.Events]\r\nName=\"B\"\r\n"
                       "[.Methods]\r\nName=\"C\"\r\n";
    // The indented "[.Events]" doesn't end the section: only carriage returns are stripped
    // before the prefix test. The head is found with blanks around it.
    EXPECT_EQ(alias.GetSection(text, "[.properties]", "[."),
              "Name=\"A\"\r\n\r\n  [.Events]\r\nName=\"B\"\r\n");
    // The piece behind the final line feed is one more line.
    EXPECT_EQ(alias.GetSection(text, "[.Methods]", "[."), "Name=\"C\"\r\n\r\n");
    EXPECT_EQ(alias.GetSection("Name=\"A\"\n[0x0804]\nAlias=\"T\"", "[0x0804]", "[0x"),
              "Alias=\"T\"\r\n");
    EXPECT_EQ(alias.GetSection(text, "[.Nothing]", "[."), "");
    EXPECT_EQ(alias.GetSection("", "[.Events]", "[."), "");
    // A recurring head is taken like any other line.
    EXPECT_EQ(alias.GetSection("[0x1]\r\na\r\n[0x1]\r\nb", "[0x1]", "[."), "a\r\n[0x1]\r\nb\r\n");
}

TEST(AliasText, EntriesRunToTheNextLineOfTheKey) {
    AliasProbe alias;
    const char* section = "Name=\"Caption\"\r\n[0x0804]\r\nAlias=\"T\"\r\n\r\n"
                          "  Name=\"Value\"  \r\n[0x0409]\r\nName=\"Other\"\r\n";
    EXPECT_EQ(alias.GetEntry(section, "Name", "caption"), "[0x0804]\r\nAlias=\"T\"\r\n\r\n"
                                                          "  Name=\"Value\"  \r\n[0x0409]\r\n");
    // The entry head is found trimmed; the next head ends it only when it starts its line.
    EXPECT_EQ(alias.GetEntry(section, "Name", "Value"), "[0x0409]\r\n");
    EXPECT_EQ(alias.GetEntry(section, "Name", "Missing"), "");
    EXPECT_EQ(alias.FindEntry(section, "Name", "OTHER"), 1);
    EXPECT_EQ(alias.FindEntry(section, "Name", "Value"), 0); // its line starts with blanks
    EXPECT_EQ(alias.FindEntry(section, "Name", "Missing"), 0);
}

TEST(AliasText, FormatGivesEveryHeadABlankLineAndNoDoubleBlanks) {
    AliasProbe alias;
    alias.FormatIniText("Default=[0x0804]\n;Gauge\r\nCLSID=\"{1}\"\r\n  [.Properties]  \r\n\r\n"
                        "\r\nNAME=\"Caption\"\r\n[0x0804]\r\nAlias=\"Title\"\r\nnamed=\"x\"\r\n"
                        "[.Events]\r\nName=\"Click\"");
    EXPECT_EQ(alias.GetIniText(), "Default=[0x0804]\r\n;Gauge\r\nCLSID=\"{1}\"\r\n\r\n"
                                  "[.Properties]\r\n\r\nNAME=\"Caption\"\r\n[0x0804]\r\n"
                                  "Alias=\"Title\"\r\n\r\nnamed=\"x\"\r\n\r\n[.Events]\r\n\r\n"
                                  "Name=\"Click\"\r\n");
    alias.FormatIniText("");
    alias.FormatIniText(nullptr);
    EXPECT_EQ(alias.GetIniText().Left(16), "Default=[0x0804]"); // left as it was
    alias.FormatIniText("[.Events]");
    EXPECT_EQ(alias.GetIniText(), "\r\n[.Events]\r\n");
}

TEST(AliasText, DisposalTypeNameKeepsDigitsLettersAndBlanks) {
    struct Case {
        const char* in;
        const char* out;
    } cases[] = {
        {"A.B (1)", "A_B _1_"},
        {"Orvane 2_0 Form", "Orvane 2_0 Form"},
        {"Gauge\xd6\xd0", "Gauge__"}, // a double-byte character gives two underscores
        {"", ""},
    };
    AliasProbe alias;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.in);
        CString name(c.in);
        alias.DisposalTypeName(name);
        EXPECT_EQ(name, c.out);
    }
}

TEST(AliasText, TrailBytesAreNeverTakenForBracketsOrQuotes) {
    AliasProbe alias;
    {
        CodePageScope page(936);
        // 0x81 0x5D is one character whose trail byte is "]", 0x81 0x22 one with a quote.
        EXPECT_EQ(alias.GetValue("Default=[0x\x81]04]", '['), "0x\x81]04");
        EXPECT_EQ(alias.GetValue("Default=[ab\x81]", '['), "");
        EXPECT_EQ(alias.GetValue("Alias=\"\x81\"x\"", 0), "\x81\"x");
        EXPECT_EQ(alias.IsValueLine("[0x\x81]]", "0x\x81]", nullptr, '['), 1);
    }
    {
        CodePageScope page(65001);
        // UTF-8 text is handled whole: "Überschrift" compares without case.
        EXPECT_EQ(alias.IsValueLine("Alias=\"\xc3\x9c"
                                    "berschrift\"",
                                    "alias",
                                    "\xc3\xbc"
                                    "berschrift",
                                    0),
                  1);
    }
}
