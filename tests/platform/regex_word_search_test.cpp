// The keyword test's pattern "[\W]{1}" + word + "[\W]{1}" is matched by a scan, not by
// PCRE2. The same pattern with the word in a group, "[\W]{1}(?:" + word + ")[\W]{1}", means
// the same and is left to PCRE2: both must give the same matches on every line of the corpus
// and on texts made to sit on the edges (text ends, digits and "_" beside the word, letters
// beyond ASCII whose case folds onto an ASCII letter, surrogates).
#include "platform/regex/regex_engine.h"

#include "tests/support/corpus.h"
#include "tests/support/regexp_match_spans.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace talvor::platform;

// "index:length" of every match (the first alone without global), Test's answer and the
// text with the matches marked by Replace.
std::string Matches(RegExpEngine& engine, std::u16string_view text, bool global) {
    engine.put_Global(global ? VARIANT_TRUE : VARIANT_FALSE);
    VARIANT_BOOL tested = VARIANT_FALSE;
    RegExpMatchCollection matches;
    if (FAILED(engine.Test(text, &tested)) || FAILED(engine.Execute(text, &matches)))
        return "failed";
    std::string listed = tested ? "T" : "F";
    if (const std::string spans = talvor::testing::MatchSpans(matches); !spans.empty())
        listed.append(" ").append(spans);
    std::u16string replaced;
    engine.Replace(text, u"<$&>", &replaced);
    return listed + " " + std::string(replaced.begin(), replaced.end());
}

const std::u16string Words[] = {u"If",  u"End If", u"Do While", u"Loop While",  u"k",      u"s",
                                u"_x1", u"Case",   u"Exit",     u"Select Case", u"Then  ", u"9"};

// One engine per word and case flag for each form, so each pattern compiles once.
struct EnginePair {
    std::string what;
    std::unique_ptr<RegExpEngine> scanned = std::make_unique<RegExpEngine>();
    std::unique_ptr<RegExpEngine> grouped = std::make_unique<RegExpEngine>();
};

std::vector<EnginePair>& Engines() {
    static std::vector<EnginePair> engines = [] {
        std::vector<EnginePair> list;
        for (const std::u16string& word : Words)
            for (bool ignoreCase : {false, true}) {
                EnginePair pair;
                pair.what.assign(word.begin(), word.end());
                if (ignoreCase)
                    pair.what.append(" /i");
                pair.scanned->put_Pattern(u"[\\W]{1}" + word + u"[\\W]{1}");
                pair.grouped->put_Pattern(u"[\\W]{1}(?:" + word + u")[\\W]{1}");
                pair.scanned->put_IgnoreCase(ignoreCase ? VARIANT_TRUE : VARIANT_FALSE);
                pair.grouped->put_IgnoreCase(ignoreCase ? VARIANT_TRUE : VARIANT_FALSE);
                list.push_back(std::move(pair));
            }
        return list;
    }();
    return engines;
}

void ExpectSameAsPcre(std::u16string_view text) {
    for (EnginePair& pair : Engines())
        for (bool global : {false, true})
            ASSERT_EQ(Matches(*pair.scanned, text, global), Matches(*pair.grouped, text, global))
                << pair.what << (global ? " /g" : "");
}

TEST(RegexWordSearch, AgreesWithPcreOnTextsMadeForTheEdges) {
    const std::u16string texts[] = {
        u"",
        u"If",
        u" If ",
        u"If x Then",
        u" IF(x)tHEN ",
        u" if_ If1 _If 1If If",
        u"\tEnd If\r\n",
        u" End  If End\u00a0If ",
        u" do while loop while Do While ",
        u" \u212a k K \u017f s S ",                   // Kelvin sign, long s: no ASCII case
        u"\u00e9If\u00e9 \u0130f \u0131f",            // letters beyond ASCII beside and in it
        u"\xd83d\xde00If\xd83d\xde00 \xdc00If\xd800", // surrogates, paired and alone
        u" _x1 _X1 x_x1 ",
        u" 9 99 9_9 (9) ",
        u" Select Case Case Case Else ",
        u"IfIf If If If",
    };
    for (const std::u16string& text : texts) {
        SCOPED_TRACE(std::string(text.begin(), text.end()));
        ExpectSameAsPcre(text);
    }
}

TEST(RegexWordSearch, AgreesWithPcreOnEveryLineOfTheCorpus) {
    int lines = 0;
    for (const std::string& path : talvor::testing::CorpusFiles("vbscript")) {
        std::stringstream in(talvor::testing::ReadFileBytes(path));
        std::string line;
        while (std::getline(in, line)) {
            // Bytes as Windows-1252 code units below 0x100: enough for the word tests.
            std::u16string padded = u" ";
            for (unsigned char c : line)
                padded.push_back(c);
            padded.push_back(u' ');
            SCOPED_TRACE(path + ": " + line);
            ExpectSameAsPcre(padded);
            ++lines;
        }
    }
    EXPECT_GT(lines, 5000);
}

} // namespace
