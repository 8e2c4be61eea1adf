// Expansion of the substitution marks of a replacement text.
#include "platform/regex/detail/regex_substitution.h"

namespace talvor::platform::detail {
namespace {

bool IsDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

void AppendGroup(std::u16string& out, std::u16string_view text,
                 const std::vector<std::ptrdiff_t>& groups, std::size_t group) {
    const std::ptrdiff_t start = groups[2 * group];
    const std::ptrdiff_t end = groups[2 * group + 1];
    if (start >= 0 && end >= start)
        out.append(
            text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)));
}

} // namespace

void AppendSubstitution(std::u16string& out, std::u16string_view replacement,
                        std::u16string_view text, const std::vector<std::ptrdiff_t>& groups) {
    const std::size_t groupCount = groups.size() / 2 == 0 ? 0 : groups.size() / 2 - 1;
    const std::size_t matchStart = static_cast<std::size_t>(groups[0]);
    const std::size_t matchEnd = static_cast<std::size_t>(groups[1]);
    std::size_t i = 0;
    while (i < replacement.size()) {
        const char16_t c = replacement[i];
        if (c != u'$' || i + 1 >= replacement.size()) {
            out.push_back(c);
            ++i;
            continue;
        }
        const char16_t mark = replacement[i + 1];
        if (mark == u'$') {
            out.push_back(u'$');
            i += 2;
        } else if (mark == u'&') {
            out.append(text.substr(matchStart, matchEnd - matchStart));
            i += 2;
        } else if (mark == u'`') {
            out.append(text.substr(0, matchStart));
            i += 2;
        } else if (mark == u'\'') {
            out.append(text.substr(matchEnd));
            i += 2;
        } else if (IsDigit(mark)) {
            const std::size_t one = static_cast<std::size_t>(mark - u'0');
            if (i + 2 < replacement.size() && IsDigit(replacement[i + 2])) {
                const std::size_t two =
                    one * 10 + static_cast<std::size_t>(replacement[i + 2] - u'0');
                if (two >= 1 && two <= groupCount) {
                    AppendGroup(out, text, groups, two);
                    i += 3;
                    continue;
                }
            }
            if (one >= 1 && one <= groupCount) {
                AppendGroup(out, text, groups, one);
                i += 2;
            } else {
                out.push_back(u'$');
                ++i;
            }
        } else {
            out.push_back(u'$');
            ++i;
        }
    }
}

} // namespace talvor::platform::detail
