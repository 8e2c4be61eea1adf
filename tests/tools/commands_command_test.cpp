// talvor commands: designs made, shown, reset and drawn; bars copied between designs; bad
// files answered with a message and exit code 1.
#include "platform/files/file_system.h"
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <unistd.h>

namespace {
using talvor::testing::RunTalvor;

std::string Folder() {
    std::string folder =
        ::testing::TempDir() + "talvor_commands_tool_" + std::to_string(::getpid());
    talvor::platform::CreateDirectories(folder);
    return folder;
}

TEST(CommandsTool, NewDumpCopyPasteAndRender) {
    const std::string dir = Folder();
    const std::string a = dir + "/a.design", b = dir + "/b.design", clip = dir + "/tools.clip";
    std::remove(a.c_str());
    std::remove(b.c_str());
    ASSERT_EQ(RunTalvor("commands new " + a).exitCode, 0);
    ASSERT_EQ(RunTalvor("commands new " + b).exitCode, 0);
    EXPECT_EQ(RunTalvor("commands new " + a).exitCode, 1) << "new never overwrites";

    auto run = RunTalvor("commands dump " + a + " --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto design = nlohmann::json::parse(run.out);
    ASSERT_EQ(design["bars"].size(), 2u);
    EXPECT_TRUE(design["bars"][0]["menuBar"].get<bool>());
    EXPECT_EQ(design["bars"][1]["id"], 5402);
    EXPECT_EQ(design["bars"][0]["controls"][0]["controls"][0]["idName"], "ID_FILE_NEW");
    EXPECT_FALSE(design["pool"].empty());

    run = RunTalvor("commands copy-bar " + a + " Standard " + clip);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = RunTalvor("commands paste-bar " + b + " " + clip + " --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto pasted = nlohmann::json::parse(run.out);
    EXPECT_EQ(pasted["title"], "Standard1");
    EXPECT_EQ(pasted["id"], 5403);
    run = RunTalvor("commands dump " + b + " --json");
    EXPECT_EQ(nlohmann::json::parse(run.out)["bars"].size(), 3u);

    // The menu bar can't be pasted into a design that has one.
    run = RunTalvor("commands copy-bar " + a + " \"Menu Bar\" " + clip);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = RunTalvor("commands paste-bar " + b + " " + clip);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("menu bar"), std::string::npos) << run.err;

    run = RunTalvor("commands reset " + b);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = RunTalvor("commands dump " + b + " --json");
    EXPECT_EQ(nlohmann::json::parse(run.out)["bars"].size(), 2u);

    const std::string png = dir + "/bars.png";
    run = RunTalvor("commands render " + a + " -o " + png);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    std::ifstream picture(png, std::ios::binary);
    char magic[8] = {};
    picture.read(magic, 8);
    EXPECT_EQ(std::string(magic + 1, 3), "PNG");
}

TEST(CommandsTool, MissingAndDamagedDesignsAreUserErrors) {
    const std::string dir = Folder();
    auto run = RunTalvor("commands dump " + dir + "/missing.design");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("can't be opened"), std::string::npos) << run.err;
    const std::string bad = dir + "/bad.design";
    std::ofstream(bad, std::ios::binary) << std::string("\x01\x00\x00\x00\x01\x00\x05", 7);
    run = RunTalvor("commands dump " + bad);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_FALSE(run.err.empty());
    EXPECT_EQ(RunTalvor("commands frobnicate x").exitCode, 1);
    EXPECT_EQ(RunTalvor("commands render " + bad).exitCode, 1) << "no -o";
}

} // namespace
