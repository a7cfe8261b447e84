#pragma once
// The statistics of the graphs the host draws from the cases of the open file: box plots,
// the scatterplot matrix and the 3D histogram.
//
// Which cases count: those the file's selection keeps, whose weight is above 0 (the
// weight variable's value; a missing weight is 0; 1 without a weight variable; rounded to
// a whole number, halves up, when the analysis's weighted moments are off, as the module
// counts the cases of its tables, so that a graph and a table of one subset agree) and that
// the module's filter keeps (it gets the case as one double per variable, variable v at
// index v - 1). A case that counts is left out, per variable, where its value is missing
// (the variable's missing code, or not finite).
//
// Weights count as frequencies: a case of weight 3 counts as three cases of weight 1.
//   - quantile p: over the values in order with their weights, W the total, the first
//     value whose cumulative weight reaches p * W; when it reaches it exactly, the mean of
//     that value and the next (so the median of 1, 2, 3, 4 is 2.5);
//   - mean: sum(w x) / W; standard deviation sqrt(sum(w (x - mean)^2) / (W - 1)), 0 when
//     W is at most 1; standard error SD / sqrt(W);
//   - correlation: weighted Pearson r, not finite when a variable does not vary.

#include <vector>

#include "drilldown/host/HostOutput.h"
#include "workbench/data/DataFile.h"
#include "workbench/documents/GraphDocument.h"

namespace wb {

// How the case weights count: as the file gives them, or rounded to whole numbers.
enum class CaseWeights { AsGiven, Whole };

// The weight a case counts with, 0 when it does not count: the file's weight, for Whole
// rounded to a whole number, halves up.
double countedWeight(const DataFile& file, int caseNo, CaseWeights weights);

struct KeptCase {
    int caseNo = 0; // 1-based
    double weight = 0;
};

// The cases that count, in file order. The double filter gets null outputs; the float one
// gets outputs of its own, which are not read.
std::vector<KeptCase> keptCases(const DataFile& file, CaseFilter filter,
                                CaseWeights weights = CaseWeights::AsGiven);
std::vector<KeptCase> keptCases(const DataFile& file, CaseFilterFloat filter,
                                CaseWeights weights = CaseWeights::AsGiven);

struct WeightedValue {
    double value = 0;
    double weight = 0;
};

// Quantile p (0 to 1) of values sorted by value, as told above; NaN when there is none.
double weightedQuantile(const std::vector<WeightedValue>& sorted, double p);

// The box of each variable (1-based numbers) in the given style.
BoxPlots boxPlots(const DataFile& file, const std::vector<KeptCase>& kept, BoxStyle style,
                  const std::vector<int>& variables);

// At most this many points are drawn in all the plots of one matrix together, and at least
// MinPointsPerCell in each plot; beyond, every k-th case is drawn.
inline constexpr int MaxMatrixPoints = 20000;
inline constexpr int MinPointsPerCell = 300;

// The matrix of `columns` across and `rows` up; rows empty: the columns against each
// other, with the names on the diagonal.
ScatterMatrix scatterMatrix(const DataFile& file, const std::vector<KeptCase>& kept,
                            const std::vector<int>& columns, const std::vector<int>& rows);

// A variable with at most this many distinct values gets one bin per value.
inline constexpr int MaxDistinctBins = 12;
// Otherwise about this many bins of a neat step.
inline constexpr int WantedBins = 8;

// The bins of a variable over its values (sorted, distinct or not): one per distinct value
// when there are at most `maxDistinct`, named by its label or number; otherwise about
// WantedBins intervals lower < v <= upper of a neat step.
std::vector<HistogramBin> binsFor(const Variable& variable, std::vector<double> values,
                                  std::size_t maxDistinct = MaxDistinctBins);
// The bin of `value`, which lies within the bins' span.
std::size_t binOf(const std::vector<HistogramBin>& bins, double value);

// Bivariate counts of x and y over the kept cases with a value of both.
Histogram3DData histogram3D(const DataFile& file, const std::vector<KeptCase>& kept, int x,
                            int y);

// The variable's number, names and range over the kept cases; for graphs.
GraphVariable graphVariable(const DataFile& file, const std::vector<KeptCase>& kept, int var);

} // namespace wb
