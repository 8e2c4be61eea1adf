// Patterns that a run of plain characters narrows down are searched by the run and tried
// anchored near it. Wrapped whole in a group, "(?:" + pattern + ")", the same pattern means
// the same and takes the plain search. Byte 0 chooses IgnoreCase, byte 1 the pattern's
// length; the rest is pattern then text, a code unit per byte. Whenever the narrowed search
// applies, both must give the same matches, the same Test and the same Replace.
#include "platform/regex/detail/regex_literal_search.h"
#include "platform/regex/regex_engine.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace talvor::platform;

// The answers as one string; failed set when a call failed. The backtracking limit counts
// per search, so it may stop one way of searching and not the other; and the wrapped pattern
// may compile where the pattern does not ("a)(" becomes "(?:a)()"), or fail another way.
std::u16string Answers(RegExpEngine& engine, std::u16string_view text, bool& failed) {
    std::u16string listed;
    for (const bool global : {false, true}) {
        engine.put_Global(global ? VARIANT_TRUE : VARIANT_FALSE);
        VARIANT_BOOL tested = VARIANT_FALSE;
        RegExpMatchCollection matches;
        std::u16string replaced;
        const HRESULT hr[] = {engine.Test(text, &tested), engine.Execute(text, &matches),
                              engine.Replace(text, u"<$&>", &replaced)};
        for (const HRESULT code : hr) {
            failed = failed || FAILED(code);
            listed += std::u16string(1, static_cast<char16_t>(code & 0xFFFF)) + u"|";
        }
        listed += tested ? u"T" : u"F";
        LONG count = 0;
        matches.get_Count(&count);
        for (LONG i = 0; i < count; ++i) {
            const RegExpMatch* match = nullptr;
            LONG index = 0, length = 0;
            matches.get_Item(i, &match);
            match->get_FirstIndex(&index);
            match->get_Length(&length);
            listed += u" " + std::u16string(1, static_cast<char16_t>(index)) +
                      std::u16string(1, static_cast<char16_t>(length));
        }
        listed += replaced;
    }
    return listed;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    const bool ignoreCase = (data[0] & 1) != 0;
    const size_t rest = size - 2;
    const size_t patternLength = rest == 0 ? 0 : data[1] % (rest + 1);
    std::u16string pattern, text;
    for (size_t i = 0; i < rest; ++i)
        (i < patternLength ? pattern : text).push_back(data[2 + i]);
    talvor::platform::detail::LiteralSearch search;
    if (!talvor::platform::detail::LiteralSearch::Recognise(pattern, ignoreCase, search))
        return 0;
    RegExpEngine narrowed, plain;
    narrowed.put_Pattern(pattern);
    plain.put_Pattern(u"(?:" + pattern + u")");
    for (RegExpEngine* engine : {&narrowed, &plain})
        engine->put_IgnoreCase(ignoreCase ? VARIANT_TRUE : VARIANT_FALSE);
    bool failed = false;
    const std::u16string fromNarrowed = Answers(narrowed, text, failed);
    const std::u16string fromPlain = Answers(plain, text, failed);
    if (!failed && fromNarrowed != fromPlain)
        std::abort();
    return 0;
}
