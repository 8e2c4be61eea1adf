// Recognising the patterns that a run of plain characters narrows down, and the search for
// that run. The reading of the pattern is deliberately small: whatever it does not know
// (groups, alternatives, escapes beyond the common ones) leaves the pattern to the plain
// search. Where it is unsure what the part before the run can match it takes more, which
// only costs a few more anchored tries.
#include "platform/regex/detail/regex_literal_search.h"

#include "platform/core/ascii.h"

#include <algorithm>

namespace talvor::platform::detail {
namespace {

using talvor::platform::AsciiLower;
using talvor::platform::IsAsciiDigit;
using talvor::platform::IsAsciiLetter;

using CharSet = std::bitset<128>;

bool IsAlnum(char16_t c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c);
}

char16_t Lower(char16_t c) {
    return static_cast<char16_t>(AsciiLower(static_cast<char32_t>(c)));
}

// The characters that stand for themselves outside a class. NUL is left out: the reader
// answers 0 for "no such character".
bool IsPlain(char16_t c) {
    return c != 0 && c < 128 &&
           std::u16string_view(u"^$\\.*+?()[]{}|").find(c) == std::u16string_view::npos;
}

// What the pattern can match at one place, as the part before the run sees it.
struct Matchable {
    CharSet ascii;
    bool beyondAscii = false;

    void Add(char16_t c, bool ignoreCase) {
        if (c >= 128) {
            beyondAscii = true;
            return;
        }
        ascii.set(c);
        if (ignoreCase && IsAsciiLetter(c))
            ascii.set(c ^ 0x20);
    }
    void Add(const Matchable& other) {
        ascii |= other.ascii;
        beyondAscii = beyondAscii || other.beyondAscii;
    }
};

// The script runtime's classes \d, \s and \w; \s is taken with every character beyond
// ASCII, which is more than it matches and therefore safe.
Matchable ClassEscape(char16_t letter) {
    Matchable set;
    const char16_t lower = Lower(letter);
    for (char16_t c = 0; c < 128; ++c) {
        const bool in = lower == u'd'   ? IsAsciiDigit(c)
                        : lower == u'w' ? IsAlnum(c) || c == u'_'
                                        : c == u' ' || (c >= u'\t' && c <= u'\r');
        if (in)
            set.ascii.set(c);
    }
    set.beyondAscii = lower == u's';
    if (letter != lower) { // \D, \S, \W
        set.ascii.flip();
        set.beyondAscii = true;
    }
    return set;
}

bool IsClassEscape(char16_t c) {
    return std::u16string_view(u"dDsSwW").find(c) != std::u16string_view::npos;
}

// The character an escape stands for when it stands for one: a control escape or an escaped
// character that is not a letter or digit. 0 for everything else (\x, \u, \c, \0, ...).
char16_t EscapedCharacter(char16_t c) {
    switch (c) {
    case u't':
        return u'\t';
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u'f':
        return u'\f';
    case u'v':
        return u'\v';
    default:
        return c < 128 && !IsAlnum(c) ? c : 0;
    }
}

class PatternReader {
public:
    PatternReader(std::u16string_view pattern, bool ignoreCase)
        : m_pattern(pattern), m_ignoreCase(ignoreCase) {}

    bool AtEnd() const { return m_at >= m_pattern.size(); }
    char16_t Peek(std::size_t ahead = 0) const {
        return m_at + ahead < m_pattern.size() ? m_pattern[m_at + ahead] : 0;
    }
    std::size_t Position() const { return m_at; }
    void Skip(std::size_t count = 1) { m_at += count; }

