// The four facade functions: each sets Global, IgnoreCase and Pattern on the engine object,
// then runs Test, Execute or Replace on the wide form of the text (the walks of Execute and
// Replace tell a miss as Test would, so they run alone). A failure of any engine call ends
// the function with a message box and the result 0.
#include "text/regular_expressions.h"

#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"
#include "platform/core/error_text.h"
#include "platform/regex/regex_engine.h"
#include "text/detail/regex_cache.h"
#include "text/detail/word_literal.h"

#include <exception>
#include <new>
#include <string>

namespace {

using talvor::platform::RegExpEngine;

void ShowFailure(HRESULT hr) {
    const std::string text = talvor::platform::ComErrorMessage(hr);
    AfxMessageBox(text.c_str(), MB_OK);
}

VARIANT_BOOL AsVariantBool(short flag) {
    return flag != 0 ? VARIANT_TRUE : VARIANT_FALSE;
}

// Storage kept between calls, so that a call allocates nothing it gives back at its end.
// The facade is not re-entrant, so one set serves every call.
struct Buffers {
    std::u16string text;
    std::u16string replaced;
    std::string narrow;
    // The 8-bit text that text is the wide form of, and its page: the engine asks several
    // questions of one text (the keywords of a line, the names of a script), which then
    // convert once.
    std::string source;
    unsigned sourcePage = 0;
    bool sourceAscii = false;
};

Buffers& Kept() {
    static Buffers* buffers = new Buffers; // never destroyed, like the matcher
    return *buffers;
}

// The wide form of text in kept.text; true when text is ASCII alone, so that wide positions
// are byte positions.
bool ConvertText(Buffers& kept, std::string_view text) {
    const unsigned page = talvor::platform::SystemCodePage();
    if (page == kept.sourcePage && text == kept.source)
        return kept.sourceAscii;
    kept.sourcePage = 0; // until the conversion is done
    kept.sourceAscii = talvor::platform::ToWide(text, kept.text);
    kept.source.assign(text);
    kept.sourcePage = page;
    return kept.sourceAscii;
}

// The common opening, in this order: Global, IgnoreCase, Pattern. The pattern's wide and
// compiled forms come from the cache by its 8-bit text, so a pattern asked again is neither
// converted nor compiled again. One that does not compile is set as it is and fails at Test,
// as the engine reports it.
HRESULT SetUp(RegExpEngine& engine, std::string_view pattern, short global, short ignoreCase) {
    HRESULT hr = engine.put_Global(AsVariantBool(global));
    if (SUCCEEDED(hr))
        hr = engine.put_IgnoreCase(AsVariantBool(ignoreCase));
    if (FAILED(hr))
        return hr;
    std::u16string_view wide;
    talvor::platform::CompiledRegExpPtr compiled;
    hr = talvor::text::detail::FacadeRegexCache().CompileNarrow(
        pattern, talvor::platform::SystemCodePage(), ignoreCase != 0, wide, compiled);
    if (FAILED(hr))
        return engine.put_Pattern(wide);
    return engine.PutCompiledPattern(wide, AsVariantBool(ignoreCase), std::move(compiled));
}

// Runs body, which gives an HRESULT and sets the result; a failure, also an exception,
// shows its message and gives 0.
template <class Body> int Guarded(Body body) {
    HRESULT hr;
    int result = 0;
    try {
        hr = body(result);
    } catch (const std::bad_alloc&) {
        hr = E_OUTOFMEMORY;
    } catch (...) {
        hr = E_UNEXPECTED;
    }
    if (FAILED(hr)) {
        ShowFailure(hr);
        return 0;
    }
    return result;
}

RegExpEngine& Engine() {
    return *CTalvorRegExp::GetRegExp().Engine();
}

} // namespace

int TVPfxTestByRegExp(CString pattern, CString text, short global, short ignoreCase) {
    return talvor::text::TestByRegExp(pattern.View(), text.View(), global, ignoreCase);
}

