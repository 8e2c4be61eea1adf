// talvor typelib dump and props on the sample controls and on Wine's libraries.
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using talvor::testing::RunTalvor;

namespace {

const std::string Controls = TALVOR_SAMPLE_TLB_DIR "/talvor_controls.ocx";
const std::string Manifests = TALVOR_SOURCE_DIR "/samples/controls/";

} // namespace

TEST(TypelibCommand, PropsGivesKindsWithNamedValues) {
    const auto run = RunTalvor("typelib props " + Controls + " Gauge --manifest " + Manifests +
                               "gauge.manifest");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Style                 4 VP_PROP_ENUM     gsNeedle=0, gsBar=1, "
                           "gsSegments=2\n"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find("Value                10 VP_PROP_PAGE"), std::string::npos);
    EXPECT_NE(run.out.find("Scale                 4 VP_PROP_ENUM     Linear=1, Logarithmic=10"),
              std::string::npos);
    // Without the manifest the control has no page and no list of its own.
    const auto plain = RunTalvor("typelib props " + Controls + " Gauge --json");
    ASSERT_EQ(plain.exitCode, 0) << plain.err;
    const auto json = nlohmann::json::parse(plain.out);
    ASSERT_TRUE(json.is_array());
    EXPECT_EQ(json[0]["name"], "Value");
    EXPECT_EQ(json[0]["kind"], 7);
    EXPECT_EQ(json[3]["name"], "Style");
    EXPECT_EQ(json[3]["values"].size(), 3u);
}

TEST(TypelibCommand, DumpListsEnumerationsPropertiesMethodsAndEvents) {
    const auto run = RunTalvor("typelib dump " + Controls + " --json");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto json = nlohmann::json::parse(run.out);
    bool sawEvent = false, sawConstant = false;
    for (const auto& section : json) {
        for (const auto& record : section["records"]) {
            if (record["member"] == "Gauge1_Change") {
                sawEvent = true;
                EXPECT_EQ(record["kind"], 4);
            }
            if (record["member"] == "Enum ListSorting::lsDescending") {
                sawConstant = true;
                EXPECT_EQ(record["constant"], "-1");
            }
        }
    }
    EXPECT_TRUE(sawEvent);
    EXPECT_TRUE(sawConstant);
    const auto text = RunTalvor("typelib dump " + Controls);
    EXPECT_NE(text.out.find("  property  long Value  -- The value shown\n"), std::string::npos);
}

TEST(TypelibCommand, BadInputIsAUserError) {
    const auto missing = RunTalvor("typelib dump /nonexistent/x.tlb");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("talvor: /nonexistent/x.tlb: typelib: can't read"),
              std::string::npos)
        << missing.err;
    const auto notLib = RunTalvor("typelib dump " TALVOR_SOURCE_DIR "/README.md");
    EXPECT_EQ(notLib.exitCode, 1);
    EXPECT_NE(notLib.err.find("no \"MSFT\" signature"), std::string::npos);
    const auto noClass = RunTalvor("typelib props " + Controls + " Nothing");
    EXPECT_EQ(noClass.exitCode, 1);
    EXPECT_NE(noClass.err.find("no class 'Nothing'"), std::string::npos);
    EXPECT_EQ(RunTalvor("typelib frobnicate").exitCode, 1);
}
