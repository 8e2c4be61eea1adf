// Reading and writing one member's alias data: per-kind caches filled on demand from the text,
// updates that edit the text by replacing whole sections, entries and language blocks, and
// gap filling from the alias files of every control.
#include "alias/ocx_alias.h"

#include "alias/detail/alias_lines.h"
#include "platform/files/file_find.h"
#include "text/regular_expressions.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>

using talvor::alias::ForEachLine;

namespace {

// Exists only while an update runs: it ends the last section for GetSection.
constexpr const char* EndMark = "[.Unknow!@%^_&*+#$]";
// Replaces "\r\nName=" so that each entry of a section starts with a byte nothing else holds.
constexpr char EntryMarker = '\x07';

const char* SectionHead(unsigned int kind) {
    switch (kind) {
    case 1:
        return "[.Properties]";
    case 2:
        return "[.Events]";
    case 3:
        return "[.Methods]";
    default:
        return "";
    }
}

CString ValueLine(const char* key, const char* value) {
    return CString(key) + "=\"" + value + "\"\r\n";
}

// Removes carriage returns and line feeds at both ends.
CString& StripLineEnds(CString& text) {
    return text.Trim("\r\n");
}

// Offset just behind the first line of text that isFound accepts, when a later line that
// isNext accepts follows it; -1 otherwise. Both see each line with its carriage returns
// stripped.
template <class Found, class Next>
int BehindLineFollowedBy(const CString& text, Found isFound, Next isNext) {
    int offset = 0;
    int behind = -1;
    bool followed = false;
    ForEachLine(text, [&](const CString& piece) {
        CString line = piece;
        line.Trim('\r');
        if (behind < 0 && isFound(line))
            behind = std::min(offset + piece.GetLength() + 1, text.GetLength());
        else if (behind >= 0 && isNext(line))
            followed = true;
        offset += piece.GetLength() + 1;
        return !followed;
    });
    return followed ? behind : -1;
}

} // namespace

CArray<tagALIAS_INFO, tagALIAS_INFO>* CTalvorOcxAlias::CacheOf(unsigned int kind) {
    switch (kind) {
    case 1:
        return &m_arrProperties;
    case 2:
        return &m_arrEvents;
    case 3:
        return &m_arrMethods;
    default:
        return nullptr;
    }
}

void CTalvorOcxAlias::GetAllInfo(CString sectionText, DWORD language,
                                 CArray<tagALIAS_INFO, tagALIAS_INFO>& infos) {
    sectionText.Trim();
    sectionText = "\r\n" + sectionText;
    sectionText.Replace("\r\nName=", CString(EntryMarker));
    const CString pattern = CString(EntryMarker) + "[^" + EntryMarker + "]+";
    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    if (!TVPfxGetInfoByRegExp(pattern, sectionText, matches, -1, -1))
        return;
    infos.RemoveAll();
    const CString languageHead = "[" + LCIDString(language) + "]";
    const char marker[2] = {EntryMarker, '\0'};
    for (INT_PTR i = 0; i < matches.GetSize(); ++i) {
        const CString& entry = matches[i].strValue;
        tagALIAS_INFO info;
        ForEachLine(entry, [&](CString first) {
            first.Trim('\r');
            if (!first.IsEmpty() && IsValueLine(first, marker, nullptr, 0))
                info.strName = GetValue(first, 0);
            return false;
        });
        const CString block = GetSection(entry, languageHead, "[0x");
        if (block.IsEmpty())
            continue;
        ForEachLine(block, [&](CString line) {
            line.Trim('\r');
            if (line.Left(1) == ";")
                return true;
            if (IsValueLine(line, "Alias", nullptr, 0))
                info.strAlias = GetValue(line, 0);
            if (IsValueLine(line, "Description", nullptr, 0))
                info.strDescription = GetValue(line, 0);
            if (IsValueLine(line, "Enum", nullptr, 0))
                info.strEnum = GetValue(line, 0);
            return true;
        });
        infos.Add(info);
    }
}

void CTalvorOcxAlias::GetAlias(unsigned int kind, const char* name, CString& alias,
                               CString& description, CString& enumText, DWORD language) {
    if (name == nullptr || *name == '\0')
        return;
    if (m_dwCacheLanguage != language) {
        m_nReloadKind = 4;
        m_dwCacheLanguage = language;
    }
    if (m_nReloadKind == 4) {
        for (unsigned int each = 1; each <= 3; ++each)
            GetAllInfo(GetSection(m_strIniText, SectionHead(each), "[."), language, *CacheOf(each));
        m_nReloadKind = 0;
    }
    if (m_nReloadKind >= 1 && m_nReloadKind <= 3) {
        const CString section = GetSection(m_strIniText, SectionHead(kind), "[.");
        if (section.IsEmpty())
            return;
        if (kind == static_cast<unsigned int>(m_nReloadKind)) {
            GetAllInfo(section, language, *CacheOf(kind));
            m_nReloadKind = 0;
        }
    }
    CArray<tagALIAS_INFO, tagALIAS_INFO>* cache = CacheOf(kind);
    if (cache == nullptr)
        return;
    for (INT_PTR i = 0; i < cache->GetSize(); ++i) {
        if ((*cache)[i].strName.CompareNoCase(name) != 0)
            continue;
        // The found record goes to the back, so a pass in text order finds each at the front.
        const tagALIAS_INFO found = (*cache)[i];
        alias = found.strAlias;
        description = found.strDescription;
        enumText = found.strEnum;
        cache->RemoveAt(i);
        cache->Add(found);
        return;
    }
}

