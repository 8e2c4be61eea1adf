// Patterns with a run of plain characters are searched by that run first and tried anchored
// where a match could start. The same pattern with the run in a group, "(?:" + run + ")",
// means the same and takes the plain search: the two must agree on every match of the
// patterns the engine builds (a name's uses, its handlers, its definition, block heads), over
// whole scripts of the corpus and over texts made for the edges.
#include "platform/regex/detail/regex_literal_search.h"
#include "platform/regex/regex_engine.h"

#include "tests/support/corpus.h"
#include "tests/support/regexp_match_spans.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace talvor::platform;
using talvor::platform::detail::LiteralSearch;

std::u16string Wide(std::string_view text) {
    return std::u16string(text.begin(), text.end());
}

// Every match with its groups, Test's answer and Replace's text, all in one string.
std::string Answers(RegExpEngine& engine, std::u16string_view text) {
    std::string listed;
    for (const bool global : {false, true}) {
        engine.put_Global(global ? VARIANT_TRUE : VARIANT_FALSE);
        VARIANT_BOOL tested = VARIANT_FALSE;
        RegExpMatchCollection matches;
        std::u16string replaced;
        if (FAILED(engine.Test(text, &tested)) || FAILED(engine.Execute(text, &matches)) ||
            FAILED(engine.Replace(text, u"<$&>", &replaced)))
            return "failed";
        listed += tested ? "T" : "F";
        if (const std::string spans = talvor::testing::MatchSpans(matches); !spans.empty())
            listed.append(" ").append(spans);
        listed.append(" ").append(replaced.begin(), replaced.end()).append("\n");
    }
    return listed;
}

// The patterns the engine builds around a name; "@" stands for the name.
const char* const Shapes[] = {
    "[^\\w\\.]{1}\\s*@\\s*[^\\w]{1}",
    "[^\\w\\.]{1}\\s*@_Click\\s*\\(",
    "[^\\w\\.]{1}\\s*@(?=\\s*[^\\w]{1})",
    "[^\\w\\.]{1}\\s*@\\s*\\W{1}",
    "\\s+@\\s*\\(",
    "^\\s*@\\s+",
    "\\s*@\\s+ScriptCmdMsg\\(\\s*nID",
    "[\"']@[\"']",
    "[^a-z0-9_]*@",
    "\\t*@s?",
};

std::u16string Shape(const char* shape, std::string_view name, bool grouped) {
    std::string put;
    put.append(grouped ? "(?:" : "").append(name).append(grouped ? ")" : "");
    std::string pattern = shape;
    pattern.replace(pattern.find('@'), 1, put);
    return Wide(pattern);
}

void ExpectSameAsPlainSearch(std::string_view name, std::u16string_view text,
                             const std::string& where) {
    for (const char* shape : Shapes)
        for (const bool ignoreCase : {false, true}) {
            RegExpEngine narrowed, plain;
            narrowed.put_Pattern(Shape(shape, name, false));
            plain.put_Pattern(Shape(shape, name, true));
            for (RegExpEngine* engine : {&narrowed, &plain})
                engine->put_IgnoreCase(ignoreCase ? VARIANT_TRUE : VARIANT_FALSE);
            ASSERT_EQ(Answers(narrowed, text), Answers(plain, text))
                << where << ": " << shape << " with " << name << (ignoreCase ? " /i" : "");
        }
}

TEST(RegexLiteralSearch, RecognisesTheEnginesShapesAndLeavesTheRest) {
    LiteralSearch search;
    for (const char16_t* pattern :
         {u"[^\\w\\.]{1}\\s*txtQuantity\\s*[^\\w]{1}",
          u"[^\\w\\.]{1}\\s*txtQuantity_KeyPress\\s*\\(", u"\\s*Sub\\s+ScriptCmdMsg",
          u"^\\s*End Sub\\s*$", u"[\\t ]+\\.Value", u"abcd*", u"\\(\\)\\.x", u"[^a-z]abc|",
          u"[\\W]+abc"})
        EXPECT_EQ(LiteralSearch::Recognise(pattern, true, search),
                  std::u16string_view(pattern) != u"[^a-z]abc|")
            << std::string(pattern, pattern + std::char_traits<char16_t>::length(pattern));
    // Runs too short, parts before the run that can match letters or digits (the walk back
    // would cross words), groups, alternatives and back-references go to the plain search.
    for (const char16_t* pattern :
         {u"ab", u"\\s+\\w+\\s*\\(", u"\\w*Name", u".*Name", u"[^a-z]Name", u"(x)Name",
          u"Name|Other", u"a(b|c)|Name", u"\\1Name", u"x*Name", u"[a-z]Name", u"\\x41Name",
          u"a{Name", u"\\d?Name", u"[^\\W]Name"})
        EXPECT_FALSE(LiteralSearch::Recognise(pattern, false, search))
            << std::string(pattern, pattern + std::char_traits<char16_t>::length(pattern));
    // Ignoring case, [^a-z] leaves out the lower case alone, so it can match a capital.
    EXPECT_FALSE(LiteralSearch::Recognise(u"[^a-z]Name", true, search));
}

