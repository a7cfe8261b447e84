// The statistics of the graphs the host draws from the cases, checked against a plain
// computation on the cases written out as often as their weight says.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "support/AnalysisFixture.h"
#include "workbench/documents/CellText.h"
#include "workbench/documents/GraphStatistics.h"

namespace {

constexpr double Missing = -99999999.0;
enum Var { Group = 1, Age = 2, Income = 3, Weight = 4, Sex = 5 };

// A generated survey: GROUP 1 to 3, AGE with some missing, INCOME, a whole weight 0 to 3
// (some missing), SEX 1 or 2. Values come from a fixed linear congruential sequence.
wb::DataFile surveyFile(int cases) {
    std::vector<std::vector<double>> rows;
    std::uint32_t state = 12345;
    const auto next = [&](int range) {
        state = state * 1103515245u + 12345u;
        return static_cast<int>((state >> 8) % static_cast<std::uint32_t>(range));
    };
    for (int k = 0; k < cases; ++k) {
        const double group = 1 + next(3);
        const double age = next(11) == 0 ? Missing : 18 + next(60) + next(10) / 10.0;
        const double income = next(13) == 0 ? Missing : 800 + 25.0 * next(200);
        const double weight = next(17) == 0 ? Missing : next(4);
        const double sex = 1 + next(2);
        rows.push_back({group, age, income, weight, sex});
    }
    wb::DataFile file = test::makeFile(
        {{"GROUP", Missing}, {"AGE", Missing}, {"INCOME", Missing}, {"W", Missing}, {"SEX", Missing}},
        rows);
    file.setWeightVariable(Weight);
    return file;
}

// The module's filter as the host sees it: leaves out group 2. The case arrives with
// variable v at index v - 1.
int leaveOutGroup2(char*, long*, double* values, double*, double*) {
    return values[Group - 1] == 2 ? 1 : 0;
}
int leaveOutGroup2Float(char*, long*, double* values, float* x, float* y) {
    *x = 0; // the outputs must be there to write to
    *y = 0;
    return values[Group - 1] == 2 ? 1 : 0;
}

bool valid(double value) { return value != Missing; }

// Every case that counts, as many times as its whole weight: the selection keeps it, its
// weight is above 0 and not missing, and it is not in group 2.
std::vector<int> expandedCases(const wb::DataFile& file) {
    std::vector<int> cases;
    for (int c = 1; c <= file.caseCount(); ++c) {
        const double w = file.value(c, Weight);
        if (!file.isSelected(c) || !valid(w) || w <= 0 || file.value(c, Group) == 2)
            continue;
        for (int k = 0; k < static_cast<int>(w); ++k)
            cases.push_back(c);
    }
    return cases;
}

std::vector<double> expandedValues(const wb::DataFile& file, int var) {
    std::vector<double> values;
    for (int c : expandedCases(file))
        if (valid(file.value(c, var)))
            values.push_back(file.value(c, var));
    std::sort(values.begin(), values.end());
    return values;
}

// Quantile of n sorted values: when n p is a whole number j, the mean of the j-th and the
// next; otherwise the value at the rank above n p.
double quantile(const std::vector<double>& sorted, double p) {
    const double np = sorted.size() * p;
    const double whole = std::round(np);
    if (std::fabs(np - whole) < 1e-9 && whole >= 1 && whole < sorted.size())
        return (sorted[whole - 1] + sorted[whole]) / 2;
    return sorted[static_cast<std::size_t>(std::ceil(np - 1e-9)) - 1];
}

double mean(const std::vector<double>& values) {
    double sum = 0;
    for (double v : values)
        sum += v;
    return sum / values.size();
}

double sampleSd(const std::vector<double>& values) {
    const double m = mean(values);
    double squares = 0;
    for (double v : values)
        squares += (v - m) * (v - m);
    return std::sqrt(squares / (values.size() - 1));
}

class GraphStatisticsTest : public ::testing::Test {
protected:
    GraphStatisticsTest() : file(surveyFile(240)) { file.setSelection("SEX = 1 or INCOME > 2000"); }
    wb::DataFile file;
};

TEST_F(GraphStatisticsTest, KeptCasesAreSelectedWeightedAndLetThroughByTheFilter) {
    const std::vector<wb::KeptCase> kept = wb::keptCases(file, leaveOutGroup2);
    std::vector<int> expected;
    for (int c : expandedCases(file))
        if (expected.empty() || expected.back() != c)
            expected.push_back(c);
    std::vector<int> got;
    for (const wb::KeptCase& one : kept) {
        got.push_back(one.caseNo);
        EXPECT_EQ(one.weight, file.value(one.caseNo, Weight));
    }
    EXPECT_EQ(got, expected);
    EXPECT_LT(kept.size(), 240u / 2) << "the filter, the selection and the weights leave cases out";

    std::vector<int> viaFloat;
    for (const wb::KeptCase& one : wb::keptCases(file, leaveOutGroup2Float))
        viaFloat.push_back(one.caseNo);
    EXPECT_EQ(viaFloat, expected);
}

TEST_F(GraphStatisticsTest, BoxesMatchTheExpandedSample) {
    const std::vector<wb::KeptCase> kept = wb::keptCases(file, leaveOutGroup2);
    for (const int var : {Age, Income}) {
        const std::vector<double> values = expandedValues(file, var);
        ASSERT_GT(values.size(), 20u);
        const double m = mean(values), sd = sampleSd(values), se = sd / std::sqrt(values.size());
        const struct {
            wb::BoxStyle style;
            double centre, boxLow, boxHigh, whiskerLow, whiskerHigh;
        } styles[] = {
            {wb::BoxStyle::MedianQuartilesRange, quantile(values, 0.5), quantile(values, 0.25),
             quantile(values, 0.75), values.front(), values.back()},
            {wb::BoxStyle::MeanSdSd196, m, m - sd, m + sd, m - 1.96 * sd, m + 1.96 * sd},
            {wb::BoxStyle::MeanSeSd, m, m - se, m + se, m - sd, m + sd},
            {wb::BoxStyle::MeanSeSe196, m, m - se, m + se, m - 1.96 * se, m + 1.96 * se},
        };
        for (const auto& expected : styles) {
            SCOPED_TRACE("variable " + std::to_string(var) + ", style " +
                         std::to_string(static_cast<int>(expected.style)));
            const wb::BoxPlots plots = wb::boxPlots(file, kept, expected.style, {var});
            ASSERT_EQ(plots.variables.size(), 1u);
            const wb::BoxSummary& box = plots.variables[0];
            EXPECT_EQ(box.weight, static_cast<double>(values.size()));
            EXPECT_NEAR(box.centre, expected.centre, 1e-9);
            EXPECT_NEAR(box.boxLow, expected.boxLow, 1e-9);
            EXPECT_NEAR(box.boxHigh, expected.boxHigh, 1e-9);
            EXPECT_NEAR(box.whiskerLow, expected.whiskerLow, 1e-9);
            EXPECT_NEAR(box.whiskerHigh, expected.whiskerHigh, 1e-9);
            EXPECT_EQ(box.min, values.front());
            EXPECT_EQ(box.max, values.back());
        }
    }
}

TEST(WeightedQuantileTest, CumulativeWeightDecides) {
    using V = std::vector<wb::WeightedValue>;
    const struct {
        const char* what;
        V values;
        double p;
        double expected;
    } cases[] = {
        {"median of an even count", V{{1, 1}, {2, 1}, {3, 1}, {4, 1}}, 0.5, 2.5},
        {"median of an odd count", V{{1, 1}, {2, 1}, {9, 1}}, 0.5, 2},
        {"a heavy value holds the median", V{{1, 1}, {2, 5}, {3, 1}}, 0.5, 2},
        {"half weights reach the mark exactly", V{{1, 0.5}, {2, 1.5}, {4, 2}}, 0.5, 3},
        {"first quartile", V{{1, 0.5}, {2, 1.5}, {4, 2}}, 0.25, 2},
        {"third quartile", V{{1, 0.5}, {2, 1.5}, {4, 2}}, 0.75, 4},
        {"weights of a tenth add up to the mark", V{{1, 0.1}, {2, 0.1}, {3, 0.1}, {5, 0.1}}, 0.5,
         2.5},
        {"p = 0 is the smallest", V{{7, 2}, {8, 1}}, 0, 7},
        {"p = 1 is the largest", V{{7, 2}, {8, 1}}, 1, 8},
        {"one value", V{{3, 0.2}}, 0.25, 3},
    };
    for (const auto& one : cases)
        EXPECT_DOUBLE_EQ(wb::weightedQuantile(one.values, one.p), one.expected) << one.what;
    EXPECT_TRUE(std::isnan(wb::weightedQuantile({}, 0.5)));
}

TEST(GraphStatisticsWeightsTest, FractionalWeightsCountAsFrequencies) {
    wb::DataFile file = test::makeFile({{"X"}, {"W"}}, {{1, 0.5}, {2, 1.5}, {4, 2}, {50, 0}});
    file.setWeightVariable(2);
    const auto kept = wb::keptCases(file, static_cast<CaseFilter>(nullptr));
    ASSERT_EQ(kept.size(), 3u) << "weight 0 does not count";
    const wb::BoxSummary box = wb::boxPlots(file, kept, wb::BoxStyle::MeanSdSd196, {1}).variables[0];
    // mean 11.5 / 4; squares 5.4375 over W - 1 = 3
    EXPECT_DOUBLE_EQ(box.centre, 2.875);
    EXPECT_NEAR(box.boxHigh - box.centre, std::sqrt(5.4375 / 3), 1e-12);
    const wb::BoxSummary se = wb::boxPlots(file, kept, wb::BoxStyle::MeanSeSe196, {1}).variables[0];
    EXPECT_NEAR(se.boxHigh - se.centre, std::sqrt(5.4375 / 3) / 2, 1e-12);
    const wb::BoxSummary median =
        wb::boxPlots(file, kept, wb::BoxStyle::MedianQuartilesRange, {1}).variables[0];
    EXPECT_EQ(median.centre, 3);
    EXPECT_EQ(median.whiskerHigh, 4) << "the case of weight 0 is not the largest value";
}

TEST_F(GraphStatisticsTest, ScatterCellsCountThePairsAndCorrelateThem) {
    const std::vector<wb::KeptCase> kept = wb::keptCases(file, leaveOutGroup2);
    const std::vector<int> vars = {Age, Income, Sex};
    const wb::ScatterMatrix matrix = wb::scatterMatrix(file, kept, vars, {});
    EXPECT_TRUE(matrix.diagonal);
    ASSERT_EQ(matrix.cells.size(), 6u) << "three by three, without the diagonal";
    for (const wb::ScatterCell& cell : matrix.cells) {
        const int xVar = vars[cell.column], yVar = vars[cell.row];
        SCOPED_TRACE(std::to_string(yVar) + " against " + std::to_string(xVar));
        ASSERT_NE(cell.row, cell.column);
        std::vector<double> xs, ys;
        int distinctCases = 0, previous = 0;
        for (int c : expandedCases(file)) {
            if (!valid(file.value(c, xVar)) || !valid(file.value(c, yVar)))
                continue;
            xs.push_back(file.value(c, xVar));
            ys.push_back(file.value(c, yVar));
            distinctCases += c != previous;
            previous = c;
        }
        EXPECT_EQ(cell.cases, distinctCases);
        EXPECT_EQ(cell.weight, static_cast<double>(xs.size()));
        const double mx = mean(xs), my = mean(ys);
        double sxy = 0, sxx = 0, syy = 0;
        for (std::size_t k = 0; k < xs.size(); ++k) {
            sxy += (xs[k] - mx) * (ys[k] - my);
            sxx += (xs[k] - mx) * (xs[k] - mx);
            syy += (ys[k] - my) * (ys[k] - my);
        }
        EXPECT_NEAR(cell.correlation, sxy / std::sqrt(sxx * syy), 1e-12);
        EXPECT_EQ(cell.x.size(), static_cast<std::size_t>(cell.cases)) << "few points: all drawn";
    }
    // The ranges of the diagonal are those of the cases kept.
    const std::vector<double> ages = expandedValues(file, Age);
    EXPECT_EQ(matrix.columns[0].min, ages.front());
    EXPECT_EQ(matrix.columns[0].max, ages.back());

    // A second list gives the rows, and there is no diagonal to leave out.
    const wb::ScatterMatrix crossed = wb::scatterMatrix(file, kept, {Age, Income}, {Sex});
    EXPECT_FALSE(crossed.diagonal);
    ASSERT_EQ(crossed.cells.size(), 2u);
    EXPECT_EQ(crossed.rows.at(0).name, "SEX");
    EXPECT_EQ(crossed.cells[1].column, 1);
}

TEST(GraphStatisticsScatterTest, ManyPointsAreDrawnAtARegularStride) {
    std::vector<int> vars;
    std::vector<test::VariableInfo> variables;
    for (int v = 1; v <= 15; ++v) {
        variables.push_back({"V" + std::to_string(v)});
        vars.push_back(v);
    }
    std::vector<std::vector<double>> rows(1000);
    for (int c = 0; c < 1000; ++c)
        for (int v = 1; v <= 15; ++v)
            rows[c].push_back((c * v) % 97);
    const wb::DataFile file = test::makeFile(variables, rows);
    const auto kept = wb::keptCases(file, static_cast<CaseFilter>(nullptr));
    const wb::ScatterMatrix matrix = wb::scatterMatrix(file, kept, vars, {});
    ASSERT_EQ(matrix.cells.size(), 210u);
    const wb::ScatterCell& cell = matrix.cells[0];
    EXPECT_EQ(cell.cases, 1000);
    EXPECT_LE(cell.x.size(), static_cast<std::size_t>(wb::MinPointsPerCell));
    const std::size_t stride = (1000 + cell.x.size() - 1) / cell.x.size();
    for (std::size_t k = 0; k < cell.x.size(); ++k)
        ASSERT_EQ(cell.x[k], file.value(static_cast<int>(k * stride) + 1, vars[cell.column]));
}

TEST_F(GraphStatisticsTest, Histogram3DCountsEachPairOfBins) {
    const auto kept = wb::keptCases(file, leaveOutGroup2);
    const wb::Histogram3DData data = wb::histogram3D(file, kept, Sex, Age);

    ASSERT_EQ(data.xBins.size(), 2u) << "two values, one bin each";
    EXPECT_EQ(data.xBins[0].lower, 1);
    EXPECT_EQ(data.xBins[1].upper, 2);
    EXPECT_EQ(data.xBins[1].label, "2");

    // AGE has many values: neat bins of one step that cover the values.
    const std::vector<double> ages = expandedValues(file, Age);
    ASSERT_GE(data.yBins.size(), 5u);
    const double step = data.yBins[0].upper - data.yBins[0].lower;
    const double mantissa = step / std::pow(10, std::floor(std::log10(step)));
    EXPECT_TRUE(std::fabs(mantissa - 1) < 1e-9 || std::fabs(mantissa - 2) < 1e-9 ||
                std::fabs(mantissa - 5) < 1e-9)
        << step;
    for (std::size_t j = 1; j < data.yBins.size(); ++j)
        EXPECT_NEAR(data.yBins[j].lower, data.yBins[j - 1].upper, 1e-9);
    EXPECT_LT(data.yBins.front().lower, ages.front());
    EXPECT_GE(data.yBins.back().upper, ages.back());
    EXPECT_EQ(data.yBins[1].label, wb::numberText(data.yBins[1].lower, wb::ColumnFormat::Real) +
                                       "<x<=" +
                                       wb::numberText(data.yBins[1].upper, wb::ColumnFormat::Real));

    std::vector<double> expected(data.xBins.size() * data.yBins.size(), 0.0);
    int pairs = 0;
    for (int c : expandedCases(file)) {
        const double sex = file.value(c, Sex), age = file.value(c, Age);
        if (!valid(age))
            continue;
        ++pairs;
        std::size_t i = 0, j = 0;
        while (data.xBins[i].lower != sex)
            ++i;
        while (!(data.yBins[j].lower < age && age <= data.yBins[j].upper))
            ++j;
        expected[i * data.yBins.size() + j] += 1;
    }
    EXPECT_EQ(data.counts, expected);
    EXPECT_EQ(data.weight, static_cast<double>(pairs));
}

TEST(GraphStatisticsBinsTest, ValueLabelsNameTheBinsOfFewValues) {
    std::vector<std::vector<double>> rows;
    for (int c = 0; c < 6; ++c)
        rows.push_back({1.0 + c % 2, static_cast<double>(c % 3)});
    const wb::DataFile file = test::makeFile({{"SEX", -9, {{1, "Homme"}, {2, "Femme"}}}, {"N"}}, rows);
    const auto kept = wb::keptCases(file, static_cast<CaseFilter>(nullptr));
    const wb::Histogram3DData data = wb::histogram3D(file, kept, 1, 2);
    ASSERT_EQ(data.xBins.size(), 2u);
    EXPECT_EQ(data.xBins[0].label, "Homme");
    EXPECT_EQ(data.xBins[1].label, "Femme");
    ASSERT_EQ(data.yBins.size(), 3u);
    EXPECT_EQ(data.count(0, 0), 1); // SEX 1 and N 0: case 0 only
    EXPECT_EQ(data.count(1, 1), 1);
    EXPECT_EQ(data.cases, 6);
}

} // namespace
