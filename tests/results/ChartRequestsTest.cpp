// The graph requests of the analysis as the host receives them: histograms, pie charts and
// stacked plots from the category counts, box plots, the scatterplot matrix and 3D
// histograms with the case filter, and the panel's buttons that ask for them.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numeric>

#include "results/ChartRecorder.h"
#include "support/PanelFixture.h"
#include "workbench/session/DrillSession.h"

namespace {

constexpr double M = -9;
const char* const Missing = "Manquante(s)";
const char* const Provence = "Provence-Alpes-Azur!"; // 20 characters


// Fills the recorder in for the fixture's table output.
template <typename Base> class WithRecorder : public Base {
protected:
    WithRecorder() {
        this->host.setOutput(&recorder);
        ModuleContext()->Host = this->host.services();
    }
    std::string expand(std::string text) {
        this->host.text().ExpandPossible8CharHash(text);
        return text;
    }
    // The cases of the open file in the filter's layout: variable v at index v - 1.
    std::vector<std::vector<double>> fileCases() const {
        std::vector<std::vector<double>> all;
        const int nv = this->file.variableCount();
        for (int c = 1; c <= this->file.caseCount(); ++c)
            all.emplace_back(this->file.row(c) + 1, this->file.row(c) + 1 + nv);
        return all;
    }
    test::ChartRecorder recorder;
};

class ChartRequests : public WithRecorder<test::AnalysisFixture> {
protected:
    // A: categorical with labels and a long name, B: categorical, X and Y: continuous, W:
    // weight. A holds Nord 4, Provence 2 and 1 missing; B the values 1 to 5 once and 2
    // missing.
    static wb::DataFile survey(double weight = 1) {
        wb::DataFile data = test::makeFile(
            {{"A", M, {{1, "Nord"}, {2, Provence}}}, {"B", M}, {"X", M}, {"Y", M}, {"W", M}},
            {{1, 1, 10, 1.5, weight},
             {1, 2, 20, 2.5, weight},
             {1, M, 30, 3.5, weight},
             {1, M, 40, 4.5, weight},
             {2, 3, 50, 5.5, weight},
             {2, 4, 60, 6.5, weight},
             {M, 5, 70, 7.5, weight}});
        data.variable(1).longName = "Région";
        return data;
    }
    void SetUp() override { openSurvey(); }
    void openSurvey(double weight = 1) {
        open(survey(weight));
        ASSERT_EQ(chooseDrillVariables({1, 2}, {3}), 1);
        ASSERT_EQ(chooseReviewVariables({1, 2}, {3, 4}), 1);
    }
    // Weights in force; with weighted moments off they are rounded to whole numbers.
    void weighByW(bool weightedMoments) {
        file.setWeightVariable(5);
        host.setDataFile(&file);
        ModuleBlocks().Wght.WeightOn = 1;
        ModuleBlocks().Wght.WeightVar = 5;
        analysis->SetWM(weightedMoments ? 1 : 0);
        analysis->NeedsRescan = 1;
    }
    // Replaces the drill steps by one step of `method` pinned to the category
    // (lower, upper], or to the missing-data row.
    void pinStep(int method, double lower, double upper, bool missingRow = false) {
        Drill step(3, 1, 0, "X");
        step.Method = method;
        step.Categories.emplace(1, 1.0, lower - 10, "below", lower - 20);
        step.Categories.emplace(1, 1.0, upper, "pinned", lower);
        step.DrilledItem = missingRow ? 2 : 1;
        analysis->DrillUps->clear();
        analysis->DrillUps->insert(step);
    }
    std::vector<int> boxFilter(const std::vector<std::vector<double>>& cases) {
        recorder.cases = cases;
        recorder.boxPlots.clear();
        analysis->BoxMedianQuartiles = 1;
        analysis->BoxMeanSeSd = analysis->BoxMeanSdSd196 = analysis->BoxMeanSeSe196 = 0;
        EXPECT_EQ(analysis->RVBoxWhiker(panel), 1);
        return recorder.boxPlots.empty() ? std::vector<int>{} : recorder.boxPlots[0].filtered;
    }
};

TEST_F(ChartRequests, HistogramBars) {
    const struct {
        const char* what;
        double weight;
        short countMD;
        std::size_t chart; // in the order of the drill-down variables
        std::vector<double> counts;
        std::vector<std::string> labels; // entry 0 stays empty
        double top;
        std::size_t yLabels;
        const char* yTitle;
    } cases[] = {
        {"missing data counted", 1, 1, 0, {4, 2, 1}, {"", "Nord", Provence, Missing}, 5, 6,
         "Effectif"},
        {"missing data not counted", 1, 0, 0, {4, 2}, {"", "Nord", Provence}, 5, 6, "Effectif"},
        {"the missing bar raises the top", 1, 1, 1, {1, 1, 1, 1, 1, 2}, {}, 5, 6, "Effectif"},
        {"without it", 1, 0, 1, {1, 1, 1, 1, 1}, {}, 2, 3, "Effectif"},
        {"weighted", 0.4, 1, 0, {1.6, 0.8, 0.4}, {}, 2, 3, "Effectif pondéré"},
        {"weighted counts below one", 0.4, 0, 1, {0.4, 0.4, 0.4, 0.4, 0.4}, {}, 0, 3,
         "Effectif pondéré"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        openSurvey(c.weight);
        if (c.weight != 1)
            weighByW(true);
        analysis->SetCountMD(c.countMD);
        analysis->NeedsRescan = 1;
        recorder.charts.clear();
        ASSERT_EQ(analysis->DDNHistograms(panel), 1);
        ASSERT_EQ(recorder.charts.size(), 3u); // A, B, X
        const test::ChartRequest& r = recorder.charts[c.chart];
        const int points = static_cast<int>(c.counts.size());
        ASSERT_EQ(r.points, std::vector<int>{points});
        for (int i = 0; i < points; ++i) {
            EXPECT_EQ(r.x(0, i), i + 1);
            EXPECT_NEAR(r.y(0, i), c.counts[i], 1e-9) << i;
        }
        EXPECT_EQ(r.xLabels.count, points + 1);
        EXPECT_EQ(r.xLabels.width, 20);
        if (!c.labels.empty()) {
            EXPECT_EQ(r.xLabels.texts, c.labels);
        }
        std::vector<double> positions(points + 1);
        std::iota(positions.begin(), positions.end(), 0.0);
        EXPECT_EQ(r.xLabels.positions, positions);
        EXPECT_EQ(r.xMin, 0);
        EXPECT_EQ(r.xMax, points + 1);
        EXPECT_EQ(r.xStep, 1);
        EXPECT_EQ(r.yMin, 0);
        EXPECT_EQ(r.yMax, c.top);
        EXPECT_EQ(r.yLabels.count, static_cast<int>(c.yLabels));
        EXPECT_EQ(r.yTitle, c.yTitle);
        EXPECT_EQ(r.kind, 5);
        EXPECT_EQ(r.flags, 130);
        EXPECT_EQ(r.modes, std::vector<int>{0});
        EXPECT_EQ(r.widths, std::vector<double>{0.9});
    }
}

TEST_F(ChartRequests, VariablesWithoutBarsAreNotPlotted) {
    // Weights of 0.4 round to 0 without weighted moments: no variable has a category left.
    openSurvey(0.4);
    weighByW(false);
    EXPECT_EQ(analysis->DDNHistograms(panel), 1);
    EXPECT_TRUE(recorder.charts.empty());
    EXPECT_EQ(takeMessages(), std::vector<std::string>(3, "Nothing to plot...."));
}

TEST_F(ChartRequests, TitlesOfEachVariableGraph) {
    const struct {
        const char* what;
        std::function<int()> draw;
        std::vector<std::string> titles;
        std::vector<std::string> xTitles; // short names without their padding
    } cases[] = {
        {"drill-down histograms", [this] { return analysis->DDNHistograms(panel); },
         {"Histogramme de la variable du drill-down : A: Région",
          "Histogramme de la variable du drill-down : X"},
         {"A", "X"}},
        {"review histograms", [this] { return analysis->RVHistograms(panel); },
         {"Histogramme de la variable étudiée : A: Région",
          "Histogramme de la variable étudiée : B",
          "Histogramme de la variable étudiée : X",
          "Histogramme de la variable étudiée : Y"},
         {"A", "B", "X", "Y"}},
        {"drill-down pies", [this] { return analysis->DDNPiecharts(0, panel); },
         {"Camembert pour la variable de drill-down : A: Région",
          "Camembert pour la variable de drill-down : X"},
         {"A", "X"}},
        {"review pies", [this] { return analysis->RVPiecharts(0, panel); },
         {"Camembert des variables étudiées : A: Région",
          "Camembert des variables étudiées : B",
          "Camembert des variables étudiées : X",
          "Camembert des variables étudiées : Y"},
         {"A", "B", "X", "Y"}},
        {"drill-down stacked plot", [this] { return analysis->DDNStackedplots(0, panel); },
         {"Tracé empilé des variables du drill-down"}, {}},
        {"review stacked plot", [this] { return analysis->RVStackedplots(0, panel); },
         {"Tracé empilé des variables étudiées"}, {}},
    };
    wb::DrillSession(*analysis, panel).drillDown(2, 0); // B = 1: case 1
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        recorder.charts.clear();
        ASSERT_EQ(c.draw(), 1);
        ASSERT_EQ(recorder.charts.size(), c.titles.size());
        for (std::size_t i = 0; i < c.titles.size(); ++i) {
            const test::ChartRequest& r = recorder.charts[i];
            EXPECT_EQ(expand(r.titles[0]), c.titles[i]);
            EXPECT_EQ(expand(r.titles[1]), expand(analysis->DrillString()));
            EXPECT_TRUE(expand(r.titles[1]).ends_with("\nB        = 1")) << expand(r.titles[1]);
            EXPECT_EQ(r.titles[2], "");
            EXPECT_EQ(r.xTitle, c.xTitles.empty() ? "" : c.xTitles[i]);
        }
    }
}

TEST_F(ChartRequests, PieSlices) {
    ASSERT_EQ(analysis->DDNPiecharts(0, panel), 1);
    ASSERT_EQ(recorder.charts.size(), 3u);
    // A: two categories and the missing slice, one place more that stays 0 and unlabelled.
    const test::ChartRequest& r = recorder.charts[0];
    ASSERT_EQ(r.points, std::vector<int>{4});
    EXPECT_EQ(r.data[0], (std::vector<double>{1, 2, 3, 0, 4, 2, 1, 0}));
    EXPECT_EQ(r.pointLabels[0],
              (std::vector<std::string>{"Nord", "Provence-Alp", "Manquante(s)", ""}));
    EXPECT_EQ(r.pointLabelWidth, 12);
    EXPECT_EQ(r.pointLabelSwitch, 1);
    EXPECT_EQ(r.kind, 3);
    EXPECT_EQ(r.flags, 2);
    EXPECT_EQ(r.types, std::vector<int>{10});
    EXPECT_EQ(r.colours, std::vector<int>{1});
    EXPECT_EQ(r.modes, std::vector<int>{192});
    EXPECT_FALSE(r.namesGiven);
    EXPECT_EQ(r.xMin, 0);
    EXPECT_EQ(r.xMax, 4);
    EXPECT_EQ(r.xStep, 1);
    EXPECT_EQ(r.yMin, 0);
    EXPECT_EQ(r.yMax, 100);
    EXPECT_EQ(r.yStep, 20);
    EXPECT_EQ(r.yTitleLength, 0);

    // Without counting missing data the slice goes.
    analysis->SetCountMD(0);
    analysis->NeedsRescan = 1;
    recorder.charts.clear();
    ASSERT_EQ(analysis->DDNPiecharts(0, panel), 1);
    EXPECT_EQ(recorder.charts[0].data[0], (std::vector<double>{1, 2, 0, 4, 2, 0}));
    EXPECT_EQ(recorder.charts[0].pointLabels[0],
              (std::vector<std::string>{"Nord", "Provence-Alp", ""}));
}

TEST_F(ChartRequests, StackedBands) {
    // Each case: the values of the variables, and the expected band edges: per series, the Y
    // of each variable (0 where the variable has fewer bands).
    const struct {
        const char* what;
        std::vector<std::vector<double>> values; // one list per variable
        short countMD;
        std::vector<std::vector<double>> edges;
        std::vector<std::size_t> bands; // of each variable; the series behind stay 0
    } cases[] = {
        {"30 and 70", {std::vector<double>(30, 1)}, 1, {{100}, {30}, {0}}, {3}},
        {"5 missing, 45 and 50", {}, 1, {{100}, {95}, {45}, {0}}, {4}},
        {"missing band whatever the option", {}, 0, {{100}, {95}, {45}, {0}}, {4}},
        {"2 and 4 categories",
         {{1, 1, 2, 2, 2, 2, 2, 2, 2, 2}, {1, 2, 3, 4, 1, 2, 3, 4, 1, 1}}, 1,
         {{100, 100}, {20, 80}, {0, 60}, {0, 40}, {0, 0}}, {3, 5}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<std::vector<double>> columns = c.values;
        if (columns.empty()) {
            columns.emplace_back();
            columns[0].insert(columns[0].end(), 5, M);
            columns[0].insert(columns[0].end(), 45, 1);
            columns[0].insert(columns[0].end(), 50, 2);
        } else if (columns.size() == 1) {
            columns[0].insert(columns[0].end(), 70, 2);
        }
        std::vector<test::VariableInfo> variables;
        std::vector<short> chosen;
        for (std::size_t v = 0; v < columns.size(); ++v) {
            variables.push_back({"V" + std::to_string(v + 1), M});
            chosen.push_back(static_cast<short>(v + 1));
        }
        std::vector<std::vector<double>> rows(columns[0].size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (const auto& column : columns)
                rows[i].push_back(column[i]);
        open(test::makeFile(variables, rows));
        ASSERT_EQ(chooseDrillVariables(chosen, {}), 1);
        analysis->SetCountMD(c.countMD);
        analysis->NeedsRescan = 1;
        recorder.charts.clear();
        ASSERT_EQ(analysis->DDNStackedplots(0, panel), 1);
        ASSERT_EQ(recorder.charts.size(), 1u);
        const test::ChartRequest& r = recorder.charts[0];
        const int v = static_cast<int>(columns.size());
        ASSERT_EQ(r.seriesCount, static_cast<short>(c.edges.size()));
        for (std::size_t s = 0; s < c.edges.size(); ++s) {
            EXPECT_EQ(r.points[s], v);
            EXPECT_EQ(r.modes[s], 384);
            EXPECT_EQ(r.widths[s], 0.9);
            for (int k = 0; k < v; ++k) {
                EXPECT_NEAR(r.y(s, k), c.edges[s][k], 1e-9) << s << "," << k;
                EXPECT_EQ(r.x(s, k), s < c.bands[k] ? k + 1 : 0) << s << "," << k;
            }
        }
        EXPECT_EQ(r.kind, 2);
        EXPECT_EQ(r.flags, 0);
        EXPECT_EQ(r.xMin, 0);
        EXPECT_EQ(r.xMax, v + 1);
        EXPECT_EQ(r.yMin, 0);
        EXPECT_EQ(r.yMax, 100.1);
        EXPECT_EQ(r.yStep, 20);
        EXPECT_EQ(r.pointLabelWidth, 0);
        EXPECT_EQ(r.yTitle, "Nombre d'obs. relatif (%)");
        EXPECT_EQ(r.xLabels.count, v + 1);
        EXPECT_EQ(r.xLabels.texts[v], "V" + std::to_string(v));
        EXPECT_EQ(r.xLabels.positions[v], v);
    }
}

TEST_F(ChartRequests, StackedPlotOfAVariableWithoutCasesIsNotDrawn) {
    openSurvey(0); // every case weighs 0
    weighByW(true);
    EXPECT_EQ(analysis->DDNStackedplots(0, panel), 0);
    EXPECT_EQ(analysis->RVStackedplots(0, panel), 0);
    EXPECT_TRUE(recorder.charts.empty());
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(ChartRequests, BoxPlotStyles) {
    const struct {
        std::array<int16_t, 4> flags; // median/quartiles, mean/se/sd, mean/sd/1.96 sd, mean/se/1.96 se
        std::vector<int> styles;
    } cases[] = {
        {{1, 1, 1, 1}, {52, 54, 53, 55}}, {{0, 1, 0, 0}, {54}},     {{0, 0, 1, 0}, {53}},
        {{0, 0, 1, 1}, {53, 55}},         {{1, 0, 0, 1}, {52, 55}}, {{0, 0, 0, 0}, {}},
    };
    wb::DrillSession(*analysis, panel).drillDown(1, 1); // A = Provence
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.styles));
        recorder.boxPlots.clear();
        analysis->BoxMedianQuartiles = c.flags[0];
        analysis->BoxMeanSeSd = c.flags[1];
        analysis->BoxMeanSdSd196 = c.flags[2];
        analysis->BoxMeanSeSe196 = c.flags[3];
        analysis->NeedsRescan = 1;
        EXPECT_EQ(analysis->RVBoxWhiker(panel), c.styles.empty() ? 0 : 1);
        std::vector<int> styles;
        for (const test::BoxPlotRequest& r : recorder.boxPlots) {
            styles.push_back(r.style);
            EXPECT_EQ(r.title, "Boîtes à Moustaches des Variables Etudiées");
            EXPECT_EQ(expand(r.subtitle), expand(analysis->DrillString()));
            EXPECT_EQ(r.variables, (std::vector<short>{3, 4}));
            EXPECT_TRUE(r.unusedNull);
            EXPECT_EQ(r.unusedNumber, 0);
        }
        EXPECT_EQ(styles, c.styles);
        if (c.styles.empty()) {
            EXPECT_EQ(takeMessages(),
                      std::vector<std::string>{
                          "Merci de vérifier le type de tracé de Boîte à moustaches"});
            EXPECT_EQ(analysis->NeedsRescan, 1); // refused before the rescan
        } else {
            EXPECT_TRUE(takeMessages().empty());
            EXPECT_EQ(analysis->NeedsRescan, 0);
        }
    }
}

TEST_F(ChartRequests, ScatterplotMatrixMode) {
    std::vector<test::VariableInfo> variables;
    std::vector<double> row;
    for (int v = 1; v <= 16; ++v) {
        variables.push_back({"V" + std::to_string(v), M});
        row.push_back(v);
    }
    const struct {
        int reviews;
        int hostAnswer;
        unsigned short mode;
        short result;
    } cases[] = {{2, 0, 204, 1}, {14, 0, 204, 1}, {15, 0, 68, 1}, {16, 0, 68, 1},
                 {2, 1, 204, 0}, {2, 2, 204, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.reviews);
        open(test::makeFile(variables, {row, row}));
        ASSERT_EQ(chooseDrillVariables({1}, {}), 1);
        std::vector<short> continuous(c.reviews);
        std::iota(continuous.begin(), continuous.end(), short{1});
        ASSERT_EQ(chooseReviewVariables({}, continuous), 1);
        recorder.scatterPlots.clear();
        recorder.scatterAnswer = c.hostAnswer;
        EXPECT_EQ(analysis->RVScatterPlot(panel), c.result);
        ASSERT_EQ(recorder.scatterPlots.size(), 1u);
        const test::ScatterRequest& r = recorder.scatterPlots[0];
        EXPECT_EQ(r.mode, c.mode);
        EXPECT_EQ(r.first, continuous);
        EXPECT_EQ(r.unused1, 0);
        EXPECT_EQ(r.secondCount, 0);
        EXPECT_TRUE(r.secondNull);
        EXPECT_EQ(r.unused2, 0);
        EXPECT_TRUE(r.unusedNull);
        EXPECT_EQ(r.textBuffer, ModuleBlocks().B1.CaseName);
        // The title carries the drill string's text itself, not its token.
        EXPECT_EQ(r.title, "Corrélations\n" + expand(analysis->DrillString()));
        EXPECT_TRUE(r.title.starts_with("Corrélations\nN Total : 2")) << r.title;
    }
}

TEST_F(ChartRequests, FilterBoundariesByMethod) {
    // A step on X pinned to the category with Lower 10 and Upper 20; X is variable 3.
    // The comparisons are the plain ones: a value a tolerant test would call equal to a
    // limit (10 + 1e-12, 20 - 1e-12, 20 + 1e-12) is on its own side of it.
    const auto withX = [](double x) { return std::vector<double>{1, 1, x, 0, 1}; };
    const std::vector<double> values = {10, 10 + 1e-12, 15, 20 - 1e-12, 20, 20 + 1e-12, 9.99};
    const struct {
        const char* what;
        int method;
        bool missingRow;
        std::vector<int> left; // for each of `values`, 1 when the filter leaves it out
    } cases[] = {
        {"distinct values", 0, false, {1, 1, 1, 1, 0, 1, 1}},
        {"integer values", 4, false, {1, 1, 1, 1, 0, 1, 1}},
        {"exact intervals", 1, false, {1, 0, 0, 0, 0, 1, 1}},
        {"neat intervals", 2, false, {1, 0, 0, 0, 0, 1, 1}},
        {"user limits", 5, false, {1, 0, 0, 0, 0, 1, 1}},
        {"fixed step", 3, false, {0, 0, 0, 0, 1, 1, 1}},
        {"unknown method tests nothing", 9, false, {0, 0, 0, 0, 0, 0, 0}},
        {"missing-data step", 2, true, {1, 1, 1, 1, 1, 1, 1}},
    };
    std::vector<std::vector<double>> cases_;
    for (double x : values)
        cases_.push_back(withX(x));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        pinStep(c.method, 10, 20, c.missingRow);
        EXPECT_EQ(boxFilter(cases_), c.left);
    }
}

