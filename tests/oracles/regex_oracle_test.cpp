// The regular expression facade against an engine nobody here wrote: Node's RegExp answers
// the same cases, and Test, every match's index, length and value, and Replace must agree.
// Cases: the engine's fixed fragments with the keywords of the resources and names from real
// scripts, double-byte and UTF-8 text, empty texts, the lenient and the rejected forms of the
// pattern language, and generated pattern/text pairs from a fixed seed.
#include "tests/oracles/facade_answers.h"

#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"
#include "tests/support/corpus.h"

#include <gtest/gtest.h>
#include <set>

namespace talvor::testing {
namespace {

using platform::CodePageSimplifiedChinese;
using platform::CodePageUtf8;
using platform::CodePageWestern;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Keywords() {
    std::vector<std::string> keywords;
    for (unsigned id :
         {IDS_FLOW_KEYWORDS, IDS_EXIT_KEYWORDS, IDS_FORM_NAMES, IDS_PROCEDURE_KEYWORDS})
        for (const std::string& word : Lines(resources::LoadTalvorString(id)))
            keywords.push_back(word);
    return keywords;
}

// Identifiers of a line, as a user's names go into patterns: unescaped.
std::vector<std::string> Names(const std::string& line) {
    std::vector<std::string> names;
    std::size_t i = 0;
    while (i < line.size()) {
        const unsigned char c = static_cast<unsigned char>(line[i]);
        if (!std::isalpha(c)) {
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < line.size() &&
               (std::isalnum(static_cast<unsigned char>(line[end])) || line[end] == '_'))
            ++end;
        names.push_back(line.substr(i, end - i));
        i = end;
    }
    return names;
}

// The patterns that the engine builds around a keyword and a name, on a line.
void AddEngineQuestions(std::vector<OracleCase>& cases, const std::string& origin,
                        const std::string& line, const std::vector<std::string>& keywords,
                        unsigned codePage) {
    auto add = [&](std::string pattern, std::string text, short global = -1,
                   short ignoreCase = -1) {
        cases.push_back(
            {origin, std::move(pattern), std::move(text), global, ignoreCase, codePage, ""});
    };
    for (const std::string& keyword : keywords) {
        add("[\\W]{1}" + keyword + "[\\W]{1}", " " + line + " ");
        add("^\\s*" + keyword + "\\s+", line, 0);
        add("^\\s*" + keyword + "\\s*$", line, 0);
    }
    add("\"[^\"]*\"", line, -1, 0);
    add("\\s+\\w+\\s*\\(", line);
    add("\\s*=\\s*", line, 0);
    add("\\s*\\W{1}", line);
    add("\\s*[^\\w]{1}", line);
    const std::vector<std::string> names = Names(line);
    std::set<std::string> seen;
    for (const std::string& name : names) {
        if (!seen.insert(name).second || seen.size() > 3)
            continue;
        add("[^\\w\\.]{1}\\s*" + name + "\\s*[^\\w]{1}", " " + line + " ");
        add(name + "\\s*\\(", line);
        add("\\s+" + name + "\\s*\\(", line, 0);
        add(name + "\\s*=\\s*", line);
        add("\\(\\s*" + name + "\\s*\\,\\s*", line);
        add(name + "\\s*\\)", line);
        add("^[a-zA-Z]{1}[a-zA-Z0-9]*$", name);
    }
}

// Text in code page, written here in UTF-8.
std::string Encoded(const char* utf8, unsigned codePage) {
    platform::SetSystemCodePage(CodePageUtf8);
    const std::u16string wide = platform::ToWide(utf8);
    platform::SetSystemCodePage(codePage);
    return platform::FromWide(wide);
}

// A reproducible generator (splitmix64): the standard distributions differ between
// libraries, this doesn't.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}
    std::uint64_t Next() {
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    unsigned Below(unsigned n) { return static_cast<unsigned>(Next() % n); }
    bool Chance(unsigned percent) { return Below(100) < percent; }
    template <class T> const T& Pick(const std::vector<T>& items) {
        return items[Below(static_cast<unsigned>(items.size()))];
    }

private:
    std::uint64_t m_state;
};

// Patterns of the ECMAScript-3 language in which the two engines must agree: a repeated atom
// never matches empty, and a back-reference names a group that is closed, outside every
// repeat and every lookahead (see regex_divergence_test.cpp for what differs there).
class PatternGenerator {
public:
    explicit PatternGenerator(Random& random) : m_random(random) {}