int talvor::text::TestByRegExp(std::string_view pattern, std::string_view text, short global,
                               short ignoreCase) {
    // The engine's keyword test is a plain search of the bytes where they tell the characters
    // (ASCII text, or any text of UTF-8 and the single-byte pages): no engine call, no
    // conversion.
    if (const auto word = detail::WordLiteralOf(pattern);
        word && talvor::platform::SystemPageKeepsAscii()) {
        if (const auto hit = detail::TestWordLiteral(
                *word, text, ignoreCase != 0, !talvor::platform::SystemPageAsciiStandsAlone())) {
            CTalvorRegExp::GetRegExp(); // the matcher exists after a first call, as always
            return *hit ? 1 : 0;
        }
    }
    return Guarded([&](int& result) {
        RegExpEngine& engine = Engine();
        Buffers& kept = Kept();
        HRESULT hr = SetUp(engine, pattern, global, ignoreCase);
        ConvertText(kept, text);
        VARIANT_BOOL matched = VARIANT_FALSE;
        if (SUCCEEDED(hr))
            hr = engine.Test(kept.text, &matched);
        result = SUCCEEDED(hr) && matched != VARIANT_FALSE ? 1 : 0;
        return hr;
    });
}

// The walk of Execute and Test answer the same question for the first match: a walk that
// finds nothing is the miss that Test would have told, so the walk alone is run.
int TVPfxGetInfoByRegExp(CString pattern, CString text,
                         CArray<tagREGEXPINFO, tagREGEXPINFO>& matches, short global,
                         short ignoreCase) {
    matches.RemoveAll();
    return Guarded([&](int& result) {
        RegExpEngine& engine = Engine();
        Buffers& kept = Kept();
        HRESULT hr = SetUp(engine, pattern.View(), global, ignoreCase);
        if (FAILED(hr))
            return hr;
        // For ASCII text a wide position is a byte position, so a match's value is cut from
        // the 8-bit text as it stands instead of converting the wide value back.
        const bool ascii = ConvertText(kept, text.View());
        talvor::platform::RegExpMatchCollection collection;
        hr = engine.Execute(kept.text, &collection);
        if (FAILED(hr))
            return hr;
        LONG count = 0;
        hr = collection.get_Count(&count);
        if (FAILED(hr) || count == 0)
            return hr;
        for (LONG i = 0; i < count; ++i) {
            const talvor::platform::RegExpMatch* item = nullptr;
            hr = collection.get_Item(i, &item);
            tagREGEXPINFO info;
            if (SUCCEEDED(hr))
                hr = item->get_FirstIndex(&info.nFirstIndex);
            if (SUCCEEDED(hr))
                hr = item->get_Length(&info.nLength);
            if (FAILED(hr))
                return hr;
            if (ascii) {
                info.strValue =
                    CString(text.View().substr(static_cast<std::size_t>(info.nFirstIndex),
                                               static_cast<std::size_t>(info.nLength)));
            } else {
                std::u16string value;
                hr = item->get_Value(&value);
                if (FAILED(hr))
                    return hr;
                talvor::platform::FromWide(value, kept.narrow);
                info.strValue = CString(std::string_view(kept.narrow));
            }
            matches.Add(std::move(info));
        }
        result = 1;
        return hr;
    });
}

// The walk of Replace finds the first match where Test would, so a walk that replaced
// nothing is the miss, and the walk alone is run.
int TVPfxReplaceByRegExp(CString pattern, CString text, CString replacement, CString& result,
                         short global, short ignoreCase) {
    return Guarded([&](int& outcome) {
        RegExpEngine& engine = Engine();
        Buffers& kept = Kept();
        HRESULT hr = SetUp(engine, pattern.View(), global, ignoreCase);
        if (FAILED(hr))
            return hr;
        ConvertText(kept, text.View());
        LONG replaced = 0;
        hr = engine.Replace(kept.text, talvor::platform::ToWide(replacement.View()), &kept.replaced,
                            &replaced);
        if (FAILED(hr) || replaced == 0)
            return hr;
        std::string narrow;
        talvor::platform::FromWide(kept.replaced, narrow);
        result = CString(std::move(narrow));
        outcome = 1;
        return hr;
    });
}
