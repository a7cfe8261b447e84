#include "workbench/documents/GraphStatistics.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>

#include "drilldown/host/RealNumbers.h"
#include "workbench/documents/CellText.h"
#include "workbench/text/NeatScale.h"

namespace wb {

namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

bool hasValue(const DataFile& file, int var, double value) {
    return std::isfinite(value) && !file.isMissing(var, value);
}

} // namespace

double countedWeight(const DataFile& file, int caseNo, CaseWeights weights) {
    double weight = file.caseWeight(caseNo);
    if (weights == CaseWeights::Whole && weight > 0.0)
        weight = std::floor(weight + 0.5);
    return weight > 0.0 && std::isfinite(weight) ? weight : 0.0;
}

namespace {

template <typename Call>
std::vector<KeptCase> keepCases(const DataFile& file, CaseWeights weights, Call&& filterRejects) {
    std::vector<KeptCase> kept;
    const int nVars = file.variableCount();
    // The filter gets a copy: variable v at index v - 1, and nothing it writes reaches the file.
    std::vector<double> values(static_cast<std::size_t>(std::max(nVars, 1)));
    for (int caseNo = 1; caseNo <= file.caseCount(); ++caseNo) {
        if (!file.isSelected(caseNo))
            continue;
        const double weight = countedWeight(file, caseNo, weights);
        if (weight == 0.0)
            continue;
        std::memcpy(values.data(), file.row(caseNo) + 1,
                    static_cast<std::size_t>(nVars) * sizeof(double));
        if (filterRejects(values.data()))
            continue;
        kept.push_back({caseNo, weight});
    }
    return kept;
}

std::vector<WeightedValue> sortedValues(const DataFile& file, const std::vector<KeptCase>& kept,
                                        int var) {
    std::vector<WeightedValue> values;
    values.reserve(kept.size());
    for (const KeptCase& one : kept) {
        const double value = file.value(one.caseNo, var);
        if (hasValue(file, var, value))
            values.push_back({value, one.weight});
    }
    std::stable_sort(values.begin(), values.end(),
                     [](const WeightedValue& a, const WeightedValue& b) { return a.value < b.value; });
    return values;
}

struct Moments {
    double weight = 0;
    double mean = NotANumber;
    double sd = NotANumber;
    double se = NotANumber;
};

Moments moments(const std::vector<WeightedValue>& values) {
    Moments m;
    double sum = 0;
    for (const WeightedValue& v : values) {
        m.weight += v.weight;
        sum += v.weight * v.value;
    }
    if (values.empty() || !(m.weight > 0))
        return m;
    m.mean = sum / m.weight;
    double squares = 0; // second pass: no cancellation of large sums
    for (const WeightedValue& v : values)
        squares += v.weight * (v.value - m.mean) * (v.value - m.mean);
    m.sd = m.weight > 1.0 ? std::sqrt(squares / (m.weight - 1.0)) : 0.0;
    m.se = m.sd / std::sqrt(m.weight);
    return m;
}

std::string binLabel(const Variable& variable, double value) {
    for (const auto& [labelled, label] : variable.labels)
        if (RealEqual(labelled, value))
            return label;
    return numberText(value, ColumnFormat::Real);
}

} // namespace

std::vector<HistogramBin> binsFor(const Variable& variable, std::vector<double> values,
                                  std::size_t maxDistinct) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    std::vector<HistogramBin> bins;
    if (values.empty())
        return bins;
    if (values.size() <= maxDistinct) {
        for (double value : values)
            bins.push_back({value, value, binLabel(variable, value)});
        return bins;
    }
    const Scale scale = neatScale(values.front(), values.back(), WantedBins);
    const int count = std::max(1, static_cast<int>(std::llround((scale.hi - scale.lo) / scale.step)));
    for (int k = 0; k < count; ++k) {
        const double lower = scale.lo + k * scale.step;
        const double upper = scale.lo + (k + 1) * scale.step;
        bins.push_back({lower, upper,
                        numberText(lower, ColumnFormat::Real) + "<x<=" +
                            numberText(upper, ColumnFormat::Real)});
    }
    return bins;
}

