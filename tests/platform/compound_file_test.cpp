// Compound files: what is written is read back, by this reader and by olefile; an interrupted
// commit keeps the last committed state; damaged files are refused with the reason.
#include "platform/files/file_system.h"
#include "platform/storage/detail/compound_format.h"
#include "storage_test_support.h"

#include <gtest/gtest.h>

namespace {
using namespace talvor::testing;
using namespace talvor::platform::storage;
namespace fmt = talvor::platform::storage::detail;

constexpr DWORD Create = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD ReadWrite = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr DWORD Read = STGM_READ | STGM_SHARE_EXCLUSIVE;

struct Releaser {
    void operator()(IStorageUnknown* p) const {
        if (p)
            p->Release();
    }
};
using StoragePtr = std::unique_ptr<IStorage, Releaser>;

StoragePtr CreateFile(const std::string& path) {
    IStorage* root = nullptr;
    EXPECT_EQ(StgCreateDocfile(path.c_str(), Create | STGM_TRANSACTED, 0, &root), S_OK)
        << StorageErrorText();
    return StoragePtr(root);
}

StoragePtr OpenFile(const std::string& path, DWORD mode = Read) {
    IStorage* root = nullptr;
    EXPECT_EQ(StgOpenStorage(path.c_str(), nullptr, mode, nullptr, 0, &root), S_OK)
        << StorageErrorText();
    return StoragePtr(root);
}

StoragePtr SubStorage(IStorage* parent, const std::string& name, DWORD mode) {
    IStorage* child = nullptr;
    std::u16string wide = W(name);
    HRESULT hr = (mode & STGM_CREATE)
                     ? parent->CreateStorage(wide.c_str(), mode, 0, 0, &child)
                     : parent->OpenStorage(wide.c_str(), nullptr, mode, nullptr, 0, &child);
    EXPECT_EQ(hr, S_OK) << name << ": " << StorageErrorText();
    return StoragePtr(child);
}

// Sizes round the mini stream cutoff and the sector sizes.
const std::size_t StreamSizes[] = {0, 1, 63, 64, 65, 511, 512, 513, 4095, 4096, 4097, 70000};

Listing WriteSampleTree(IStorage* root) {
    Listing expected;
    unsigned seed = 1;
    for (std::size_t size : StreamSizes) {
        std::string name = std::string("s").append(std::to_string(size));
        expected[name] = Pattern(size, seed++);
        EXPECT_EQ(WriteStream(root, name, expected[name]), S_OK);
    }
    StoragePtr a = SubStorage(root, "Alpha", Create);
    expected["Alpha"] = "<storage>";
    StoragePtr b = SubStorage(a.get(), "Beta", Create);
    expected["Alpha/Beta"] = "<storage>";
    expected["Alpha/Beta/deep"] = Pattern(3000, seed++);
    EXPECT_EQ(WriteStream(b.get(), "deep", expected["Alpha/Beta/deep"]), S_OK);
    expected["Alpha/big"] = Pattern(9000, seed++);
    EXPECT_EQ(WriteStream(a.get(), "big", expected["Alpha/big"]), S_OK);
    expected["\x01"
             "CompObj"] = "odd first character";
    EXPECT_EQ(WriteStream(root,
                          "\x01"
                          "CompObj",
                          expected["\x01"
                                   "CompObj"]),
              S_OK);
    return expected;
}

TEST(CompoundFile, WhatIsWrittenIsReadBackByUsAndByOlefile) {
    const std::string path = TestFolder("cf") + "/tree.cfb";
    Listing expected;
    {
        StoragePtr root = CreateFile(path);
        expected = WriteSampleTree(root.get());
        ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK) << StorageErrorText();
    }
    StoragePtr root = OpenFile(path);
    EXPECT_EQ(ListStorage(root.get()), expected);
    EXPECT_EQ(ListWithOlefile(path), expected);
    EXPECT_EQ(CheckTrees(ReadFileBytes(path)), "");
    EXPECT_EQ(ReadFileBytes(path).size() % 512, 0u);
}

