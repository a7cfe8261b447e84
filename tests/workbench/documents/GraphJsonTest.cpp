// A graph document as JSON: the keys in their order, no numbers where the graph has none,
// and the statistics of the graphs drawn from the cases.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "workbench/documents/GraphJson.h"

namespace {

using Json = nlohmann::ordered_json;
constexpr double None = std::numeric_limits<double>::quiet_NaN();

wb::GraphDocument histogram() {
    wb::GraphDocument graph;
    graph.command = 9061;
    graph.number = 4;
    graph.titles = {"Histogramme de la variable étudiée : AGE", "SEX = Femme"};
    graph.xTitle = "AGE";
    graph.yTitle = "Effectif";
    graph.series.push_back({"", {1, 2, None}, {7, 3.5, None}, {}, 12, 0.9});
    graph.xAxis = {0, 4, 1, {{1, "18<x<=30"}, {2, "30<x<=45"}}};
    graph.yAxis = {0, 10, 1, {{0, "0"}, {10, "10"}}};
    return graph;
}

// Compared as ordered JSON, so the keys' order counts; a point never written is null, and a
// chart request has no statistics.
TEST(GraphJsonTest, ChartRequestKeepsItsKeysInOrder) {
    EXPECT_EQ(Json::parse(wb::graphJsonText(histogram())), Json::parse(R"({
        "kind": "graph", "command": 9061, "number": 4, "type": "histogram",
        "titles": ["Histogramme de la variable étudiée : AGE", "SEX = Femme"],
        "xTitle": "AGE", "yTitle": "Effectif",
        "series": [{"x": [1, 2, null], "y": [7, 3.5, null], "labels": [], "name": "",
                    "colour": 12, "barWidth": 0.9}],
        "xAxis": {"min": 0, "max": 4, "step": 1,
                  "labels": [{"at": 1, "text": "18<x<=30"}, {"at": 2, "text": "30<x<=45"}]},
        "yAxis": {"min": 0, "max": 10, "step": 1,
                  "labels": [{"at": 0, "text": "0"}, {"at": 10, "text": "10"}]}})"));
}

TEST(GraphJsonTest, StatisticsOfTheGraphsDrawnFromTheCases) {
    wb::GraphDocument boxes;
    boxes.type = wb::GraphType::BoxPlot;
    wb::BoxSummary age{3, "AGE", "Âge", 12, 20.5, 41, 30, 52, 18, 80, 18, 80};
    wb::BoxSummary empty{5, "SPEND", "", 0, 0, None, None, None, None, None, None, None};
    boxes.boxes = wb::BoxPlots{wb::BoxStyle::MedianQuartilesRange, {age, empty}};
    const Json box = wb::graphJson(boxes)["boxes"];
    EXPECT_EQ(box["style"], 52);
    EXPECT_EQ(box["statistics"], "Médiane/Quartiles/Etendue");
    EXPECT_EQ(box["variables"][0],
              Json::parse(R"({"variable": 3, "name": "AGE", "longName": "Âge", "cases": 12,
                  "weight": 20.5, "centre": 41, "boxLow": 30, "boxHigh": 52, "whiskerLow": 18,
                  "whiskerHigh": 80, "min": 18, "max": 80})"));
    EXPECT_TRUE(box["variables"][1]["centre"].is_null()) << "no case, no centre";

    wb::GraphDocument matrix;
    matrix.type = wb::GraphType::ScatterMatrix;
    wb::ScatterMatrix scatter;
    scatter.mode = 204;
    scatter.columns = {{3, "AGE", "", 18, 80}, {6, "INCOME", "", 800, 5000}};
    scatter.rows = scatter.columns;
    scatter.cells = {{0, 1, 10, 14.5, 0.25, {1, 2}, {3, 4}}, {1, 0, 10, 14.5, None, {}, {}}};
    matrix.scatter = scatter;
    const Json cells = wb::graphJson(matrix)["scatter"]["cells"];
    EXPECT_EQ(cells[0], Json::parse(R"({"row": 0, "column": 1, "cases": 10, "weight": 14.5,
                                        "correlation": 0.25, "drawn": 2})"));
    EXPECT_TRUE(cells[1]["correlation"].is_null());

    wb::GraphDocument bars;
    bars.type = wb::GraphType::Histogram3D;
    wb::Histogram3DData data;
    data.xBins = {{1, 1, "Homme"}, {2, 2, "Femme"}};
    data.yBins = {{0, 10, "0<x<=10"}, {10, 20, "10<x<=20"}, {20, 30, "20<x<=30"}};
    data.counts = {1, 2, 3, 4, 5, 6}; // bin (i, j) at i * 3 + j
    data.cases = 21;
    data.weight = 21;
    bars.histogram3d = data;
    const Json hist = wb::graphJson(bars)["histogram3d"];
    EXPECT_EQ(hist["counts"], Json::parse("[[1, 2, 3], [4, 5, 6]]")) << "one row per x bin";
    EXPECT_EQ(hist["xBins"][1], Json::parse(R"({"lower": 2, "upper": 2, "label": "Femme"})"));
    EXPECT_EQ(hist["yBins"].size(), 3u);
}

} // namespace
