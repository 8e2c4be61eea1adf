// The document colourer and the cookie cache: whole texts coloured as line-by-line parsing with
// carried cookies colours them, caches that work out only what they lack, and the cache's
// resynchronisation when the number of lines changes.
#include "tests/syntax/parser_harness.h"

#include "syntax/cookie_cache.h"
#include "tests/support/test_environment.h"

#include <gtest/gtest.h>

namespace talvor::testing {
namespace {

// Every line of the text in golden form, coloured by the walk.
std::string WalkText(syntax::DocumentColourer& colourer, std::string_view text,
                     std::vector<std::size_t>* offsets = nullptr) {
    std::string out;
    colourer.ColourText(text, [&](const syntax::ColouredLine& line) {
        syntax::AppendStyledLine(out, line.text, line.runs, line.count, line.cookieAtEnd,
                                 syntax::StyledForm::Text);
        if (offsets != nullptr)
            offsets->push_back(line.offset);
    });
    return out;
}

TEST(DocumentColourer, WalkCarriesCookiesAcrossHardLineEnds) {
    ParserUnderTest parser;
    syntax::DocumentColourer colourer(parser);
    colourer.LoadLanguage(8);
    EXPECT_EQ(colourer.Language(), 8u);
    // A block comment survives the line end, a line comment and an open string do not.
    const std::string text = "int a; /* one\r\ntwo */ b // c\n\"open\nx 0x1F\n";
    std::vector<std::size_t> offsets;
    EXPECT_EQ(WalkText(colourer, text, &offsets), "04 {2}{1}int{2} a{2}; {0}/* one\n"
                                                  "02 {0}two */{2} b{2} {0}// c\n"
                                                  "10 {2}{4}\"open\n"
                                                  "00 {2}x{2} {3}0x1F\n");
    EXPECT_EQ(offsets, (std::vector<std::size_t>{0, 15, 29, 35}));
    EXPECT_EQ(colourer.CookieAfterText(text), 0u);
    EXPECT_EQ(colourer.CookieAfterText("/* open"), COOKIE_BLOCK_COMMENT);
    EXPECT_EQ(colourer.ColourText("", [](const syntax::ColouredLine&) { FAIL(); }), 0u);
}

TEST(DocumentColourer, TagLanguagesCarryTheWholeCookieAndGetTheirRoom) {
    ParserUnderTest parser;
    syntax::DocumentColourer colourer(parser);
    colourer.LoadLanguage(14);
    EXPECT_EQ(colourer.RunRoom(10), 21u);
    EXPECT_EQ(colourer.CookieForNextLine(0xD4, true), 0xD4u);
    EXPECT_EQ(colourer.CookieAfterText("<a href=\"x\n"), COOKIE_TAG | COOKIE_STRING);
    colourer.LoadLanguage(3);
    EXPECT_EQ(colourer.RunRoom(10), 11u);
    EXPECT_EQ(colourer.CookieForNextLine(0x16, true), 0x04u);
    EXPECT_EQ(colourer.CookieForNextLine(0x16, false), 0x16u); // a soft wrap passes all on
}

TEST(DocumentColourer, AppendedBlankClosesTheLastWord) {
    ParserUnderTest parser;
    UseLanguage(parser, 14);
    syntax::DocumentColourer colourer(parser);
    // Without the blank the tag's last word is classified by the line-end rule, with it by
    // the rule for words followed by a byte, as in the editor.
    const std::string without = WalkText(colourer, "<p class");
    colourer.SetAppendBlank(true);
    const std::string with = WalkText(colourer, "<p class");
    EXPECT_EQ(with.substr(with.size() - 2), " \n");
    EXPECT_NE(without, with);
    // Lines already cut get the blank as well; the caller's strings stay as they are.
    std::vector<CString> lines{CString("<p class")};
    std::string fromLines;
    colourer.ColourLines(lines, [&](const syntax::ColouredLine& line) {
        syntax::AppendStyledLine(fromLines, line.text, line.runs, line.count, line.cookieAtEnd,
                                 syntax::StyledForm::Text);
    });
    EXPECT_EQ(fromLines, with);
    EXPECT_EQ(lines[0].Str(), "<p class");
}

TEST(DocumentColourer, OneLineWithAndWithoutRuns) {
    ParserUnderTest parser;
    UseLanguage(parser, 8, "int");
    syntax::DocumentColourer colourer(parser);
    const syntax::LineColours colours = colourer.ColourLine(0, std::string_view("int a; /*"));
    EXPECT_EQ(FormatRuns(colours.runs, colours.count), "(0,2) (0,1) (3,2) (5,2) (7,0)");
    EXPECT_EQ(colours.cookie, COOKIE_BLOCK_COMMENT);
    EXPECT_EQ(colourer.CookieAtEnd(0, std::string_view("int a; /*")), COOKIE_BLOCK_COMMENT);
    CString line("*/ x");
    EXPECT_EQ(colourer.CookieAtEnd(COOKIE_BLOCK_COMMENT, line), 0u);
}

// Lines of a text for the cache, counting how often each is fetched.
struct CountingLines {
    std::vector<std::string> lines;
    std::vector<int> fetched;
    std::vector<bool> hardEnds;

