// The keyword store: loading the list of the current language into a sorted array, and the
// binary search the parsers use on it.
#include "syntax/syntax.h"

#include "platform/code_page.h"
#include "platform/profile.h"
#include "syntax/detail/language_rows.h"
#include "syntax/detail/word_tests.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* KeywordSection = "MainWnd\\DockingPaneLayouts\\PaneMacro\\Keywords";

} // namespace

namespace talvor::syntax::detail {

namespace {

// The exact comparison: bytes as unsigned values, a prefix before the longer text.
int CompareBytes(std::string_view a, std::string_view b) {
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(a[i]);
        const auto y = static_cast<unsigned char>(b[i]);
        if (x != y)
            return (x > y) - (x < y);
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

constexpr std::array<unsigned char, 256> AsciiLowerTable = [] {
    std::array<unsigned char, 256> table{};
    for (int c = 0; c < 256; ++c)
        table[static_cast<std::size_t>(c)] =
            static_cast<unsigned char>((c >= 'A' && c <= 'Z') ? c - 'A' + 'a' : c);
    return table;
}();

// Words longer than this are searched with the code page's comparison; no keyword is as long.
constexpr std::size_t FoldedWordRoom = 64;

// The comparison that ignores case, for a word of ASCII bytes already folded to lower case:
// entry bytes are folded, and both compared as bytes. An entry with a byte above 0x7F is left
// to the code page's comparison, which folds whole characters; up to that byte both agree.
int CompareFoldedAscii(std::string_view folded, std::string_view word, std::string_view entry) {
    const std::size_t common = folded.size() < entry.size() ? folded.size() : entry.size();
    for (std::size_t i = 0; i < common; ++i) {
        const auto y = static_cast<unsigned char>(entry[i]);
        if (y >= 0x80)
            return platform::CompareNoCase(word, entry);
        const unsigned char x = static_cast<unsigned char>(folded[i]);
        const unsigned char z = AsciiLowerTable[y];
        if (x != z)
            return (x > z) - (x < z);
    }
    return folded.size() == entry.size() ? 0 : (folded.size() < entry.size() ? -1 : 1);
}

// Folds an ASCII word into room; false when the word has other bytes or does not fit.
bool FoldAscii(std::string_view word, char* room) {
    if (word.size() > FoldedWordRoom)
        return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const auto c = static_cast<unsigned char>(word[i]);
        if (c >= 0x80)
            return false;
        room[i] = static_cast<char>(AsciiLowerTable[c]);
    }
    return true;
}

} // namespace

bool IsKeyword(const CStringArray& keywords, bool exactCase, std::string_view word) {
    const CString* entries = keywords.GetData();
    INT_PTR low = 0;
    INT_PTR high = keywords.GetSize() - 1;
    char room[FoldedWordRoom];
    const bool asciiWord = !exactCase && FoldAscii(word, room);
    const std::string_view folded(room, asciiWord ? word.size() : 0);
    while (low <= high) {
        INT_PTR middle = (low + high) / 2;
        std::string_view entry = entries[middle].View();
        int order = exactCase   ? CompareBytes(word, entry)
                    : asciiWord ? CompareFoldedAscii(folded, word, entry)
                                : platform::CompareNoCase(word, entry);
        if (order == 0)
            return true;
        // Which half goes on is data, not a pattern a branch predictor can learn.
        const bool after = order > 0;
        low = after ? middle + 1 : low;
        high = after ? high : middle - 1;
    }
    return false;
}

} // namespace talvor::syntax::detail

void CTalvorSyntax::LoadSynWord() {
    LoadParseRule(); // first: the case rule decides how the list is folded
    m_arrKeyWords.RemoveAll();

    CString text;
    if (const LANGUAGE_INFO* row = talvor::syntax::detail::FindLanguageRow(m_nLanguage))
        text = AfxGetApp()->GetProfileString(KeywordSection, row->m_pszName, row->m_pszKeyWords);
    if (!m_bCase)
        text.MakeLower();

    // Runs of commas count as one and nothing is trimmed, so the first entry keeps its blank.
    int position = 0;
    for (;;) {
        CString entry = text.Tokenize(",", position);
        if (entry.IsEmpty())
            break;
        m_arrKeyWords.Add(entry);
    }
    SortSynWordArray();
}

void CTalvorSyntax::SortSynWordArray() {
    // Insertion sort with a linear search from the front: each entry goes before the first
    // one that is not less than it, so equal entries keep their order.
    auto first = m_arrKeyWords.begin();
    const INT_PTR size = m_arrKeyWords.GetSize();
    for (INT_PTR i = 1; i < size; ++i) {
        const std::string_view entry = first[i].View();
        INT_PTR j = 0;
        while (j < i && talvor::platform::CompareExact(first[j].View(), entry) < 0)
            ++j;
        if (j < i)
            std::rotate(first + j, first + i, first + i + 1);
    }
}

int CTalvorSyntax::IsSynWord(CString& strWord) {
    return talvor::syntax::detail::IsKeyword(m_arrKeyWords, m_bCase != 0, strWord.View()) ? 1 : 0;
}
