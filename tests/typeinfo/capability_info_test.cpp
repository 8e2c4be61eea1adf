// Capability records of the sample controls, and the type texts behind them.
#include "tests/typeinfo/sample_controls.h"

#include "typeinfo/capability_info.h"

#include <gtest/gtest.h>

using talvor::platform::ComPtr;
using namespace talvor::testing;

namespace {

class Capabilities : public ::testing::Test {
protected:
    void SetUp() override { RegisterSampleControls(); }
    void TearDown() override { talvor::platform::ComRegistry::Instance().Clear(); }
};

const tagAPTITUDEINFO* Find(const CArray<tagAPTITUDEINFO, tagAPTITUDEINFO>& infos,
                            const char* member) {
    for (const tagAPTITUDEINFO& info : infos) {
        if (info.strMember.Compare(member) == 0)
            return &info;
    }
    return nullptr;
}

} // namespace

TEST(TypeText, SimpleTypesAndTheirReplacements) {
    const struct {
        VARTYPE vt;
        const char* text;
    } rows[] = {{0, "void"},
                {3, "long"},
                {8, "VCF::String"},
                {9, "VCF::Object*"},
                {12, "VCF::VariantData"},
                {13, "VCF::Object*"},
                {15, ""},
                {19, "unsigned long"},
                {25, "unsigned long"},
                {31, "String"},
                {32, ""},
                {72, "CLSID"},
                {73, "BAD VARTYPE"},
                {VT_BYREF | VT_I4, "long"},
                {0x0FFF, "BAD VARTYPE"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.vt);
        EXPECT_STREQ(VTtoString(row.vt).GetString(), row.text);
    }
}

TEST(TypeText, PointersArraysAndFailedReferences) {
    tagTYPEDESC dispatch{};
    dispatch.vt = VT_DISPATCH;
    tagTYPEDESC pointer{};
    pointer.vt = VT_PTR;
    pointer.lptdesc = &dispatch;
    EXPECT_STREQ(TYPEDESCToString(nullptr, &pointer).GetString(), "VCF::Object**");

    std::vector<std::uint8_t> block(sizeof(ARRAYDESC) + sizeof(SAFEARRAYBOUND));
    auto* array = new (block.data()) ARRAYDESC{};
    array->tdescElem.vt = VT_I4;
    array->cDims = 2;
    array->rgbounds[0] = {3, 0};
    array->rgbounds[1] = {4, 0};
    tagTYPEDESC carray{};
    carray.vt = VT_CARRAY;
    carray.lpadesc = array;
    EXPECT_STREQ(TYPEDESCToString(nullptr, &carray).GetString(), "long[3][4]");

    tagTYPEDESC element{};
    element.vt = VT_BSTR;
    tagTYPEDESC safe{};
    safe.vt = VT_SAFEARRAY;
    safe.lptdesc = &element;
    EXPECT_STREQ(TYPEDESCToString(nullptr, &safe).GetString(), "SAFEARRAY(VCF::String)");

    tagTYPEDESC user{};
    user.vt = VT_USERDEFINED;
    user.hreftype = 12345;
    EXPECT_STREQ(TYPEDESCToString(nullptr, &user).GetString(), "<GetRefTypeInfo failed>");
}

