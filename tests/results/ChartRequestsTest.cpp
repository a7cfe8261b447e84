// The graph requests of the analysis as the host receives them: histograms, pie charts and
// stacked plots from the category counts, box plots, the scatterplot matrix and 3D
// histograms with the case filter, and the panel's buttons that ask for them. The count
// axis, the stacked colours and the requests never sent are ChartBuilderTest's.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <tuple>

#include "results/ChartRecorder.h"
#include "support/PanelFixture.h"

namespace {

constexpr double M = -9;
const char* const Missing = "Manquante(s)";
const char* const Provence = "Provence-Alpes-Azur!"; // 20 characters

// Fills the recorder in for the fixture's table output.
template <typename Base> class WithRecorder : public Base {
protected:
    WithRecorder() {
        this->outputDouble = &recorder;
    }
    std::string expand(std::string text) {
        this->session.text().ExpandPossible8CharHash(text);
        return text;
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
        recorder.charts.clear();
        ASSERT_EQ(chooseDrillVariables({1, 2}, {3}), 1);
        ASSERT_EQ(chooseReviewVariables({1, 2}, {3, 4}), 1);
    }
    // Weights in force; with weighted moments off they are rounded to whole numbers.
    void weighByW(bool weightedMoments) {
        session.changeFile([&](wb::DataFile& data) { data.setWeightVariable(5); });
        ModuleBlocks().Wght.WeightOn = 1;
        ModuleBlocks().Wght.WeightVar = 5;
        analysis->SetWM(weightedMoments ? 1 : 0);
        analysis->NeedsRescan = 1;
    }
    // Counts missing data or not from the next graph on, which starts a fresh record.
    void countMissing(short countMD) {
        analysis->SetCountMD(countMD);
        analysis->NeedsRescan = 1;
        recorder.charts.clear();
    }
    // The cases of the open file in the filter's layout: variable v at index v - 1.
    std::vector<std::vector<double>> fileCases() const {
        std::vector<std::vector<double>> all;
        for (int c = 1; c <= file.caseCount(); ++c)
            all.emplace_back(file.row(c) + 1, file.row(c) + 1 + file.variableCount());
        return all;
    }
    // The filter's answer for each case, as the box plots get it.
    std::vector<int> boxFilter(const std::vector<std::vector<double>>& cases) {
        recorder.cases = cases;
        recorder.boxPlots.clear();
        analysis->BoxMedianQuartiles = 1;
        analysis->BoxMeanSeSd = analysis->BoxMeanSdSd196 = analysis->BoxMeanSeSe196 = 0;
        EXPECT_EQ(analysis->RVBoxWhiker(panel), 1);
        return recorder.boxPlots.empty() ? std::vector<int>{} : recorder.boxPlots[0].filtered;
    }
};

// Histograms and pies of the category counts: a bar or slice per category, then one for the
// missing data when they are counted. Bars stand at 1, 2, ... under their labels, on a count
// axis from 0 to above the greatest bar, the missing one included. Slices keep 12 characters
// of their labels and one place more that stays 0 and unlabelled, on a scale of 0 to 100.
TEST_F(ChartRequests, BarsAndSlicesOfTheCategoryCounts) {
    const struct {
        bool pie;
        double weight;
        short countMD;
        std::size_t chart;               // A, B or X
        std::vector<double> data;        // the X values, then the Y values
        std::vector<std::string> labels; // empty: not compared
        double top;                      // of the count axis
    } cases[] = {
        // Bars of A with missing data counted or not, of B whose missing bar raises the top,
        // and weighted.
        {false, 1, 1, 0, {1, 2, 3, 4, 2, 1}, {"", "Nord", Provence, Missing}, 5},
        {false, 1, 0, 0, {1, 2, 4, 2}, {"", "Nord", Provence}, 5},
        {false, 1, 1, 1, {1, 2, 3, 4, 5, 6, 1, 1, 1, 1, 1, 2}, {}, 5},
        {false, 1, 0, 1, {1, 2, 3, 4, 5, 1, 1, 1, 1, 1}, {}, 2},
        {false, 0.4, 1, 0, {1, 2, 3, 1.6, 0.8, 0.4}, {}, 2},
        // Slices of A with missing data counted or not.
        {true, 1, 1, 0, {1, 2, 3, 0, 4, 2, 1, 0}, {"Nord", "Provence-Alp", Missing, ""}, 0},
        {true, 1, 0, 0, {1, 2, 0, 4, 2, 0}, {"Nord", "Provence-Alp", ""}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        openSurvey(c.weight);
        if (c.weight != 1)
            weighByW(true);
        countMissing(c.countMD);
        ASSERT_EQ(c.pie ? analysis->DDNPiecharts(0, panel) : analysis->DDNHistograms(panel), 1);
        ASSERT_EQ(recorder.charts.size(), 3u); // A, B, X
        const test::ChartRequest& r = recorder.charts[c.chart];
        ASSERT_EQ(r.data[0].size(), c.data.size());
        for (std::size_t i = 0; i < c.data.size(); ++i)
            EXPECT_NEAR(r.data[0][i], c.data[i], 1e-9) << i;
        const double points = c.data.size() / 2;
        if (c.pie) {
            EXPECT_EQ(r.pointLabels[0], c.labels);
            EXPECT_EQ(std::tuple(r.xMin, r.xMax, r.yMin, r.yMax, r.yStep),
                      std::tuple(0.0, points, 0.0, 100.0, 20.0));
            continue;
        }
        if (!c.labels.empty()) {
            EXPECT_EQ(r.xLabels.texts, c.labels);
        }
        for (std::size_t k = 0; k < r.xLabels.positions.size(); ++k)
            EXPECT_EQ(r.xLabels.positions[k], k); // each bar's label under it
        EXPECT_EQ(std::tuple(r.xMin, r.xMax, r.yMin, r.yMax),
                  std::tuple(0.0, points + 1, 0.0, c.top));
        EXPECT_EQ(r.yTitle, c.weight == 1 ? "Effectif" : "Effectif pondéré");
    }

    // Weights of 0.4 round to 0 without weighted moments: no variable has a bar to draw.
    openSurvey(0.4);
    weighByW(false);
    EXPECT_EQ(analysis->DDNHistograms(panel), 1);
    EXPECT_TRUE(recorder.charts.empty());
    EXPECT_EQ(takeMessages(), std::vector<std::string>(3, "Nothing to plot...."));
}

// Each graph of a variable is titled by its kind and the variable's label, its X axis by the
// variable's short name; a stacked plot has one title for all its variables. The drill steps
// follow the title.
TEST_F(ChartRequests, TitlesOfEachGraph) {
    const std::vector<std::string> downs = {"A: Région", "X"}, all = {"A: Région", "B", "X", "Y"};
    const std::vector<std::string> none = {""};
    const struct {
        std::function<int()> draw;
        std::string title;
        const std::vector<std::string>& labels;
    } cases[] = {
        {[this] { return analysis->DDNHistograms(panel); },
         "Histogramme de la variable du drill-down : ", downs},
        {[this] { return analysis->RVHistograms(panel); },
         "Histogramme de la variable étudiée : ", all},
        {[this] { return analysis->DDNPiecharts(0, panel); },
         "Camembert pour la variable de drill-down : ", downs},
        {[this] { return analysis->RVPiecharts(0, panel); },
         "Camembert des variables étudiées : ", all},
        {[this] { return analysis->DDNStackedplots(0, panel); },
         "Tracé empilé des variables du drill-down", none},
        {[this] { return analysis->RVStackedplots(0, panel); },
         "Tracé empilé des variables étudiées", none},
    };
    session.drillDown(2, 0); // B = 1: case 1
    const std::string drilled = expand(analysis->DrillString());
    ASSERT_TRUE(drilled.ends_with("\nB        = 1")) << drilled;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        recorder.charts.clear();
        ASSERT_EQ(c.draw(), 1);
        ASSERT_EQ(recorder.charts.size(), c.labels.size());
        for (std::size_t i = 0; i < c.labels.size(); ++i) {
            const test::ChartRequest& r = recorder.charts[i];
            EXPECT_EQ(expand(r.titles[0]), c.title + c.labels[i]);
            EXPECT_EQ(expand(r.titles[1]), drilled);
            EXPECT_EQ(r.titles[2], "");
            EXPECT_EQ(r.xTitle, c.labels[i].substr(0, c.labels[i].find(':')));
        }
    }
}

// A bar per variable, divided from 100 down: the missing data (whenever the variable has
// some, counted or not), then the categories from the last. There is a series per band of
// the variable with most; another variable leaves the series it has no band for at 0.
TEST_F(ChartRequests, StackedBands) {
    // P: 1 twice, 2 eight times. Q: 1 and 2 three times each, 3 twice, missing twice.
    open(test::makeFile(
        {{"P", M}, {"Q", M}},
        {{1, 1}, {1, 2}, {2, 3}, {2, M}, {2, 1}, {2, 2}, {2, 3}, {2, 1}, {2, M}, {2, 2}}));
    ASSERT_EQ(chooseDrillVariables({1, 2}, {}), 1);
    const double edges[5][2] = {{100, 100}, {20, 80}, {0, 60}, {0, 30}, {0, 0}}; // P, Q
    const int bands[2] = {3, 5};
    for (short countMD : {1, 0}) {
        SCOPED_TRACE(countMD);
        countMissing(countMD);
        ASSERT_EQ(analysis->DDNStackedplots(0, panel), 1);
        ASSERT_EQ(recorder.charts.size(), 1u);
        const test::ChartRequest& r = recorder.charts[0];
        ASSERT_EQ(r.seriesCount, 5);
        for (int s = 0; s < 5; ++s) {
            EXPECT_EQ(r.points[s], 2);
            for (int k = 0; k < 2; ++k) {
                EXPECT_NEAR(r.y(s, k), edges[s][k], 1e-9) << s << "," << k;
                EXPECT_EQ(r.x(s, k), s < bands[k] ? k + 1 : 0) << s << "," << k;
            }
        }
        EXPECT_EQ(std::tuple(r.xMin, r.xMax, r.yMin, r.yMax, r.yStep),
                  std::tuple(0.0, 3.0, 0.0, 100.1, 20.0));
        EXPECT_EQ(r.yTitle, "Nombre d'obs. relatif (%)");
        EXPECT_EQ(r.xLabels.texts, (std::vector<std::string>{"", "P", "Q"}));
        EXPECT_EQ(r.xLabels.positions, (std::vector<double>{0, 1, 2}));
    }

    // A variable without cases has no shares: no plot and no message.
    openSurvey(0); // every case weighs 0
    weighByW(true);
    EXPECT_EQ(analysis->DDNStackedplots(0, panel), 0);
    EXPECT_EQ(analysis->RVStackedplots(0, panel), 0);
    EXPECT_TRUE(recorder.charts.empty());
    EXPECT_TRUE(takeMessages().empty());
}

TEST_F(ChartRequests, BoxPlotStyles) {
    const struct {
        // median and quartiles; mean, se, sd; mean, sd, 1.96 sd; mean, se, 1.96 se
        std::array<int16_t, 4> flags;
        std::vector<int> styles;
    } cases[] = {
        {{1, 1, 1, 1}, {52, 54, 53, 55}}, {{0, 1, 0, 0}, {54}},     {{0, 0, 1, 0}, {53}},
        {{0, 0, 1, 1}, {53, 55}},         {{1, 0, 0, 1}, {52, 55}}, {{0, 0, 0, 0}, {}},
    };
    session.drillDown(1, 1); // A = Provence
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.styles));
        recorder.boxPlots.clear();
        std::tie(analysis->BoxMedianQuartiles, analysis->BoxMeanSeSd, analysis->BoxMeanSdSd196,
                 analysis->BoxMeanSeSe196) = std::tuple_cat(c.flags);
        analysis->NeedsRescan = 1;
        EXPECT_EQ(analysis->RVBoxWhiker(panel), c.styles.empty() ? 0 : 1);
        std::vector<int> styles;
        for (const test::CaseGraphRequest& r : recorder.boxPlots) {
            styles.push_back(r.style);
            EXPECT_EQ(expand(r.subtitle), expand(analysis->DrillString()));
            EXPECT_EQ(r.variables, (std::vector<short>{3, 4}));
        }
        EXPECT_EQ(styles, c.styles);
        // Without a style the request is refused before the rescan.
        const std::string refusal = "Merci de vérifier le type de tracé de Boîte à moustaches";
        EXPECT_EQ(takeMessages(), std::vector<std::string>(c.styles.empty() ? 1 : 0, refusal));
        EXPECT_EQ(analysis->NeedsRescan, c.styles.empty() ? 1 : 0);
    }
}

