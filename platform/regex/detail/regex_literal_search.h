// Patterns that must match a run of plain characters, like the engine's search for a name's
// uses "[^\w\.]{1}\s*txtQuantity\s*[^\w]{1}": a match can only start a few characters in
// front of an occurrence of that run ("txtQuantity"), in characters the part before the run
// can match. Finding the run first and trying the pattern anchored at those few places finds
// the same leftmost match as trying every position of the text, at a fraction of the cost.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace talvor::platform::detail {

class LiteralSearch {
public:
    // Runs shorter than this are too common in script text to narrow a search down.
    static constexpr std::size_t MinimumRun = 3;

    // True, with out set, when pattern is a sequence without alternatives whose top level
    // holds a run of at least MinimumRun ASCII characters that every match contains once,
    // behind items that are single characters or classes (with any repeat) which cannot
    // match an ASCII letter or digit. Every other pattern is left to the plain search.
    static bool Recognise(std::u16string_view pattern, bool ignoreCase, LiteralSearch& out);

    // The start of the first occurrence of the run at or after from; npos when there is none.
    std::size_t NextRun(std::u16string_view text, std::size_t from) const;

    // The first position, not below floor, at which a match whose run is the occurrence at
    // run could start: the run's position less the characters in front of it that the part
    // before the run can match.
    std::size_t EarliestStart(std::u16string_view text, std::size_t run, std::size_t floor) const;

    static constexpr std::size_t npos = std::u16string_view::npos;

private:
    bool InPrefix(char16_t c) const { return c < 128 ? m_prefixAscii[c] : m_prefixBeyondAscii; }
    // A text character as the run is kept: ASCII letters in lower case when ignoring case.
    char16_t Fold(char16_t c) const {
        return m_ignoreCase && c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c | 0x20) : c;
    }

    std::u16string m_run; // ASCII letters in lower case when ignoring case
    bool m_ignoreCase = false;
    // How far the run may move on when an ASCII character stands under its last place.
    std::array<std::uint8_t, 128> m_shift{};
    // What the part before the run can match; more than it can is harmless, less is not.
    std::bitset<128> m_prefixAscii;
    bool m_prefixBeyondAscii = false;
};

} // namespace talvor::platform::detail
