// Property kinds of the sample controls and the form, decoded from their real type libraries
// (compiled by widl) and the controls' manifests.
#include "tests/typeinfo/sample_controls.h"

#include "host/ole/form_type_library.h"

#include <gtest/gtest.h>

using talvor::platform::ComPtr;
using namespace talvor::testing;

namespace {

struct Expected {
    const wchar_t* member;
    VPPropTypes kind;
    const char* names;
    const char* values;
    bool ownsValues = false; // values made by the control: the caller frees them
};

void CheckProperties(const GUID& clsid, const Expected* rows, std::size_t count) {
    ComPtr<IDispatch> control = CreateControl(clsid);
    ComPtr<ITypeInfo> type = DefaultInterface(clsid);
    ASSERT_TRUE(control && type);
    for (std::size_t i = 0; i < count; ++i) {
        const Expected& row = rows[i];
        SCOPED_TRACE(talvor::platform::MultiByteFromWide(row.member));
        tagACTIVEXPROPTYPEINFO info;
        TVPfxGetItemPropTypeInfo(control.Get(), type.Get(), IdOf(type.Get(), row.member), &info);
        EXPECT_EQ(info.nPropType, row.kind);
        EXPECT_EQ(Joined(info.arrNames), row.names);
        EXPECT_EQ(Joined(info.arrValues), row.values);
        if (row.ownsValues) {
            for (tagVARIANT& value : info.arrValues)
                VariantClear(&value);
        }
    }
}

class MemberTypes : public ::testing::Test {
protected:
    void SetUp() override { RegisterSampleControls(); }
    void TearDown() override { talvor::platform::ComRegistry::Instance().Clear(); }
};

} // namespace

TEST_F(MemberTypes, GaugePropertiesOfADualInterface) {
    const Expected rows[] = {
        {L"Max", VP_PROP_INTEGER, "", ""}, // long, no list, no page
        {L"Value", VP_PROP_PAGE, "", ""},  // long with a property page
        {L"Style", VP_PROP_ENUM, "gsNeedle|gsBar|gsSegments", "0|1|2"},
        {L"NeedleColor", VP_PROP_COLOR, "", ""}, // alias of OLE_COLOR; its page is ignored
        {L"Caption", VP_PROP_TEXT, "", ""},
        {L"Scale", VP_PROP_ENUM, "Linear|Logarithmic", "1|10"}, // the control's own list
        {L"Min", VP_PROP_INTEGER, "Zero|Minus hundred", "0"},   // unequal counts
        {L"Ticks", VP_PROP_NONE, "", ""},                       // nonbrowsable
        {L"Labels", VP_PROP_TEXT, "", ""},                      // BSTR* through the pointer
        {L"Reading", VP_PROP_NONE, "", ""},                     // get function only
    };
    CheckProperties(GaugeClass, rows, std::size(rows));
}

TEST_F(MemberTypes, ListBoxPropertiesOfADispinterface) {
    SampleForm form;
    const Expected rows[] = {
        {L"Sorted", VP_PROP_ENUM, "lsNone|lsAscending|lsDescending", "0|1|-1"},
        {L"BackColor", VP_PROP_COLOR, "", ""},
        {L"Font", VP_PROP_FONT, "", ""},
        {L"ListIndex", VP_PROP_INTEGER, "", ""},
        {L"Text", VP_PROP_TEXT, "", ""},
        {L"Updated", VP_PROP_DATE, "", ""},
        {L"MultiSelect", VP_PROP_BOOL, "", ""},
        {L"Total", VP_PROP_REAL, "", ""},
        {L"DataSource", VP_PROP_NONE, "", ""},
        {L"LinkedGauge", VP_PROP_NONE, "", ""}, // a dual: its dispatch half, like any dispatch
        {L"Link", VP_PROP_OBJECT, "", ""},      // a variable: the refinement empties the list
    };
    CheckProperties(ListBoxClass, rows, std::size(rows));
}

TEST_F(MemberTypes, ButtonObjectReferenceListsTheFormsControls) {
    SampleForm form;
    const Expected rows[] = {
        {L"Link", VP_PROP_OBJECT, "Gauge1|Gauge2", "empty|empty"},
        {L"Target", VP_PROP_NONE, "", ""},
        {L"Caption", VP_PROP_ENUM, "OK|Cancel|Apply", "OK|Cancel|Apply", true},
        {L"Alignment", VP_PROP_ENUM, "baLeft|baCenter|baRight", "0|2|1"},
        {L"Picture", VP_PROP_PICTURE, "", ""}, // a page doesn't change a picture
        {L"Default", VP_PROP_BOOL, "", ""},
    };
    CheckProperties(ButtonClass, rows, std::size(rows));
}

TEST_F(MemberTypes, ObjectReferenceWithoutAFormListsNothing) {
    const Expected rows[] = {{L"Link", VP_PROP_OBJECT, "", ""}};
    CheckProperties(ButtonClass, rows, std::size(rows));
}

TEST_F(MemberTypes, DefaultAndSourceInterfacesOfAClass) {
    ITypeInfo* info = nullptr;
    ASSERT_EQ(TVPfxGetActiveXTypeInfo(GaugeClass, 1, &info), 1);
    ComPtr<ITypeInfo> events(info);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(events->GetTypeAttr(&attr), S_OK);
    EXPECT_EQ(talvor::platform::GuidToText(attr->guid), "{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C71}");
    events->ReleaseTypeAttr(attr);
    // A class without a default source interface.
    info = nullptr;
    EXPECT_EQ(TVPfxGetActiveXTypeInfo(FrameClass, 1, &info), 0);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(TVPfxGetActiveXTypeInfo(GUID_NULL, 0, &info), 0);
}