// The matrix changes its layout from 15 variables on; the host's answer 1 means it could not
// be drawn. The title holds the drill string's text itself, not its token.
TEST_F(ChartRequests, ScatterplotMatrix) {
    std::vector<test::VariableInfo> variables;
    for (int v = 1; v <= 15; ++v)
        variables.push_back({"V" + std::to_string(v), M});
    const std::vector<double> row(15, 1);
    const struct {
        short reviews;
        int hostAnswer;
        unsigned short mode;
        short result;
    } cases[] = {{2, 0, 204, 1}, {14, 0, 204, 1}, {15, 0, 68, 1}, {2, 1, 204, 0}, {2, 2, 204, 1}};
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
        const test::CaseGraphRequest& r = recorder.scatterPlots[0];
        EXPECT_EQ(r.style, c.mode);
        EXPECT_EQ(r.variables, continuous);
        EXPECT_EQ(r.title, "Corrélations\n" + expand(analysis->DrillString()));
    }
}

TEST_F(ChartRequests, FilterBoundariesByMethod) {
    // A step on X (variable 3) pinned to the category (10, 20]. The comparisons are the plain
    // ones: a value a tolerant test would call equal to a limit is on its own side of it.
    const std::vector<double> values = {10, 10 + 1e-12, 15, 20 - 1e-12, 20, 20 + 1e-12, 9.99};
    std::vector<std::vector<double>> cases;
    for (double x : values)
        cases.push_back({1, 1, x, 0, 1});
    const struct {
        const char* what;
        int method;
        bool missingRow;
        std::vector<int> left; // for each of `values`, 1 when the filter leaves it out
    } steps[] = {
        {"distinct values", 0, false, {1, 1, 1, 1, 0, 1, 1}},
        {"integer values", 4, false, {1, 1, 1, 1, 0, 1, 1}},
        {"exact intervals", 1, false, {1, 0, 0, 0, 0, 1, 1}},
        {"neat intervals", 2, false, {1, 0, 0, 0, 0, 1, 1}},
        {"user limits", 5, false, {1, 0, 0, 0, 0, 1, 1}},
        {"fixed step", 3, false, {0, 0, 0, 0, 1, 1, 1}},
        {"unknown method tests nothing", 9, false, {0, 0, 0, 0, 0, 0, 0}},
        {"missing-data step", 2, true, {1, 1, 1, 1, 1, 1, 1}},
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(s.what);
        Drill step(3, 1, 0, "X");
        step.Method = s.method;
        step.Categories.emplace(1, 1.0, 0, "below", -10);
        step.Categories.emplace(1, 1.0, 20, "pinned", 10);
        step.DrilledItem = s.missingRow ? 2 : 1;
        analysis->DrillUps->clear();
        analysis->DrillUps->insert(step);
        EXPECT_EQ(boxFilter(cases), s.left);
    }
}

