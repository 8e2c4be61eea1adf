// The cache of compiled patterns: kept by pattern and case flag, least recently used out
// first, failures never kept, and no difference a caller of the facade could see.
#include "text/detail/regex_cache.h"

#include "platform/codepage/code_page.h"
#include "tests/support/test_environment.h"
#include "text/regular_expressions.h"

#include <gtest/gtest.h>

namespace {

using talvor::platform::CompiledRegExpPtr;
using talvor::text::detail::FacadeRegexCache;
using talvor::text::detail::RegexCache;

CompiledRegExpPtr Compiled(RegexCache& cache, const char16_t* pattern, bool ignoreCase = true) {
    CompiledRegExpPtr compiled;
    EXPECT_EQ(cache.Compile(pattern, ignoreCase, compiled), S_OK);
    return compiled;
}

TEST(RegexCache, KeepsAPatternPerCaseFlag) {
    RegexCache cache(8);
    const CompiledRegExpPtr first = Compiled(cache, u"[\\W]{1}If[\\W]{1}");
    EXPECT_EQ(Compiled(cache, u"[\\W]{1}If[\\W]{1}"), first);
    EXPECT_NE(Compiled(cache, u"[\\W]{1}If[\\W]{1}", false), first);
    EXPECT_NE(Compiled(cache, u"[\\W]{1}IF[\\W]{1}"), first);
    EXPECT_EQ(cache.Size(), 3u);
}

TEST(RegexCache, DropsTheLeastRecentlyUsedWhenFull) {
    RegexCache cache(2);
    const CompiledRegExpPtr a = Compiled(cache, u"a");
    const CompiledRegExpPtr b = Compiled(cache, u"b");
    EXPECT_EQ(Compiled(cache, u"a"), a); // a is now the most recent
    Compiled(cache, u"c");               // b goes
    EXPECT_EQ(cache.Size(), 2u);
    EXPECT_EQ(Compiled(cache, u"a"), a);
    EXPECT_NE(Compiled(cache, u"b"), b);

    cache.SetCapacity(1);
    EXPECT_EQ(cache.Size(), 1u);
    EXPECT_NE(Compiled(cache, u"a"), a); // b was the most recent, a went
}

TEST(RegexCache, OffOrFailingCompilesAreNotKept) {
    RegexCache cache(0);
    EXPECT_NE(Compiled(cache, u"a"), Compiled(cache, u"a"));
    EXPECT_EQ(cache.Size(), 0u);

    cache.SetCapacity(4);
    CompiledRegExpPtr compiled;
    EXPECT_EQ(cache.Compile(u"Foo(Bar", true, compiled), talvor::platform::RegExpExpectedParen);
    EXPECT_EQ(compiled, nullptr);
    EXPECT_EQ(cache.Size(), 0u);
}

// The facade finds a pattern by its 8-bit text, which means another pattern in another code
// page: "^[\xC3\xA9]$" is a class of two characters in 1252 and of one in 65001.
TEST(RegexCache, AnEightBitPatternIsKeptPerCodePage) {
    const char* pattern = "^[\xC3\xA9]$";
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(talvor::platform::SetSystemCodePage(65001));
        EXPECT_EQ(TVPfxTestByRegExp(pattern, "\xC3\xA9", -1, -1), 1);
        EXPECT_EQ(TVPfxTestByRegExp(pattern, "\xA9", -1, -1), 0);
        ASSERT_TRUE(talvor::platform::SetSystemCodePage(1252));
        EXPECT_EQ(TVPfxTestByRegExp(pattern, "\xA9", -1, -1), 1);
        EXPECT_EQ(TVPfxTestByRegExp(pattern, "\xC3\xA9", -1, -1), 0);
    }
}

TEST(RegexCache, TheEightBitWayGivesTheEntryOfTheWidePattern) {
    RegexCache cache(4);
    std::u16string_view wide;
    CompiledRegExpPtr narrow;
    ASSERT_EQ(cache.CompileNarrow("[\\W]{1}If[\\W]{1}", 1252, true, wide, narrow), S_OK);
    EXPECT_EQ(wide, u"[\\W]{1}If[\\W]{1}");
    EXPECT_EQ(Compiled(cache, u"[\\W]{1}If[\\W]{1}"), narrow);
    CompiledRegExpPtr again;
    ASSERT_EQ(cache.CompileNarrow("[\\W]{1}If[\\W]{1}", 1252, true, wide, again), S_OK);
    EXPECT_EQ(again, narrow);
    ASSERT_EQ(cache.CompileNarrow("[\\W]{1}If[\\W]{1}", 1252, false, wide, again), S_OK);
    EXPECT_NE(again, narrow);
    EXPECT_EQ(cache.Size(), 2u);
    // A failing pattern still gives its wide form, for the engine to report.
    EXPECT_EQ(cache.CompileNarrow("Foo(Bar", 1252, true, wide, again),
              talvor::platform::RegExpExpectedParen);
    EXPECT_EQ(wide, u"Foo(Bar");
}

// Patterns that push each other out of a small cache, asked round after round by their 8-bit
// text: the quick table in front must never give an entry that has gone.
TEST(RegexCache, PatternsPushedOutAreCompiledAgainNotFoundStale) {
    RegexCache cache(2);
    const char* patterns[] = {"a+", "b+", "c+", "a+"};
    for (int round = 0; round < 20; ++round) {
        for (const char* pattern : patterns) {
            std::u16string_view wide;
            CompiledRegExpPtr compiled;
            ASSERT_EQ(cache.CompileNarrow(pattern, 1252, round % 2 == 0, wide, compiled), S_OK);
            EXPECT_EQ(wide, std::u16string(pattern, pattern + 2));
            ASSERT_NE(compiled, nullptr);
            EXPECT_LE(cache.Size(), 2u);
        }
        if (round == 10)
            cache.Clear();
    }
}

// A cache that is too small to hold one round of questions, or none at all, gives the very
// same answers: the facade's callers can't tell.
TEST(RegexCache, TheFacadeAnswersTheSameAtAnySize) {
    const char* patterns[] = {
        "[\\W]{1}If[\\W]{1}", "^\\s*End If\\s*$", "\\s*=\\s*", "\\w+", "\"[^\"]*\"", "(", "x*"};
    const char* texts[] = {" If a = \"b\" Then ", "  End If ", "", "Name1"};
    auto answers = [&] {
        std::string all;
        for (const char* pattern : patterns)
            for (const char* text : texts)
                for (short ignoreCase : {short(0), short(-1)}) {
                    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
                    CString result = "-";
                    all += std::to_string(TVPfxTestByRegExp(pattern, text, -1, ignoreCase));
                    all += std::to_string(
                        TVPfxGetInfoByRegExp(pattern, text, matches, -1, ignoreCase));
                    for (const tagREGEXPINFO& match : matches)
                        all += std::to_string(match.nFirstIndex) + "," +
                               std::to_string(match.nLength) + match.strValue.GetString();
                    all += std::to_string(
                        TVPfxReplaceByRegExp(pattern, text, "", result, -1, ignoreCase));
                    all += result.GetString();
                    all += "|";
                }
        return all + std::to_string(talvor::testing::ShownMessages().size());
    };
    const std::string reference = answers();
    for (std::size_t capacity : {std::size_t(0), std::size_t(1), std::size_t(3)}) {
        SCOPED_TRACE(capacity);
        talvor::testing::ClearShownMessages();
        FacadeRegexCache().SetCapacity(capacity);
        EXPECT_EQ(answers(), reference);
    }
    FacadeRegexCache().SetCapacity(RegexCache::DefaultCapacity);
}

} // namespace
