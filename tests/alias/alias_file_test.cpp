// Identity, default language, location, loading and saving of an alias file.
#include "tests/alias/alias_probe.h"

#include "platform/com/guid.h"
#include "platform/com/registry/com_registry.h"
#include "platform/files/file_system.h"
#include "platform/intl/language_ids.h"

#include <gtest/gtest.h>

using namespace std::string_literals;
using talvor::testing::AliasFolder;
using talvor::testing::AliasProbe;

namespace {

constexpr const char* GaugeId = "{11111111-2222-3333-4444-555555555555}";
constexpr const char* ListId = "{22222222-0000-0000-0000-000000000000}";
constexpr const char* LetteredId = "{a1b2c3d4-0000-4000-8000-00000000abcd}";
constexpr const char* FormId = "{d548483f-01fa-4037-b0f5-b90f5db46d20}";

// Controls registered with display names for the time of a test. The form's own identifier is
// registered too, under a name no alias file has: the form never asks for its name.
struct ControlNames {
    ControlNames() {
        Register(GaugeId, "Sample Gauge Control");
        Register(ListId, "List.Box (2)");
        Register(FormId, "Not The Form");
        Register(LetteredId, "Lettered Control");
    }
    ~ControlNames() {
        for (const GUID& clsid : m_registered)
            talvor::platform::ComRegistry::Instance().UnregisterClass(clsid);
    }
    void Register(const char* text, const char* name) {
        talvor::platform::ClassRegistration entry;
        ASSERT_TRUE(talvor::platform::GuidFromText(text, entry.clsid)) << text;
        entry.displayName = name;
        talvor::platform::ComRegistry::Instance().RegisterClass(entry);
        m_registered.push_back(entry.clsid);
    }
    std::vector<GUID> m_registered;
};

} // namespace

TEST(AliasFile, IdentityLineWithItsCommentAboveIt) {
    ControlNames names;
    AliasProbe alias;
    alias.SetCLSID(GaugeId);
    EXPECT_EQ(alias.GetIniText(),
              CString(";Sample Gauge Control\r\nCLSID=\"") + GaugeId + "\"\r\n\r\n");
    EXPECT_EQ(alias.GetCLSID(), GaugeId);

    // A second call replaces the CLSID line and keeps the comment; each rewrite adds one line
    // end to a text that ended in one.
    alias.SetCLSID("{11111111-2222-3333-4444-555555555555}");
    EXPECT_EQ(alias.GetIniText(),
              CString(";Sample Gauge Control\r\nCLSID=\"") + GaugeId + "\"\r\n\r\n\r\n");

    // Without the comment line it is put right above the replaced line.
    alias.SetIniText("Default=[0x0409]\r\nclsid=\"{old}\"\r\nCLSID=\"{second}\"");
    alias.SetCLSID(GaugeId);
    EXPECT_EQ(alias.GetIniText(), CString("Default=[0x0409]\r\n;Sample Gauge Control\r\n"
                                          "CLSID=\"") +
                                      GaugeId + "\"\r\nCLSID=\"{second}\"\r\n");

    // A control without a display name changes nothing.
    alias.SetCLSID("{99999999-0000-0000-0000-000000000000}");
    EXPECT_EQ(alias.GetCLSID(), GaugeId);
    alias.SetIniText("");
    EXPECT_EQ(alias.GetCLSID(), "");
}

TEST(AliasFile, DefaultLanguageLine) {
    AliasProbe alias;
    alias.SetIniText(";Gauge\r\nCLSID=\"{1}\"\r\nDefault=[0x0001]\r\nDEFAULT=[0x0002]");
    alias.SetLCID(0x0804);
    EXPECT_EQ(alias.GetIniText(), ";Gauge\r\nCLSID=\"{1}\"\r\nDefault=[0x0804]\r\n"
                                  "Default=[0x0804]\r\n");
    alias.SetIniText(";Gauge\r\nCLSID=\"{1}\"\r\n");
    alias.SetLCID(0x10407); // five digits behind the prefix
    EXPECT_EQ(alias.GetIniText(), "Default=[0x10407]\r\n;Gauge\r\nCLSID=\"{1}\"\r\n\r\n");

    struct Case {
        const char* text;
        int result;
        DWORD language;
    } cases[] = {
        {"Default=[0x0409]", 1, 1033},
        {"Default=[0x0aBc]", 1, 0x0abc},
        {"Default=[0x0409]\r\nDefault=[0x0804]", 1, 0x0409}, // the first line counts
        {"Default=[0x409]", 0, 7},                           // not six characters
        {"Default=[0X0409]", 0, 7},                          // the prefix is case-sensitive
        {"Default=[0x10407]", 0, 7},
        {"Default=[0x04g9]", 1, 0x0400 + 255 * 16 + 9}, // a foreign digit counts 255
        {"Default=", 0, 7},
        {"", 0, 7},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        alias.SetIniText(c.text);
        DWORD language = 7;
        EXPECT_EQ(alias.GetLCID(language), c.result);
        EXPECT_EQ(language, c.language);
    }

    // Language 0 is the system's default language.
    talvor::platform::SetSystemDefaultLanguage(0x0c0a);
    alias.SetIniText("");
    alias.SetLCID(0);
    talvor::platform::SetSystemDefaultLanguage(0);
    EXPECT_EQ(alias.GetIniText(), "Default=[0x0c0a]\r\n\r\n");
}

