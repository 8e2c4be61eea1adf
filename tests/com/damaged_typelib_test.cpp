// Damaged type libraries and PE files: each is refused with a failure code and a message
// that says where, and nothing is read outside the buffer (the sanitizer build checks that).
#include "tests/com/wine_libraries.h"

#include "platform/com/typelib/pe_resource.h"

#include <gtest/gtest.h>

#include <cstring>

using talvor::platform::ComPtr;
using talvor::platform::LoadTypeLibFromMemory;
using talvor::platform::typelib::FindPeResource;
using namespace talvor::testing;

namespace {

// The MSFT image inside Wine's stdole2.tlb, which is a PE file.
std::vector<std::uint8_t> Stdole2Image() {
    const std::vector<std::uint8_t> file = ReadBytes(WineBinaryDir() + "/stdole2.tlb");
    std::span<const std::uint8_t> resource;
    std::string error;
    EXPECT_TRUE(FindPeResource(file, u"TYPELIB", 1, resource, error)) << error;
    return std::vector<std::uint8_t>(resource.begin(), resource.end());
}

void Put32(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint32_t value) {
    std::memcpy(bytes.data() + offset, &value, 4);
}

std::uint32_t Get32(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, 4);
    return value;
}

// Loads a library and walks every member, as a caller would.
HRESULT LoadAndWalk(const std::vector<std::uint8_t>& bytes, std::string& error) {
    ITypeLib* raw = nullptr;
    const HRESULT hr = LoadTypeLibFromMemory(bytes.data(), bytes.size(), "", &raw, &error);
    if (FAILED(hr))
        return hr;
    ComPtr<ITypeLib> lib(raw);
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo* info = nullptr;
        if (FAILED(lib->GetTypeInfo(i, &info)))
            continue;
        TYPEATTR* attr = nullptr;
        if (SUCCEEDED(info->GetTypeAttr(&attr))) {
            for (UINT f = 0; f < attr->cFuncs; ++f) {
                FUNCDESC* desc = nullptr;
                if (SUCCEEDED(info->GetFuncDesc(f, &desc)))
                    info->ReleaseFuncDesc(desc);
            }
            info->ReleaseTypeAttr(attr);
        }
        info->Release();
    }
    return hr;
}

} // namespace

TEST(DamagedTypeLib, EveryTruncationIsRefused) {
    TV_NEED_WINE();
    const std::vector<std::uint8_t> image = Stdole2Image();
    ASSERT_GT(image.size(), 0x1000u);
    // The last segment ends well before the end of the resource: cut inside the data.
    std::uint32_t lastEnd = 0;
    for (std::size_t step = 0; step < image.size(); step += 7) {
        std::vector<std::uint8_t> cut(image.begin(), image.begin() + step);
        std::string error;
        const HRESULT hr = LoadAndWalk(cut, error);
        if (SUCCEEDED(hr)) {
            lastEnd = static_cast<std::uint32_t>(step);
            continue;
        }
        EXPECT_TRUE(hr == TYPE_E_INVDATAREAD || hr == TYPE_E_UNSUPFORMAT) << step;
        EXPECT_FALSE(error.empty()) << step;
    }
    // Somewhere before the end every byte is needed: a prefix of half the file can't load.
    std::vector<std::uint8_t> half(image.begin(), image.begin() + image.size() / 2);
    std::string error;
    EXPECT_EQ(LoadAndWalk(half, error), TYPE_E_INVDATAREAD);
    EXPECT_NE(error.find("typelib: "), std::string::npos) << error;
    (void)lastEnd;
}

TEST(DamagedTypeLib, PatchedFieldsGiveTheirOwnMessages) {
    TV_NEED_WINE();
    const std::vector<std::uint8_t> image = Stdole2Image();
    struct Patch {
        const char* what;
        std::size_t offset;
        std::uint32_t value;
        const char* message;
    };
    // Offsets in the header; the segment directory starts at 0x54 + 4 * 42.
    const std::size_t segments = 0x54 + 4 * 42;
    const Patch patches[] = {
        {"signature", 0x00, 0x54465349, "no \"MSFT\" signature"},
        {"type info count", 0x20, 0x7FFFFFFF, "type infos can't fit"},
        {"library name", 0x38, 0x7FFFFFF0, "library name at 0x7ffffff0 lies outside"},
        {"name table beyond the file", segments + 16 * 7, 0x7FFFFFF0, "segment at 0x7ffffff0"},
        {"type info table too short", segments + 4, 0x64, "type info table holds fewer"},
        {"system kind", 0x14, 0x4F, "unknown system kind 15"},
    };
    for (const Patch& p : patches) {
        SCOPED_TRACE(p.what);
        std::vector<std::uint8_t> bytes = image;
        Put32(bytes, p.offset, p.value);
        std::string error;
        EXPECT_TRUE(FAILED(LoadAndWalk(bytes, error)));
        EXPECT_NE(error.find(p.message), std::string::npos) << error;
    }
}

