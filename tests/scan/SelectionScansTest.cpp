// The subset test and the scans that follow it: boundaries of each kind of drill step, what
// casewise deletion leaves on each side, and failures.

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"

namespace {

constexpr double M = -9;

class SelectionScans : public test::AnalysisFixture {
protected:
    // Pins variable 1 to one category by hand, as a drill-down would have left it.
    void pin(int32_t method, double lower, double upper, bool missingRow = false) {
        Drill step(1, 1, 0, "X");
        step.Method = method;
        step.Categories.emplace(1, 1.0, upper, "c", lower);
        step.DrilledItem = missingRow ? 1 : 0;
        analysis->GetDrillUps()->clear();
        analysis->GetDrillUps()->insert(step);
    }
    int drilled(double x) {
        const double values[] = {0, x};
        return analysis->HasBeenDrilled(values);
    }
};

TEST_F(SelectionScans, StepBoundaries) {
    struct Case {
        const char* what;
        int32_t method;
        double lower, upper;
        bool missingRow;
        double x;
        int outside;
    };
    const std::vector<Case> cases = {
        {"intervals: lower limit out", MethodNeatIntervals, 10, 20, false, 10, 1},
        {"intervals: upper limit in", MethodNeatIntervals, 10, 20, false, 20, 0},
        {"exact intervals: inside", MethodExactIntervals, 10, 20, false, 15, 0},
        {"user limits: above", MethodUserLimits, 10, 20, false, 20.5, 1},
        {"fixed step: lower limit in", MethodFixedStep, 10, 20, false, 10, 0},
        {"fixed step: upper limit out", MethodFixedStep, 10, 20, false, 20, 1},
        {"value: exactly equal", MethodDistinctValues, 2.5, 2.5, false, 2.5, 0},
        {"value: only tolerantly equal", MethodDistinctValues, 2.5, 2.5, false,
         2.5 * (1 + 1e-14), 1},
        {"integer value", MethodIntegerValues, 3, 3, false, 3, 0},
        {"missing row keeps the missing", MethodNeatIntervals, 10, 20, true, M, 0},
        {"missing row drops the rest", MethodNeatIntervals, 10, 20, true, 15, 1},
        {"a missing value fails an interval", MethodNeatIntervals, -10, 0, false, M, 0},
    };
    open(test::makeFile({{"X", M}}, {{1}}));
    EXPECT_EQ(drilled(123), 0);  // no step: every case is inside
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        pin(c.method, c.lower, c.upper, c.missingRow);
        EXPECT_EQ(drilled(c.x), c.outside);
    }
}

// A: drill variable, B: second drill variable, R: review variable.
// Case 2 misses B, case 3 misses R.
class CasewiseSides : public test::AnalysisFixture {
protected:
    void SetUp() override {
        open(test::makeFile({{"A", M}, {"B", M}, {"R", M}},
                            {{1, 5, 100}, {1, M, 200}, {1, 6, M}, {2, 7, 400}}));
    }
};

TEST_F(CasewiseSides, WhatADroppedCaseLeavesOnEachSide) {
    struct Case {
        short md, rvmd;
        int validVar;
        int missingA, nA;
        int missingR, nR;
    };
    const std::vector<Case> cases = {
        {0, 0, 4, 0, 4, 1, 3},
        {1, 0, 4, 1, 3, 1, 3},  // case 2 is missing for A too, and still counts for R
        {0, 1, 4, 0, 4, 0, 3},  // case 3 leaves no trace on the review side
        {1, 1, 4, 1, 3, 0, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "MD " << c.md << " RVMD " << c.rvmd);
        analysis->SetMD(c.md);
        analysis->SetRVMD(c.rvmd);
        ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
        ASSERT_EQ(chooseReviewVariables({}, {3}), 1);
        ASSERT_EQ(analysis->ReadAfterDrill(0), 1);
        EXPECT_EQ(analysis->GetValidVar(), c.validVar);
        EXPECT_EQ(downRecord(1).MissingN, c.missingA);
        EXPECT_EQ(downRecord(1).N, c.nA);
        EXPECT_EQ(reviewRecord(3).MissingN, c.missingR);
        EXPECT_EQ(reviewRecord(3).N, c.nR);
    }
}

TEST_F(CasewiseSides, CountsBeforeADrillMatchThoseAfterIt) {
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    ASSERT_EQ(analysis->ReadAfterDrill(0), 1);
    std::vector<double> after;
    for (const Categories& c : downRecord(1).Categories)
        after.push_back(c.Count);
    ASSERT_EQ(analysis->ReadBeforeDrill(0), 1);
    std::vector<double> before;
    for (const Categories& c : downRecord(1).Categories)
        before.push_back(c.Count);
    EXPECT_EQ(before, after);
    EXPECT_EQ(before, (std::vector<double>{3, 1}));
    double intervals = 0;
    for (const Categories& c : downRecord(2).Categories)
        intervals += c.Count;
    EXPECT_EQ(intervals, 3);  // B's three valid values are now counted
    EXPECT_EQ(downRecord(2).Isset, 1);
}

TEST_F(CasewiseSides, PendingRescanIsServedBeforeCounting) {
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    analysis->SetMD(1);
    analysis->NeedsRescan = 1;
    ASSERT_EQ(analysis->ReadBeforeDrill(0), 1);
    EXPECT_EQ(analysis->NeedsRescan, 0);
    EXPECT_EQ(downRecord(1).MissingN, 1);  // the casewise rule is in force now
    EXPECT_EQ(downRecord(1).Categories.begin()->Count, 2);
}

TEST_F(CasewiseSides, FailuresOfTheSelectionScans) {
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    const Drill before = downRecord(1);
    const std::size_t blocks = session.memory().outstandingBlocks();

    progress.breakAtCall(3);
    EXPECT_EQ(analysis->ReadAfterDrill(0), 0);
    EXPECT_TRUE(downRecord(1).Categories.empty());   // erased at the start
    EXPECT_EQ(downRecord(1).N, before.N);            // moments keep their old values
    EXPECT_EQ(analysis->GetValidVar(), 2);           // the cases reached
    EXPECT_TRUE(takeMessages().empty());

    ASSERT_EQ(analysis->ReadAfterDrill(0), 1);
    session.memory().failAllocation(1);
    EXPECT_EQ(analysis->ReadBeforeDrill(0), 0);
    EXPECT_EQ(takeMessages().size(), 1u);
    EXPECT_EQ(downRecord(1).Isset, 0);
    for (const Categories& c : downRecord(1).Categories)
        EXPECT_EQ(c.Count, 0);

    session.memory().failAllocation(1);
    EXPECT_EQ(analysis->ReadAfterDrill(0), 0);
    EXPECT_EQ(takeMessages().size(), 1u);
    EXPECT_EQ(session.memory().outstandingBlocks(), blocks);
}

} // namespace