    // The length of a repeat at the current place ("*", "+", "?", "{n}", "{n,}", "{n,m}",
    // each perhaps followed by "?"), 0 when there is none. False for a "{" that is no repeat,
    // which ECMAScript reads in several ways; such patterns are left alone.
    bool RepeatLength(std::size_t& length) const {
        length = 0;
        const char16_t c = Peek();
        if (c == u'*' || c == u'+' || c == u'?') {
            length = 1;
        } else if (c == u'{') {
            std::size_t i = 1, digits = 0;
            while (IsAsciiDigit(Peek(i)))
                ++i, ++digits;
            if (digits == 0)
                return false;
            if (Peek(i) == u',') {
                ++i;
                while (IsAsciiDigit(Peek(i)))
                    ++i;
            }
            if (Peek(i) != u'}')
                return false;
            length = i + 1;
        } else {
            return true;
        }
        if (Peek(length) == u'?')
            ++length;
        return true;
    }

    // One plain or escaped character that stands for itself, consumed; 0 (nothing consumed)
    // when the current place holds anything else.
    char16_t LiteralCharacter() {
        const char16_t c = Peek();
        if (IsPlain(c)) {
            Skip();
            return c;
        }
        if (c == u'\\') {
            const char16_t escaped = Peek(1);
            if (escaped < 128 && escaped != 0 && !IsAlnum(escaped)) {
                Skip(2);
                return escaped;
            }
        }
        return 0;
    }

    // A class "[...]" at the current place, consumed. False for one this reader does not know.
    bool Class(Matchable& out) {
        Skip(); // "["
        const bool negated = Peek() == u'^';
        if (negated)
            Skip();
        // A negated class matches what its members do not: its members are taken as they
        // are written, without their other case, so that the complement is never too small.
        Matchable members;
        const bool foldCase = m_ignoreCase && !negated;
        while (!AtEnd() && Peek() != u']') {
            char16_t first = 0;
            if (Peek() == u'\\') {
                const char16_t escaped = Peek(1);
                if (IsClassEscape(escaped)) {
                    members.Add(ClassEscape(escaped));
                    Skip(2);
                    continue;
                }
                first = escaped == u'b' ? u'\b' : EscapedCharacter(escaped);
                if (first == 0)
                    return false;
                Skip(2);
            } else {
                first = Peek();
                Skip();
            }
            if (Peek() == u'-' && Peek(1) != u']' && Peek(1) != 0) {
                Skip();
                char16_t last = Peek();
                if (last == u'\\') {
                    last = EscapedCharacter(Peek(1));
                    if (last == 0 || IsClassEscape(Peek(1)))
                        return false;
                    Skip(2);
                } else {
                    Skip();
                }
                if (last < first)
                    return false; // the runtime refuses it; let the plain path say so
                for (char32_t c = first; c <= last && c < 128; ++c)
                    members.Add(static_cast<char16_t>(c), foldCase);
                if (last >= 128)
                    members.beyondAscii = true;
                continue;
            }
            members.Add(first, foldCase);
        }
        if (AtEnd())
            return false;
        Skip(); // "]"
        if (negated) {
            members.ascii.flip();
            members.beyondAscii = true;
        }
        out = members;
        return true;
    }

    // Whether the rest of the pattern has an alternative outside every group.
    bool RestHasTopAlternative() const {
        int depth = 0;
        for (std::size_t i = m_at; i < m_pattern.size(); ++i) {
            const char16_t c = m_pattern[i];
            if (c == u'\\') {
                ++i;
            } else if (c == u'[') {
                for (++i; i < m_pattern.size() && m_pattern[i] != u']'; ++i)
                    if (m_pattern[i] == u'\\')
                        ++i;
            } else if (c == u'(') {
                ++depth;
            } else if (c == u')') {
                --depth;
            } else if (c == u'|' && depth <= 0) {
                return true;
            }
        }
        return false;
    }

private:
    std::u16string_view m_pattern;
    bool m_ignoreCase;
    std::size_t m_at = 0;
};

} // namespace

