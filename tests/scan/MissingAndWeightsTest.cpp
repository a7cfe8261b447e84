// The weight of a case and the casewise missing-data tests.

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"

namespace {

class Weights : public test::AnalysisFixture {};

struct WeightCase {
    const char* what;
    bool weightOn;
    short wm;
    double weight;
    double expected;
};

TEST_F(Weights, RoundedUnlessWeightedMomentsAreOn) {
    const std::vector<WeightCase> cases = {
        {"no weight in force", false, 0, 3.7, 1.0},
        {"no weight in force, weighted moments", false, 1, 3.7, 1.0},
        {"0.4 rounds to nothing", true, 0, 0.4, 0.0},
        {"halves round away from zero", true, 0, 0.5, 1.0},
        {"1.49 rounds down", true, 0, 1.49, 1.0},
        {"1.5 rounds up", true, 0, 1.5, 2.0},
        {"2.5 rounds up", true, 0, 2.5, 3.0},
        {"negative halves round away from zero", true, 0, -0.5, -1.0},
        {"zero", true, 0, 0.0, 0.0},
        {"weighted moments keep the weight", true, 1, 0.4, 0.4},
        {"weighted moments keep a negative weight", true, 1, -1.25, -1.25},
        {"a flag of 2 is not on", true, 2, 1.5, 2.0},
    };
    open(test::makeFile({{"A"}}, {{1}}));
    Wght_com& block = ModuleBlocks().Wght;
    for (const WeightCase& c : cases) {
        SCOPED_TRACE(c.what);
        block.WeightOn = c.weightOn ? 1 : 0;
        block.WeightValue = c.weight;
        analysis->SetWM(c.wm);
        EXPECT_EQ(analysis->DealWithWeights(0), c.expected);
    }
}

TEST_F(Weights, ChangeTogglesAnyNonZeroFlagToZero) {
    open(test::makeFile({{"A"}}, {{1}}));
    analysis->SetWM(2);
    EXPECT_EQ(analysis->ChangeWM(), 0);
    EXPECT_EQ(analysis->ChangeWM(), 1);
    EXPECT_EQ(analysis->ChangeCountMD(), 0);
}

TEST_F(Weights, CasewiseTestsLookAtTheChosenLists) {
    open(test::makeFile({{"A", -9}, {"B", -9}, {"C", -9}}, {{1, 2, 3}}));
    const double complete[] = {0, 1, 2, 3};
    const double missingA[] = {0, -9, 2, 3};
    const double missingC[] = {0, 1, 2, -9 * (1 + 1e-14)};  // equal to the code within tolerance
    EXPECT_EQ(analysis->SetMissingData(missingA), 0);       // nothing chosen yet
    EXPECT_EQ(analysis->MDReviews(missingA), 0);
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    ASSERT_EQ(chooseReviewVariables({}, {3}), 1);
    EXPECT_EQ(analysis->SetMissingData(complete), 0);
    EXPECT_EQ(analysis->SetMissingData(missingA), 1);
    EXPECT_EQ(analysis->SetMissingData(missingC), 0);
    EXPECT_EQ(analysis->MDReviews(missingA), 0);
    EXPECT_EQ(analysis->MDReviews(missingC), 1);
}

} // namespace
