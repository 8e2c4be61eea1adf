// Construction, copying and release of a CTalvorSyntax: default colours and the ownership of
// the ten rule strings.
#include "syntax/syntax.h"

#include "syntax/keyword_cache.h"
#include "syntax/languages.h"

#include <cstring>

namespace {

char* CopyRuleString(const char* text) {
    if (text == nullptr)
        return nullptr;
    std::size_t length = std::strlen(text);
    char* copy = new char[length + 1];
    std::memcpy(copy, text, length + 1);
    return copy;
}

void Release(char*& slot) {
    delete[] slot;
    slot = nullptr;
}

} // namespace

CTalvorSyntax::CTalvorSyntax()
    : m_nLanguage(talvor::syntax::CodeOf(talvor::syntax::Language::Basic)), m_clrBkColor(0xFFFFFF),
      m_clrCommentColor(0x008000), m_clrSyntaxColor(0xFF0000), m_clrNormalColor(0x000000),
      m_clrStringColor(0x000080), m_clrCharColor(0x000080), m_clrNumberColor(0x0000FF),
      m_clrUnderLine(0xC8C8C8), m_clrBkCurLine(0xC8C8C8), m_clrLineEnd(0xC80000),
      m_clrLinNumberBkColor(0xFFFFFF), m_clrLinNumberNormal(0xC0C0C0), m_clrCurLinNumber(0x800000),
      m_clrLinNumberSep(0xC0C0C0), m_clrCross(0x800000), m_clrBKSelText(0x800000),
      m_clrTab(0x808080), m_pszBeginCommentEx{nullptr, nullptr},
      m_pszEndCommentEx{nullptr, nullptr}, m_pszLineComment{nullptr, nullptr},
      m_pszBeginString(nullptr), m_pszEndString(nullptr), m_pszBeginChar(nullptr),
      m_pszEndChar(nullptr), m_bEscape(0), m_bCase(0), m_nInStringCount(0),
      m_nBeginCommentExCount(0), m_nEndCommentExCount(0), m_nLineCommentCount(0),
      m_nBeginStringCount(0), m_nEndStringCount(0), m_nBeginCharCount(0), m_nEndCharCount(0) {
    new (m_keywordCache) talvor::syntax::KeywordCache();
}

CTalvorSyntax::~CTalvorSyntax() {
    DeleteAllocString();
    talvor::syntax::KeywordCacheIn(m_keywordCache).~KeywordCache();
}

CTalvorSyntax::CTalvorSyntax(const CTalvorSyntax& other)
    : m_nLanguage(other.m_nLanguage), m_clrBkColor(other.m_clrBkColor),
      m_clrCommentColor(other.m_clrCommentColor), m_clrSyntaxColor(other.m_clrSyntaxColor),
      m_clrNormalColor(other.m_clrNormalColor), m_clrStringColor(other.m_clrStringColor),
      m_clrCharColor(other.m_clrCharColor), m_clrNumberColor(other.m_clrNumberColor),
      m_clrUnderLine(other.m_clrUnderLine), m_clrBkCurLine(other.m_clrBkCurLine),
      m_clrLineEnd(other.m_clrLineEnd), m_clrLinNumberBkColor(other.m_clrLinNumberBkColor),
      m_clrLinNumberNormal(other.m_clrLinNumberNormal), m_clrCurLinNumber(other.m_clrCurLinNumber),
      m_clrLinNumberSep(other.m_clrLinNumberSep), m_clrCross(other.m_clrCross),
      m_clrBKSelText(other.m_clrBKSelText), m_clrTab(other.m_clrTab),
      m_strInString(other.m_strInString), m_pszBeginCommentEx{nullptr, nullptr},
      m_pszEndCommentEx{nullptr, nullptr}, m_pszLineComment{nullptr, nullptr},
      m_pszBeginString(nullptr), m_pszEndString(nullptr), m_pszBeginChar(nullptr),
      m_pszEndChar(nullptr), m_bEscape(other.m_bEscape), m_bCase(other.m_bCase),
      m_nInStringCount(other.m_nInStringCount),
      m_nBeginCommentExCount(other.m_nBeginCommentExCount),
      m_nEndCommentExCount(other.m_nEndCommentExCount),
      m_nLineCommentCount(other.m_nLineCommentCount),
      m_nBeginStringCount(other.m_nBeginStringCount), m_nEndStringCount(other.m_nEndStringCount),
      m_nBeginCharCount(other.m_nBeginCharCount), m_nEndCharCount(other.m_nEndCharCount),
      m_arrKeyWords(other.m_arrKeyWords) {
    new (m_keywordCache) talvor::syntax::KeywordCache();
    CopyRulesFrom(other);
}

