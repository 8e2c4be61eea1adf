// The primitives that read an alias text: line search, sections, entries, values, and the
// normalised form. They read from the start of the text every time; no index of lines exists.
// Searches for "[", "]" and quotes go through CString, which steps over multi-byte characters,
// so a trail byte of a double-byte character is never taken for one of them.
#include "alias/ocx_alias.h"

#include "alias/detail/alias_lines.h"

#include <cstring>

using talvor::alias::ForEachLine;

namespace {

bool IsEmptyText(const char* text) {
    return text == nullptr || *text == '\0';
}

// True when line begins with prefix, byte for byte.
bool BeginsWith(const CString& line, const char* prefix) {
    const std::size_t length = std::strlen(prefix);
    return static_cast<std::size_t>(line.GetLength()) >= length &&
           std::strncmp(line.GetString(), prefix, length) == 0;
}

} // namespace

char CTalvorOcxAlias::GetRightSep(char left) {
    switch (left) {
    case '(':
        return ')';
    case '<':
        return '>';
    case '[':
        return ']';
    case '{':
        return '}';
    default:
        return left;
    }
}

CString CTalvorOcxAlias::GetValue(const char* line, char sep) {
    if (IsEmptyText(line))
        return CString();
    if (sep == 0 || sep == ' ')
        sep = '"';
    const CString text(line);
    const int first = text.Find(sep);
    const int last = text.ReverseFind(GetRightSep(sep));
    if (first < 0 || last <= first)
        return CString();
    return text.Mid(first + 1, last - first - 1);
}

int CTalvorOcxAlias::IsValueLine(const char* line, const char* key, const char* value, char sep) {
    if (IsEmptyText(line))
        return 0;
    const char* keyText = key != nullptr ? key : "";
    const int keyLength = static_cast<int>(std::strlen(keyText));
    if (static_cast<int>(std::strlen(line)) < keyLength)
        return 0;
    CString copy(line);
    if (sep != 0) {
        copy.Remove(sep);
        copy.Remove(GetRightSep(sep));
        copy.Trim();
    }
    if (copy.Left(keyLength).CompareNoCase(keyText) != 0)
        return 0;
    if (IsEmptyText(value))
        return 1;
    const CString found = GetValue(line, sep);
    return !found.IsEmpty() && found.CompareNoCase(value) == 0 ? 1 : 0;
}

int CTalvorOcxAlias::FindLine(const char* text, const char* line) {
    const char* wanted = line != nullptr ? line : "";
    int found = 0;
    ForEachLine(text, [&](CString piece) {
        piece.Trim('\r');
        piece.Trim();
        if (piece.CompareNoCase(wanted) == 0)
            found = 1;
        return found == 0;
    });
    return found;
}

CString CTalvorOcxAlias::GetSection(const char* text, const char* head, const char* nextPrefix) {
    CString result;
    if (IsEmptyText(text))
        return result;
    const char* headText = head != nullptr ? head : "";
    const char* prefix = nextPrefix != nullptr ? nextPrefix : "";
    bool inside = false;
    ForEachLine(text, [&](CString piece) {
        piece.Trim('\r');
        if (inside) {
            if (BeginsWith(piece, prefix))
                return false;
            result += piece;
            result += "\r\n";
        }
        piece.Trim();
        if (!piece.IsEmpty() && piece.CompareNoCase(headText) == 0)
            inside = true;
        return true;
    });
    return result;
}

int CTalvorOcxAlias::FindEntry(const char* text, const char* key, const char* value) {
    int found = 0;
    ForEachLine(text, [&](CString piece) {
        piece.Trim('\r');
        if (IsValueLine(piece, key, value, 0))
            found = 1;
        return found == 0;
    });
    return found;
}

CString CTalvorOcxAlias::GetEntry(const char* text, const char* key, const char* value) {
    CString result;
    bool inside = false;
    ForEachLine(text, [&](CString piece) {
        piece.Trim('\r');
        if (inside) {
            if (IsValueLine(piece, key, nullptr, 0))
                return false;
            result += piece;
            result += "\r\n";
        }
        piece.Trim();
        if (!inside && IsValueLine(piece, key, value, 0))
            inside = true;
        return true;
    });
    return result;
}

void CTalvorOcxAlias::FormatIniText(const char* text) {
    if (IsEmptyText(text))
        return;
    CString result;
    ForEachLine(text, [&](CString piece) {
        piece.Trim();
        if (piece.IsEmpty())
            return true;
        if (BeginsWith(piece, "[.") || piece.Left(4).CompareNoCase("Name") == 0)
            result += "\r\n";
        result += piece;
        result += "\r\n";
        return true;
    });
    while (result.Find("\r\n\r\n\r\n") >= 0)
        result.Replace("\r\n\r\n\r\n", "\r\n\r\n");
    m_strIniText = result;
}

void CTalvorOcxAlias::DisposalTypeName(CString& name) {
    for (int i = 0; i < name.GetLength(); ++i) {
        const unsigned char byte = static_cast<unsigned char>(name[i]);
        const bool keep = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                          (byte >= 'a' && byte <= 'z') || byte == ' ';
        if (!keep)
            name.SetAt(i, '_');
    }
}

int CTalvorOcxAlias::EnableReplace(const char* text) {
    CString copy(text);
    copy.Trim("\r\n");
    return copy.IsEmpty() ? 0 : 1;
}
