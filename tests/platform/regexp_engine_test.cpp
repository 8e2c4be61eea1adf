// The regular expression object: the runtime's error codes for rejected patterns, what the
// methods leave alone on a failure, limits on nesting, repeats and backtracking, groups and
// substitution marks.
#include "platform/regex/regex_engine.h"

#include "tests/support/regexp_match_spans.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace talvor::platform;

std::u16string Wide(const std::string& ascii) {
    return std::u16string(ascii.begin(), ascii.end());
}

// "index:length" of every match, or the failure code in hex.
std::string Matches(const std::string& pattern, const std::u16string& text, bool global = true,
                    bool ignoreCase = false) {
    RegExpEngine engine;
    engine.put_Pattern(Wide(pattern));
    engine.put_Global(global ? VARIANT_TRUE : VARIANT_FALSE);
    engine.put_IgnoreCase(ignoreCase ? VARIANT_TRUE : VARIANT_FALSE);
    RegExpMatchCollection matches;
    HRESULT hr = engine.Execute(text, &matches);
    if (FAILED(hr)) {
        char code[16];
        std::snprintf(code, sizeof code, "%08X", static_cast<unsigned>(hr));
        return code;
    }
    return talvor::testing::MatchSpans(matches);
}

HRESULT TestResult(const std::u16string& pattern, const std::u16string& text = u"") {
    RegExpEngine engine;
    engine.put_Pattern(pattern);
    VARIANT_BOOL matched = VARIANT_FALSE;
    return engine.Test(text, &matched);
}

struct Rejected {
    const char* pattern;
    HRESULT code;
};

TEST(RegExpEngine, RejectedPatternsGiveTheRuntimeErrorCodes) {
    const Rejected cases[] = {
        {"(", RegExpExpectedParen},
        {"Foo(Bar", RegExpExpectedParen},
        {"(?:a|(b)", RegExpExpectedParen},
        {"[", RegExpExpectedBracket},
        {"[a-z", RegExpExpectedBracket},
        {"[\\", RegExpExpectedBracket},
        {"*a", RegExpUnexpectedQuantifier},
        {"a|+", RegExpUnexpectedQuantifier},
        {"a**", RegExpUnexpectedQuantifier},
        {"a{2}{3}", RegExpUnexpectedQuantifier},
        {"{1}", RegExpUnexpectedQuantifier},
        {"^*", RegExpUnexpectedQuantifier},
        {"$?", RegExpUnexpectedQuantifier},
        {"\\b+", RegExpUnexpectedQuantifier},
        {")", RegExpSyntaxError},
        {"a)b", RegExpSyntaxError},
        {"a{3,2}", RegExpSyntaxError},
        {"(?<=a)b", RegExpSyntaxError},
        {"(?<n>a)", RegExpSyntaxError},
        {"(?i)a", RegExpSyntaxError},
        {"(?", RegExpSyntaxError},
        {"a\\", RegExpSyntaxError},
        {"[z-a]", RegExpInvalidRange},
        {"[\\x43-\\x41]", RegExpInvalidRange},
    };
    for (const Rejected& c : cases) {
        SCOPED_TRACE(c.pattern);
        EXPECT_EQ(TestResult(Wide(c.pattern)), c.code);
    }
}

TEST(RegExpEngine, NestingIsBoundedWithoutExhaustingTheStack) {
    const std::u16string allowed = std::u16string(200, u'(') + u"a" + std::u16string(200, u')');
    EXPECT_EQ(TestResult(allowed, u"a"), S_OK);
    for (const char16_t* open : {u"(", u"(?:", u"(?="}) {
        std::u16string deep;
        for (int i = 0; i < 100000; ++i)
            deep += open;
        EXPECT_EQ(TestResult(deep + u"a" + std::u16string(100000, u')')), RegExpOutOfStack);
    }
}

TEST(RegExpEngine, BacktrackingWithoutEndStopsAtTheLimit) {
    // Exponential in the length of the run of x: without a limit this takes years. The 'y'
    // behind the run keeps PCRE2 from seeing at once that no match can end there.
    const std::u16string text = std::u16string(40, u'x') + u"zy";
    EXPECT_EQ(Matches("(x+x+)+y", text), "800A001C");
    EXPECT_EQ(Matches("(?:(x|x|xx)*)*y", text), "800A001C");
    // The same engine object answers the next question.
    RegExpEngine engine;
    engine.put_Pattern(u"(x+x+)+y");
    VARIANT_BOOL matched = VARIANT_TRUE;
    EXPECT_EQ(engine.Test(text, &matched), RegExpOutOfStack);
    EXPECT_EQ(matched, VARIANT_TRUE); // untouched
    engine.put_Pattern(u"x+zy$");
    EXPECT_EQ(engine.Test(text, &matched), S_OK);
    EXPECT_EQ(matched, VARIANT_TRUE);
}

