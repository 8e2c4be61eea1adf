// The matches of a collection as "index:length" pairs separated by blanks, the form the
// regular expression tests compare.
#pragma once

#include "platform/regex/regex_engine.h"

#include <string>

namespace talvor::testing {

inline std::string MatchSpans(const talvor::platform::RegExpMatchCollection& matches) {
    std::string spans;
    LONG count = 0;
    matches.get_Count(&count);
    for (LONG i = 0; i < count; ++i) {
        const talvor::platform::RegExpMatch* match = nullptr;
        LONG index = 0, length = 0;
        matches.get_Item(i, &match);
        match->get_FirstIndex(&index);
        match->get_Length(&length);
        if (!spans.empty())
            spans += ' ';
        spans += std::to_string(index) + ':' + std::to_string(length);
    }
    return spans;
}

} // namespace talvor::testing
