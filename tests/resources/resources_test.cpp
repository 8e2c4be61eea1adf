// TalvorRes: the built-in texts, the guard, alternative files, and the script reader.
#include "platform/app/resource_module.h"
#include "platform/app/resource_script.h"
#include "platform/files/file_system.h"
#include "platform/strings/cstring.h"
#include "resources/resource_guard.h"
#include "resources/talvor_res_ids.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
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
    } cases[] = {{IDS_FLOW_KEYWORDS, 18},     {IDS_EXIT_KEYWORDS, 5}, {IDS_FORM_NAMES, 4},
                 {IDS_PROCEDURE_KEYWORDS, 5}, {IDS_NAME_ERRORS, 9},   {IDS_IF_TITLES, 4},
                 {IDS_LOOP_TITLES, 2},        {IDS_FOR_TITLES, 4},    {IDS_EXIT_TITLES, 1},
                 {IDS_CALL_TITLES, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        std::string text = resources::LoadTalvorString(c.id);
        ASSERT_FALSE(text.empty());
        EXPECT_EQ(LineCount(text), c.lines);
        EXPECT_EQ(text.find("\n\n"), std::string::npos) << "an empty line would end the list early";
    }
}

TEST(TalvorRes, KeywordsAreTheWordsOfTheLanguageWithoutPatternCharacters) {
    std::string flow = resources::LoadTalvorString(IDS_FLOW_KEYWORDS);
    EXPECT_EQ(flow.substr(0, 12), "If\nThen\nElse");
    EXPECT_EQ(flow.find_first_of("()[]{}.*+?\\^$|"), std::string::npos);
    std::string procedures = resources::LoadTalvorString(IDS_PROCEDURE_KEYWORDS);
    EXPECT_EQ(procedures, "Sub\nEnd Sub\nFunction\nEnd Function\nDim");
}

TEST(TalvorRes, NameErrorLinesCarryTheirInsertionMarks) {
    std::string errors = resources::LoadTalvorString(IDS_NAME_ERRORS);
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = errors.find('\n', start)) != std::string::npos; start = end + 1)
        lines.push_back(errors.substr(start, end - start));
    lines.push_back(errors.substr(start));
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(Count(lines[4], '\t'), 2); // control and event of a handler
    EXPECT_EQ(Count(lines[5], '\t'), 1); // name of a function
}

// Hosts and translations know the ids by number: the header must keep them.
TEST(TalvorRes, IdsKeepTheirPublishedNumbers) {
    struct Case {
        unsigned id, number;
    } cases[] = {{IDS_IF_TITLES, 8509},
                 {IDS_LOOP_TITLES, 8510},
                 {IDS_FOR_TITLES, 8511},
                 {IDS_EXIT_TITLES, 8512},
                 {IDS_CALL_TITLES, 8519},
                 {IDS_FLOW_KEYWORDS, 8514},
                 {IDS_EXIT_KEYWORDS, 8515},
                 {IDS_FORM_NAMES, 8518},
                 {IDS_PROCEDURE_KEYWORDS, 8574},
                 {IDS_NAME_ERRORS, 8473},
                 {IDS_RICH_EDIT_MISSING, 8390},
                 {IDS_UNDO_ACTIONS, 8399},
                 {IDS_REDO_ACTIONS, 8400},
                 {IDS_DEFAULT_LANGUAGE, 8378},
                 {IDS_REPLACE_EXISTING_FILE, 8332},
                 {IDS_MENUS_CATEGORY, 8334},
                 {IDS_MENU_BAR_TITLE, 8353},
                 {IDS_STANDARD_BAR_TITLE, 5402},
                 {IDS_UNDO_ACTION_NAMES, 8405},
                 {IDS_OBJECT_PICTURE, 5427}};
    for (const Case& c : cases)
        EXPECT_EQ(c.id, c.number);
}

// The script includes the header, so every string id named there must have its text and
// every menu or tool bar id its resource; command ids (ID_) are only used by them.
TEST(TalvorRes, EveryIdOfTheHeaderHasItsText) {
    std::ifstream header(TALVOR_SOURCE_DIR "/resources/talvor_res_ids.h");
    ASSERT_TRUE(header.good());
    int ids = 0;
    for (std::string line; std::getline(header, line);) {
        std::istringstream words(line);
        std::string directive, name;
        unsigned id = 0;
        if (!(words >> directive >> name >> id) || directive != "#define")
            continue;
        SCOPED_TRACE(name);
        if (name.rfind("IDR_", 0) == 0) {
            resources::ResourceGuard guard;
            HINSTANCE module = AfxGetResourceHandle();
            EXPECT_TRUE(module->FindMenu(id) != nullptr || module->FindToolBar(id) != nullptr);
            if (name == "IDR_STANDARD_ICONS") {
                const platform::BitmapResource* icons = module->FindBitmap(id);
                ASSERT_NE(icons, nullptr) << "the PNG of the icon set decodes";
                EXPECT_EQ(icons->width, module->FindToolBar(id)->buttonWidth *
                                            static_cast<int>(module->FindToolBar(id)->ids.size()));
                EXPECT_EQ(icons->pixels[0], 0x00FF00u) << "the mask colour around the icons";
            }
        } else if (name.rfind("IDS_", 0) == 0) {
            EXPECT_FALSE(resources::LoadTalvorString(id).empty());
        }
        ++ids;
    }
    EXPECT_GE(ids, 30);
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
    EXPECT_FALSE(
        text.LoadString(IDS_FLOW_KEYWORDS)); // outside the guard the application's texts count
}

