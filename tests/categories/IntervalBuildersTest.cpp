// The interval builders: limits, labels and the boundary rules of counting into intervals.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "drilldown/core/Drill.h"
#include "drilldown/host/RealNumbers.h"
#include "support/AnalysisFixture.h"

namespace {

struct Interval {
    double lower;
    double upper;
    std::string name;
    double count = 0;
};

std::vector<Interval> intervalsOf(const Drill& d) {
    std::vector<Interval> out;
    for (const Categories& c : d.Categories)
        out.push_back({c.Lower, c.Upper, c.Name, c.Count});
    return out;
}

Drill continuous(double min, double max) {
    Drill d(1, 1, 0, "X");
    d.Min = min;
    d.Max = max;
    return d;
}

class IntervalBuilders : public test::AnalysisFixture {
protected:
    IntervalBuilders() { open(test::makeFile({{"X"}}, {})); }
};

struct BuilderCase {
    const char* what;
    double min, max;
    int32_t method, n, atMinimum;
    double step, start;
    std::vector<double> limits;  // method 5
    int result;
    std::vector<Interval> expected;
};

int build(Drill& d) {
    switch (d.Method) {
    case MethodExactIntervals:
        return d.BuildExactIntervals();
    case MethodFixedStep:
        return d.BuildStepIntervals();
    case MethodUserLimits:
        return d.BuildUserIntervals();
    default:
        return d.BuildNeatIntervals();
    }
}

TEST_F(IntervalBuilders, LimitsAndLabels) {
    const std::vector<BuilderCase> cases = {
        {"exact: centres of the end intervals on Min and Max", 0, 9, 1, 4, 1, 1, 0, {}, 1,
         {{-1.5, 1.5, "-1.5<x<=1.5"}, {1.5, 4.5, "1.5<x<=4.5"}, {4.5, 7.5, "4.5<x<=7.5"},
          {7.5, 10.5, "7.5<x<=10.5"}}},
        {"exact with two intervals", 0, 10, 1, 2, 1, 1, 0, {}, 1,
         {{-5, 5, "-5<x<=5"}, {5, 15, "5<x<=15"}}},
        {"exact: one value", 5, 5, 1, 10, 1, 1, 0, {}, 1, {{4, 5, "x=5"}}},
        {"neat: one value", 5, 5, 2, 10, 1, 1, 0, {}, 1, {{4, 5, "x=5"}}},
        {"exact: no valid value", 1.7e308, -1.7e308, 1, 10, 1, 1, 0, {}, 0, {}},
        {"neat: no valid value", 1.7e308, -1.7e308, 2, 10, 1, 1, 0, {}, 0, {}},
        {"exact: fewer than one interval", 0, 10, 1, 0, 1, 1, 0, {}, -1, {}},
        {"step from the minimum", 0, 10, 3, 10, 1, 5, 0, {}, 1,
         {{0, 5, "0<=x<5"}, {5, 10, "5<=x<10"}, {10, 15, "10<=x<15"}}},
        {"step from a first limit", 0, 10, 3, 10, 0, 4, -2, {}, 1,
         {{-2, 2, "-2<=x<2"}, {2, 6, "2<=x<6"}, {6, 10, "6<=x<10"}, {10, 14, "10<=x<14"}}},
        {"step: first limit above Max", 0, 10, 3, 10, 0, 1, 100, {}, 1, {}},
        {"step: one value", 5, 5, 3, 10, 1, 1, 0, {}, 1, {{5, 5, "5"}}},
        {"step: no valid value", 1.7e308, -1.7e308, 3, 10, 1, 1, 0, {}, 1, {}},
        {"step of zero is refused", 0, 10, 3, 10, 1, 0, 0, {}, 0, {}},
        {"step lost in the addition near 2^60 is refused", 0x1p60, 0x1p60 + 0x120000, 3, 10, 1,
         127, 0, {}, 0, {}},
        {"step finer than the table can hold is refused", 0, 10, 3, 10, 1, 1e-300, 0, {}, 0, {}},
        {"first limit far below the values is refused", 0, 10, 3, 10, 0, 1, -1e300, {}, 0, {}},
        {"user limits widen the open ends", 0, 10, 5, 10, 1, 1, 0, {2, 2.5, 5}, 1,
         {{-1, 2, "x<=2"}, {2, 2.5, "2<x<=2.5"}, {2.5, 5, "2.5<x<=5"}, {5, 11, "5<x"}}},
        {"user: one limit below Max", 0, 10, 5, 10, 1, 1, 0, {3}, 1,
         {{0, 3, "x<=3"}, {3, 10, "3<x"}}},
        {"user: one limit not below Max keeps one category", 0, 2, 5, 10, 1, 1, 0, {3}, 1,
         {{0, 3, "x<=3"}}},
        {"user: no limits", 0, 10, 5, 10, 1, 1, 0, {}, 0, {}},
    };
    for (const BuilderCase& c : cases) {
        SCOPED_TRACE(c.what);
        Drill d = continuous(c.min, c.max);
        d.SetMethod(c.method, c.n, c.atMinimum, c.step, c.start);
        d.SetUserLimits(c.limits.data(), static_cast<int>(c.limits.size()));
        d.Isset = 1;
        EXPECT_EQ(build(d), c.result);
        EXPECT_EQ(d.Isset, 0);
        const std::vector<Interval> got = intervalsOf(d);
        ASSERT_EQ(got.size(), c.expected.size());
        for (std::size_t i = 0; i < got.size(); ++i) {
            EXPECT_NEAR(got[i].lower, c.expected[i].lower, 1e-12) << i;
            EXPECT_NEAR(got[i].upper, c.expected[i].upper, 1e-12) << i;
            EXPECT_EQ(got[i].name, c.expected[i].name) << i;
            // User intervals start counted once; the others start empty.
            EXPECT_EQ(got[i].count, c.method == MethodUserLimits ? 1.0 : 0.0) << i;
        }
    }
}

// Neat intervals: every value of the range falls into exactly one interval lower < x <= upper,
// the first of which starts strictly below the minimum, over ranges whose ends fall on
// multiples of the step and ranges whose ends do not.
TEST_F(IntervalBuilders, NeatIntervalsCoverTheRangeWithTheirOwnRule) {
    const std::vector<std::pair<double, double>> ranges = {
        {0, 100}, {0.3, 0.9}, {-5, -1}, {1e6, 1e6 + 7}, {12.5, 97.25}, {-3.2, 8.8}, {1, 2}};
    for (const auto& [min, max] : ranges) {
        SCOPED_TRACE(testing::Message() << min << ".." << max);
        Drill d = continuous(min, max);
        ASSERT_EQ(d.BuildNeatIntervals(), 1);
        ASSERT_GE(d.Categories.size(), 2u);
        EXPECT_LT(d.Categories.begin()->Lower, min);
        EXPECT_GE(d.Categories.rbegin()->Upper, max);
        double previousUpper = d.Categories.begin()->Lower;
        for (const Categories& c : d.Categories) {
            EXPECT_EQ(c.Lower, previousUpper);
            previousUpper = c.Upper;
        }
        for (int k = 0; k <= 40; ++k) {
            const double x = min + (max - min) * k / 40;
            const auto holding = std::count_if(d.Categories.begin(), d.Categories.end(),
                                               [&](const Categories& c) {
                                                   return c.Lower < x && x <= c.Upper;
                                               });
            EXPECT_EQ(holding, 1) << x;
        }
    }
}

TEST_F(IntervalBuilders, CategoriseDispatchesOnTheMethod) {
    Drill d = continuous(0, 10);
    d.Categories.emplace(1, 3.0, 4.0, "kept", 2.0);
    d.Method = 6;
    d.Categorise();
    ASSERT_EQ(d.Categories.size(), 1u);  // an unknown method leaves the set alone
    EXPECT_EQ(d.Categories.begin()->Name, "kept");
    for (int32_t method : {MethodDistinctValues, MethodIntegerValues}) {
        d.Method = method;
        d.Isset = 1;
        d.Categorise();
        EXPECT_TRUE(d.Categories.empty());
        EXPECT_EQ(d.Isset, 0);
    }
}

// Nanosecond time stamps lie near 2^60, where a step of 127 is lost in the addition (the
// builder's table above): the analysis says why the variable has no intervals.
TEST_F(IntervalBuilders, AStepThatCannotCutTheRangeIsToldToTheUser) {
    open(test::makeFile({{"T"}}, {{0x1p60}, {0x1p60 + 0x800000}, {0x1p60 + 0x1000000}}));
    ASSERT_EQ(chooseDrillVariables({}, {1}), 1);
    takeMessages();
    Drill& record = const_cast<Drill&>(downRecord(1));
    record.SetMethod(MethodFixedStep, 0, 1, 127, 0);
    analysis->Recategorise(record);
    EXPECT_TRUE(record.Categories.empty());
    const std::vector<std::string> said = takeMessages();
    ASSERT_EQ(said.size(), 1u);
    EXPECT_NE(said[0].find("Les intervalles de T ne peuvent pas être construits avec un pas de "
                           "127 à partir de 1.152921505e+18"),
              std::string::npos)
        << said[0];
    record.SetMethod(MethodFixedStep, 0, 1, 0x400000, 0);
    analysis->Recategorise(record);
    EXPECT_EQ(record.Categories.size(), 5u);
    EXPECT_TRUE(takeMessages().empty());
}

struct CountCase {
    const char* what;
    int32_t method;
    double value;
    int expectedInterval;  // -1: counted nowhere
};

TEST_F(IntervalBuilders, AddToIntervalBoundaries) {
    const std::vector<CountCase> cases = {
        {"method 3: a lower limit belongs to its interval", MethodFixedStep, 5, 1},
        {"method 1: an upper limit belongs to its interval", MethodExactIntervals, 5, 0},
        {"method 5: an upper limit belongs to its interval", MethodUserLimits, 5, 0},
        {"below the first interval lands in it", MethodExactIntervals, -100, 0},
        {"method 3: below the first lands in it", MethodFixedStep, -100, 0},
        {"above the last is counted nowhere", MethodExactIntervals, 11, -1},
        {"method 3: the last upper limit is out", MethodFixedStep, 10, -1},
    };
    for (const CountCase& c : cases) {
        SCOPED_TRACE(c.what);
        Drill d = continuous(0, 10);
        d.Method = c.method;
        d.Categories.emplace(1, 0.0, 5.0, "a", 0.0);
        d.Categories.emplace(1, 0.0, 10.0, "b", 5.0);
        d.AddToInterval(c.value, 2.5);
        int i = 0;
        for (const Categories& category : d.Categories)
            EXPECT_EQ(category.Count, i++ == c.expectedInterval ? 2.5 : 0.0);
    }
}

} // namespace