TEST_F(Capabilities, GaugeInterfaceGivesEnumerationsPropertiesAndMethods) {
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass);
    ITypeInfo* raw = type.Get();
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> infos;
    TVPfxGetComAptitudeInfo(&raw, infos, 0, nullptr);
    ASSERT_GT(infos.GetSize(), 0);

    // The enumerations of the library come first, each constant with the whole text.
    EXPECT_STREQ(infos[0].strMember.GetString(), "Enum GaugeStyle::gsNeedle");
    EXPECT_EQ(infos[0].nKind, 9);
    EXPECT_STREQ(infos[0].strConstant.GetString(), "0");
    EXPECT_STREQ(infos[0].strHelp.GetString(),
                 "enum GaugeStyle {\r\ngsNeedle = 0,\r\ngsBar = 1,\r\ngsSegments = 2\r\n}\r\n");
    const tagAPTITUDEINFO* descending = Find(infos, "Enum ListSorting::lsDescending");
    ASSERT_NE(descending, nullptr);
    EXPECT_STREQ(descending->strConstant.GetString(), "-1");
    EXPECT_TRUE(descending->strDeclaration.IsEmpty());

    const struct {
        const char* member;
        int kind;
        const char* declaration;
    } rows[] = {
        {"Value", 2, "long Value"},
        {"Style", 2, "GaugeStyle Style"},
        {"NeedleColor", 2, "GaugeColor NeedleColor"},
        {"Caption", 2, "VCF::String Caption"},
        {"Labels", 2, "VCF::String* Labels"},
        {"Animate", 3, "void Animate( long from, long to )"},
        {"Reset", 3, "void Reset(  )"},
        // A library keeps one spelling per name: the parameter "style" reads as the property
        // "Style" declared before it.
        {"Mark", 3, "void Mark( GaugeStyle Style, long at )"},
        {"QueryInterface", 3, "void QueryInterface( _GUID* riid, void** ppvObject )"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.member);
        const tagAPTITUDEINFO* info = Find(infos, row.member);
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(info->nKind, row.kind);
        EXPECT_STREQ(info->strDeclaration.GetString(), row.declaration);
    }
    EXPECT_STREQ(Find(infos, "Value")->strHelp.GetString(), "The value shown");
    // A property with get and put functions gives one record.
    int captions = 0;
    for (const tagAPTITUDEINFO& info : infos)
        captions += info.strMember.Compare("Caption") == 0;
    EXPECT_EQ(captions, 1);

    // A second call adds again, and the duplicate test spans both calls: only methods and
    // enumeration constants come twice.
    const INT_PTR first = infos.GetSize();
    TVPfxGetComAptitudeInfo(&raw, infos, 0, nullptr);
    for (INT_PTR i = first; i < infos.GetSize(); ++i)
        EXPECT_NE(infos[i].nKind, 2) << infos[i].strMember.GetString();
}

TEST_F(Capabilities, EventsCarryTheControlsName) {
    ComPtr<ITypeInfo> type = DefaultInterface(GaugeClass, 1);
    ITypeInfo* raw = type.Get();
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> infos;
    TVPfxGetComAptitudeInfo(&raw, infos, 1, "Gauge1");
    ASSERT_EQ(infos.GetSize(), 1);
    EXPECT_STREQ(infos[0].strMember.GetString(), "Gauge1_Change");
    EXPECT_EQ(infos[0].nKind, 4);
    EXPECT_STREQ(infos[0].strDeclaration.GetString(), "void Change( long Value )");
}

TEST_F(Capabilities, ListBoxVariablesAndMethodWithoutParameterNames) {
    ComPtr<ITypeInfo> type = DefaultInterface(ListBoxClass);
    ITypeInfo* raw = type.Get();
    CArray<tagAPTITUDEINFO, tagAPTITUDEINFO> infos;
    TVPfxGetComAptitudeInfo(&raw, infos, 0, nullptr);
    const struct {
        const char* member;
        const char* declaration;
    } rows[] = {{"Font", "IFontDisp* Font"},
                {"Total", "CURRENCY Total"},
                {"Updated", "DATE Updated"},
                {"DataSource", "VCF::Object* DataSource"},
                {"Link", "ILinkTarget* Link"},
                {"AddItem", "void AddItem( VCF::String item, VCF::VariantData index )"},
                {"List", "VCF::String List( long index )"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.member);
        const tagAPTITUDEINFO* info = Find(infos, row.member);
        ASSERT_NE(info, nullptr);
        EXPECT_STREQ(info->strDeclaration.GetString(), row.declaration);
    }
    ITypeInfo* none = nullptr;
    TVPfxGetComAptitudeInfo(&none, infos, 0, nullptr); // nothing to describe, nothing added
}
