// The growing arrays of the framework.
#include "platform/strings/arrays.h"

#include <gtest/gtest.h>

TEST(CArray, EmptyingKeepsTheGrowthSetting) {
    CStringArray lines;
    lines.SetSize(0, 32);
    lines.Add("a");
    lines.RemoveAll();
    EXPECT_EQ(lines.GetGrowBy(), 32);
    lines.SetSize(0);
    EXPECT_EQ(lines.GetGrowBy(), 32);
    EXPECT_TRUE(lines.IsEmpty());
}

TEST(CArray, InsertRemoveAndGrow) {
    CArray<long, long> ids;
    ids.Add(1);
    ids.Add(3);
    ids.InsertAt(1, 2);
    ids.InsertAt(5, 9); // past the end: grows with zeros to reach it
    ASSERT_EQ(ids.GetSize(), 6);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[3], 0);
    EXPECT_EQ(ids[5], 9);
    ids.RemoveAt(3, 2);
    EXPECT_EQ(ids.GetSize(), 4);
    EXPECT_EQ(ids[3], 9);
    ids.SetAtGrow(6, 7);
    EXPECT_EQ(ids.GetSize(), 7);
    EXPECT_EQ(ids.GetUpperBound(), 6);

    CStringArray a, b;
    a.Add("x");
    b.Add("y");
    b.Add("z");
    a.InsertAt(1, &b);
    a.Append(b);
    ASSERT_EQ(a.GetSize(), 5);
    EXPECT_EQ(a[1], "y");
    EXPECT_EQ(a[4], "z");
    a.Copy(b);
    EXPECT_EQ(a.GetSize(), 2);
}

TEST(CArray, SetAtGrowCopiesAnElementOfTheArrayItself) {
    CStringArray lines;
    lines.Add("first");
    lines.SetAtGrow(50, lines[0]); // the reference would dangle if growth came first
    EXPECT_EQ(lines[50], "first");
}
