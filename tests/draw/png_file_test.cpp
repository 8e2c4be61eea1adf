// PNG files: a painted raster written and read back by libpng, and failures that keep files.
#include "platform/draw/dc.h"
#include "platform/draw/png_file.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string Folder() {
    std::string folder = ::testing::TempDir() + "talvor_png_" + std::to_string(::getpid());
    ::mkdir(folder.c_str(), 0755);
    return folder;
}

int FilesIn(const std::string& folder) {
    int n = 0;
    if (DIR* dir = ::opendir(folder.c_str())) {
        while (dirent* e = ::readdir(dir))
            n += e->d_name[0] != '.';
        ::closedir(dir);
    }
    return n;
}

} // namespace

TEST(WritePng, PaintedRasterReadsBackPixelForPixel) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateFilledBitmap(97, 31, RGB(250, 250, 245)));
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    dc.SelectObject(&bitmap);
    dc.FillSolidRect(CRect(0, 0, 10, 31), RGB(1, 2, 3));
    for (int x = 0; x < 97; ++x)
        dc.SetPixel(x, 30, RGB(x * 2, 255 - x, x % 7 * 30));
    CFont font;
    font.CreatePointFont(100, "DejaVu Sans Mono");
    dc.SelectObject(&font);
    dc.SetTextColor(RGB(0, 0, 255));
    dc.TextOut(12, 4, "Sub Main()", 10);

    const std::string path = Folder() + "/raster.png";
    std::string error;
    ASSERT_TRUE(talvor::platform::WritePng(bitmap, path, error)) << error;
    CBitmap back;
    ASSERT_TRUE(talvor::platform::ReadPng(path, back, error)) << error;
    ASSERT_EQ(back.GetWidth(), 97);
    ASSERT_EQ(back.GetHeight(), 31);
    EXPECT_EQ(std::memcmp(back.GetPixels(), bitmap.GetPixels(), 97 * 31 * 4), 0);
    std::remove(path.c_str());
}

TEST(WritePng, FailuresKeepTheOldFileAndLeaveNoTemporaryFile) {
    const std::string folder = Folder() + "/keep";
    ::mkdir(folder.c_str(), 0755);
    const std::string path = folder + "/old.png";
    { std::ofstream(path) << "old"; }
    std::string error;

    CBitmap empty;
    EXPECT_FALSE(talvor::platform::WritePng(empty, path, error));
    EXPECT_NE(error.find("no pixels"), std::string::npos) << error;

    CBitmap bitmap;
    bitmap.CreateFilledBitmap(4, 4, RGB(9, 9, 9));
    error.clear();
    EXPECT_FALSE(talvor::platform::WritePng(bitmap, folder + "/missing/sub.png", error));
    EXPECT_NE(error.find("missing/sub.png"), std::string::npos) << error;

    // A directory in the way: the picture is written, the rename fails, nothing is left over.
    ::mkdir((folder + "/dir.png").c_str(), 0755);
    ::mkdir((folder + "/dir.png/x").c_str(), 0755);
    EXPECT_FALSE(talvor::platform::WritePng(bitmap, folder + "/dir.png", error));
    EXPECT_EQ(FilesIn(folder), 2); // old.png and dir.png, no temporary file

    std::ifstream in(path);
    std::string text;
    in >> text;
    EXPECT_EQ(text, "old");
}

TEST(ReadPng, DamagedAndMissingFilesGiveMessages) {
    const std::string folder = Folder();
    std::string error;
    CBitmap bitmap;
    EXPECT_FALSE(talvor::platform::ReadPng(folder + "/none.png", bitmap, error));
    EXPECT_NE(error.find("none.png"), std::string::npos);

    CBitmap good;
    good.CreateFilledBitmap(40, 40, RGB(10, 200, 30));
    const std::string path = folder + "/cut.png";
    ASSERT_TRUE(talvor::platform::WritePng(good, path, error)) << error;
    ::truncate(path.c_str(), 50); // header and a piece of the image data
    error.clear();
    EXPECT_FALSE(talvor::platform::ReadPng(path, bitmap, error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(bitmap.GetWidth(), 0); // nothing half read is handed out

    { std::ofstream(path) << "not a picture at all"; }
    EXPECT_FALSE(talvor::platform::ReadPng(path, bitmap, error));
    std::remove(path.c_str());
}