TEST(AliasFile, FilesLieInOcxAliasBesideTheExecutable) {
    AliasFolder folder;
    ControlNames names;
    AliasProbe alias;
    CString root;
    alias.GetRootPath(root);
    EXPECT_EQ(root, folder.Root().c_str());

    EXPECT_EQ(alias.GetFilePathName(GaugeId),
              (folder.AliasPath("Sample Gauge Control.ini")).c_str());
    EXPECT_EQ(alias.GetFilePathName("{22222222-0000-0000-0000-000000000000}"),
              (folder.AliasPath("List_Box _2_.ini")).c_str());
    // The form's own identifier, in any case, and no identifier at all never ask for a name.
    EXPECT_EQ(alias.GetFilePathName("{d548483f-01fa-4037-b0f5-b90f5db46d20}"),
              (folder.AliasPath("Orvane 2_0 Form.ini")).c_str());
    EXPECT_EQ(alias.GetFilePathName(nullptr), (folder.AliasPath("Orvane 2_0 Form.ini")).c_str());
    EXPECT_EQ(alias.GetFilePathName(""), (folder.AliasPath("Orvane 2_0 Form.ini")).c_str());
    EXPECT_EQ(alias.GetFilePathName("{99999999-0000-0000-0000-000000000000}"), "");
}

TEST(AliasFile, LoadNormalisesAndAFailedLoadLeavesTheNameAndAnEmptyText) {
    AliasFolder folder;
    ControlNames names;
    folder.Write("Sample Gauge Control.ini",
                 "Default=[0x0804]\n[.Properties]\nName=\"Caption\"\n[0x0804]\nAlias=\"T\"\n"
                 "\0after the zero byte"s);
    AliasProbe alias;
    ASSERT_EQ(alias.LoadFromCLSID(GaugeId), 1);
    EXPECT_EQ(alias.GetIniText(),
              "Default=[0x0804]\r\n\r\n[.Properties]\r\n\r\nName=\"Caption\"\r\n"
              "[0x0804]\r\nAlias=\"T\"\r\n");
    EXPECT_EQ(alias.GetFileName(), folder.AliasPath("Sample Gauge Control.ini").c_str());

    const std::string missing = folder.AliasPath("missing.ini");
    EXPECT_EQ(alias.LoadFromFile(missing.c_str()), 0);
    EXPECT_EQ(alias.GetFileName(), missing.c_str());
    EXPECT_EQ(alias.GetIniText(), "");
    // A control without a display name loads the empty path.
    EXPECT_EQ(alias.LoadFromCLSID("{99999999-0000-0000-0000-000000000000}"), 0);
    EXPECT_EQ(alias.GetFileName(), "");
    EXPECT_EQ(alias.LoadFromFile(nullptr), 0);
}

TEST(AliasFile, IdentifiersGivenAsGuidsGoThroughTheirUpperCaseText) {
    AliasFolder folder;
    ControlNames names;
    const GUID lettered = talvor::platform::MakeGuid(LetteredId);
    folder.Write("Lettered Control.ini", "Default=[0x0407]\n");
    AliasProbe alias;
    ASSERT_EQ(alias.LoadFromCLSID(lettered), 1);
    EXPECT_EQ(alias.GetFileName(), folder.AliasPath("Lettered Control.ini").c_str());
    alias.SetCLSID(lettered);
    EXPECT_EQ(alias.GetCLSID(), "{A1B2C3D4-0000-4000-8000-00000000ABCD}");
    EXPECT_EQ(alias.GetIniText(), ";Lettered Control\r\nCLSID=\"{A1B2C3D4-0000-4000-8000-"
                                  "00000000ABCD}\"\r\nDefault=[0x0407]\r\n\r\n");
    // The null identifier has no display name: nothing to load, nothing written.
    EXPECT_EQ(alias.LoadFromCLSID(GUID_NULL), 0);
    alias.SetCLSID(GUID_NULL);
    EXPECT_EQ(alias.GetIniText(), "");
}

TEST(AliasFile, SaveWritesExactlyTheTextAndNeverLosesTheOldFile) {
    AliasFolder folder;
    AliasProbe alias;
    const std::string path = folder.AliasPath("Gauge.ini");
    alias.SetIniText("Default=[0x0804]\r\nno line end at the end");
    ASSERT_EQ(alias.SaveToFile(path.c_str()), 1);
    EXPECT_EQ(folder.Read("Gauge.ini"), "Default=[0x0804]\r\nno line end at the end");
    EXPECT_EQ(alias.GetFileName(), path.c_str());

    // An interrupted write leaves the old file whole, the file name as it was, and says why.
    alias.SetIniText("the new text");
    alias.SetFileName("before");
    talvor::platform::FailNthWrite(1);
    EXPECT_EQ(alias.SaveToFile(path.c_str()), 0);
    talvor::platform::FailNthWrite(0);
    EXPECT_EQ(folder.Read("Gauge.ini"), "Default=[0x0804]\r\nno line end at the end");
    EXPECT_EQ(alias.GetFileName(), "before");
    EXPECT_FALSE(alias.GetLastSaveError().IsEmpty());

    // The folder isn't made for the file.
    const std::string elsewhere = folder.Root() + "/NoSuchFolder/Gauge.ini";
    EXPECT_EQ(alias.SaveToFile(elsewhere.c_str()), 0);
    EXPECT_FALSE(talvor::platform::FileExists(folder.Root() + "/NoSuchFolder"));
    EXPECT_NE(alias.GetLastSaveError().Find("NoSuchFolder"), -1);
    EXPECT_EQ(alias.SaveToFile(""), 0);
}