// The filter follows the drill steps down and up, keeping the cases of the subset as the
// module's own test of it does, but none of a step into the missing data, which the scans
// count into the subset.
TEST_F(ChartRequests, FilterFollowsTheDrillSteps) {
    const auto cases = fileCases(); // 1: left out
    EXPECT_EQ(boxFilter(cases), std::vector<int>(7, 0));
    session.drillDown(1, 0); // A = Nord
    EXPECT_EQ(boxFilter(cases), (std::vector<int>{0, 0, 0, 0, 1, 1, 1}));
    session.drillDown(3, 0); // and X in its first interval
    std::vector<int> subset;
    for (int c = 1; c <= file.caseCount(); ++c)
        subset.push_back(analysis->HasBeenDrilled(file.row(c)));
    EXPECT_EQ(boxFilter(cases), subset);
    EXPECT_EQ(std::count(subset.begin(), subset.end(), 0), 1); // case 1 (X = 10)
    session.drillUp(0);
    session.drillDown(2, 1); // B = 2 instead
    EXPECT_EQ(boxFilter(cases), (std::vector<int>{1, 0, 1, 1, 1, 1, 1}));
    session.drillUp(0);
    const auto rows = session.categoryRows(2);
    ASSERT_EQ(rows.back(), Missing);
    session.drillDown(2, static_cast<int>(rows.size()) - 1); // B missing: cases 3 and 4
    EXPECT_EQ(boxFilter(cases), std::vector<int>(7, 1));
}