void CTalvorOcxAlias::SetAlias(unsigned int kind, const char* name, const char* alias,
                               const char* description, const char* enumText, DWORD language) {
    if (name == nullptr || *name == '\0')
        return;
    const CString aliasText(alias), descriptionText(description), enumValue(enumText);
    const bool valueGiven =
        !aliasText.IsEmpty() || !descriptionText.IsEmpty() || !enumValue.IsEmpty();
    m_nReloadKind = m_nReloadKind == 0 ? static_cast<int>(kind) : 4;

    CString newBlock;
    if (!aliasText.IsEmpty())
        newBlock += ValueLine("Alias", aliasText);
    if (!descriptionText.IsEmpty())
        newBlock += ValueLine("Description", descriptionText);
    if (!enumValue.IsEmpty())
        newBlock += ValueLine("Enum", enumValue);

    const CString head(SectionHead(kind));
    if (m_strIniText.Find(head) < 0)
        m_strIniText += head + "\r\n";
    m_strIniText += EndMark;

    CString oldSection = GetSection(m_strIniText, head, "[.");
    CString section = oldSection;
    if (!FindEntry(section, "Name", name) && valueGiven)
        section += CString("Name=\"") + name + "\"\r\n";

    // The entry's own Name line, in the spelling of the text, so the replacement below finds
    // an entry whose name differs from the given one in case only.
    CString nameLine = CString("Name=\"") + name + "\"";
    ForEachLine(section, [&](CString line) {
        line.Trim('\r');
        line.Trim();
        if (!IsValueLine(line, "Name", name, 0))
            return true;
        nameLine = line;
        return false;
    });

    CString oldEntry = GetEntry(section, "Name", name);
    StripLineEnds(oldEntry);
    CString entry = oldEntry;

    const CString languageHead = "[" + LCIDString(language) + "]";
    if (entry.Find(languageHead) < 0 && valueGiven) {
        if (!entry.IsEmpty())
            entry += "\r\n";
        entry += languageHead + "\r\n";
    }

    CString oldBlock = GetSection(entry, languageHead, "[0x");
    if (EnableReplace(oldBlock)) {
        StripLineEnds(oldBlock);
        StripLineEnds(newBlock);
        oldBlock = languageHead + "\r\n" + oldBlock;
        if (!newBlock.IsEmpty())
            newBlock = languageHead + "\r\n" + newBlock;
        entry.Replace(oldBlock, newBlock);
    } else {
        entry += newBlock + "\r\n";
    }

    if (EnableReplace(oldEntry)) {
        StripLineEnds(oldEntry);
        StripLineEnds(entry);
        oldEntry = nameLine + "\r\n" + oldEntry;
        if (!entry.IsEmpty()) {
            entry = nameLine + "\r\n" + entry;
            StripLineEnds(entry);
            entry += "\r\n";
        }
        section.Replace(oldEntry, entry);
    } else if (const int at = BehindLineFollowedBy(
                   section,
                   [&](CString line) { return IsValueLine(line.Trim(), "Name", name, 0) != 0; },
                   [&](const CString& line) { return IsValueLine(line, "Name", nullptr, 0) != 0; });
               at >= 0) {
        // An entry of no lines before other entries: its lines go right behind its Name line,
        // not to the end of the section under another member.
        section.Insert(at, entry + "\r\n");
    } else {
        section += entry + "\r\n";
    }

    if (EnableReplace(oldSection)) {
        StripLineEnds(oldSection);
        StripLineEnds(section);
        m_strIniText.Replace(oldSection, section);
    } else {
        // A section of blank lines before other sections takes its lines right behind its
        // head; appended to the end of the text, the last section would take them.
        const int at = BehindLineFollowedBy(
            m_strIniText,
            [&](CString line) { return !line.Trim().IsEmpty() && line.CompareNoCase(head) == 0; },
            [&](const CString& line) {
                return line.Left(2) == "[." &&
                       line.Left(static_cast<int>(strlen(EndMark))) != EndMark;
            });
        if (at >= 0) {
            StripLineEnds(section);
            m_strIniText.Insert(at, section + "\r\n");
        } else {
            m_strIniText += section + "\r\n";
        }
    }

    m_strIniText.Replace(EndMark, "");
    while (m_strIniText.Find("\r\n\r\n\r\n") >= 0)
        m_strIniText.Replace("\r\n\r\n\r\n", "\r\n\r\n");
}

void CTalvorOcxAlias::GetAliasFromFiles(unsigned int kind, const char* name, DWORD language) {
    if (name == nullptr || *name == '\0')
        return;
    CString alias, description, enumText;
    GetAlias(kind, name, alias, description, enumText, language);

    CString root;
    GetRootPath(root);
    const CString pattern = root + "/OcxAlias/*.ini";
    CTalvorOcxAlias other;
    CFileFind finder;
    BOOL more = finder.FindFile(pattern);
    while (more) {
        more = finder.FindNextFile();
        const CString path = finder.GetFilePath();
        // Asking the shell for the file's display name is, here, asking whether it can be read.
        if (access(path.GetString(), R_OK) != 0)
            return;
        if (!other.LoadFromFile(path))
            continue;
        CString fileAlias, fileDescription, fileEnum;
        other.GetAlias(kind, name, fileAlias, fileDescription, fileEnum, language);
        if (!fileAlias.IsEmpty() && (alias.IsEmpty() || alias.CompareNoCase(name) == 0))
            alias = fileAlias;
        if (!fileDescription.IsEmpty() &&
            (description.IsEmpty() || description.CompareNoCase(name) == 0))
            description = fileDescription;
        if (!fileEnum.IsEmpty() && enumText.IsEmpty())
            enumText = fileEnum;
        if (!alias.IsEmpty() && !description.IsEmpty() && !enumText.IsEmpty())
            break;
    }
    SetAlias(kind, name, alias, description, enumText, language);
}
