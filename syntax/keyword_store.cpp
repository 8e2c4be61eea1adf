// The keyword store: loading the list of the current language into a sorted array.
#include "syntax/syntax.h"

#include "platform/app/profile.h"
#include "platform/app/profile_sections.h"
#include "platform/codepage/code_page.h"
#include "syntax/detail/language_rows.h"
#include "syntax/keyword_cache.h"

#include <algorithm>

namespace {

constexpr const char* KeywordSection = talvor::platform::KeywordsSection;

} // namespace

void CTalvorSyntax::LoadSynWord() {
    LoadParseRule(); // first: the case rule decides how the list is folded
    m_arrKeyWords.RemoveAll();

    CString text;
    if (const LANGUAGE_INFO* row = talvor::syntax::detail::FindNamedRow(m_nLanguage))
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
    // one that is not less than it. Equal entries are equal bytes, so their order is moot.
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
