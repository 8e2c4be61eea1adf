// Renaming a control across script text: what is rewritten and what is left alone, handler
// heads, multi-byte text, names with pattern characters, and real scripts renamed there and
// back.
#include "engine/script_text_disposal.h"
#include "platform/codepage/code_page.h"
#include "tests/engine/engine_test_support.h"
#include "tests/support/corpus.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

#include <cctype>

namespace talvor::engine::testing {
namespace {

std::string Renamed(const char* script, const char* oldName, const char* newName,
                    CVXInterfaceInfo* events = nullptr) {
    CString text = script;
    Engine().ChangeNameToScriptTxt(text, oldName, newName, events);
    return text.Str();
}

TEST(Renaming, RewritesUsesAndLeavesTheRestAlone) {
    EXPECT_EQ(Renamed("", "a", "b"), "");
    // In front of a point yes, behind a point no; longer words and literals no; comments yes.
    EXPECT_EQ(Renamed(" btn.Caption = x.btn & btnX & \"btn\" ' btn\r\n", "btn", "cmdGo"),
              " cmdGo.Caption = x.btn & btnX & \"btn\" ' cmdGo\r\n");
    // White space between the delimiter and the name stays; the line end is a delimiter.
    EXPECT_EQ(Renamed("x = (   BTN   )\r\ny = btn\r\n", "btn", "b"), "x = (   b   )\r\ny = b\r\n");
    // The very first and last text of the script have no delimiter on one side.
    EXPECT_EQ(Renamed("btn = 1 + btn", "btn", "b"), "btn = 1 + btn");
    EXPECT_EQ(Renamed("\"x\" & btn & \"y\"\r\n", "btn", "b"), "\"x\" & b & \"y\"\r\n");
    // A name beside a literal changes, the same name inside it doesn't.
    EXPECT_EQ(Renamed("x = \"a btn b\"&btn&\"btn\"\n", "btn", "Other"),
              "x = \"a btn b\"&Other&\"btn\"\n");
    // Names of another length leave all other text as it was, behind the last match too.
    EXPECT_EQ(Renamed(" a(a)+a*a\n tail", "a", "longer"), " longer(longer)+longer*longer\n tail");
}

TEST(Renaming, UsesRightBehindAMatchAreRenamedToo) {
    EXPECT_EQ(Renamed(" n+n-n\r\nn = n\r\n", "n", "count"),
              " count+count-count\r\ncount = count\r\n");
}

TEST(Renaming, HandlerHeadsFollowWhenTheEventsAreGiven) {
    auto events =
        talvor::host::BuildInterface("ButtonEvents", {{"Click", 1, {}}, {"DblClick", 2, {}}});
    const char* script = "Sub btn_click()\r\nCall btn_DblClick ( )\r\nbtn_Other()\r\n"
                         "Sub btn_Click2()\r\nx = \"btn_Click()\"\r\nEnd Sub\r\n";
    EXPECT_EQ(Renamed(script, "btn", "cmdOK", events.get()),
              "Sub cmdOK_click()\r\nCall cmdOK_DblClick ( )\r\nbtn_Other()\r\n"
              "Sub btn_Click2()\r\nx = \"btn_Click()\"\r\nEnd Sub\r\n");
    EXPECT_EQ(Renamed(script, "btn", "cmdOK"), script);
}

TEST(Renaming, MultiByteTextIsRewrittenAtTheRightPlace) {
    const unsigned saved = platform::SystemCodePage();
    ASSERT_TRUE(platform::SetSystemCodePage(936));
    // "\xB0\xB4\xC5\xA5" is two double-byte characters; "\xD6\x5C" has a trail byte that is
    // a backslash in ASCII.
    EXPECT_EQ(Renamed("x = \"\xB0\xB4\xC5\xA5\" & btn ' \xD6\x5C btn\r\n", "btn", "go"),
              "x = \"\xB0\xB4\xC5\xA5\" & go ' \xD6\x5C go\r\n");
    ASSERT_TRUE(platform::SetSystemCodePage(platform::CodePageUtf8));
    EXPECT_EQ(
        Renamed("' \xE2\x82\xAC\xF0\x9F\x98\x80 btn\r\nbtn.x = \"\xC3\xA9\"\r\n", "btn", "go"),
        "' \xE2\x82\xAC\xF0\x9F\x98\x80 go\r\ngo.x = \"\xC3\xA9\"\r\n");
    platform::SetSystemCodePage(saved);
}

TEST(Renaming, NamesWithPatternCharactersNeverBreakTheText) {
    const char* script = " a(b) = c.d + [e] * f\r\n";
    for (const char* name : {"a(", ")", "[", "\\", "*", "a|", "(?=", "$&", "{2}", "+"}) {
        talvor::testing::ClearShownMessages();
        CString text = script;
        Engine().ChangeNameToScriptTxt(text, name, "z", nullptr);
        EXPECT_EQ(text.GetLength() >= 10, true) << name;
    }
    // A refused pattern rewrites nothing and says why.
    talvor::testing::ClearShownMessages();
    EXPECT_EQ(Renamed(script, "a(", "z"), script);
    EXPECT_FALSE(talvor::testing::ShownMessages().empty());
    // A new name with replacement characters goes in as it stands.
    EXPECT_EQ(Renamed(" a(b)\n", "a", "$&$1"), " $&$1(b)\n");
    EXPECT_EQ(Renamed(" a(b)\n", "", "z"), " a(b)\n");
}

// Whole-word uses of name outside string literals, counted by a plain scan: a word that does
// not follow a point, and that neither starts nor ends the text.
int CountUses(const std::string& text, const std::string& name) {
    int count = 0;
    auto isWord = [](char ch) { return std::isalnum(static_cast<unsigned char>(ch)) || ch == '_'; };
    bool inLiteral = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            // A quote only opens a literal if another quote follows somewhere.
            if (inLiteral || text.find('"', i + 1) != std::string::npos)
                inLiteral = !inLiteral;
            continue;
        }
        if (inLiteral || i == 0 || isWord(text[i - 1]) || !isWord(text[i]))
            continue;
        std::size_t end = i;
        while (end < text.size() && isWord(text[end]))
            ++end;
        std::size_t before = i - 1;
        while (before > 0 && std::isspace(static_cast<unsigned char>(text[before])))
            --before;
        if (end < text.size() && text[before] != '.' &&
            strcasecmp(text.substr(i, end - i).c_str(), name.c_str()) == 0)
            ++count;
        i = end - 1;
    }
    return count;
}

