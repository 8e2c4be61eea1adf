// The hashed keyword lookup must answer exactly as the binary search of the array does.
#include "syntax/detail/keyword_search.h"
#include "syntax/keyword_cache.h"

#include "platform/codepage/code_page.h"

#include <gtest/gtest.h>
#include <random>

using namespace talvor;

namespace {

CStringArray Words(std::initializer_list<const char*> words) {
    CStringArray array;
    for (const char* w : words)
        array.Add(w);
    return array;
}

void ExpectSameAnswers(syntax::KeywordCache& cache, const CStringArray& keywords, bool exactCase,
                       const std::vector<std::string>& probes) {
    for (const std::string& word : probes) {
        SCOPED_TRACE(word);
        EXPECT_EQ(cache.Contains(keywords, exactCase, word),
                  syntax::detail::IsKeyword(keywords, exactCase, word));
    }
}

} // namespace

TEST(KeywordCache, AnswersAsTheBinarySearchOnSortedLists) {
    CStringArray lower = Words({" alias", "and", "dim", "dim", "end", "if", "then", "#if", "wend"});
    // sorted by exact comparison as the keyword store leaves it
    CStringArray sorted =
        Words({" alias", "#if", "and", "dim", "dim", "end", "if", "then", "wend"});
    syntax::KeywordCache cache;
    const std::vector<std::string> probes = {"If",  "IF",    "if",     "iff",  "i",
                                             "Dim", "alias", " alias", "#IF",  "wend",
                                             "We",  "",      "x",      "THEN", "then "};
    ExpectSameAnswers(cache, sorted, false, probes);
    ExpectSameAnswers(cache, sorted, true, probes);
    EXPECT_TRUE(cache.Contains(sorted, false, "THEN"));
    EXPECT_FALSE(cache.Contains(sorted, true, "THEN"));
    EXPECT_FALSE(cache.Contains(sorted, false, "alias")); // the entry keeps its leading blank
    (void)lower;
}

TEST(KeywordCache, AnUnsortedListGivesWhatTheSearchFinds) {
    // A host that edits the list and does not sort it gets the search's answer, misses included.
    CStringArray unsorted = Words({"then", "and", "if", "dim", "zz", "end"});
    syntax::KeywordCache cache;
    ExpectSameAnswers(cache, unsorted, false, {"then", "and", "if", "dim", "zz", "end", "x"});
}

TEST(KeywordCache, FollowsChangesOfTheArray) {
    CStringArray keywords = Words({"dim", "if"});
    syntax::KeywordCache cache;
    EXPECT_TRUE(cache.Contains(keywords, false, "If"));
    keywords.SetAt(1, "then");
    EXPECT_FALSE(cache.Contains(keywords, false, "If"));
    EXPECT_TRUE(cache.Contains(keywords, false, "Then"));
    keywords[0] = "and"; // a non-const element access counts as a change too
    EXPECT_TRUE(cache.Contains(keywords, false, "AND"));
    keywords.RemoveAll();
    EXPECT_FALSE(cache.Contains(keywords, false, "and"));
    syntax::KeywordCache copy(cache);
    EXPECT_FALSE(copy.Contains(keywords, false, "and"));
}

TEST(KeywordCache, FoldsWholeCharactersOfTheCodePage) {
    syntax::KeywordCache cache;
    platform::SetSystemCodePage(1252);
    CStringArray latin = Words({"caf\xE9", "\xE9t\xE9"});
    EXPECT_TRUE(cache.Contains(latin, false, "CAF\xC9"));
    EXPECT_TRUE(cache.Contains(latin, false, "\xC9T\xC9"));
    platform::SetSystemCodePage(65001); // the same bytes are no characters in UTF-8
    ExpectSameAnswers(cache, latin, false, {"CAF\xC9", "caf\xE9", "\xC9T\xC9"});
    CStringArray utf8 = Words({"caf\xC3\xA9", "stra\xC3\x9F"
                                              "e"});
    ExpectSameAnswers(cache, utf8, false,
                      {"CAF\xC3\x89",
                       "Stra\xC3\x9F"
                       "E",
                       "stra\xC3\x9F"
                       "e",
                       "caf"});
    EXPECT_TRUE(cache.Contains(utf8, false, "CAF\xC3\x89"));
}

TEST(KeywordCache, RandomListsAndWords) {
    std::mt19937 random(99);
    const char letters[] = "aAbB_#\xC3\xA9";
    auto word = [&] {
        std::string w;
        for (int n = 1 + random() % 4; n > 0; --n)
            w.push_back(letters[random() % (sizeof letters - 1)]);
        return w;
    };
    for (unsigned page : {1252u, 65001u}) {
        platform::SetSystemCodePage(page);
        for (int round = 0; round < 200; ++round) {
            CStringArray keywords;
            for (int n = random() % 12; n > 0; --n)
                keywords.Add(word().c_str());
            if (round % 2 == 0) { // sorted the way the store sorts a list that ignores case
                std::vector<std::string> items;
                for (const CString& k : keywords) {
                    std::string lower = k.Str();
                    platform::MakeLowerInPlace(lower);
                    items.push_back(lower);
                }
                std::sort(items.begin(), items.end());
                keywords.RemoveAll();
                for (const std::string& i : items)
                    keywords.Add(i.c_str());
            }
            syntax::KeywordCache cache;
            std::vector<std::string> probes;
            for (int n = 0; n < 20; ++n)
                probes.push_back(word());
            ExpectSameAnswers(cache, keywords, round % 4 < 2, probes);
            ExpectSameAnswers(cache, keywords, round % 4 >= 2, probes);
        }
    }
}
