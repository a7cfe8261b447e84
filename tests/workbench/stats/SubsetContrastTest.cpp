// The subset against the rest of its level, checked against a computation written apart:
// the cases and sides from the module's own test of a case, the statistics by their
// textbook formulas over the expanded weights.

#include "workbench/stats/SubsetContrast.h"

#include <cmath>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "support/AnalysisFixture.h"
#include "workbench/stats/Distributions.h"

namespace {

constexpr double Missing = -1;

// G group (1 to 3, drilled), C a category (1 to 4) that leans on G, X a measure that shifts
// with G, W weights from 0.4 to 3.2, which count rounded to whole numbers while weighted
// moments are off (0.4 not at all); some values missing.
wb::DataFile generated() {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(0, 1);
    std::vector<std::vector<double>> cases;
    for (int c = 0; c < 400; ++c) {
        const double group = 1 + int(unit(random) * 3);
        const double category = unit(random) < 0.3 ? group : 1 + int(unit(random) * 4);
        double x = 50 + 5 * group + std::round(unit(random) * 200) / 10;
        if (unit(random) < 0.05)
            x = Missing;
        cases.push_back({group, category, x, std::round(4 + unit(random) * 28) / 10});
    }
    wb::DataFile file =
        test::makeFile({{"G", Missing}, {"C", Missing}, {"X", Missing}, {"W", Missing}}, cases);
    file.setWeightVariable(4);
    return file;
}

class SubsetContrast : public test::AnalysisFixture {};

TEST_F(SubsetContrast, AgreesWithTheTextbookFormulas) {
    open(generated());
    ASSERT_EQ(chooseDrillVariables({1, 2}, {}), 1);
    ASSERT_EQ(chooseReviewVariables({2}, {3}), 1);
    EXPECT_FALSE(wb::contrastSubset(*analysis, file).hasParent);
    session.drillDown(1, 1); // G = 2

    // The sides by the module's test; each case as many times as its rounded weight.
    std::vector<double> xIn, xOut;
    std::map<double, double> cIn, cOut;
    for (int c = 1; c <= file.caseCount(); ++c) {
        const double* row = file.row(c);
        const bool in = analysis->HasBeenDrilled(row) == 0;
        for (int copy = 0; copy < int(std::floor(row[4] + 0.5)); ++copy) {
            if (row[3] != Missing)
                (in ? xIn : xOut).push_back(row[3]);
            (in ? cIn : cOut)[row[2]] += 1;
        }
    }
    const auto mean = [](const std::vector<double>& v) {
        double s = 0;
        for (double x : v)
            s += x;
        return s / v.size();
    };
    const auto variance = [&](const std::vector<double>& v) {
        const double m = mean(v);
        double s = 0;
        for (double x : v)
            s += (x - m) * (x - m);
        return s / (v.size() - 1);
    };
    const double n1 = xIn.size(), n2 = xOut.size();
    const double v1 = variance(xIn), v2 = variance(xOut);
    const double t = (mean(xIn) - mean(xOut)) / std::sqrt(v1 / n1 + v2 / n2);
    const double df = std::pow(v1 / n1 + v2 / n2, 2) /
                      (std::pow(v1 / n1, 2) / (n1 - 1) + std::pow(v2 / n2, 2) / (n2 - 1));
    const double g = (mean(xIn) - mean(xOut)) /
                     std::sqrt(((n1 - 1) * v1 + (n2 - 1) * v2) / (n1 + n2 - 2)) *
                     (1 - 3 / (4 * (n1 + n2) - 9));
    // Chi-square as the sum of observed squares over expected, less n.
    double in = 0, out = 0, sum = 0;
    for (const auto& [category, count] : cIn)
        in += count;
    for (const auto& [category, count] : cOut)
        out += count;
    for (const auto& [category, count] : cIn) {
        const double total = count + cOut[category];
        sum += count * count / (total * in / (in + out)) +
               cOut[category] * cOut[category] / (total * out / (in + out));
    }
    const double chi = sum - (in + out);

    const wb::SubsetContrast contrast = wb::contrastSubset(*analysis, file);
    ASSERT_TRUE(contrast.hasParent);
    ASSERT_EQ(contrast.reviewMeans.size(), 1u);
    const wb::MeanContrast& x = contrast.reviewMeans[0];
    EXPECT_NEAR(x.subset.n, n1, 1e-9);
    EXPECT_NEAR(x.rest.mean, mean(xOut), 1e-9);
    EXPECT_NEAR(x.subset.sd, std::sqrt(v1), 1e-9);
    EXPECT_NEAR(x.welchT, t, 1e-9 * std::fabs(t));
    EXPECT_NEAR(x.welchDf, df, 1e-9 * df);
    EXPECT_NEAR(x.pValue, wb::studentTwoSidedP(t, df), 1e-12);
    EXPECT_NEAR(x.hedgesG, g, 1e-9 * std::fabs(g));
    ASSERT_EQ(contrast.reviewCategories.size(), 1u);
    const wb::CategoryContrast& c = contrast.reviewCategories[0];
    EXPECT_EQ(c.degrees, 3);
    EXPECT_NEAR(c.chiSquare, chi, 1e-9 * chi);
    EXPECT_NEAR(c.cramersV, std::sqrt(chi / (in + out)), 1e-12);
    EXPECT_LT(c.pValue, 0.01) << "C leans on the group drilled";
    // The one drill-down variable left is C, the same table.
    ASSERT_EQ(contrast.nextDrill.size(), 1u);
    EXPECT_NEAR(contrast.nextDrill[0].chiSquare, chi, 1e-9 * chi);
}

// Fewer than two categories with cases, or an empty side, leave the test undefined.
TEST(CategoryContrastTest, UndefinedTablesSayNothing) {
    const struct {
        std::vector<double> in, out;
    } cases[] = {{{5, 0}, {3, 0}}, {{0, 0}, {3, 4}}, {{2, 3}, {0, 0}}};
    for (const auto& c : cases) {
        wb::CategoryContrast table;
        table.inSubset = c.in;
        table.inRest = c.out;
        wb::testIndependence(table);
        EXPECT_TRUE(std::isnan(table.chiSquare) && std::isnan(table.cramersV));
    }
}

} // namespace
