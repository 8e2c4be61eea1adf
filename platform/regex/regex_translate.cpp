// Reads a VBScript regular expression by the ECMAScript-3 grammar, with the lenient forms
// that script engines accept (a '{' that starts no count, ']' and '}' alone, octal escapes,
// "\c" without a letter), and writes a PCRE2 pattern that matches the same text. Nothing of
// the source reaches PCRE2 unescaped, so PCRE2's own extensions can never be switched on.
#include "platform/regex/detail/regex_translate.h"

#include "platform/core/ascii.h"
#include "platform/regex/regex_engine.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace talvor::platform::detail {
namespace {

using RangeList = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

constexpr std::uint32_t LastUnit = 0xFFFF;
constexpr std::uint64_t Unbounded = UINT64_MAX;
// PCRE2 takes repeat counts up to this; larger lower bounds are built from nested repeats.
constexpr std::uint64_t MaxRepeatCount = 65535;
// The longest text the engine object takes.
constexpr std::uint64_t MaxTextUnits = 0x7FFFFFFF;

enum class ClassEscape { Digit, NotDigit, Space, NotSpace, Word, NotWord };

// The script runtime's classes: ASCII digits and word characters, and white space
// [ \f\n\r\t\v] (no Unicode spaces).
RangeList EscapeRanges(ClassEscape escape);

RangeList Normalized(RangeList ranges) {
    std::sort(ranges.begin(), ranges.end());
    RangeList merged;
    for (const auto& range : ranges) {
        if (!merged.empty() && range.first <= merged.back().second + 1) {
            merged.back().second = std::max(merged.back().second, range.second);
            continue;
        }
        merged.push_back(range);
    }
    return merged;
}

RangeList Complement(const RangeList& normalized) {
    RangeList result;
    std::uint32_t next = 0;
    for (const auto& range : normalized) {
        if (range.first > next)
            result.emplace_back(next, range.first - 1);
        next = range.second + 1;
    }
    if (next <= LastUnit)
        result.emplace_back(next, LastUnit);
    return result;
}

RangeList EscapeRanges(ClassEscape escape) {
    RangeList digits = {{'0', '9'}};
    RangeList spaces = {{'\t', '\r'}, {' ', ' '}};
    RangeList word = {{'0', '9'}, {'A', 'Z'}, {'_', '_'}, {'a', 'z'}};
    switch (escape) {
    case ClassEscape::Digit:
        return digits;
    case ClassEscape::NotDigit:
        return Complement(digits);
    case ClassEscape::Space:
        return spaces;
    case ClassEscape::NotSpace:
        return Complement(spaces);
    case ClassEscape::Word:
        return word;
    case ClassEscape::NotWord:
        return Complement(word);
    }
    return {};
}

// Adds the other case of every ASCII letter in the ranges.
void AddAsciiCaseVariants(RangeList& ranges) {
    const std::size_t count = ranges.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto [first, last] = ranges[i];
        std::uint32_t from = std::max<std::uint32_t>(first, 'A');
        std::uint32_t to = std::min<std::uint32_t>(last, 'Z');
        if (from <= to)
            ranges.emplace_back(from + 32, to + 32);
        from = std::max<std::uint32_t>(first, 'a');
        to = std::min<std::uint32_t>(last, 'z');
        if (from <= to)
            ranges.emplace_back(from - 32, to - 32);
    }
}

