// The first look at the chosen variables: counts, moments and value categories of ReadDDNV
// and ReadRVV on small files whose every number is computed by hand.

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"

namespace {

constexpr double M = -9;  // the missing code of every variable below

class VariableScans : public test::AnalysisFixture {
protected:
    // A: categorical 1/2, X: continuous, W: weight.
    void openSmall(bool weighted) {
        wb::DataFile f = test::makeFile({{"A", M}, {"X", M}, {"W", M}},
                                        {{1, 10, 2}, {2, 40, 1}, {1, M, 1}, {M, 7, 0}, {2, 5, -1}});
        if (weighted)
            f.setWeightVariable(3);
        open(std::move(f));
    }
};

TEST_F(VariableScans, WeightedOnePassMoments) {
    openSmall(true);
    ASSERT_EQ(chooseDrillVariables({}, {2}), 1);
    // Weights 2, 1, 1, 0, -1: the last two cases count nowhere.
    const Drill& x = downRecord(2);
    EXPECT_EQ(x.N, 2);
    EXPECT_EQ(x.WeightedN, 3);
    EXPECT_EQ(x.MissingN, 1);
    EXPECT_EQ(x.MCount, 1);
    EXPECT_DOUBLE_EQ(x.Mean, 20);  // (2*10 + 40) / 3
    EXPECT_DOUBLE_EQ(x.SS, 600);   // 2*(10-20)^2 + (40-20)^2
    EXPECT_EQ(x.Min, 10);
    EXPECT_EQ(x.Max, 40);
    EXPECT_EQ(analysis->GetValidVar(), 3);
}

TEST_F(VariableScans, MissingDataByVariableOrCasewise) {
    struct Case {
        short md;
        int validVar;
        int missingA, missingX;
        int nA, nX;
    };
    // Unweighted: all five cases count. Case 3 misses X, case 4 misses A.
    for (const Case& c : {Case{0, 5, 1, 1, 4, 4}, Case{1, 3, 2, 2, 3, 3}}) {
        SCOPED_TRACE(c.md);
        openSmall(false);
        analysis->SetMD(c.md);
        ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
        EXPECT_EQ(analysis->GetValidVar(), c.validVar);
        EXPECT_EQ(downRecord(1).MissingN, c.missingA);
        EXPECT_EQ(downRecord(2).MissingN, c.missingX);
        EXPECT_EQ(downRecord(1).N, c.nA);
        EXPECT_EQ(downRecord(2).N, c.nX);
    }
}

TEST_F(VariableScans, CategoricalVariablesCountTheirValues) {
    openSmall(true);
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    const Drill& a = downRecord(1);
    ASSERT_EQ(a.Categories.size(), 2u);
    EXPECT_EQ(a.Categories.begin()->Count, 3);   // value 1: weights 2 and 1
    EXPECT_EQ(a.Categories.rbegin()->Count, 1);  // value 2: weight 1; the -1 case is out
    EXPECT_EQ(a.Isset, 1);
    EXPECT_EQ(a.Categories.begin()->Name, "1");
    // The continuous variable has neat intervals with nothing counted yet.
    const Drill& x = downRecord(2);
    EXPECT_EQ(x.Isset, 0);
    EXPECT_FALSE(x.Categories.empty());
    for (const Categories& c : x.Categories)
        EXPECT_EQ(c.Count, 0);
}

TEST_F(VariableScans, AVariableThatIsAlwaysMissing) {
    open(test::makeFile({{"A", M}}, {{M}, {M}, {M}}));
    ASSERT_EQ(chooseDrillVariables({}, {1}), 1);
    const Drill& a = downRecord(1);
    EXPECT_EQ(a.N, 0);
    EXPECT_EQ(a.MissingN, 3);
    EXPECT_EQ(a.Min, 1.7e+308);
    EXPECT_EQ(a.Max, -1.7e+308);
    EXPECT_EQ(a.Mean, 0);
    EXPECT_EQ(a.SS, 0);
    EXPECT_TRUE(a.Categories.empty());
}

TEST_F(VariableScans, OverflowOfDistinctValuesFallsBackToNeatIntervals) {
    struct Case {
        const char* what;
        int cases;  // case k has value k; 2048 distinct values fill the set exactly
        int32_t method;
    };
    for (const Case& c : {Case{"2048 values stay values", 2048, MethodDistinctValues},
                          Case{"one more turns to intervals", 2049, MethodNeatIntervals}}) {
        SCOPED_TRACE(c.what);
        std::vector<std::vector<double>> rows;
        for (int k = 1; k <= c.cases; ++k)
            rows.push_back({double(k)});
        open(test::makeFile({{"A", M}}, rows));
        ASSERT_EQ(chooseDrillVariables({1}, {}), 1);
        const Drill& a = downRecord(1);
        EXPECT_EQ(a.Method, c.method);
        EXPECT_EQ(a.Type, 0);
        EXPECT_EQ(a.N, c.cases);  // the moments are complete either way
        if (c.method == MethodDistinctValues)
            EXPECT_EQ(a.Categories.size(), 2048u);
        else
            EXPECT_LT(a.Categories.size(), 100u);
    }
}

struct FailureCase {
    const char* what;
    bool memory;  // else a break
    int at;       // the allocation or the lookbr call
};

TEST_F(VariableScans, BrokenOffOrOutOfMemory) {
    const std::vector<FailureCase> cases = {
        {"first working array", true, 1}, {"value buffer", true, 2},
        {"break at the first case", false, 1}, {"break at the third case", false, 3}};
    for (const FailureCase& c : cases) {
        SCOPED_TRACE(c.what);
        openSmall(false);
        // The dialog's list and name buffer come before the scan's allocations.
        if (c.memory)
            session.memory().failAllocation(2 + c.at);
        else
            progress.breakAtCall(c.at);
        ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
        if (c.memory) {
            EXPECT_EQ(takeMessages().size(), 1u);
            ASSERT_EQ(analysis->GetDrillDownsSize(), 2);  // records stay, with nothing in them
            EXPECT_EQ(downRecord(2).N, 0);
            EXPECT_TRUE(downRecord(1).Categories.empty());
        } else {
            EXPECT_TRUE(takeMessages().empty());
            EXPECT_EQ(analysis->GetDrillDownsSize(), 0);  // a cancelled first scan drops them
            EXPECT_EQ(analysis->GetValidVar(), c.at - 1);
        }
        EXPECT_FALSE(progress.isOpen());
        session.memory().clearFailures();
        progress.breakAtCall(0);
    }
}

TEST_F(VariableScans, ReviewScanReadsTheSubsetAndKeepsRecordsWhenBrokenOff) {
    openSmall(false);
    ASSERT_EQ(chooseDrillVariables({1}, {}), 1);
    ASSERT_EQ(chooseReviewVariables({}, {2}), 1);
    EXPECT_EQ(reviewRecord(2).N, 4);
    const int validVar = analysis->GetValidVar();
    // Pin A = 2: cases 2 and 5.
    analysis->SetCurrentDown(1);
    analysis->SetSelected(1);
    analysis->MoveToDrillUps();
    ASSERT_EQ(analysis->ReadRVV(0), 1);
    EXPECT_EQ(reviewRecord(2).N, 2);
    EXPECT_DOUBLE_EQ(reviewRecord(2).Mean, 22.5);
    EXPECT_EQ(analysis->GetValidVar(), validVar);  // the review scan leaves it alone
    progress.breakAtCall(2);
    EXPECT_EQ(analysis->ReadRVV(0), 0);
    EXPECT_EQ(analysis->GetDrillReviewsSize(), 1);
}

} // namespace
