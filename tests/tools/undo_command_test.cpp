// talvor undo: the demo of the history, and listings of compound files, damaged ones included.
#include "platform/files/file_system.h"
#include "platform/storage/storage.h"
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {
using talvor::testing::RunTalvor;
using namespace talvor::platform::storage;

std::string Folder() {
    std::string folder = ::testing::TempDir() + "talvor_undo_tool_" + std::to_string(::getpid());
    talvor::platform::CreateDirectories(folder);
    return folder;
}

void MakeFile(const std::string& path) {
    IStorage* root = nullptr;
    ASSERT_EQ(StgCreateDocfile(
                  path.c_str(),
                  STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_TRANSACTED, 0, &root),
              S_OK);
    IStorage* sub = nullptr;
    const std::u16string snap = u"0", data = u"Frame", odd = u"\x05Summary";
    ASSERT_EQ(root->CreateStorage(snap.c_str(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                  0, 0, &sub),
              S_OK);
    IStream* stream = nullptr;
    ASSERT_EQ(sub->CreateStream(data.c_str(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                0, 0, &stream),
              S_OK);
    ASSERT_EQ(stream->Write("12345", 5, nullptr), S_OK);
    stream->Release();
    sub->Release();
    ASSERT_EQ(root->CreateStream(odd.c_str(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE,
                                 0, 0, &stream),
              S_OK);
    stream->Release();
    ASSERT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    root->Release();
}

TEST(UndoCommand, LsListsStoragesAndStreams) {
    const std::string path = Folder() + "/listed.cfb";
    MakeFile(path);
    auto run = RunTalvor("undo ls '" + path + "'");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("0/Frame"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("5 bytes"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\\x05Summary"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("1 storages, 2 streams, 5 bytes"), std::string::npos) << run.out;

    run = RunTalvor("undo ls '" + path + "' --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("\"path\": \"0/Frame\""), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\"size\": 5"), std::string::npos) << run.out;
}

TEST(UndoCommand, LsRefusesWhatIsNoGoodCompoundFile) {
    const std::string folder = Folder();
    const std::string path = folder + "/damaged.cfb";
    MakeFile(path);
    std::string bytes, error;
    ASSERT_TRUE(talvor::platform::ReadWholeFile(path, bytes, error));
    bytes[0x30] = '\x7f'; // the directory's first sector, far outside the file
    ASSERT_TRUE(talvor::platform::WriteFileAtomically(path, bytes, error));
    auto run = RunTalvor("undo ls '" + path + "'");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("talvor: undo ls: compound file: sector chain of the directory"),
              std::string::npos)
        << run.err;
    EXPECT_NE(run.err.find("damaged.cfb"), std::string::npos) << run.err;

    run = RunTalvor("undo ls '" + folder + "/missing.cfb'");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("cannot open"), std::string::npos) << run.err;
    run = RunTalvor("undo ls");
    EXPECT_EQ(run.exitCode, 1);
    run = RunTalvor("undo frobnicate");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("unknown subcommand"), std::string::npos) << run.err;
}

TEST(UndoCommand, DemoUndoesRedoesAndRemovesItsFile) {
    const std::string folder = Folder();
    auto run = RunTalvor("undo demo", "TMPDIR='" + folder + "'");
    ASSERT_EQ(run.exitCode, 0) << run.err << run.out;
    EXPECT_NE(run.out.find("undo  to 3 (Move control)"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("redo  to 2 (Set properties of control)"), std::string::npos);
    EXPECT_NE(run.out.find("> 5  Delete control"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("5/Container"), std::string::npos) << run.out;
    const std::size_t at = run.out.find("history in ");
    ASSERT_NE(at, std::string::npos);
    const std::string path = run.out.substr(at + 11, run.out.find('\n', at) - at - 11);
    EXPECT_EQ(path.rfind(folder + "/~", 0), 0u) << path;
    EXPECT_FALSE(talvor::platform::FileExists(path)) << "the history file outlived the demo";
}

} // namespace
