// Walking an alias text line by line: pieces cut at every line feed, the piece behind the last
// one included (so an empty text is one empty line), without copying the text.
#pragma once

#include "platform/strings/cstring.h"

#include <cstring>

namespace talvor::alias {

// Calls visit(line) for each piece of text, carriage returns still in it; stops early when
// visit returns false. A null text is one empty line.
template <class Visit> void ForEachLine(const char* text, Visit visit) {
    const char* start = text != nullptr ? text : "";
    for (;;) {
        const char* end = std::strchr(start, '\n');
        const int length =
            end != nullptr ? static_cast<int>(end - start) : static_cast<int>(std::strlen(start));
        if (!visit(CString(start, length)))
            return;
        if (end == nullptr)
            return;
        start = end + 1;
    }
}

} // namespace talvor::alias
