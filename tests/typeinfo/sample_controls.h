// The sample controls of samples/controls, registered from the registry file the build
// writes, and a form holding one of each.
#pragma once

#include "host/ole/container.h"
#include "platform/com/bstr.h"
#include "platform/com/registry/com_registry.h"
#include "typeinfo/member_types.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace talvor::testing {

inline const GUID GaugeClass = platform::MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C80}");
inline const GUID ListBoxClass = platform::MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C81}");
inline const GUID ButtonClass = platform::MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C82}");
inline const GUID FrameClass = platform::MakeGuid("{7C3D2B10-4E5F-4A6B-9C8D-1E2F3A4B5C83}");

inline void RegisterSampleControls() {
    auto& registry = platform::ComRegistry::Instance();
    registry.Clear();
    std::string error;
    ASSERT_TRUE(registry.LoadFile(TALVOR_SAMPLE_TLB_DIR "/talvor_controls.reg", error)) << error;
}

inline platform::ComPtr<IDispatch> CreateControl(const GUID& clsid) {
    IDispatch* object = nullptr;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(&object)),
              S_OK);
    return platform::ComPtr<IDispatch>(object);
}

inline platform::ComPtr<ITypeInfo> DefaultInterface(const GUID& clsid, int event = 0) {
    ITypeInfo* info = nullptr;
    EXPECT_EQ(TVPfxGetActiveXTypeInfo(clsid, event, &info), 1);
    return platform::ComPtr<ITypeInfo>(info);
}

inline DISPID IdOf(ITypeInfo* info, const wchar_t* name) {
    LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(info->GetIDsOfNames(names, 1, &id), S_OK);
    return id;
}

inline std::string Joined(const CStringArray& names) {
    std::string out;
    for (INT_PTR i = 0; i < names.GetSize(); ++i) {
        if (i)
            out += '|';
        out += names[i].GetString();
    }
    return out;
}

inline std::string Joined(const CArray<tagVARIANT, tagVARIANT>& values) {
    std::string out;
    for (INT_PTR i = 0; i < values.GetSize(); ++i) {
        VARIANT text;
        VariantInit(&text);
        std::string one = "?";
        if (values[i].vt == VT_EMPTY)
            one = "empty";
        else if (SUCCEEDED(VariantChangeType(&text, &values[i], 0, VT_BSTR)))
            one = platform::MultiByteFromWide(text.bstrVal);
        VariantClear(&text);
        if (i)
            out += '|';
        out += one;
    }
    return out;
}

// A form with a gauge, a list box and a button, made the active form while it lives.
struct SampleForm {
    SampleForm() {
        doc.AddItem(new CVXContainerItem("Gauge1", CreateControl(GaugeClass).Get()));
        doc.AddItem(new CVXContainerItem("List1", CreateControl(ListBoxClass).Get()));
        doc.AddItem(new CVXContainerItem("Gauge2", CreateControl(GaugeClass).Get()));
        VfxSetActiveContainerDoc(&doc);
    }
    ~SampleForm() { VfxSetActiveContainerDoc(nullptr); }
    CVXContainerDoc doc;
};

} // namespace talvor::testing
