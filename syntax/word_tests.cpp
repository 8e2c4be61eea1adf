// The host's two questions about a word: is it a keyword, is it a number of the language.
#include "syntax/syntax.h"

#include "syntax/detail/number_rules.h"
#include "syntax/keyword_cache.h"

int CTalvorSyntax::IsSynWord(CString& strWord) {
    return talvor::syntax::KeywordCacheIn(m_keywordCache)
                   .Contains(m_arrKeyWords, m_bCase != 0, strWord.View())
               ? 1
               : 0;
}

int CTalvorSyntax::IsNumber(CString& strWord) {
    return talvor::syntax::detail::IsNumberIn(m_nLanguage, strWord.View()) ? 1 : 0;
}