TEST(RegexLiteralSearch, FindsTheRunAndTheEarliestStart) {
    LiteralSearch search;
    ASSERT_TRUE(LiteralSearch::Recognise(u"[^\\w\\.]{1}\\s*txtQty", true, search));
    const std::u16string text = u"x = TXTQTY + a.txtqty+( \t txtQty)";
    const std::size_t first = search.NextRun(text, 0);
    EXPECT_EQ(first, 4u);
    EXPECT_EQ(search.EarliestStart(text, first, 0), 1u); // " = " can all be in front
    EXPECT_EQ(search.EarliestStart(text, first, 3), 3u); // never below the floor
    const std::size_t second = search.NextRun(text, first + 1);
    EXPECT_EQ(second, 15u);
    EXPECT_EQ(search.EarliestStart(text, second, 0), 15u); // "." cannot be in front
    const std::size_t third = search.NextRun(text, second + 1);
    EXPECT_EQ(third, 26u);
    EXPECT_EQ(search.EarliestStart(text, third, 0), 21u); // back to "+", not "y"
    EXPECT_EQ(search.NextRun(text, third + 1), LiteralSearch::npos);
    EXPECT_EQ(search.NextRun(u"txtQ", 0), LiteralSearch::npos);
}

TEST(RegexLiteralSearch, AgreesWithThePlainSearchOnTextsMadeForTheEdges) {
    const std::u16string texts[] = {
        u"",
        u"Name",
        u" Name ",
        u"Name(Name)Name",
        u"a.Name .Name\t\tName_Click (x)",
        u"NaNaName NNName nAME NAME_click(",
        u"\"Name\" 'Name' \"Name'",
        u"  \r\n  Name  \r\n\tName  ScriptCmdMsg(nID",
        u" \u212aName \u017fName \u00a0Name \u00e9Name", // beyond ASCII in front of the run
        u"\xd83d\xde00Name\xd800 Name\xdc00",            // surrogates
        u"NameName Name__Name Name",
    };
    for (const std::u16string& text : texts)
        ExpectSameAsPlainSearch("Name", text, std::string(text.begin(), text.end()));
    ExpectSameAsPlainSearch("NaNaName", u"NaNaNaName xNaNaName (NaNaName)", "overlapping runs");
    // A NUL in the pattern is a character like any other, not the end of a run.
    const std::string_view withNul("!!\0#,%&", 7);
    const std::string_view text(" !!\0#,%& ( \"!!\0#,%&\" #,%&", 26);
    ExpectSameAsPlainSearch(withNul, Wide(text), "NUL");
}

// Whole scripts, searched for names they use: the engine asks its questions of a whole script.
TEST(RegexLiteralSearch, AgreesWithThePlainSearchOverTheCorpus) {
    const std::regex declared(R"((?:Sub|Function|Dim|Set)\s+([A-Za-z_]\w{2,}))", std::regex::icase);
    int scripts = 0, names = 0;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        const std::string bytes = talvor::testing::ReadFileBytes(path);
        // Bytes as Windows-1252 code units below 0x100: enough for these patterns.
        const std::u16string text = Wide(bytes);
        std::set<std::string> seen;
        for (auto it = std::sregex_iterator(bytes.begin(), bytes.end(), declared);
             it != std::sregex_iterator() && seen.size() < 4; ++it)
            if (seen.insert((*it)[1].str()).second) {
                ExpectSameAsPlainSearch((*it)[1].str(), text, path);
                ++names;
            }
        ++scripts;
    }
    EXPECT_GT(scripts, 60);
    EXPECT_GT(names, 150);
}

} // namespace
