// The record of one variable: defaults, ordering and its small operations.

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "drilldown/core/Drill.h"

namespace {

TEST(DrillRecord, TypeChoosesTheDefaultMethod) {
    const Drill categorical(3, 0, 0, "A");
    const Drill continuous(4, 1, 1, "B");
    const Drill nonzeroType(5, 7, 2, "C");
    EXPECT_EQ(categorical.Method, MethodDistinctValues);
    EXPECT_EQ(continuous.Method, MethodNeatIntervals);
    EXPECT_EQ(nonzeroType.Method, MethodNeatIntervals);
    // Steps start at the minimum by default: see CategorisationPage's
    // StepStartsAtTheMinimumUntilUnchecked.
    EXPECT_EQ(std::tuple(continuous.NeatN, continuous.ExactN, continuous.DrilledItem),
              std::tuple(10, 10, -1));
}

TEST(DrillRecord, StdDevFollowsTheCaseCount) {
    struct Case {
        int32_t n;
        double ss;
        double expected;
    };
    for (const Case& c : {Case{0, 5, -1.0}, Case{1, 5, 0.0}, Case{5, 10, std::sqrt(2.5)}}) {
        Drill d(1, 1, 0, "X");
        d.N = c.n;
        d.SS = c.ss;
        EXPECT_DOUBLE_EQ(d.StdDev(), c.expected) << c.n;
    }
}

TEST(DrillRecord, MethodSettingsWriteOneNumberToBothCounts) {
    Drill d(1, 1, 0, "X");
    d.SetMethod(MethodExactIntervals, 7, 0, 2.5, -1);
    EXPECT_EQ(d.ExactN, 7);
    EXPECT_EQ(d.NeatN, 7);
    int32_t type, n, atMinimum;
    double step, start;
    EXPECT_EQ(d.GetMethod(type, n, atMinimum, step, start), MethodExactIntervals);
    // type is the variable's type, not its method
    EXPECT_EQ(std::tuple(type, n, atMinimum, step, start), std::tuple(1, 7, 0, 2.5, -1.0));
    d.ExactN = 3;  // n is ExactN only for method 1
    d.Method = MethodNeatIntervals;
    d.GetMethod(type, n, atMinimum, step, start);
    EXPECT_EQ(n, 7);
}

TEST(DrillRecord, SetsOrderBySignedOrderAndRefuseDuplicates) {
    DrillSet set;
    set.emplace(1, 0, 2, "two");
    set.emplace(2, 0, -1, "minus one");
    set.emplace(3, 0, 0, "zero");
    EXPECT_FALSE(set.emplace(4, 0, 0, "another zero").second);
    std::vector<int16_t> variables;
    for (const Drill& d : set)
        variables.push_back(d.Variable);
    EXPECT_EQ(variables, (std::vector<int16_t>{2, 3, 1}));
}

TEST(DrillRecord, CategoriesWithEqualUpperStandOnce) {
    CategorySet set;
    set.emplace(1, 1.0, 5.0, "first", 0.0);
    EXPECT_FALSE(set.emplace(1, 2.0, 5.0 * (1 + 1e-14), "second", 0.0).second);
    ASSERT_EQ(set.size(), 1u);
    EXPECT_EQ(set.begin()->Name, "first");
}

} // namespace