std::size_t binOf(const std::vector<HistogramBin>& bins, double value) {
    if (bins.front().lower == bins.front().upper) { // one bin per distinct value
        const auto at = std::lower_bound(bins.begin(), bins.end(), value,
                                         [](const HistogramBin& bin, double v) { return bin.lower < v; });
        return static_cast<std::size_t>(at - bins.begin());
    }
    // The first bin whose upper limit is not below the value: lower < value <= upper.
    const auto at = std::lower_bound(bins.begin(), bins.end(), value,
                                     [](const HistogramBin& bin, double v) { return bin.upper < v; });
    return std::min(static_cast<std::size_t>(at - bins.begin()), bins.size() - 1);
}


std::vector<KeptCase> keptCases(const DataFile& file, CaseFilter filter, CaseWeights weights) {
    return keepCases(file, weights, [filter](double* values) {
        return filter != nullptr && filter(nullptr, nullptr, values, nullptr, nullptr) != 0;
    });
}

std::vector<KeptCase> keptCases(const DataFile& file, CaseFilterFloat filter,
                                CaseWeights weights) {
    return keepCases(file, weights, [filter](double* values) {
        float x = 0, y = 0;
        return filter != nullptr && filter(nullptr, nullptr, values, &x, &y) != 0;
    });
}

double weightedQuantile(const std::vector<WeightedValue>& sorted, double p) {
    double total = 0;
    for (const WeightedValue& v : sorted)
        total += v.weight;
    if (sorted.empty() || !(total > 0))
        return NotANumber;
    const double target = p * total;
    const double tolerance = 1e-12 * total;
    double cumulative = 0;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        cumulative += sorted[i].weight;
        if (cumulative < target - tolerance)
            continue;
        if (std::fabs(cumulative - target) <= tolerance && i + 1 < sorted.size())
            return (sorted[i].value + sorted[i + 1].value) / 2;
        return sorted[i].value;
    }
    return sorted.back().value;
}

GraphVariable graphVariable(const DataFile& file, const std::vector<KeptCase>& kept, int var) {
    GraphVariable out;
    out.variable = var;
    out.name = file.variable(var).name;
    out.longName = file.variable(var).longName;
    out.min = NotANumber;
    out.max = NotANumber;
    for (const KeptCase& one : kept) {
        const double value = file.value(one.caseNo, var);
        if (!hasValue(file, var, value))
            continue;
        if (!(value >= out.min))
            out.min = value;
        if (!(value <= out.max))
            out.max = value;
    }
    return out;
}

BoxPlots boxPlots(const DataFile& file, const std::vector<KeptCase>& kept, BoxStyle style,
                  const std::vector<int>& variables) {
    BoxPlots plots;
    plots.style = style;
    for (int var : variables) {
        const std::vector<WeightedValue> values = sortedValues(file, kept, var);
        const Moments m = moments(values);
        BoxSummary box;
        box.variable = var;
        box.name = file.variable(var).name;
        box.longName = file.variable(var).longName;
        box.cases = static_cast<int>(values.size());
        box.weight = m.weight;
        box.min = values.empty() ? NotANumber : values.front().value;
        box.max = values.empty() ? NotANumber : values.back().value;
        switch (style) {
        case BoxStyle::MedianQuartilesRange:
            box.centre = weightedQuantile(values, 0.5);
            box.boxLow = weightedQuantile(values, 0.25);
            box.boxHigh = weightedQuantile(values, 0.75);
            box.whiskerLow = box.min;
            box.whiskerHigh = box.max;
            break;
        case BoxStyle::MeanSdSd196:
            box.centre = m.mean;
            box.boxLow = m.mean - m.sd;
            box.boxHigh = m.mean + m.sd;
            box.whiskerLow = m.mean - 1.96 * m.sd;
            box.whiskerHigh = m.mean + 1.96 * m.sd;
            break;
        case BoxStyle::MeanSeSd:
            box.centre = m.mean;
            box.boxLow = m.mean - m.se;
            box.boxHigh = m.mean + m.se;
            box.whiskerLow = m.mean - m.sd;
            box.whiskerHigh = m.mean + m.sd;
            break;
        case BoxStyle::MeanSeSe196:
            box.centre = m.mean;
            box.boxLow = m.mean - m.se;
            box.boxHigh = m.mean + m.se;
            box.whiskerLow = m.mean - 1.96 * m.se;
            box.whiskerHigh = m.mean + 1.96 * m.se;
            break;
        }
        plots.variables.push_back(std::move(box));
    }
    return plots;
}

