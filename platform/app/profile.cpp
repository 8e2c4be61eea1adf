// Profile stores (memory, INI file) and the application object that reads and writes them.
#include "platform/app/profile.h"

#include "platform/core/ascii.h"
#include "platform/files/file_system.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace talvor::platform {
namespace {

std::string_view TrimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}

bool NeedsQuotes(const std::string& value) {
    if (value.empty())
        return false;
    if (value.front() == ' ' || value.front() == '\t' || value.back() == ' ' ||
        value.back() == '\t' || value.front() == '"')
        return true;
    for (unsigned char c : value)
        if (c < 0x20 || c == 0x7F)
            return true;
    return false;
}

std::string Quote(const std::string& value) {
    std::string out = "\"";
    for (unsigned char c : value) {
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7F) {
                char hex[5];
                std::snprintf(hex, sizeof hex, "\\x%02x", c);
                out += hex;
            } else {
                out.push_back(static_cast<char>(c));
            }
        }
    }
    out += '"';
    return out;
}

} // namespace

namespace {

std::string Unquote(std::string_view text) {
    std::string out;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        char c = text[i];
        if (c != '\\' || i + 2 >= text.size()) {
            out.push_back(c);
            continue;
        }
        char e = text[++i];
        switch (e) {
        case 'n':
            out.push_back('\n');
            break;
        case 'r':
            out.push_back('\r');
            break;
        case 't':
            out.push_back('\t');
            break;
        case 'x':
            if (i + 2 < text.size() - 1 && HexDigitValue(text[i + 1]) >= 0 &&
                HexDigitValue(text[i + 2]) >= 0) {
                out.push_back(static_cast<char>(HexDigitValue(text[i + 1]) * 16 +
                                                HexDigitValue(text[i + 2])));
                i += 2;
            } else {
                out.push_back('x');
            }
            break;
        default:
            out.push_back(e);
            break;
        }
    }
    return out;
}

} // namespace

bool NoCaseLess::operator()(const std::string& a, const std::string& b) const {
    return strcasecmp(a.c_str(), b.c_str()) < 0;
}

bool MemoryProfile::Get(const std::string& section, const std::string& key,
                        std::string& value) const {
    auto s = m_data.find(section);
    if (s == m_data.end())
        return false;
    auto k = s->second.find(key);
    if (k == s->second.end())
        return false;
    value = k->second;
    return true;
}

bool MemoryProfile::Set(const std::string& section, const std::string& key,
                        const std::string& value) {
    m_data[section][key] = value;
    return true;
}

bool MemoryProfile::RemoveKey(const std::string& section, const std::string& key) {
    auto s = m_data.find(section);
    if (s != m_data.end())
        s->second.erase(key);
    return true;
}

bool MemoryProfile::RemoveSection(const std::string& section) {
    m_data.erase(section);
    return true;
}

IniFileProfile::IniFileProfile(std::string path) : m_path(std::move(path)) {
    Reload();
}

bool IniFileProfile::Reload() {
    m_data.clear();
    if (!FileExists(m_path))
        return true;
    std::string text;
    if (!ReadWholeFile(m_path, text, m_lastError))
        return false;
    Parse(text, m_data);
    return true;
}

void IniFileProfile::Parse(std::string_view text, ProfileData& data) {
    std::string section;
    bool inSection = false;
    while (!text.empty()) {
        std::size_t end = text.find('\n');
        std::string_view line = TrimBlanks(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.empty() || line.front() == ';' || line.front() == '#')
            continue;
        if (line.front() == '[') {
            std::size_t close = line.rfind(']');
            if (close == std::string_view::npos || close == 0)
                continue; // a damaged header line is skipped, its keys go to the section before
            section.assign(line.substr(1, close - 1));
            data[section];
            inSection = true;
            continue;
        }
        std::size_t eq = line.find('=');
        if (!inSection || eq == std::string_view::npos)
            continue;
        std::string key(TrimBlanks(line.substr(0, eq)));
        std::string_view raw = TrimBlanks(line.substr(eq + 1));
        if (key.empty())
            continue;
        if (raw.size() >= 2 && raw.front() == '"' && raw.back() == '"')
            data[section][key] = Unquote(raw);
        else
            data[section][key] = std::string(raw);
    }
}

std::string IniFileProfile::Serialize(const ProfileData& data) {
    std::string out;
    for (const auto& [section, keys] : data) {
        if (!out.empty())
            out += '\n';
        out += '[' + section + "]\n";
        for (const auto& [key, value] : keys)
            out += key + '=' + (NeedsQuotes(value) ? Quote(value) : value) + '\n';
    }
    return out;
}

bool IniFileProfile::Save(const ProfileData& before) {
    if (WriteFileAtomically(m_path, Serialize(m_data), m_lastError))
        return true;
    m_data = before;
    return false;
}

