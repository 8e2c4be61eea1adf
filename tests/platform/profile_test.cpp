// The application profile: values by section and key, INI files written atomically.
#include "platform/app/profile.h"
#include "platform/files/file_system.h"

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace talvor::platform;

namespace {
std::string TempPath(const char* name) {
    std::string folder = ::testing::TempDir() + "talvor_profile_" + std::to_string(::getpid());
    CreateDirectories(folder);
    return folder + "/" + name;
}
// Built by appending: g++ 12 warns falsely on "k" + std::to_string(i).
std::string KeyName(std::size_t i, const char* prefix) {
    std::string key(prefix);
    key += std::to_string(i);
    return key;
}
} // namespace

TEST(Profile, MissingKeysGiveTheDefault) {
    CWinApp* app = AfxGetApp();
    EXPECT_EQ(app->GetProfileInt("Nowhere", "g_bCase", 7), 7u);
    EXPECT_EQ(app->GetProfileString("Nowhere", "x", "fallback"), "fallback");
    EXPECT_EQ(app->GetProfileString("Nowhere", "x"), "");
    app->WriteProfileString("Section", "text", "not a number");
    EXPECT_EQ(app->GetProfileInt("Section", "text", 3), 3u);
    app->WriteProfileInt("Section", "n", -5);
    EXPECT_EQ(static_cast<int>(app->GetProfileInt("Section", "n", 0)), -5);
}

TEST(Profile, SectionsWithBackslashesAndKeysWithoutCase) {
    CWinApp* app = AfxGetApp();
    const char* section = "MainWnd\\DockingPaneLayouts\\PaneMacro\\Keywords";
    app->WriteProfileString(section, "_BASIC", " If,Then,");
    EXPECT_EQ(app->GetProfileString(section, "_basic"), " If,Then,");
    EXPECT_EQ(app->GetProfileString("mainwnd\\dockingpanelayouts\\panemacro\\keywords", "_BASIC"),
              " If,Then,");
    app->WriteProfileString(section, "_BASIC", nullptr);
    EXPECT_EQ(app->GetProfileString(section, "_BASIC", "gone"), "gone");
}

TEST(Profile, BinaryValuesRoundTrip) {
    CWinApp* app = AfxGetApp();
    const BYTE data[] = {0x00, 0xFF, 0x10, 0x7F};
    ASSERT_TRUE(app->WriteProfileBinary("S", "blob", data, sizeof data));
    BYTE* back = nullptr;
    UINT size = 0;
    ASSERT_TRUE(app->GetProfileBinary("S", "blob", &back, &size));
    ASSERT_EQ(size, sizeof data);
    EXPECT_EQ(std::memcmp(back, data, size), 0);
    delete[] back;
    EXPECT_FALSE(app->GetProfileBinary("S", "none", &back, &size));
    EXPECT_EQ(back, nullptr);
}

TEST(IniFileProfile, EveryValueReadsBackExactly) {
    std::string path = TempPath("exact.ini");
    const std::string values[] = {"plain",      " leading blank", "trailing tab\t",
                                  "\"quoted\"", "line\nfeed",     "back\\slash",
                                  "",           "=equals=",       "; not a comment"};
    {
        IniFileProfile profile(path);
        for (std::size_t i = 0; i < std::size(values); ++i)
            ASSERT_TRUE(profile.Set("A\\B", KeyName(i, "k"), values[i])) << profile.LastError();
    }
    IniFileProfile reread(path);
    for (std::size_t i = 0; i < std::size(values); ++i) {
        std::string value;
        ASSERT_TRUE(reread.Get("a\\b", KeyName(i, "K"), value));
        EXPECT_EQ(value, values[i]);
    }
}

TEST(IniFileProfile, AFailedWriteKeepsTheLastCompleteFile) {
    std::string path = TempPath("atomic.ini");
    IniFileProfile profile(path);
    ASSERT_TRUE(profile.Set("S", "first", "1"));
    std::string before, error;
    ASSERT_TRUE(ReadWholeFile(path, before, error));

    FailNthWrite(1);
    EXPECT_FALSE(profile.Set("S", "second", "2"));
    FailNthWrite(0);
    EXPECT_FALSE(profile.LastError().empty());

    std::string after;
    ASSERT_TRUE(ReadWholeFile(path, after, error));
    EXPECT_EQ(after, before);
    std::string value;
    EXPECT_FALSE(profile.Get("S", "second", value)); // memory follows the file
    IniFileProfile reread(path);
    EXPECT_TRUE(reread.Get("S", "first", value));
    EXPECT_FALSE(reread.Get("S", "second", value));
}

TEST(IniFileProfile, HandWrittenFilesAreRead) {
    ProfileData data;
    IniFileProfile::Parse("; comment\n[One]\r\nkey = value \r\nbroken line\n[Two\n"
                          "stray=still one\n[Two]\nk=\"a\\tb\"\n",
                          data);
    EXPECT_EQ(data["One"]["key"], "value");
    EXPECT_EQ(data["One"]["stray"], "still one");
    EXPECT_EQ(data["Two"]["k"], "a\tb");
}
