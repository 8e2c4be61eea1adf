// The file-backed registry, described controls made from the sample controls' library, and
// the recorded property frame.
#include "tests/com/wine_libraries.h"

#include "platform/com/ole_control.h"
#include "platform/com/registry/com_registry.h"
#include "platform/com/registry/property_frame.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using talvor::platform::ComPtr;
using talvor::platform::ComRegistry;
using talvor::platform::MakeGuid;
using namespace talvor::testing;

namespace {

const GUID ControlsLib = MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C60}");
const CLSID GaugeClass = MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80}");
const CLSID ListBoxClass = MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C81}");
const IID IGaugeId = MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C70}");

// A registry file and a manifest in a fresh folder, registered for the test's time.
class RegistryFixture : public ::testing::Test {
protected:
    void SetUp() override {
        m_dir = std::filesystem::temp_directory_path() /
                ("talvor-registry-" + std::to_string(::getpid()));
        std::filesystem::create_directories(m_dir);
        Write("gauge.manifest", "[member Style]\n"
                                "strings = Needle|Bar|Segments\n"
                                "values = 0|1|2\n"
                                "category = -5\n"
                                "[member Value]\n"
                                "strings = Empty|Full\n"
                                "values = 0\n"
                                "[member Caption]\n"
                                "page = {0BE35203-8F91-11CE-9DE3-00AA004BB851}\n"
                                "category = 1\n"
                                "[categories]\n"
                                "1 = Scale\n");
        Write("controls.reg", "; the sample controls\n"
                              "[typelib {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C60} 1.0]\n"
                              "path = " TALVOR_SAMPLE_TLB_DIR "/talvor_controls.tlb\n"
                              "[class {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80}]\n"
                              "name = Talvor Gauge\n"
                              "typelib = {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C60} 1.0\n"
                              "manifest = gauge.manifest\n"
                              "[class {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C81}]\n"
                              "name = Talvor List Box\n"
                              "typelib = {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C60} 1.0\n");
        ComRegistry::Instance().Clear();
        std::string error;
        ASSERT_TRUE(ComRegistry::Instance().LoadFile((m_dir / "controls.reg").string(), error))
            << error;
    }
    void TearDown() override {
        ComRegistry::Instance().Clear();
        std::filesystem::remove_all(m_dir);
    }
    void Write(const char* name, const char* text) { std::ofstream(m_dir / name) << text; }
    std::filesystem::path m_dir;
};

ComPtr<IDispatch> Create(REFCLSID clsid) {
    IDispatch* object = nullptr;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(&object)),
              S_OK);
    return ComPtr<IDispatch>(object);
}

DISPID IdOf(IDispatch* object, const wchar_t* name) {
    LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(object->GetIDsOfNames(IID_IUnknown, names, 1, 0, &id), S_OK) << name;
    return id;
}

} // namespace

TEST_F(RegistryFixture, TypeLibrariesByVersion) {
    ITypeLib* lib = nullptr;
    ASSERT_EQ(LoadRegTypeLib(ControlsLib, 1, 0, GetUserDefaultLCID(), &lib), S_OK);
    ComPtr<ITypeLib> held(lib);
    EXPECT_EQ(LoadRegTypeLib(ControlsLib, 1, 1, 0, &lib), TYPE_E_LIBNOTREGISTERED);
    EXPECT_EQ(LoadRegTypeLib(ControlsLib, 2, 0, 0, &lib), TYPE_E_LIBNOTREGISTERED);
    ComRegistry::Instance().RegisterTypeLib(ControlsLib, 1, 3, "/nonexistent.tlb");
    // The highest minor version at or above the one asked for is taken.
    EXPECT_EQ(LoadRegTypeLib(ControlsLib, 1, 0, 0, &lib), TYPE_E_CANTLOADLIBRARY);
}