    std::u16string Pattern() {
        m_groups = 0;
        m_referable.clear();
        m_literals.clear();
        return Disjunction(0, false, false).text;
    }
    // Characters the pattern names, for texts that have a chance to match.
    const std::u16string& Literals() const { return m_literals; }

    static const std::u16string& Alphabet() {
        // Letters of both cases, digits, blanks, punctuation, a line feed, a Latin letter with
        // its capital, a double-byte character and a surrogate pair.
        static const std::u16string alphabet = u"abcABCxyz019 _-.,()\t\n\u00e9\u00c9\u4e2d"
                                               u"\U0001F600";
        return alphabet;
    }

private:
    struct Node {
        std::u16string text;
        bool nullable;
    };

    Node Disjunction(int depth, bool inRepeat, bool inLookahead) {
        Node result = Alternative(depth, inRepeat, inLookahead);
        unsigned more = m_random.Chance(25) ? 1 + m_random.Below(2) : 0;
        for (unsigned i = 0; i < more; ++i) {
            Node next = Alternative(depth, inRepeat, inLookahead);
            result.text += u"|" + next.text;
            result.nullable = result.nullable || next.nullable;
        }
        return result;
    }

    Node Alternative(int depth, bool inRepeat, bool inLookahead) {
        Node result{u"", true};
        const unsigned terms = 1 + m_random.Below(depth == 0 ? 4 : 3);
        for (unsigned i = 0; i < terms; ++i) {
            Node term = Term(depth, inRepeat, inLookahead);
            result.text += term.text;
            result.nullable = result.nullable && term.nullable;
        }
        return result;
    }

    Node Term(int depth, bool inRepeat, bool inLookahead) {
        const unsigned kind = m_random.Below(100);
        if (kind < 8) {
            static const std::vector<std::u16string> assertions = {u"^", u"$", u"\\b", u"\\B"};
            return {m_random.Pick(assertions), true};
        }
        if (kind < 12 && depth < 3) {
            Node inner = Disjunction(depth + 1, inRepeat, true);
            return {(m_random.Chance(50) ? u"(?=" : u"(?!") + inner.text + u")", true};
        }
        const bool repeat = m_random.Chance(35);
        Node atom = Atom(depth, inRepeat || repeat, inLookahead);
        if (!repeat || atom.nullable)
            return atom;
        static const std::vector<std::u16string> quantifiers = {
            u"*",    u"+",    u"?",    u"{0}",   u"{1}",   u"{2}",
            u"{0,}", u"{1,}", u"{2,}", u"{0,1}", u"{1,3}", u"{2,2}"};
        const std::u16string& quantifier = m_random.Pick(quantifiers);
        atom.text += quantifier;
        if (m_random.Chance(30))
            atom.text += u"?";
        atom.nullable = quantifier == u"*" || quantifier == u"?" || quantifier[1] == u'0';
        return atom;
    }

    std::u16string Literal() {
        const std::u16string& alphabet = Alphabet();
        char16_t c = alphabet[m_random.Below(static_cast<unsigned>(alphabet.size()))];
        if (c >= 0xD800 && c <= 0xDFFF)
            c = u'\u4e2d';
        m_literals.push_back(c);
        if (std::u16string(u"\\^$.|?*+()[]{}/-").find(c) != std::u16string::npos)
            return std::u16string(u"\\") + c;
        return std::u16string(1, c);
    }

    std::u16string ClassMember() {
        const unsigned kind = m_random.Below(100);
        if (kind < 20) {
            static const std::vector<std::u16string> escapes = {u"\\d", u"\\D", u"\\w",
                                                                u"\\W", u"\\s", u"\\S"};
            return m_random.Pick(escapes);
        }
        if (kind < 45) {
            static const std::vector<std::u16string> ranges = {
                u"a-z",           u"A-Z",           u"0-9", u"a-c",         u"x-z",
                u"\u00c0-\u00ff", u"\u4e00-\u9fff", u"!-/", u"\\x20-\\x2f", u"\\u0061-\\u0063"};
            const std::u16string& range = m_random.Pick(ranges);
            m_literals.push_back(range[0]);
            return range;
        }
        const std::u16string literal = Literal();
        if (literal == u"]" || literal == u"\\]")
            return u"\\]";
        return literal;
    }

