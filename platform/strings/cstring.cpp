// CString operations; every search and trim steps by whole characters of the system code page.
#include "platform/strings/cstring.h"

#include "platform/codepage/char_set.h"
#include "platform/codepage/code_page.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <vector>

using talvor::platform::CharLengthAt;
using talvor::platform::CodePageUtf8;
using talvor::platform::IsMultiByteCodePage;
using talvor::platform::SystemCodePage;

namespace {

constexpr const char* WhiteSpace = " \t\r\n\v\f";

// The string class finds a one-byte character anywhere in a set, even as a trail byte.
constexpr talvor::platform::SetMatch SetRule = talvor::platform::SetMatch::SingleBytesAnywhere;

bool InSet(std::string_view text, std::size_t pos, std::size_t n, std::string_view set) {
    return talvor::platform::CharInSet(text, pos, n, set, SetRule);
}

// Length of the leading run of characters that are (or are not) in set.
std::size_t SpanOf(std::string_view text, std::string_view set, bool including) {
    return talvor::platform::SpanOfSet(text, set, including, SetRule);
}

// Start of the trailing run of characters in set, found by a forward walk so that a trail
// byte is never mistaken for a character of its own.
// True when no byte below 0x80 can be part of a longer character: single-byte pages and
// UTF-8, not the double-byte pages, whose trail bytes reach down to 0x40.
bool AsciiStandsAlone() {
    return !IsMultiByteCodePage() || SystemCodePage() == CodePageUtf8;
}

std::size_t TrailingStart(std::string_view text, std::string_view set) {
    const bool asciiSet = std::all_of(set.begin(), set.end(),
                                      [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (asciiSet && AsciiStandsAlone()) {
        // The run can be found from the end: a byte of the set is a character of its own.
        std::size_t start = text.size();
        while (start > 0 && text[start - 1] != '\0' &&
               set.find(text[start - 1]) != std::string_view::npos)
            --start;
        return start;
    }
    std::size_t start = text.size();
    bool inRun = false;
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t n = CharLengthAt(text, pos);
        if (InSet(text, pos, n, set)) {
            if (!inRun) {
                start = pos;
                inRun = true;
            }
        } else {
            inRun = false;
            start = text.size();
        }
        pos += n;
    }
    return inRun ? start : text.size();
}

} // namespace

CString::CString(const char* text, int length) {
    if (text != nullptr && length > 0)
        m_text.assign(text, static_cast<std::size_t>(length));
}

CString::CString(char ch, int repeat) {
    if (repeat > 0)
        m_text.assign(static_cast<std::size_t>(repeat), ch);
}

char CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength())
        return '\0';
    return m_text[static_cast<std::size_t>(index)];
}

void CString::SetAt(int index, char ch) {
    if (index >= 0 && index < GetLength())
        m_text[static_cast<std::size_t>(index)] = ch;
}

char* CString::GetBuffer(int minLength) {
    if (minLength > GetLength())
        m_text.resize(static_cast<std::size_t>(minLength));
    return m_text.data();
}

char* CString::GetBufferSetLength(int length) {
    m_text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return m_text.data();
}

void CString::ReleaseBuffer(int newLength) {
    if (newLength < 0) {
        m_text.resize(std::strlen(m_text.c_str()));
    } else if (static_cast<std::size_t>(newLength) <= m_text.size()) {
        m_text.resize(static_cast<std::size_t>(newLength));
    }
}

CString& CString::operator=(const char* text) {
    if (text == nullptr)
        m_text.clear();
    else
        m_text.assign(text); // assign copes with text pointing into m_text
    return *this;
}

CString& CString::operator=(char ch) {
    m_text.assign(1, ch);
    return *this;
}

CString& CString::operator+=(const CString& text) {
    m_text += text.m_text;
    return *this;
}

CString& CString::operator+=(const char* text) {
    if (text != nullptr)
        m_text.append(text);
    return *this;
}

CString& CString::operator+=(char ch) {
    m_text.push_back(ch);
    return *this;
}

void CString::Append(const char* text, int length) {
    if (text != nullptr && length > 0)
        m_text.append(text, static_cast<std::size_t>(length));
}

int CString::Compare(const char* text) const {
    return talvor::platform::CompareExact(std::string_view(m_text.c_str()),
                                          text == nullptr ? "" : text);
}

int CString::CompareNoCase(const char* text) const {
    return talvor::platform::CompareNoCase(std::string_view(m_text.c_str()),
                                           text == nullptr ? "" : text);
}

