#include "platform/com/bstr.h"
#include "platform/com/type_info.h"
#include "platform/com/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

std::string Failure(HRESULT hr) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "!%08x", static_cast<unsigned>(hr));
    return buffer;
}

// The text VariantChangeType gives, or "!" and the failure code.
std::string AsText(VARIANT value, USHORT flags = 0) {
    VARIANT out;
    VariantInit(&out);
    const HRESULT hr = VariantChangeType(&out, &value, flags, VT_BSTR);
    if (FAILED(hr))
        return Failure(hr);
    std::string text = talvor::platform::MultiByteFromWide(out.bstrVal);
    VariantClear(&out);
    return text;
}

VARIANT Make(VARTYPE vt) {
    VARIANT v;
    VariantInit(&v);
    v.vt = vt;
    return v;
}

// An object that counts its references, to see copies and clears balance them.
class Counted : public IUnknown {
public:
    HRESULT QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++refs; }
    ULONG Release() override { return --refs; }
    ULONG refs = 1;
};

} // namespace

TEST(Variant, EveryConstantTypeConvertsToText) {
    VARIANT v = Make(VT_I2);
    v.iVal = -32768;
    EXPECT_EQ(AsText(v), "-32768");
    v = Make(VT_I1);
    v.cVal = static_cast<char>(-5);
    EXPECT_EQ(AsText(v), "-5");
    v = Make(VT_UI1);
    v.bVal = 255;
    EXPECT_EQ(AsText(v), "255");
    v = Make(VT_UI2);
    v.uiVal = 65535;
    EXPECT_EQ(AsText(v), "65535");
    v = Make(VT_I4);
    v.lVal = -2147483647 - 1;
    EXPECT_EQ(AsText(v), "-2147483648");
    v = Make(VT_UI4);
    v.ulVal = 4294967295u;
    EXPECT_EQ(AsText(v), "4294967295");
    v = Make(VT_INT);
    v.intVal = 42;
    EXPECT_EQ(AsText(v), "42");
    v = Make(VT_UINT);
    v.uintVal = 7;
    EXPECT_EQ(AsText(v), "7");
    v = Make(VT_I8);
    v.llVal = -9223372036854775807LL - 1;
    EXPECT_EQ(AsText(v), "-9223372036854775808");
    v = Make(VT_UI8);
    v.ullVal = 18446744073709551615ULL;
    EXPECT_EQ(AsText(v), "18446744073709551615");
    v = Make(VT_R4);
    v.fltVal = 0.1f;
    EXPECT_EQ(AsText(v), "0.1");
    v = Make(VT_R8);
    v.dblVal = 1.0 / 3.0;
    EXPECT_EQ(AsText(v), "0.333333333333333");
    v.dblVal = 1e20;
    EXPECT_EQ(AsText(v), "1E+20");
    v.dblVal = -2.5;
    EXPECT_EQ(AsText(v), "-2.5");
    v = Make(VT_CY);
    v.cyVal.int64 = 123450; // 12.345
    EXPECT_EQ(AsText(v), "12.345");
    v.cyVal.int64 = -50000;
    EXPECT_EQ(AsText(v), "-5");
    v = Make(VT_EMPTY);
    EXPECT_EQ(AsText(v), "");
}

TEST(Variant, BooleansAreNumbersUnlessAskedForWords) {
    VARIANT v = Make(VT_BOOL);
    v.boolVal = VARIANT_TRUE;
    EXPECT_EQ(AsText(v), "-1");
    EXPECT_EQ(AsText(v, VARIANT_ALPHABOOL), "True");
    v.boolVal = VARIANT_FALSE;
    EXPECT_EQ(AsText(v), "0");
    EXPECT_EQ(AsText(v, VARIANT_ALPHABOOL), "False");
}

