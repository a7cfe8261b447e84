// Drill moves and the list boxes of the panel. Reordering and the order dialog's lists are
// DrillDialogsTest's (OrderBuiltByMovingVariables).

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"

namespace {

class DrillOperations : public test::AnalysisFixture {
protected:
    void SetUp() override {
        open(test::makeFile({{"A"}, {"B"}, {"C"}, {"D"}}, {{1, 2, 3, 4}}));
        ASSERT_EQ(chooseDrillVariables({1, 2, 3}, {4}), 1);
    }
    // Gives variable `variable` of DrillDowns categories with these counts, named c0, c1...
    void setCounts(short variable, const std::vector<double>& counts) {
        Drill& record = Mutable(downRecord(variable));
        record.Categories.clear();
        for (std::size_t i = 0; i < counts.size(); ++i)
            record.Categories.emplace(0, counts[i], double(i), "c" + std::to_string(i), double(i));
    }
    void drill(short variable, int selected) {
        analysis->SetCurrentDown(variable);
        analysis->SetSelected(selected);
        analysis->MoveToDrillUps();
    }
    std::vector<short> order(const DrillSet* records) {
        std::vector<short> variables;
        for (const Drill& d : *records)
            variables.push_back(d.Variable);
        return variables;
    }
    std::vector<int16_t> orders(const DrillSet* records) {
        std::vector<int16_t> values;
        for (const Drill& d : *records)
            values.push_back(d.Order);
        return values;
    }
    const std::vector<std::string>& rows(int list) { return dialogs.model().rows(panel, list); }
};

TEST_F(DrillOperations, SelectedSkipsEmptyCategories) {
    struct Case {
        const char* what;
        std::vector<double> counts;
        int selected;
        int drilledItem;
        std::string listText;
    };
    const std::vector<Case> cases = {
        {"an empty category before the chosen one", {0, 5, 7}, 1, 2, "A (c2)"},
        {"the first non-empty category", {0, 5, 7}, 0, 1, "A (c1)"},
        {"the missing-data row", {0, 5, 0}, 1, 3, "A (Missing)"},
        {"no empty category", {4, 5}, 1, 1, "A (c1)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_EQ(chooseDrillVariables({1, 2, 3}, {4}), 1);
        setCounts(1, c.counts);
        drill(1, c.selected);
        EXPECT_EQ(upRecord(1).DrilledItem, c.drilledItem);
        EXPECT_EQ(analysis->RefreshListBoxes(panel), 1);
        EXPECT_EQ(rows(9054), std::vector<std::string>{c.listText});
        EXPECT_EQ(rows(9053), (std::vector<std::string>{"B", "C", "D"}));
    }
}

TEST_F(DrillOperations, DrillUpsListTheNewestFirstAndUndoAnyStep) {
    for (short v : {1, 2, 3}) {
        setCounts(v, {1});
        drill(v, 0);
    }
    EXPECT_EQ(order(analysis->GetDrillUps()), (std::vector<short>{3, 2, 1}));
    EXPECT_EQ(orders(analysis->GetDrillUps()), (std::vector<int16_t>{0, 1, 2}));
    EXPECT_EQ(analysis->GetCurrentDown(), 4);
    EXPECT_EQ(analysis->SetCurrentUpItem(1), 2);  // the middle step
    analysis->MoveBackToDrillDowns();
    EXPECT_EQ(order(analysis->GetDrillUps()), (std::vector<short>{3, 1}));
    EXPECT_EQ(orders(analysis->GetDrillUps()), (std::vector<int16_t>{0, 1}));
    EXPECT_EQ(order(analysis->GetDrillDowns()), (std::vector<short>{2, 4}));
    EXPECT_EQ(orders(analysis->GetDrillDowns()), (std::vector<int16_t>{0, 1}));
    EXPECT_EQ(downRecord(2).DrilledItem, -1);
    EXPECT_EQ(analysis->GetCurrentUp(), 3);
    EXPECT_EQ(analysis->GetCurrentUpItem(), 0);
}

TEST_F(DrillOperations, EndsOfTheLists) {
    for (short v : {1, 2, 3, 4}) {
        setCounts(v, {1});
        drill(v, 0);
    }
    EXPECT_EQ(analysis->GetCurrentDown(), -1);
    EXPECT_EQ(analysis->GetCurrentDrillDown(), -1);
    ASSERT_EQ(analysis->RefreshListBoxes(panel), 1);
    EXPECT_FALSE(dialogs.model().isEnabled(panel, 9053));
    EXPECT_FALSE(dialogs.model().isEnabled(panel, 9103));
    EXPECT_TRUE(dialogs.model().isEnabled(panel, 9054));
    EXPECT_EQ(analysis->SetCurrentUpItem(4), -1);  // behind the end
    EXPECT_EQ(analysis->GetCurrentUpItem(), -1);
    for (int i = 0; i < 4; ++i) {
        analysis->SetCurrentUpItem(0);
        analysis->MoveBackToDrillDowns();
    }
    EXPECT_EQ(analysis->GetCurrentUp(), -1);
}

TEST_F(DrillOperations, ListsStayAsTheyWereWhenMemoryRunsOut) {
    ASSERT_EQ(analysis->RefreshListBoxes(panel), 1);
    setCounts(1, {1});
    drill(1, 0);
    for (int n : {1, 2}) {
        session.memory().failAllocation(n);
        EXPECT_EQ(analysis->RefreshListBoxes(panel), 0);
        EXPECT_EQ(rows(9053), (std::vector<std::string>{"A", "B", "C", "D"}));
        EXPECT_TRUE(rows(9054).empty());
    }
}

TEST_F(DrillOperations, SetSelectedItemGivesAPositionAmongAllCategories) {
    struct Case {
        std::vector<double> counts;
        int row;
        int selected;
    };
    for (const Case& c : {Case{{0, 5, 7}, 1, 2}, Case{{0, 5, 7}, 2, 3}, Case{{}, 0, 0}}) {
        setCounts(1, c.counts);
        analysis->SetCurrentDown(1);
        EXPECT_EQ(analysis->SetSelectedItem(c.row), c.selected);
    }
}

TEST_F(DrillOperations, ChoosingVariablesAgainStartsOver) {
    ASSERT_EQ(chooseReviewVariables({}, {4}), 1);
    setCounts(1, {1});
    drill(1, 0);
    headless.presetVariableCancel();
    EXPECT_EQ(analysis->SetDDNVariable(panel, 1, 0, 4, 0, 4, 4), 0);
    EXPECT_EQ(analysis->GetDrillUpsSize(), 1);  // a cancelled choice changes nothing
    EXPECT_EQ(analysis->GetDrillReviewsSize(), 1);
    ASSERT_EQ(chooseDrillVariables({2}, {}), 1);
    EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
    EXPECT_EQ(analysis->GetDrillReviewsSize(), 0);  // the review side is wiped
    EXPECT_EQ(analysis->GetNoRVContinuous(), 0);
    EXPECT_EQ(analysis->SelectedVariable(4), 0);
    EXPECT_EQ(analysis->SelectedVariable(2), 1);
}

TEST_F(DrillOperations, ReviewChoiceFiltersThe3DHistogramLists) {
    ASSERT_EQ(chooseReviewVariables({1}, {3, 4}), 1);
    short* first = analysis->Hist3DFirst;
    short* second = analysis->Hist3DSecond;
    first[0] = 3, first[1] = 1, first[2] = 4;
    analysis->NoHist3DFirst = 3;
    second[0] = 4;
    analysis->NoHist3DSecond = 1;
    ASSERT_EQ(chooseReviewVariables({1}, {3}), 1);
    EXPECT_EQ(analysis->NoHist3DFirst, 2);
    EXPECT_EQ(std::vector<short>(first, first + 3), (std::vector<short>{3, 1, 0}));
    EXPECT_EQ(analysis->NoHist3DSecond, 0);
    EXPECT_EQ(analysis->IsCategoricalVariable(1), 1);
    EXPECT_EQ(analysis->IsCategoricalVariable(4), 0);  // continuous on both sides
    EXPECT_EQ(std::vector<short>(analysis->AllReviews, analysis->AllReviews + 3),
              (std::vector<short>{1, 3, 0}));
}

} // namespace