TEST(Renaming, RealScriptsRenamedThereAndBack) {
    int renamed = 0;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        if (path.size() < 4 || strcasecmp(path.c_str() + path.size() - 4, ".vbs") != 0)
            continue;
        const std::string original = talvor::testing::ReadFileBytes(path);
        // The first declared variable of the script.
        std::size_t dim = original.find("Dim ");
        if (dim == std::string::npos)
            continue;
        std::size_t end = dim + 4;
        while (end < original.size() &&
               (std::isalnum(static_cast<unsigned char>(original[end])) || original[end] == '_'))
            ++end;
        const std::string name = original.substr(dim + 4, end - dim - 4);
        if (name.empty())
            continue;
        const int uses = CountUses(original, name);
        CString text(original);
        Engine().ChangeNameToScriptTxt(text, name.c_str(), "Zq9Renamed", nullptr);
        EXPECT_EQ(CountUses(text.Str(), "Zq9Renamed"), uses) << path << " " << name;
        EXPECT_EQ(CountUses(text.Str(), name), 0) << path << " " << name;
        Engine().ChangeNameToScriptTxt(text, "Zq9Renamed", name.c_str(), nullptr);
        CString back = text, before(original);
        back.MakeLower();
        before.MakeLower();
        EXPECT_EQ(back.Str(), before.Str()) << path;
        ++renamed;
    }
    EXPECT_GT(renamed, 30);
}

} // namespace
} // namespace talvor::engine::testing
