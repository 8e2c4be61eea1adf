// Syntax colouring: the rule set, sorted keywords and colours of one source language, and the
// two line parsers that turn a line into colour runs while a cookie carries state between lines.
#pragma once

#include "platform/core/win_types.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

#include <cstddef>

class CArchive;

namespace talvor::syntax {
class DocumentColourer;
// Room for the keyword search's hash table inside each object (checked where it is defined).
inline constexpr std::size_t KeywordCacheBytes = 128;
} // namespace talvor::syntax

// One colour run: it starts at a byte offset of the line and reaches to the start of the next
// run (the last one to the end of the line). Runs may share a start; the last of them counts.
struct COLORINFO {
    int m_nCharPos;    // byte offset in the line where the run starts
    int m_nColorIndex; // one of the COLOR_ values below
};

// Colour indices the line parsers emit.
constexpr int COLOR_COMMENT = 0; // m_clrCommentColor
constexpr int COLOR_KEYWORD = 1; // m_clrSyntaxColor
constexpr int COLOR_NORMAL = 2;  // m_clrNormalColor
constexpr int COLOR_NUMBER = 3;  // m_clrNumberColor
constexpr int COLOR_STRING = 4;  // m_clrStringColor
constexpr int COLOR_CHAR = 5;    // m_clrCharColor

// Bits of the parse cookie: the construct a line ends in. 0 is normal text; 0xFFFFFFFF is no
// cookie but the editor's mark for an unknown one.
constexpr unsigned long COOKIE_LINE_COMMENT = 0x02;
constexpr unsigned long COOKIE_BLOCK_COMMENT = 0x04;
constexpr unsigned long COOKIE_STRING = 0x10;
constexpr unsigned long COOKIE_CHAR = 0x20;
constexpr unsigned long COOKIE_SCRIPT = 0x40; // inside a script element (HTML and XML only)
constexpr unsigned long COOKIE_TAG = 0x80;    // inside a tag (HTML and XML only)

// One row of the language table.
typedef struct tagLANGUAGE_INFO {
    UINT m_nLanguage;          // language code; 28 and 31 have no row, 35 is plain text
    const char* m_pszName;     // name, also the text shown to the user
    const char* m_pszComment;  // comment string the text commands use by default
    const char* m_pszKeyWords; // built-in keywords: a blank, then entries each ended by ","
} LANGUAGE_INFO;

// The languages in code order: 0 to 27, 29, 30, 32, 33, 34.
extern const LANGUAGE_INFO g_LanguageTable[33];

class CTalvorSyntax {
public:
    // Default colours; no rule and no keyword is loaded until LoadSynWord or LoadParseRule runs.
    CTalvorSyntax();
    // Also releases the rule strings, so an owner that forgot DeleteAllocString leaks nothing.
    ~CTalvorSyntax();
    // Copies own their rule strings.
    CTalvorSyntax(const CTalvorSyntax& other);
    CTalvorSyntax& operator=(const CTalvorSyntax& other);

    unsigned int GetLanguage() const { return m_nLanguage; }
    // Stores the code and reloads nothing: the old rules stay until LoadSynWord runs.
    void SetLanguage(unsigned int nLanguage) { m_nLanguage = nLanguage; }
    // The sorted keyword array itself; a host that changes it keeps it sorted for IsSynWord.
    CStringArray* GetKeyWords() { return &m_arrKeyWords; }

    // Stores or loads the 17 colours as 68 bytes (m_clrTab before m_clrBKSelText), by the
    // archive's direction. A short archive throws CArchiveException; colours read before the
    // failure keep their new values.
    virtual void SerializeColor(CArchive& ar);

    // Nonzero when the word is in m_arrKeyWords: binary search, exact when m_bCase, else
    // ignoring case. An unsorted array gives what the search finds. Empty array: 0.
    int IsSynWord(CString& strWord);
    // Nonzero when the word is a number of the current language; an empty word is none.
    int IsNumber(CString& strWord);

