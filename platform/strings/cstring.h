// CString: the framework's 8-bit string in the system code page. Value semantics (the same
// observable behaviour as the framework's shared buffer); positions and lengths count bytes,
// and searching, trimming, case mapping and tokenising step over multi-byte characters.
#pragma once

#include "platform/core/win_types.h"

#include <cstdarg>
#include <iosfwd>
#include <string>
#include <string_view>

class CString {
public:
    CString() = default;
    CString(const char* text) : m_text(text == nullptr ? "" : text) {}
    CString(const char* text, int length);
    CString(char ch, int repeat = 1);
    CString(const unsigned char* text) : CString(reinterpret_cast<const char*>(text)) {}
    explicit CString(std::string text) : m_text(std::move(text)) {}
    explicit CString(std::string_view text) : m_text(text) {}

    // Access
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    // Keeps the first newLength bytes; a length outside the text changes nothing.
    void Truncate(int newLength) {
        if (newLength >= 0 && newLength < GetLength())
            m_text.resize(static_cast<std::size_t>(newLength));
    }
    // A position outside the text gives 0 instead of reading past it.
    char GetAt(int index) const;
    char operator[](int index) const { return GetAt(index); }
    // A position outside the text is ignored.
    void SetAt(int index, char ch);
    const char* GetString() const { return m_text.c_str(); }
    operator const char*() const { return m_text.c_str(); }
    const std::string& Str() const { return m_text; }
    std::string_view View() const { return m_text; }

    // Raw buffer access in the framework's style: GetBuffer(n) gives room for n bytes and a NUL;
    // ReleaseBuffer(-1) takes the length from the NUL, ReleaseBuffer(n) sets it to n.
    char* GetBuffer(int minLength = 0);
    char* GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);

    // Assignment and concatenation
    CString& operator=(const char* text);
    CString& operator=(char ch);
    CString& operator+=(const CString& text);
    CString& operator+=(const char* text);
    CString& operator+=(char ch);
    void Append(const char* text, int length);
    void AppendChar(char ch) { m_text.push_back(ch); }

    // Comparison: Compare is exact (byte order), CompareNoCase folds case per character of the
    // system code page; Collate and CollateNoCase are the same comparisons.
    int Compare(const char* text) const;
    int CompareNoCase(const char* text) const;
    int Collate(const char* text) const { return Compare(text); }
    int CollateNoCase(const char* text) const { return CompareNoCase(text); }

    // Extraction. Counts and positions are clipped to the text.
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Left(int count) const;
    CString Right(int count) const;
    CString SpanIncluding(const char* chars) const;
    CString SpanExcluding(const char* chars) const;

    // Searching: -1 when there is no match; a match never starts inside a multi-byte character.
    int Find(char ch, int start = 0) const;
    int Find(const char* sub, int start = 0) const;
    int ReverseFind(char ch) const;
    int FindOneOf(const char* chars) const;

    // Changing
    void MakeUpper();
    void MakeLower();
    void MakeReverse();
    int Replace(char oldChar, char newChar);
    int Replace(const char* oldText, const char* newText);
    int Remove(char ch);
    int Insert(int index, char ch);
    int Insert(int index, const char* text);
    int Delete(int index, int count = 1);

    // Trimming: with no argument white space (blank, tab, CR, LF, VT, FF), else the one character
    // or any character of the set.
    CString& Trim();
    CString& Trim(char target);
    CString& Trim(const char* targets);
    CString& TrimLeft();
    CString& TrimLeft(char target);
    CString& TrimLeft(const char* targets);
    CString& TrimRight();
    CString& TrimRight(char target);
    CString& TrimRight(const char* targets);

    // The next token from position start: skips leading characters of tokens, returns the text
    // up to the next one and moves start behind that delimiter. At the end it returns an empty
    // text and sets start to -1. With an empty token set it returns the rest of the text and
    // leaves start alone, as the framework does. A negative start gives an empty text.
    CString Tokenize(const char* tokens, int& start) const;

    // printf formatting ("%ld", "0x%04x", "%#08.8x", "%s%d", ...).
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(const char* format, va_list args);
    void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Loads string id from the current resource source; false, with the string emptied, when
    // there is no such string.
    BOOL LoadString(UINT id);

private:
    std::string m_text;
};

CString operator+(const CString& a, const CString& b);
CString operator+(const CString& a, const char* b);
CString operator+(const char* a, const CString& b);
CString operator+(const CString& a, char b);
CString operator+(char a, const CString& b);

bool operator==(const CString& a, const CString& b);
bool operator==(const CString& a, const char* b);
bool operator==(const char* a, const CString& b);
bool operator!=(const CString& a, const CString& b);
bool operator!=(const CString& a, const char* b);
bool operator!=(const char* a, const CString& b);
bool operator<(const CString& a, const CString& b);
bool operator<(const CString& a, const char* b);
bool operator>(const CString& a, const CString& b);
bool operator<=(const CString& a, const CString& b);
bool operator>=(const CString& a, const CString& b);

std::ostream& operator<<(std::ostream& out, const CString& text);

// Piece n (from 0) of fullString cut at separator, into result. Fails, with result emptied,
// when the text has fewer than n separators or is null; the piece behind a final separator
// exists and is empty. Separators inside a multi-byte character do not cut.
BOOL AfxExtractSubString(CString& result, const char* fullString, int subString,
                         char separator = '\n');