bool IniFileProfile::Set(const std::string& section, const std::string& key,
                         const std::string& value) {
    ProfileData before = m_data;
    MemoryProfile::Set(section, key, value);
    return Save(before);
}

bool IniFileProfile::RemoveKey(const std::string& section, const std::string& key) {
    ProfileData before = m_data;
    MemoryProfile::RemoveKey(section, key);
    return Save(before);
}

bool IniFileProfile::RemoveSection(const std::string& section) {
    ProfileData before = m_data;
    MemoryProfile::RemoveSection(section);
    return Save(before);
}

std::string DefaultProfilePath() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    std::string base;
    if (config != nullptr && *config == '/') {
        base = config;
    } else {
        const char* home = std::getenv("HOME");
        base = std::string(home != nullptr && *home != '\0' ? home : "/tmp") + "/.config";
    }
    return base + "/talvor/profile.ini";
}

} // namespace talvor::platform

namespace {
CWinApp*& CurrentApp() {
    static CWinApp* app = nullptr;
    return app;
}
} // namespace

CWinApp::CWinApp(const char* appName) : m_strAppName(appName == nullptr ? "Talvor" : appName) {
    m_previous = CurrentApp();
    CurrentApp() = this;
}

CWinApp::~CWinApp() {
    if (CurrentApp() == this)
        CurrentApp() = m_previous;
}

void CWinApp::SetProfileStore(std::shared_ptr<talvor::platform::ProfileStore> store) {
    m_store = std::move(store);
}

talvor::platform::ProfileStore& CWinApp::Profile() {
    if (!m_store)
        m_store = std::make_shared<talvor::platform::IniFileProfile>(
            talvor::platform::DefaultProfilePath());
    return *m_store;
}

UINT CWinApp::GetProfileInt(const char* section, const char* entry, int defaultValue) {
    std::string value;
    if (section == nullptr || entry == nullptr || !Profile().Get(section, entry, value))
        return static_cast<UINT>(defaultValue);
    const char* start = value.c_str();
    char* end = nullptr;
    errno = 0;
    long long parsed = std::strtoll(start, &end, 10);
    if (end == start || errno == ERANGE)
        return static_cast<UINT>(defaultValue);
    return static_cast<UINT>(parsed);
}

CString CWinApp::GetProfileString(const char* section, const char* entry,
                                  const char* defaultValue) {
    std::string value;
    if (section == nullptr || entry == nullptr || !Profile().Get(section, entry, value))
        return CString(defaultValue);
    return CString(value);
}

BOOL CWinApp::WriteProfileInt(const char* section, const char* entry, int value) {
    if (section == nullptr || entry == nullptr)
        return FALSE;
    return Profile().Set(section, entry, std::to_string(value)) ? TRUE : FALSE;
}

BOOL CWinApp::WriteProfileString(const char* section, const char* entry, const char* value) {
    if (section == nullptr)
        return FALSE;
    if (entry == nullptr)
        return Profile().RemoveSection(section) ? TRUE : FALSE;
    if (value == nullptr)
        return Profile().RemoveKey(section, entry) ? TRUE : FALSE;
    return Profile().Set(section, entry, value) ? TRUE : FALSE;
}

BOOL CWinApp::GetProfileBinary(const char* section, const char* entry, BYTE** data, UINT* bytes) {
    if (data == nullptr || bytes == nullptr)
        return FALSE;
    *data = nullptr;
    *bytes = 0;
    std::string value;
    if (section == nullptr || entry == nullptr || !Profile().Get(section, entry, value))
        return FALSE;
    if (value.size() % 2 != 0)
        return FALSE;
    std::string decoded;
    for (std::size_t i = 0; i < value.size(); i += 2) {
        int hi = talvor::platform::HexDigitValue(value[i]),
            lo = talvor::platform::HexDigitValue(value[i + 1]);
        if (hi < 0 || lo < 0)
            return FALSE;
        decoded.push_back(static_cast<char>(hi * 16 + lo));
    }
    *data = new BYTE[decoded.size() == 0 ? 1 : decoded.size()];
    std::memcpy(*data, decoded.data(), decoded.size());
    *bytes = static_cast<UINT>(decoded.size());
    return TRUE;
}

BOOL CWinApp::WriteProfileBinary(const char* section, const char* entry, const BYTE* data,
                                 UINT bytes) {
    if (section == nullptr || entry == nullptr || (data == nullptr && bytes != 0))
        return FALSE;
    std::string text;
    for (UINT i = 0; i < bytes; ++i) {
        text.push_back(talvor::platform::HexDigitChar(data[i] >> 4));
        text.push_back(talvor::platform::HexDigitChar(data[i]));
    }
    return Profile().Set(section, entry, text) ? TRUE : FALSE;
}

CWinApp* AfxGetApp() {
    if (CurrentApp() == nullptr) {
        static CWinApp* processApp = new CWinApp("Talvor"); // lives until process end
        CurrentApp() = processApp;
    }
    return CurrentApp();
}
