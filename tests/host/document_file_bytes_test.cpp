// The bytes of a document's compound file after each commit of a long, varied history: forms
// saved through the container stream into new and replaced sub-storages, small and large
// streams, a revert, a removal and a rename. The file format leaves room for many layouts; this
// pins the one the writer chooses, so work on the writer's speed cannot change a single byte.
// The figures were taken from the writer before any of that work; update them only for an
// intended change of layout, and say why.
#include "../platform/storage_test_support.h"
#include "host/base/designer_frame.h"
#include "host/base/tv_document.h"
#include "host/core/vp_storage.h"

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

namespace {
using namespace talvor::testing;
using namespace talvor::platform::storage;

constexpr DWORD CreateMode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD ReplaceMode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

// FNV-1a over 64-bit words (the file is a whole number of sectors, so of words too).
std::uint64_t Hash(const std::string& bytes) {
    std::uint64_t h = 0xcbf29ce484222325ull;
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + i, 8);
        h = (h ^ word) * 0x100000001b3ull;
    }
    for (; i < bytes.size(); ++i)
        h = (h ^ static_cast<unsigned char>(bytes[i])) * 0x100000001b3ull;
    return h;
}

// A form of `controls` controls with a dozen properties each, about 450 bytes per control in
// the archive form.
void FillForm(CTVContainerDoc& form, int controls, int variant) {
    form.RemoveAll();
    char name[32], value[64];
    for (int c = 0; c < controls; ++c) {
        std::snprintf(name, sizeof name, "Control%d", c);
        const int index = form.AddControl(name, "{8BD21D10-EC42-11CE-9E0D-00AA006002F3}");
        for (int p = 0; p < 12; ++p) {
            std::snprintf(name, sizeof name, "Property%d", p);
            std::snprintf(value, sizeof value, "value %d of control %d/%d", p * 7919 % 1000, c,
                          variant);
            form.SetProperty(index, name, value);
        }
    }
}

struct Commit {
    std::size_t size;
    std::uint64_t hash;
};

