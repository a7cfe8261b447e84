// The analysis object: its start values, Init and its failures, reset, and the accessors of
// the current record when there is none.

#include <gtest/gtest.h>

#include "drilldown/resources/StringTable.h"
#include "support/AnalysisFixture.h"

namespace {

using test::AnalysisFixture;

const char* const MemoryMessage = "Mémoire insuffisante pour terminer les calculs demandés ; "
                                  "fermez les autres applications et recommencez.";

class AnalysisLife : public AnalysisFixture {};

// The option defaults are seen at work elsewhere: counted missing data in ResetMembersStartsAgain,
// the one box-plot style in ChartButtons, stand-alone results off in StartupPanel.
TEST_F(AnalysisLife, SequenceTableStartsWithInitThenOpensThePanel) {
    open(test::makeFile({{"A"}, {"B"}}, {{1, 2}}));
    CDrillDown started;
    EXPECT_EQ(started.GetDrillDowns(), nullptr); // no records before Init
    EXPECT_EQ(started.GetCurrentDown(), -1);
    EXPECT_EQ(started.SequenceTable().RunSequence(100), -1);
    ASSERT_NE(started.GetDrillDowns(), nullptr);
    EXPECT_EQ(started.GetDrillDownsSize(), 0);
    ASSERT_NE(started.GetDialogAutomationInterface(), nullptr);
}

TEST_F(AnalysisLife, FileWithoutVariables) {
    open(test::makeFile({}, {}));
    EXPECT_EQ(analysis->Init(), 1);
    EXPECT_EQ(analysis->GetDrillDownsSize(), 0);
    EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
    EXPECT_EQ(analysis->GetDrillReviewsSize(), 0);
}

TEST_F(AnalysisLife, InitAfterFileChangeKeepsOptions) {
    open(test::makeFile({{"A"}, {"B"}}, {{1, 2}, {3, 4}}));
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    analysis->SetWM(1);
    analysis->SetCurrentDown(2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(analysis->InitializeAfterFileChanged(), 1);
        EXPECT_EQ(analysis->GetDrillDownsSize(), 0);
        EXPECT_EQ(analysis->GetWM(), 1);
        EXPECT_EQ(analysis->GetCurrentDown(), 2);
        EXPECT_EQ(analysis->GetNoCategorical(), 1);
        EXPECT_EQ(analysis->GetCategorical()[0], 0);  // the lists' contents are gone
    }
}

TEST_F(AnalysisLife, EachFailedAllocationOfInitReleasesEverything) {
    open(test::makeFile({{"A"}, {"B"}}, {{1, 2}}));
    const std::size_t before = session.memory().outstandingBlocks();
    for (int n = 1; n <= 7; ++n) {
        SCOPED_TRACE(n);
        session.memory().failAllocation(n);
        EXPECT_EQ(analysis->Init(), 0);
        EXPECT_EQ(takeMessages(), std::vector<std::string>{MemoryMessage});
        EXPECT_EQ(analysis->GetCategorical(), nullptr);
        EXPECT_EQ(analysis->AllReviews, nullptr);
        EXPECT_EQ(session.memory().outstandingBlocks(), before - 7);
        session.memory().clearFailures();
        ASSERT_EQ(analysis->Init(), 1);
    }
}

TEST_F(AnalysisLife, ResetMembersStartsAgain) {
    open(test::makeFile({{"A"}, {"B"}}, {{1, 2}, {3, 4}}));
    ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    analysis->SetCurrentDown(1);
    analysis->SetSelected(0);
    analysis->MoveToDrillUps();
    analysis->SetWM(1);
    analysis->SetCountMD(0);
    analysis->StandAloneResults = 1;
    analysis->ResetMembers();
    EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
    EXPECT_EQ(analysis->GetDrillDownsSize(), 0);
    EXPECT_EQ(analysis->GetCurrentDown(), -1);
    EXPECT_EQ(analysis->GetSelected(), -1);
    EXPECT_EQ(analysis->GetCountMD(), 1);
    EXPECT_EQ(analysis->GetWM(), 0);
    EXPECT_EQ(analysis->GetNoCategorical(), 0);
    EXPECT_EQ(analysis->StandAloneResults, 0);
}

TEST_F(AnalysisLife, PendingRescanWithoutVariablesIsClearedWithoutScan) {
    open(test::makeFile({{"A"}}, {{1}, {2}}));
    analysis->NeedsRescan = 1;
    const int starts = progress.startCount();
    analysis->RescanIfNeeded();
    EXPECT_EQ(analysis->NeedsRescan, 0);
    EXPECT_EQ(progress.startCount(), starts);
}

TEST_F(AnalysisLife, AccessorsWithoutRecords) {
    open(test::makeFile({{"A"}}, {{1}}));
    double min = 7, max = 8;
    int type = 0, n = 0, atMinimum = 0;
    double step = 0, start = 0;
    EXPECT_EQ(analysis->GetCurrentDrillDown(), -1);
    EXPECT_EQ(analysis->GetCurrentMethod(), -1);
    EXPECT_EQ(analysis->GetCurrentIsset(), -1);
    EXPECT_EQ(analysis->GetCurrentVariableType(), 0);
    EXPECT_EQ(analysis->GetCurrentVariableName(), "");
    EXPECT_EQ(analysis->GetDrillMinMax(min, max), -1);
    EXPECT_EQ(min, 7);
    EXPECT_EQ(analysis->GetDrillMethod(type, n, atMinimum, step, start), -1);
    EXPECT_EQ(analysis->GetCurrentDrillUp(), 0);
    EXPECT_EQ(analysis->GetCurrentDrillUpName(), "");
    EXPECT_EQ(analysis->NoMissingDrill(), 1);
}

// Lookups by id search the table, which must stay sorted; an id it lacks gives no text.
TEST(StringTable, IdsAreSortedAndUnknownIdsGiveNoText) {
    for (int unknown : {9999, 10002, 10061})
        EXPECT_STREQ(ModuleString(unknown), "") << unknown;
    for (int i = 1; i < ModuleStringCount(); ++i)
        EXPECT_LT(ModuleStringIdAt(i - 1), ModuleStringIdAt(i));
}

} // namespace
