// Language codes and their names: the row lookups of the language table.
#include "syntax/detail/language_rows.h"

#include "platform/codepage/code_page.h"

#include <iterator>

namespace talvor::syntax::detail {

const LANGUAGE_INFO* FindLanguageRow(UINT code) {
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        if (row.m_nLanguage == code)
            return &row;
    }
    return nullptr;
}

} // namespace talvor::syntax::detail

using talvor::syntax::detail::FindLanguageRow;
using talvor::syntax::detail::PlainTextName;

int CTalvorSyntax::GetLanguageByStringShow(CString strName) {
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        if (talvor::platform::CompareExact(strName.View(), row.m_pszName) == 0)
            return static_cast<int>(row.m_nLanguage);
    }
    return 35;
}

CString CTalvorSyntax::GetStringShowByLanguage() {
    return GetLanguageName(m_nLanguage);
}

CString CTalvorSyntax::GetLanguageName(unsigned int nLanguage) {
    const LANGUAGE_INFO* row = FindLanguageRow(nLanguage);
    return CString(row != nullptr ? row->m_pszName : PlainTextName);
}
