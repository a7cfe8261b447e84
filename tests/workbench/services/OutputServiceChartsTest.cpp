// The chart calls of the output service: a chart request of the module becomes a graph
// document; the graphs drawn from the cases refuse what they cannot draw; tables and graphs
// share one list and one numbering.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/AnalysisFixture.h"
#include "workbench/services/ModuleChart.h"
#include "workbench/automation/Dispatcher.h"
#include "workbench/automation/AutomationRuntime.h"
#include "workbench/services/OutputService.h"
#include "workbench/text/TokenTable.h"

namespace {

using wb::GraphType;
using wb::testing::ModuleChart;

class OutputServiceChartsTest : public ::testing::Test {
protected:
    OutputServiceChartsTest() : output(store, tokens) {}

    const wb::GraphDocument& lastGraph() const { return output.documents().back().graph(); }

    wb::TokenTable tokens;
    wb::DocumentStore store;
    wb::OutputService output;
};

TEST_F(OutputServiceChartsTest, HistogramRequestKeepsSeriesRangesLabelsAndTitles) {
    const std::string title = "Histogramme de la variable du drill-down : REGION: Région";
    const std::string longLabel = "Provence-Alpes-Côte d'Azur";
    // Three categories and a bar of missing data, as a histogram of the module draws them.
    ModuleChart chart(5, 1, 4);
    const double counts[] = {12, 7, 30, 2};
    for (int i = 0; i < 4; ++i)
        chart.point(0, i, i + 1, counts[i]);
    chart.title(0, tokens.tokenFor(title));
    chart.title(1, "REGION = Nord");
    chart.xTitle = "REGION";
    chart.yTitle = "Effectif";
    chart.xMin = 0, chart.xMax = 5, chart.xStep = 1;
    chart.yMin = 0, chart.yMax = 50, chart.yStep = 5;
    chart.xLabel(4, 4, "Manquante(s)"); // out of order, and entry 0 never written
    chart.xLabel(1, 1, "Nord");
    chart.xLabel(2, 2, tokens.tokenFor(longLabel));
    chart.xLabel(3, 3, "Sud   ");
    for (int k = 0; k <= 10; ++k)
        chart.yLabel(k, 5.0 * k, std::to_string(5 * k));
    store.beginCommand(9061);

    ASSERT_EQ(chart.send(output), 1) << output.lastError();
    const wb::GraphDocument& graph = lastGraph();
    EXPECT_EQ(graph.type, GraphType::Histogram);
    EXPECT_EQ(graph.command, 9061);
    EXPECT_EQ(graph.titles, (std::vector<std::string>{title, "REGION = Nord"}));
    EXPECT_EQ(graph.xTitle, "REGION");
    EXPECT_EQ(graph.yTitle, "Effectif");
    ASSERT_EQ(graph.series.size(), 1u);
    EXPECT_EQ(graph.series[0].x, (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(graph.series[0].y, (std::vector<double>{12, 7, 30, 2}));
    EXPECT_TRUE(graph.series[0].labels.empty()) << "the point-label switch is off";
    EXPECT_EQ(graph.series[0].colour, 12);
    EXPECT_DOUBLE_EQ(graph.series[0].barWidth, 0.9);
    EXPECT_EQ(graph.xAxis.min, 0);
    EXPECT_EQ(graph.xAxis.max, 5);
    ASSERT_EQ(graph.xAxis.labels.size(), 4u) << "the empty entry 0 is no label";
    const std::vector<std::pair<double, std::string>> expected = {
        {1, "Nord"}, {2, longLabel}, {3, "Sud"}, {4, "Manquante(s)"}};
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_EQ(graph.xAxis.labels[k].at, expected[k].first);
        EXPECT_EQ(graph.xAxis.labels[k].text, expected[k].second);
    }
    EXPECT_EQ(graph.yAxis.max, 50);
    EXPECT_EQ(graph.yAxis.step, 5);
    ASSERT_EQ(graph.yAxis.labels.size(), 11u);
    EXPECT_EQ(graph.yAxis.labels[10].text, "50");
    EXPECT_EQ(graph.yAxis.labels[10].at, 50);
}

TEST_F(OutputServiceChartsTest, PieKeepsPointLabelsAndTheEmptyLastPoint) {
    // Three slices and the last place of each half left at 0, as the pie charts leave it.
    ModuleChart chart(3, 1, 4);
    const double counts[] = {5, 3, 2};
    for (int i = 0; i < 4; ++i)
        chart.point(0, i, i < 3 ? i + 1 : 0, i < 3 ? counts[i] : 0);
    chart.pointLabel(0, "Île-de-France"); // 14 bytes: the field keeps 12
    chart.pointLabel(1, "Bretagne");
    chart.pointLabel(2, "Alsace");
    chart.title(0, "Camembert pour la variable de drill-down : REGION");
    ASSERT_EQ(chart.send(output), 1) << output.lastError();

    const wb::GraphDocument& graph = lastGraph();
    EXPECT_EQ(graph.type, GraphType::Pie);
    EXPECT_EQ(graph.titles.size(), 1u) << "empty title lines are left out";
    ASSERT_EQ(graph.series.size(), 1u);
    EXPECT_EQ(graph.series[0].y, (std::vector<double>{5, 3, 2, 0}));
    EXPECT_EQ(graph.series[0].labels,
              (std::vector<std::string>{"Île-de-Fran", "Bretagne", "Alsace", ""}));
}

TEST_F(OutputServiceChartsTest, StackedPlotKeepsEverySeries) {
    // Two variables; point 1 of series 2 is never written, which leaves it no number.
    ModuleChart chart(2, 3, 2);
    chart.point(0, 0, 1, 100), chart.point(0, 1, 2, 100);
    chart.point(1, 0, 1, 30), chart.point(1, 1, 2, 45);
    chart.point(2, 0, 1, 0);
    chart.colours = {10, 9, 12};
    ASSERT_EQ(chart.send(output), 1) << output.lastError();

    const wb::GraphDocument& graph = lastGraph();
    EXPECT_EQ(graph.type, GraphType::Stacked);
    ASSERT_EQ(graph.series.size(), 3u);
    EXPECT_EQ(graph.series[1].y, (std::vector<double>{30, 45}));
    ASSERT_EQ(graph.series[2].x.size(), 2u);
    EXPECT_EQ(graph.series[2].x[0], 1);
    EXPECT_TRUE(std::isnan(graph.series[2].x[1]) && std::isnan(graph.series[2].y[1]));
    EXPECT_EQ(graph.series[2].colour, 12);
}

TEST_F(OutputServiceChartsTest, RefusesRequestsThatDescribeNoChart) {
    const struct {
        const char* what;
        void (*spoil)(ModuleChart&);
    } cases[] = {
        {"unknown kind", [](ModuleChart& c) { c.kind = 7; }},
        {"negative point count", [](ModuleChart& c) { c.points[0] = -1; }},
        {"a series without its array", [](ModuleChart& c) { c.blocks[0].clear(); }},
        {"labels without texts", [](ModuleChart& c) {
             c.xLabel(1, 1, "Nord");
             c.xTexts.clear();
         }},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        ModuleChart chart(5, 1, 2);
        chart.point(0, 0, 1, 1);
        one.spoil(chart);
        output.clearError();
        EXPECT_EQ(chart.send(output), 0);
        EXPECT_NE(output.lastError().find("cannot show the chart"), std::string::npos)
            << output.lastError();
    }
    EXPECT_TRUE(output.documents().empty()) << "nothing is made";
}

// Keeps the ids of what is added; refuses graphs while `failing` is set.
struct GraphSink : wb::DocumentObserver {
    void added(const wb::Document& document) override {
        if (failing && document.isGraph())
            throw std::runtime_error("cannot write 002-x.svg in the output folder 'out'");
        numbers.push_back(document.id);
    }
    void replaced(const wb::Document&) override {}
    void closed(const wb::Document&) override {}
    void stateChanged(const wb::Document&) override {}
    bool failing = false;
    std::vector<int> numbers;
};

short emitTable(wb::OutputService& output, const std::string& title) {
    double value = 1;
    char text[8] = {}, format[1] = {}, head[9] = "N", name[13] = "Total";
    std::vector<char> titles(240);
    title.copy(titles.data(), 80);
    short zero = 0, one = 1;
    return output.looka4(&value, text, format, head, nullptr, name, titles.data(), 1, 1, 1, 1, 16,
                         6, 14, 10, 80, 1, 0, 12, 8, 8, 9217, 0, nullptr, nullptr, nullptr, &zero,
                         &one, &one);
}

TEST_F(OutputServiceChartsTest, TablesAndGraphsShareOneListAndOneNumbering) {
    wb::AutomationRuntime automation;
    wb::Dispatcher dispatcher(automation);
    output.setAutomation(&automation);
    GraphSink sink;
    store.addObserver(sink);

    ASSERT_EQ(emitTable(output, "Résumé"), 1);
    ModuleChart chart(5, 1, 1);
    chart.point(0, 0, 1, 3);
    chart.title(0, "Histogramme de la variable étudiée : AGE");
    chart.title(1, "Tous les cas");
    ASSERT_EQ(chart.send(output), 1);
    ASSERT_EQ(emitTable(output, "Fréquences"), 1);
    sink.failing = true;
    EXPECT_EQ(chart.send(output), 0) << "the sink refused it";
    EXPECT_NE(output.lastError().find("002-x.svg"), std::string::npos);

    ASSERT_EQ(output.documents().size(), 4u) << "a graph the sink refused is still made";
    EXPECT_EQ(sink.numbers, (std::vector<int>{1, 2, 3}));
    const bool isGraph[] = {false, true, false, true};
    for (std::size_t k = 0; k < 4; ++k) {
        EXPECT_EQ(output.documents()[k].id, static_cast<int>(k) + 1);
        EXPECT_EQ(output.documents()[k].isGraph(), isGraph[k]);
    }

    IDispatch* graph = output.documentObject(output.documents()[1].id);
    ASSERT_NE(graph, nullptr);
    const COleVariant name = dispatcher.get(graph, "Name");
    EXPECT_EQ(BstrView(name.bstrVal), "Histogramme de la variable étudiée : AGE")
        << "a graph's name is its first title line";
    graph->Release();
    ASSERT_EQ(emitTable(output, "Encore"), 1);
    EXPECT_NE(output.lastError().find("002-x.svg"), std::string::npos)
        << "kept after a later success";
}

int keepAll(char*, long*, double*, double*, double*) { return 0; }
int keepAllFloat(char*, long*, double*, float*, float*) { return 0; }

TEST_F(OutputServiceChartsTest, GraphsFromTheCasesNeedAFileAndItsVariables) {
    short variables[] = {1, 2}, beyond[] = {1, 3};
    char title[] = "Boîtes à Moustaches des Variables Etudiées";
    char none[] = "";
    const auto box = [&](unsigned short style, short count, short* numbers) {
        return output.CategorizedVarBoxAndWhisker(style, title, none, nullptr, nullptr, 0, count,
                                                  numbers, nullptr, keepAll);
    };
    const auto scatter = [&](short* numbers, const char* titles) {
        return output.CorrelationScatterplot(204, 0, 2, numbers, 0, nullptr, 0, nullptr, nullptr,
                                             nullptr, keepAll, titles);
    };
    const auto bars3D = [&](short x, short y) {
        return output.Histogram3D(4, x, y, 0, 0, nullptr, nullptr, 0, title, nullptr, none,
                                  nullptr, 0, nullptr, keepAllFloat);
    };
    const wb::DataFile file = test::makeFile({{"AGE"}, {"REVENU"}}, {{30, 1200}});
    // The scatterplot call gives 1 when it cannot draw, the others 0.
    const struct {
        const char* what;
        bool withFile;
        std::function<int()> draw;
        int failed;
        const char* message;
    } cases[] = {
        {"box plots without a file", false, [&] { return box(52, 2, variables); }, 0,
         "no data file"},
        {"scatterplot without a file", false,
         [&] { return scatter(variables, "Corrélations\n"); }, 1, "no data file"},
        {"3D without a file", false, [&] { return bars3D(0, 1); }, 0, "no data file"},
        {"style 51", true, [&] { return box(51, 2, variables); }, 0, "style 51"},
        {"no variable", true, [&] { return box(52, 0, variables); }, 0, "no variable to draw"},
        {"box of variable 3", true, [&] { return box(52, 2, beyond); }, 0, "no variable 3"},
        {"scatter of variable 3", true, [&] { return scatter(beyond, "Corrélations"); }, 1,
         "no variable 3"},
        {"3D of variables 1 and 3 (0 and 2 as they arrive)", true, [&] { return bars3D(0, 2); },
         0, "no variable 3"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.what);
        output.setDataFile(one.withFile ? &file : nullptr);
        output.clearError();
        EXPECT_EQ(one.draw(), one.failed);
        EXPECT_NE(output.lastError().find(one.message), std::string::npos) << output.lastError();
    }
    EXPECT_TRUE(output.documents().empty());

    // Made: the scatterplot gives 0, the others 1.
    EXPECT_EQ(scatter(variables, "Corrélations\nTous les cas"), 0);
    EXPECT_EQ(lastGraph().titles, (std::vector<std::string>{"Corrélations", "Tous les cas"}));
    EXPECT_EQ(bars3D(1, 0), 1);
    EXPECT_EQ(lastGraph().histogram3d->x.name, "REVENU") << "x = 1 is the second variable";
    EXPECT_EQ(lastGraph().histogram3d->y.name, "AGE");
    EXPECT_EQ(lastGraph().xTitle, "REVENU");
    // The subtitle of a box plot is a token, as DrillString gives it.
    const std::string drill = "REGION = Provence-Alpes-Côte d'Azur";
    std::string subtitle = tokens.tokenFor(drill);
    ASSERT_EQ(output.CategorizedVarBoxAndWhisker(54, title, subtitle.data(), nullptr, nullptr, 0,
                                                 1, variables, nullptr, keepAll),
              1);
    EXPECT_EQ(lastGraph().type, GraphType::BoxPlot);
    EXPECT_EQ(lastGraph().titles, (std::vector<std::string>{title, drill}));
    EXPECT_EQ(lastGraph().boxes->style, wb::BoxStyle::MeanSeSd);
}

} // namespace
