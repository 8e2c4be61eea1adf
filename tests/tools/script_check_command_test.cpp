// talvor script check as an editor or a build runs it: errors as FILE:LINE:COLUMN: message.
#include "tests/support/tool_run.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using talvor::testing::RunTalvor;

std::string WriteScript(const std::string& name, const std::string& text) {
    const std::string path = std::string(TALVOR_BINARY_DIR) + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

TEST(ScriptCheckCommand, PrintsEachErrorWhereEditorsJumpTo) {
    const std::string broken =
        WriteScript("check_broken.vbs", "Sub A\r\n  If x Then\r\nEnd Sub\r\ny = \"abc\r\nNext\r\n");
    const auto run = RunTalvor("script check " + broken);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out,
              broken + ":3:1: 'If' on line 2 is not closed: expected 'End If', found 'End Sub'\n" +
                  broken + ":4:5: unterminated string: the closing '\"' is missing on this line\n" +
                  broken + ":5:1: 'Next' without 'For'\n");
    EXPECT_EQ(run.err, "");
}

TEST(ScriptCheckCommand, CleanScriptsPassQuietly) {
    const std::string clean = WriteScript("check_clean.vbs", "Option Explicit\nDim x : x = 1\n");
    const std::string corpus = std::string(TALVOR_CORPUS_DIR) + "/vbscript/wcs__WiExport.vbs";
    const auto run = RunTalvor("script check " + clean + " " + corpus);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, "");
}

TEST(ScriptCheckCommand, JsonListsErrorsPerFile) {
    const std::string broken = WriteScript("check_json.vbs", "x = (1 +\n");
    const auto run = RunTalvor("script check --json " + broken);
    EXPECT_EQ(run.exitCode, 1);
    const nlohmann::json report = nlohmann::json::parse(run.out);
    ASSERT_EQ(report.size(), 1u);
    EXPECT_EQ(report[0]["file"], broken);
    ASSERT_EQ(report[0]["errors"].size(), 1u);
    EXPECT_EQ(report[0]["errors"][0]["line"], 1);
    EXPECT_EQ(report[0]["errors"][0]["column"], 9);
    EXPECT_EQ(report[0]["errors"][0]["length"], 0);
    EXPECT_EQ(report[0]["errors"][0]["message"], "expected an expression, found end of line");
}

TEST(ScriptCheckCommand, MissingFileAndNoArgumentAreUserErrors) {
    auto run = RunTalvor("script check /nonexistent/x.vbs");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("talvor: cannot open '/nonexistent/x.vbs'"), std::string::npos);
    run = RunTalvor("script check");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("no script given"), std::string::npos);
}

} // namespace
