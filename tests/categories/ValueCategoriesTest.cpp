// Value categories: one per distinct value, found by tolerant equality, bounded at 2048.

#include <gtest/gtest.h>

#include <cmath>

#include "drilldown/core/Drill.h"

namespace {

TEST(ValueCategories, EqualValuesShareTheFirstOnesCategory) {
    Drill d(1, 0, 0, "X");
    EXPECT_EQ(d.AddValue(2.5, 0, 1.0, ""), 1);
    EXPECT_EQ(d.AddValue(2.5 * (1 + 1e-14), 0, 2.0, ""), 2);  // equal within the tolerance
    EXPECT_EQ(d.AddValue(2.6, 0, 1.0, ""), 1);
    ASSERT_EQ(d.Categories.size(), 2u);
    const Categories& first = *d.Categories.begin();
    EXPECT_EQ(first.Upper, 2.5);
    EXPECT_EQ(first.Lower, 2.5);
    EXPECT_EQ(first.Count, 3.0);
}

TEST(ValueCategories, TheBoundTurnsTheRecordToNeatIntervals) {
    struct Case {
        const char* what;
        double nextValue;  // the value that comes behind the 2048 distinct ones
    };
    for (const Case& c : {Case{"a new value", 5000.0}, Case{"a value already held", 7.0}}) {
        SCOPED_TRACE(c.what);
        Drill d(1, 0, 0, "X");
        for (int v = 0; v < 2048; ++v)
            ASSERT_EQ(d.AddValue(v, 0, 1.0, ""), 1);
        EXPECT_EQ(d.Method, MethodDistinctValues);
        EXPECT_EQ(d.Categories.size(), 2048u);
        EXPECT_EQ(d.AddValue(c.nextValue, 0, 1.0, ""), 0);
        EXPECT_TRUE(d.Categories.empty());  // the value itself is not counted
        EXPECT_EQ(d.Method, MethodNeatIntervals);
        EXPECT_EQ(d.Type, 0);
        EXPECT_EQ(d.AddValue(1.0, 0, 1.0, ""), 1);  // collection starts again from empty
    }
}

TEST(ValueCategories, ResetCountsKeepsTheEntries) {
    Drill d(1, 0, 0, "X");
    d.AddValue(1, 0, 3.0, "");
    d.AddValue(2, 0, 4.0, "");
    d.Isset = 1;
    d.ResetCounts();
    ASSERT_EQ(d.Categories.size(), 2u);
    for (const Categories& c : d.Categories)
        EXPECT_EQ(c.Count, 0.0);
    EXPECT_EQ(d.Isset, 0);
}

// The search for a value's category gives the first category whose Upper is not below it,
// whether the value equals an Upper exactly, within the tolerance, or not at all.
TEST(ValueCategories, SearchFindsTheFirstCategoryNotBelowTheValue) {
    CategorySet set;
    for (double upper : {5.0, -1.0, 2.0, 1e9})
        set.emplace(0, 0.0, upper, "", upper);
    struct Case {
        double value;
        int position;  // 4: behind the last
    };
    const Case cases[] = {
        {-5, 0},                // below all
        {-1, 0},                // exactly the first
        {2, 1},                 // exactly a middle one
        {2 * (1 - 1e-14), 1},   // tolerantly equal, a little below
        {2 * (1 + 1e-14), 1},   // tolerantly equal, a little above
        {3, 2},                 // between two
        {1e9, 3},               // exactly the last
        {2e9, 4},               // above all
        {std::nan(""), 0},      // no number is below nothing
    };
    for (const Case& c : cases)
        EXPECT_EQ(std::distance(set.begin(), set.lower_bound(c.value)), c.position) << c.value;
    std::vector<double> uppers;
    for (const Categories& category : set)
        uppers.push_back(category.Upper);
    EXPECT_EQ(uppers, (std::vector<double>{-1, 2, 5, 1e9}));
}

} // namespace
