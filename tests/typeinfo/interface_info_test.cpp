// Interface and method descriptions built from the host's member lists and live controls.
#include "tests/typeinfo/sample_controls.h"

#include "host/ole/form_type_library.h"
#include "host/ole/interface_builder.h"
#include "typeinfo/interface_info.h"

#include <gtest/gtest.h>

using talvor::platform::ComPtr;
using namespace talvor::testing;

namespace {

// The descriptions hold a reference to their type each and never release it; that is left
// to the host, and the tests do it.
void ReleaseTypes(CTalvorInterfaceInfo& info) {
    for (CTalvorMethodInfo* method : info.m_arrMethods) {
        if (method && method->m_pTypeInfo)
            method->m_pTypeInfo->Release();
    }
}

class InterfaceInfo : public ::testing::Test {
protected:
    void SetUp() override { RegisterSampleControls(); }
    void TearDown() override { talvor::platform::ComRegistry::Instance().Clear(); }
};

} // namespace

TEST_F(InterfaceInfo, GaugeMembersFromItsTypeLibrary) {
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass);
    auto source = talvor::host::BuildInterfaceFromTypeInfo(type.Get());
    ASSERT_TRUE(source);
    ComPtr<IDispatch> gauge = CreateControl(GaugeClass);
    CTalvorInterfaceInfo info;
    GUID clsid = GaugeClass;
    ASSERT_EQ(info.InitEx(source.get(), gauge.Get(), clsid), 0);
    EXPECT_TRUE(info.GetIID() == source->GetIID());
    EXPECT_EQ(info.GetNumMethods(), source->GetNumMethods());

    CTalvorMethodInfo* value = info.FindMethod(IdOf(type.Get(), L"Value"));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->m_nPropType, VP_PROP_PAGE);
    EXPECT_EQ(talvor::platform::GuidToText(value->m_clsidPropPage),
              "{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C90}");
    EXPECT_EQ(value->m_nPropCat, -7);
    EXPECT_TRUE(value->m_clsidControl == GaugeClass);
    EXPECT_NE(value->m_pTypeInfo, nullptr);

    // Max: no category in the manifest, though the control has ICategorizeProperties.
    CTalvorMethodInfo* max = info.FindMethod(IdOf(type.Get(), L"Max"));
    ASSERT_NE(max, nullptr);
    EXPECT_EQ(max->m_nPropType, VP_PROP_INTEGER);
    EXPECT_EQ(max->m_nPropCat, -1);
    EXPECT_TRUE(max->m_clsidPropPage == GUID_NULL);

    // Mark(GaugeStyle style, long at): one description per parameter.
    CTalvorMethodInfo* mark = info.FindMethod(IdOf(type.Get(), L"Mark"));
    ASSERT_NE(mark, nullptr);
    ASSERT_EQ(mark->m_arrParams.GetSize(), 2);
    EXPECT_EQ(mark->m_arrParams[0]->m_nPropType, VP_PROP_ENUM);
    EXPECT_EQ(Joined(mark->m_arrParams[0]->m_arrNames), "gsNeedle|gsBar|gsSegments");
    EXPECT_EQ(mark->m_arrParams[1]->m_nPropType, VP_PROP_INTEGER);
    EXPECT_EQ(mark->m_nPropType, VP_PROP_INTEGER); // what the last parameter gave
    // A parameter's lists are a copy: changing the member's doesn't reach them.
    mark->m_arrNames.Add("later");
    EXPECT_EQ(mark->m_arrParams[0]->m_arrNames.GetSize(), 3);

    // Ticks is nonbrowsable: no kind, but its flags are kept.
    CTalvorMethodInfo* ticks = info.FindMethod(IdOf(type.Get(), L"Ticks"));
    ASSERT_NE(ticks, nullptr);
    EXPECT_EQ(ticks->m_nPropType, VP_PROP_NONE);
    EXPECT_EQ(ticks->m_wFlags & FUNCFLAG_FNONBROWSABLE, FUNCFLAG_FNONBROWSABLE);
    ReleaseTypes(info);
}