TEST_F(ChartRequests, FilterFollowsTheDrillSteps) {
    wb::DrillSession session(*analysis, panel);
    const auto cases = fileCases();
    // The cases each step leaves, in file order (1 = left out).
    const struct {
        const char* what;
        std::function<void()> step;
        std::vector<int> left; // empty: known only as the module's own test knows it
    } steps[] = {
        {"no step", [] {}, {0, 0, 0, 0, 0, 0, 0}},
        {"A = Nord", [&] { session.drillDown(1, 0); }, {0, 0, 0, 0, 1, 1, 1}},
        {"and X in its first interval", [&] { session.drillDown(3, 0); }, {}},
        {"and B = 2 instead", [&] {
             session.drillUp(0);
             session.drillDown(2, 1);
         },
         {1, 0, 1, 1, 1, 1, 1}},
        // The scans count the cases of the missing data into such a step; the host's graphs
        // get none of them.
        {"B into its missing data", [&] {
             session.drillUp(0);
             const auto rows = session.categoryRows(2);
             ASSERT_EQ(rows.back(), Missing);
             session.drillDown(2, static_cast<int>(rows.size()) - 1);
         },
         {1, 1, 1, 1, 1, 1, 1}},
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(s.what);
        s.step();
        const std::vector<int> left = boxFilter(cases);
        ASSERT_EQ(left.size(), cases.size());
        if (!s.left.empty()) {
            EXPECT_EQ(left, s.left);
            continue;
        }
        // The host's filter and the module's own test of the subset agree on every case.
        int kept = 0;
        for (int c = 1; c <= file.caseCount(); ++c) {
            EXPECT_EQ(left[c - 1], analysis->HasBeenDrilled(file.row(c))) << "case " << c;
            kept += left[c - 1] == 0;
        }
        EXPECT_GE(kept, 1);
        EXPECT_LT(kept, 4); // within A = Nord, less than all of it
    }
}

