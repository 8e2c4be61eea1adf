// The keyword test answered without the engine must give the engine's answer: every line of
// the real scripts, many keywords, both case modes, three code pages, against the same
// question put so that only the engine can answer it.
#include "platform/codepage/code_page.h"
#include "tests/support/corpus.h"
#include "text/detail/word_literal.h"
#include "text/regular_expressions.h"

#include <gtest/gtest.h>

#include <sstream>

using talvor::text::detail::TestWordLiteral;
using talvor::text::detail::WordLiteralOf;

TEST(WordLiteral, OnlyTheKeywordShapeIsRecognised) {
    EXPECT_EQ(WordLiteralOf("[\\W]{1}End If[\\W]{1}"), "End If");
    EXPECT_EQ(WordLiteralOf("[\\W]{1}x_1[\\W]{1}"), "x_1");
    for (const char* other :
         {"[\\W]{1}[\\W]{1}", "[\\W]{1}a.b[\\W]{1}", "[\\W]{1}(?:If)[\\W]{1}", "[\\W]{2}If[\\W]{1}",
          "If", "[\\W]{1}If[\\W]{1}x", "\\WIf\\W", "[\\W]{1}Caf\xe9[\\W]{1}"})
        EXPECT_FALSE(WordLiteralOf(other).has_value()) << other;
}

TEST(WordLiteral, ItsAnswersOnEdgesAndItsRefusalOfNonAsciiText) {
    EXPECT_EQ(TestWordLiteral("If", " If ", true), true);
    EXPECT_EQ(TestWordLiteral("If", "If ", true), false); // no byte before the word
    EXPECT_EQ(TestWordLiteral("If", " If", true), false); // none behind it
    EXPECT_EQ(TestWordLiteral("If", " iF(", true), true);
    EXPECT_EQ(TestWordLiteral("If", " iF(", false), false);     // case counts without ignoreCase
    EXPECT_EQ(TestWordLiteral("If", " _If ", true), false);     // "_" is a word byte
    EXPECT_EQ(TestWordLiteral("If", " EndIf If ", true), true); // the second place counts
    EXPECT_EQ(TestWordLiteral("If", " \xe9If ", true), std::nullopt);
    // Where bytes tell the characters, a byte from 0x80 up is a non-word character.
    EXPECT_EQ(TestWordLiteral("If", " \xe9If ", true, false), true);
    EXPECT_EQ(TestWordLiteral("If", "\xc3\xa9If\xc3\xa9", true, false), true);
    EXPECT_EQ(TestWordLiteral("If", "\xc3\xa9Iff\xc3\xa9", true, false), false);
}

// Text beyond ASCII in each page, where a second byte of a double-byte character may look
// like a letter or a blank: the shortcut answers as the engine does, or leaves the question.
TEST(WordLiteral, AgreesWithTheEngineOnTextBeyondAscii) {
    const char* const texts[] = {" \xe9If ",
                                 "\xc3\xa9If\xc3\xa9",
                                 " caf\xc3\xa9 If\xff",
                                 "\x81If ",
                                 " If\x81 ",
                                 "\xb0\xa1If\xb0\xa1",
                                 "\x81 If \x81\x40",
                                 "x\x81\x49"
                                 "f ",
                                 "\xff\xfeif then"};
    const unsigned former = talvor::platform::SystemCodePage();
    for (const unsigned page : {talvor::platform::CodePageWestern, talvor::platform::CodePageUtf8,
                                talvor::platform::CodePageSimplifiedChinese}) {
        ASSERT_TRUE(talvor::platform::SetSystemCodePage(page));
        for (const char* text : texts)
            for (const short ignoreCase : {short(-1), short(0)})
                EXPECT_EQ(
                    talvor::text::TestByRegExp("[\\W]{1}If[\\W]{1}", text, -1, ignoreCase),
                    talvor::text::TestByRegExp("[\\W]{1}(?:If)[\\W]{1}", text, -1, ignoreCase))
                    << text << " page " << page << " ignoring case " << ignoreCase;
    }
    talvor::platform::SetSystemCodePage(former);
}

TEST(WordLiteral, AgreesWithTheEngineOnEveryCorpusLine) {
    const auto files = talvor::testing::CorpusFiles("vbscript");
    ASSERT_FALSE(files.empty());
    const char* const keywords[] = {"If",  "Then", "Else",   "End If",     "Do While", "Loop",
                                    "For", "To",   "Next",   "Loop While", "Exit Sub", "Case Else",
                                    "Set", "Dim",  "objFSO", "WScript",    "i",        "_"};
    const unsigned former = talvor::platform::SystemCodePage();
    std::size_t lines = 0, hits = 0;
    for (const unsigned page : {talvor::platform::CodePageWestern, talvor::platform::CodePageUtf8,
                                talvor::platform::CodePageSimplifiedChinese}) {
        ASSERT_TRUE(talvor::platform::SetSystemCodePage(page));
        for (std::size_t f = 0; f < files.size(); ++f) {
            std::istringstream in(talvor::testing::ReadFileBytes(files[f]));
            for (std::string line; std::getline(in, line);) {
                const std::string text = " " + line + " ";
                ++lines;
                for (const char* keyword : keywords) {
                    for (const short ignoreCase : {short(-1), short(0)}) {
                        const std::string word = keyword;
                        const int fast = talvor::text::TestByRegExp("[\\W]{1}" + word + "[\\W]{1}",
                                                                    text, -1, ignoreCase);
                        const int engine = talvor::text::TestByRegExp(
                            "[\\W]{1}(?:" + word + ")[\\W]{1}", text, -1, ignoreCase);
                        ASSERT_EQ(fast, engine)
                            << files[f] << ": '" << line << "' / " << keyword << " page " << page;
                        hits += fast;
                    }
                }
            }
        }
    }
    talvor::platform::SetSystemCodePage(former);
    EXPECT_GT(lines, 10000u);
    EXPECT_GT(hits, 1000u);
}
