// Pie charts, a slice per category of each variable, and stacked plots, one bar per variable
// divided into bands by the share of each category, on a scale of 0 to 100 percent.

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "../core/CDrillDown.h"
#include "../host/framework/HostArray.h"
#include "../resources/StringIds.h"
#include "ChartBuilder.h"
#include "ResultText.h"

namespace {

constexpr int SliceLabelWidth = 12;
constexpr short XLabelWidth = 20;
constexpr double BarWidth = 0.9;
constexpr int PieMode = 192;
constexpr int StackedMode = 384;

// The first 12 characters of a slice's label, without a terminator when it fills them.
void PutSliceLabel(char* labels, int slice, const std::string& text) {
    std::memcpy(labels + static_cast<std::ptrdiff_t>(slice) * SliceLabelWidth, text.data(),
                std::min<std::size_t>(text.size(), SliceLabelWidth));
}

} // namespace

int CDrillDown::Piecharts(DrillSet& records, bool reviews) {
    RescanIfNeeded();
    // Every chart and its arrays live until the last variable is drawn; the label arrays are
    // the operation's, lent to the charts.
    std::vector<std::unique_ptr<CGeneralChart>> charts;
    std::vector<std::unique_ptr<HostArray<double>>> work;
    std::vector<std::unique_ptr<HostArray<char>>> labels;
    for (const Drill& record : records) {
        if (record.Isset == 0)
            ReadBeforeDrill(0);
        const bool missingSlice = CountMD == 1 && record.MCount != 0;
        const int n = static_cast<int>(record.Categories.size()) + (missingSlice ? 1 : 0);
        // One place more than slices in each half of the data; it stays 0.
        const int points = n + 1;
        auto& chart = charts.emplace_back(std::make_unique<CGeneralChart>(*this, 1, points));
        auto& data = work.emplace_back(std::make_unique<HostArray<double>>(*this));
        auto& names = labels.emplace_back(std::make_unique<HostArray<char>>(*this));
        if (!chart->Allocated() || !data->Allocate(2 * static_cast<std::size_t>(points)) ||
            !names->Allocate(static_cast<std::size_t>(points) * SliceLabelWidth))
            return 0;
        double* xy = data->get();
        int slice = 0;
        for (const Categories& category : record.Categories) {
            xy[slice] = slice + 1;
            xy[points + slice] = category.Count;
            PutSliceLabel(names->get(), slice, category.Name);
            ++slice;
        }
        if (missingSlice) {
            xy[slice] = slice + 1;
            xy[points + slice] = record.MCount;
            PutSliceLabel(names->get(), slice, GetResourceString(StrMissingRow));
        }
        chart->CopySeries(0, xy, 2 * points);
        chart->pointLabels[0] = names->get();
        chart->pointLabelWidth = SliceLabelWidth;
        chart->seriesMode[0] = PieMode;

        std::string title = GetResourceString(reviews ? StrReviewPieTitle : StrDrillPieTitle) +
                            VariableLabel(*this, record.Variable);
        Get8CharHash(title);
        chart->SetTitle(title);
        chart->SetXTitle(ShortName(*this, record.Variable));
        chart->SetSubtitle(DrillString());

        chart->pointCounts[0] = points;
        chart->xMin = 0.0;
        chart->xMax = points;
        chart->xStep = 1.0;
        chart->yMin = 0.0;
        chart->yMax = 100.0;
        chart->yStep = 20.0;
        chart->SetSeriesWidth(0, BarWidth);
        chart->DrawPie();
    }
    return 1;
}

int CDrillDown::DDNPiecharts(short, HWND) {
    return Piecharts(*DrillDowns, false);
}

int CDrillDown::RVPiecharts(short, HWND) {
    return Piecharts(*Reviews, true);
}

int CDrillDown::Stackedplots(DrillSet& records, bool reviews) {
    RescanIfNeeded();
    // Counting may still change the categories, so they are counted before the bands are.
    if (std::any_of(records.begin(), records.end(), [](const Drill& d) { return d.Isset == 0; }))
        ReadBeforeDrill(0);
    const int variables = static_cast<int>(records.size());
    // A series per band of the variable that needs most: the top edge, the missing data
    // (whenever there are some), and each category.
    int series = 0;
    for (const Drill& record : records)
        series = std::max(series, static_cast<int>(record.Categories.size()) + 1 +
                                      (record.MCount != 0 ? 1 : 0));
    std::vector<std::unique_ptr<HostArray<double>>> bands;
    for (int s = 0; s < series; ++s) {
        auto& band = bands.emplace_back(std::make_unique<HostArray<double>>(*this));
        if (!band->Allocate(2 * static_cast<std::size_t>(variables + 1)))
            return 0;
    }
    CGeneralChart chart(*this, static_cast<short>(series), variables + 1);
    if (!chart.Allocated())
        return 0;
    chart.AllocXLabels(static_cast<short>(variables + 1), XLabelWidth);

    int k = 1;
    for (const Drill& record : records) {
        const double total = record.WeightedN + record.MCount;
        if (total == 0)
            return 0;
        chart.SetXLabel(static_cast<short>(k), k, ShortName(*this, record.Variable));
        chart.SetYTitle(GetResourceString(StrRelativeCountAxis));
        // Each band's upper edge, from 100 down: the bands are drawn over each other.
        int s = 0;
        double edge = 100.0;
        auto put = [&](double y) {
            double* xy = bands[s]->get();
            xy[k - 1] = k;
            xy[variables + k - 1] = y;
            edge = y;
            ++s;
        };
        put(100.0);
        if (record.MCount != 0)
            put(100.0 - record.MCount * 100.0 / total);
        for (auto category = record.Categories.rbegin(); category != record.Categories.rend();
             ++category)
            put(edge - category->Count * 100.0 / total);
        ++k;
    }
    for (int s = 0; s < series; ++s) {
        chart.CopySeries(static_cast<short>(s), bands[s]->get(), 2 * (variables + 1));
        chart.seriesMode[s] = StackedMode;
        chart.pointCounts[s] = variables;
        chart.SetSeriesWidth(static_cast<short>(s), BarWidth);
    }
    chart.SetTitle(GetResourceString(reviews ? StrReviewStackedTitle : StrDrillStackedTitle));
    chart.SetSubtitle(DrillString());
    chart.xMin = 0.0;
    chart.xMax = variables + 1;
    chart.xStep = 1.0;
    chart.yMin = 0.0;
    // A little above 100, where the top edge of every variable stands.
    chart.yMax = 100.1;
    chart.yStep = 20.0;
    chart.pointLabelWidth = 0;
    chart.DrawStacked();
    return 1;
}

int CDrillDown::DDNStackedplots(short, HWND) {
    return Stackedplots(*DrillDowns, false);
}

int CDrillDown::RVStackedplots(short, HWND) {
    return Stackedplots(*Reviews, true);
}
