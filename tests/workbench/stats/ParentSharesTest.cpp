// Beside each row of a frequency table after a drill step, the share of the level above it,
// and behind each bar of a histogram its outline, checked against the shares counted
// straight from the file; and switched off, neither.

#include "workbench/stats/ParentShares.h"

#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"
#include "workbench/automation/Dispatcher.h"

namespace {

constexpr double Missing = -1;

// G (1 to 2) to drill, C (1 to 3, some missing) whose shares move with G, W weights that
// count rounded.
wb::DataFile file() {
    std::vector<std::vector<double>> cases;
    for (int c = 0; c < 120; ++c) {
        const double group = 1 + c % 2;
        const double category = c % 7 == 0 ? Missing : 1 + (c * int(group)) % 3;
        cases.push_back({group, category, 0.4 + (c % 5) * 0.6});
    }
    wb::DataFile made = test::makeFile({{"G", Missing}, {"C", Missing}, {"W", Missing}}, cases);
    made.setWeightVariable(3);
    return made;
}

struct LevelAbove {
    std::vector<wb::TableCell> column; // the C table's last column, when it is the level's
    std::vector<double> outline;       // the C histogram's
};

// What C's frequency table and histogram show of the level above after drilling G = 2.
LevelAbove levelAbove(bool shown) {
    wb::HeadlessFrontEnd frontEnd(nullptr, nullptr);
    const wb::testing::TempDir out;
    wb::SessionOptions options = test::linkedModule(out.path("out"));
    options.parentShares = shown;
    wb::AnalysisSession session(frontEnd.bundle(), options);
    session.open(file());
    session.startAnalysis();
    session.chooseVariables("G C");
    session.drillDown(1, 1);
    wb::Dispatcher panel(session.automation());
    LevelAbove seen;
    panel.callOrGet(session.panelObject(), "Frequencies");
    const wb::TableDocument& table = session.output().documents().back().table();
    if (table.columns.back().head2 == "précédent (%)")
        for (const wb::TableRow& row : table.rows)
            seen.column.push_back(row.cells.back());
    panel.callOrGet(session.panelObject(), "Histograms");
    seen.outline = session.output().documents().back().graph().levelAbove;
    session.closeAnalysis();
    return seen;
}

TEST(ParentShares, TheLevelAboveIsCountedAsTheAnalysisCounts) {
    // The level above is the whole file: each case weighs its weight rounded, halves up,
    // and missing values count in the total as the module's percentages count them.
    // A histogram's outline is that share of the subset's cases, missing ones included.
    const wb::DataFile all = file();
    std::map<double, double> weightOf;
    double total = 0, subset = 0;
    for (int c = 1; c <= all.caseCount(); ++c) {
        const double w = std::floor(all.value(c, 3) + 0.5);
        weightOf[all.value(c, 2)] += w;
        total += w;
        subset += all.value(c, 1) == 2 ? w : 0;
    }
    const LevelAbove shown = levelAbove(true);
    ASSERT_EQ(shown.column.size(), 4u) << "three categories and the missing row";
    ASSERT_EQ(shown.outline.size(), 4u) << "a bar each";
    const double expected[] = {weightOf[1] / total * 100, weightOf[2] / total * 100,
                               weightOf[3] / total * 100, weightOf[Missing] / total * 100};
    for (std::size_t row = 0; row < 4; ++row) {
        EXPECT_NEAR(std::get<double>(shown.column[row]), expected[row], 1e-9) << row;
        EXPECT_NEAR(shown.outline[row], expected[row] / 100 * subset, 1e-9) << row;
    }
    const LevelAbove off = levelAbove(false);
    EXPECT_TRUE(off.column.empty() && off.outline.empty());
}

} // namespace
