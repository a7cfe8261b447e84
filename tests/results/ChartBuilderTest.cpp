// The chart request as the host receives it from CGeneralChart: the count axis, the stacked
// colours, the points, titles and labels, the requests that are never sent, and memory
// running out.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "drilldown/results/ChartBuilder.h"
#include "results/ChartRecorder.h"
#include "support/AnalysisFixture.h"

namespace {

class ChartBuilder : public test::AnalysisFixture {
protected:
    ChartBuilder() {
        outputDouble = &recorder;
    }
    void SetUp() override { open(test::makeFile({{"A"}}, {{1}})); }

    // A chart of `series` series of 3 points with its ranges set, ready to draw.
    std::unique_ptr<CGeneralChart> chart(short series = 1) {
        auto made = std::make_unique<CGeneralChart>(*analysis, series, 3);
        EXPECT_TRUE(made->Allocated());
        for (short s = 0; s < series; ++s)
            made->pointCounts[s] = 3;
        made->xMin = made->yMin = 0;
        made->xMax = made->yMax = 4;
        return made;
    }

    test::ChartRecorder recorder;
};

TEST_F(ChartBuilder, AxisTopIsTheNextNeatNumberAboveTheCount) {
    const struct {
        double count;
        int top;
    } cases[] = {{-3, 1}, {0, 1},     {0.3, 0},   {0.7, 1},    {1, 2},      {1.5, 2},
                 {2, 5},  {4.99, 5},  {7, 10},    {9, 10},     {10, 20},    {20, 50},
                 {99, 100}, {100, 200}, {120, 200}, {1000, 2000}, {4999, 5000}, {5000, 10000}};
    for (const auto& c : cases)
        EXPECT_EQ(AxisTopForCount(c.count), c.top) << c.count;
}

TEST_F(ChartBuilder, CountAxisLabels) {
    const struct {
        double greatest;
        double top;
        double step;
        std::vector<double> positions;
    } cases[] = {
        {7, 10, 1, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {1, 2, 1, {0, 1, 2}},
        {0.4, 0, 1, {0, 1, 2}}, // a weighted count below one: the top is 0
        {3, 5, 1, {0, 1, 2, 3, 4, 5}},
        {120, 200, 20, {0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.greatest);
        auto bars = chart();
        ApplyCountAxis(*bars, c.greatest);
        ASSERT_EQ(bars->DrawHistogram(1), 1);
        const test::ChartRequest& r = recorder.charts.back();
        EXPECT_EQ(std::tuple(r.yMin, r.yMax, r.yStep), std::tuple(0.0, c.top, c.step));
        EXPECT_EQ(r.yLabels.width, 20);
        ASSERT_EQ(r.yLabels.count, static_cast<int>(c.positions.size()));
        EXPECT_EQ(r.yLabels.positions, c.positions);
        for (std::size_t k = 0; k < c.positions.size(); ++k)
            EXPECT_EQ(r.yLabels.texts[k], std::to_string(static_cast<int>(c.positions[k])));
    }
}

TEST_F(ChartBuilder, StackedColoursRepeatAndTheLastBandIsTwelve) {
    auto bands = chart(12);
    ASSERT_EQ(bands->DrawStacked(), 1);
    EXPECT_EQ(recorder.charts.back().colours,
              (std::vector<int>{10, 9, 11, 13, 14, 15, 2, 4, 8, 3, 10, 12}));
}

TEST_F(ChartBuilder, RequestsThatAreNeverSent) {
    const struct {
        const char* what;
        int points;
        double xMin, xMax, yMin, yMax;
        int hostAnswer;
        int result;
        bool sent;
        std::vector<std::string> messages;
    } cases[] = {
        {"ranges never set", 3, 3e300, -3e300, 3e300, -3e300, 1, 1, false, {}},
        {"X range upside down", 3, 2, 1, 0, 1, 1, 1, false, {}},
        {"Y range upside down", 3, 0, 1, 2, 1, 1, 1, false, {}},
        {"one value on each axis", 3, 1, 1, 5, 5, 1, 1, true, {}},
        {"no points", 0, 0, 1, 0, 1, 1, 1, false, {"Nothing to plot...."}},
        {"the host refuses", 3, 0, 1, 0, 1, 0, 0, true, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        recorder.charts.clear();
        recorder.chartAnswer = c.hostAnswer;
        CGeneralChart bars(*analysis, 1, c.points);
        std::tie(bars.xMin, bars.xMax, bars.yMin, bars.yMax) =
            std::tuple(c.xMin, c.xMax, c.yMin, c.yMax);
        EXPECT_EQ(bars.DrawHistogram(1), c.result);
        EXPECT_EQ(recorder.charts.size(), c.sent ? 1u : 0u);
        EXPECT_EQ(takeMessages(), c.messages);
    }
}

TEST_F(ChartBuilder, PointsTitlesAndLabels) {
    CGeneralChart bars(*analysis, 1, 3);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double xs[] = {1, 2, nan};
    const double ys[] = {5, -2, 7};
    for (int i = 0; i < 3; ++i) {
        bars.SetX(i, xs[i]);
        bars.SetY(i, ys[i]);
    }
    bars.pointCounts[0] = 3;
    bars.SetTitle(std::string(70, 't'));
    bars.SetSubtitle("sub");
    bars.SetXTitle("AGE");
    bars.SetYTitle("Effectif");
    ASSERT_EQ(bars.AllocXLabels(4, 5), 0);
    bars.SetXLabel(1, 1, "Nord");
    bars.SetXLabel(2, 2, "Nord-Ouest"); // cut at the width of an entry
    ASSERT_EQ(bars.DrawHistogram(1), 1);
    const test::ChartRequest& r = recorder.charts.back();
    ASSERT_EQ(r.data[0].size(), 6u);
    EXPECT_EQ(r.x(0, 1), 2);
    EXPECT_TRUE(std::isnan(r.x(0, 2)));
    EXPECT_EQ(r.data[0][3], 5); // Y of point 0 stands behind the three X values
    EXPECT_EQ(r.y(0, 2), 7);
    // The running ranges take the valid values only.
    EXPECT_EQ(std::tuple(r.xMin, r.xMax, r.yMin, r.yMax), std::tuple(1.0, 2.0, -2.0, 7.0));
    EXPECT_EQ(r.titles, (std::array<std::string, 3>{std::string(60, 't'), "sub", ""}));
    // The recorder reads each axis title by the length that comes with it.
    EXPECT_EQ(std::tuple(r.xTitle, r.yTitle), std::tuple("AGE", "Effectif"));
    EXPECT_EQ(std::tuple(r.xLabels.count, r.xLabels.width), std::tuple(4, short{5}));
    EXPECT_EQ(r.xLabels.texts, (std::vector<std::string>{"", "Nord", "Nord-", ""}));
    EXPECT_EQ(r.xLabels.positions, (std::vector<double>{0, 1, 2, 0}));
    // The chart's own point labels go to the host for series 0, empty.
    EXPECT_TRUE(r.pointLabelsGiven[0]);
    EXPECT_EQ(r.pointLabelWidth, 12);
}

TEST_F(ChartBuilder, MemoryRunningOutAtAnyBlock) {
    // Twelve blocks and one per series at construction, then the two of the X labels.
    for (int failing = 1; failing <= 16; ++failing) {
        SCOPED_TRACE(failing);
        session.memory().failAllocation(failing);
        CGeneralChart bars(*analysis, 2, 3);
        const bool labels = bars.AllocXLabels(4, 20) == 0;
        session.memory().clearFailures();
        EXPECT_EQ(bars.Allocated(), failing > 14);
        EXPECT_EQ(labels, failing <= 14);
        bars.xMin = bars.yMin = 0;
        bars.xMax = bars.yMax = 1;
        const std::size_t before = recorder.charts.size();
        EXPECT_EQ(bars.DrawHistogram(1), failing > 14 ? 1 : 0);
        EXPECT_EQ(recorder.charts.size(), before + (failing > 14 ? 1 : 0));
        if (failing > 14) {
            EXPECT_FALSE(recorder.charts.back().xLabels.given);
        }
    }
}

} // namespace