    Node Atom(int depth, bool inRepeat, bool inLookahead) {
        const unsigned kind = m_random.Below(100);
        if (kind < 40)
            return {Literal(), false};
        if (kind < 48)
            return {u".", false};
        if (kind < 58) {
            static const std::vector<std::u16string> escapes = {
                u"\\d",   u"\\D",     u"\\w", u"\\W", u"\\s", u"\\S",
                u"\\x41", u"\\u00e9", u"\\t", u"\\n", u"\\."};
            return {m_random.Pick(escapes), false};
        }
        if (kind < 75) {
            std::u16string text = m_random.Chance(25) ? u"[^" : u"[";
            const unsigned members = 1 + m_random.Below(4);
            for (unsigned i = 0; i < members; ++i)
                text += ClassMember();
            return {text + u"]", false};
        }
        if (kind < 80 && !m_referable.empty()) {
            std::u16string text = u"\\";
            for (char c : std::to_string(m_random.Pick(m_referable)))
                text.push_back(static_cast<char16_t>(c));
            return {text, true};
        }
        if (depth >= 3)
            return {Literal(), false};
        const bool capturing = m_random.Chance(60);
        const int number = capturing ? ++m_groups : 0;
        Node inner = Disjunction(depth + 1, inRepeat, inLookahead);
        if (capturing && !inRepeat && !inLookahead)
            m_referable.push_back(number);
        return {(capturing ? u"(" : u"(?:") + inner.text + u")", inner.nullable};
    }