TEST_F(RegistryFixture, DescribedControlAnswersTruthfully) {
    ComPtr<IDispatch> gauge = Create(GaugeClass);
    ASSERT_TRUE(gauge);
    // IProvideClassInfo gives the coclass, whose default interface is IGauge.
    IProvideClassInfo* provide = nullptr;
    ASSERT_EQ(gauge->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&provide)),
              S_OK);
    ITypeInfo* coclass = nullptr;
    ASSERT_EQ(provide->GetClassInfo(&coclass), S_OK);
    provide->Release();
    EXPECT_EQ(TypeName(coclass), "Gauge");
    coclass->Release();
    // It has the interfaces of its class, and no others.
    IUnknown* other = nullptr;
    EXPECT_EQ(gauge->QueryInterface(IGaugeId, reinterpret_cast<void**>(&other)), S_OK);
    other->Release();
    EXPECT_EQ(gauge->QueryInterface(IID_IFontDisp, reinterpret_cast<void**>(&other)),
              E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);

    IPerPropertyBrowsing* browsing = nullptr;
    ASSERT_EQ(gauge->QueryInterface(IID_IPerPropertyBrowsing, reinterpret_cast<void**>(&browsing)),
              S_OK);
    ComPtr<IPerPropertyBrowsing> browse(browsing);
    CALPOLESTR strings{};
    CADWORD cookies{};
    ASSERT_EQ(browse->GetPredefinedStrings(IdOf(gauge.Get(), L"Style"), &strings, &cookies), S_OK);
    ASSERT_EQ(strings.cElems, 3u);
    ASSERT_EQ(cookies.cElems, 3u);
    EXPECT_EQ(std::wstring(strings.pElems[1]), L"Bar");
    VARIANT value;
    ASSERT_EQ(browse->GetPredefinedValue(IdOf(gauge.Get(), L"Style"), cookies.pElems[2], &value),
              S_OK);
    EXPECT_EQ(value.vt, VT_I4);
    EXPECT_EQ(value.lVal, 2);
    for (ULONG i = 0; i < strings.cElems; ++i)
        CoTaskMemFree(strings.pElems[i]);
    CoTaskMemFree(strings.pElems);
    CoTaskMemFree(cookies.pElems);
    // Unequal counts stand as the manifest says.
    ASSERT_EQ(browse->GetPredefinedStrings(IdOf(gauge.Get(), L"Value"), &strings, &cookies), S_OK);
    EXPECT_EQ(strings.cElems, 2u);
    EXPECT_EQ(cookies.cElems, 1u);
    for (ULONG i = 0; i < strings.cElems; ++i)
        CoTaskMemFree(strings.pElems[i]);
    CoTaskMemFree(strings.pElems);
    CoTaskMemFree(cookies.pElems);
    EXPECT_EQ(browse->GetPredefinedStrings(IdOf(gauge.Get(), L"Min"), &strings, &cookies),
              E_NOTIMPL);

    CLSID page{};
    EXPECT_EQ(browse->MapPropertyToPage(IdOf(gauge.Get(), L"Caption"), &page), S_OK);
    EXPECT_EQ(talvor::platform::GuidToText(page), "{0BE35203-8F91-11CE-9DE3-00AA004BB851}");
    EXPECT_EQ(browse->MapPropertyToPage(IdOf(gauge.Get(), L"Min"), &page),
              PERPROP_E_NOPAGEAVAILABLE);

    ICategorizeProperties* categorize = nullptr;
    ASSERT_EQ(
        gauge->QueryInterface(IID_ICategorizeProperties, reinterpret_cast<void**>(&categorize)),
        S_OK);
    PROPCAT category = 0;
    EXPECT_EQ(categorize->MapPropertyToCategory(IdOf(gauge.Get(), L"Style"), &category), S_OK);
    EXPECT_EQ(category, PROPCAT_Appearance);
    BSTR name = nullptr;
    EXPECT_EQ(categorize->GetCategoryName(1, 0, &name), S_OK);
    EXPECT_EQ(Take(name), "Scale");
    categorize->Release();
}