TEST(ResourceGuard, AnotherLanguageFileReplacesTheTexts) {
    std::string path = ::testing::TempDir() + "talvor_res_" + std::to_string(::getpid()) + ".rc";
    std::string error;
    ASSERT_TRUE(platform::WriteFileAtomically(
        path, "STRINGTABLE\nBEGIN\n 8512, \"Block verlassen\"\nEND\n", error));
    resources::RegisterTalvorRes();
    ASSERT_TRUE(platform::LoadResourceModuleFile("TalvorRes", path, error)) << error;
    EXPECT_EQ(resources::LoadTalvorString(IDS_EXIT_TITLES), "Block verlassen");
    EXPECT_EQ(resources::LoadTalvorString(IDS_FLOW_KEYWORDS), ""); // the file has no such string
    platform::ResetResourceModule("TalvorRes");
    EXPECT_EQ(resources::LoadTalvorString(IDS_EXIT_TITLES), "Leave the block");
    EXPECT_FALSE(platform::LoadResourceModuleFile("TalvorRes", path + ".missing", error));
}

// A translation is a copy of the script: it includes the ids header, found beside it when it
// is there and otherwise the one built into the library.
TEST(ResourceGuard, ATranslationIncludesTheIdsHeader) {
    std::string folder = ::testing::TempDir() + "talvor_res_" + std::to_string(::getpid());
    std::string error;
    std::string script = "#include \"talvor_res_ids.h\"\nSTRINGTABLE\nBEGIN\n"
                         " IDS_EXIT_TITLES \"Block verlassen\"\nEND\n";
    ASSERT_TRUE(platform::WriteFileAtomically(folder + "/de.rc", script, error)) << error;
    resources::RegisterTalvorRes();
    ASSERT_TRUE(platform::LoadResourceModuleFile("TalvorRes", folder + "/de.rc", error)) << error;
    EXPECT_EQ(resources::LoadTalvorString(IDS_EXIT_TITLES), "Block verlassen");

    // A header beside the file is the one read, even when it says otherwise.
    ASSERT_TRUE(platform::WriteFileAtomically(folder + "/talvor_res_ids.h",
                                              "#define IDS_EXIT_TITLES 9000\n", error));
    ASSERT_TRUE(platform::LoadResourceModuleFile("TalvorRes", folder + "/de.rc", error)) << error;
    EXPECT_EQ(resources::LoadTalvorString(IDS_EXIT_TITLES), "");
    EXPECT_EQ(resources::LoadTalvorString(9000), "Block verlassen");

    ASSERT_TRUE(platform::WriteFileAtomically(folder + "/talvor_res_ids.h",
                                              "#define IDS_EXIT_TITLES oops\n", error));
    EXPECT_FALSE(platform::LoadResourceModuleFile("TalvorRes", folder + "/de.rc", error));
    EXPECT_EQ(error, folder + "/de.rc: resources: talvor_res_ids.h: line 1: #define "
                              "IDS_EXIT_TITLES needs a number up to 65535");
    platform::ResetResourceModule("TalvorRes");
    EXPECT_EQ(resources::LoadTalvorString(IDS_EXIT_TITLES), "Leave the block");
}

TEST(ResourceScript, IncludedFilesDefineNamesForTheRest) {
    std::map<std::string, std::string> files = {
        {"ids.h", "// ids\n#pragma once\n#define IDS_A 10\n#include \"more.h\"\n"},
        {"more.h", "#define IDS_B 11\nSTRINGTABLE BEGIN 12 \"from more\" END\n"},
        {"self.h", "#include \"self.h\"\n"},
        {"empty.h", ""},
        {"bad.h", "\n\n#define IDS_C\n"},
    };
    for (int i = 0; i < 300; ++i)
        files["many.h"] += "#include \"empty.h\"\n";
    platform::ResourceIncludeReader reader = [&files](const std::string& name, std::string& text) {
        auto found = files.find(name);
        if (found == files.end())
            return false;
        text = found->second;
        return true;
    };
    platform::ResourceModule module("test");
    std::string error, text;
    ASSERT_TRUE(platform::ParseResourceScript(
        "#include \"ids.h\"\nSTRINGTABLE BEGIN IDS_A \"a\"\n IDS_B \"b\" END", module, error,
        reader))
        << error;
    EXPECT_EQ(module.StringCount(), 3u);
    ASSERT_TRUE(module.FindString(11, text));
    EXPECT_EQ(text, "b");

    struct Case {
        const char* script;
        const char* error;
    } cases[] = {
        {"#include \"many.h\"",
         "resources: many.h: line 256: #include \"empty.h\" is one more than 256 included files"},
        {"#include \"afxres.h\"\nSTRINGTABLE BEGIN IDS_A \"a\" END",
         "resources: line 2: unknown symbol 'IDS_A' (#include \"afxres.h\" was not found)"},
        {"#include \"self.h\"",
         "resources: self.h: line 1: #include \"self.h\" nests deeper than 16 files"},
        {"STRINGTABLE BEGIN END\n#include \"bad.h\"",
         "resources: bad.h: line 3: #define needs a name and a value"},
        {"#include talvor_res_ids.h",
         "resources: line 1: #include needs a file name in quotes or angle brackets"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.script);
        platform::ResourceModule other("test");
        EXPECT_FALSE(platform::ParseResourceScript(c.script, other, error, reader));
        EXPECT_EQ(error, c.error);
    }
    // An include nobody can find changes nothing when its names are not used.
    platform::ResourceModule plain("test");
    EXPECT_TRUE(platform::ParseResourceScript("#include <windows.h>\nSTRINGTABLE { 1 \"x\" }",
                                              plain, error));
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