    explicit CountingLines(std::vector<std::string> text)
        : lines(std::move(text)), fetched(lines.size()), hardEnds(lines.size(), true) {}
    auto Source() {
        return [this](std::size_t k, CString& text) {
            ++fetched[k];
            text = CString(lines[k]);
            return static_cast<bool>(hardEnds[k]);
        };
    }
};

TEST(CookieCache, WorksOutOnlyFromTheNearestKnownEntry) {
    ParserUnderTest parser;
    UseLanguage(parser, 8);
    syntax::DocumentColourer colourer(parser);
    CountingLines text({"a", "/* b", "c", "d */", "e", "\"f"});
    syntax::CookieCache cache;
    EXPECT_FALSE(cache.Exists());
    EXPECT_EQ(cache.EndOf(0, colourer, text.Source()), syntax::CookieCache::Unknown);
    cache.Create(text.lines.size());
    EXPECT_TRUE(cache.Exists());
    EXPECT_EQ(cache.StartOf(0, colourer, text.Source()), 0u);
    EXPECT_EQ(cache.StartOf(3, colourer, text.Source()), COOKIE_BLOCK_COMMENT);
    EXPECT_EQ(text.fetched, (std::vector<int>{1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(cache.EndOf(5, colourer, text.Source()), COOKIE_STRING);
    EXPECT_EQ(text.fetched, (std::vector<int>{1, 1, 1, 1, 1, 1})); // nothing twice

    // Forgotten entries are worked out from the nearest known one above them.
    cache.ForgetFrom(4);
    cache.Forget(1);
    EXPECT_EQ(cache.Entry(1), syntax::CookieCache::Unknown);
    EXPECT_EQ(cache.EndOf(5, colourer, text.Source()), COOKIE_STRING);
    EXPECT_EQ(text.fetched, (std::vector<int>{1, 1, 1, 1, 2, 2}));
    EXPECT_EQ(cache.Entry(1), syntax::CookieCache::Unknown);
    EXPECT_EQ(cache.EndOf(9, colourer, text.Source()), syntax::CookieCache::Unknown);
}

TEST(CookieCache, SoftWrapsPassTheWholeCookieOn) {
    ParserUnderTest parser;
    UseLanguage(parser, 8);
    syntax::DocumentColourer colourer(parser);
    CountingLines text({"x = \"cut", "here\" + 1", "\"next"});
    text.hardEnds[0] = false; // the string is cut by wrapping
    syntax::CookieCache cache;
    cache.Create(3);
    EXPECT_EQ(cache.EndOf(1, colourer, text.Source()), 0u);
    EXPECT_EQ(cache.Entry(0), COOKIE_STRING);
    // With a hard end after the first line the string would have ended there.
    text.hardEnds[0] = true;
    cache.ForgetFrom(0);
    EXPECT_EQ(cache.EndOf(1, colourer, text.Source()), COOKIE_STRING);
}

TEST(CookieCache, ResynchronisesWhenTheLineCountChanges) {
    auto resynchronised = [](std::size_t oldCount, std::size_t newCount, std::size_t caret) {
        syntax::CookieCache cache;
        cache.Create(oldCount);
        for (std::size_t i = 0; i < oldCount; ++i)
            cache.Store(i, i);
        cache.Resynchronise(newCount, caret);
        std::size_t kept = 0;
        while (kept < cache.Count() && cache.Entry(kept) == kept)
            ++kept;
        for (std::size_t i = kept; i < cache.Count(); ++i)
            EXPECT_EQ(cache.Entry(i), syntax::CookieCache::Unknown) << i;
        EXPECT_EQ(cache.Count(), newCount);
        return kept;
    };
    EXPECT_EQ(resynchronised(10, 12, 7), 5u);  // two lines inserted above the caret line
    EXPECT_EQ(resynchronised(10, 12, 1), 1u);  // fewer lines above than came in: the caret
    EXPECT_EQ(resynchronised(10, 8, 5), 5u);   // lines deleted
    EXPECT_EQ(resynchronised(10, 1, 6), 0u);   // all deleted, the caret beyond the end
    EXPECT_EQ(resynchronised(10, 12, 0), 0u);  // caret on the first line
    EXPECT_EQ(resynchronised(2, 10, 5), 2u);   // never more than there were
    EXPECT_EQ(resynchronised(10, 10, 5), 10u); // same count: nothing changes

    syntax::CookieCache none;
    none.Resynchronise(5, 2);
    EXPECT_FALSE(none.Exists());
    none.Create(3);
    none.Reset();
    EXPECT_FALSE(none.Exists());
    EXPECT_EQ(none.Count(), 0u);
}

} // namespace
} // namespace talvor::testing