ScatterMatrix scatterMatrix(const DataFile& file, const std::vector<KeptCase>& kept,
                            const std::vector<int>& columns, const std::vector<int>& rows) {
    ScatterMatrix matrix;
    matrix.diagonal = rows.empty();
    for (int var : columns)
        matrix.columns.push_back(graphVariable(file, kept, var));
    if (matrix.diagonal)
        matrix.rows = matrix.columns;
    else
        for (int var : rows)
            matrix.rows.push_back(graphVariable(file, kept, var));

    const std::size_t plots = matrix.rows.size() * matrix.columns.size() -
                              (matrix.diagonal ? matrix.columns.size() : 0);
    const std::size_t perCell =
        plots == 0 ? 0
                   : std::max<std::size_t>(MinPointsPerCell, MaxMatrixPoints / plots);

    for (std::size_t row = 0; row < matrix.rows.size(); ++row) {
        for (std::size_t column = 0; column < matrix.columns.size(); ++column) {
            if (matrix.diagonal && row == column)
                continue;
            const int xVar = matrix.columns[column].variable;
            const int yVar = matrix.rows[row].variable;
            std::vector<std::size_t> valid; // indexes into kept
            for (std::size_t k = 0; k < kept.size(); ++k)
                if (hasValue(file, xVar, file.value(kept[k].caseNo, xVar)) &&
                    hasValue(file, yVar, file.value(kept[k].caseNo, yVar)))
                    valid.push_back(k);

            ScatterCell cell;
            cell.row = static_cast<int>(row);
            cell.column = static_cast<int>(column);
            cell.cases = static_cast<int>(valid.size());
            double sx = 0, sy = 0;
            for (std::size_t k : valid) {
                const KeptCase& one = kept[k];
                cell.weight += one.weight;
                sx += one.weight * file.value(one.caseNo, xVar);
                sy += one.weight * file.value(one.caseNo, yVar);
            }
            cell.correlation = NotANumber;
            if (cell.weight > 0) {
                const double mx = sx / cell.weight, my = sy / cell.weight;
                double sxy = 0, sxx = 0, syy = 0;
                for (std::size_t k : valid) {
                    const KeptCase& one = kept[k];
                    const double dx = file.value(one.caseNo, xVar) - mx;
                    const double dy = file.value(one.caseNo, yVar) - my;
                    sxy += one.weight * dx * dy;
                    sxx += one.weight * dx * dx;
                    syy += one.weight * dy * dy;
                }
                if (sxx > 0 && syy > 0)
                    cell.correlation = std::clamp(sxy / std::sqrt(sxx * syy), -1.0, 1.0);
            }
            const std::size_t stride = valid.size() <= perCell ? 1 : (valid.size() + perCell - 1) / perCell;
            for (std::size_t i = 0; i < valid.size(); i += stride) {
                const KeptCase& one = kept[valid[i]];
                cell.x.push_back(file.value(one.caseNo, xVar));
                cell.y.push_back(file.value(one.caseNo, yVar));
            }
            matrix.cells.push_back(std::move(cell));
        }
    }
    return matrix;
}

Histogram3DData histogram3D(const DataFile& file, const std::vector<KeptCase>& kept, int x,
                            int y) {
    Histogram3DData data;
    std::vector<KeptCase> both;
    std::vector<double> xs, ys;
    for (const KeptCase& one : kept) {
        const double vx = file.value(one.caseNo, x), vy = file.value(one.caseNo, y);
        if (!hasValue(file, x, vx) || !hasValue(file, y, vy))
            continue;
        both.push_back(one);
        xs.push_back(vx);
        ys.push_back(vy);
    }
    data.x = graphVariable(file, both, x);
    data.y = graphVariable(file, both, y);
    data.xBins = binsFor(file.variable(x), xs);
    data.yBins = binsFor(file.variable(y), ys);
    data.counts.assign(data.xBins.size() * data.yBins.size(), 0.0);
    data.cases = static_cast<int>(both.size());
    for (std::size_t k = 0; k < both.size(); ++k) {
        const std::size_t i = binOf(data.xBins, xs[k]);
        const std::size_t j = binOf(data.yBins, ys[k]);
        data.counts[i * data.yBins.size() + j] += both[k].weight;
        data.weight += both[k].weight;
    }
    return data;
}

} // namespace wb
