// Arbitrary text read as a resource script: the reader either reads it or names the line of
// the fault; either way it stays inside the text. Every #include gives the text itself again,
// so nesting and repeated includes are bounded by the reader's limits. An accepted script must
// be read the same way twice.
#include "platform/app/resource_script.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view script(reinterpret_cast<const char*>(data), size);
    auto includeSelf = [script](const std::string&, std::string& text) {
        text = std::string(script);
        return true;
    };
    talvor::platform::ResourceModule first("fuzz"), second("fuzz");
    std::string error;
    bool ok = talvor::platform::ParseResourceScript(script, first, error, includeSelf);
    if (!ok && (error.rfind("resources: ", 0) != 0 || error.find("line ") == std::string::npos))
        std::abort(); // every fault names its line
    std::string error2;
    if (talvor::platform::ParseResourceScript(script, second, error2, includeSelf) != ok ||
        first.Strings() != second.Strings() || error != error2)
        std::abort();
    return 0;
}