TEST(TVDocumentFile, EveryCommitOfAVariedHistoryWritesTheSameBytes) {
    const std::string path = TestFolder("doc_bytes") + "/history.cfb";
    CTVDocument doc;
    ASSERT_TRUE(doc.DoSave(path.c_str(), TRUE));
    IStorage* root = doc.GetRootStorage();
    CTVContainerDoc form;
    std::vector<Commit> commits;
    int count = 0;
    for (int step = 0; step < 64; ++step) {
        SCOPED_TRACE(step);
        // Forms of 20 to 280 KB, growing and shrinking as a user adds and deletes controls.
        const int controls = 40 + (step * 53) % 600;
        FillForm(form, controls, step);
        IStorage* storage = nullptr;
        const bool replace = step % 7 == 3;
        if (replace) {
            storage = doc.OpenStorage(std::to_string(count - 1).c_str(), root, ReplaceMode);
        } else {
            storage =
                CVPStorage::CreateStorage(std::to_string(count++).c_str(), root, CreateMode, 0);
        }
        ASSERT_NE(storage, nullptr);
        ASSERT_TRUE(doc.SaveContainerStream(&form, storage));
        // Streams below the mini stream cutoff, and one either side of it.
        ASSERT_EQ(WriteStream(storage, "Note", Pattern((step * 37) % 700, step), STGM_CREATE),
                  S_OK);
        if (step % 3 == 0) {
            ASSERT_EQ(WriteStream(storage, "Edge", Pattern(4090 + step % 12, step), STGM_CREATE),
                      S_OK);
        }
        storage->Release();
        if (step == 20) {
            // A save that is given up: nothing of it reaches the file.
            ASSERT_EQ(root->Revert(), S_OK);
            continue;
        }
        if (step == 30) {
            ASSERT_EQ(root->DestroyElement(W("5").c_str()), S_OK);
            ASSERT_EQ(root->RenameElement(W("6").c_str(), W("six").c_str()), S_OK);
        }
        ASSERT_EQ(root->Commit(STGC_ONLYIFCURRENT), S_OK) << StorageErrorText();
        const std::string bytes = ReadFileBytes(path);
        commits.push_back({bytes.size(), Hash(bytes)});
    }
    // The file is whole at the end, and large enough for DIFAT sectors.
    const std::string bytes = ReadFileBytes(path);
    EXPECT_EQ(CheckTrees(bytes), "");
    EXPECT_GT(talvor::platform::storage::detail::Get32(
                  reinterpret_cast<const std::uint8_t*>(bytes.data()) + 0x48),
              0u);

    std::string actual;
    for (const Commit& c : commits) {
        char line[64];
        std::snprintf(line, sizeof line, "%zu %016llx\n", c.size,
                      static_cast<unsigned long long>(c.hash));
        actual += line;
    }
    // File size and hash after each commit.
    const char* expected = "27136 9240f18d6bb1742c\n"
                           "74240 22ff246baadf16ff\n"
                           "147968 cd597191f4bf8037\n"
                           "251392 1920037f74379a0e\n"
                           "307200 5aca1516a4f16826\n"
                           "459264 3bad0a2b5dff6796\n"
                           "643072 373bdbc6630e4c34\n"
                           "849408 8c68bd20dc24dc62\n"
                           "1082880 d2bf28ec287a4910\n"
                           "1346560 096837bf3fceec50\n"
                           "1639936 b3c9999555927794\n"
                           "1704448 eeff7324df7b2ae4\n"
                           "1743872 1c4059c50dca8b39\n"
                           "1811968 eeedf20131d2ce6f\n"
                           "1904128 21d01c4b29a63d2d\n"
                           "2031104 8e44ce6dcec96782\n"
                           "2177024 ba69ff4517527993\n"
                           "2351616 c5d491bca31ed671\n"
                           "2414592 a0733e947b9a08da\n"
                           "2641408 be721663e6b7d508\n"
                           "2931200 158e44791de74738\n"
                           "3238912 4e8d55fccd79e058\n"
                           "3271680 d852672f74848a78\n"
                           "3330048 d3f147e79b077ebc\n"
                           "3387392 aa73244b1cb102f0\n"
                           "3501056 77e5ac62de913d22\n"
                           "3639808 43121c13387b85d4\n"
                           "3806720 0385e3fe37065388\n"
                           "3999744 253fe1a9b6c80901\n"
                           "4240896 f29ac38b558bc64f\n"
                           "4304896 6a63712745c7b9f3\n"
                           "4577280 d9c6b661e4d88e6e\n"
                           "4880896 654b30ddc5cd94a4\n"
                           "4901888 c80c596d7fdad615\n"
                           "4948992 8016183ef647f29c\n"
                           "5023232 20a293642378ec40\n"
                           "5124608 900ae065a7d3a45d\n"
                           "5253120 abc5462fa8b3aba2\n"
                           "5408768 c969c04de0b45f38\n"
                           "5591040 143253226ab8774b\n"
                           "5800448 49a859bbacdce044\n"
                           "6041088 64b3e2f6c2dfb5fd\n"
                           "6304768 cb4cc2acee5438fb\n"
                           "6595072 f1ad9289a9aa9166\n"
                           "6917120 6466f5d32b9eb394\n"
                           "6956032 1fbb4e150913b7e8\n"
                           "7021568 6ace04ada322936e\n"
                           "7114240 e687ae31c8a4fded\n"
                           "7234048 694f88f5f70db81d\n"
                           "7380992 ff25cda834daffcf\n"
                           "7554560 2c0b36ffbec641e9\n"
                           "7755264 5d809e1f47419876\n"
                           "7983104 8138ea46f8e31c91\n"
                           "8242176 29c0a16208859bb4\n"
                           "8524288 6606583dec6043c9\n"
                           "8833024 b79a7ad12f80b69e\n"
                           "8867840 da0d4b747347746d\n"
                           "8924672 4913435a140c029a\n"
                           "9008640 a635c6da6ba2a2f1\n"
                           "9119744 6cb6b58bc03c63ce\n"
                           "9257984 754fb369f39766a7\n"
                           "9422848 dc9214fbd4ae81ad\n"
                           "9614848 34bde6cf6f30c6c2\n";
    EXPECT_EQ(actual, expected);
}

} // namespace
