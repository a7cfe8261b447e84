#include "workbench/stats/SubsetContrast.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

#include "workbench/data/SelectionCondition.h"
#include "workbench/documents/GraphStatistics.h"
#include "workbench/session/DrillCondition.h"
#include "workbench/stats/Distributions.h"

namespace wb {

namespace {

constexpr double NotDefined = std::numeric_limits<double>::quiet_NaN();

} // namespace

std::vector<LevelCase> parentLevelCases(const CDrillDown& analysis, const DataFile& file) {
    const auto compiled = [&](bool parent) -> std::optional<SelectionCondition> {
        const std::string text = drillPathCondition(analysis, file, parent);
        return text.empty() ? std::nullopt : std::optional(SelectionCondition(text, file));
    };
    const std::optional<SelectionCondition> subset = compiled(false), parent = compiled(true);
    const CaseWeights weights = analysis.WM == 1 ? CaseWeights::AsGiven : CaseWeights::Whole;
    std::vector<LevelCase> sides;
    for (int c = 1; c <= file.caseCount(); ++c) {
        const double* row = file.row(c);
        if (parent && !parent->matches(row, file))
            continue;
        const double weight = countedWeight(file, c, weights);
        if (weight > 0)
            sides.push_back({c, weight, !subset || subset->matches(row, file)});
    }
    return sides;
}

namespace {

CategoryContrast crosstab(const DataFile& file, const std::vector<LevelCase>& sides, int var,
                          bool categorical) {
    CategoryContrast table;
    table.variable = var;
    table.name = file.variable(var).name;
    std::vector<double> values;
    for (const LevelCase& side : sides)
        if (const double x = file.value(side.caseNo, var); !file.isMissing(var, x))
            values.push_back(x);
    const std::vector<HistogramBin> bins =
        binsFor(file.variable(var), values,
                categorical ? std::numeric_limits<std::size_t>::max() : MaxDistinctBins);
    for (const HistogramBin& bin : bins)
        table.categories.push_back(bin.label);
    table.inSubset.assign(bins.size(), 0);
    table.inRest.assign(bins.size(), 0);
    for (const LevelCase& side : sides) {
        const double x = file.value(side.caseNo, var);
        if (!file.isMissing(var, x))
            (side.inSubset ? table.inSubset : table.inRest)[binOf(bins, x)] += side.weight;
    }
    testIndependence(table);
    return table;
}

SideMoments moments(const DataFile& file, const std::vector<LevelCase>& sides, int var,
                    bool inSubset) {
    SideMoments m;
    double sum = 0;
    for (const LevelCase& side : sides)
        if (const double x = file.value(side.caseNo, var);
            side.inSubset == inSubset && !file.isMissing(var, x)) {
            m.n += side.weight;
            sum += side.weight * x;
        }
    m.mean = m.n > 0 ? sum / m.n : NotDefined;
    double squares = 0;
    for (const LevelCase& side : sides)
        if (const double x = file.value(side.caseNo, var);
            side.inSubset == inSubset && !file.isMissing(var, x))
            squares += side.weight * (x - m.mean) * (x - m.mean);
    m.sd = m.n > 1 ? std::sqrt(squares / (m.n - 1)) : NotDefined;
    return m;
}

MeanContrast meanContrast(const DataFile& file, const std::vector<LevelCase>& sides, int var) {
    MeanContrast c;
    c.variable = var;
    c.name = file.variable(var).name;
    c.subset = moments(file, sides, var, true);
    c.rest = moments(file, sides, var, false);
    c.difference = c.subset.mean - c.rest.mean;
    const double a = c.subset.sd * c.subset.sd / c.subset.n;
    const double b = c.rest.sd * c.rest.sd / c.rest.n;
    c.welchT = c.difference / std::sqrt(a + b);
    c.welchDf = (a + b) * (a + b) / (a * a / (c.subset.n - 1) + b * b / (c.rest.n - 1));
    c.pValue = std::isfinite(c.welchT) && c.welchDf > 0 ? studentTwoSidedP(c.welchT, c.welchDf)
                                                        : NotDefined;
    const double n = c.subset.n + c.rest.n;
    const double pooled = std::sqrt(
        ((c.subset.n - 1) * c.subset.sd * c.subset.sd + (c.rest.n - 1) * c.rest.sd * c.rest.sd) /
        (n - 2));
    c.hedgesG = c.difference / pooled * (1 - 3 / (4 * n - 9));
    return c;
}

bool isCategorical(const CDrillDown& analysis, int var) {
    for (int i = 0; i < analysis.NoCategorical; ++i)
        if (analysis.Categorical[i] == var)
            return true;
    for (int i = 0; i < analysis.NoRVCategorical; ++i)
        if (analysis.RVCategorical[i] == var)
            return true;
    return false;
}

std::string number(double value, const char* format = "%.4g") {
    if (!std::isfinite(value))
        return "—";
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string testText(const CategoryContrast& c) {
    return "V = " + number(c.cramersV, "%.3f") + ", chi-square = " + number(c.chiSquare) +
           ", df = " + std::to_string(c.degrees) + ", p = " + number(c.pValue, "%.3g");
}

std::string sideText(const SideMoments& m) {
    return "mean " + number(m.mean, "%.6g") + ", SD " + number(m.sd, "%.6g") + ", N " +
           number(m.n, "%.6g");
}

} // namespace

void testIndependence(CategoryContrast& table) {
    double subset = 0, rest = 0;
    int rows = 0;
    for (std::size_t k = 0; k < table.inSubset.size(); ++k) {
        subset += table.inSubset[k];
        rest += table.inRest[k];
        rows += table.inSubset[k] + table.inRest[k] > 0;
    }
    const double n = subset + rest;
    table.degrees = std::max(rows - 1, 0);
    if (rows < 2 || subset <= 0 || rest <= 0) {
        table.chiSquare = table.pValue = table.cramersV = NotDefined;
        return;
    }
    double chi = 0;
    for (std::size_t k = 0; k < table.inSubset.size(); ++k) {
        const double total = table.inSubset[k] + table.inRest[k];
        if (total <= 0)
            continue;
        const double expectedIn = total * subset / n, expectedOut = total * rest / n;
        chi += (table.inSubset[k] - expectedIn) * (table.inSubset[k] - expectedIn) / expectedIn +
               (table.inRest[k] - expectedOut) * (table.inRest[k] - expectedOut) / expectedOut;
    }
    table.chiSquare = chi;
    table.pValue = chiSquareUpperTail(chi, table.degrees);
    // Two columns: min(rows, columns) - 1 is 1.
    table.cramersV = std::sqrt(chi / n);
}

SubsetContrast contrastSubset(const CDrillDown& analysis, const DataFile& file) {
    SubsetContrast contrast;
    const DrillSet* ups = analysis.GetDrillUps();
    contrast.hasParent = ups != nullptr && !ups->empty();
    if (!contrast.hasParent)
        return contrast;
    const std::vector<LevelCase> sides = parentLevelCases(analysis, file);
    if (const DrillSet* downs = analysis.GetDrillDowns())
        for (const Drill& record : *downs)
            contrast.nextDrill.push_back(
                crosstab(file, sides, record.Variable, isCategorical(analysis, record.Variable)));
    std::stable_sort(contrast.nextDrill.begin(), contrast.nextDrill.end(),
                     [](const CategoryContrast& a, const CategoryContrast& b) {
                         const double va = std::isnan(a.cramersV) ? -1 : a.cramersV;
                         const double vb = std::isnan(b.cramersV) ? -1 : b.cramersV;
                         return va > vb;
                     });
    for (int i = 0; i < analysis.NoRVContinuous; ++i)
        contrast.reviewMeans.push_back(meanContrast(file, sides, analysis.RVContinuous[i]));
    for (int i = 0; i < analysis.NoRVCategorical; ++i)
        contrast.reviewCategories.push_back(crosstab(file, sides, analysis.RVCategorical[i], true));
    return contrast;
}

std::string contrastText(const SubsetContrast& contrast) {
    if (!contrast.hasParent)
        return "No drill step yet: the subset is the whole level, with no rest to set it "
               "against.\n";
    std::string text = "Where to drill next: each drill-down variable, the subset against the "
                       "rest of the level above\n";
    for (const CategoryContrast& c : contrast.nextDrill)
        text += "  " + c.name + ": " + testText(c) + "\n";
    if (contrast.nextDrill.empty())
        text += "  (no drill-down variable is left)\n";
    if (!contrast.reviewMeans.empty() || !contrast.reviewCategories.empty())
        text += "Review variables, the subset against the rest of the level above\n";
    for (const MeanContrast& c : contrast.reviewMeans)
        text += "  " + c.name + ": subset " + sideText(c.subset) + "; rest " + sideText(c.rest) +
                "; difference " + number(c.difference, "%.6g") + ", Welch t = " + number(c.welchT) +
                ", df = " + number(c.welchDf) + ", p = " + number(c.pValue, "%.3g") +
                ", Hedges' g = " + number(c.hedgesG, "%.3f") + "\n";
    for (const CategoryContrast& c : contrast.reviewCategories)
        text += "  " + c.name + ": " + testText(c) + "\n";
    return text;
}

} // namespace wb
