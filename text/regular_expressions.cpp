// The four facade functions: each sets Global, IgnoreCase and Pattern on the engine object,
// runs Test on the wide form of the text, and only on a hit goes on to Execute or Replace.
// A failure of any engine call ends the function with a message box and the result 0.
#include "text/regular_expressions.h"

#include "platform/app/message_box.h"
#include "platform/codepage/code_page.h"
#include "platform/core/error_text.h"
#include "platform/regex/regex_engine.h"

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

// The common opening, in this order: Global, IgnoreCase, Pattern, then Test on text.
HRESULT SetUpAndTest(RegExpEngine& engine, const CString& pattern, std::u16string_view text,
                     short global, short ignoreCase, VARIANT_BOOL& matched) {
    HRESULT hr = engine.put_Global(AsVariantBool(global));
    if (SUCCEEDED(hr))
        hr = engine.put_IgnoreCase(AsVariantBool(ignoreCase));
    if (SUCCEEDED(hr))
        hr = engine.put_Pattern(talvor::platform::ToWide(pattern.View()));
    if (SUCCEEDED(hr))
        hr = engine.Test(text, &matched);
    return hr;
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
    return Guarded([&](int& result) {
        VARIANT_BOOL matched = VARIANT_FALSE;
        HRESULT hr = SetUpAndTest(Engine(), pattern, talvor::platform::ToWide(text.View()), global,
                                  ignoreCase, matched);
        result = SUCCEEDED(hr) && matched != VARIANT_FALSE ? 1 : 0;
        return hr;
    });
}

int TVPfxGetInfoByRegExp(CString pattern, CString text,
                         CArray<tagREGEXPINFO, tagREGEXPINFO>& matches, short global,
                         short ignoreCase) {
    matches.RemoveAll();
    return Guarded([&](int& result) {
        RegExpEngine& engine = Engine();
        const std::u16string wide = talvor::platform::ToWide(text.View());
        VARIANT_BOOL matched = VARIANT_FALSE;
        HRESULT hr = SetUpAndTest(engine, pattern, wide, global, ignoreCase, matched);
        if (FAILED(hr) || matched == VARIANT_FALSE)
            return hr;
        talvor::platform::RegExpMatchCollection collection;
        hr = engine.Execute(wide, &collection);
        if (FAILED(hr))
            return hr;
        LONG count = 0;
        hr = collection.get_Count(&count);
        if (FAILED(hr))
            return hr;
        for (LONG i = 0; i < count; ++i) {
            const talvor::platform::RegExpMatch* item = nullptr;
            hr = collection.get_Item(i, &item);
            tagREGEXPINFO info;
            std::u16string value;
            if (SUCCEEDED(hr))
                hr = item->get_FirstIndex(&info.nFirstIndex);
            if (SUCCEEDED(hr))
                hr = item->get_Length(&info.nLength);
            if (SUCCEEDED(hr))
                hr = item->get_Value(&value);
            if (FAILED(hr))
                return hr;
            info.strValue = CString(talvor::platform::FromWide(value));
            matches.Add(info);
        }
        result = 1;
        return hr;
    });
}

int TVPfxReplaceByRegExp(CString pattern, CString text, CString replacement, CString& result,
                         short global, short ignoreCase) {
    return Guarded([&](int& outcome) {
        RegExpEngine& engine = Engine();
        const std::u16string wide = talvor::platform::ToWide(text.View());
        VARIANT_BOOL matched = VARIANT_FALSE;
        HRESULT hr = SetUpAndTest(engine, pattern, wide, global, ignoreCase, matched);
        if (FAILED(hr) || matched == VARIANT_FALSE)
            return hr;
        std::u16string replaced;
        hr = engine.Replace(wide, talvor::platform::ToWide(replacement.View()), &replaced);
        if (FAILED(hr))
            return hr;
        result = CString(talvor::platform::FromWide(replaced));
        outcome = 1;
        return hr;
    });
}
