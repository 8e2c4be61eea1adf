// Arbitrary text read as a resource script: the reader either reads it or names the line of
// the fault; either way it stays inside the text. A script that was read must have every id it
// reports, and an accepted script must be read the same way twice.
#include "platform/app/resource_module.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view script(reinterpret_cast<const char*>(data), size);
    talvor::platform::ResourceModule first("fuzz"), second("fuzz");
    std::string error;
    bool ok = talvor::platform::ParseResourceScript(script, first, error);
    if (!ok && error.rfind("resources: line ", 0) != 0)
        std::abort(); // every fault names its line
    std::string error2;
    if (talvor::platform::ParseResourceScript(script, second, error2) != ok ||
        first.Strings() != second.Strings())
        std::abort();
    return 0;
}
