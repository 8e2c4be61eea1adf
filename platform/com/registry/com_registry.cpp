#include "platform/com/registry/com_registry.h"

#include "platform/com/registry/described_control.h"
#include "platform/com/typelib/type_lib.h"

#include <fstream>
#include <sstream>

namespace talvor::platform {
namespace {

std::string Trim(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    const std::size_t last = text.find_last_not_of(" \t\r");
    return text.substr(first, last - first + 1);
}

// "{GUID} 1.0" into its parts.
bool ParseVersioned(const std::string& text, GUID& guid, WORD& major, WORD& minor) {
    std::istringstream in(text);
    std::string guidText, version;
    in >> guidText >> version;
    unsigned high = 0, low = 0;
    char dot = 0;
    std::istringstream v(version);
    if (!GuidFromText(guidText, guid) || !(v >> high >> dot >> low) || dot != '.' ||
        high > 0xFFFF || low > 0xFFFF)
        return false;
    major = static_cast<WORD>(high);
    minor = static_cast<WORD>(low);
    return true;
}

std::string Resolve(const std::string& folder, const std::string& path) {
    if (path.empty() || path[0] == '/')
        return path;
    return folder + "/" + path;
}

bool ReadText(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::ostringstream out;
    out << in.rdbuf();
    text = out.str();
    return true;
}

} // namespace

ComRegistry& ComRegistry::Instance() {
    static ComRegistry registry;
    return registry;
}

void ComRegistry::RegisterTypeLib(REFGUID libid, WORD major, WORD minor, const std::string& path) {
    for (TypeLibEntry& entry : m_typeLibs) {
        if (entry.libid == libid && entry.major == major && entry.minor == minor) {
            entry.path = path;
            return;
        }
    }
    m_typeLibs.push_back({libid, major, minor, path, nullptr, 0, {}});
}

void ComRegistry::RegisterTypeLibImage(REFGUID libid, WORD major, WORD minor,
                                       const std::uint8_t* image, std::size_t size) {
    RegisterTypeLib(libid, major, minor, "(built in)");
    for (TypeLibEntry& entry : m_typeLibs) {
        if (entry.libid == libid && entry.major == major && entry.minor == minor) {
            entry.image = image;
            entry.size = size;
            entry.loaded.Reset();
        }
    }
}

HRESULT ComRegistry::LoadTypeLib(REFGUID libid, WORD major, WORD minor, ITypeLib** lib) {
    if (!lib)
        return E_INVALIDARG;
    *lib = nullptr;
    auto* entry = const_cast<TypeLibEntry*>(Find(libid, major, minor));
    if (!entry)
        return TYPE_E_LIBNOTREGISTERED;
    if (!entry->image)
        return LoadTypeLibFromFile(entry->path, lib);
    if (!entry->loaded) {
        ITypeLib* loaded = nullptr;
        const HRESULT hr = LoadTypeLibFromMemory(entry->image, entry->size, "", &loaded);
        if (FAILED(hr))
            return hr;
        entry->loaded = ComPtr<ITypeLib>(loaded);
    }
    *lib = entry->loaded.Get();
    (*lib)->AddRef();
    return S_OK;
}

void ComRegistry::RegisterClass(const ClassRegistration& registration) {
    for (ClassRegistration& entry : m_classes) {
        if (entry.clsid == registration.clsid) {
            entry = registration;
            return;
        }
    }
    m_classes.push_back(registration);
}

void ComRegistry::UnregisterClass(REFCLSID clsid) {
    std::erase_if(m_classes, [&](const ClassRegistration& entry) { return entry.clsid == clsid; });
}

void ComRegistry::Clear() {
    m_typeLibs.clear();
    m_classes.clear();
}

const ClassRegistration* ComRegistry::FindClass(REFCLSID clsid) const {
    for (const ClassRegistration& entry : m_classes) {
        if (entry.clsid == clsid)
            return &entry;
    }
    return nullptr;
}

const ComRegistry::TypeLibEntry* ComRegistry::Find(REFGUID libid, WORD major, WORD minor) const {
    const TypeLibEntry* best = nullptr;
    for (const TypeLibEntry& entry : m_typeLibs) {
        if (entry.libid == libid && entry.major == major && entry.minor >= minor &&
            (!best || entry.minor > best->minor))
            best = &entry;
    }
    return best;
}

std::string ComRegistry::FindTypeLibPath(REFGUID libid, WORD major, WORD minor) const {
    const TypeLibEntry* best = Find(libid, major, minor);
    return best ? best->path : std::string();
}

bool ComRegistry::LoadFile(const std::string& path, std::string& error) {
    std::string text;
    if (!ReadText(path, text)) {
        error = path + ": can't read the file";
        return false;
    }
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
    std::istringstream in(text);
    std::string line;
    int number = 0;
    enum class Section { None, TypeLib, Class } section = Section::None;
    GUID libid{};
    WORD major = 0, minor = 0;
    ClassRegistration current;
    auto fail = [&](const std::string& what) {
        error = path + ":" + std::to_string(number) + ": " + what;
        return false;
    };
    auto finishClass = [&]() {
        if (section == Section::Class)
            RegisterClass(current);
    };
    while (std::getline(in, line)) {
        ++number;
        line = Trim(line);
        if (line.empty() || line[0] == ';' || line[0] == '#')
            continue;
        if (line.front() == '[') {
            finishClass();
            if (line.back() != ']')
                return fail("section without ']'");
            const std::string head = Trim(line.substr(1, line.size() - 2));
            if (head.rfind("typelib ", 0) == 0) {
                if (!ParseVersioned(head.substr(8), libid, major, minor))
                    return fail("expected [typelib {LIBID} major.minor]");
                section = Section::TypeLib;
            } else if (head.rfind("class ", 0) == 0) {
                current = ClassRegistration();
                if (!GuidFromText(Trim(head.substr(6)), current.clsid))
                    return fail("expected [class {CLSID}]");
                section = Section::Class;
            } else {
                return fail("unknown section \"" + head + "\"");
            }
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos)
            return fail("no '=' in the line");
        const std::string key = Trim(line.substr(0, equals));
        const std::string value = Trim(line.substr(equals + 1));
        if (section == Section::TypeLib && key == "path") {
            RegisterTypeLib(libid, major, minor, Resolve(folder, value));
        } else if (section == Section::Class && key == "name") {
            current.displayName = value;
        } else if (section == Section::Class && key == "typelib") {
            if (!ParseVersioned(value, current.libid, current.major, current.minor))
                return fail("expected typelib = {LIBID} major.minor");
            current.described = true;
        } else if (section == Section::Class && key == "manifest") {
            std::string manifestText, manifestError;
            const std::string manifestPath = Resolve(folder, value);
            if (!ReadText(manifestPath, manifestText))
                return fail("can't read the manifest " + manifestPath);
            auto manifest = std::make_shared<ControlManifest>();
            if (!manifest->Parse(manifestText, manifestError))
                return fail(manifestPath + ": " + manifestError);
            current.manifest = std::move(manifest);
        } else {
            return fail("unknown key \"" + key + "\"");
        }
    }
    finishClass();
    return true;
}

std::string GetActiveXDisplayName(const std::string& clsidText) {
    GUID clsid{};
    if (!GuidFromText(clsidText, clsid))
        return std::string();
    const ClassRegistration* entry = ComRegistry::Instance().FindClass(clsid);
    return entry ? entry->displayName : std::string();
}

} // namespace talvor::platform