    UINT m_nLanguage;
    COLORREF m_clrBkColor;
    COLORREF m_clrCommentColor;
    COLORREF m_clrSyntaxColor;
    COLORREF m_clrNormalColor;
    COLORREF m_clrStringColor;
    COLORREF m_clrCharColor;
    COLORREF m_clrNumberColor;
    COLORREF m_clrUnderLine;
    COLORREF m_clrBkCurLine;
    COLORREF m_clrLineEnd;
    COLORREF m_clrLinNumberBkColor;
    COLORREF m_clrLinNumberNormal;
    COLORREF m_clrCurLinNumber;
    COLORREF m_clrLinNumberSep;
    COLORREF m_clrCross;
    COLORREF m_clrBKSelText;
    COLORREF m_clrTab;
    CString m_strInString; // extra word bytes, one byte each
    // Rule strings, owned (new[]); null or empty slots never match. A count says how many slots
    // of its family the parsers examine; values outside 0 to 2 (or 0 to 1) are clipped.
    char* m_pszBeginCommentEx[2];
    char* m_pszEndCommentEx[2];
    char* m_pszLineComment[2];
    char* m_pszBeginString;
    char* m_pszEndString;
    char* m_pszBeginChar;
    char* m_pszEndChar;
    BOOL m_bEscape; // a backslash escapes a closer inside strings and character literals
    BOOL m_bCase;   // keywords compare with exact case
    int m_nInStringCount;
    int m_nBeginCommentExCount;
    int m_nEndCommentExCount;
    int m_nLineCommentCount;
    int m_nBeginStringCount;
    int m_nEndStringCount;
    int m_nBeginCharCount;
    int m_nEndCharCount;
    CStringArray m_arrKeyWords; // sorted by exact comparison; lower case when m_bCase is 0

protected:
    // Code of the row named exactly strName (case matters); 35 when no row has that name.
    int GetLanguageByStringShow(CString strName);
    // Name of the row of m_nLanguage, or "Plain text" when it has none (28, 31, 35 and above).
    CString GetStringShowByLanguage();
    CString GetLanguageName(unsigned int nLanguage);
    // The comment string of the text commands: the profile's "LineCommentStr0" (default: the
    // table comment), else its "LineCommentStr1", cleaned of blanks and tabs; may be empty.
    CString GetLineCommentString();
    // Loads the rules of m_nLanguage: the built-in defaults, overridden by the profile. A stored
    // value that is blank switches a rule off. Codes above 34 end with no rules at all.
    void LoadParseRule();
    // Releases the ten rule strings and nulls their slots; counts and flags stay as they are.
    void DeleteAllocString();

    // Loads rules, then the keywords of m_nLanguage (the profile may replace the whole list),
    // lower-cased unless m_bCase, cut at commas and sorted. No row: no keywords.
    void LoadSynWord();
    // Insertion sort by exact comparison, ascending; duplicates stay.
    void SortSynWordArray();

    // Colours one line (no line end) from the cookie at its start and returns the cookie at its
    // end. pBuf, when not null, has room for length + 1 runs (HTML and XML: 2 * length + 1)
    // behind the nActualItems the caller set (normally 0); nActualItems counts what is added.
    // A negative nActualItems is taken as "no run list": only the cookie is worked out.
    // A multi-byte character of the system code page is stepped over whole: it belongs to an
    // open word but never to a match of a rule. Run offsets are byte offsets.
    unsigned long ParseLine(unsigned long dwCookie, CString& strLine, COLORINFO* pBuf,
                            int& nActualItems);
    // The parser of languages 14 and 34; ParseLine forwards to it.
    unsigned long ParseLineForHtml(unsigned long dwCookie, CString& strLine, COLORINFO* pBuf,
                                   int& nActualItems);

private:
    // Colours whole documents with ParseLine and loads languages with LoadSynWord.
    friend class talvor::syntax::DocumentColourer;

    void CopyRulesFrom(const CTalvorSyntax& other);

    // Hashed answers of the keyword search, built in place: its type stays out of this header,
    // yet the parsers reach it without a pointer to follow. Each object has its own; copies
    // start empty. See syntax/keyword_cache.h.
    alignas(16) unsigned char m_keywordCache[talvor::syntax::KeywordCacheBytes];
};
