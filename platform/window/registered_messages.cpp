#include "platform/window/registered_messages.h"

#include "platform/core/ascii.h"

#include <map>
#include <mutex>
#include <string>

UINT RegisterWindowMessageA(const char* name) {
    if (name == nullptr || *name == '\0')
        return 0;
    static std::mutex lock;
    static std::map<std::string, UINT> numbers; // by the name in lower case
    std::string key(name);
    for (char& c : key)
        c = static_cast<char>(talvor::platform::AsciiLower(static_cast<unsigned char>(c)));
    const std::lock_guard<std::mutex> guard(lock);
    const auto found = numbers.find(key);
    if (found != numbers.end())
        return found->second;
    const UINT next = 0xC000 + static_cast<UINT>(numbers.size());
    if (next > 0xFFFF)
        return 0;
    numbers.emplace(std::move(key), next);
    return next;
}