// ECMAScript matches a character ignoring case when both have the same upper case, unless
// that upper case takes more than one character or lies in ASCII while the character does
// not. PCRE2 folds by Unicode's case folding, which also joins the characters below to their
// partners (the Kelvin sign to 'k', 'ß' to 'ẞ', a Greek letter with iota below to its title
// case...). These characters are matched exactly, each with the ones ECMAScript joins to it.
const std::vector<std::vector<std::uint32_t>>& EcmaCaseClasses() {
    static const std::vector<std::vector<std::uint32_t>> classes = [] {
        std::vector<std::vector<std::uint32_t>> list = {
            {0x00C5, 0x00E5}, {0x00DF}, {0x017F}, {0x0398, 0x03B8, 0x03D1},
            {0x03A9, 0x03C9}, {0x03F4}, {0x1E9E}, {0x2126},
            {0x212A},         {0x212B}, {0x1FB3}, {0x1FBC},
            {0x1FC3},         {0x1FCC}, {0x1FF3}, {0x1FFC}};
        for (std::uint32_t c = 0x1F80; c <= 0x1FAF; ++c)
            list.push_back({c});
        return list;
    }();
    return classes;
}

// The class of c in EcmaCaseClasses, or null.
const std::vector<std::uint32_t>* EcmaCaseClassOf(std::uint32_t c) {
    for (const auto& members : EcmaCaseClasses())
        for (std::uint32_t member : members)
            if (member == c)
                return &members;
    return nullptr;
}

// The characters of EcmaCaseClasses, as a normalized list.
const RangeList& EcmaCaseExceptions() {
    static const RangeList exceptions = [] {
        RangeList units;
        for (const auto& members : EcmaCaseClasses())
            for (std::uint32_t member : members)
                units.emplace_back(member, member);
        return Normalized(std::move(units));
    }();
    return exceptions;
}

// The units of a that are not in b; both normalized.
RangeList Subtract(const RangeList& a, const RangeList& b) {
    RangeList result;
    const RangeList outside = Complement(b);
    for (const auto& [first, last] : a)
        for (const auto& [from, to] : outside) {
            const std::uint32_t low = std::max(first, from);
            const std::uint32_t high = std::min(last, to);
            if (low <= high)
                result.emplace_back(low, high);
        }
    return Normalized(std::move(result));
}