using talvor::platform::ComRegistry;

HRESULT LoadRegTypeLib(REFGUID libid, WORD major, WORD minor, LCID, ITypeLib** lib) {
    if (!lib)
        return E_INVALIDARG;
    *lib = nullptr;
    return ComRegistry::Instance().LoadTypeLib(libid, major, minor, lib);
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid,
                         void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (outer)
        return CLASS_E_NOAGGREGATION;
    if (!(context & CLSCTX_INPROC_SERVER))
        return REGDB_E_CLASSNOTREG;
    const auto* entry = ComRegistry::Instance().FindClass(clsid);
    if (!entry)
        return REGDB_E_CLASSNOTREG;
    if (entry->factory)
        return entry->factory(iid, object);
    if (!entry->described)
        return REGDB_E_CLASSNOTREG;
    ITypeLib* lib = nullptr;
    HRESULT hr = LoadRegTypeLib(entry->libid, entry->major, entry->minor, 0, &lib);
    if (FAILED(hr))
        return hr;
    ITypeInfo* coclass = nullptr;
    hr = lib->GetTypeInfoOfGuid(clsid, &coclass);
    lib->Release();
    if (FAILED(hr))
        return REGDB_E_CLASSNOTREG;
    hr = talvor::platform::CreateDescribedControl(coclass, entry->manifest, iid, object);
    coclass->Release();
    return hr;
}
