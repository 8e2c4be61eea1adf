// Stand-in for the script runtime's regular expression component (VBScript.RegExp): an
// object with the properties Pattern, Global and IgnoreCase and the methods Test, Execute and
// Replace, which give HRESULTs as the component does. Patterns are ECMAScript-3 regular
// expressions as VBScript reads them; text is UTF-16 and every code unit is one character,
// so positions and lengths count code units. Matching runs on PCRE2 under a backtracking limit.
//
// The pattern language is JavaScript's (without the u flag), with the lenient forms script
// engines accept, except where VBScript differs:
// - \s is [ \f\n\r\t\v] and '.' is anything but a line feed; \w, \d and \b are ASCII;
// - look-behind, named groups and inline options are syntax errors;
// - a group inside a repeat keeps its capture from an earlier iteration;
// - a repeat ends at an iteration that matches empty (JavaScript backtracks into it);
// - ignoring case, letters match as ECMAScript's case rule says; letters whose case pair
//   is newer than Unicode 14 match themselves alone.
// Limits: nesting deeper than 250 groups and a match that backtracks past the limit give
// "Out of stack space"; a group repeated so often that the compiled pattern passes 64K code
// units, or a group repeated at least 65536 times, gives "Out of memory"; an upper repeat
// bound above 65535 counts as none.
#pragma once

#include "platform/core/error_text.h"
#include "platform/core/win_types.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace talvor::platform {

// The component's failure codes.
constexpr HRESULT RegExpObjectExpected = ScriptRuntimeError(5016);
constexpr HRESULT RegExpSyntaxError = ScriptRuntimeError(5017);
constexpr HRESULT RegExpUnexpectedQuantifier = ScriptRuntimeError(5018);
constexpr HRESULT RegExpExpectedBracket = ScriptRuntimeError(5019);
constexpr HRESULT RegExpExpectedParen = ScriptRuntimeError(5020);
constexpr HRESULT RegExpInvalidRange = ScriptRuntimeError(5021);
// A pattern whose compiled form is too large for the matcher.
constexpr HRESULT RegExpOutOfMemory = ScriptRuntimeError(7);
// Nesting deeper than the translator allows, or a match that needed more backtracking than
// the limit allows: such a match would take longer than a user would wait.
constexpr HRESULT RegExpOutOfStack = ScriptRuntimeError(28);

class CompiledRegExp;
using CompiledRegExpPtr = std::shared_ptr<const CompiledRegExp>;

// Compiles pattern. S_OK with out set, or one of the codes above with out left alone.
HRESULT CompileRegExp(std::u16string_view pattern, bool ignoreCase, CompiledRegExpPtr& out);

// One match of Execute: IMatch.
class RegExpMatch {
public:
    RegExpMatch(LONG firstIndex, std::u16string value, std::vector<std::u16string> subMatches);
    HRESULT get_FirstIndex(LONG* firstIndex) const;
    HRESULT get_Length(LONG* length) const;
    HRESULT get_Value(std::u16string* value) const;
    // The text of each capturing group, empty for a group that took no part (IMatch2).
    const std::vector<std::u16string>& SubMatches() const { return m_subMatches; }

private:
    LONG m_firstIndex;
    std::u16string m_value;
    std::vector<std::u16string> m_subMatches;
};

// The matches of Execute, in the order of the text: IMatchCollection.
class RegExpMatchCollection {
public:
    HRESULT get_Count(LONG* count) const;
    // E_INVALIDARG, with match untouched, for an index outside 0 .. Count - 1.
    HRESULT get_Item(LONG index, const RegExpMatch** match) const;

    void Add(RegExpMatch match) { m_matches.push_back(std::move(match)); }

private:
    std::vector<RegExpMatch> m_matches;
};

class RegExpMatchState;

// IRegExp. Not re-entrant: one object serves one caller at a time.
class RegExpEngine {
public:
    // Where compiled patterns come from: CompileRegExp, or a cache in front of it.
    using Compiler = std::function<HRESULT(std::u16string_view pattern, bool ignoreCase,
                                           CompiledRegExpPtr& out)>;

    RegExpEngine();
    explicit RegExpEngine(Compiler compiler);
    ~RegExpEngine();
    RegExpEngine(const RegExpEngine&) = delete;
    RegExpEngine& operator=(const RegExpEngine&) = delete;

    // Setting a property never fails; a bad pattern shows at the next Test, Execute or Replace.
    HRESULT put_Pattern(std::u16string_view pattern);
    HRESULT get_Pattern(std::u16string* pattern) const;
    HRESULT put_IgnoreCase(VARIANT_BOOL ignoreCase);
    HRESULT get_IgnoreCase(VARIANT_BOOL* ignoreCase) const;
    HRESULT put_Global(VARIANT_BOOL global);
    HRESULT get_Global(VARIANT_BOOL* global) const;
    // Pattern and IgnoreCase together with their compiled form, which a cache in front of the
    // compiler already holds: the same state as put_Pattern and put_IgnoreCase followed by a
    // first use, without asking the compiler. A null compiled form is compiled at first use.
    HRESULT PutCompiledPattern(std::u16string_view pattern, VARIANT_BOOL ignoreCase,
                               CompiledRegExpPtr compiled);

    // VARIANT_TRUE when the pattern matches somewhere in text.
    HRESULT Test(std::u16string_view text, VARIANT_BOOL* matched);
    // Every match (the first alone with Global off). After an empty match the search goes on
    // one character further, as ECMAScript's lastIndex rule does. On failure matches is
    // left as it was.
    HRESULT Execute(std::u16string_view text, RegExpMatchCollection* matches);
    // text with every match (the first alone with Global off) replaced by replacement, in
    // which $& $` $' $$ $n and $nn stand for the match, the text before and behind it, a
    // dollar sign and a group, as in ECMAScript. On failure result is left as it was.
    // replaced, when given, gets the number of matches replaced: 0 tells the miss that Test
    // would have told, without a search of its own.
    HRESULT Replace(std::u16string_view text, std::u16string_view replacement,
                    std::u16string* result, LONG* replaced = nullptr);

private:
    HRESULT Compiled(const CompiledRegExp** compiled);

    Compiler m_compiler;
    std::u16string m_pattern;
    bool m_ignoreCase = false;
    bool m_global = false;
    CompiledRegExpPtr m_compiled; // of m_pattern and m_ignoreCase, or null
    std::unique_ptr<RegExpMatchState> m_state;
    std::vector<std::ptrdiff_t> m_groups; // of the last Test, kept for its storage
};

} // namespace talvor::platform
