// The recent file list over the application profile.
#include "platform/app/profile.h"
#include "platform/app/recent_file_list.h"

#include <gtest/gtest.h>

namespace {

TEST(RecentFileList, ReadsWritesAndMovesEntriesUp) {
    AfxGetApp()->WriteProfileString("Recent", "File2", "/b/two.vbs");
    CRecentFileList list(1, "Recent", "File%d", 3, 12);
    list.ReadList();
    EXPECT_EQ(list[0], CString(""));
    EXPECT_EQ(list[1], CString("/b/two.vbs"));
    list.Add("/c/a-rather-long-name.vbs");
    list.Add("/b/two.vbs");
    EXPECT_EQ(list[0], CString("/b/two.vbs")) << "an entry there already moves up";
    EXPECT_EQ(list[1], CString("/c/a-rather-long-name.vbs"));
    EXPECT_EQ(list[2], CString(""));
    CString shown;
    EXPECT_TRUE(list.GetDisplayName(shown, 1));
    EXPECT_EQ(shown, CString("a-rat....vbs"));
    EXPECT_FALSE(list.GetDisplayName(shown, 2));
    list.WriteList();
    EXPECT_EQ(AfxGetApp()->GetProfileString("Recent", "File1"), CString("/b/two.vbs"));
    EXPECT_EQ(AfxGetApp()->GetProfileString("Recent", "File3", "none"), CString("none"));
    list.Remove(0);
    EXPECT_EQ(list[0], CString("/c/a-rather-long-name.vbs"));
}

} // namespace