// A histogram per pair of the two chosen lists, the second list turning fastest; the filter
// gives each kept case's values of the pair.
TEST_F(ChartRequests, Histograms3DOfEachPair) {
    session.drillDown(1, 0); // A = Nord: cases 1 to 4
    recorder.cases = fileCases();
    headless.presetVariableChoice({1, 3}, {2, 3, 4});
    ASSERT_EQ(analysis->RV3DHistograms(0, panel), 1);
    // Each list takes 1 to 4 of the review variables.
    const wb::VariableDialogCall& call = dialogs.variableDialogCalls().back();
    EXPECT_EQ(call.choices, (std::vector<short>{1, 2, 3, 4}));
    EXPECT_EQ(std::vector<int>({call.min1, call.max1, call.min2, call.max2, call.total}),
              std::vector<int>({1, 4, 1, 4, 8}));

    const struct {
        short x, y; // counted from 0
        const char* title;
    } pairs[] = {{0, 1, "A et B"}, {0, 2, "A et X"}, {0, 3, "A et Y"},
                 {2, 1, "X et B"}, {2, 2, "X et X"}, {2, 3, "X et Y"}};
    ASSERT_EQ(recorder.histograms3D.size(), std::size(pairs));
    for (std::size_t i = 0; i < std::size(pairs); ++i) {
        SCOPED_TRACE(pairs[i].title);
        const test::CaseGraphRequest& r = recorder.histograms3D[i];
        EXPECT_EQ(std::tuple(r.x, r.y), std::tuple(pairs[i].x, pairs[i].y));
        EXPECT_EQ(r.title, std::string("Histogramme 3D des variables : ") + pairs[i].title);
        EXPECT_EQ(expand(r.subtitle), expand(analysis->DrillString()));
        EXPECT_EQ(r.filtered, (std::vector<int>{0, 0, 0, 0, 1, 1, 1}));
        ASSERT_EQ(r.pairs.size(), 4u);
        for (int c = 0; c < 4; ++c)
            EXPECT_EQ(r.pairs[c],
                      std::pair(float(recorder.cases[c][r.x]), float(recorder.cases[c][r.y])));
    }

    // A cancelled choice draws nothing and leaves the lists as they were.
    recorder.histograms3D.clear();
    headless.presetVariableCancel();
    EXPECT_EQ(analysis->RV3DHistograms(0, panel), 0);
    EXPECT_TRUE(recorder.histograms3D.empty());
    EXPECT_EQ(std::tuple(analysis->NoHist3DFirst, analysis->NoHist3DSecond), std::tuple(2, 3));
}

