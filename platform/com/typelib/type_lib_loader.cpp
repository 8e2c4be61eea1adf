// Opening type libraries from files and memory, the cache of libraries by path, and the
// search for imported libraries.
#include "platform/com/typelib/type_lib.h"

#include "platform/com/typelib/detail/msft_type_lib.h"
#include "platform/com/typelib/detail/type_lib_cache.h"
#include "platform/com/typelib/pe_resource.h"

#include <cstdlib>
#include <fstream>
#include <map>
#include <mutex>

namespace talvor::platform {
namespace {

struct LoaderState {
    std::mutex mutex;
    std::map<std::string, ComPtr<ITypeLib>> byPath;
    std::vector<std::string> searchPath;
    TypeLibImportResolver resolver;
};

LoaderState& State() {
    static LoaderState state;
    return state;
}

bool ReadWholeFile(const std::string& path, std::vector<std::uint8_t>& bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    if (size < 0)
        return false;
    in.seekg(0, std::ios::beg);
    bytes.resize(static_cast<std::size_t>(size));
    return size == 0 || static_cast<bool>(in.read(reinterpret_cast<char*>(bytes.data()), size));
}

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

bool FileExists(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return static_cast<bool>(in);
}

} // namespace

HRESULT LoadTypeLibFromMemory(const std::uint8_t* data, std::size_t size, const std::string& folder,
                              ITypeLib** lib, std::string* error) {
    if (!lib)
        return E_INVALIDARG;
    *lib = nullptr;
    std::span<const std::uint8_t> image(data, size);
    std::string message;
    if (typelib::LooksLikePeFile(image)) {
        std::span<const std::uint8_t> resource;
        if (!typelib::FindPeResource(image, u"TYPELIB", 1, resource, message)) {
            if (error)
                *error = message;
            return TYPE_E_CANTLOADLIBRARY;
        }
        image = resource;
    }
    if (image.size() >= 4 && image[0] == 'S' && image[1] == 'L' && image[2] == 'T' &&
        image[3] == 'G') {
        // TODO: SLTG-format libraries are rejected; nothing here reads them.
        if (error)
            *error = "typelib: the SLTG format is not supported";
        return TYPE_E_UNSUPFORMAT;
    }
    if (image.size() < 4 || image[0] != 'M' || image[1] != 'S' || image[2] != 'F' ||
        image[3] != 'T') {
        if (error)
            *error = "typelib: no \"MSFT\" signature";
        return TYPE_E_UNSUPFORMAT;
    }
    auto* loaded =
        new typelib::MsftTypeLib(std::vector<std::uint8_t>(image.begin(), image.end()), folder);
    if (!loaded->Load()) {
        if (error)
            *error = loaded->Error();
        loaded->Release();
        return TYPE_E_INVDATAREAD;
    }
    *lib = loaded;
    return S_OK;
}

HRESULT LoadTypeLibFromFile(const std::string& path, ITypeLib** lib, std::string* error) {
    if (!lib)
        return E_INVALIDARG;
    *lib = nullptr;
    LoaderState& state = State();
    {
        std::lock_guard<std::mutex> lock(state.mutex);
        auto found = state.byPath.find(path);
        if (found != state.byPath.end()) {
            *lib = found->second.Get();
            (*lib)->AddRef();
            return S_OK;
        }
    }
    std::vector<std::uint8_t> bytes;
    if (!ReadWholeFile(path, bytes)) {
        if (error)
            *error = "typelib: can't read " + path;
        return TYPE_E_CANTLOADLIBRARY;
    }
    const HRESULT hr =
        LoadTypeLibFromMemory(bytes.data(), bytes.size(), FolderOf(path), lib, error);
    if (FAILED(hr))
        return hr;
    std::lock_guard<std::mutex> lock(state.mutex);
    (*lib)->AddRef();
    state.byPath[path] = ComPtr<ITypeLib>(*lib);
    return S_OK;
}

void AddTypeLibSearchPath(const std::string& folder) {
    LoaderState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    for (const std::string& known : state.searchPath) {
        if (known == folder)
            return;
    }
    state.searchPath.push_back(folder);
}

void SetTypeLibImportResolver(TypeLibImportResolver resolver) {
    LoaderState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    state.resolver = std::move(resolver);
}

void ClearTypeLibCache() {
    LoaderState& state = State();
    std::map<std::string, ComPtr<ITypeLib>> released;
    std::lock_guard<std::mutex> lock(state.mutex);
    released.swap(state.byPath);
}

namespace typelib {

HRESULT ResolveImport(REFGUID libid, WORD major, WORD minor, LCID lcid, const std::string& fileName,
                      const std::string& folder, ITypeLib** lib) {
    LoaderState& state = State();
    TypeLibImportResolver resolver;
    std::vector<std::string> folders;
    {
        std::lock_guard<std::mutex> lock(state.mutex);
        resolver = state.resolver;
        folders = state.searchPath;
    }
    if (resolver && SUCCEEDED(resolver(libid, major, minor, lcid, fileName, lib)))
        return S_OK;
    if (fileName.empty() || fileName.find('/') != std::string::npos || fileName == "." ||
        fileName == "..")
        return TYPE_E_CANTLOADLIBRARY;
    if (!folder.empty())
        folders.insert(folders.begin(), folder);
    if (const char* env = std::getenv("TALVOR_TYPELIB_PATH")) {
        std::string list = env;
        std::size_t start = 0;
        while (start <= list.size()) {
            const std::size_t colon = list.find(':', start);
            const std::string part =
                list.substr(start, colon == std::string::npos ? std::string::npos : colon - start);
            if (!part.empty())
                folders.push_back(part);
            if (colon == std::string::npos)
                break;
            start = colon + 1;
        }
    }
    for (const std::string& dir : folders) {
        const std::string candidate = dir + "/" + fileName;
        if (!FileExists(candidate))
            continue;
        ITypeLib* found = nullptr;
        if (FAILED(LoadTypeLibFromFile(candidate, &found)))
            continue;
        TLIBATTR* attr = nullptr;
        const bool same = SUCCEEDED(found->GetLibAttr(&attr)) && attr->guid == libid;
        if (attr)
            found->ReleaseTLibAttr(attr);
        if (same) {
            *lib = found;
            return S_OK;
        }
        found->Release();
    }
    return TYPE_E_CANTLOADLIBRARY;
}

} // namespace typelib
} // namespace talvor::platform

HRESULT LoadTypeLib(LPCOLESTR path, ITypeLib** lib) {
    if (!path || !lib)
        return E_INVALIDARG;
    return talvor::platform::LoadTypeLibFromFile(talvor::platform::MultiByteFromWide(path), lib);
}