TEST(CompoundFile, ManyStoragesKeepBalancedTreesAndOlefileReadsThem) {
    // Names of one length in shuffled order, and of many lengths, as snapshot numbers are.
    const std::string path = TestFolder("cf") + "/many.cfb";
    Listing expected;
    StoragePtr root = CreateFile(path);
    for (int i = 0; i < 600; ++i) {
        const int n = (i * 7919) % 600;
        const std::string name = std::to_string(n);
        StoragePtr s = SubStorage(root.get(), name, Create);
        expected[name] = "<storage>";
        expected[name + "/frame"] = Pattern(100 + n % 50, n);
        ASSERT_EQ(WriteStream(s.get(), "frame", expected[name + "/frame"]), S_OK);
        if (i % 50 == 0) {
            ASSERT_EQ(root->Commit(STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE), S_OK);
        }
    }
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    const std::string bytes = ReadFileBytes(path);
    EXPECT_EQ(CheckTrees(bytes), "");
    EXPECT_EQ(ListWithOlefile(path), expected);
    EXPECT_EQ(ListStorage(OpenFile(path).get()), expected);
}

TEST(CompoundFile, LargeFilesNeedDifatSectorsAndStayReadable) {
    // More than 109 FAT sectors (7 MB of sectors) puts FAT sector numbers into DIFAT sectors;
    // commits in between move them.
    const std::string path = TestFolder("cf") + "/large.cfb";
    Listing expected;
    StoragePtr root = CreateFile(path);
    for (int i = 0; i < 40; ++i) {
        const std::string name = "chunk" + std::to_string(i);
        expected[name] = Pattern(200000 + i, i);
        ASSERT_EQ(WriteStream(root.get(), name, expected[name]), S_OK);
        ASSERT_EQ(root->Commit(STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE), S_OK)
            << StorageErrorText();
    }
    const std::string bytes = ReadFileBytes(path);
    EXPECT_GT(fmt::Get32(reinterpret_cast<const std::uint8_t*>(bytes.data()) + 0x48), 0u);
    EXPECT_EQ(ListWithOlefile(path), expected);
    EXPECT_EQ(ListStorage(OpenFile(path).get()), expected);
}

TEST(CompoundFile, ReplacedContentReusesTheSpaceItFrees) {
    const std::string path = TestFolder("cf") + "/replace.cfb";
    StoragePtr root = CreateFile(path);
    {
        StoragePtr s = SubStorage(root.get(), "0", Create);
        ASSERT_EQ(WriteStream(s.get(), "data", Pattern(100000, 1)), S_OK);
    }
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    std::size_t sizeAfterSecond = 0;
    for (int round = 0; round < 20; ++round) {
        StoragePtr s = SubStorage(root.get(), "0", ReadWrite);
        ASSERT_EQ(WriteStream(s.get(), "data", Pattern(100000, round + 2), STGM_CREATE), S_OK);
        s.reset();
        ASSERT_EQ(root->Commit(STGC_ONLYIFCURRENT), S_OK);
        if (round == 1)
            sizeAfterSecond = ReadFileBytes(path).size();
    }
    // Two copies live at most (the committed one and the one being written).
    EXPECT_LE(ReadFileBytes(path).size(), sizeAfterSecond + 4096);
    StoragePtr reread = OpenFile(path);
    StoragePtr s = SubStorage(reread.get(), "0", Read);
    EXPECT_EQ(ReadStream(s.get(), "data"), Pattern(100000, 21));
}

