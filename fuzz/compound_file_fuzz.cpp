// Arbitrary bytes opened as a compound file. A file the reader accepts is walked whole (every
// storage, every stream read to its end); then a copy is changed and committed by the writer,
// and the result must open again with the old elements unchanged and the new one in place.
// A damaged file must be refused with a message, never read outside the bytes or loop.
#include "platform/storage/detail/compound_file.h"
#include "platform/storage/storage.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {
using namespace talvor::platform::storage;

using Listing = std::map<std::u16string, std::string>;

void Walk(IStorage* storage, const std::u16string& prefix, Listing& out) {
    IEnumSTATSTG* elements = nullptr;
    if (FAILED(storage->EnumElements(0, nullptr, 0, &elements)))
        std::abort(); // an accepted file enumerates
    STATSTG stat;
    while (elements->Next(1, &stat, nullptr) == S_OK) {
        const std::u16string path = prefix + stat.pwcsName;
        const DWORD mode = STGM_READ | STGM_SHARE_EXCLUSIVE;
        if (stat.type == STGTY_STORAGE) {
            IStorage* child = nullptr;
            if (FAILED(storage->OpenStorage(stat.pwcsName, nullptr, mode, nullptr, 0, &child)))
                std::abort();
            out[path] = "<storage>";
            Walk(child, path + u"/", out);
            child->Release();
        } else {
            IStream* stream = nullptr;
            if (FAILED(storage->OpenStream(stat.pwcsName, nullptr, mode, 0, &stream)))
                std::abort();
            std::string data;
            char buffer[4096];
            ULONG got = 0;
            while (SUCCEEDED(stream->Read(buffer, sizeof buffer, &got)) && got > 0)
                data.append(buffer, got);
            if (data.size() != stat.cbSize.QuadPart)
                std::abort(); // every byte of an accepted stream can be read
            out[path] = data;
            stream->Release();
        }
        CoTaskMemFree(stat.pwcsName);
    }
    elements->Release();
}

bool List(const std::string& bytes, Listing& out) {
    IStorage* root = nullptr;
    if (FAILED(StgOpenStorageOnMemory(bytes, &root))) {
        if (StorageErrorText().rfind("compound file: ", 0) != 0)
            std::abort(); // a refusal always says why
        return false;
    }
    Walk(root, u"", out);
    root->Release();
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > (1u << 20))
        return 0;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    Listing before;
    if (!List(bytes, before))
        return 0; // a clean rejection is a correct answer

    // Change a writable copy: a new storage with a small and a big stream, then commit.
    auto memory = detail::MemoryBytes(bytes, true);
    detail::LockBytes* raw = memory.get();
    std::shared_ptr<detail::CompoundFile> file;
    std::string error;
    if (FAILED(detail::CompoundFile::Open(std::move(memory), file, error)))
        std::abort(); // the reader accepted these bytes a moment ago
    std::uint32_t storage = 0, small = 0, big = 0;
    if (file->FindChild(0, u"fuzz") != detail::NoStream)
        return 0;
    if (FAILED(file->AddChild(0, u"fuzz", detail::TypeStorage, storage)) ||
        FAILED(file->AddChild(storage, u"small", detail::TypeStream, small)) ||
        FAILED(file->AddChild(storage, u"big", detail::TypeStream, big)))
        std::abort();
    const std::string smallData(100, 's'), bigData(5000, 'b');
    if (FAILED(file->OpenStream(small)) ||
        FAILED(file->WriteStream(small, 0, smallData.data(), smallData.size())) ||
        FAILED(file->CloseStream(small)) || FAILED(file->OpenStream(big)) ||
        FAILED(file->WriteStream(big, 0, bigData.data(), bigData.size())) ||
        FAILED(file->CloseStream(big)) || FAILED(file->Commit(false)))
        std::abort();
    std::string written(raw->Size(), '\0');
    if (!raw->ReadAt(0, written.data(), written.size()))
        std::abort();
    file.reset();

    Listing after;
    if (!List(written, after)) {
        std::fprintf(stderr, "the committed file is refused: %s\n", StorageErrorText().c_str());
        std::abort();
    }
    before[u"fuzz"] = "<storage>";
    before[u"fuzz/small"] = smallData;
    before[u"fuzz/big"] = bigData;
    if (after != before)
        std::abort(); // the old elements are unchanged, the new ones in place
    return 0;
}
