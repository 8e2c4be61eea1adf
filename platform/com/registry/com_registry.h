// A file-backed registry of the component model: type libraries by identifier and version,
// and classes with their display name, type library and either an in-process factory or a
// control manifest (see described_control.h). It answers LoadRegTypeLib and CoCreateInstance.
//
// The registry file is text, one section per entry, paths relative to the file:
//   [typelib {630DAAF8-F305-4537-B258-0DD557365CB7} 1.0]
//   path = form.tlb
//   [class {C4C0A1E2-...}]
//   name = Talvor Gauge
//   typelib = {LIBID} 1.0
//   manifest = gauge.manifest          (optional: makes it a described control)
// Lines starting with ';' or '#' are comments.
#pragma once

#include "platform/com/ole_control.h"
#include "platform/intl/language_ids.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
constexpr DWORD CLSCTX_ALL = 0x17;

// The type library registered for `libid` with this major version and the highest minor
// version not below `minor`; TYPE_E_LIBNOTREGISTERED when none is, or the load's failure.
HRESULT LoadRegTypeLib(REFGUID libid, WORD major, WORD minor, LCID lcid, ITypeLib** lib);
// REGDB_E_CLASSNOTREG for an unknown class, CLASS_E_NOAGGREGATION with an outer object,
// E_NOINTERFACE when the object hasn't `iid`.
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object);

namespace talvor::platform {

struct ControlManifest;

// Creates an object of a registered in-process class and asks it for `iid`.
using ClassFactory = std::function<HRESULT(REFIID iid, void** object)>;

struct ClassRegistration {
    CLSID clsid = GUID_NULL;
    std::string displayName;
    GUID libid = GUID_NULL;
    WORD major = 0;
    WORD minor = 0;
    ClassFactory factory;                      // an in-process class, or
    std::shared_ptr<ControlManifest> manifest; // a described control (may be empty)
    bool described = false;
};

class ComRegistry {
public:
    static ComRegistry& Instance();

    void RegisterTypeLib(REFGUID libid, WORD major, WORD minor, const std::string& path);
    // A library carried in memory by the program; `image` must outlive the registry.
    void RegisterTypeLibImage(REFGUID libid, WORD major, WORD minor, const std::uint8_t* image,
                              std::size_t size);
    void RegisterClass(const ClassRegistration& registration);
    // Forgets the class; nothing happens for one that isn't registered.
    void UnregisterClass(REFCLSID clsid);
    // Adds the entries of a registry file; false with "file:line: what" in `error`, with the
    // entries before the fault kept.
    bool LoadFile(const std::string& path, std::string& error);
    void Clear();

    const ClassRegistration* FindClass(REFCLSID clsid) const;
    // Empty when no library of that major version has at least that minor version;
    // "(built in)" for a library carried in memory.
    std::string FindTypeLibPath(REFGUID libid, WORD major, WORD minor) const;
    // The library LoadRegTypeLib gives.
    HRESULT LoadTypeLib(REFGUID libid, WORD major, WORD minor, ITypeLib** lib);

private:
    struct TypeLibEntry {
        GUID libid;
        WORD major;
        WORD minor;
        std::string path;
        const std::uint8_t* image = nullptr;
        std::size_t size = 0;
        ComPtr<ITypeLib> loaded; // an image, once loaded
    };
    const TypeLibEntry* Find(REFGUID libid, WORD major, WORD minor) const;
    std::vector<TypeLibEntry> m_typeLibs;
    std::vector<ClassRegistration> m_classes;
};

// The display name of a class given in registry text form; empty when it has none.
std::string GetActiveXDisplayName(const std::string& clsidText);

} // namespace talvor::platform
