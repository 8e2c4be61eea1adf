#include "platform/com/guid.h"
#include "platform/com/hresult.h"
#include "platform/com/unknown.h"

#include <gtest/gtest.h>

#include <string>

using talvor::platform::GuidFromText;
using talvor::platform::GuidToText;

TEST(Guid, TextRoundTripIsUpperCaseWithBraces) {
    GUID guid{};
    ASSERT_TRUE(GuidFromText("{376bd3aa-3845-101b-84ed-08002b2ec713}", guid));
    EXPECT_TRUE(guid == IID_IPerPropertyBrowsing);
    EXPECT_EQ(GuidToText(guid), "{376BD3AA-3845-101B-84ED-08002B2EC713}");
    EXPECT_EQ(GuidToText(IID_IDispatch), "{00020400-0000-0000-C000-000000000046}");
    EXPECT_EQ(GuidToText(GUID_OLE_COLOR), "{66504301-BE0F-101A-8BBB-00AA00300CAB}");
}

TEST(Guid, MalformedTextIsRefusedAndLeavesTheValue) {
    const char* bad[] = {"",
                         "{}",
                         "{376BD3AA-3845-101B-84ED-08002B2EC71}",
                         "{376BD3AA-3845-101B-84ED-08002B2EC7134}",
                         "{376BD3AA+3845-101B-84ED-08002B2EC713}",
                         "{376BD3AG-3845-101B-84ED-08002B2EC713}",
                         "(376BD3AA-3845-101B-84ED-08002B2EC713)",
                         "{376BD3AA-3845-101B-84ED-08002B2EC713"};
    for (const char* text : bad) {
        SCOPED_TRACE(text);
        GUID guid = IID_IUnknown;
        EXPECT_FALSE(GuidFromText(text, guid));
        EXPECT_TRUE(guid == IID_IUnknown);
    }
}

TEST(Guid, ClsidFromStringNeedsTheBracedForm) {
    CLSID clsid = IID_IDispatch;
    EXPECT_EQ(CLSIDFromString(L"{BEF6E003-A874-101A-8BBA-00AA00300CAB}", &clsid), S_OK);
    EXPECT_TRUE(clsid == IID_IFontDisp);
    EXPECT_EQ(CLSIDFromString(L"BEF6E003-A874-101A-8BBA-00AA00300CAB", &clsid), CO_E_CLASSSTRING);
    EXPECT_TRUE(clsid == GUID_NULL);
    EXPECT_EQ(CLSIDFromString(L"{BEF6E003-A874-101A-8BBA-00AA00300CA\u00e9}", &clsid),
              CO_E_CLASSSTRING);
    EXPECT_EQ(IIDFromString(L"nonsense", &clsid), CO_E_IIDSTRING);

    LPOLESTR text = nullptr;
    ASSERT_EQ(StringFromCLSID(IID_IPictureDisp, &text), S_OK);
    EXPECT_EQ(std::wstring(text), L"{7BF80981-BF32-101A-8BBB-00AA00300CAB}");
    CoTaskMemFree(text);

    OLECHAR small[38];
    EXPECT_EQ(StringFromGUID2(IID_IUnknown, small, 38), 0);
}

TEST(HResult, NamesFollowTheTable) {
    EXPECT_STREQ(talvor::platform::GetHResultName(static_cast<HRESULT>(0x80004001u)), "E_NOTIMPL");
    EXPECT_STREQ(talvor::platform::GetHResultName(S_OK), "S_OK");
    EXPECT_STREQ(talvor::platform::GetHResultName(TYPE_E_ELEMENTNOTFOUND),
                 "TYPE_E_ELEMENTNOTFOUND");
    EXPECT_STREQ(talvor::platform::GetHResultName(static_cast<HRESULT>(0x80028CA0u)),
                 "TYPE_E_TYPEMISMATCH");
    EXPECT_STREQ(talvor::platform::GetHResultName(0x12345678), "0x12345678");
    EXPECT_STREQ(talvor::platform::GetHResultName(static_cast<HRESULT>(0x80001234u)), "0x80001234");
}

// The name with '_' made the lowest character, the order in which the table is sorted.
static std::string Letters(const char* name) {
    std::string out;
    for (; *name; ++name)
        out += *name == '_' ? ' ' : *name;
    return out;
}

TEST(HResult, TableKeepsItsGroupsAndHasNoRepeatedValue) {
    const auto& rows = talvor::platform::HResultNames;
    EXPECT_STREQ(rows[0].name, "S_OK");
    EXPECT_STREQ(rows[25].name, "E_UNEXPECTED");
    EXPECT_STREQ(rows[34].name, "E_ACCESSDENIED");
    EXPECT_STREQ(rows[242].name, "VIEW_E_DRAW");
    for (int i = 0; i < 243; ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(rows[i].value >= 0, i < 25); // success codes first, failures after
        for (int j = 0; j < i; ++j)
            EXPECT_NE(rows[i].value, rows[j].value) << rows[j].name;
        // Failure codes behind the generic block stand in alphabetical order, '_' first.
        if (i > 35) {
            EXPECT_LT(Letters(rows[i - 1].name), Letters(rows[i].name));
        }
    }
}
