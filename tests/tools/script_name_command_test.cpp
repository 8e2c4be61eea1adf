// talvor script rename, check-name, uses and cmd-ids on the sample order form.
#include "tests/support/tool_run.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace {

using talvor::testing::ToolRun;

ToolRun Script(const std::string& arguments) {
    ToolRun run = talvor::testing::RunTalvor("script " + arguments);
    run.out += run.err;
    return run;
}

const std::string Form = std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.json";
const std::string Sample = std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.vbs";
const std::string Both = Form + " " + Sample;

std::string ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

std::size_t Count(const std::string& text, const std::string& word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        ++count;
    return count;
}

TEST(ScriptNameCommands, RenameTakesHandlersAlongAndComesBack) {
    const std::string original = ReadAll(Sample);
    ToolRun renamed = Script("rename " + Both + " txtQuantity txtAmount");
    ASSERT_EQ(renamed.exitCode, 0) << renamed.out;
    EXPECT_EQ(Count(renamed.out, "txtQuantity"), 0u);
    EXPECT_NE(renamed.out.find("Sub txtAmount_KeyPress(KeyAscii)"), std::string::npos);
    EXPECT_EQ(Count(renamed.out, "txtAmount"), Count(original, "txtQuantity"));

    const std::string once = std::string(TALVOR_BINARY_DIR) + "/script_renamed.vbs";
    ASSERT_EQ(Script("rename " + Both + " txtQuantity txtAmount --output " + once).exitCode, 0);
    // The form still calls the control txtQuantity, so on the way back txtAmount has no
    // events and its handler heads stay.
    ToolRun back = Script("rename " + Form + " " + once + " txtAmount txtQuantity");
    std::string expected = original;
    for (const char* head : {"Sub txtQuantity_KeyPress", "Sub txtQuantity_Change"})
        expected.replace(expected.find(head), std::string(head).size(),
                         std::string(head).replace(4, 11, "txtAmount"));
    EXPECT_EQ(back.out, expected);
}

TEST(ScriptNameCommands, CheckNameSaysWhyANameIsTaken) {
    ToolRun control = Script("check-name " + Both + " CMDOK");
    EXPECT_EQ(control.exitCode, 1);
    EXPECT_NE(control.out.find("control"), std::string::npos) << control.out;
    ToolRun local = Script("check-name " + Both + " total");
    EXPECT_EQ(local.exitCode, 1);
    EXPECT_NE(local.out.find("WriteOrder"), std::string::npos) << local.out;
    ToolRun free = Script("check-name " + Both + " orderCount");
    EXPECT_EQ(free.exitCode, 0);
    EXPECT_NE(free.out.find("is free"), std::string::npos);
    EXPECT_EQ(Script("check-name " + Both + " KeyAscii --scope txtQuantity_KeyPress").exitCode, 1);
    EXPECT_EQ(Script("check-name " + Both + " KeyAscii --scope cmdOK_Click").exitCode, 0);
    EXPECT_EQ(Script("check-name " + Both + " x --scope NoSuchProcedure").exitCode, 1);
    EXPECT_EQ(Script("check-name " + Both + " 9lives").exitCode, 1);
}

TEST(ScriptNameCommands, UsesListsThePlaces) {
    ToolRun uses = Script("uses " + Both + " txtQuantity");
    EXPECT_EQ(uses.exitCode, 0);
    EXPECT_EQ(uses.out, "handler  lstProducts_Click\nsub      UpdateTotal\nsub      ClearOrder\n");
    ToolRun json = Script("uses " + Both + " txtQuantity --json");
    EXPECT_NE(json.out.find("\"strOwner\": \"UpdateTotal\""), std::string::npos) << json.out;
    EXPECT_NE(Script("uses " + Both + " nothingLikeThis").out.find("is not used"),
              std::string::npos);
}

TEST(ScriptNameCommands, CommandIdsAreRenumberedOrRemoved) {
    ToolRun renumbered = Script("cmd-ids " + Sample + " 1002 2002");
    EXPECT_EQ(renumbered.exitCode, 0);
    EXPECT_EQ(Count(renumbered.out, "Case 1002"), 0u);
    EXPECT_EQ(Count(renumbered.out, "Case 2002"), 3u); // command, its UI entry, the new default
    ToolRun removed = Script("cmd-ids " + Sample + " 1001 --delete");
    EXPECT_EQ(removed.exitCode, 0);
    EXPECT_EQ(Count(removed.out, "1001"), 0u);
    EXPECT_EQ(Script("cmd-ids " + Sample + " x 3").exitCode, 1);
    EXPECT_EQ(Script("cmd-ids " + Sample + " 1").exitCode, 1);
    EXPECT_EQ(Script("cmd-ids /nonexistent.vbs 1 2").exitCode, 1);
}

TEST(ScriptNameCommands, AFormMayNameEachControlsTypeLibraryAndClass) {
    const std::string form = std::string(TALVOR_BINARY_DIR) + "/script_typelib_form.json";
    const std::string script = std::string(TALVOR_BINARY_DIR) + "/script_typelib_form.vbs";
    std::ofstream(form) << "{\"controls\": [{\"name\": \"lstItems\", \"typelib\": \""
                        << TALVOR_SAMPLE_TLB_DIR
                        << "/talvor_controls.tlb\", \"class\": \"listbox\"}]}";
    std::ofstream(script, std::ios::binary)
        << "Sub lstItems_ItemCheck(item)\r\nx = lstItems.Count\r\nEnd Sub\r\n\r\n";
    ToolRun renamed = Script("rename " + form + " " + script + " lstItems lstGoods");
    EXPECT_EQ(renamed.exitCode, 0);
    EXPECT_EQ(renamed.out, "Sub lstGoods_ItemCheck(item)\r\nx = lstGoods.Count\r\nEnd Sub\r\n\r\n");

    std::ofstream(form) << "{\"controls\": [{\"name\": \"a\", \"typelib\": \"/nonexistent.tlb\", "
                           "\"class\": \"ListBox\"}]}";
    ToolRun missing = Script("rename " + form + " " + script + " a b");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.out.find("controls[0].typelib"), std::string::npos) << missing.out;
}

} // namespace
