// The growing arrays of the framework.
#include "platform/strings/arrays.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

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

// Removing from the front moves the start instead of shifting the rest; every operation
// afterwards must see the same elements a plain vector would hold.
TEST(CArray, FrontRemovalsKeepEveryOperationInStep) {
    CStringArray array;
    std::vector<std::string> model;
    for (int i = 0; i < 40; ++i) {
        array.Add(CString(std::to_string(i)));
        model.push_back(std::to_string(i));
    }
    auto same = [&](const char* step) {
        SCOPED_TRACE(step);
        ASSERT_EQ(array.GetSize(), static_cast<INT_PTR>(model.size()));
        for (std::size_t i = 0; i < model.size(); ++i)
            EXPECT_EQ(array[static_cast<INT_PTR>(i)], model[i].c_str());
        if (!model.empty())
            EXPECT_EQ(array.GetData()[0], model[0].c_str());
    };
    for (int round = 0; round < 30; ++round) { // move-to-back, as a lookup cache does
        const CString first = array[0];
        array.RemoveAt(0);
        array.Add(first);
        std::rotate(model.begin(), model.begin() + 1, model.end());
    }
    same("after moving to the back");
    array.RemoveAt(0, 3);
    model.erase(model.begin(), model.begin() + 3);
    array.InsertAt(2, CString("x"));
    model.insert(model.begin() + 2, "x");
    array.RemoveAt(5, 2);
    model.erase(model.begin() + 5, model.begin() + 7);
    same("after inserting and removing in the middle");
    CStringArray copy;
    copy.Append(array);
    copy.Append(copy);
    EXPECT_EQ(copy.GetSize(), 2 * array.GetSize());
    EXPECT_EQ(copy[array.GetSize()], model[0].c_str());
    array.RemoveAt(0, array.GetSize());
    model.clear();
    same("emptied from the front");
    array.SetAtGrow(2, CString("z"));
    EXPECT_EQ(array.GetSize(), 3);
    EXPECT_EQ(array[2], "z");
    EXPECT_EQ(array[0], "");
}
