// CTalvorOcxAlias: one control's alias file in memory. The file gives each property, event and
// method of the control a display name, a description and an enumeration text per language, in
// an INI-like text kept whole in m_strIniText; nothing reaches the disk before SaveToFile.
//
// Text format, as the writers produce it (every line ends in "\r\n"; readers also take "\n"):
//   Default=[0x0804]                  the file's default language
//   ;Sample Gauge Control             comment with the display name, above the identity
//   CLSID="{1111...}"                 which control the file describes
//   [.Properties]                     section of kind 1 ([.Events] 2, [.Methods] 3)
//   Name="Caption"                    one member
//   [0x0804]                          one language block of it
//   Alias="Title"                     Alias, Description, Enum: a line only for a value
// A value is what stands between the first and the last quote of its line; nothing is escaped.
// Keys match as case-insensitive prefixes of the line; member names compare without case.
//
// Cases the format leaves open, decided as a user would expect:
// - An entry whose Name line differs in case from the name given to SetAlias is updated in
//   place; its Name line keeps the spelling of the file.
// - A new entry for a section that exists but holds only blank lines lands in that section
//   (right behind its head), not at the end of the text where a later section would take it.
// - A new language block for an entry that has only its Name line lands in that entry (right
//   behind its Name line), not at the end of the section under another member.
// - Alias files lie in "OcxAlias" beside the executable, with "/" between folders.
// - SaveToFile writes under a temporary name in the same folder and renames it over the file,
//   so a failed save leaves the old file whole; GetLastSaveError says why it failed.
#pragma once

#include "platform/com/guid.h"
#include "platform/strings/arrays.h"
#include "platform/strings/cstring.h"

// One member in one language.
struct tagALIAS_INFO {
    CString strName;        // the member's name as its entry head states it
    CString strAlias;       // display name in that language
    CString strDescription; // description in that language
    CString strEnum;        // enumeration text, passed through unchanged
};

class CTalvorOcxAlias {
public:
    CTalvorOcxAlias();
    // Gives up the text and the caches; never saves.
    virtual ~CTalvorOcxAlias();

    // The folder of the executable, without a separator at its end; the whole path when it
    // holds no separator.
    void GetRootPath(CString& path);

    // Reads a file and normalises its text (FormatIniText). Whatever follows, the file name is
    // set first, and the text and the caches are emptied. 0 for a null or empty name or a file
    // that can't be opened; the text then stays empty.
    int LoadFromFile(const char* fileName);
    // The same for the control's own file in the alias folder; a control without a display
    // name gives the empty path, which the load refuses with 0.
    int LoadFromCLSID(const char* clsid);
    int LoadFromCLSID(GUID clsid);
    // Writes exactly the text, no more. 0 for a null or empty name or a failed write (a missing
    // folder among the causes: it isn't created); the old file and the file name stay then.
    int SaveToFile(const char* fileName);
    // Why the last SaveToFile returned 0; empty after a successful save.
    CString GetLastSaveError() const { return m_strLastSaveError; }

    CString GetFileName() const { return m_strFileName; }
    void SetFileName(CString name) { m_strFileName = name; }
    CString GetIniText() const { return m_strIniText; }
    // Stores the text as it is, unnormalised, and marks every cache out of date.
    void SetIniText(CString text);

    // Writes the identity line (and the comment line with the display name above it if the
    // text lacks one) in place of the first CLSID line, or at the top. No effect for a control
    // without a display name.
    void SetCLSID(const char* clsid);
    // The same with the identifier in its registry text, braces and upper-case digits.
    void SetCLSID(GUID clsid);
    // The identifier the first CLSID line states; empty when there is none.
    CString GetCLSID();
    // Writes "Default=[0x%04x]" in place of every Default line, or at the top. 0 stands for the
    // system's default language.
    void SetLCID(DWORD language);
    // 1 with the language of the first Default line; 0, language untouched, when there is no
    // such line or its value isn't "0x" and four characters.
    int GetLCID(DWORD& language);

    // A member's display name, description and enumeration text in one language (kind 1
    // property, 2 event, 3 method). The outputs change only when the member is found. name
    // must not be null.
    void GetAlias(unsigned int kind, const char* name, CString& alias, CString& description,
                  CString& enumText, DWORD language);
    // Writes a member's block in one language; null values count as empty, and with no value
    // given the block (and an entry left without blocks) disappears. Text in memory only.
    void SetAlias(unsigned int kind, const char* name, const char* alias, const char* description,
                  const char* enumText, DWORD language);
    // Parses one section's text into records; infos stays as it was when the section holds
    // no entry.
    void GetAllInfo(CString sectionText, DWORD language,
                    CArray<tagALIAS_INFO, tagALIAS_INFO>& infos);
    // Fills the member's empty values (and an alias or description equal to its name) from the
    // alias files of every control, then writes them with SetAlias. A null or empty name does
    // nothing.
    void GetAliasFromFiles(unsigned int kind, const char* name, DWORD language);

protected:
    // The path of the control's alias file; empty when the control has no usable name.
    CString GetFilePathName(const char* clsid);

    // 1 if a line of text, trimmed, equals line without regard to case.
    int FindLine(const char* text, const char* line);
    // The lines behind the line head, each ended by "\r\n", up to a line that begins with
    // nextPrefix; empty when text lacks head.
    CString GetSection(const char* text, const char* head, const char* nextPrefix);
    // Whether line is a line of key (a case-insensitive prefix, after removing sep and its
    // partner), and if value is given, whether its value equals value.
    int IsValueLine(const char* line, const char* key, const char* value, char sep);
    // The text between the first sep and the last partner of sep; empty when there is none.
    CString GetValue(const char* line, char sep);
    // The lines behind the first line of key with value, up to the next line of key.
    CString GetEntry(const char* text, const char* key, const char* value);
    // 1 if text has a line of key with value.
    int FindEntry(const char* text, const char* key, const char* value);
    // Normalises text (trimmed lines, no empty ones, a blank line above every section and entry
    // head) and stores it as the object's text; a null or empty text leaves it alone.
    void FormatIniText(const char* text);
    // Turns a display name into a file name: digits, ASCII letters and blanks stay, every
    // other byte becomes "_".
    void DisposalTypeName(CString& name);

public:
    CArray<tagALIAS_INFO, tagALIAS_INFO> m_arrProperties;
    CArray<tagALIAS_INFO, tagALIAS_INFO> m_arrEvents;
    CArray<tagALIAS_INFO, tagALIAS_INFO> m_arrMethods;
    int m_nReloadKind;       // out of date: 0 none, 1 to 3 that kind's cache, 4 all
    DWORD m_dwCacheLanguage; // language the caches were read for
    CString m_strFileName;
    CString m_strIniText;

private:
    char GetRightSep(char left);
    CString LCIDString(DWORD language);
    // 1 if text holds more than carriage returns and line feeds at its ends.
    int EnableReplace(const char* text);

    CArray<tagALIAS_INFO, tagALIAS_INFO>* CacheOf(unsigned int kind);
    CString m_strLastSaveError;
};
