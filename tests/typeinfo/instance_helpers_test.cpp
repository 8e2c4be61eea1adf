// Instances, categories, GUID text, caption normalising and result code names.
#include "tests/typeinfo/sample_controls.h"

#include "host/bars/command_bar.h"
#include "host/bars/controls.h"
#include "host/ole/container_doc.h"
#include "platform/codepage/code_page.h"
#include "platform/com/bstr.h"
#include "platform/com/registry/property_frame.h"
#include "platform/window/registered_messages.h"
#include "platform/window/wnd.h"

#include <gtest/gtest.h>

using talvor::platform::ComPtr;
using namespace talvor::testing;

TEST(GuidText, RoundTripAndBadText) {
    const GUID id = TVPfxGetCLSID("{7c3d2b10-4e5f-4a6b-9c8d-1e2f3a4b5c80}");
    EXPECT_STREQ(TVPfxGetCLSID(id).GetString(), "{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80}");
    EXPECT_TRUE(TVPfxGetCLSID(TVPfxGetCLSID(id).GetString()) == id);
    EXPECT_TRUE(TVPfxGetCLSID("") == GUID_NULL);
    EXPECT_TRUE(TVPfxGetCLSID(static_cast<const char*>(nullptr)) == GUID_NULL);
    EXPECT_TRUE(TVPfxGetCLSID("7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80") == GUID_NULL);
}

TEST(Captions, StripCharsKeepsUpperCaseLetters) {
    const struct {
        const char* in;
        const char* out;
    } rows[] = {{"&File 2 Name...", "FILENAME"}, {"12345", ""},    {"", ""},
                {"Save &As", "SAVEAS"},          {"a-b-c", "ABC"}, {"Ünï", "N"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.in);
        EXPECT_STREQ(StripChars(CString(row.in)).GetString(), row.out);
    }
}

TEST(Captions, DeleteAndRemove) {
    CString text("abcdef");
    EXPECT_EQ(VSPStringDelete(text, 6, 1), 6);
    EXPECT_STREQ(text.GetString(), "abcdef");
    EXPECT_EQ(VSPStringDelete(text, 4, 10), 4);
    EXPECT_STREQ(text.GetString(), "abcd");
    EXPECT_EQ(VSPStringDelete(text, 1, 0), 4);
    EXPECT_EQ(VSPStringDelete(text, 1, 2), 2);
    EXPECT_STREQ(text.GetString(), "ad");

    // In code page 936 the trail byte 0x5C of a double-byte character isn't a backslash.
    const unsigned previous = talvor::platform::SystemCodePage();
    ASSERT_TRUE(talvor::platform::SetSystemCodePage(936));
    CString path("a\\\x81\x5C\\b");
    VSPStringRemove(path, '\\');
    talvor::platform::SetSystemCodePage(previous);
    EXPECT_STREQ(path.GetString(), "a\x81\x5C"
                                   "b");
}

TEST(ResultCodes, NamesAndUnknownValues) {
    EXPECT_STREQ(TVPfxGetHResultName(static_cast<HRESULT>(0x80004001u)), "E_NOTIMPL");
    EXPECT_STREQ(TVPfxGetHResultName(0x12345678), "0x12345678");
    EXPECT_STREQ(TVPfxGetHResultName(DISP_E_MEMBERNOTFOUND), "DISP_E_MEMBERNOTFOUND");
}

class Instances : public ::testing::Test {
protected:
    void SetUp() override { RegisterSampleControls(); }
    void TearDown() override { talvor::platform::ComRegistry::Instance().Clear(); }
};

TEST_F(Instances, CreateInstanceByText) {
    IDispatch* object = nullptr;
    wchar_t clsid[] = L"{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80}";
    wchar_t iid[] = L"{00020400-0000-0000-C000-000000000046}";
    ASSERT_EQ(TVPfxCreateInstance(clsid, iid, &object), 0);
    ComPtr<IDispatch> held(object);
    EXPECT_EQ(TVPfxCheckInterface(object, IID_IProvideClassInfo), 1);
    EXPECT_EQ(TVPfxCheckInterface(object, IID_IFontDisp), 0);
    EXPECT_EQ(TVPfxCheckInterface(nullptr, IID_IUnknown), 0);

    wchar_t unknownClass[] = L"{00000000-0000-0000-0000-000000000001}";
    EXPECT_EQ(TVPfxCreateInstance(unknownClass, iid, &object), 1);
    wchar_t fontIid[] = L"{BEF6E003-A874-101A-8BBA-00AA00300CAB}";
    EXPECT_EQ(TVPfxCreateInstance(clsid, fontIid, &object), 1);
    wchar_t garbage[] = L"gauge";
    EXPECT_EQ(TVPfxCreateInstance(garbage, iid, &object), 1);
}