TEST(Variant, DatesInTheEnglishShortForm) {
    VARIANT v = Make(VT_DATE);
    v.date = 36526.0; // 1 January 2000
    EXPECT_EQ(AsText(v), "1/1/2000");
    v.date = 36526.5;
    EXPECT_EQ(AsText(v), "1/1/2000 12:00:00 PM");
    v.date = 0.25;
    EXPECT_EQ(AsText(v), "6:00:00 AM");
    v.date = 2.0;
    EXPECT_EQ(AsText(v), "1/1/1900");
    v.date = -1.0;
    EXPECT_EQ(AsText(v), "12/29/1899");
    v.date = 60.0; // the day after 28 February 1900: there is no 29th
    EXPECT_EQ(AsText(v), "2/28/1900");
    v.date = 1e300;
    EXPECT_EQ(AsText(v), Failure(DISP_E_TYPEMISMATCH));
}

TEST(Variant, DecimalsKeepTheirScale) {
    VARIANT v;
    VariantInit(&v);
    v.decVal.scale = 3;
    v.decVal.sign = DECIMAL_NEG;
    v.decVal.Hi32 = 0;
    v.decVal.Lo64 = 1234500;
    v.vt = VT_DECIMAL;
    EXPECT_EQ(AsText(v), "-1234.5");
    v.decVal.sign = 0;
    v.decVal.scale = 0;
    v.decVal.Hi32 = 1;
    v.decVal.Lo64 = 0;
    EXPECT_EQ(AsText(v), "18446744073709551616");
}

TEST(Variant, ErrorsNullAndObjectsHaveNoTextAndLeaveTheTarget) {
    VARIANT target = Make(VT_I4);
    target.lVal = 9;
    VARIANT error = Make(VT_ERROR);
    error.scode = E_FAIL;
    EXPECT_EQ(VariantChangeType(&target, &error, 0, VT_BSTR), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(target.vt, VT_I4);
    EXPECT_EQ(target.lVal, 9);
    VARIANT hr = Make(VT_HRESULT);
    EXPECT_EQ(VariantChangeType(&target, &hr, 0, VT_BSTR), DISP_E_TYPEMISMATCH);
    VARIANT null = Make(VT_NULL);
    EXPECT_EQ(VariantChangeType(&target, &null, 0, VT_BSTR), DISP_E_TYPEMISMATCH);
    VARIANT bad = Make(200);
    EXPECT_EQ(VariantChangeType(&target, &bad, 0, VT_BSTR), DISP_E_BADVARTYPE);
}

TEST(Variant, InPlaceConversionReplacesTheValue) {
    VARIANT v = Make(VT_I4);
    v.lVal = 17;
    ASSERT_EQ(VariantChangeType(&v, &v, 0, VT_BSTR), S_OK);
    ASSERT_EQ(v.vt, VT_BSTR);
    EXPECT_EQ(std::wstring(v.bstrVal), L"17");
    EXPECT_EQ(SysStringLen(v.bstrVal), 2u);
    VariantClear(&v);
    EXPECT_EQ(v.vt, VT_EMPTY);
}

TEST(Variant, CopyAndClearBalanceReferencesAndStrings) {
    Counted object;
    VARIANT a = Make(VT_UNKNOWN);
    a.punkVal = &object;
    VARIANT b;
    VariantInit(&b);
    ASSERT_EQ(VariantCopy(&b, &a), S_OK);
    EXPECT_EQ(object.refs, 2u);
    VariantClear(&b);
    EXPECT_EQ(object.refs, 1u);

    VARIANT s = Make(VT_BSTR);
    s.bstrVal = SysAllocString(L"abc");
    VARIANT t;
    VariantInit(&t);
    ASSERT_EQ(VariantCopy(&t, &s), S_OK);
    EXPECT_NE(t.bstrVal, s.bstrVal);
    EXPECT_EQ(std::wstring(t.bstrVal), L"abc");
    VariantClear(&s);
    VariantClear(&t);
}

TEST(Bstr, LengthsAndEmbeddedZeros) {
    BSTR text = SysAllocStringLen(L"a\0b", 3);
    EXPECT_EQ(SysStringLen(text), 3u);
    EXPECT_EQ(SysStringByteLen(text), 3 * sizeof(OLECHAR));
    EXPECT_EQ(text[3], 0);
    SysFreeString(text);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    SysFreeString(nullptr);
}