TEST(RegExpEngine, RepeatCountsBeyondTheMatchersOwnLimit) {
    const std::u16string many(70001, u'a');
    EXPECT_EQ(Matches("a{70000}", many, false), "0:70000");
    EXPECT_EQ(Matches("a{1,100000}", u"aaa"), "0:3");
    EXPECT_EQ(Matches("a{70000,}", std::u16string(69999, u'a')), "");
    // More repeats than any text has units: never a match, never an error.
    EXPECT_EQ(Matches("a{99999999999}", u"aaa"), "");
    EXPECT_EQ(Matches("(a){99999999999}|b", u"ab"), "1:1");
    // A group that can match empty, repeated beyond what the matcher can hold.
    EXPECT_EQ(Matches("(?:a|){99999999999}", u"aaa"), "800A0007");
    // Written as blocks of 65535 and a rest, the atom would appear twice: a group in it is
    // refused rather than given two numbers.
    EXPECT_EQ(Matches("(a){70000}", many), "800A0007");
    // PCRE2 writes a repeated group out once per repeat, into at most 64K code units: a group
    // repeated a thousand times fits, one repeated tens of thousands of times does not.
    EXPECT_EQ(Matches("(?:ab){1,1000}", u"ababx"), "0:4");
    EXPECT_EQ(Matches("(?:ab){1,60000}", u"ababx"), "800A0007");
}

TEST(RegExpEngine, FailuresLeaveTheOutputsAlone) {
    RegExpEngine engine;
    engine.put_Pattern(u"(");
    RegExpMatchCollection matches;
    matches.Add(RegExpMatch(7, u"kept", {}));
    EXPECT_EQ(engine.Execute(u"abc", &matches), RegExpExpectedParen);
    LONG count = 0;
    matches.get_Count(&count);
    EXPECT_EQ(count, 1);
    std::u16string result = u"kept";
    EXPECT_EQ(engine.Replace(u"abc", u"", &result), RegExpExpectedParen);
    EXPECT_EQ(result, u"kept");
    EXPECT_EQ(engine.Test(u"abc", nullptr), E_POINTER);
    const RegExpMatch* item = nullptr;
    EXPECT_EQ(matches.get_Item(1, &item), E_INVALIDARG);
    EXPECT_EQ(matches.get_Item(-1, &item), E_INVALIDARG);
    EXPECT_EQ(item, nullptr);
}

TEST(RegExpEngine, PropertiesReadBackAndAPatternChangeTakesEffect) {
    RegExpEngine engine;
    VARIANT_BOOL flag = VARIANT_TRUE;
    std::u16string pattern = u"x";
    engine.get_Global(&flag);
    EXPECT_EQ(flag, VARIANT_FALSE);
    engine.get_IgnoreCase(&flag);
    EXPECT_EQ(flag, VARIANT_FALSE);
    engine.get_Pattern(&pattern);
    EXPECT_EQ(pattern, u"");

    engine.put_Pattern(u"a");
    engine.put_IgnoreCase(1); // any non-zero value is true
    engine.get_IgnoreCase(&flag);
    EXPECT_EQ(flag, VARIANT_TRUE);
    VARIANT_BOOL matched = VARIANT_FALSE;
    engine.Test(u"A", &matched);
    EXPECT_EQ(matched, VARIANT_TRUE);
    engine.put_IgnoreCase(VARIANT_FALSE);
    engine.Test(u"A", &matched);
    EXPECT_EQ(matched, VARIANT_FALSE);
    engine.put_Pattern(u"A");
    engine.Test(u"A", &matched);
    EXPECT_EQ(matched, VARIANT_TRUE);
}

TEST(RegExpEngine, GroupsOfAMatch) {
    RegExpEngine engine;
    engine.put_Pattern(u"(\\w+)\\s*(=)?\\s*(\\d+)?");
    RegExpMatchCollection matches;
    ASSERT_EQ(engine.Execute(u"Count = 3", &matches), S_OK);
    const RegExpMatch* match = nullptr;
    ASSERT_EQ(matches.get_Item(0, &match), S_OK);
    ASSERT_EQ(match->SubMatches().size(), 3u);
    EXPECT_EQ(match->SubMatches()[0], u"Count");
    EXPECT_EQ(match->SubMatches()[1], u"=");
    EXPECT_EQ(match->SubMatches()[2], u"3");

    ASSERT_EQ(engine.Execute(u"Count", &matches), S_OK);
    ASSERT_EQ(matches.get_Item(0, &match), S_OK);
    EXPECT_EQ(match->SubMatches()[1], u""); // took no part
}

struct Substitution {
    const char* pattern;
    const char16_t* replacement;
    const char16_t* expected;
};

TEST(RegExpEngine, ReplacementMarks) {
    const Substitution cases[] = {
        {"(\\w+)=(\\w+)", u"$2=$1", u"[b=a]"}, {"=", u"<$&>", u"[a<=>b]"},
        {"=", u"$`|$'", u"[a[a|b]b]"},         {"=", u"$$", u"[a$b]"},
        {"(=)", u"$0$2$", u"[a$0$2$b]"},       {"(=)", u"$01$10", u"[a==0b]"},
        {"(x)?=", u"[$1]", u"[a[]b]"},
    };
    for (const Substitution& c : cases) {
        SCOPED_TRACE(c.pattern);
        RegExpEngine engine;
        engine.put_Pattern(Wide(c.pattern));
        std::u16string result;
        ASSERT_EQ(engine.Replace(u"[a=b]", c.replacement, &result), S_OK);
        EXPECT_EQ(result, c.expected);
    }
}

TEST(RegExpEngine, EveryCodeUnitIsOneCharacter) {
    // A surrogate pair counts two, a lone surrogate one; '.' takes one unit at a time.
    EXPECT_EQ(Matches(".", u"\U0001F600x"), "0:1 1:1 2:1");
    EXPECT_EQ(Matches("x", u"\xD83D"
                           u"x\xDC80x"),
              "1:1 3:1");
    EXPECT_EQ(Matches("[\\uD800-\\uDBFF]", u"a\U0001F600"), "1:1");
}

} // namespace
