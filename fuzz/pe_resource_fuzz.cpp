// Arbitrary bytes as a PE file: the resource found, if any, lies inside the input; anything
// else is refused with a message.
#include "platform/com/typelib/pe_resource.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::span<const std::uint8_t> file(data, size);
    for (std::uint32_t id : {0u, 1u, 2u}) {
        std::span<const std::uint8_t> resource;
        std::string error;
        if (!talvor::platform::typelib::FindPeResource(file, u"TYPELIB", id, resource, error)) {
            if (error.empty())
                std::abort();
            continue;
        }
        if (resource.data() < data || resource.data() + resource.size() > data + size)
            std::abort();
    }
    return 0;
}
