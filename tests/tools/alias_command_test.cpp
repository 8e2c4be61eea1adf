// talvor alias as a user runs it on a folder of alias files: set, get, list, fill, normalize,
// the picker's languages, and clear errors for bad input.
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

using talvor::testing::RunTalvor;
using talvor::testing::ToolRun;

struct Folder {
    Folder() {
        root = std::filesystem::path(::testing::TempDir()) /
               ("alias_tool_" + std::to_string(::getpid()));
        std::filesystem::remove_all(root);
        std::filesystem::create_directories(root / "OcxAlias");
    }
    ~Folder() { std::filesystem::remove_all(root); }
    std::string File(const std::string& name, const std::string& text) const {
        const std::string path = (root / "OcxAlias" / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    static std::string Read(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    std::filesystem::path root;
};

} // namespace

TEST(AliasCommand, SetGetAndListAMember) {
    Folder folder;
    const std::string gauge = folder.File("Gauge.ini", "Default=[0x0409]\n");
    ToolRun run = RunTalvor("alias set '" + gauge +
                            "' property Caption --alias Heading --description 'Text on the face'");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Folder::Read(gauge), "Default=[0x0409]\r\n[.Properties]\r\nName=\"Caption\"\r\n"
                                   "[0x0409]\r\nAlias=\"Heading\"\r\n"
                                   "Description=\"Text on the face\"\r\n\r\n");

    run = RunTalvor("alias get '" + gauge + "' property caption");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "property caption\n  alias:       Heading\n"
                       "  description: Text on the face\n");
    run = RunTalvor("alias get '" + gauge + "' 1 Caption --json");
    EXPECT_NE(run.out.find("\"alias\": \"Heading\""), std::string::npos) << run.out;

    run = RunTalvor("alias list '" + gauge + "' --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("\"language\": 1033"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("\"name\": \"Caption\""), std::string::npos) << run.out;

    // Another language has no block for it: no fallback.
    run = RunTalvor("alias get '" + gauge + "' property Caption --lang 0x0804");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err, "talvor: alias: no property 'Caption' in language 0x0804\n");
}

TEST(AliasCommand, FillTakesValuesFromTheOtherFilesOfTheFolder) {
    Folder folder;
    folder.File("Button.ini", "[.Events]\r\nName=\"Click\"\r\n[0x0409]\r\nAlias=\"Pressed\"\r\n"
                              "Description=\"The user clicked it\"\r\n");
    const std::string gauge = folder.File("Gauge.ini", "Default=[0x0409]\r\n");
    ToolRun run = RunTalvor("alias fill '" + gauge + "' event Click");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(Folder::Read(gauge).find("Alias=\"Pressed\""), std::string::npos);

    const std::string outside = (folder.root / "Loose.ini").string();
    std::ofstream(outside) << "";
    run = RunTalvor("alias fill '" + outside + "' event Click");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("OcxAlias"), std::string::npos);
}

TEST(AliasCommand, NormalizeAndBadInput) {
    Folder folder;
    const std::string messy = folder.File("Messy.ini", "  [.Events]  \n\n\nName=\"A\"\n");
    ASSERT_EQ(RunTalvor("alias normalize '" + messy + "'").exitCode, 0);
    EXPECT_EQ(Folder::Read(messy), "\r\n[.Events]\r\n\r\nName=\"A\"\r\n");

    struct Case {
        std::string arguments;
        std::string error;
    } cases[] = {
        {"alias get '" + messy + "' gadget A", "unknown kind 'gadget'"},
        {"alias get '" + messy + "' event A --lang english", "no language number"},
        {"alias get /no/such/file.ini event A", "no such file"},
        {"alias get '" + messy + "' event", "wrong number of arguments"},
        {"alias frobnicate", "unknown subcommand"},
        {"alias get '" + messy + "' event A --lang", "--lang needs a value"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        const ToolRun run = RunTalvor(c.arguments);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.err.find(c.error), std::string::npos) << run.err;
    }
}

TEST(AliasCommand, LanguagesListsThePickersRecords) {
    ToolRun run = RunTalvor("alias languages");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out.rfind("0x0000  Default language\n0x0400  User default language\n", 0), 0u)
        << run.out.substr(0, 200);
    EXPECT_NE(run.out.find("0x0409  English"), std::string::npos);
    run = RunTalvor("alias languages --code-pages");
    EXPECT_NE(run.out.find(" 1252  windows-1252 (1252)"), std::string::npos) << run.out;
}
