// Language codes and their names, as the host asks for them: lookups in g_LanguageTable.
#include "syntax/syntax.h"

#include "platform/codepage/code_page.h"
#include "syntax/detail/language_rows.h"

using talvor::syntax::detail::FindNamedRow;
using talvor::syntax::detail::PlainTextName;

int CTalvorSyntax::GetLanguageByStringShow(CString strName) {
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        if (talvor::platform::CompareExact(strName.View(), row.m_pszName) == 0)
            return static_cast<int>(row.m_nLanguage);
    }
    return static_cast<int>(talvor::syntax::PlainTextCode);
}

CString CTalvorSyntax::GetStringShowByLanguage() {
    return GetLanguageName(m_nLanguage);
}

CString CTalvorSyntax::GetLanguageName(unsigned int nLanguage) {
    const LANGUAGE_INFO* row = FindNamedRow(nLanguage);
    return CString(row != nullptr ? row->m_pszName : PlainTextName);
}
