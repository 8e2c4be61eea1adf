// The application object and its profile: integer, text and binary values by section and key.
// A profile lives in an INI file written atomically, or in memory (for tests and for hosts
// that keep settings elsewhere). Section names may hold backslashes; names compare without
// regard to ASCII case, as the Windows profile does.
#pragma once

#include "platform/strings/cstring.h"

#include <map>
#include <memory>
#include <string>

namespace talvor::platform {

class ProfileStore {
public:
    virtual ~ProfileStore() = default;
    // False when the section or key does not exist.
    virtual bool Get(const std::string& section, const std::string& key,
                     std::string& value) const = 0;
    // Sets a value; false when it could not be stored (the store then keeps its former state).
    virtual bool Set(const std::string& section, const std::string& key,
                     const std::string& value) = 0;
    virtual bool RemoveKey(const std::string& section, const std::string& key) = 0;
    virtual bool RemoveSection(const std::string& section) = 0;
};

// Keys and sections compare case-insensitively (ASCII); the first spelling is kept.
struct NoCaseLess {
    bool operator()(const std::string& a, const std::string& b) const;
};
using ProfileSection = std::map<std::string, std::string, NoCaseLess>;
using ProfileData = std::map<std::string, ProfileSection, NoCaseLess>;

class MemoryProfile : public ProfileStore {
public:
    bool Get(const std::string& section, const std::string& key, std::string& value) const override;
    bool Set(const std::string& section, const std::string& key, const std::string& value) override;
    bool RemoveKey(const std::string& section, const std::string& key) override;
    bool RemoveSection(const std::string& section) override;
    const ProfileData& Data() const { return m_data; }
    void Clear() { m_data.clear(); }

protected:
    ProfileData m_data;
};

// An INI file: "[section]" lines, "key=value" lines, ";" comments. A value with blanks at an
// end, a quote at its start, or control characters is written in double quotes with C escapes,
// so every value reads back exactly. Each change rewrites the file atomically; if that fails
// the change is undone in memory too, so memory and file agree.
class IniFileProfile : public MemoryProfile {
public:
    explicit IniFileProfile(std::string path);
    const std::string& Path() const { return m_path; }
    // Reads the file again; a missing file is an empty profile. False with LastError() set
    // when the file exists but cannot be read.
    bool Reload();
    const std::string& LastError() const { return m_lastError; }

    bool Set(const std::string& section, const std::string& key, const std::string& value) override;
    bool RemoveKey(const std::string& section, const std::string& key) override;
    bool RemoveSection(const std::string& section) override;

    static void Parse(std::string_view text, ProfileData& data);
    static std::string Serialize(const ProfileData& data);

private:
    bool Save(const ProfileData& before);

    std::string m_path;
    std::string m_lastError;
};

// $XDG_CONFIG_HOME/talvor/profile.ini, else $HOME/.config/talvor/profile.ini.
std::string DefaultProfilePath();

} // namespace talvor::platform

class CWinApp {
public:
    // The newest living application object is the one AfxGetApp gives.
    explicit CWinApp(const char* appName = nullptr);
    virtual ~CWinApp();
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    // The stored integer, or defaultValue when the entry is missing or is not an integer.
    UINT GetProfileInt(const char* section, const char* entry, int defaultValue);
    // The stored text, or defaultValue (empty when null) when the entry is missing.
    CString GetProfileString(const char* section, const char* entry,
                             const char* defaultValue = nullptr);
    BOOL WriteProfileInt(const char* section, const char* entry, int value);
    // A null value removes the entry; a null entry removes the whole section.
    BOOL WriteProfileString(const char* section, const char* entry, const char* value);
    // Binary values are stored as hexadecimal text. On success *data is a new[] buffer that the
    // caller deletes with delete[]; on failure *data is null and *bytes 0.
    BOOL GetProfileBinary(const char* section, const char* entry, BYTE** data, UINT* bytes);
    BOOL WriteProfileBinary(const char* section, const char* entry, const BYTE* data, UINT bytes);

    // The profile behind the object; by default an IniFileProfile at DefaultProfilePath(),
    // opened on first use.
    void SetProfileStore(std::shared_ptr<talvor::platform::ProfileStore> store);
    talvor::platform::ProfileStore& Profile();

    CString m_strAppName;

private:
    std::shared_ptr<talvor::platform::ProfileStore> m_store;
    CWinApp* m_previous = nullptr;
};

// The current application object. Never null: without one of the host's, a process-wide
// application object is made on first use.
CWinApp* AfxGetApp();
