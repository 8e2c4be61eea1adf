// Where the facade answers otherwise than JavaScript's RegExp, and why. Each difference is
// shown twice: the facade's answer is asserted always, and, when Node is there, that Node
// answers otherwise, so this list stays true. Everything not listed here agrees (see
// regex_oracle_test.cpp).
#include "tests/oracles/facade_answers.h"

#include <clocale>
#include <cwctype>
#include <gtest/gtest.h>
#include <locale.h>
#include <set>

namespace talvor::testing {
namespace {

using platform::CodePageUtf8;

struct Divergence {
    const char* what;
    const char* pattern;
    const char* text; // UTF-8
    short ignoreCase;
    const char* facade; // "index:length" of the first match, "miss" or "rejected"
};

const Divergence Divergences[] = {
    // VBScript's \s is [ \f\n\r\t\v]; JavaScript adds the Unicode spaces.
    {"no-break space is no white space", "\\s", "\u00a0", 0, "miss"},
    {"ideographic space is no white space", "a\\s", "a\u3000", 0, "miss"},
    {"byte order mark is no white space", "\\S", "\ufeff", 0, "0:1"},
    {"line separator is no white space", "^\\s$", "\u2028", 0, "miss"},
    // VBScript's '.' is anything but a line feed; JavaScript also stops at CR, U+2028, U+2029.
    {"dot matches a carriage return", "a.b", "a\rb", 0, "0:3"},
    {"dot matches a line separator", ".", "\u2028", 0, "0:1"},
    {"dot matches a paragraph separator", "x.", "x\u2029", 0, "0:2"},
    // Look-behind and named groups came to JavaScript with ES2018; VBScript's pattern
    // language has neither and rejects them.
    {"look-behind", "(?<=a)b", "ab", 0, "rejected"},
    {"negative look-behind", "(?<!a)b", "cb", 0, "rejected"},
    {"named group", "(?<name>x)\\k<name>", "xx", 0, "rejected"},
    // A group inside a repeat keeps what an earlier iteration captured when a later one does
    // not take part (VBScript, like Perl); ECMAScript clears it at every iteration.
    {"capture of an earlier iteration", "(?:(a)|b)+\\1", "abb", 0, "1:2"},
    {"capture inside a repeated group", "(?:(a)|b)+\\1$", "aba", 0, "0:3"},
    // An iteration of a repeat that matches empty ends the repeat (the rule of PCRE2 and
    // Perl); ECMAScript rejects such an iteration and backtracks into it for a longer one.
    // Only a repeated group that tries an empty way before a longer one sees the difference.
    {"empty way first in a repeated group", "(?:|a)*", "aaa", 0, "0:0"},
    {"lazy atom in a repeated group", "(?:a?\?)*", "aa", 0, "0:0"},
};

std::string Describe(const FacadeAnswer& answer) {
    if (!answer.messages.empty())
        return "rejected";
    if (answer.matches.GetSize() == 0)
        return "miss";
    return std::to_string(answer.matches[0].nFirstIndex) + ":" +
           std::to_string(answer.matches[0].nLength);
}

std::string Describe(const OracleAnswer& answer) {
    if (answer.rejected)
        return "rejected";
    if (answer.matches.empty())
        return "miss";
    return std::to_string(answer.matches[0].index) + ":" + std::to_string(answer.matches[0].length);
}

TEST(RegExpDivergence, EachListedCaseDiffersFromJavaScriptAsDocumented) {
    std::vector<OracleCase> cases;
    for (const Divergence& d : Divergences) {
        cases.push_back({d.what, d.pattern, d.text, 0, d.ignoreCase, CodePageUtf8, ""});
        SCOPED_TRACE(d.what);
        EXPECT_EQ(Describe(AskFacade(cases.back())), d.facade);
    }
    if (NodePath().empty())
        GTEST_SKIP() << "node is not installed: the facade's side was checked, JavaScript's not";
    std::vector<OracleAnswer> answers;
    std::string error;
    ASSERT_TRUE(AskNode(cases, answers, error)) << error;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].what);
        EXPECT_NE(Describe(answers[i]), Divergences[i].facade);
    }
}

