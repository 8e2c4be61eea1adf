// TalvorRes: the built-in texts, the guard, alternative files, and the script reader.
#include "platform/app/resource_module.h"
#include "platform/files/file_system.h"
#include "platform/strings/cstring.h"
#include "resources/resource_guard.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace talvor;

namespace {
int LineCount(const std::string& text) {
    int lines = 1;
    for (char c : text)
        lines += c == '\n';
    return lines;
}

int Count(const std::string& text, char c) {
    return static_cast<int>(std::count(text.begin(), text.end(), c));
}
} // namespace

TEST(TalvorRes, LineListsHaveTheLinesTheEngineReads) {
    struct Case {
        unsigned id;
        int lines;
    } cases[] = {{8514, 18}, {8515, 5}, {8518, 4}, {8574, 5}, {8473, 9},
                 {8509, 4},  {8510, 2}, {8511, 4}, {8512, 1}, {8519, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        std::string text = resources::LoadTalvorString(c.id);
        ASSERT_FALSE(text.empty());
        EXPECT_EQ(LineCount(text), c.lines);
        EXPECT_EQ(text.find("\n\n"), std::string::npos) << "an empty line would end the list early";
    }
}

TEST(TalvorRes, KeywordsAreTheWordsOfTheLanguageWithoutPatternCharacters) {
    std::string flow = resources::LoadTalvorString(8514);
    EXPECT_EQ(flow.substr(0, 12), "If\nThen\nElse");
    EXPECT_EQ(flow.find_first_of("()[]{}.*+?\\^$|"), std::string::npos);
    std::string procedures = resources::LoadTalvorString(8574);
    EXPECT_EQ(procedures, "Sub\nEnd Sub\nFunction\nEnd Function\nDim");
}

TEST(TalvorRes, NameErrorLinesCarryTheirInsertionMarks) {
    std::string errors = resources::LoadTalvorString(8473);
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = errors.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(errors.substr(start, end - start));
    lines.push_back(errors.substr(start));
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(Count(lines[4], '\t'), 2); // control and event of a handler
    EXPECT_EQ(Count(lines[5], '\t'), 1); // name of a function
}

TEST(TalvorRes, MissingIdGivesNothing) {
    EXPECT_EQ(resources::LoadTalvorString(1), "");
    resources::ResourceGuard guard;
    ASSERT_TRUE(guard.IsSelected());
    CString text("junk");
    EXPECT_FALSE(text.LoadString(65000));
    EXPECT_TRUE(text.IsEmpty());
}

TEST(ResourceGuard, RestoresTheFormerSource) {
    HINSTANCE before = AfxGetResourceHandle();
    {
        resources::ResourceGuard guard;
        EXPECT_NE(AfxGetResourceHandle(), before);
        { resources::ResourceGuard nested; }
        EXPECT_EQ(AfxGetResourceHandle()->Name(), "TalvorRes");
    }
    EXPECT_EQ(AfxGetResourceHandle(), before);
    CString text;
    EXPECT_FALSE(text.LoadString(8514)); // outside the guard the application's texts count
}

TEST(ResourceGuard, AnotherLanguageFileReplacesTheTexts) {
    std::string path = ::testing::TempDir() + "talvor_res_" + std::to_string(::getpid()) + ".rc";
    std::string error;
    ASSERT_TRUE(platform::WriteFileAtomically(
        path, "STRINGTABLE\nBEGIN\n 8512, \"Block verlassen\"\nEND\n", error));
    resources::RegisterTalvorRes();
    ASSERT_TRUE(platform::LoadResourceModuleFile("TalvorRes", path, error)) << error;
    EXPECT_EQ(resources::LoadTalvorString(8512), "Block verlassen");
    EXPECT_EQ(resources::LoadTalvorString(8514), ""); // the file has no such string
    platform::ResetResourceModule("TalvorRes");
    EXPECT_EQ(resources::LoadTalvorString(8512), "Leave the block");
    EXPECT_FALSE(platform::LoadResourceModuleFile("TalvorRes", path + ".missing", error));
}

namespace {
struct ScriptCase {
    const char* what;
    const char* script;
    const char* error; // empty: must be read
};
const ScriptCase Scripts[] = {
    {"escapes and doubled quotes", "STRINGTABLE { 1 \"a\\tb\\nc\"\"d\\\\\" }", ""},
    {"defines and flags", "#define IDS_X 0x10\nSTRINGTABLE DISCARDABLE\nBEGIN\n IDS_X, \"x\"\nEND",
     ""},
    {"comments", "// c\n/* block\n */ STRINGTABLE BEGIN 2 \"y\" // trailing\nEND", ""},
    {"missing string", "STRINGTABLE\nBEGIN\n 5,\nEND",
     "resources: line 4: expected a string after id 5"},
    {"unclosed string", "STRINGTABLE\nBEGIN\n 5 \"abc\nEND",
     "resources: line 3: string without closing quote"},
    {"unknown symbol", "STRINGTABLE BEGIN IDS_NONE \"x\" END",
     "resources: line 1: unknown symbol 'IDS_NONE'"},
    {"duplicate id", "STRINGTABLE BEGIN 7 \"a\"\n 7 \"b\" END",
     "resources: line 2: string id 7 is defined twice"},
    {"no END", "STRINGTABLE BEGIN 7 \"a\"", "resources: line 1: STRINGTABLE without END"},
    {"unsupported block", "DIALOG 1", "resources: line 1: unsupported resource statement 'DIALOG'"},
    {"id too large", "STRINGTABLE BEGIN 70000 \"a\" END",
     "resources: line 1: string id 70000 is above 65535"},
};
} // namespace

TEST(ResourceScript, ReadsStringTablesAndNamesTheLineOfAFault) {
    for (const ScriptCase& c : Scripts) {
        SCOPED_TRACE(c.what);
        platform::ResourceModule module("test");
        std::string error;
        bool ok = platform::ParseResourceScript(c.script, module, error);
        EXPECT_EQ(ok, *c.error == '\0');
        if (!ok) {
            EXPECT_EQ(error, c.error);
        }
    }
    platform::ResourceModule module("test");
    std::string error, text;
    ASSERT_TRUE(platform::ParseResourceScript(Scripts[0].script, module, error));
    ASSERT_TRUE(module.FindString(1, text));
    EXPECT_EQ(text, "a\tb\nc\"d\\");
}