CString CString::Mid(int first) const {
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
    first = std::max(first, 0);
    count = std::max(count, 0);
    if (first >= GetLength())
        return CString();
    count = std::min(count, GetLength() - first);
    return CString(m_text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

CString CString::Left(int count) const {
    return Mid(0, count);
}

CString CString::Right(int count) const {
    count = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - count, count);
}

CString CString::SpanIncluding(const char* chars) const {
    return Left(static_cast<int>(SpanOf(m_text, chars == nullptr ? "" : chars, true)));
}

CString CString::SpanExcluding(const char* chars) const {
    return Left(static_cast<int>(SpanOf(m_text, chars == nullptr ? "" : chars, false)));
}

int CString::Find(char ch, int start) const {
    if (start < 0 || start >= GetLength())
        return -1;
    std::size_t pos = talvor::platform::FindChar(m_text, ch, static_cast<std::size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const char* sub, int start) const {
    if (sub == nullptr || start < 0 || start > GetLength())
        return -1;
    std::size_t pos = talvor::platform::FindText(m_text, sub, static_cast<std::size_t>(start));
    return pos == std::string::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(char ch) const {
    int last = -1;
    for (std::size_t pos = 0; pos < m_text.size(); pos += CharLengthAt(m_text, pos))
        if (m_text[pos] == ch && CharLengthAt(m_text, pos) == 1)
            last = static_cast<int>(pos);
    return last;
}

int CString::FindOneOf(const char* chars) const {
    std::size_t n = SpanOf(m_text, chars == nullptr ? "" : chars, false);
    return n >= m_text.size() ? -1 : static_cast<int>(n);
}

void CString::MakeUpper() {
    talvor::platform::MakeUpperInPlace(m_text);
}
void CString::MakeLower() {
    talvor::platform::MakeLowerInPlace(m_text);
}

void CString::MakeReverse() {
    // Reverse by characters, so a double-byte character keeps its byte order.
    std::vector<std::string_view> chars;
    for (std::size_t pos = 0; pos < m_text.size();) {
        std::size_t n = CharLengthAt(m_text, pos);
        chars.emplace_back(m_text.data() + pos, n);
        pos += n;
    }
    std::string reversed;
    reversed.reserve(m_text.size());
    for (auto it = chars.rbegin(); it != chars.rend(); ++it)
        reversed.append(*it);
    m_text = std::move(reversed);
}

int CString::Replace(char oldChar, char newChar) {
    int count = 0;
    for (std::size_t pos = 0; pos < m_text.size();) {
        std::size_t n = CharLengthAt(m_text, pos);
        if (n == 1 && m_text[pos] == oldChar) {
            m_text[pos] = newChar;
            ++count;
        }
        pos += n;
    }
    return count;
}

int CString::Replace(const char* oldText, const char* newText) {
    if (oldText == nullptr || *oldText == '\0')
        return 0;
    std::string_view from(oldText);
    std::string_view to(newText == nullptr ? "" : newText);
    std::string result;
    int count = 0;
    std::size_t pos = 0;
    for (;;) {
        std::size_t hit = talvor::platform::FindText(m_text, from, pos);
        if (hit == std::string::npos)
            break;
        result.append(m_text, pos, hit - pos);
        result.append(to);
        pos = hit + from.size();
        ++count;
    }
    if (count > 0) {
        result.append(m_text, pos, std::string::npos);
        m_text = std::move(result);
    }
    return count;
}

int CString::Remove(char ch) {
    std::string result;
    result.reserve(m_text.size());
    int count = 0;
    for (std::size_t pos = 0; pos < m_text.size();) {
        std::size_t n = CharLengthAt(m_text, pos);
        if (n == 1 && m_text[pos] == ch)
            ++count;
        else
            result.append(m_text, pos, n);
        pos += n;
    }
    m_text = std::move(result);
    return count;
}

int CString::Insert(int index, char ch) {
    index = std::clamp(index, 0, GetLength());
    m_text.insert(static_cast<std::size_t>(index), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const char* text) {
    index = std::clamp(index, 0, GetLength());
    if (text != nullptr)
        m_text.insert(static_cast<std::size_t>(index), text);
    return GetLength();
}

int CString::Delete(int index, int count) {
    index = std::max(index, 0);
    if (count > 0 && index < GetLength())
        m_text.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
    return GetLength();
}

CString& CString::Trim() {
    return TrimRight().TrimLeft();
}
CString& CString::Trim(char target) {
    return TrimRight(target).TrimLeft(target);
}
CString& CString::Trim(const char* targets) {
    return TrimRight(targets).TrimLeft(targets);
}

CString& CString::TrimLeft() {
    return TrimLeft(WhiteSpace);
}

CString& CString::TrimLeft(char target) {
    char set[2] = {target, '\0'};
    return TrimLeft(set);
}

CString& CString::TrimLeft(const char* targets) {
    if (targets == nullptr || *targets == '\0')
        return *this;
    m_text.erase(0, SpanOf(m_text, targets, true));
    return *this;
}

CString& CString::TrimRight() {
    return TrimRight(WhiteSpace);
}

CString& CString::TrimRight(char target) {
    char set[2] = {target, '\0'};
    return TrimRight(set);
}

CString& CString::TrimRight(const char* targets) {
    if (targets == nullptr || *targets == '\0')
        return *this;
    m_text.resize(TrailingStart(m_text, targets));
    return *this;
}

CString CString::Tokenize(const char* tokens, int& start) const {
    if (start < 0) {
        start = -1;
        return CString();
    }
    if (tokens == nullptr || *tokens == '\0') {
        if (start < GetLength())
            return Mid(start);
    } else if (start < GetLength()) {
        std::string_view rest = std::string_view(m_text).substr(static_cast<std::size_t>(start));
        std::size_t including = SpanOf(rest, tokens, true);
        if (including < rest.size()) {
            std::size_t excluding = SpanOf(rest.substr(including), tokens, false);
            int from = start + static_cast<int>(including);
            // Behind the token stands one delimiter character; step over all of it.
            std::size_t delimiterAt = including + excluding;
            std::size_t delimiterLength =
                delimiterAt < rest.size() ? CharLengthAt(rest, delimiterAt) : 1;
            start = from + static_cast<int>(excluding) + static_cast<int>(delimiterLength);
            return Mid(from, static_cast<int>(excluding));
        }
    }
    start = -1;
    return CString();
}

void CString::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args) {
    if (format == nullptr) {
        m_text.clear();
        return;
    }
    va_list copy;
    va_copy(copy, args);
    char small[256];
    int needed = std::vsnprintf(small, sizeof small, format, copy);
    va_end(copy);
    if (needed < 0) {
        m_text.clear();
        return;
    }
    if (static_cast<std::size_t>(needed) < sizeof small) {
        m_text.assign(small, static_cast<std::size_t>(needed));
        return;
    }
    std::string buffer(static_cast<std::size_t>(needed) + 1, '\0');
    std::vsnprintf(buffer.data(), buffer.size(), format, args);
    buffer.resize(static_cast<std::size_t>(needed));
    m_text = std::move(buffer);
}

void CString::AppendFormat(const char* format, ...) {
    CString piece;
    va_list args;
    va_start(args, format);
    piece.FormatV(format, args);
    va_end(args);
    m_text += piece.m_text;
}

CString operator+(const CString& a, const CString& b) {
    CString r(a);
    r += b;
    return r;
}
CString operator+(const CString& a, const char* b) {
    CString r(a);
    r += b;
    return r;
}
CString operator+(const char* a, const CString& b) {
    CString r(a);
    r += b;
    return r;
}
CString operator+(const CString& a, char b) {
    CString r(a);
    r += b;
    return r;
}
CString operator+(char a, const CString& b) {
    CString r(a);
    r += b;
    return r;
}

bool operator==(const CString& a, const CString& b) {
    return a.Str() == b.Str();
}
bool operator==(const CString& a, const char* b) {
    return a.Compare(b) == 0;
}
bool operator==(const char* a, const CString& b) {
    return b.Compare(a) == 0;
}
bool operator!=(const CString& a, const CString& b) {
    return !(a == b);
}
bool operator!=(const CString& a, const char* b) {
    return !(a == b);
}
bool operator!=(const char* a, const CString& b) {
    return !(a == b);
}
bool operator<(const CString& a, const CString& b) {
    return a.Compare(b) < 0;
}
bool operator<(const CString& a, const char* b) {
    return a.Compare(b) < 0;
}
bool operator>(const CString& a, const CString& b) {
    return a.Compare(b) > 0;
}
bool operator<=(const CString& a, const CString& b) {
    return a.Compare(b) <= 0;
}
bool operator>=(const CString& a, const CString& b) {
    return a.Compare(b) >= 0;
}

std::ostream& operator<<(std::ostream& out, const CString& text) {
    return out << text.Str();
}

BOOL AfxExtractSubString(CString& result, const char* fullString, int subString, char separator) {
    result.Empty();
    if (fullString == nullptr || subString < 0)
        return FALSE;
    std::string_view text(fullString);
    std::size_t pos = 0;
    while (subString-- > 0) {
        std::size_t hit = talvor::platform::FindChar(text, separator, pos);
        if (hit == std::string_view::npos)
            return FALSE;
        pos = hit + 1;
    }
    std::size_t end = talvor::platform::FindChar(text, separator, pos);
    if (end == std::string_view::npos)
        end = text.size();
    result = CString(text.substr(pos, end - pos));
    return TRUE;
}