bool IsAsciiLetter(std::uint32_t c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsDecimalDigit(char16_t c) {
    return c >= '0' && c <= '9';
}
bool IsOctalDigit(char16_t c) {
    return c >= '0' && c <= '7';
}

void AppendNumber(std::u16string& out, std::uint64_t value) {
    std::string digits = std::to_string(value);
    out.append(digits.begin(), digits.end());
}

// One code unit as PCRE2 reads it literally: ASCII letters and digits as they are, everything
// else as \x{hex}, so no character can have a meaning of its own.
void AppendUnit(std::u16string& out, std::uint32_t c) {
    if (IsAsciiLetter(c) || (c >= '0' && c <= '9')) {
        out.push_back(static_cast<char16_t>(c));
        return;
    }
    out += u"\\x{";
    bool started = false;
    for (int shift = 12; shift >= 0; shift -= 4) {
        unsigned digit = (c >> shift) & 0xF;
        if (digit != 0 || started || shift == 0) {
            out.push_back(static_cast<char16_t>(HexDigitChar(digit, false)));
            started = true;
        }
    }
    out.push_back(u'}');
}

// A PCRE2 class of the normalized ranges; an empty list gives a class that matches nothing.
void AppendClass(std::u16string& out, const RangeList& ranges, bool negate = false) {
    if (ranges.empty()) {
        out += negate ? u"[\\x{0}-\\x{ffff}]" : u"[^\\x{0}-\\x{ffff}]";
        return;
    }
    out += negate ? u"[^" : u"[";
    for (const auto& [first, last] : ranges) {
        AppendUnit(out, first);
        if (last != first) {
            out.push_back(u'-');
            AppendUnit(out, last);
        }
    }
    out.push_back(u']');
}

// How a translated atom may be repeated. Every atom is written as one PCRE2 item (a class,
// a group, an escape), so a quantifier applies to it as it stands.
enum class AtomKind {
    Unit,
    Lookahead // repeated the way ECMAScript repeats an assertion
};

struct ClassAtom {
    bool isEscape = false;
    ClassEscape escape = ClassEscape::Digit;
    std::uint32_t unit = 0;
};

// The opening and closing of an atom that must match exactly, also where the pattern is
// compiled ignoring case: "(?-i:" and ")" then. A pattern compiled without ignoring case
// leaves them out, so PCRE2 sees plain classes, which it can make possessive and search for.
// The translation writes ASCII alone, so these private-use units stand for nothing else.
constexpr char16_t ExactOpen = 0xE000;
constexpr char16_t ExactClose = 0xE001;

class Translator {
public:
    Translator(std::u16string_view source, bool ignoreCase)
        : m_source(source), m_ignoreCase(ignoreCase) {}

    HRESULT Run(TranslatedRegExp& out) {
        m_totalGroups = CountGroups();
        std::u16string body;
        bool nullable = false;
        if (!Disjunction(body, nullable))
            return m_error;
        if (!AtEnd())
            return RegExpSyntaxError; // a ')' without its '('
        out.pattern.clear();
        out.pattern.reserve(body.size() + 16);
        for (char16_t unit : body) {
            if (unit == ExactOpen) {
                if (m_caseless)
                    out.pattern += u"(?-i:";
            } else if (unit == ExactClose) {
                if (m_caseless)
                    out.pattern.push_back(u')');
            } else {
                out.pattern.push_back(unit);
            }
        }
        out.caseless = m_caseless;
        out.caselessBackReference = m_caselessBackReference;
        out.captureCount = m_openedGroups;
        return S_OK;
    }

private:
    bool AtEnd() const { return m_pos >= m_source.size(); }
    char16_t Peek(std::size_t ahead = 0) const {
        return m_pos + ahead < m_source.size() ? m_source[m_pos + ahead] : u'\0';
    }
    bool HasAhead(std::size_t ahead) const { return m_pos + ahead < m_source.size(); }
    bool Fail(HRESULT error) {
        if (m_error == S_OK)
            m_error = error;
        return false;
    }

    // Capturing groups of the whole pattern: a decimal escape up to this number is a
    // back-reference (also one ahead of its group), a larger one an octal escape.
    int CountGroups() const {
        int count = 0;
        bool inClass = false;
        for (std::size_t i = 0; i < m_source.size(); ++i) {
            char16_t c = m_source[i];
            if (c == u'\\') {
                ++i;
            } else if (inClass) {
                inClass = c != u']';
            } else if (c == u'[') {
                inClass = true;
            } else if (c == u'(' && (i + 1 >= m_source.size() || m_source[i + 1] != u'?')) {
                ++count;
            }
        }
        return count;
    }

    // nullable tells whether what was read can match the empty text.
    bool Disjunction(std::u16string& out, bool& nullable) {
        if (!Alternative(out, nullable))
            return false;
        while (Peek() == u'|' && !AtEnd()) {
            ++m_pos;
            out.push_back(u'|');
            bool alternativeNullable = false;
            if (!Alternative(out, alternativeNullable))
                return false;
            nullable = nullable || alternativeNullable;
        }
        return true;
    }

    bool Alternative(std::u16string& out, bool& nullable) {
        nullable = true;
        while (!AtEnd() && Peek() != u'|' && Peek() != u')') {
            bool termNullable = false;
            if (!Term(out, termNullable))
                return false;
            nullable = nullable && termNullable;
        }
        return true;
    }

    bool Term(std::u16string& out, bool& nullable) {
        const char16_t c = Peek();
        nullable = true;
        switch (c) {
        case u'^':
            ++m_pos;
            out += u"^";
            return NoQuantifierFollows();
        case u'$':
            ++m_pos;
            out += u"\\z"; // the very end only: no multiline mode, no final line end
            return NoQuantifierFollows();
        case u'\\':
            if (Peek(1) == u'b' || Peek(1) == u'B') {
                WordBoundary(out, Peek(1) == u'B');
                m_pos += 2;
                return NoQuantifierFollows();
            }
            break;
        case u'*':
        case u'+':
        case u'?':
            return Fail(RegExpUnexpectedQuantifier);
        case u'{':
            if (BracedQuantifierAt(m_pos, nullptr, nullptr, nullptr))
                return Fail(RegExpUnexpectedQuantifier);
            break;
        default:
            break;
        }

        std::u16string atom;
        AtomKind kind = AtomKind::Unit;
        nullable = false;
        const int groupsBefore = m_openedGroups;
        if (c == u'\\') {
            if (!AtomEscape(atom, kind, nullable))
                return false;
        } else if (c == u'(') {
            if (!Group(atom, kind, nullable))
                return false;
        } else if (c == u'[') {
            if (!CharacterClass(atom))
                return false;
        } else if (c == u'.') {
            ++m_pos;
            atom = u"[^\\x{a}]"; // the script runtime's '.': anything but a line feed
        } else {
            ++m_pos;
            Literal(atom, c);
        }
        return Quantified(out, atom, kind, nullable, m_openedGroups != groupsBefore);
    }

    bool NoQuantifierFollows() {
        char16_t c = Peek();
        if (AtEnd())
            return true;
        if (c == u'*' || c == u'+' || c == u'?' ||
            (c == u'{' && BracedQuantifierAt(m_pos, nullptr, nullptr, nullptr)))
            return Fail(RegExpUnexpectedQuantifier);
        return true;
    }

    static std::uint64_t Accumulate(std::uint64_t value, char16_t digit) {
        constexpr std::uint64_t Saturated = std::uint64_t{1} << 60;
        value = value * 10 + static_cast<std::uint64_t>(digit - u'0');
        return value > Saturated ? Saturated : value;
    }

    // "{n}", "{n,}" or "{n,m}" at pos; anything else there is a literal '{'.
    bool BracedQuantifierAt(std::size_t pos, std::uint64_t* min, std::uint64_t* max,
                            std::size_t* end) const {
        std::size_t i = pos + 1;
        if (i >= m_source.size() || !IsDecimalDigit(m_source[i]))
            return false;
        std::uint64_t low = 0;
        while (i < m_source.size() && IsDecimalDigit(m_source[i]))
            low = Accumulate(low, m_source[i++]);
        std::uint64_t high = low;
        if (i < m_source.size() && m_source[i] == u',') {
            ++i;
            if (i < m_source.size() && IsDecimalDigit(m_source[i])) {
                high = 0;
                while (i < m_source.size() && IsDecimalDigit(m_source[i]))
                    high = Accumulate(high, m_source[i++]);
            } else {
                high = Unbounded;
            }
        }
        if (i >= m_source.size() || m_source[i] != u'}')
            return false;
        if (min != nullptr)
            *min = low;
        if (max != nullptr)
            *max = high;
        if (end != nullptr)
            *end = i + 1;
        return true;
    }

    // nullable comes in for the atom and goes out for the repeated atom.
    bool Quantified(std::u16string& out, std::u16string& atom, AtomKind kind, bool& nullable,
                    bool capturing) {
        std::uint64_t min = 0;
        std::uint64_t max = 0;
        const char16_t c = Peek();
        if (AtEnd()) {
            out += atom;
            return true;
        }
        if (c == u'*') {
            min = 0, max = Unbounded, ++m_pos;
        } else if (c == u'+') {
            min = 1, max = Unbounded, ++m_pos;
        } else if (c == u'?') {
            min = 0, max = 1, ++m_pos;
        } else if (c == u'{' && BracedQuantifierAt(m_pos, &min, &max, &m_pos)) {
            if (min > max)
                return Fail(RegExpSyntaxError);
        } else {
            out += atom;
            return true;
        }
        const bool lazy = Peek() == u'?' && !AtEnd();
        if (lazy)
            ++m_pos;
        const bool atomNullable = nullable;
        nullable = nullable || min == 0;

        if (kind == AtomKind::Lookahead) {
            // An assertion matches empty, and a repeat beyond its minimum may not: so the
            // assertion holds once when the minimum is one or more, and is skipped otherwise
            // (kept in a zero repeat, so the numbers of the groups inside stay the same).
            if (min == 0)
                out += u"(?:" + atom + u"){0}";
            else
                out += atom;
            return true;
        }
        if (min > MaxTextUnits && !atomNullable) {
            // Each repeat consumes at least one code unit, and no text is that long.
            out += u"(?:(?:" + atom + u"){0}[^\\x{0}-\\x{ffff}])";
            return true;
        }
        if (min > MaxRepeatCount) {
            // PCRE2 counts to 65535: whole blocks of that many first, then the rest.
            // The atom is written twice, so it must not hold a group whose number would change.
            const std::uint64_t blocks = min / MaxRepeatCount;
            if (blocks > MaxRepeatCount || capturing)
                return Fail(RegExpOutOfMemory);
            out += u"(?:" + atom + u"{65535}){";
            AppendNumber(out, blocks);
            out += u"}";
            min -= blocks * MaxRepeatCount;
            if (max != Unbounded)
                max -= blocks * MaxRepeatCount;
        }
        // A larger maximum counts as none: that differs only on a text with more than 65535
        // further repeats of the atom, each consuming at least one code unit.
        if (max != Unbounded && max > MaxRepeatCount)
            max = Unbounded;
        out += atom;
        if (min == 0 && max == Unbounded) {
            out += u"*";
        } else if (min == 1 && max == Unbounded) {
            out += u"+";
        } else if (min == 0 && max == 1) {
            out += u"?";
        } else {
            out += u"{";
            AppendNumber(out, min);
            if (max != min) {
                out += u",";
                if (max != Unbounded)
                    AppendNumber(out, max);
            }
            out += u"}";
        }
        if (lazy)
            out += u"?";
        return true;
    }

    bool Group(std::u16string& atom, AtomKind& kind, bool& nullable) {
        ++m_pos; // '('
        std::u16string opening = u"(";
        kind = AtomKind::Unit;
        if (Peek() == u'?' && !AtEnd()) {
            const char16_t type = Peek(1);
            if (type == u':')
                opening = u"(?:";
            else if (type == u'=')
                opening = u"(?=";
            else if (type == u'!')
                opening = u"(?!";
            else
                return Fail(RegExpSyntaxError); // no look-behind, named group or option
            if (type != u':')
                kind = AtomKind::Lookahead;
            m_pos += 2;
        } else {
            ++m_openedGroups;
        }
        if (++m_depth > MaxRegExpNesting)
            return Fail(RegExpOutOfStack);
        std::u16string inner;
        if (!Disjunction(inner, nullable))
            return false;
        if (kind == AtomKind::Lookahead)
            nullable = true;
        if (AtEnd())
            return Fail(RegExpExpectedParen);
        ++m_pos; // ')'
        --m_depth;
        atom = opening + inner + u")";
        return true;
    }

    // Either boundary, by the script runtime's ASCII word characters. PCRE2's own \b is
    // ASCII only while Unicode properties are off, which they are unless ignoring case.
    void WordBoundary(std::u16string& out, bool negated) {
        if (!m_ignoreCase) {
            out += negated ? u"\\B" : u"\\b";
            return;
        }
        const std::u16string word = u"[0-9A-Z_a-z]";
        if (negated)
            out += u"(?-i:(?<=" + word + u")(?=" + word + u")|(?<!" + word + u")(?!" + word + u"))";
        else
            out += u"(?-i:(?<=" + word + u")(?!" + word + u")|(?<!" + word + u")(?=" + word + u"))";
    }

    void Literal(std::u16string& atom, std::uint32_t unit) {
        if (m_ignoreCase && IsAsciiLetter(unit)) {
            // Spelled out and kept from PCRE2's Unicode folding, which would also let the
            // Kelvin sign match 'k' or the long s match 's': ECMAScript never folds a
            // character outside ASCII onto one inside.
            atom.push_back(ExactOpen);
            atom.push_back(u'[');
            atom.push_back(static_cast<char16_t>(unit | 0x20));
            atom.push_back(static_cast<char16_t>(unit & ~0x20u));
            atom.push_back(u']');
            atom.push_back(ExactClose);
            return;
        }
        if (m_ignoreCase && unit >= 0x80) {
            if (const std::vector<std::uint32_t>* members = EcmaCaseClassOf(unit)) {
                RangeList units;
                for (std::uint32_t member : *members)
                    units.emplace_back(member, member);
                atom.push_back(ExactOpen);
                AppendClass(atom, Normalized(std::move(units)));
                atom.push_back(ExactClose);
                return;
            }
            m_caseless = true;
        }
        AppendUnit(atom, unit);
    }

    void EscapeSet(std::u16string& atom, ClassEscape escape) {
        if (m_ignoreCase)
            atom.push_back(ExactOpen);
        AppendClass(atom, EscapeRanges(escape));
        if (m_ignoreCase)
            atom.push_back(ExactClose);
    }

    // The character of a legacy octal escape at m_pos (a decimal digit): \8 and \9 stand for
    // the digits; otherwise up to three octal digits with a value below 0400.
    std::uint32_t LegacyOctal() {
        const char16_t first = m_source[m_pos++];
        if (first == u'8' || first == u'9')
            return first;
        std::uint32_t value = first - u'0';
        const int maxDigits = first <= u'3' ? 3 : 2;
        for (int n = 1; n < maxDigits && !AtEnd() && IsOctalDigit(Peek()); ++n)
            value = value * 8 + (m_source[m_pos++] - u'0');
        return value;
    }

    // \x with two hex digits, \u with four; false, with nothing consumed, otherwise.
    bool HexEscape(int digits, std::uint32_t& unit) {
        std::uint32_t value = 0;
        for (int i = 1; i <= digits; ++i) {
            int digit = HasAhead(i) ? HexDigitValue(Peek(i)) : -1;
            if (digit < 0)
                return false;
            value = value * 16 + static_cast<std::uint32_t>(digit);
        }
        m_pos += static_cast<std::size_t>(digits) + 1;
        unit = value;
        return true;
    }

    // One of f n r t v: the control character; 0 for anything else.
    static std::uint32_t ControlEscape(char16_t c) {
        switch (c) {
        case u'f':
            return 0x0C;
        case u'n':
            return 0x0A;
        case u'r':
            return 0x0D;
        case u't':
            return 0x09;
        case u'v':
            return 0x0B;
        default:
            return 0;
        }
    }

    static bool ClassEscapeOf(char16_t c, ClassEscape& escape) {
        switch (c) {
        case u'd':
            escape = ClassEscape::Digit;
            return true;
        case u'D':
            escape = ClassEscape::NotDigit;
            return true;
        case u's':
            escape = ClassEscape::Space;
            return true;
        case u'S':
            escape = ClassEscape::NotSpace;
            return true;
        case u'w':
            escape = ClassEscape::Word;
            return true;
        case u'W':
            escape = ClassEscape::NotWord;
            return true;
        default:
            return false;
        }
    }

    bool AtomEscape(std::u16string& atom, AtomKind& kind, bool& nullable) {
        ++m_pos; // '\'
        if (AtEnd())
            return Fail(RegExpSyntaxError);
        const char16_t c = Peek();
        kind = AtomKind::Unit;
        ClassEscape escape;
        if (ClassEscapeOf(c, escape)) {
            ++m_pos;
            EscapeSet(atom, escape);
            return true;
        }
        if (IsDecimalDigit(c)) {
            const std::size_t start = m_pos;
            std::uint64_t number = 0;
            while (!AtEnd() && IsDecimalDigit(Peek()))
                number = Accumulate(number, m_source[m_pos++]);
            if (c != u'0' && number <= static_cast<std::uint64_t>(m_totalGroups)) {
                // An unset group matches empty (PCRE2_MATCH_UNSET_BACKREF); ignoring case,
                // the group's text is compared by PCRE2's caseless rules.
                atom += u"\\g{";
                AppendNumber(atom, number);
                atom += u"}";
                if (m_ignoreCase) {
                    // PCRE2 folds the comparison by Unicode; the callout then rejects the
                    // pairs that ECMAScript keeps apart.
                    atom = u"(?:" + atom + u"(?C{";
                    AppendNumber(atom, number);
                    atom += u"}))";
                }
                nullable = true;
                if (m_ignoreCase)
                    m_caseless = m_caselessBackReference = true;
                return true;
            }
            m_pos = start;
            Literal(atom, LegacyOctal());
            return true;
        }
        if (std::uint32_t control = ControlEscape(c)) {
            ++m_pos;
            Literal(atom, control);
            return true;
        }
        std::uint32_t unit = c;
        if (c == u'c') {
            const char16_t letter = Peek(1);
            if (HasAhead(1) && IsAsciiLetter(letter)) {
                m_pos += 2;
                Literal(atom, letter % 32);
                return true;
            }
            Literal(atom, u'\\'); // "\c" without a letter is a backslash; 'c' comes next
            return true;
        }
        if ((c == u'x' && HexEscape(2, unit)) || (c == u'u' && HexEscape(4, unit))) {
            Literal(atom, unit);
            return true;
        }
        ++m_pos; // any other character stands for itself
        Literal(atom, c);
        return true;
    }

    bool ParseClassAtom(ClassAtom& atom) {
        if (AtEnd())
            return Fail(RegExpExpectedBracket);
        const char16_t c = m_source[m_pos];
        if (c != u'\\') {
            ++m_pos;
            atom.unit = c;
            return true;
        }
        ++m_pos;
        if (AtEnd())
            return Fail(RegExpExpectedBracket);
        const char16_t e = Peek();
        if (ClassEscapeOf(e, atom.escape)) {
            ++m_pos;
            atom.isEscape = true;
            return true;
        }
        if (IsDecimalDigit(e)) {
            atom.unit = LegacyOctal(); // no back-references inside a class
            return true;
        }
        if (e == u'b') {
            ++m_pos;
            atom.unit = 0x08;
            return true;
        }
        if (std::uint32_t control = ControlEscape(e)) {
            ++m_pos;
            atom.unit = control;
            return true;
        }
        if (e == u'c') {
            const char16_t letter = Peek(1);
            if (HasAhead(1) &&
                (IsAsciiLetter(letter) || IsDecimalDigit(letter) || letter == u'_')) {
                m_pos += 2;
                atom.unit = letter % 32;
                return true;
            }
            atom.unit = u'\\'; // as outside a class: the backslash, then 'c' by itself
            return true;
        }
        std::uint32_t unit = e;
        if ((e == u'x' && HexEscape(2, unit)) || (e == u'u' && HexEscape(4, unit))) {
            atom.unit = unit;
            return true;
        }
        ++m_pos;
        atom.unit = e;
        return true;
    }

    static void AddClassAtom(const ClassAtom& atom, RangeList& units,
                             std::vector<ClassEscape>& escapes) {
        if (atom.isEscape)
            escapes.push_back(atom.escape);
        else
            units.emplace_back(atom.unit, atom.unit);
    }

    bool CharacterClass(std::u16string& atom) {
        ++m_pos; // '['
        const bool negated = Peek() == u'^' && !AtEnd();
        if (negated)
            ++m_pos;
        RangeList units;
        std::vector<ClassEscape> escapes;
        for (;;) {
            if (AtEnd())
                return Fail(RegExpExpectedBracket);
            if (Peek() == u']') {
                ++m_pos;
                break;
            }
            ClassAtom first;
            if (!ParseClassAtom(first))
                return false;
            if (Peek() == u'-' && HasAhead(1) && Peek(1) != u']') {
                ++m_pos; // '-'
                ClassAtom last;
                if (!ParseClassAtom(last))
                    return false;
                if (first.isEscape || last.isEscape) {
                    // A class escape can't bound a range: the dash stands for itself.
                    AddClassAtom(first, units, escapes);
                    units.emplace_back(u'-', u'-');
                    AddClassAtom(last, units, escapes);
                    continue;
                }
                if (first.unit > last.unit)
                    return Fail(RegExpInvalidRange);
                units.emplace_back(first.unit, last.unit);
                continue;
            }
            AddClassAtom(first, units, escapes);
        }
        EmitClass(atom, units, escapes, negated);
        return true;
    }

    void EmitClass(std::u16string& atom, const RangeList& units,
                   const std::vector<ClassEscape>& escapes, bool negated) {
        RangeList exact;
        for (ClassEscape escape : escapes) {
            RangeList ranges = EscapeRanges(escape);
            exact.insert(exact.end(), ranges.begin(), ranges.end());
        }
        if (!m_ignoreCase) {
            exact.insert(exact.end(), units.begin(), units.end());
            exact = Normalized(std::move(exact));
            AppendClass(atom, negated ? Complement(exact) : exact);
            return;
        }
        // Ignoring case: the class escapes and the ASCII part, with both cases of each
        // letter, match exactly; the part beyond ASCII is left to PCRE2's caseless matching.
        RangeList folded;
        for (auto [first, last] : units) {
            if (first < 0x80)
                exact.emplace_back(first, std::min<std::uint32_t>(last, 0x7F));
            if (last >= 0x80)
                folded.emplace_back(std::max<std::uint32_t>(first, 0x80), last);
        }
        AddAsciiCaseVariants(exact);
        folded = Normalized(std::move(folded));
        const RangeList exceptions = Subtract(folded, Subtract(folded, EcmaCaseExceptions()));
        for (const auto& [first, last] : exceptions)
            for (std::uint32_t c = first; c <= last; ++c)
                for (std::uint32_t member : *EcmaCaseClassOf(c))
                    exact.emplace_back(member, member);
        if (!exceptions.empty())
            folded = Subtract(folded, exceptions);
        exact = Normalized(std::move(exact));
        if (!folded.empty())
            m_caseless = true;
        if (folded.empty()) {
            atom.push_back(ExactOpen);
            AppendClass(atom, negated ? Complement(exact) : exact);
            atom.push_back(ExactClose);
        } else if (exact.empty()) {
            AppendClass(atom, folded, negated);
        } else if (!negated) {
            atom += u"(?:(?-i:";
            AppendClass(atom, exact);
            atom += u")|";
            AppendClass(atom, folded);
            atom += u")";
        } else {
            atom += u"(?:(?-i:(?!";
            AppendClass(atom, exact);
            atom += u"))";
            AppendClass(atom, folded, true);
            atom += u")";
        }
    }

    std::u16string_view m_source;
    std::size_t m_pos = 0;
    bool m_ignoreCase;
    bool m_caseless = false;
    bool m_caselessBackReference = false;
    int m_totalGroups = 0;
    int m_openedGroups = 0;
    int m_depth = 0;
    HRESULT m_error = S_OK;
};

} // namespace

bool EcmaCaseDistinct(std::uint32_t a, std::uint32_t b) {
    if (a == b)
        return false;
    const std::vector<std::uint32_t>* members = EcmaCaseClassOf(a);
    if (members == nullptr)
        return EcmaCaseClassOf(b) != nullptr;
    return std::find(members->begin(), members->end(), b) == members->end();
}

HRESULT TranslateRegExp(std::u16string_view source, bool ignoreCase, TranslatedRegExp& out) {
    Translator translator(source, ignoreCase);
    return translator.Run(out);
}

} // namespace talvor::platform::detail
