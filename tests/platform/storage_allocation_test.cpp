// The pieces under the compound file writer's speed: the bitmap set of free sectors it allocates
// from, and the file bytes that store small writes into a mapping of the file.
#include "platform/storage/detail/lock_bytes.h"
#include "platform/storage/detail/sector_set.h"
#include "storage_test_support.h"

#include <cerrno>
#include <fcntl.h>
#include <random>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {
using talvor::platform::storage::detail::SectorSet;
using namespace talvor::testing;

// The answers of a plain ordered set, as the allocator gave them before it had a bitmap.
std::uint32_t ModelFirstRun(const std::set<std::uint32_t>& model, std::uint32_t length) {
    std::uint32_t start = SectorSet::None, run = 0, previous = SectorSet::None;
    for (std::uint32_t n : model) {
        if (previous == SectorSet::None || n != previous + 1) {
            start = n;
            run = 0;
        }
        previous = n;
        if (++run >= length)
            return start;
    }
    return SectorSet::None;
}

TEST(SectorSet, AnswersAsAnOrderedSetDoesUnderRandomUse) {
    std::mt19937 random(17);
    for (std::uint32_t span : {70u, 300u, 5000u, 300000u}) {
        SectorSet set;
        std::set<std::uint32_t> model;
        for (int step = 0; step < 20000; ++step) {
            SCOPED_TRACE(step);
            const std::uint32_t n = random() % span;
            switch (random() % 6) {
            case 0:
            case 1:
            case 2:
                set.insert(n);
                model.insert(n);
                break;
            case 3:
            case 4: {
                // Erase the lowest, as the allocator takes it, or any member.
                const std::uint32_t victim = random() % 2 ? set.lowest() : n;
                set.erase(victim);
                model.erase(victim);
                break;
            }
            default:
                if (random() % 50 == 0) {
                    set.clear();
                    model.clear();
                }
            }
            ASSERT_EQ(set.size(), model.size());
            ASSERT_EQ(set.empty(), model.empty());
            ASSERT_EQ(set.lowest(), model.empty() ? SectorSet::None : *model.begin());
            ASSERT_EQ(set.contains(n), model.count(n) != 0);
            const std::uint32_t length = 1 + random() % 140; // runs within and across words
            ASSERT_EQ(set.FirstRun(length), ModelFirstRun(model, length)) << "length " << length;
        }
    }
}

TEST(SectorSet, RunsThatCrossWholeWordsAndEndAtWordEdges) {
    SectorSet set;
    for (std::uint32_t n = 60; n < 200; ++n) // 60..63, words 1 and 2 whole, 192..199
        set.insert(n);
    set.insert(10);
    EXPECT_EQ(set.FirstRun(1), 10u);
    EXPECT_EQ(set.FirstRun(2), 60u);
    EXPECT_EQ(set.FirstRun(140), 60u);
    EXPECT_EQ(set.FirstRun(141), SectorSet::None);
    set.erase(63); // the run now starts at the word edge
    EXPECT_EQ(set.FirstRun(5), 64u);
    EXPECT_EQ(set.FirstRun(136), 64u);
    EXPECT_EQ(set.FirstRun(137), SectorSet::None);
    EXPECT_FALSE(set.contains(0xFFFFFFFEu));
    set.erase(0xFFFFFFFEu); // far outside: nothing to do
    EXPECT_EQ(set.size(), 140u);
}

class FileBytesTest : public ::testing::Test {
protected:
    void SetUp() override {
        path = TestFolder("lock_bytes") + "/bytes.bin";
        HRESULT hr = S_OK;
        std::string error;
        bytes = talvor::platform::storage::detail::OpenFileBytes(path, true, true, false, hr, error,
                                                                 /*scratch=*/true);
        ASSERT_TRUE(bytes) << error;
    }
    void TearDown() override { talvor::platform::FailNthWrite(0); }
    void Write(std::uint64_t at, const std::string& data) {
        ASSERT_TRUE(bytes->WriteAt(at, data.data(), data.size()));
        if (model.size() < at + data.size())
            model.resize(at + data.size(), '\0');
        model.replace(at, data.size(), data);
    }
    std::string path;
    std::unique_ptr<talvor::platform::storage::detail::LockBytes> bytes;
    std::string model;
};