TEST_F(ChartRequests, Histograms3DOfEachPair) {
    wb::DrillSession(*analysis, panel).drillDown(1, 0); // A = Nord: cases 1 to 4
    recorder.cases = fileCases();
    dialogs.presetVariableChoice({1, 3}, {2, 3, 4});
    ASSERT_EQ(analysis->RV3DHistograms(0, panel), 1);
    const wb::VariableDialogCall& call = dialogs.variableDialogCalls().back();
    EXPECT_EQ(call.title,
              "Sélectionnez deux listes de var. (var. horizontales et verticales des tracés) :");
    EXPECT_EQ(call.choices, (std::vector<short>{1, 2, 3, 4}));
    EXPECT_EQ(std::vector<int>({call.min1, call.max1, call.min2, call.max2, call.total}),
              std::vector<int>({1, 4, 1, 4, 8}));
    EXPECT_EQ(call.caption1, "Première liste de variables (horizont.) :");
    EXPECT_EQ(call.caption2, "Deuxième liste de variables (verticales) :");

    // The second list turns fastest.
    const struct {
        short x, y;
        const char *first, *second;
    } pairs[] = {{0, 1, "A", "B"}, {0, 2, "A", "X"}, {0, 3, "A", "Y"},
                 {2, 1, "X", "B"}, {2, 2, "X", "X"}, {2, 3, "X", "Y"}};
    ASSERT_EQ(recorder.histograms3D.size(), std::size(pairs));
    for (std::size_t i = 0; i < std::size(pairs); ++i) {
        SCOPED_TRACE(std::string(pairs[i].first) + " " + pairs[i].second);
        const test::Histogram3DRequest& r = recorder.histograms3D[i];
        EXPECT_EQ(r.kind, 4);
        EXPECT_EQ(r.x, pairs[i].x);
        EXPECT_EQ(r.y, pairs[i].y);
        EXPECT_EQ(r.title, std::string("Histogramme 3D des variables : ") + pairs[i].first + " et " +
                               pairs[i].second);
        EXPECT_EQ(expand(r.subtitle), expand(analysis->DrillString()));
        EXPECT_TRUE(r.unusedNull);
        EXPECT_EQ(r.filtered, (std::vector<int>{0, 0, 0, 0, 1, 1, 1}));
        // The filter gives each kept case's values of the pair.
        ASSERT_EQ(r.pairs.size(), 4u);
        for (int c = 0; c < 4; ++c) {
            EXPECT_FLOAT_EQ(r.pairs[c].first, static_cast<float>(recorder.cases[c][r.x]));
            EXPECT_FLOAT_EQ(r.pairs[c].second, static_cast<float>(recorder.cases[c][r.y]));
        }
    }

    // A cancelled choice draws nothing and leaves the lists as they were.
    recorder.histograms3D.clear();
    dialogs.presetVariableCancel();
    EXPECT_EQ(analysis->RV3DHistograms(0, panel), 0);
    EXPECT_TRUE(recorder.histograms3D.empty());
    EXPECT_EQ(analysis->NoHist3DFirst, 2);
    EXPECT_EQ(analysis->NoHist3DSecond, 3);
}