TEST(CompoundFile, AnInterruptedCommitKeepsTheLastCommittedState) {
    // Every write of a commit is made to fail in turn; the file then reads as before the commit,
    // and the writer, reverted to it, can commit again.
    const std::string folder = TestFolder("cf_crash");
    bool reachedTheEnd = false;
    for (int failAt = 1; failAt < 200 && !reachedTheEnd; ++failAt) {
        SCOPED_TRACE(::testing::Message() << "write " << failAt << " fails");
        const std::string path = folder + "/crash.cfb";
        StoragePtr root = CreateFile(path);
        Listing before = WriteSampleTree(root.get());
        ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
        // The next commit replaces a big and a small stream, adds storages and removes one.
        ASSERT_EQ(WriteStream(root.get(), "s70000", Pattern(80000, 99), STGM_CREATE), S_OK);
        ASSERT_EQ(WriteStream(root.get(), "s65", "changed", STGM_CREATE), S_OK);
        ASSERT_EQ(root->DestroyElement(W("s4097").c_str()), S_OK);
        for (int i = 0; i < 10; ++i)
            SubStorage(root.get(), std::string("n").append(std::to_string(i)), Create);

        talvor::platform::FailNthWrite(failAt);
        const HRESULT hr = root->Commit(STGC_DEFAULT);
        talvor::platform::FailNthWrite(0);
        if (hr == S_OK) {
            reachedTheEnd = true;
            EXPECT_EQ(ReadStream(OpenFile(path).get(), "s65"), "changed");
            EXPECT_GT(failAt, 3);
            break;
        }
        EXPECT_EQ(hr, STG_E_MEDIUMFULL);
        EXPECT_NE(StorageErrorText().find("cannot write"), std::string::npos) << StorageErrorText();
        EXPECT_EQ(ListStorage(OpenFile(path).get()), before);
        EXPECT_EQ(ListStorage(root.get()), before);
        ASSERT_EQ(WriteStream(root.get(), "after", "retry"), S_OK);
        ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK) << StorageErrorText();
        before["after"] = "retry";
        EXPECT_EQ(ListWithOlefile(path), before);
    }
    EXPECT_TRUE(reachedTheEnd);
}

TEST(CompoundFile, ElementsOpenedBeforeAFailedCommitAreReverted) {
    const std::string path = TestFolder("cf") + "/reverted.cfb";
    StoragePtr root = CreateFile(path);
    StoragePtr open = SubStorage(root.get(), "held", Create);
    talvor::platform::FailNthWrite(1);
    EXPECT_EQ(root->Commit(STGC_DEFAULT), STG_E_MEDIUMFULL);
    talvor::platform::FailNthWrite(0);
    IStream* stream = nullptr;
    EXPECT_EQ(open->CreateStream(W("x").c_str(), Create, 0, 0, &stream), STG_E_REVERTED);
    EXPECT_EQ(root->OpenStorage(W("held").c_str(), nullptr, Read, nullptr, 0, nullptr),
              STG_E_INVALIDPOINTER);
    IStorage* gone = nullptr;
    EXPECT_EQ(root->OpenStorage(W("held").c_str(), nullptr, Read, nullptr, 0, &gone),
              STG_E_FILENOTFOUND);
}