TEST(DamagedTypeLib, LoopingTypeDescriptionEndsAtTheDepthLimit) {
    TV_NEED_WINE();
    std::vector<std::uint8_t> image = Stdole2Image();
    const std::size_t segments = 0x54 + 4 * 42;
    const std::uint32_t typeDescs = Get32(image, segments + 16 * 9);
    // Entry 0 becomes a pointer to itself.
    const std::uint8_t loop[8] = {0x1A, 0x00, 0xFF, 0x7F, 0x00, 0x00, 0x00, 0x00};
    std::memcpy(image.data() + typeDescs, loop, 8);
    // Entry 0 is the array type of GUID's Data4, read while the library loads.
    std::string error;
    EXPECT_EQ(LoadAndWalk(image, error), TYPE_E_INVDATAREAD);
    EXPECT_NE(error.find("nests too deep"), std::string::npos) << error;
}

TEST(DamagedTypeLib, PointerWithoutItsTargetIsRefused) {
    TV_NEED_WINE();
    std::vector<std::uint8_t> image = Stdole2Image();
    // Type info 4 is IDispatch; its first function record follows the block length word, and
    // the record's second word is the result type, made a bare VT_PTR here.
    const std::size_t segments = 0x54 + 4 * 42;
    const std::uint32_t typeInfos = Get32(image, segments);
    const std::uint32_t members = Get32(image, typeInfos + 4 * 0x64 + 4);
    Put32(image, members + 4 + 4, 0x801A001A);
    std::string error;
    EXPECT_EQ(LoadAndWalk(image, error), TYPE_E_INVDATAREAD);
    EXPECT_NE(error.find("simple type 26 (0x801a001a) has no description"), std::string::npos)
        << error;
}

TEST(PeResource, FindsTypeLibrariesAndRefusesBrokenFiles) {
    TV_NEED_WINE();
    const std::vector<std::uint8_t> file = ReadBytes(WineBinaryDir() + "/vbscript.dll");
    std::span<const std::uint8_t> first, third;
    std::string error;
    ASSERT_TRUE(FindPeResource(file, u"TYPELIB", 1, first, error)) << error;
    ASSERT_TRUE(FindPeResource(file, u"TYPELIB", 3, third, error)) << error;
    EXPECT_EQ(std::memcmp(first.data(), "MSFT", 4), 0);
    EXPECT_EQ(std::memcmp(third.data(), "MSFT", 4), 0);
    EXPECT_NE(first.data(), third.data());
    EXPECT_FALSE(FindPeResource(file, u"TYPELIB", 9, first, error));
    EXPECT_EQ(error, "pe: no resource with this id");
    EXPECT_FALSE(FindPeResource(file, u"NOSUCHTYPE", 1, first, error));
    EXPECT_EQ(error, "pe: no resource of this type");

    std::vector<std::uint8_t> broken = file;
    Put32(broken, 0x3C, 0x7FFFFFF0); // e_lfanew far outside
    EXPECT_FALSE(FindPeResource(broken, u"TYPELIB", 1, first, error));
    EXPECT_NE(error.find("PE signature at 0x7ffffff0"), std::string::npos);
    EXPECT_NE(error.find("runs past end"), std::string::npos) << error;

    // Cut before the headers, inside them, and in the middle of the library itself.
    const std::size_t libraryMiddle = static_cast<std::size_t>(third.data() - file.data()) - 4000;
    for (std::size_t size :
         {std::size_t(0), std::size_t(2), std::size_t(0x40), std::size_t(0x200), libraryMiddle}) {
        std::vector<std::uint8_t> cut(file.begin(), file.begin() + size);
        ITypeLib* lib = nullptr;
        EXPECT_TRUE(FAILED(LoadTypeLibFromMemory(cut.data(), cut.size(), "", &lib, &error)))
            << size;
        EXPECT_EQ(lib, nullptr);
    }
}

TEST(LoadTypeLib, MissingFilesAndOtherFormats) {
    ITypeLib* lib = nullptr;
    EXPECT_EQ(LoadTypeLib(L"/nonexistent/none.tlb", &lib), TYPE_E_CANTLOADLIBRARY);
    const std::uint8_t sltg[] = {'S', 'L', 'T', 'G', 0, 0, 0, 0};
    std::string error;
    EXPECT_EQ(LoadTypeLibFromMemory(sltg, sizeof sltg, "", &lib, &error), TYPE_E_UNSUPFORMAT);
    EXPECT_EQ(error, "typelib: the SLTG format is not supported");
    const std::uint8_t text[] = "not a library";
    EXPECT_EQ(LoadTypeLibFromMemory(text, sizeof text, "", &lib, &error), TYPE_E_UNSUPFORMAT);
}