TEST_F(ChartRequests, MemoryRunningOutDrawsNoLaterVariable) {
    // The first blocks of the first variable's chart fail: nothing is drawn, result 0.
    const struct {
        const char* what;
        std::function<int()> draw;
    } cases[] = {
        {"histograms", [this] { return analysis->DDNHistograms(panel); }},
        {"pies", [this] { return analysis->RVPiecharts(0, panel); }},
        {"stacked plot", [this] { return analysis->DDNStackedplots(0, panel); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        recorder.charts.clear();
        host.memory().failAllocationsFrom(1);
        EXPECT_EQ(c.draw(), 0);
        host.memory().clearFailures();
        EXPECT_TRUE(recorder.charts.empty());
    }
}

class ChartButtons : public WithRecorder<test::PanelFixture> {};

TEST_F(ChartButtons, EachButtonAsksForItsGraph) {
    openPanel(survey());
    choose({1, 2}, {3});
    choose({2}, {4, 5}, 9080);
    const struct {
        int id;
        bool hidden;
        std::vector<int> kinds; // kinds of the charts asked for
        std::size_t boxes, scatters, histograms3D;
    } cases[] = {
        {9061, false, {5, 5, 5}, 0, 0, 0}, {9119, false, {3, 3, 3}, 0, 0, 0},
        {9121, true, {2}, 0, 0, 0},        {9083, false, {5, 5, 5}, 0, 0, 0},
        {9122, false, {3, 3, 3}, 0, 0, 0}, {9124, true, {2}, 0, 0, 0},
        {9084, false, {}, 1, 0, 0}, // one box-plot style is on at the start        {9100, false, {}, 0, 1, 0},
        {9123, false, {}, 0, 0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        recorder.charts.clear();
        recorder.boxPlots.clear();
        recorder.scatterPlots.clear();
        recorder.histograms3D.clear();
        if (c.id == 9123)
            dialogs.presetVariableChoice({4}, {5});
        if (c.hidden)
            dialogs.send(window, 273, c.id, 0); // hidden: reached by its command only
        else
            press(c.id);
        std::vector<int> kinds;
        for (const test::ChartRequest& r : recorder.charts)
            kinds.push_back(r.kind);
        EXPECT_EQ(kinds, c.kinds);
        EXPECT_EQ(recorder.boxPlots.size(), c.boxes);
        EXPECT_EQ(recorder.scatterPlots.size(), c.scatters);
        EXPECT_EQ(recorder.histograms3D.size(), c.histograms3D);
    }
}

} // namespace