bool LiteralSearch::Recognise(std::u16string_view pattern, bool ignoreCase, LiteralSearch& out) {
    PatternReader reader(pattern, ignoreCase);
    Matchable prefix;
    std::u16string run;
    while (!reader.AtEnd()) {
        // A run of plain characters. The characters that no repeat follows are the part
        // that every match holds; a character that a repeat follows ends the run and
        // belongs, with its repeat, to the part before.
        run.clear();
        std::size_t repeat = 0;
        char16_t repeated = 0;
        while (const char16_t c = reader.LiteralCharacter()) {
            if (!reader.RepeatLength(repeat))
                return false;
            if (repeat != 0) {
                repeated = c;
                reader.Skip(repeat);
                break;
            }
            run.push_back(c);
        }
        if (run.size() >= MinimumRun && !reader.RestHasTopAlternative()) {
            // The part before the run may not match letters or digits, or the walk back from
            // each occurrence would cross whole words of the text.
            for (char16_t c = 0; c < 128; ++c)
                if (IsAlnum(c) && prefix.ascii[c])
                    return false;
            out.m_run = run;
            if (ignoreCase)
                for (char16_t& c : out.m_run)
                    c = Lower(c);
            out.m_ignoreCase = ignoreCase;
            out.m_shift.fill(static_cast<std::uint8_t>(std::min<std::size_t>(run.size(), 255)));
            for (std::size_t i = 0; i + 1 < out.m_run.size(); ++i)
                if (out.m_run.size() - 1 - i < out.m_shift[out.m_run[i]])
                    out.m_shift[out.m_run[i]] = static_cast<std::uint8_t>(out.m_run.size() - 1 - i);
            out.m_prefixAscii = prefix.ascii;
            out.m_prefixBeyondAscii = prefix.beyondAscii;
            return true;
        }
        for (char16_t c : run)
            prefix.Add(c, ignoreCase);
        if (repeated != 0) {
            prefix.Add(repeated, ignoreCase);
            continue;
        }
        if (!run.empty())
            continue;

        // One item that is not a plain character: an assertion, ".", a class escape, a
        // control escape or a class, perhaps repeated. Anything else (a group, an
        // alternative, a back-reference) leaves the pattern to the plain search.
        Matchable item;
        const char16_t c = reader.Peek();
        const char16_t escaped = reader.Peek(1);
        if (c == u'^' || c == u'$' || (c == u'\\' && (escaped == u'b' || escaped == u'B'))) {
            reader.Skip(c == u'\\' ? 2 : 1);
            if (!reader.RepeatLength(repeat) || repeat != 0)
                return false;
            continue;
        }
        if (c == u'.') {
            item.ascii.set();
            item.beyondAscii = true;
            reader.Skip();
        } else if (c == u'\\' && IsClassEscape(escaped)) {
            item = ClassEscape(escaped);
            reader.Skip(2);
        } else if (c == u'\\' && EscapedCharacter(escaped) != 0) {
            item.Add(EscapedCharacter(escaped), ignoreCase);
            reader.Skip(2);
        } else if (c == u'[') {
            if (!reader.Class(item))
                return false;
        } else {
            return false;
        }
        if (!reader.RepeatLength(repeat))
            return false;
        reader.Skip(repeat);
        prefix.Add(item);
    }
    return false;
}

// Horspool's search: the text character under the run's last place tells how far the run
// can move on, so most of the text is never looked at.
std::size_t LiteralSearch::NextRun(std::u16string_view text, std::size_t from) const {
    const std::size_t length = m_run.size();
    if (text.size() < length)
        return npos;
    const char16_t* const base = text.data();
    for (std::size_t at = from; at + length <= text.size();) {
        const char16_t last = Fold(base[at + length - 1]);
        if (last == m_run[length - 1]) {
            std::size_t i = 0;
            while (i + 1 < length && Fold(base[at + i]) == m_run[i])
                ++i;
            if (i + 1 == length)
                return at;
        }
        at += last < 128 ? m_shift[last] : length;
    }
    return npos;
}

std::size_t LiteralSearch::EarliestStart(std::u16string_view text, std::size_t run,
                                         std::size_t floor) const {
    std::size_t start = run;
    while (start > floor && InPrefix(text[start - 1]))
        --start;
    return start;
}

} // namespace talvor::platform::detail
