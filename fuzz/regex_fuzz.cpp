// Arbitrary patterns and texts through the three text functions of the regular expression
// facade. Byte 0 chooses Global, IgnoreCase and the code page, byte 1 the pattern's length;
// the rest is pattern, then text. Besides "no crash, no hang", the three functions must agree:
// Test hits exactly when GetInfo does, the matches lie in the text in order, and deleting
// them with Replace leaves the text without them.
#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"
#include "text/regular_expressions.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

int& Messages() {
    static int count = 0;
    return count;
}

void Check(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool installed = [] {
        talvor::platform::SetMessageBoxHandler([](const char*, UINT) {
            ++Messages();
            return IDOK;
        });
        return true;
    }();
    (void)installed;
    if (size < 2)
        return 0;
    const unsigned options = data[0];
    const short global = (options & 1) ? -1 : 0;
    const short ignoreCase = (options & 2) ? -1 : 0;
    static const unsigned Pages[] = {1252, 936, 65001, 1252};
    talvor::platform::SetSystemCodePage(Pages[(options >> 2) & 3]);

    const size_t rest = size - 2;
    const size_t patternLength = rest == 0 ? 0 : data[1] % (rest + 1);
    const CString pattern(reinterpret_cast<const char*>(data + 2), static_cast<int>(patternLength));
    const CString text(reinterpret_cast<const char*>(data + 2 + patternLength),
                       static_cast<int>(rest - patternLength));

    Messages() = 0;
    const int tested = TVPfxTestByRegExp(pattern, text, global, ignoreCase);
    const bool testFailed = Messages() != 0;

    CArray<tagREGEXPINFO, tagREGEXPINFO> matches;
    Messages() = 0;
    const int found = TVPfxGetInfoByRegExp(pattern, text, matches, global, ignoreCase);
    const bool infoFailed = Messages() != 0;

    CString result = "untouched";
    Messages() = 0;
    const int replaced = TVPfxReplaceByRegExp(pattern, text, "", result, global, ignoreCase);
    const bool replaceFailed = Messages() != 0;

    if (testFailed || infoFailed || replaceFailed) {
        // A rejected pattern is rejected by all three; only the backtracking limit may hit
        // one walk and not another.
        Check(tested == 0 && (found == 0 || infoFailed) && (replaced == 0 || replaceFailed));
        if (replaceFailed)
            Check(result == "untouched");
        return 0;
    }
    Check(tested == found && tested == replaced);
    if (!found) {
        Check(matches.GetSize() == 0 && result == "untouched");
        return 0;
    }
    Check(matches.GetSize() >= 1 && (global != 0 || matches.GetSize() == 1));
    const std::u16string wide = talvor::platform::ToWide(text.View());
    std::u16string kept;
    size_t next = 0;
    for (const tagREGEXPINFO& match : matches) {
        Check(match.nFirstIndex >= 0 && match.nLength >= 0);
        const size_t start = static_cast<size_t>(match.nFirstIndex);
        const size_t length = static_cast<size_t>(match.nLength);
        Check(start >= next && start + length <= wide.size());
        Check(match.strValue.View() == talvor::platform::FromWide(wide.substr(start, length)));
        kept += wide.substr(next, start - next);
        next = start + length;
    }
    kept += wide.substr(next);
    Check(result.View() == talvor::platform::FromWide(kept));
    return 0;
}
