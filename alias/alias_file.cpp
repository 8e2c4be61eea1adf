// Where a control's alias file lies, loading and saving it whole, and the two head lines of
// the text: the control's identity (CLSID) and the file's default language (Default).
#include "alias/ocx_alias.h"

#include "alias/detail/alias_lines.h"
#include "host/ole/container.h"
#include "platform/app/module_path.h"
#include "platform/files/file_system.h"
#include "platform/intl/language_ids.h"
#include "typeinfo/instance_helpers.h"

#include <climits>
#include <sys/stat.h>

using talvor::alias::ForEachLine;

namespace {

// The form has no control name to ask for: its fixed identifier and file stem.
constexpr const char* FormClassId = "{D548483F-01FA-4037-B0F5-B90F5DB46D20}";
constexpr const char* FormFileStem = "Orvane 2_0 Form";
constexpr const char* AliasFolder = "OcxAlias";
constexpr char PathSeparator = '/';

bool IsFolder(const CString& path) {
    struct stat info {};
    return stat(path.GetString(), &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

CTalvorOcxAlias::CTalvorOcxAlias() : m_nReloadKind(4), m_dwCacheLanguage(0xFFFFFFFF) {}

CTalvorOcxAlias::~CTalvorOcxAlias() = default;

void CTalvorOcxAlias::GetRootPath(CString& path) {
    // Linux paths run longer than the 260 bytes of the system the format comes from.
    char buffer[PATH_MAX] = {};
    GetModuleFileNameA(nullptr, buffer, sizeof buffer);
    path = buffer;
    const int separator = path.ReverseFind(PathSeparator);
    if (separator >= 0)
        path = path.Left(separator);
}

CString CTalvorOcxAlias::GetFilePathName(const char* clsid) {
    CString root;
    GetRootPath(root);
    CString name(FormFileStem);
    if (clsid != nullptr && *clsid != '\0' && CString(clsid).CompareNoCase(FormClassId) != 0)
        name = VfxGetActiveXName(clsid);
    DisposalTypeName(name);
    if (name.IsEmpty())
        return CString();
    return root + PathSeparator + AliasFolder + PathSeparator + name + ".ini";
}

int CTalvorOcxAlias::LoadFromCLSID(const char* clsid) {
    return LoadFromFile(GetFilePathName(clsid));
}

int CTalvorOcxAlias::LoadFromFile(const char* fileName) {
    m_strFileName = fileName;
    m_strIniText.Empty();
    m_arrProperties.RemoveAll();
    m_arrEvents.RemoveAll();
    m_arrMethods.RemoveAll();
    if (m_strFileName.IsEmpty())
        return 0;
    std::string contents;
    std::string error;
    if (!talvor::platform::ReadWholeFile(m_strFileName.Str(), contents, error))
        return 0;
    // The text stops at a first zero byte.
    FormatIniText(contents.c_str());
    m_nReloadKind = 4;
    return 1;
}

int CTalvorOcxAlias::SaveToFile(const char* fileName) {
    m_strLastSaveError.Empty();
    if (fileName == nullptr || *fileName == '\0') {
        m_strLastSaveError = "alias: no file name to save to";
        return 0;
    }
    // The alias folder is the host's to make; a save never creates it.
    CString folder(fileName);
    const int separator = folder.ReverseFind(PathSeparator);
    folder = separator > 0 ? folder.Left(separator) : CString(separator == 0 ? "/" : ".");
    if (!IsFolder(folder)) {
        m_strLastSaveError.Format("alias: folder %s does not exist", folder.GetString());
        return 0;
    }
    std::string error;
    if (!talvor::platform::WriteFileAtomically(fileName, m_strIniText.View(), error)) {
        m_strLastSaveError = error.c_str();
        return 0;
    }
    m_strFileName = fileName;
    return 1;
}

void CTalvorOcxAlias::SetIniText(CString text) {
    m_strIniText = text;
    m_nReloadKind = 4;
}

int CTalvorOcxAlias::LoadFromCLSID(GUID clsid) {
    return LoadFromCLSID(TVPfxGetCLSID(clsid));
}

void CTalvorOcxAlias::SetCLSID(GUID clsid) {
    SetCLSID(TVPfxGetCLSID(clsid));
}

void CTalvorOcxAlias::SetCLSID(const char* clsid) {
    const CString name = VfxGetActiveXName(clsid);
    if (name.IsEmpty())
        return;
    CString newLine = CString("CLSID=\"") + clsid + "\"";
    const CString comment = ";" + name;
    if (!FindLine(m_strIniText, comment))
        newLine = comment + "\r\n" + newLine;
    CString rebuilt;
    bool replaced = false;
    ForEachLine(m_strIniText, [&](CString line) {
        line.Trim('\r');
        if (!replaced && IsValueLine(line, "CLSID", nullptr, 0)) {
            line = newLine;
            replaced = true;
        }
        rebuilt += line + "\r\n";
        return true;
    });
    if (!replaced)
        rebuilt = newLine + "\r\n" + rebuilt;
    m_strIniText = rebuilt;
}

CString CTalvorOcxAlias::GetCLSID() {
    CString value;
    if (m_strIniText.IsEmpty())
        return value;
    ForEachLine(m_strIniText, [&](CString line) {
        line.Trim('\r');
        if (!IsValueLine(line, "CLSID", nullptr, 0))
            return true;
        value = GetValue(line, 0);
        return false;
    });
    return value;
}

CString CTalvorOcxAlias::LCIDString(DWORD language) {
    if (language == 0)
        language = GetSystemDefaultLangID();
    CString text;
    text.Format("0x%04x", static_cast<unsigned>(language));
    return text;
}

void CTalvorOcxAlias::SetLCID(DWORD language) {
    CString newLine;
    newLine.Format("%s=[%s]", "Default", LCIDString(language).GetString());
    CString rebuilt;
    bool replaced = false;
    ForEachLine(m_strIniText, [&](CString line) {
        line.Trim('\r');
        if (IsValueLine(line, "Default", nullptr, 0)) {
            line = newLine;
            replaced = true;
        }
        rebuilt += line + "\r\n";
        return true;
    });
    if (!replaced)
        rebuilt = newLine + "\r\n" + rebuilt;
    m_strIniText = rebuilt;
}

int CTalvorOcxAlias::GetLCID(DWORD& language) {
    if (m_strIniText.IsEmpty())
        return 0;
    bool found = false;
    CString value;
    ForEachLine(m_strIniText, [&](CString line) {
        line.Trim('\r');
        if (!IsValueLine(line, "Default", nullptr, 0))
            return true;
        found = true;
        value = GetValue(line, '[');
        return false;
    });
    if (!found || value.GetLength() != 6 || value.Left(2) != "0x")
        return 0;
    DWORD number = 0;
    for (int i = 2; i < 6; ++i) {
        const char digit = value[i];
        DWORD part = 255; // any other character counts as 255 in its place
        if (digit >= '0' && digit <= '9')
            part = static_cast<DWORD>(digit - '0');
        else if (digit >= 'A' && digit <= 'F')
            part = static_cast<DWORD>(digit - 'A' + 10);
        else if (digit >= 'a' && digit <= 'f')
            part = static_cast<DWORD>(digit - 'a' + 10);
        number = number * 16 + part;
    }
    language = number;
    return 1;
}