// Ignoring case, every character with a case partner matches that partner as JavaScript
// says: as a literal, in a class and in a negated class. The partners come from the C
// library's Unicode tables, and every pair they name is asked of both engines.
TEST(RegExpDivergence, IgnoreCaseAgreesOnEveryCasedCharacterExceptNewerUnicode) {
    if (NodePath().empty())
        GTEST_SKIP() << "node is not installed: the differential test can't run";
    locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    if (utf8 == static_cast<locale_t>(nullptr))
        GTEST_SKIP() << "the C.UTF-8 locale is missing: no Unicode case tables to list pairs";
    std::set<std::pair<unsigned, unsigned>> pairs;
    for (unsigned c = 0x80; c <= 0xFFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        for (wint_t other : {towupper_l(c, utf8), towlower_l(c, utf8)})
            if (other != c && other <= 0xFFFF) {
                pairs.insert({c, static_cast<unsigned>(other)});
                pairs.insert({static_cast<unsigned>(other), c});
            }
    }
    freelocale(utf8);
    ASSERT_GT(pairs.size(), 2000u);

    // Case pairs of letters added to Unicode after version 14, which PCRE2 10.42's tables
    // don't know: JavaScript may join them (with a newer ICU); the facade keeps them apart.
    const std::set<std::pair<unsigned, unsigned>> newerUnicode = {
        {0x019B, 0xA7DC}, {0x0264, 0xA7CB}, {0x1C89, 0x1C8A}, {0xA7CC, 0xA7CD},
        {0xA7CE, 0xA7CF}, {0xA7D2, 0xA7D3}, {0xA7D4, 0xA7D5}, {0xA7DA, 0xA7DB}};

    std::vector<OracleCase> cases;
    std::vector<std::pair<unsigned, unsigned>> asked;
    for (const auto& [c, other] : pairs) {
        char pattern[32];
        const std::string text = platform::FromWide(std::u16string(1, char16_t(other)));
        platform::SetSystemCodePage(CodePageUtf8);
        const std::string partner = platform::FromWide(std::u16string(1, char16_t(other)));
        for (const char* form : {"^\\u%04x$", "^[\\u%04x]$", "^[^\\u%04x]$"}) {
            std::snprintf(pattern, sizeof pattern, form, c);
            cases.push_back({"case pair", pattern, partner, 0, -1, CodePageUtf8, ""});
            asked.emplace_back(c, other);
        }
        // A back-reference repeats its group's text in either case.
        cases.push_back({"case pair", "^(.)\\1$",
                         platform::FromWide(std::u16string{char16_t(c), char16_t(other)}), 0, -1,
                         CodePageUtf8, ""});
        asked.emplace_back(c, other);
    }
    std::vector<OracleAnswer> answers;
    std::string error;
    ASSERT_TRUE(AskNode(cases, answers, error)) << error;
    std::vector<std::string> differences;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const FacadeAnswer facade = AskFacade(cases[i]);
        if (Difference(cases[i], answers[i], facade).empty())
            continue;
        auto [c, other] = asked[i];
        if (newerUnicode.count({std::min(c, other), std::max(c, other)}) != 0)
            continue;
        char line[96];
        std::snprintf(line, sizeof line, "/%s/i on U+%04X: JavaScript %s, facade %s",
                      cases[i].pattern.c_str(), other, answers[i].test ? "hit" : "miss",
                      facade.test ? "hit" : "miss");
        differences.push_back(line);
    }
    std::string listed;
    for (std::size_t i = 0; i < differences.size() && i < 30; ++i)
        listed += "  " + differences[i] + "\n";
    EXPECT_TRUE(differences.empty())
        << differences.size() << " of " << cases.size() << " cases differ:\n"
        << listed;
}

} // namespace
} // namespace talvor::testing