TEST_F(MemberTypes, FormMembersFromTheFormsOwnLibrary) {
    ITypeInfo* info = nullptr;
    EXPECT_EQ(TVPfxGetContainerDocTypeInfo(0, nullptr), 0);
    ASSERT_EQ(TVPfxGetContainerDocTypeInfo(0, &info), 1);
    ComPtr<ITypeInfo> form(info);
    ASSERT_EQ(TVPfxGetContainerDocTypeInfo(1, &info), 1);
    ComPtr<ITypeInfo> events(info);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(events->GetTypeAttr(&attr), S_OK);
    EXPECT_TRUE(attr->guid == talvor::host::DIID_ITalvorFormEvents);
    EXPECT_EQ(attr->cFuncs, 9);
    events->ReleaseTypeAttr(attr);

    // Any dispatch serves for the refinement: the gauge has no list for these ids.
    ComPtr<IDispatch> some = CreateControl(ListBoxClass);
    const struct {
        const wchar_t* member;
        VPPropTypes kind;
        INT_PTR names;
    } rows[] = {{L"BackColor", VP_PROP_COLOR, 0}, {L"Font", VP_PROP_FONT, 0},
                {L"Picture", VP_PROP_PICTURE, 0}, {L"BorderStyle", VP_PROP_ENUM, 6},
                {L"Enabled", VP_PROP_BOOL, 0},    {L"Tag", VP_PROP_TEXT, 0},
                {L"hWnd", VP_PROP_NONE, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(talvor::platform::MultiByteFromWide(row.member));
        tagACTIVEXPROPTYPEINFO decoded;
        TVPfxGetItemPropTypeInfo(some.Get(), form.Get(), IdOf(form.Get(), row.member), &decoded);
        EXPECT_EQ(decoded.nPropType, row.kind);
        EXPECT_EQ(decoded.arrNames.GetSize(), row.names);
    }
}

TEST_F(MemberTypes, DecodingByTypeDescriptionAlone) {
    tagACTIVEXPROPTYPEINFO info;
    info.arrNames.Add("stale");
    tagTYPEDESC bstr{};
    bstr.vt = VT_BSTR;
    tagTYPEDESC pointer{};
    pointer.vt = VT_PTR;
    pointer.lptdesc = &bstr;
    tagTYPEDESC pointerToPointer{};
    pointerToPointer.vt = VT_PTR;
    pointerToPointer.lptdesc = &pointer;
    TVPfxGetPropTypeInfo(nullptr, &pointerToPointer, &info);
    EXPECT_EQ(info.nPropType, VP_PROP_TEXT);
    EXPECT_EQ(info.arrNames.GetSize(), 0);
    const struct {
        VARTYPE vt;
        VPPropTypes kind;
    } simple[] = {
        {VT_I2, VP_PROP_INTEGER},      {VT_UI8, VP_PROP_INTEGER}, {VT_UINT, VP_PROP_INTEGER},
        {VT_R4, VP_PROP_REAL},         {VT_CY, VP_PROP_REAL},     {VT_DATE, VP_PROP_DATE},
        {VT_VARIANT, VP_PROP_TEXT},    {VT_I1, VP_PROP_TEXT},     {VT_UI1, VP_PROP_TEXT},
        {VT_BOOL, VP_PROP_BOOL},       {VT_ERROR, VP_PROP_NONE},  {VT_DISPATCH, VP_PROP_NONE},
        {VT_UNKNOWN, VP_PROP_NONE},    {VT_VOID, VP_PROP_NONE},   {VT_SAFEARRAY, VP_PROP_NONE},
        {VT_USERDEFINED, VP_PROP_NONE}}; // no type info to follow the reference
    for (const auto& row : simple) {
        SCOPED_TRACE(row.vt);
        tagTYPEDESC desc{};
        desc.vt = row.vt;
        TVPfxGetPropTypeInfo(nullptr, &desc, &info);
        EXPECT_EQ(info.nPropType, row.kind);
    }
    TVPfxGetPropTypeInfo(nullptr, &bstr, nullptr); // a null record is no fault
}

TEST_F(MemberTypes, RefinementLeavesEnumerationsAndNothingAlone) {
    ComPtr<IDispatch> gauge = CreateControl(GaugeClass);
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass);
    tagACTIVEXPROPTYPEINFO info;
    info.nPropType = VP_PROP_ENUM;
    info.arrNames.Add("kept");
    TVPfxGetPropTypeInfoEx(gauge.Get(), IdOf(type.Get(), L"Scale"), &info);
    EXPECT_EQ(Joined(info.arrNames), "kept");
    info.nPropType = VP_PROP_REAL;
    TVPfxGetPropTypeInfoEx(gauge.Get(), IdOf(type.Get(), L"Scale"), &info);
    EXPECT_EQ(info.nPropType, VP_PROP_ENUM);
    EXPECT_EQ(Joined(info.arrNames), "Linear|Logarithmic");
    // No list for the member: the kind stays, the lists are emptied.
    info.nPropType = VP_PROP_TEXT;
    TVPfxGetPropTypeInfoEx(gauge.Get(), IdOf(type.Get(), L"Caption"), &info);
    EXPECT_EQ(info.nPropType, VP_PROP_TEXT);
    EXPECT_EQ(info.arrNames.GetSize(), 0);
    EXPECT_EQ(info.arrValues.GetSize(), 0);
}