// The first blocks of the first variable's chart fail: nothing is drawn, result 0.
TEST_F(ChartRequests, MemoryRunningOutDrawsNoLaterVariable) {
    const std::function<int()> draws[] = {[this] { return analysis->DDNHistograms(panel); },
                                          [this] { return analysis->RVPiecharts(0, panel); },
                                          [this] { return analysis->DDNStackedplots(0, panel); }};
    for (const auto& draw : draws) {
        session.memory().failAllocationsFrom(1);
        EXPECT_EQ(draw(), 0);
        session.memory().clearFailures();
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
        bool hidden;            // reached by its command only
        std::vector<int> kinds; // of the charts asked for
        std::size_t boxes, scatters, histograms3D;
    } cases[] = {
        {9061, false, {5, 5, 5}, 0, 0, 0}, {9119, false, {3, 3, 3}, 0, 0, 0},
        {9121, true, {2}, 0, 0, 0},        {9083, false, {5, 5, 5}, 0, 0, 0},
        {9122, false, {3, 3, 3}, 0, 0, 0}, {9124, true, {2}, 0, 0, 0},
        {9084, false, {}, 1, 0, 0}, // one box-plot style is on at the start
        {9100, false, {}, 0, 1, 0},        {9123, false, {}, 0, 0, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.id);
        recorder = test::ChartRecorder();
        if (c.id == 9123)
            headless.presetVariableChoice({4}, {5});
        if (c.hidden)
            dialogs.send(window, 273, c.id, 0);
        else
            press(c.id);
        std::vector<int> kinds;
        for (const test::ChartRequest& r : recorder.charts)
            kinds.push_back(r.kind);
        EXPECT_EQ(kinds, c.kinds);
        EXPECT_EQ(std::tuple(recorder.boxPlots.size(), recorder.scatterPlots.size(),
                             recorder.histograms3D.size()),
                  std::tuple(c.boxes, c.scatters, c.histograms3D));
    }
}

} // namespace