TEST_F(FileBytesTest, SmallWritesInsideTheFileLandWhereverThePagesWereWritten) {
    // Written pages, a hole left by a write further on, a grown tail, a shrunk one.
    Write(0, std::string(3 * 4096 + 100, 'a'));
    Write(40000, "end");
    for (std::uint64_t at : {0ull, 511ull, 4095ull, 8190ull, 12380ull})
        Write(at, "XYZ");
    Write(20000, "in the hole"); // never written before: no mapping there
    Write(20010, "again");
    ASSERT_TRUE(bytes->Truncate(50000));
    model.resize(50000, '\0');
    Write(49990, "tail");
    ASSERT_TRUE(bytes->Truncate(30000));
    model.resize(30000);
    Write(29990, "cut");
    Write(100, std::string(100000, 'b')); // large: written, and grows the file
    Write(5000, "small again");
    EXPECT_EQ(bytes->Size(), model.size());
    EXPECT_EQ(ReadFileBytes(path), model);
    std::string back(model.size(), '\0');
    ASSERT_TRUE(bytes->ReadAt(0, back.data(), back.size()));
    EXPECT_EQ(back, model);
    ASSERT_TRUE(bytes->Flush());
}

// A file that is not a scratch file may be cut short by another process while it is open; its
// small writes then still go through the system and simply land, never into a mapping, where
// the store would fault.
TEST(FileBytes, AFileCutShortByAnotherProcessTakesSmallWritesAsBefore) {
    const std::string path = TestFolder("lock_bytes") + "/shared.bin";
    HRESULT hr = S_OK;
    std::string error;
    auto bytes =
        talvor::platform::storage::detail::OpenFileBytes(path, true, true, false, hr, error);
    ASSERT_TRUE(bytes) << error;
    const std::string page(3 * 4096, 'a');
    ASSERT_TRUE(bytes->WriteAt(0, page.data(), page.size()));
    ASSERT_TRUE(bytes->WriteAt(100, "mapped?", 7)); // a written page: a scratch file maps it
    const int other = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_GE(other, 0);
    ASSERT_EQ(::ftruncate(other, 0), 0);
    ::close(other);
    ASSERT_TRUE(bytes->WriteAt(8200, "still", 5));
    const std::string now = ReadFileBytes(path);
    ASSERT_EQ(now.size(), 8205u);
    EXPECT_EQ(now.substr(8200), "still");
}

TEST_F(FileBytesTest, TheWriteFaultSeamFailsMappedWritesToo) {
    Write(0, std::string(8192, 'a'));
    Write(100, "mapped"); // the page is written: this one is stored into the mapping
    talvor::platform::FailNthWrite(2);
    Write(200, "passes");
    errno = 0;
    EXPECT_FALSE(bytes->WriteAt(300, "fails", 5));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(ReadFileBytes(path), model);
}

TEST_F(FileBytesTest, SpaceReservedAheadOfAGrowingFileIsGivenBackOnClose) {
    // Grow the file a sector at a time, as commits do, then close it: the blocks it holds are
    // those of its size, not of what was reserved ahead of it.
    const std::string sector(512, 's');
    for (int n = 0; n < 600; ++n)
        Write(std::uint64_t(n) * 512, sector);
    Write(3 * 512, "inside");
    ASSERT_TRUE(bytes->Truncate(200 * 512));
    model.resize(200 * 512);
    Write(200 * 512, sector); // grows again after a cut
    bytes.reset();
    EXPECT_EQ(ReadFileBytes(path), model);
    struct stat st {};
    ASSERT_EQ(::stat(path.c_str(), &st), 0);
    EXPECT_EQ(static_cast<std::size_t>(st.st_size), model.size());
    EXPECT_LE(static_cast<std::uint64_t>(st.st_blocks) * 512, model.size() + 64 * 1024);
}

} // namespace
