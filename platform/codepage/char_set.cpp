// Character sets in the system code page, for the string class and the runtime library forms.
#include "platform/codepage/char_set.h"

#include "platform/codepage/code_page.h"

#include <cstring>

namespace talvor::platform {

bool CharInSet(std::string_view text, std::size_t pos, std::size_t n, std::string_view set,
               SetMatch rule) {
    if (n == 1 && rule == SetMatch::SingleBytesAnywhere)
        return text[pos] != '\0' && set.find(text[pos]) != std::string_view::npos;
    for (std::size_t k = 0; k < set.size();) {
        std::size_t m = CharLengthAt(set, k);
        if (m == n && std::memcmp(set.data() + k, text.data() + pos, n) == 0)
            return true;
        k += m;
    }
    return false;
}

std::size_t SpanOfSet(std::string_view text, std::string_view set, bool including, SetMatch rule) {
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t n = CharLengthAt(text, pos);
        if (CharInSet(text, pos, n, set, rule) != including)
            break;
        pos += n;
    }
    return pos;
}

} // namespace talvor::platform
