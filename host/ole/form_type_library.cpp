#include "host/ole/form_type_library.h"

#include "platform/com/registry/com_registry.h"
#include "platform/com/typelib/type_lib.h"

#include <cstddef>
#include <cstdint>

namespace talvor::embedded {
extern const std::uint8_t FormTypeLibrary[];
extern const std::size_t FormTypeLibrary_size;
} // namespace talvor::embedded

namespace talvor::host {

const GUID LIBID_TalvorForm = {
    0x630DAAF8, 0xF305, 0x4537, {0xB2, 0x58, 0x0D, 0xD5, 0x57, 0x36, 0x5C, 0xB7}};
const IID IID_ITalvorForm = {
    0x8475DC03, 0xBC29, 0x4A58, {0xAA, 0x62, 0x5A, 0xD5, 0x9B, 0x58, 0x50, 0xDE}};
const IID DIID_ITalvorFormEvents = {
    0xF3EA86B7, 0xCEED, 0x439F, {0x8B, 0x9F, 0xB2, 0x7B, 0x34, 0x4C, 0x63, 0x4F}};

void RegisterFormTypeLibrary() {
    auto& registry = platform::ComRegistry::Instance();
    if (!registry.FindTypeLibPath(LIBID_TalvorForm, 1, 0).empty())
        return;
    registry.RegisterTypeLibImage(LIBID_TalvorForm, 1, 0, embedded::FormTypeLibrary,
                                  embedded::FormTypeLibrary_size);
}

} // namespace talvor::host
