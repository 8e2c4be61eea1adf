// Reading and writing members: the caches and their reload states, the layout SetAlias makes,
// and filling gaps from the alias files of other controls.
#include "tests/alias/alias_probe.h"

#include <gtest/gtest.h>

using talvor::testing::AliasFolder;
using talvor::testing::AliasProbe;

namespace {

constexpr DWORD Chinese = 0x0804;
constexpr DWORD English = 0x0409;

struct Values {
    CString alias = "-", description = "-", enumText = "-";
};

Values Look(CTalvorOcxAlias& alias, unsigned kind, const char* name, DWORD language) {
    Values v;
    alias.GetAlias(kind, name, v.alias, v.description, v.enumText, language);
    return v;
}

// The text of the sample gauge's file, built by updates in the order a user would make them.
void BuildGauge(CTalvorOcxAlias& alias) {
    alias.SetAlias(1, "Caption", "Title", "Text on the face", "", Chinese);
    alias.SetAlias(1, "Caption", "Heading", nullptr, nullptr, English);
    alias.SetAlias(1, "Value", "Reading", "", "0;Low;1;High", Chinese);
    alias.SetAlias(2, "Click", "Pressed", "", "", Chinese);
}

constexpr const char* GaugeText = "[.Properties]\r\n"
                                  "Name=\"Caption\"\r\n"
                                  "[0x0804]\r\n"
                                  "Alias=\"Title\"\r\n"
                                  "Description=\"Text on the face\"\r\n"
                                  "[0x0409]\r\n"
                                  "Alias=\"Heading\"\r\n"
                                  "\r\n"
                                  "Name=\"Value\"\r\n"
                                  "[0x0804]\r\n"
                                  "Alias=\"Reading\"\r\n"
                                  "Enum=\"0;Low;1;High\"\r\n"
                                  "\r\n"
                                  "[.Events]\r\n"
                                  "Name=\"Click\"\r\n"
                                  "[0x0804]\r\n"
                                  "Alias=\"Pressed\"\r\n"
                                  "\r\n";

} // namespace

TEST(AliasEntries, UpdatesLayEntriesOutWithOneBlankLineBetween) {
    AliasProbe alias;
    BuildGauge(alias);
    EXPECT_EQ(alias.GetIniText(), GaugeText);

    // Reading gives back what was written, in every language and kind.
    Values v = Look(alias, 1, "caption", Chinese);
    EXPECT_EQ(v.alias, "Title");
    EXPECT_EQ(v.description, "Text on the face");
    EXPECT_EQ(v.enumText, "");
    EXPECT_EQ(Look(alias, 1, "Caption", English).alias, "Heading");
    EXPECT_EQ(Look(alias, 1, "Value", Chinese).enumText, "0;Low;1;High");
    EXPECT_EQ(Look(alias, 2, "Click", Chinese).alias, "Pressed");
    // No fallback to another language, no member of another kind.
    EXPECT_EQ(Look(alias, 1, "Value", English).alias, "-");
    EXPECT_EQ(Look(alias, 3, "Click", Chinese).alias, "-");
    EXPECT_EQ(Look(alias, 9, "Click", Chinese).alias, "-");
}

TEST(AliasEntries, ABlockWrittenAgainIsReplacedWholeAndEmptyValuesRemoveIt) {
    AliasProbe alias;
    BuildGauge(alias);
    alias.SetAlias(1, "Caption", nullptr, "Only a description", nullptr, Chinese);
    Values v = Look(alias, 1, "Caption", Chinese);
    EXPECT_EQ(v.alias, ""); // not given again: lost from that language
    EXPECT_EQ(v.description, "Only a description");

    alias.SetAlias(1, "Caption", "", "", "", English);
    EXPECT_EQ(alias.GetIniText().Find("[0x0409]"), -1);
    // The entry's last block goes, and the entry with it; the section head stays.
    alias.SetAlias(1, "Caption", "", "", "", Chinese);
    alias.SetAlias(1, "Value", "", "", "", Chinese);
    EXPECT_EQ(alias.GetIniText(), "[.Properties]\r\n\r\n[.Events]\r\nName=\"Click\"\r\n"
                                  "[0x0804]\r\nAlias=\"Pressed\"\r\n\r\n");
    // No value for a member without an entry: no Name line, but the head of its section.
    alias.SetAlias(3, "Refresh", nullptr, nullptr, nullptr, Chinese);
    EXPECT_EQ(alias.GetIniText().Find("Refresh"), -1);
    EXPECT_NE(alias.GetIniText().Find("[.Methods]"), -1);
}

TEST(AliasEntries, CachesFollowTheReloadStates) {
    AliasProbe alias;
    BuildGauge(alias);
    EXPECT_EQ(alias.m_nReloadKind, 4);
    Look(alias, 1, "Caption", Chinese);
    EXPECT_EQ(alias.m_nReloadKind, 0);
    EXPECT_EQ(alias.m_arrProperties.GetSize(), 2);

    // A write marks its kind; a read of another kind keeps that mark and uses its own cache.
    alias.SetAlias(2, "Click", "Tapped", "", "", Chinese);
    EXPECT_EQ(alias.m_nReloadKind, 2);
    EXPECT_EQ(Look(alias, 1, "Value", Chinese).alias, "Reading");
    EXPECT_EQ(alias.m_nReloadKind, 2);
    EXPECT_EQ(Look(alias, 2, "Click", Chinese).alias, "Tapped");
    EXPECT_EQ(alias.m_nReloadKind, 0);

    // Two writes to different kinds before a read make all caches out of date.
    alias.SetAlias(1, "Caption", "T2", "", "", Chinese);
    alias.SetAlias(2, "Click", "Hit", "", "", Chinese);
    EXPECT_EQ(alias.m_nReloadKind, 4);
    EXPECT_EQ(Look(alias, 1, "Caption", Chinese).alias, "T2");

    // A found record moves to the back, so lookups in text order find it at the front.
    EXPECT_EQ(alias.m_arrProperties[0].strName, "Value");
    EXPECT_EQ(alias.m_arrProperties[1].strName, "Caption");

    // A change of language reloads all; a section without any entry keeps its old records.
    alias.SetIniText("[.Properties]\r\nName=\"Caption\"\r\n[0x0409]\r\nAlias=\"H\"\r\n");
    EXPECT_EQ(Look(alias, 1, "Caption", English).alias, "H");
    EXPECT_EQ(alias.m_dwCacheLanguage, English);
    EXPECT_EQ(alias.m_arrEvents.GetSize(), 1); // "Click" of before: no event entry now
}

