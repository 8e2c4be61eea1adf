// Questions about a language asked outside the parsers, answered from the language table.
#include "syntax/languages.h"

#include "platform/codepage/code_page.h"
#include "syntax/detail/language_rows.h"

namespace talvor::syntax {

bool UsesTagParser(UINT language) {
    const detail::LanguageRow* row = detail::FindLanguageRow(language);
    return row != nullptr && row->parser == detail::LineParser::Tags;
}

int LanguageByName(std::string_view name) {
    for (const LANGUAGE_INFO& row : g_LanguageTable) {
        if (platform::CompareExact(name, row.m_pszName) == 0)
            return static_cast<int>(row.m_nLanguage);
    }
    return name == detail::PlainTextName ? static_cast<int>(PlainTextCode) : -1;
}

UINT LanguageForFileName(std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.find_last_of('.');
    if (dot == std::string_view::npos || dot == 0)
        return PlainTextCode;
    const std::string_view extension = name.substr(dot + 1);
    for (const detail::LanguageRow& row : detail::LanguageRows()) {
        std::string_view list = row.extensions;
        while (!list.empty()) {
            const std::size_t blank = list.find(' ');
            const std::string_view known = list.substr(0, blank);
            if (known.size() == extension.size() && platform::CompareNoCase(known, extension) == 0)
                return CodeOf(row.code);
            list = blank == std::string_view::npos ? std::string_view() : list.substr(blank + 1);
        }
    }
    return PlainTextCode;
}

} // namespace talvor::syntax
