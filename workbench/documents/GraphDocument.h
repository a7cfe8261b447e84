#pragma once
// A result graph as the workbench keeps it: plain data, no drawing.
//
// The output service makes one from a chart request of the module (a histogram, a pie or a
// stacked plot, with the series, axes and labels the module chose) or from the cases of
// the open file (box plots, the scatterplot matrix, 3D histograms: the statistics they
// draw). The renderers (GraphJson.h, workbench/render/) read it and never change it.
//
//   1. every text is final: tokens expanded, trailing blanks gone, valid UTF-8;
//   2. titles are lines: the first is the graph's name, the drill string follows;
//   3. a number that is not finite is a value the graph does not have (a point never
//      written, the mean of a variable without cases).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wb {

enum class GraphType { Histogram, Pie, Stacked, BoxPlot, ScatterMatrix, Histogram3D };

// "histogram", "pie", "stacked", "boxplot", "scatter-matrix" or "histogram3d".
std::string_view graphTypeName(GraphType type);

struct AxisLabel {
    double at = 0;
    std::string text;
};

// A range whose min is not below its max, or not finite, is unset: a renderer works one
// out from the data.
struct GraphAxis {
    double min = 0;
    double max = 0;
    double step = 0;
    std::vector<AxisLabel> labels;
};

// Point i is (x[i], y[i]); labels, when the request has point labels, one per point.
struct GraphSeries {
    std::string name;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<std::string> labels;
    int colour = 0; // the module's colour number
    double barWidth = 0.9;
};

// The box style numbers of the box-plot call.
enum class BoxStyle {
    MedianQuartilesRange = 52, // median; quartiles; smallest and largest value
    MeanSdSd196 = 53,          // mean; mean ± SD; mean ± 1.96 SD
    MeanSeSd = 54,             // mean; mean ± SE; mean ± SD
    MeanSeSe196 = 55,          // mean; mean ± SE; mean ± 1.96 SE
};

// What the centre, box and whiskers show, in the words of the option that picks the style:
// "Médiane/Quartiles/Etendue" and so on.
std::string_view boxStyleText(BoxStyle style);
// The same as a sentence that a picture shows above its boxes.
std::string_view boxStyleLegend(BoxStyle style);

// One variable of a box plot: the centre, the box and the whiskers, over the cases kept
// that have a value of the variable.
struct BoxSummary {
    int variable = 0; // 1-based number in the file
    std::string name;
    std::string longName;
    int cases = 0;     // cases counted
    double weight = 0; // their total weight
    double centre = 0;
    double boxLow = 0;
    double boxHigh = 0;
    double whiskerLow = 0;
    double whiskerHigh = 0;
    // Smallest and largest value, for the scale of the picture.
    double min = 0;
    double max = 0;
};

struct BoxPlots {
    BoxStyle style = BoxStyle::MedianQuartilesRange;
    std::vector<BoxSummary> variables;
};

struct GraphVariable {
    int variable = 0; // 1-based number in the file
    std::string name;
    std::string longName;
    // Smallest and largest value over the cases kept; not finite when there is none.
    double min = 0;
    double max = 0;
};

// One plot of the matrix: variable columns[column] across, rows[row] up.
struct ScatterCell {
    int row = 0;
    int column = 0;
    int cases = 0;          // cases kept with a value of both variables
    double weight = 0;      // their total weight
    double correlation = 0; // weighted Pearson r; not finite when undefined
    // The points drawn: all of them, or every k-th when there are too many to draw.
    std::vector<double> x;
    std::vector<double> y;
};

// Without a second list the rows are the columns and the diagonal holds the names.
struct ScatterMatrix {
    int mode = 0; // the call's mode word, kept as given
    std::vector<GraphVariable> columns;
    std::vector<GraphVariable> rows;
    bool diagonal = true;
    std::vector<ScatterCell> cells; // row after row, no cell on the diagonal
};

// A bin holds lower < v <= upper, or, for a variable of few distinct values, the one value
// lower == upper.
struct HistogramBin {
    double lower = 0;
    double upper = 0;
    std::string label;
};

struct Histogram3DData {
    int kind = 0; // the call's kind, kept as given
    GraphVariable x;
    GraphVariable y;
    std::vector<HistogramBin> xBins;
    std::vector<HistogramBin> yBins;
    // Weighted count of bin (i, j) at i * yBins.size() + j.
    std::vector<double> counts;
    int cases = 0;
    double weight = 0;

    double count(std::size_t i, std::size_t j) const { return counts[i * yBins.size() + j]; }
};

struct GraphDocument {
    int command = 0; // control id of the result button that made the graph, 0 for none
    int number = 0;  // 1, 2, 3... in the order the session made its documents
    GraphType type = GraphType::Histogram;
    std::vector<std::string> titles;
    std::string xTitle;
    std::string yTitle;
    std::vector<GraphSeries> series;
    GraphAxis xAxis;
    GraphAxis yAxis;
    std::optional<BoxPlots> boxes;
    std::optional<ScatterMatrix> scatter;
    std::optional<Histogram3DData> histogram3d;
    // A histogram after a drill step: per point of the first series, the count its bar would
    // have if the subset kept the shares of the level above (ParentShares.h); empty for none.
    std::vector<double> levelAbove;

    // The first title line, empty when there is none: the document's name.
    std::string name() const { return titles.empty() ? std::string() : titles.front(); }
};

} // namespace wb
