// talvor render: the picture is the editor's view at the size asked, and bad input is a user
// error with a message.
#include "platform/draw/png_file.h"
#include "tests/support/tool_run.h"

#include <gtest/gtest.h>

#include <string>
#include <unistd.h>

namespace {

using talvor::testing::RunTalvor;

std::string Sample() {
    return std::string(TALVOR_SOURCE_DIR) + "/samples/order_form.vbs";
}

TEST(RenderCommand, WritesTheEditorsViewAtTheAskedSize) {
    const std::string png = "/tmp/talvor-render-test-" + std::to_string(::getpid()) + ".png";
    const auto run = RunTalvor("render '" + Sample() + "' -o " + png +
                               " --width 320 --height 120 --line-numbers --select 0:6");
    ASSERT_EQ(run.exitCode, 0) << run.err;
    CBitmap bitmap;
    std::string error;
    ASSERT_TRUE(talvor::platform::ReadPng(png, bitmap, error)) << error;
    EXPECT_EQ(bitmap.GetWidth(), 320);
    EXPECT_EQ(bitmap.GetHeight(), 120);
    // The selection's background (the editor's default selection colour) is there.
    int selected = 0;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 320; ++x)
            selected += bitmap.GetPixelColor(x, y) == 0x800000;
    EXPECT_GT(selected, 20);
    ::unlink(png.c_str());
}

TEST(RenderCommand, BadInputIsAUserError) {
    EXPECT_EQ(RunTalvor("render /nonexistent.vbs -o /tmp/x.png").exitCode, 1);
    EXPECT_EQ(RunTalvor("render '" + Sample() + "'").exitCode, 1) << "no output given";
    EXPECT_EQ(RunTalvor("render '" + Sample() + "' -o /tmp/x.png --wrap 7").exitCode, 1);
    const auto run = RunTalvor("render '" + Sample() + "' -o /tmp/x.png --language Klingon");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("Klingon"), std::string::npos);
}

} // namespace
