// The drill path as a selection condition keeps exactly the cases of the analysis's subset:
// random sessions on generated data with missing values and weights, every way of cutting a
// variable into categories, casewise deletion on and off, with and without a selection of
// the file's own.

#include "workbench/session/DrillCondition.h"

#include <random>

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/data/SelectionCondition.h"

namespace {

constexpr double Missing = -9;

// C1, C2 categorical (codes 1 to 4 and 1 to 3), X1 and X2 continuous (whole numbers and
// quarters, so that values fall on interval limits), W a weight; about one value in ten
// missing.
wb::DataFile generated(std::mt19937& random, bool selected) {
    std::uniform_real_distribution<double> unit(0, 1);
    std::vector<std::vector<double>> cases;
    for (int c = 0; c < 300; ++c) {
        std::vector<double> row = {
            double(1 + int(unit(random) * 4)), double(1 + int(unit(random) * 3)),
            std::round(unit(random) * 100), std::round((unit(random) - 0.5) * 400) / 4,
            0.3 + unit(random) * 3};
        for (int v = 0; v < 4; ++v)
            if (unit(random) < 0.1)
                row[v] = Missing;
        cases.push_back(row);
    }
    wb::DataFile file = test::makeFile(
        {{"C1", Missing}, {"C2", Missing}, {"X1", Missing}, {"X2", Missing}, {"W", Missing}},
        cases);
    file.setWeightVariable(5);
    if (selected)
        file.setSelection("X1 > 10 or missing(X2)");
    return file;
}

class DrillCondition : public test::AnalysisFixture {
protected:
    void put(const std::string& member, const VARIANT& value) {
        wb::Dispatcher(session.automation()).put(session.panelObject(), member, value);
    }
    // One way of cutting a continuous variable, chosen at random.
    void cutAtRandom(short variable, std::mt19937& random) {
        put("DrillDownVariable", COleVariant(static_cast<LONG>(variable)));
        switch (std::uniform_int_distribution<int>(0, 5)(random)) {
        case 0:
            put("NoOfExactIntervals", COleVariant(LONG(1)));
            put("ValueNoOfExactIntervals", COleVariant(LONG(2 + random() % 8)));
            break;
        case 1:
            put("NeatIntervalsAppNo", COleVariant(LONG(1)));
            put("ValueNeatIntervalsAppNo", COleVariant(LONG(2 + random() % 8)));
            break;
        case 2:
            put("StepSize", COleVariant(LONG(1)));
            put("ValueStepSize", COleVariant(2.5 + random() % 20));
            // The first limit can be written only while the steps do not start at the minimum.
            put("StartingAtMinimum", COleVariant(LONG(0)));
            put("ValueStartingFrom", COleVariant(-60.0 + random() % 30));
            put("StartingAtMinimum", COleVariant(LONG(random() % 2)));
            break;
        case 3:
            put("UserDefinedBoundaries",
                COleVariant::Text(session.automation(),
                                  random() % 2 ? "10 25.5 40" : "-20 0 33.3"));
            put("UserSpecifiedCategories", COleVariant(LONG(1)));
            break;
        case 4:
            put("IntegerCategories", COleVariant(LONG(1)));
            break;
        default:
            put("AllDistinctValues", COleVariant(LONG(1)));
            break;
        }
        // A result applies the page to the variable, as the panel does.
        wb::Dispatcher(session.automation()).callOrGet(session.panelObject(), "Frequencies");
    }
};

TEST_F(DrillCondition, KeepsExactlyTheCasesOfTheSubset) {
    std::mt19937 random(20261125);
    int steps = 0;
    for (int trial = 0; trial < 150; ++trial) {
        SCOPED_TRACE("trial " + std::to_string(trial));
        open(generated(random, trial % 3 == 0));
        analysis->SetMD(trial % 2);
        ASSERT_EQ(chooseDrillVariables({1, 2}, {3, 4}), 1);
        for (int step = 0; step < 1 + int(random() % 3); ++step) {
            const short variable = short(1 + random() % 4);
            if (analysis->LookFor(variable, analysis->GetDrillDowns()) ==
                analysis->GetDrillDowns()->end())
                continue;
            if (variable > 2)
                cutAtRandom(variable, random);
            const std::vector<std::string> rows = session.categoryRows(variable);
            if (rows.empty())
                continue;
            session.drillDown(variable, int(random() % rows.size()));
            ++steps;
        }
        const std::string text = wb::drillPathCondition(*analysis, file);
        SCOPED_TRACE(text);
        const std::optional<wb::SelectionCondition> condition =
            text.empty() ? std::nullopt : std::optional(wb::SelectionCondition(text, file));
        int kept = 0;
        for (int c = 1; c <= file.caseCount(); ++c) {
            const double* row = file.row(c);
            const bool incomplete =
                std::any_of(row + 1, row + 5, [](double x) { return x == Missing; });
            const bool inSubset = file.isSelected(c) && !(analysis->MD == 1 && incomplete) &&
                                  analysis->HasBeenDrilled(row) == 0;
            ASSERT_EQ(!condition || condition->matches(row, file), inSubset) << "case " << c;
            kept += inSubset;
        }
        EXPECT_LT(kept, file.caseCount()) << "something narrows the file";
    }
    EXPECT_GT(steps, 150) << "the sessions drill";
}

} // namespace
