// Helpers of the compound file tests: names, whole streams, a listing of a file as olefile and
// our own reader see it, and a check of the red-black trees of a file's directory.
#pragma once

#include "platform/files/file_system.h"
#include "platform/storage/detail/compound_file.h"
#include "platform/storage/detail/compound_format.h"
#include "platform/storage/storage.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <unistd.h>

namespace talvor::testing {
using namespace talvor::platform::storage;
using Listing = std::map<std::string, std::string>;

inline std::u16string W(const std::string& text) {
    return std::u16string(text.begin(), text.end());
}

inline std::string TestFolder(const std::string& name) {
    std::string folder = ::testing::TempDir() + "talvor_" + name + "_" + std::to_string(::getpid());
    platform::CreateDirectories(folder);
    return folder;
}

inline std::string ReadFileBytes(const std::string& path) {
    std::string bytes, error;
    platform::ReadWholeFile(path, bytes, error);
    return bytes;
}

inline void WriteFileBytes(const std::string& path, const std::string& bytes) {
    FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

inline std::string Pattern(std::size_t length, unsigned seed) {
    std::string out(length, '\0');
    std::uint32_t x = seed * 2654435761u + 12345u;
    for (char& c : out) {
        x = x * 1103515245u + 12345u;
        c = static_cast<char>(x >> 24);
    }
    return out;
}

inline HRESULT WriteStream(IStorage* storage, const std::string& name, const std::string& data,
                           DWORD extraMode = 0) {
    IStream* stream = nullptr;
    std::u16string wide = W(name);
    HRESULT hr = storage->CreateStream(
        wide.c_str(), STGM_READWRITE | STGM_SHARE_EXCLUSIVE | extraMode, 0, 0, &stream);
    if (FAILED(hr))
        return hr;
    ULONG written = 0;
    hr = stream->Write(data.data(), static_cast<ULONG>(data.size()), &written);
    stream->Release();
    return hr;
}

inline std::string ReadStream(IStorage* storage, const std::string& name) {
    IStream* stream = nullptr;
    std::u16string wide = W(name);
    HRESULT hr =
        storage->OpenStream(wide.c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, &stream);
    char text[32];
    if (FAILED(hr)) {
        std::snprintf(text, sizeof text, "<error 0x%08x>", static_cast<unsigned>(hr));
        return text;
    }
    std::string data;
    char buffer[7000]; // not a multiple of any sector size
    for (;;) {
        ULONG got = 0;
        hr = stream->Read(buffer, sizeof buffer, &got);
        if (FAILED(hr)) {
            std::snprintf(text, sizeof text, "<error 0x%08x>", static_cast<unsigned>(hr));
            data = text;
            break;
        }
        if (got == 0)
            break;
        data.append(buffer, got);
    }
    stream->Release();
    return data;
}

namespace storage_helpers {
inline void ListInto(IStorage* storage, const std::string& prefix, Listing& out) {
    IEnumSTATSTG* elements = nullptr;
    ASSERT_EQ(storage->EnumElements(0, nullptr, 0, &elements), S_OK);
    STATSTG stat;
    while (elements->Next(1, &stat, nullptr) == S_OK) {
        const std::string name = prefix + ElementNameText(stat.pwcsName);
        CoTaskMemFree(stat.pwcsName);
        if (stat.type == STGTY_STORAGE) {
            out[name] = "<storage>";
            IStorage* child = nullptr;
            std::u16string wide = W(name.substr(prefix.size()));
            ASSERT_EQ(storage->OpenStorage(wide.c_str(), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE,
                                           nullptr, 0, &child),
                      S_OK);
            ListInto(child, name + "/", out);
            child->Release();
        } else {
            out[name] = ReadStream(storage, name.substr(prefix.size()));
            EXPECT_EQ(out[name].size(), stat.cbSize.QuadPart) << name;
        }
    }
    elements->Release();
}

inline std::string FromHex(const std::string& hex) {
    std::string out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return out;
}
} // namespace storage_helpers

inline Listing ListStorage(IStorage* storage) {
    Listing out;
    storage_helpers::ListInto(storage, "", out);
    return out;
}

inline Listing ListWithOlefile(const std::string& path) {
    Listing out;
    const std::string script =
        std::string(TALVOR_SOURCE_DIR) + "/tests/platform/storage_tools/olefile_dump.py";
    const std::string command = "/usr/bin/python3 '" + script + "' '" + path + "' 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    std::string text;
    char buffer[65536];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        text.append(buffer, n);
    const int status = ::pclose(pipe);
    if (status != 0) {
        ADD_FAILURE() << "olefile refused " << path << ":\n" << text.substr(0, 2000);
        return out;
    }
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        std::string line = text.substr(at, end - at);
        at = end == std::string::npos ? text.size() : end + 1;
        std::size_t tab1 = line.find('\t');
        std::string kind = line.substr(0, tab1);
        if (kind == "storage") {
            out[line.substr(tab1 + 1)] = "<storage>";
        } else {
            std::size_t tab2 = line.find('\t', tab1 + 1);
            std::size_t tab3 = line.find('\t', tab2 + 1);
            out[line.substr(tab1 + 1, tab2 - tab1 - 1)] =
                storage_helpers::FromHex(tab3 == std::string::npos ? "" : line.substr(tab3 + 1));
        }
    }
    return out;
}

inline std::string CheckTrees(const std::string& fileBytes) {
    using namespace talvor::platform::storage::detail;
    std::shared_ptr<CompoundFile> file;
    std::string error;
    if (FAILED(CompoundFile::Open(MemoryBytes(fileBytes, false), file, error)))
        return error;
    std::string problem;
    // Returns the black height of the subtree, or -1 after recording a problem.
    std::function<int(std::uint32_t, const std::u16string*, const std::u16string*, bool)> walk =
        [&](std::uint32_t id, const std::u16string* low, const std::u16string* high,
            bool parentRed) -> int {
        if (id == NoStream)
            return 1;
        const DirEntry& e = file->Entry(id);
        if ((low && CompareNames(*low, e.name) >= 0) ||
            (high && CompareNames(e.name, *high) >= 0)) {
            problem = "entry " + std::to_string(id) + " is out of name order";
            return -1;
        }
        const bool red = e.color == Red;
        if (red && parentRed) {
            problem = "entry " + std::to_string(id) + " is red under a red parent";
            return -1;
        }
        const int left = walk(e.left, low, &e.name, red);
        const int right = walk(e.right, &e.name, high, red);
        if (left < 0 || right < 0)
            return -1;
        if (left != right) {
            problem = "entry " + std::to_string(id) + " has black heights " + std::to_string(left) +
                      " and " + std::to_string(right);
            return -1;
        }
        return left + (red ? 0 : 1);
    };
    std::vector<std::uint32_t> storages{0};
    while (!storages.empty() && problem.empty()) {
        const std::uint32_t storage = storages.back();
        storages.pop_back();
        const std::uint32_t top = file->Entry(storage).child;
        if (top != NoStream && file->Entry(top).color == Red)
            return "the tree of entry " + std::to_string(storage) + " has a red root";
        walk(top, nullptr, nullptr, false);
        for (std::uint32_t child : file->Children(storage))
            if (file->Entry(child).type == TypeStorage)
                storages.push_back(child);
    }
    return problem;
}

} // namespace talvor::testing