    Random& m_random;
    int m_groups = 0;
    std::vector<int> m_referable;
    std::u16string m_literals;
};

std::u16string RandomText(Random& random, const std::u16string& literals) {
    std::u16string text;
    const unsigned length = random.Below(13);
    const std::u16string& alphabet = PatternGenerator::Alphabet();
    for (unsigned i = 0; i < length; ++i) {
        if (!literals.empty() && random.Chance(60))
            text.push_back(literals[random.Below(static_cast<unsigned>(literals.size()))]);
        else
            text.push_back(alphabet[random.Below(static_cast<unsigned>(alphabet.size()))]);
    }
    return text;
}

std::string Utf8(const std::u16string& wide) {
    platform::SetSystemCodePage(CodePageUtf8);
    return platform::FromWide(wide);
}

struct Tally {
    std::size_t hits = 0, rejected = 0, severalMatches = 0;
};

void ExpectAgreement(const std::vector<OracleCase>& cases, Tally* tally = nullptr) {
    std::vector<OracleAnswer> answers;
    std::string error;
    ASSERT_TRUE(AskNode(cases, answers, error)) << error;
    if (tally != nullptr)
        for (const OracleAnswer& answer : answers) {
            tally->hits += answer.test;
            tally->rejected += answer.rejected;
            tally->severalMatches += answer.matches.size() > 1;
        }
    std::vector<std::string> differences;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const OracleCase& c = cases[i];
        const std::string difference = Difference(c, answers[i], AskFacade(c));
        if (!difference.empty())
            differences.push_back(c.what + ": /" + Printable(c.pattern) + "/" +
                                  (c.global ? "g" : "") + (c.ignoreCase ? "i" : "") + " on '" +
                                  Printable(c.text) + "' (page " + std::to_string(c.codePage) +
                                  "): " + difference);
    }
    std::string listed;
    for (std::size_t i = 0; i < differences.size() && i < 30; ++i)
        listed += "  " + differences[i] + "\n";
    EXPECT_TRUE(differences.empty())
        << differences.size() << " of " << cases.size() << " cases differ:\n"
        << listed;
}

#define REQUIRE_NODE()                                                                             \
    if (NodePath().empty())                                                                        \
    GTEST_SKIP() << "node is not installed (scripts/bootstrap installs it): the differential "     \
                    "test against JavaScript's RegExp can't run"

TEST(RegExpOracle, EngineQuestionsOnRealScripts) {
    REQUIRE_NODE();
    const std::vector<std::string> keywords = Keywords();
    ASSERT_GE(keywords.size(), 20u);
    std::vector<OracleCase> cases;
    std::size_t files = 0;
    for (const std::string& path : CorpusFiles("vbscript")) {
        if (path.size() < 4 || path.substr(path.size() - 4) != ".vbs")
            continue;
        ++files;
        const std::string bytes = ReadFileBytes(path);
        // The one UTF-8 script is read as UTF-8, the others in the Western page.
        platform::SetSystemCodePage(CodePageUtf8);
        const bool utf8 = platform::FromWide(platform::ToWide(bytes)) == bytes &&
                          bytes.find_first_of("\x80\xFF") != std::string::npos;
        const std::vector<std::string> lines = Lines(bytes);
        const std::string origin = path.substr(path.rfind('/') + 1);
        for (std::size_t i = 0; i < lines.size(); i += 41)
            AddEngineQuestions(cases, origin, lines[i], keywords,
                               utf8 ? CodePageUtf8 : CodePageWestern);
    }
    ASSERT_GE(files, 50u) << "the corpus is missing under " << CorpusDir();
    Tally tally;
    ExpectAgreement(cases, &tally);
    std::printf("engine questions: %zu cases, %zu hits\n", cases.size(), tally.hits);
    EXPECT_GT(tally.hits, cases.size() / 20);
}

TEST(RegExpOracle, DoubleByteAndUtf8Text) {
    REQUIRE_NODE();
    const char* lines[] = {
        "Dim 名字, 数量",     "名字 = \"中文\" & 数量",
        "Call 处理(名字, 2)", "If 数量 > 1 Then 按钮.Caption = \"确定\"",
        "  End If ' 结束",    "文本框.Text=名字",
    };
    const std::vector<std::string> keywords = {"If", "Then", "Call", "Dim", "End If"};
    std::vector<OracleCase> cases;
    for (unsigned page : {CodePageSimplifiedChinese, CodePageUtf8}) {
        for (const char* line : lines) {
            const std::string text = Encoded(line, page);
            AddEngineQuestions(cases, "double-byte", text, keywords, page);
            for (const char* name : {"名字", "数量", "处理", "文本框"}) {
                const std::string encoded = Encoded(name, page);
                cases.push_back({"name", encoded + "\\s*[=,)]", text, -1, -1, page, ""});
                cases.push_back({"name", "[^\\w\\.]{1}\\s*" + encoded + "\\s*[^\\w]{1}",
                                 " " + text + " ", -1, -1, page, ""});
                cases.push_back(
                    {"name check", "^[a-zA-Z]{1}[a-zA-Z0-9]*$", encoded, -1, -1, page, ""});
            }
            cases.push_back({"any character", ".", text, -1, -1, page, ""});
            cases.push_back({"non-word run", "\\W+", text, -1, -1, page, ""});
        }
    }
    const char* utf8Lines[] = {"caf\u00e9 = CAF\u00c9 & \u00e9t\u00e9",
                               "x = \"\U0001F600\" ' smile \U0001F600!",
                               "\u0391\u03b2\u03b3 = \u03b1\u0392\u0393"};
    for (const char* line : utf8Lines) {
        for (const char* pattern : {"caf\u00e9", "\u00c9", "\u03b1\u03b2\u03b3", ".", "..",
                                    "[^\\x00-\\x7f]+", "\\W{2}", "\"[^\"]*\"", "[\u00e0-\u00ff]+"})
            for (short ignoreCase : {short(0), short(-1)})
                cases.push_back({"UTF-8", pattern, line, -1, ignoreCase, CodePageUtf8, ""});
    }
    ExpectAgreement(cases);
}

TEST(RegExpOracle, EmptyTexts) {
    REQUIRE_NODE();
    std::vector<OracleCase> cases;
    for (const char* pattern : {"[\\W]{1}If[\\W]{1}",
                                "\\s+",
                                "^\\s*",
                                "\\s*$",
                                "\\s*\\(",
                                "\\s*[^\\w]{1}",
                                "[^\\w\\.]{1}\\s*",
                                "\"[^\"]*\"",
                                "\\s+\\w+\\s*\\(",
                                "^[a-zA-Z]{1}[a-zA-Z0-9]*$",
                                "\\s*=\\s*",
                                "\\s*\\W{1}",
                                "\\s*\\)",
                                "\\s*\\,\\s*",
                                "\\(\\s*",
                                "\\s*",
                                "",
                                "^",
                                "$",
                                "^$",
                                "\\b",
                                "\\B",
                                "a*?",
                                "(?=)",
                                "(?!)",
                                "[^]",
                                "[]",
                                "x{0}"})
        for (short global : {short(0), short(-1)})
            cases.push_back({"empty text", pattern, "", global, -1, CodePageWestern, "<>"});
    ExpectAgreement(cases);
}

TEST(RegExpOracle, LenientAndRejectedForms) {
    REQUIRE_NODE();
    const char* patterns[] = {
        // lenient forms that script engines accept
        "a{", "a{1", "a{,5}", "a{1,2", "{", "}", "]", "x{a}", "\\c", "\\c1", "\\c$", "[\\c1]",
        "[\\c_]", "[\\c*]", "\\cj", "\\x4", "\\xg1", "\\u12", "\\u{41}", "\\k", "\\q", "\\e", "\\1",
        "(a)\\2", "(a)\\12", "(a)\\18", "\\8", "\\08", "\\0", "\\377", "\\400", "[\\1]", "[\\8]",
        "[\\12]", "[\\b]", "[\\B]", "\\-", "[\\d-z]", "[a-\\d]", "[\\w-]", "[--0]", "[a-z-0]",
        "(?=a)*b", "(?=a)+a", "(?!a){0}b", "(?=(a))?\\1", "\\1(a)", "(\\1a)", "a{0}",
        "a{99999999999}", "a{0,4294967296}", "[^]", "[]", "x{1,}?",
        "(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)\\10", "\\ca\\cZ", "[\\x41-\\x43]+", "[\\u0041-\\u0043]",
        "\\/", "a|", "|", "(|)", "()",
        // rejected forms
        "(", ")", "a)", "(?", "(?:", "(?i)a", "(?<", "(?P<a>x)", "[", "[a", "[\\", "\\", "*", "+a",
        "?", "a**", "a???", "a{2}{3}", "{1}", "a|*", "^*", "$+", "\\b+", "\\B{2}", "a{2,1}",
        "[b-a]", "[\\x43-\\x41]", "(a|b", "((a)", "a{1}*"};
    std::vector<OracleCase> cases;
    // The \x1f ends where the next piece starts, so the text is written in two pieces.
    const std::string lenient = std::string("a{,5}]}{\\c1 \x01\x08\x1f") + "aaa\n x{a}0";
    const char* texts[] = {"", lenient.c_str(), "abcdefghijj\x08\t-/"};
    for (const char* pattern : patterns)
        for (const char* text : texts)
            cases.push_back({"forms", pattern, text, -1, 0, CodePageWestern, ""});
    ExpectAgreement(cases);
}

TEST(RegExpOracle, ReplacementMarks) {
    REQUIRE_NODE();
    std::vector<OracleCase> cases;
    for (const char* replacement : {"[$&]", "$`|$'", "$$", "$1$2", "$01$10$11", "$3$0$", "$"})
        for (const char* pattern : {"(\\w)(\\w)?", "b", "x*"})
            for (short global : {short(0), short(-1)})
                cases.push_back(
                    {"replacement", pattern, "ab cd", global, -1, CodePageWestern, replacement});
    ExpectAgreement(cases);
}

TEST(RegExpOracle, GeneratedPatternsFromAFixedSeed) {
    REQUIRE_NODE();
    Random random(0x7A1B0C2D3E4F5061ull);
    PatternGenerator generator(random);
    std::vector<OracleCase> cases;
    while (cases.size() < 2400) {
        const std::u16string pattern = generator.Pattern();
        for (int i = 0; i < 3; ++i) {
            const std::u16string text = RandomText(random, generator.Literals());
            cases.push_back({"generated", Utf8(pattern), Utf8(text),
                             short(random.Chance(70) ? -1 : 0), short(random.Chance(50) ? -1 : 0),
                             CodePageUtf8, ""});
        }
    }
    Tally tally;
    ExpectAgreement(cases, &tally);
    // The generator must give both outcomes in earnest, or agreement would prove little.
    std::printf("generated: %zu cases, %zu hits, %zu with several matches, %zu rejected\n",
                cases.size(), tally.hits, tally.severalMatches, tally.rejected);
    EXPECT_GT(tally.hits, cases.size() / 4);
    EXPECT_LT(tally.hits, cases.size() * 3 / 4);
    EXPECT_GT(tally.severalMatches, cases.size() / 10);
    EXPECT_EQ(tally.rejected, 0u);
}

} // namespace
} // namespace talvor::testing