TEST_F(InterfaceInfo, FindMethodGivesTheFirstOfEqualIds) {
    CTalvorInterfaceInfo empty;
    EXPECT_EQ(empty.FindMethod(1), nullptr);
    EXPECT_EQ(empty.GetNumMethods(), 0);

    // Caption has a get and a put function with id 6; both become descriptions.
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass);
    auto source = talvor::host::BuildInterfaceFromTypeInfo(type.Get());
    ComPtr<IDispatch> gauge = CreateControl(GaugeClass);
    CTalvorInterfaceInfo info;
    GUID clsid = GaugeClass;
    ASSERT_EQ(info.InitEx(source.get(), gauge.Get(), clsid), 0);
    const long caption = IdOf(type.Get(), L"Caption");
    int first = -1, count = 0;
    for (int i = 0; i < info.GetNumMethods(); ++i) {
        if (info.m_arrMethods[i]->GetID() == caption) {
            if (first < 0)
                first = i;
            ++count;
        }
    }
    EXPECT_EQ(count, 2);
    EXPECT_EQ(info.FindMethod(caption), info.m_arrMethods[first]);
    ReleaseTypes(info);
}

TEST_F(InterfaceInfo, ConstructionDefaultsAndTheCopyingConstructor) {
    CTalvorMethodInfo plain;
    EXPECT_EQ(plain.m_nPropCat, -2);
    EXPECT_EQ(plain.m_nAlternate, -1);
    EXPECT_EQ(plain.m_nPropType, VP_PROP_NONE);
    EXPECT_EQ(plain.GetID(), 0);

    VPPropTypes kind = VP_PROP_ENUM;
    CStringArray names;
    names.Add("a");
    CArray<tagVARIANT, tagVARIANT> values;
    tagVARIANT v;
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = 5;
    values.Add(v);
    CTalvorMethodInfo copy(kind, names, values);
    names.Add("b");
    EXPECT_EQ(copy.m_nPropType, VP_PROP_ENUM);
    EXPECT_EQ(Joined(copy.m_arrNames), "a");
    EXPECT_EQ(copy.m_arrValues[0].lVal, 5);
}

TEST_F(InterfaceInfo, ControlWithoutCategoriesAndTheForm) {
    ComPtr<ITypeInfo> type = DefaultInterface(ListBoxClass);
    auto source = talvor::host::BuildInterfaceFromTypeInfo(type.Get());
    ComPtr<IDispatch> list = CreateControl(ListBoxClass);
    CTalvorInterfaceInfo info;
    GUID clsid = ListBoxClass;
    ASSERT_EQ(info.InitEx(source.get(), list.Get(), clsid), 0);
    CTalvorMethodInfo* sorted = info.FindMethod(IdOf(type.Get(), L"Sorted"));
    ASSERT_NE(sorted, nullptr);
    EXPECT_EQ(sorted->m_nPropCat, -1);
    EXPECT_EQ(sorted->m_nPropType, VP_PROP_ENUM);
    ReleaseTypes(info);

    // A member of the form comes from the form's library; no control is created for it.
    ITypeInfo* formType = nullptr;
    ASSERT_EQ(TVPfxGetContainerDocTypeInfo(0, &formType), 1);
    ComPtr<ITypeInfo> form(formType);
    CTalvorMethodInfo border;
    GUID formId = talvor::host::IID_ITalvorForm;
    EXPECT_EQ(border.InitEx(list.Get(), formId, IdOf(form.Get(), L"BorderStyle")), 0);
    EXPECT_EQ(border.m_nPropType, VP_PROP_ENUM);
    EXPECT_EQ(border.m_arrNames.GetSize(), 6);
    EXPECT_EQ(std::string(border.m_arrNames[5].GetString()), "tvBorderSizableToolWindow");
    ASSERT_NE(border.m_pTypeInfo, nullptr);
    border.m_pTypeInfo->Release();
}
