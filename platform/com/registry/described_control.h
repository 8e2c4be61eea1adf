// A "described control": a generic object made from a type library's coclass and a small
// manifest, answering IDispatch, IProvideClassInfo and, where the manifest has something to
// say, IPerPropertyBrowsing (value lists, property pages) and ICategorizeProperties.
//
// Manifest text, one section per member (by name) plus the category names:
//   [member Style]
//   strings = Flat|Raised|Sunken
//   values = 0|1|2                  (integers, or "text" in quotes)
//   category = -5                   (a PROPCAT number)
//   page = {7EBDAAE0-8120-11CF-899F-00AA00688B10}
//   [categories]
//   1 = Scale
#pragma once

#include "platform/com/ole_control.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace talvor::platform {

struct ManifestMember {
    std::vector<std::wstring> strings;
    std::vector<VARIANT> values; // owned; one per string, or fewer on purpose
    bool hasCategory = false;
    PROPCAT category = 0;
    bool hasPage = false;
    CLSID page = GUID_NULL;
};

struct ControlManifest {
    ControlManifest() = default;
    ControlManifest(const ControlManifest&) = delete;
    ControlManifest& operator=(const ControlManifest&) = delete;
    ~ControlManifest();

    std::map<std::wstring, ManifestMember> members; // by member name, upper case
    std::map<PROPCAT, std::wstring> categoryNames;

    bool HasBrowsing() const;
    bool HasCategories() const;
    // Parses manifest text; false with "line N: what" in `error`.
    bool Parse(const std::string& text, std::string& error);
};

// Makes a described control of class `coclass` (a TKIND_COCLASS type info), answering `iid`.
HRESULT CreateDescribedControl(ITypeInfo* coclass, std::shared_ptr<const ControlManifest> manifest,
                               REFIID iid, void** object);

} // namespace talvor::platform
