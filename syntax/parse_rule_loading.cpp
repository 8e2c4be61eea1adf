// Loading the rule set of the current language: built-in defaults, overridden key by key from
// the application profile, and the comment string that the text commands insert.
#include "syntax/syntax.h"

#include "platform/app/profile.h"
#include "platform/app/profile_sections.h"
#include "syntax/detail/language_rows.h"

#include <cstring>

namespace {

constexpr const char* RuleSectionPath = talvor::platform::ParseRuleSection;
constexpr const char* RuleSectionShort = talvor::platform::ParseRuleSectionShort;

// A profile value loses white space at both ends, then tabs at both ends.
void Clean(CString& value) {
    value.TrimLeft();
    value.TrimRight();
    value.TrimLeft('\t');
    value.TrimRight('\t');
}

char* AllocateCopy(const CString& value) {
    char* copy = new char[static_cast<std::size_t>(value.GetLength()) + 1];
    std::memcpy(copy, value.GetString(), static_cast<std::size_t>(value.GetLength()) + 1);
    return copy;
}

} // namespace

void CTalvorSyntax::LoadParseRule() {
    m_strInString.Empty();
    m_bEscape = 0;
    m_bCase = 0;
    m_nInStringCount = 0;
    m_nBeginCommentExCount = 0;
    m_nEndCommentExCount = 0;
    m_nLineCommentCount = 0;
    m_nBeginStringCount = 0;
    m_nEndStringCount = 0;
    m_nBeginCharCount = 0;
    m_nEndCharCount = 0;
    DeleteAllocString();

    const talvor::syntax::detail::DefaultRules* defaults =
        talvor::syntax::detail::FindDefaultRules(m_nLanguage);
    if (defaults == nullptr)
        return; // plain text and unknown codes: no rules, and the profile is not asked
    if (talvor::syntax::detail::FindLanguageRow(m_nLanguage)->escapeAndCase) {
        m_bEscape = 1;
        m_bCase = 1;
    }

    CString section = CString(RuleSectionPath) + GetLanguageName(m_nLanguage);
    CWinApp* app = AfxGetApp();
    m_bCase = static_cast<BOOL>(app->GetProfileInt(section, "g_bCase", m_bCase));

    CString inString = app->GetProfileString(section, "strInString", defaults->inString);
    Clean(inString);
    if (!inString.IsEmpty()) {
        m_strInString = inString;
        m_nInStringCount = inString.GetLength();
    }

    // Each stored rule sets the count of its family to its slot index plus 1, whatever the
    // other slot of the family holds.
    struct Key {
        const char* name;
        const char* fallback;
        char** slot;
        int* count;
        int index;
    };
    const Key keys[] = {
        {"BeginCommentExStr0", defaults->beginComment[0], &m_pszBeginCommentEx[0],
         &m_nBeginCommentExCount, 0},
        {"BeginCommentExStr1", defaults->beginComment[1], &m_pszBeginCommentEx[1],
         &m_nBeginCommentExCount, 1},
        {"EndCommentExStr0", defaults->endComment[0], &m_pszEndCommentEx[0], &m_nEndCommentExCount,
         0},
        {"EndCommentExStr1", defaults->endComment[1], &m_pszEndCommentEx[1], &m_nEndCommentExCount,
         1},
        {"LineCommentStr0", defaults->lineComment[0], &m_pszLineComment[0], &m_nLineCommentCount,
         0},
        {"LineCommentStr1", defaults->lineComment[1], &m_pszLineComment[1], &m_nLineCommentCount,
         1},
        {"BeginStringStr0", defaults->beginString, &m_pszBeginString, &m_nBeginStringCount, 0},
        {"EndStringStr0", defaults->endString, &m_pszEndString, &m_nEndStringCount, 0},
        {"BeginCharStr0", defaults->beginChar, &m_pszBeginChar, &m_nBeginCharCount, 0},
        {"EndCharStr0", defaults->endChar, &m_pszEndChar, &m_nEndCharCount, 0},
    };
    for (const Key& key : keys) {
        CString value = app->GetProfileString(section, key.name, key.fallback);
        Clean(value);
        if (value.IsEmpty())
            continue; // a blank stored value switches the default rule off
        *key.slot = AllocateCopy(value);
        *key.count = key.index + 1;
    }
}

CString CTalvorSyntax::GetLineCommentString() {
    const LANGUAGE_INFO* row = talvor::syntax::detail::FindNamedRow(m_nLanguage);
    const char* tableComment = row != nullptr ? row->m_pszComment : "";
    CString section = CString(RuleSectionShort) + GetLanguageName(m_nLanguage);
    CWinApp* app = AfxGetApp();
    CString comment = app->GetProfileString(section, "LineCommentStr0", tableComment);
    Clean(comment);
    if (comment.IsEmpty()) {
        comment = app->GetProfileString(section, "LineCommentStr1", "");
        Clean(comment);
    }
    return comment;
}
