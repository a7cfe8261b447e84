// Whole drill sessions on a generated file with weights, missing values and a selection
// condition: after every step each record must agree with a straightforward two-pass
// computation over the cases of the subset, whether the scans read the file in one pass or
// in parts merged afterwards.

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

#include "support/AnalysisFixture.h"
#include "support/ReferenceScan.h"

namespace {

constexpr double M = -99;
constexpr short C3 = 1, C5 = 2, X = 3, Y = 4, Z = 5, W = 6;
// Further continuous variables, so that the scans see more slots than they update side by
// side: the first ones are drilled, the last ones reviewed.
constexpr short FirstExtra = 7, ExtraDrilled = 10, ExtraReviewed = 2;

std::vector<short> extraVariables(short first, int count) {
    std::vector<short> variables(count);
    std::iota(variables.begin(), variables.end(), first);
    return variables;
}
const std::vector<short> ExtraDrills = extraVariables(FirstExtra, ExtraDrilled);
const std::vector<short> ExtraReviews = extraVariables(FirstExtra + ExtraDrilled, ExtraReviewed);

wb::DataFile generatedFile(unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> unit(0, 1);
    std::normal_distribution<double> normal(50, 15);
    auto maybeMissing = [&](double x) { return unit(random) < 0.06 ? M : x; };
    // The further variables come from a stream of their own and are rarely missing, so that
    // the first ones and the subsets the steps leave stay as they are.
    std::mt19937 extraRandom(seed + 1);
    auto extraValue = [&](int k) {
        return unit(extraRandom) < 0.01 ? M : std::round(normal(extraRandom) * 100) / 100 + k;
    };
    std::vector<std::vector<double>> rows;
    for (int c = 0; c < 700; ++c) {
        const double weight = unit(random) < 0.05 ? 0 : std::round(unit(random) * 300) / 100;
        rows.push_back({maybeMissing(1 + std::floor(unit(random) * 3)),
                        maybeMissing(1 + std::floor(unit(random) * 5)),
                        maybeMissing(std::round(normal(random) * 1000) / 1000),
                        maybeMissing(std::floor(unit(random) * 100)),
                        maybeMissing(unit(random) * 1e6 + 1e9),  // far from zero
                        unit(random) < 0.02 ? M : weight});
        for (int k = 0; k < ExtraDrilled + ExtraReviewed; ++k)
            rows.back().push_back(extraValue(k));
    }
    std::vector<test::VariableInfo> variables = {{"C3", M}, {"C5", M}, {"X", M},
                                                 {"Y", M},  {"Z", M},  {"W", M}};
    for (int k = 0; k < ExtraDrilled + ExtraReviewed; ++k)
        variables.push_back({"E" + std::to_string(k + 1), M});
    wb::DataFile file = test::makeFile(variables, rows);
    file.setWeightVariable(W);
    file.setSelection("Y <> 13");
    return file;
}

// One pinned step as the test chose it, described without the module's help where possible.
struct Step {
    short variable;
    enum { Value, Interval, Missing } kind;
    double lower, upper;
};

class DrillSessionTest : public test::AnalysisFixture,
                         public testing::WithParamInterface<int> {
protected:
    bool inSubset(int caseNo) const {
        for (const Step& s : steps) {
            const double x = file.value(caseNo, s.variable);
            const bool missing = file.isMissing(s.variable, x);
            const bool holds = s.kind == Step::Missing ? missing
                               : s.kind == Step::Value ? !missing && x == s.upper
                                                       : !missing && s.lower < x && x <= s.upper;
            if (!holds)
                return false;
        }
        return true;
    }

    std::vector<int> casewiseList(bool review) const {
        std::vector<int> list = review ? std::vector<int>{Z} : std::vector<int>{C3, C5, X, Y};
        const std::vector<short>& extra = review ? ExtraReviews : ExtraDrills;
        list.insert(list.end(), extra.begin(), extra.end());
        return list;
    }

    void expectRecordsMatchReference(const DrillSet& records, bool review, bool firstScan) {
        std::vector<int> variables;
        for (const Drill& r : records)
            variables.push_back(r.Variable);
        // After a drill step a case dropped on the review side leaves no trace there; the
        // first scan of the reviews still counts it as missing.
        const ref::Options options{analysis->GetWM() == 1,
                                   (review ? analysis->GetRVMD() : analysis->GetMD()) == 1,
                                   review && !firstScan};
        const std::vector<ref::Stats> expected = ref::compute(
            file, variables, casewiseList(review), options, [&](int c) { return inSubset(c); });
        std::size_t i = 0;
        for (const Drill& r : records) {
            const ref::Stats& e = expected[i++];
            SCOPED_TRACE(r.Name);
            EXPECT_EQ(r.N, e.n);
            EXPECT_EQ(r.MissingN, e.missingN);
            EXPECT_NEAR(r.WeightedN, e.weightedN, 1e-9);
            EXPECT_NEAR(r.MCount, e.mcount, 1e-9);
            EXPECT_EQ(r.Min, e.min);
            EXPECT_EQ(r.Max, e.max);
            // One pass against two: the mean agrees to rounding, the sum of squares to a
            // relative 1e-9 (the values of Z sit 1e9 from zero).
            EXPECT_NEAR(r.Mean, e.mean, 1e-12 * std::max(1.0, std::fabs(e.mean)));
            EXPECT_NEAR(r.SS, e.ss, 1e-9 * std::max(1.0, e.ss));
            if (r.Method == MethodDistinctValues) {
                ASSERT_EQ(r.Categories.size(), e.valueCounts.size());
                auto value = e.valueCounts.begin();
                for (const Categories& c : r.Categories) {
                    EXPECT_EQ(c.Upper, value->first);
                    EXPECT_NEAR(c.Count, value->second, 1e-9);
                    ++value;
                }
            }
        }
    }

    // After the first scans, casewise deletion leaves the cases it dropped out of ValidVar;
    // every later scan counts them.
    void expectStateMatchesReference(bool firstScan = false) {
        const bool casewise = firstScan && analysis->GetMD() == 1;
        int valid = 0;
        for (int c = 1; c <= file.caseCount(); ++c) {
            const std::vector<int> chosen = casewiseList(false);
            const bool complete = std::none_of(chosen.begin(), chosen.end(), [&](int v) {
                return file.isMissing(v, file.value(c, v));
            });
            valid += file.isSelected(c) && inSubset(c) && (complete || !casewise) &&
                     ref::caseWeight(file, c, analysis->GetWM() == 1) > 0;
        }
        EXPECT_EQ(analysis->GetValidVar(), valid);
        expectRecordsMatchReference(*analysis->GetDrillDowns(), false, firstScan);
        expectRecordsMatchReference(*analysis->GetReviews(), true, firstScan);
    }

    // Drills `variable` on the category of row `row` and notes the step.
    void drill(short variable, int row) {
        const std::vector<std::string> rows = session.categoryRows(variable);
        const Drill& record = downRecord(variable);
        const bool missingRow = row == static_cast<int>(rows.size()) - 1 &&
                                rows.back() == "Manquante(s)";
        Step step{variable, Step::Missing, 0, 0};
        if (!missingRow) {
            int seen = 0;
            for (const Categories& c : record.Categories) {
                if (c.Count == 0)
                    continue;
                if (seen++ == row) {
                    step.kind = record.Method == MethodDistinctValues ? Step::Value : Step::Interval;
                    step.lower = c.Lower;
                    step.upper = c.Upper;
                    expectCategoryCount(step, c.Count);
                }
            }
        }
        session.drillDown(variable, row);
        steps.insert(steps.begin(), step);
    }

    // The count the module offered for a category equals the weighted cases it holds.
    void expectCategoryCount(const Step& step, double count) {
        std::vector<Step> narrowed = steps;
        steps.insert(steps.begin(), step);
        const std::vector<ref::Stats> stats = ref::compute(
            file, {step.variable}, casewiseList(false),
            {analysis->GetWM() == 1, analysis->GetMD() == 1}, [&](int c) { return inSubset(c); });
        steps = narrowed;
        EXPECT_NEAR(count, stats[0].weightedN, 1e-9) << "category count of " << step.variable;
    }

    void undo(int position) {
        session.drillUp(position);
        steps.erase(steps.begin() + position);
    }

    std::vector<Step> steps;  // newest first, as in DrillUps
};

TEST_P(DrillSessionTest, EveryStepAgreesWithTheReference) {
    struct Options {
        short wm, md, rvmd;
    };
    for (const Options& o : {Options{0, 0, 0}, Options{1, 1, 0}, Options{1, 0, 1}}) {
        SCOPED_TRACE(testing::Message() << "WM " << o.wm << " MD " << o.md << " RVMD " << o.rvmd);
        open(generatedFile(42));
        analysis->Split = ScanSplit{GetParam(), 100};
        steps.clear();
        analysis->SetWM(o.wm);
        analysis->SetMD(o.md);
        analysis->SetRVMD(o.rvmd);
        std::vector<short> continuous = {X, Y};
        continuous.insert(continuous.end(), ExtraDrills.begin(), ExtraDrills.end());
        ASSERT_EQ(chooseDrillVariables({C3, C5}, continuous), 1);
        std::vector<short> reviewed = {Z};
        reviewed.insert(reviewed.end(), ExtraReviews.begin(), ExtraReviews.end());
        ASSERT_EQ(chooseReviewVariables({}, reviewed), 1);
        expectStateMatchesReference(true);

        drill(C3, 1);  // the second value of C3
        expectStateMatchesReference();
        const std::vector<std::string> rows = session.categoryRows(C5);
        ASSERT_EQ(rows.back(), "Manquante(s)");
        drill(C5, static_cast<int>(rows.size()) - 1);
        expectStateMatchesReference();
        EXPECT_EQ(analysis->NoMissingDrill(), 0);
        drill(X, 0);  // an interval of X, its limits from the subset
        expectStateMatchesReference();

        undo(1);  // the step on the missing data of C5, in the middle
        expectStateMatchesReference();
        EXPECT_EQ(analysis->GetDrillDowns()->begin()->Variable, C5);
        // With casewise deletion X has no valid value left beside missing C5, so its own
        // step was on its missing row too.
        const bool onMissing = std::any_of(steps.begin(), steps.end(),
                                           [](const Step& s) { return s.kind == Step::Missing; });
        EXPECT_EQ(analysis->NoMissingDrill(), onMissing ? 0 : 1);
        undo(0);
        undo(0);
        EXPECT_EQ(analysis->GetDrillUpsSize(), 0);
        expectStateMatchesReference();
    }
}

// One pass, and the 700 cases split into three and into seven parts.
INSTANTIATE_TEST_SUITE_P(Parts, DrillSessionTest, testing::Values(1, 3, 7));

} // namespace