TEST(CompoundFile, StreamsSeekGrowShrinkAndCrossTheMiniCutoff) {
    const std::string path = TestFolder("cf") + "/stream.cfb";
    StoragePtr root = CreateFile(path);
    IStream* stream = nullptr;
    ASSERT_EQ(root->CreateStream(W("s").c_str(), Create, 0, 0, &stream), S_OK);
    std::string model;
    auto write = [&](std::uint64_t at, const std::string& data) {
        LARGE_INTEGER move;
        move.QuadPart = static_cast<LONGLONG>(at);
        ASSERT_EQ(stream->Seek(move, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_EQ(stream->Write(data.data(), static_cast<ULONG>(data.size()), nullptr), S_OK);
        if (model.size() < at + data.size())
            model.resize(at + data.size(), '\0');
        model.replace(at, data.size(), data);
    };
    auto resize = [&](std::uint64_t size) {
        ULARGE_INTEGER n;
        n.QuadPart = size;
        ASSERT_EQ(stream->SetSize(n), S_OK);
        model.resize(size, '\0');
    };
    write(0, Pattern(100, 1));
    write(3000, Pattern(2000, 2)); // crosses 4096 with a zero gap
    resize(1000);                  // back under the cutoff
    write(1500, Pattern(10, 3));   // the gap past the old end reads zeros
    resize(9000);
    write(8990, Pattern(700, 4));
    resize(5000);
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK); // while the stream is still open
    write(4990, Pattern(20, 5));
    STATSTG stat;
    ASSERT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(stat.cbSize.QuadPart, model.size());
    LARGE_INTEGER back;
    back.QuadPart = -10;
    ULARGE_INTEGER position;
    ASSERT_EQ(stream->Seek(back, STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position.QuadPart, model.size() - 10);
    back.QuadPart = -1;
    EXPECT_EQ(stream->Seek(back, STREAM_SEEK_SET, nullptr), STG_E_INVALIDFUNCTION);
    stream->Release();
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(ReadStream(OpenFile(path).get(), "s"), model);
    EXPECT_EQ(ListWithOlefile(path)["s"], model);
}

TEST(CompoundFile, LargeWritesOverSectorsWrittenInTheSameCommitKeepTheLastBytes) {
    // Long writes go to the file directly, short ones through a pending run; rewriting either
    // before the commit, in part or across both, must read back as the last write left it,
    // before the commit, after it, and for olefile.
    const std::string path = TestFolder("cf") + "/rewrite.cfb";
    StoragePtr root = CreateFile(path);
    IStream* stream = nullptr;
    ASSERT_EQ(root->CreateStream(W("s").c_str(), Create, 0, 0, &stream), S_OK);
    std::string model;
    auto readAll = [&]() {
        LARGE_INTEGER start{};
        EXPECT_EQ(stream->Seek(start, STREAM_SEEK_SET, nullptr), S_OK);
        std::string data(model.size() + 10, '\0');
        ULONG got = 0;
        EXPECT_EQ(stream->Read(data.data(), static_cast<ULONG>(data.size()), &got), S_OK);
        data.resize(got);
        return data;
    };
    struct Write {
        const char* what;
        std::uint64_t at;
        std::size_t size;
    } writes[] = {
        {"a long write from the start", 0, 100000},
        {"over it, from inside a sector", 1000, 50000},
        {"past its end", 70000, 40000},
        {"whole sectors in the middle", 512 * 10, 512 * 70},
        {"a few bytes", 3, 5},
        {"a short write into the run", 200000, 5000},
        {"a long write across the run", 196000, 40000},
        {"a long write that ends inside the run", 150000, 52000},
    };
    unsigned seed = 10;
    for (const Write& w : writes) {
        SCOPED_TRACE(w.what);
        const std::string data = Pattern(w.size, seed++);
        LARGE_INTEGER move;
        move.QuadPart = static_cast<LONGLONG>(w.at);
        ASSERT_EQ(stream->Seek(move, STREAM_SEEK_SET, nullptr), S_OK);
        ASSERT_EQ(stream->Write(data.data(), static_cast<ULONG>(data.size()), nullptr), S_OK);
        if (model.size() < w.at + w.size)
            model.resize(w.at + w.size, '\0');
        model.replace(w.at, w.size, data);
        ASSERT_TRUE(readAll() == model);
    }
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    EXPECT_TRUE(readAll() == model);
    // Committed sectors rewritten: each moves to a fresh one first.
    const std::string data = Pattern(90000, 99);
    LARGE_INTEGER move;
    move.QuadPart = 777;
    ASSERT_EQ(stream->Seek(move, STREAM_SEEK_SET, nullptr), S_OK);
    ASSERT_EQ(stream->Write(data.data(), static_cast<ULONG>(data.size()), nullptr), S_OK);
    model.replace(777, data.size(), data);
    EXPECT_TRUE(readAll() == model);
    stream->Release();
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    EXPECT_TRUE(ReadStream(OpenFile(path).get(), "s") == model);
    EXPECT_TRUE(ListWithOlefile(path)["s"] == model);
    EXPECT_EQ(CheckTrees(ReadFileBytes(path)), "");
}

TEST(CompoundFile, ModesNamesAndElementRules) {
    const std::string path = TestFolder("cf") + "/modes.cfb";
    StoragePtr root = CreateFile(path);
    IStorage* s = nullptr;
    IStream* stream = nullptr;
    EXPECT_EQ(root->CreateStorage(W("x").c_str(), STGM_CREATE | STGM_READWRITE, 0, 0, &s),
              STG_E_INVALIDFLAG);
    EXPECT_EQ(root->CreateStorage(W(std::string(32, 'n')).c_str(), Create, 0, 0, &s),
              STG_E_INVALIDNAME);
    EXPECT_EQ(root->CreateStorage(W("a/b").c_str(), Create, 0, 0, &s), STG_E_INVALIDNAME);
    EXPECT_EQ(root->CreateStorage(W(std::string(31, 'n')).c_str(), Create, 0, 0, &s), S_OK);
    s->Release();
    StoragePtr one = SubStorage(root.get(), "one", Create);
    EXPECT_EQ(root->OpenStorage(W("one").c_str(), nullptr, Read, nullptr, 0, &s),
              STG_E_ACCESSDENIED);
    EXPECT_EQ(root->CreateStorage(W("one").c_str(), ReadWrite, 0, 0, &s), STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(root->DestroyElement(W("one").c_str()), STG_E_ACCESSDENIED);
    one.reset();
    EXPECT_EQ(root->OpenStream(W("one").c_str(), nullptr, Read, 0, &stream), STG_E_FILENOTFOUND);
    EXPECT_EQ(root->OpenStorage(W("ONE").c_str(), nullptr, Read, nullptr, 0, &s), S_OK)
        << "names compare without regard to case";
    s->Release();
    EXPECT_EQ(root->RenameElement(W("one").c_str(), W("two").c_str()), S_OK);
    EXPECT_EQ(root->DestroyElement(W("one").c_str()), STG_E_FILENOTFOUND);
    EXPECT_EQ(root->DestroyElement(W("two").c_str()), S_OK);
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);

    // A file opened to read refuses every change.
    StoragePtr reader = OpenFile(path);
    EXPECT_EQ(reader->CreateStorage(W("y").c_str(), Create, 0, 0, &s), STG_E_ACCESSDENIED);
    EXPECT_EQ(
        reader->OpenStorage(W(std::string(31, 'n')).c_str(), nullptr, ReadWrite, nullptr, 0, &s),
        STG_E_ACCESSDENIED);
    // Creating over an existing file needs STGM_CREATE.
    IStorage* again = nullptr;
    EXPECT_EQ(StgCreateDocfile(path.c_str(), STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, &again),
              STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(StgOpenStorage((path + ".missing").c_str(), nullptr, Read, nullptr, 0, &again),
              STG_E_FILENOTFOUND);
    EXPECT_EQ(StgIsStorageFile(path.c_str()), S_OK);
}

TEST(CompoundFile, RevertDropsChangesAndTransactedRootsKeepNothingUncommitted) {
    const std::string path = TestFolder("cf") + "/revert.cfb";
    {
        StoragePtr root = CreateFile(path);
        ASSERT_EQ(WriteStream(root.get(), "kept", "1"), S_OK);
        ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
        ASSERT_EQ(WriteStream(root.get(), "dropped", "2"), S_OK);
        ASSERT_EQ(root->Revert(), S_OK);
        EXPECT_EQ(ListStorage(root.get()), (Listing{{"kept", "1"}}));
        ASSERT_EQ(WriteStream(root.get(), "never", "3"), S_OK);
    }
    EXPECT_EQ(ListStorage(OpenFile(path).get()), (Listing{{"kept", "1"}}));
    {
        // A root in direct mode keeps what was written when it is released.
        IStorage* direct = nullptr;
        ASSERT_EQ(StgOpenStorage(path.c_str(), nullptr, ReadWrite, nullptr, 0, &direct), S_OK);
        ASSERT_EQ(WriteStream(direct, "direct", "4"), S_OK);
        direct->Release();
    }
    EXPECT_EQ(ListStorage(OpenFile(path).get()), (Listing{{"direct", "4"}, {"kept", "1"}}));
}

struct Damage {
    const char* what;
    std::function<void(std::string&)> apply;
    HRESULT hr;
    const char* message;
};

void Patch32(std::string& bytes, std::size_t at, std::uint32_t value) {
    fmt::Put32(reinterpret_cast<std::uint8_t*>(bytes.data()) + at, value);
}
std::uint32_t At32(const std::string& bytes, std::size_t at) {
    return fmt::Get32(reinterpret_cast<const std::uint8_t*>(bytes.data()) + at);
}
// Offset of FAT entry n (the test file has fewer than 109 FAT sectors).
std::size_t FatEntry(const std::string& bytes, std::uint32_t n) {
    return (At32(bytes, 0x4C + 4 * (n / 128)) + 1) * 512 + 4 * (n % 128);
}
// Offset of directory entry n (all entries of the test file lie in its first directory sectors).
std::size_t DirEntryAt(const std::string& bytes, std::uint32_t n) {
    std::uint32_t sector = At32(bytes, 0x30);
    for (std::uint32_t k = 0; k < n / 4; ++k)
        sector = At32(bytes, FatEntry(bytes, sector));
    return (sector + 1) * 512 + 128 * (n % 4);
}

TEST(CompoundFile, DamagedFilesAreRefusedWithTheReason) {
    const std::string path = TestFolder("cf") + "/good.cfb";
    {
        StoragePtr root = CreateFile(path);
        WriteSampleTree(root.get());
        ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    }
    const std::string good = ReadFileBytes(path);
    // The stream "s70000" is the one big stream of the root; find its entry.
    std::uint32_t bigEntry = 0;
    for (std::uint32_t n = 1; n < 18; ++n) // the sample tree has 18 entries
        if (fmt::Get16(reinterpret_cast<const std::uint8_t*>(good.data()) + DirEntryAt(good, n) +
                       0x40) == 14 &&
            good[DirEntryAt(good, n) + 2] == '7' && good[DirEntryAt(good, n) + 4] == '0')
            bigEntry = n;
    ASSERT_NE(bigEntry, 0u);
    const std::uint32_t bigStart = At32(good, DirEntryAt(good, bigEntry) + 0x74);
    const std::uint32_t dirStart = At32(good, 0x30);

    const Damage cases[] = {
        {"short file", [](std::string& b) { b.resize(300); }, STG_E_INVALIDHEADER, "too few"},
        {"signature", [](std::string& b) { b[0] = 'M'; }, STG_E_INVALIDHEADER, "signature"},
        {"byte order", [](std::string& b) { b[0x1C] = 0; }, STG_E_INVALIDHEADER, "byte order"},
        {"version 4", [](std::string& b) { b[0x1A] = 4; }, STG_E_OLDFORMAT, "version 4"},
        {"sector shift", [](std::string& b) { b[0x1E] = 12; }, STG_E_INVALIDHEADER, "shifts"},
        {"FAT count", [](std::string& b) { Patch32(b, 0x2C, 0x7FFFFFFF); }, STG_E_DOCFILECORRUPT,
         "FAT sectors for a file"},
        {"FAT sector outside", [](std::string& b) { Patch32(b, 0x4C, 0x00FFFFFF); },
         STG_E_DOCFILECORRUPT, "outside the file"},
        {"directory loops", [&](std::string& b) { Patch32(b, FatEntry(b, dirStart), dirStart); },
         STG_E_DOCFILECORRUPT, "sector chain of the directory loops"},
        {"directory outside", [](std::string& b) { Patch32(b, 0x30, 0x00FFFFFF); },
         STG_E_DOCFILECORRUPT, "sector chain of the directory points to sector 0xffffff"},
        {"stream chain loops",
         [&](std::string& b) { Patch32(b, FatEntry(b, bigStart + 3), bigStart); },
         STG_E_DOCFILECORRUPT, "stream 's70000' loops"},
        {"stream chain leaves the file",
         [&](std::string& b) { Patch32(b, FatEntry(b, bigStart + 3), 0x0ABCDEF0); },
         STG_E_DOCFILECORRUPT, "stream 's70000' points to sector 0xabcdef0 outside"},
        {"stream chain ends early",
         [&](std::string& b) { Patch32(b, FatEntry(b, bigStart + 3), fmt::EndOfChain); },
         STG_E_DOCFILECORRUPT, "stream 's70000' ends after 4 of 137"},
        {"stream runs into the directory",
         [&](std::string& b) { Patch32(b, FatEntry(b, bigStart + 3), dirStart); },
         STG_E_DOCFILECORRUPT, "runs into another chain"},
        {"tree loops",
         [&](std::string& b) {
             Patch32(b, DirEntryAt(b, bigEntry) + 0x44, At32(b, DirEntryAt(b, 0) + 0x4C));
         },
         STG_E_DOCFILECORRUPT, "reached twice"},
        {"tree points past the directory",
         [&](std::string& b) { Patch32(b, DirEntryAt(b, bigEntry) + 0x48, 5000); },
         STG_E_DOCFILECORRUPT, "refers to directory entry 5000"},
        {"name size", [&](std::string& b) { b[DirEntryAt(b, bigEntry) + 0x40] = 99; },
         STG_E_DOCFILECORRUPT, "name of 99 bytes"},
        {"entry type", [&](std::string& b) { b[DirEntryAt(b, bigEntry) + 0x42] = 9; },
         STG_E_DOCFILECORRUPT, "unknown type 9"},
        {"root type", [&](std::string& b) { b[DirEntryAt(b, 0) + 0x42] = 1; }, STG_E_DOCFILECORRUPT,
         "not the root"},
        {"mini stream too long",
         [&](std::string& b) { Patch32(b, DirEntryAt(b, 0) + 0x78, 0x01000000); },
         STG_E_DOCFILECORRUPT, "mini stream"},
    };
    for (const Damage& c : cases) {
        SCOPED_TRACE(c.what);
        std::string bytes = good;
        c.apply(bytes);
        IStorage* root = nullptr;
        EXPECT_EQ(StgOpenStorageOnMemory(bytes, &root), c.hr) << StorageErrorText();
        EXPECT_EQ(root, nullptr);
        EXPECT_NE(StorageErrorText().find(c.message), std::string::npos) << StorageErrorText();
        EXPECT_EQ(StorageErrorText().rfind("compound file: ", 0), 0u);
    }
    // A name holding a zero ends there, as a reader of zero-ended names sees it.
    std::string cutName = good;
    cutName[DirEntryAt(good, bigEntry) + 4] = 0; // "s70000" becomes "s7"
    cutName[DirEntryAt(good, bigEntry) + 5] = 0;
    IStorage* cut = nullptr;
    ASSERT_EQ(StgOpenStorageOnMemory(cutName, &cut), S_OK) << StorageErrorText();
    EXPECT_EQ(ReadStream(cut, "s7").size(), 70000u);
    cut->Release();

    // The same file from disk names the file too.
    std::string damaged = good;
    damaged[0] = 'M';
    WriteFileBytes(path + ".bad", damaged);
    IStorage* root = nullptr;
    EXPECT_EQ(StgOpenStorage((path + ".bad").c_str(), nullptr, Read, nullptr, 0, &root),
              STG_E_INVALIDHEADER);
    EXPECT_NE(StorageErrorText().find("good.cfb.bad"), std::string::npos);
}

} // namespace

namespace {
TEST(CompoundFile, ScratchFilesAreReadableWhileOpenAndGoneAfterRelease) {
    const std::string path = talvor::testing::TestFolder("cf") + "/scratch.cfb";
    IStorage* root = nullptr;
    ASSERT_EQ(
        StgCreateDocfile(path.c_str(), Create | STGM_TRANSACTED | STGM_DELETEONRELEASE, 0, &root),
        S_OK);
    ASSERT_EQ(talvor::testing::WriteStream(root, "a", "committed"), S_OK);
    ASSERT_EQ(root->Commit(STGC_ONLYIFCURRENT), S_OK);
    EXPECT_EQ(ListWithOlefile(path), (Listing{{"a", "committed"}}));
    root->Release();
    EXPECT_FALSE(talvor::platform::FileExists(path));
}
} // namespace