TEST(AliasEntries, AllInfoOfASectionSkipsEntriesWithoutTheLanguage) {
    AliasProbe alias;
    CArray<tagALIAS_INFO, tagALIAS_INFO> infos;
    alias.GetAllInfo("\r\nName=\"A\"\r\n[0x0409]\r\nAlias=\"one\"\r\n;Alias=\"comment\"\r\n"
                     "Alias=\"two\"\r\nEnum=\"e\"\r\nName=\"B\"\r\n[0x0804]\r\nAlias=\"x\"\r\n"
                     "Name=C\r\n[0x0409]\r\nDescription=\"d\"\r\n",
                     English, infos);
    ASSERT_EQ(infos.GetSize(), 2);
    EXPECT_EQ(infos[0].strName, "A");
    EXPECT_EQ(infos[0].strAlias, "two"); // a later line wins; comments are skipped
    EXPECT_EQ(infos[0].strEnum, "e");
    EXPECT_EQ(infos[1].strName, ""); // a Name line without quotes
    EXPECT_EQ(infos[1].strDescription, "d");

    // A section with no entry leaves the records as they were.
    alias.GetAllInfo("\r\n\r\n", English, infos);
    EXPECT_EQ(infos.GetSize(), 2);
}

TEST(AliasEntries, OpenCasesLandInTheirOwnSectionAndEntry) {
    AliasProbe alias;
    // A section of blank lines before another section takes the new entry.
    alias.SetIniText("[.Properties]\r\n\r\n[.Events]\r\nName=\"Click\"\r\n[0x0409]\r\n"
                     "Alias=\"Hit\"\r\n");
    alias.SetAlias(1, "Caption", "Title", "", "", English);
    EXPECT_EQ(alias.GetIniText(), "[.Properties]\r\nName=\"Caption\"\r\n[0x0409]\r\n"
                                  "Alias=\"Title\"\r\n\r\n[.Events]\r\nName=\"Click\"\r\n"
                                  "[0x0409]\r\nAlias=\"Hit\"\r\n");
    EXPECT_EQ(Look(alias, 2, "Click", English).alias, "Hit");

    // An entry of its Name line alone before other entries takes the new block.
    alias.SetIniText("[.Properties]\r\nName=\"Caption\"\r\n\r\nName=\"Value\"\r\n[0x0409]\r\n"
                     "Alias=\"V\"\r\n");
    alias.SetAlias(1, "Caption", "Title", "", "", English);
    EXPECT_EQ(Look(alias, 1, "Caption", English).alias, "Title");
    EXPECT_EQ(Look(alias, 1, "Value", English).alias, "V");

    // An entry whose Name line differs in case is updated in place, keeping its spelling.
    alias.SetIniText("[.Properties]\r\nName=\"CAPTION\"\r\n[0x0409]\r\nAlias=\"Old\"\r\n");
    alias.SetAlias(1, "Caption", "New", "", "", English);
    EXPECT_EQ(alias.GetIniText(), "[.Properties]\r\nName=\"CAPTION\"\r\n[0x0409]\r\n"
                                  "Alias=\"New\"\r\n");
}

TEST(AliasEntries, GapsAreFilledFromOtherControlsFiles) {
    AliasFolder folder;
    folder.Write("A Gauge.ini", "[.Properties]\r\nName=\"Caption\"\r\n[0x0409]\r\n"
                                "Alias=\"Heading\"\r\n");
    folder.Write("B Label.ini", "[.Properties]\r\nName=\"Caption\"\r\n[0x0409]\r\n"
                                "Alias=\"Label text\"\r\nDescription=\"What it shows\"\r\n"
                                "Enum=\"0;None\"\r\n");
    folder.Write("C Later.ini", "[.Properties]\r\nName=\"Caption\"\r\n[0x0409]\r\n"
                                "Description=\"never read\"\r\n");
    AliasProbe alias;
    // An alias equal to the member's name counts as none and gives way.
    alias.SetAlias(1, "Caption", "caption", "", "", English);
    alias.GetAliasFromFiles(1, "Caption", English);
    Values v = Look(alias, 1, "Caption", English);
    EXPECT_EQ(v.alias, "Heading");
    EXPECT_EQ(v.description, "What it shows");
    EXPECT_EQ(v.enumText, "0;None");

    // A missing folder finds no file and writes the object's own values.
    AliasProbe other;
    talvor::platform::SetExecutablePath("/nonexistent/folder/program");
    other.GetAliasFromFiles(1, "Caption", English);
    talvor::platform::SetExecutablePath(folder.Root() + "/host_program");
    EXPECT_EQ(other.GetIniText(), "[.Properties]\r\n\r\n");
}
