// Saving the current subset as a new data file, read back through the loader.

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"
#include "workbench/data/DataFileLoader.h"
#include "support/TempDir.h"
#include "workbench/services/NewFileService.h"

namespace {

constexpr double M = -9;

class SaveSubset : public test::AnalysisFixture {
protected:
    void SetUp() override {
        // B: categorical; X continuous; W weight; case names. Case 4 has weight 0.
        wb::DataFile f = test::makeFile(
            {{"B", M, {{1, "oui"}, {2, "non"}}}, {"X", M}, {"W", M}}, {});
        const std::vector<std::pair<std::vector<double>, std::string>> rows = {
            {{1, 5, 1}, "first"}, {{2, 6, 1}, "second"}, {{1, M, 1}, "third"},
            {{1, 8, 0}, "fourth"}, {{2, 9, 1}, "fifth"}};
        for (const auto& [values, name] : rows)
            f.appendCase(values, name);
        f.setWeightVariable(3);
        open(std::move(f));
        ASSERT_EQ(chooseDrillVariables({1}, {2}), 1);
    }
    wb::DataFile savedFile() {
        EXPECT_EQ(newFile.finishedFiles().size(), 1u);
        return wb::loadDataFile(newFile.lastFinishedPath());
    }

    wb::NewFileService& newFile = session.newFile();
};

TEST_F(SaveSubset, WritesTheCasesOfTheSubsetWithTheirNames) {
    session.drillDown(1, 0);  // B = oui: cases 1, 3 and 4
    ASSERT_EQ(analysis->DDNSaveData(panel), 1);
    const wb::DataFile saved = savedFile();
    ASSERT_EQ(saved.variableCount(), 2);
    EXPECT_EQ(saved.variable(1).name, "B");
    EXPECT_EQ(saved.variable(1).labels.at(1), "oui");
    // The case of weight 0 is saved too: the file has no weights, only the subset.
    ASSERT_EQ(saved.caseCount(), 3);
    const std::vector<std::string> names = {"first", "third", "fourth"};
    const std::vector<double> xs = {5, M, 8};
    for (int c = 1; c <= 3; ++c) {
        EXPECT_EQ(saved.caseName(c), names[c - 1]);
        EXPECT_EQ(saved.value(c, 2), xs[c - 1]);
    }
    EXPECT_TRUE(saved.isMissing(2, saved.value(2, 2)));
}

TEST_F(SaveSubset, CasewiseDeletionLeavesIncompleteCasesOut) {
    analysis->SetMD(1);
    analysis->NeedsRescan = 1;
    ASSERT_EQ(analysis->DDNSaveData(panel), 1);
    const wb::DataFile saved = savedFile();
    EXPECT_EQ(saved.caseCount(), 4);  // all but the third, which misses X
}

TEST_F(SaveSubset, VariablesComeInFileOrderOnce) {
    ASSERT_EQ(chooseDrillVariables({}, {2}), 1);
    ASSERT_EQ(chooseReviewVariables({1}, {2}), 1);  // X on both sides
    ASSERT_EQ(analysis->DDNSaveData(panel), 1);
    const wb::DataFile saved = savedFile();
    ASSERT_EQ(saved.variableCount(), 2);
    EXPECT_EQ(saved.variable(1).name, "B");
    EXPECT_EQ(saved.variable(2).name, "X");
}

TEST_F(SaveSubset, FailuresLeaveNoFile) {
    struct Case {
        const char* what;
        bool memory;
        int at;
        bool message;
    };
    for (const Case& c : {Case{"storage", true, 1, true}, Case{"break at the second case", false, 2, false}}) {
        SCOPED_TRACE(c.what);
        if (c.memory)
            session.memory().failAllocation(c.at);
        else
            progress.breakAtCall(c.at);
        EXPECT_EQ(analysis->DDNSaveData(panel), 0);
        EXPECT_EQ(takeMessages().size(), c.message ? 1u : 0u);
        EXPECT_TRUE(newFile.finishedFiles().empty());
        EXPECT_EQ(newFile.openCount(), 0);
        progress.breakAtCall(0);
    }
}

TEST_F(SaveSubset, DatasheetHoldsEveryVariableOfTheSubset) {
    session.drillDown(1, 1);  // B = non: cases 2 and 5
    ASSERT_EQ(analysis->DDNDatasheet(panel), 1);
    const wb::TableDocument& t = output.documents().back().table();
    EXPECT_EQ(t.title, "Feuille de données après le drill down");
    ASSERT_EQ(t.columns.size(), 3u);
    EXPECT_EQ(t.columns[2].head, "3");
    EXPECT_EQ(t.columns[2].head2, "W");
    ASSERT_EQ(t.rows.size(), 2u);
    EXPECT_EQ(std::get<double>(t.rows[1].cells[1]), 9);
}

} // namespace