CTalvorSyntax& CTalvorSyntax::operator=(const CTalvorSyntax& other) {
    if (this == &other)
        return *this;
    DeleteAllocString();
    m_nLanguage = other.m_nLanguage;
    m_clrBkColor = other.m_clrBkColor;
    m_clrCommentColor = other.m_clrCommentColor;
    m_clrSyntaxColor = other.m_clrSyntaxColor;
    m_clrNormalColor = other.m_clrNormalColor;
    m_clrStringColor = other.m_clrStringColor;
    m_clrCharColor = other.m_clrCharColor;
    m_clrNumberColor = other.m_clrNumberColor;
    m_clrUnderLine = other.m_clrUnderLine;
    m_clrBkCurLine = other.m_clrBkCurLine;
    m_clrLineEnd = other.m_clrLineEnd;
    m_clrLinNumberBkColor = other.m_clrLinNumberBkColor;
    m_clrLinNumberNormal = other.m_clrLinNumberNormal;
    m_clrCurLinNumber = other.m_clrCurLinNumber;
    m_clrLinNumberSep = other.m_clrLinNumberSep;
    m_clrCross = other.m_clrCross;
    m_clrBKSelText = other.m_clrBKSelText;
    m_clrTab = other.m_clrTab;
    m_strInString = other.m_strInString;
    m_bEscape = other.m_bEscape;
    m_bCase = other.m_bCase;
    m_nInStringCount = other.m_nInStringCount;
    m_nBeginCommentExCount = other.m_nBeginCommentExCount;
    m_nEndCommentExCount = other.m_nEndCommentExCount;
    m_nLineCommentCount = other.m_nLineCommentCount;
    m_nBeginStringCount = other.m_nBeginStringCount;
    m_nEndStringCount = other.m_nEndStringCount;
    m_nBeginCharCount = other.m_nBeginCharCount;
    m_nEndCharCount = other.m_nEndCharCount;
    m_arrKeyWords.Copy(other.m_arrKeyWords);
    // It answered for the old array.
    talvor::syntax::KeywordCacheIn(m_keywordCache) = talvor::syntax::KeywordCache();
    CopyRulesFrom(other);
    return *this;
}

void CTalvorSyntax::CopyRulesFrom(const CTalvorSyntax& other) {
    for (int slot = 0; slot < 2; ++slot) {
        m_pszBeginCommentEx[slot] = CopyRuleString(other.m_pszBeginCommentEx[slot]);
        m_pszEndCommentEx[slot] = CopyRuleString(other.m_pszEndCommentEx[slot]);
        m_pszLineComment[slot] = CopyRuleString(other.m_pszLineComment[slot]);
    }
    m_pszBeginString = CopyRuleString(other.m_pszBeginString);
    m_pszEndString = CopyRuleString(other.m_pszEndString);
    m_pszBeginChar = CopyRuleString(other.m_pszBeginChar);
    m_pszEndChar = CopyRuleString(other.m_pszEndChar);
}

void CTalvorSyntax::DeleteAllocString() {
    for (int slot = 0; slot < 2; ++slot) {
        Release(m_pszBeginCommentEx[slot]);
        Release(m_pszEndCommentEx[slot]);
        Release(m_pszLineComment[slot]);
    }
    Release(m_pszBeginString);
    Release(m_pszEndString);
    Release(m_pszBeginChar);
    Release(m_pszEndChar);
}