TEST_F(Instances, CategoriesAndPages) {
    ComPtr<IDispatch> gauge = CreateControl(GaugeClass);
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass);
    EXPECT_EQ(TVPfxGetPropCat(gauge.Get(), IdOf(type.Get(), L"Caption")), PROPCAT_Appearance);
    EXPECT_EQ(TVPfxGetPropCat(gauge.Get(), IdOf(type.Get(), L"Scale")), 1);
    ComPtr<IDispatch> list = CreateControl(ListBoxClass);
    EXPECT_EQ(TVPfxGetPropCat(list.Get(), 1), -1);
    GUID page = GUID_NULL;
    EXPECT_EQ(TVPfxGetPropPageCLSID(gauge.Get(), IdOf(type.Get(), L"Value"), &page), S_OK);
    EXPECT_STREQ(TVPfxGetCLSID(page).GetString(), "{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C90}");
    EXPECT_EQ(TVPfxGetPropPageCLSID(gauge.Get(), IdOf(type.Get(), L"Max"), &page),
              PERPROP_E_NOPAGEAVAILABLE);
    EXPECT_EQ(TVPfxGetPropPageCLSID(list.Get(), 1, &page), E_NOINTERFACE);
}

TEST(IsControlExist, FindsAControlOnABarOfAPopupOfAPopupButNotAClone) {
    CVTControls* menu = new CVTControls();
    CVTControl* top = menu->Add(vtControlButton, 100, "Top");
    auto* file = static_cast<CVTControlPopup*>(menu->Add(vtControlPopup, 0, "File"));
    auto* recent = static_cast<CVTControlPopup*>(
        file->GetCommandBar()->GetControls()->Add(vtControlPopup, 0, "Recent"));
    CVTControl* deep = recent->GetCommandBar()->GetControls()->Add(vtControlButton, 200, "One");

    EXPECT_EQ(TVPfxIsControlExist(menu, top), 1);
    EXPECT_EQ(TVPfxIsControlExist(menu, recent), 1);
    EXPECT_EQ(TVPfxIsControlExist(menu, deep), 1);
    // A copy has the same id and caption but is another control.
    CVTControls* other = new CVTControls();
    CVTControl* clone = other->AddClone(deep);
    EXPECT_EQ(clone->GetID(), deep->GetID());
    EXPECT_EQ(TVPfxIsControlExist(menu, clone), 0);
    // The search goes down, never up: the deep bar doesn't hold the top control.
    EXPECT_EQ(TVPfxIsControlExist(recent->GetCommandBar()->GetControls(), top), 0);
    EXPECT_EQ(TVPfxIsControlExist(nullptr, top), 0);
    EXPECT_EQ(TVPfxIsControlExist(menu, nullptr), 0);
    other->InternalRelease();
    menu->InternalRelease();
}

TEST(CreatePropertyPage, OpensOneFrameForTheControlOwnedByALiveWindow) {
    talvor::platform::ClearRecordedPropertyFrames();
    const GUID page = talvor::platform::MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C90}");
    CVXContainerItem item("Gauge\xe9 1", nullptr);
    CWnd parent;
    // No window yet, no parent, no item: nothing is shown.
    TVPfxCreatePropertyPage(&item, page, &parent);
    TVPfxCreatePropertyPage(&item, page, nullptr);
    ASSERT_TRUE(
        parent.CreateEx(0, "Designer", "Form1", WS_VISIBLE, CRect(0, 0, 400, 300), nullptr, 0));
    TVPfxCreatePropertyPage(nullptr, page, &parent);
    EXPECT_TRUE(talvor::platform::RecordedPropertyFrames().empty());

    TVPfxCreatePropertyPage(&item, page, &parent);
    const auto& calls = talvor::platform::RecordedPropertyFrames();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].owner, parent.GetSafeHwnd());
    EXPECT_EQ(calls[0].x, 0u);
    EXPECT_EQ(calls[0].y, 0u);
    EXPECT_EQ(calls[0].caption, talvor::platform::WideFromMultiByte("Gauge\xe9 1"));
    ASSERT_EQ(calls[0].objects.size(), 1u);
    ASSERT_EQ(calls[0].pages.size(), 1u);
    EXPECT_EQ(calls[0].pages[0], page);
    EXPECT_EQ(calls[0].lcid, GetUserDefaultLCID());
    parent.DestroyWindow();
    talvor::platform::ClearRecordedPropertyFrames();
}

TEST(RegisteredMessage, TheLibrarysMessageIsRegisteredAtLoadAndNamesKeepTheirNumbers) {
    EXPECT_GE(g_nTalvorRegisteredMessage, 0xC000u);
    EXPECT_EQ(RegisterWindowMessageA("e0c3625a-2006-41F2-8bc7-213a0719814a"),
              g_nTalvorRegisteredMessage); // the same name in another case
    const UINT other = RegisterWindowMessageA("Talvor test message");
    EXPECT_NE(other, g_nTalvorRegisteredMessage);
    EXPECT_GE(other, 0xC000u);
    EXPECT_EQ(RegisterWindowMessageA("Talvor test message"), other);
    EXPECT_EQ(RegisterWindowMessageA(""), 0u);
    EXPECT_EQ(RegisterWindowMessageA(nullptr), 0u);
}
