// The in-process registry store behind RegOpenKeyEx and RegQueryValueEx.
#include "platform/app/registry_values.h"

#include "platform/codepage/code_page.h"

#include <cstring>
#include <map>
#include <memory>
#include <vector>

struct RegistryKey {
    std::string path; // root number and key path, lower case
};

namespace {
struct Value {
    DWORD type = REG_SZ;
    std::vector<BYTE> data;
};
using Values = std::map<std::string, Value>;

std::map<std::string, Values>& Store() {
    static std::map<std::string, Values> store;
    return store;
}
std::string Lower(std::string text) {
    talvor::platform::MakeLowerInPlace(text);
    return text;
}
std::string KeyPath(HKEY root, const std::string& subKey) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(root)) + "\\" + Lower(subKey);
}
} // namespace

LSTATUS RegOpenKeyEx(HKEY root, LPCSTR subKey, DWORD, REGSAM, PHKEY result) {
    if (!result)
        return ERROR_INVALID_HANDLE;
    *result = nullptr;
    const std::string path = KeyPath(root, subKey ? subKey : "");
    if (!Store().count(path))
        return ERROR_FILE_NOT_FOUND;
    *result = new RegistryKey{path};
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueEx(HKEY key, LPCSTR valueName, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
    if (!key)
        return ERROR_INVALID_HANDLE;
    const auto keyIt = Store().find(key->path);
    if (keyIt == Store().end())
        return ERROR_FILE_NOT_FOUND;
    const auto it = keyIt->second.find(Lower(valueName ? valueName : ""));
    if (it == keyIt->second.end())
        return ERROR_FILE_NOT_FOUND;
    const Value& value = it->second;
    if (type)
        *type = value.type;
    const auto bytes = static_cast<DWORD>(value.data.size());
    if (data && size && *size < bytes) {
        *size = bytes;
        return ERROR_MORE_DATA;
    }
    if (data && size)
        std::memcpy(data, value.data.data(), bytes);
    if (size)
        *size = bytes;
    return ERROR_SUCCESS;
}

LSTATUS RegCloseKey(HKEY key) {
    if (!key)
        return ERROR_INVALID_HANDLE;
    delete key;
    return ERROR_SUCCESS;
}

namespace talvor::platform {

void SetRegistryDword(HKEY root, const std::string& subKey, const std::string& name, DWORD value) {
    Value v{REG_DWORD, std::vector<BYTE>(4)};
    for (int i = 0; i < 4; ++i)
        v.data[i] = static_cast<BYTE>(value >> (8 * i));
    Store()[KeyPath(root, subKey)][Lower(name)] = std::move(v);
}

void SetRegistryString(HKEY root, const std::string& subKey, const std::string& name,
                       const std::string& value) {
    Value v{REG_SZ, std::vector<BYTE>(value.begin(), value.end())};
    v.data.push_back(0);
    Store()[KeyPath(root, subKey)][Lower(name)] = std::move(v);
}

void DeleteRegistryKey(HKEY root, const std::string& subKey) {
    const std::string path = KeyPath(root, subKey);
    for (auto it = Store().begin(); it != Store().end();) {
        if (it->first.rfind(path, 0) == 0)
            it = Store().erase(it);
        else
            ++it;
    }
}

} // namespace talvor::platform
