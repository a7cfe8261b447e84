#include "workbench/documents/GraphJson.h"

#include <cmath>

namespace wb {

namespace {

using Json = nlohmann::ordered_json;

Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

Json numbers(const std::vector<double>& values) {
    Json out = Json::array();
    for (double value : values)
        out.push_back(number(value));
    return out;
}

Json axisJson(const GraphAxis& axis) {
    Json labels = Json::array();
    for (const AxisLabel& label : axis.labels)
        labels.push_back({{"at", number(label.at)}, {"text", label.text}});
    return {{"min", number(axis.min)},
            {"max", number(axis.max)},
            {"step", number(axis.step)},
            {"labels", std::move(labels)}};
}

Json variableJson(const GraphVariable& variable) {
    return {{"variable", variable.variable},
            {"name", variable.name},
            {"longName", variable.longName},
            {"min", number(variable.min)},
            {"max", number(variable.max)}};
}

Json boxesJson(const BoxPlots& boxes) {
    Json variables = Json::array();
    for (const BoxSummary& box : boxes.variables)
        variables.push_back({{"variable", box.variable},
                             {"name", box.name},
                             {"longName", box.longName},
                             {"cases", box.cases},
                             {"weight", number(box.weight)},
                             {"centre", number(box.centre)},
                             {"boxLow", number(box.boxLow)},
                             {"boxHigh", number(box.boxHigh)},
                             {"whiskerLow", number(box.whiskerLow)},
                             {"whiskerHigh", number(box.whiskerHigh)},
                             {"min", number(box.min)},
                             {"max", number(box.max)}});
    return {{"style", static_cast<int>(boxes.style)},
            {"statistics", std::string(boxStyleText(boxes.style))},
            {"variables", std::move(variables)}};
}

Json scatterJson(const ScatterMatrix& matrix) {
    Json columns = Json::array(), rows = Json::array(), cells = Json::array();
    for (const GraphVariable& variable : matrix.columns)
        columns.push_back(variableJson(variable));
    for (const GraphVariable& variable : matrix.rows)
        rows.push_back(variableJson(variable));
    for (const ScatterCell& cell : matrix.cells)
        cells.push_back({{"row", cell.row},
                         {"column", cell.column},
                         {"cases", cell.cases},
                         {"weight", number(cell.weight)},
                         {"correlation", number(cell.correlation)},
                         {"drawn", cell.x.size()}});
    return {{"mode", matrix.mode},
            {"diagonal", matrix.diagonal},
            {"columns", std::move(columns)},
            {"rows", std::move(rows)},
            {"cells", std::move(cells)}};
}

Json binsJson(const std::vector<HistogramBin>& bins) {
    Json out = Json::array();
    for (const HistogramBin& bin : bins)
        out.push_back({{"lower", number(bin.lower)}, {"upper", number(bin.upper)}, {"label", bin.label}});
    return out;
}

Json histogram3dJson(const Histogram3DData& data) {
    Json counts = Json::array();
    for (std::size_t i = 0; i < data.xBins.size(); ++i) {
        Json row = Json::array();
        for (std::size_t j = 0; j < data.yBins.size(); ++j)
            row.push_back(number(data.count(i, j)));
        counts.push_back(std::move(row));
    }
    return {{"kind", data.kind},
            {"x", variableJson(data.x)},
            {"y", variableJson(data.y)},
            {"xBins", binsJson(data.xBins)},
            {"yBins", binsJson(data.yBins)},
            {"counts", std::move(counts)},
            {"cases", data.cases},
            {"weight", number(data.weight)}};
}

} // namespace

nlohmann::ordered_json graphJson(const GraphDocument& graph) {
    Json series = Json::array();
    for (const GraphSeries& one : graph.series)
        series.push_back({{"x", numbers(one.x)},
                          {"y", numbers(one.y)},
                          {"labels", one.labels},
                          {"name", one.name},
                          {"colour", one.colour},
                          {"barWidth", number(one.barWidth)}});

    Json json;
    json["kind"] = "graph";
    json["command"] = graph.command;
    json["number"] = graph.number;
    json["type"] = std::string(graphTypeName(graph.type));
    json["titles"] = graph.titles;
    json["xTitle"] = graph.xTitle;
    json["yTitle"] = graph.yTitle;
    json["series"] = std::move(series);
    json["xAxis"] = axisJson(graph.xAxis);
    json["yAxis"] = axisJson(graph.yAxis);
    if (graph.boxes)
        json["boxes"] = boxesJson(*graph.boxes);
    if (graph.scatter)
        json["scatter"] = scatterJson(*graph.scatter);
    if (graph.histogram3d)
        json["histogram3d"] = histogram3dJson(*graph.histogram3d);
    if (!graph.levelAbove.empty())
        json["levelAbove"] = graph.levelAbove;
    return json;
}

std::string graphJsonText(const GraphDocument& graph) {
    return graphJson(graph).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace wb