TEST_F(RegistryFixture, ControlWithoutManifestHasNoBrowsingOrCategories) {
    ComPtr<IDispatch> list = Create(ListBoxClass);
    ASSERT_TRUE(list);
    IUnknown* other = nullptr;
    EXPECT_EQ(list->QueryInterface(IID_IPerPropertyBrowsing, reinterpret_cast<void**>(&other)),
              E_NOINTERFACE);
    EXPECT_EQ(list->QueryInterface(IID_ICategorizeProperties, reinterpret_cast<void**>(&other)),
              E_NOINTERFACE);
    // Its dispatch type is the dispinterface DListBox with twelve properties.
    ITypeInfo* info = nullptr;
    ASSERT_EQ(list->GetTypeInfo(0, 0, &info), S_OK);
    EXPECT_EQ(TypeName(info), "DListBox");
    info->Release();
    // A property keeps what was put.
    VARIANT arg;
    VariantInit(&arg);
    arg.vt = VT_I4;
    arg.lVal = 7;
    DISPPARAMS params{&arg, nullptr, 1, 0};
    const DISPID listIndex = IdOf(list.Get(), L"ListIndex");
    EXPECT_EQ(list->Invoke(listIndex, IID_IUnknown, 0, DISPATCH_PROPERTYPUT, &params, nullptr,
                           nullptr, nullptr),
              S_OK);
    VARIANT result;
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(list->Invoke(listIndex, IID_IUnknown, 0, DISPATCH_PROPERTYGET, &none, &result,
                           nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.vt, VT_I4);
    EXPECT_EQ(result.lVal, 7);
}

TEST_F(RegistryFixture, UnknownClassesAndAggregation) {
    void* object = nullptr;
    EXPECT_EQ(CoCreateInstance(IGaugeId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &object),
              REGDB_E_CLASSNOTREG);
    ComPtr<IDispatch> gauge = Create(GaugeClass);
    EXPECT_EQ(
        CoCreateInstance(GaugeClass, gauge.Get(), CLSCTX_INPROC_SERVER, IID_IUnknown, &object),
        CLASS_E_NOAGGREGATION);
    EXPECT_EQ(talvor::platform::GetActiveXDisplayName("{7c3d2b10-4e5f-4a6b-9c8d-1e2f3a4b5c80}"),
              "Talvor Gauge");
    EXPECT_EQ(talvor::platform::GetActiveXDisplayName("{00000000-0000-0000-0000-000000000001}"),
              "");
}

TEST_F(RegistryFixture, BadRegistryFilesNameTheLine) {
    struct Case {
        const char* text;
        const char* message;
    };
    const Case cases[] = {
        {"[class {7C3D2B10}]\n", ":1: expected [class {CLSID}]"},
        {"; note\n[typelib {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C60}]\n",
         ":2: expected [typelib {LIBID} major.minor]"},
        {"[class {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C99}]\nname\n", ":2: no '=' in the line"},
        {"[class {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C99}]\nmanifest = none.manifest\n",
         ":2: can't read the manifest"},
        {"[other]\n", ":1: unknown section \"other\""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        Write("bad.reg", c.text);
        std::string error;
        EXPECT_FALSE(ComRegistry::Instance().LoadFile((m_dir / "bad.reg").string(), error));
        EXPECT_NE(error.find(c.message), std::string::npos) << error;
    }
    Write("bad.manifest", "[member X]\nvalues = 1|two\n");
    Write("bad.reg", "[class {7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C99}]\nmanifest = bad.manifest\n");
    std::string error;
    EXPECT_FALSE(ComRegistry::Instance().LoadFile((m_dir / "bad.reg").string(), error));
    EXPECT_NE(error.find("line 2: value \"two\" is neither a number nor quoted text"),
              std::string::npos)
        << error;
}

TEST(PropertyFrame, HeadlessDefaultRecordsTheCall) {
    talvor::platform::ClearRecordedPropertyFrames();
    CLSID page = MakeGuid("{0BE35203-8F91-11CE-9DE3-00AA004BB851}");
    EXPECT_EQ(
        OleCreatePropertyFrame(nullptr, 0, 0, L"Gauge1", 0, nullptr, 1, &page, 0x409, 0, nullptr),
        S_OK);
    const auto& calls = talvor::platform::RecordedPropertyFrames();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].caption, L"Gauge1");
    ASSERT_EQ(calls[0].pages.size(), 1u);
    EXPECT_TRUE(calls[0].pages[0] == page);
    int seen = 0;
    talvor::platform::SetPropertyFrameHandler([&](const PropertyFrameCall&) {
        ++seen;
        return E_ABORT;
    });
    EXPECT_EQ(OleCreatePropertyFrame(nullptr, 0, 0, L"x", 0, nullptr, 0, nullptr, 0, 0, nullptr),
              E_ABORT);
    EXPECT_EQ(seen, 1);
    talvor::platform::SetPropertyFrameHandler(nullptr);
    EXPECT_EQ(calls.size(), 1u);
}
