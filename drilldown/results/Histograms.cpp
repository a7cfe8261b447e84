// Histograms: a bar per category of each variable in the current subset, and a bar for its
// missing data when they are counted; and 3D histograms of pairs of review variables, which
// the host draws from the cases that the case filter keeps.

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

constexpr short XLabelWidth = 20;
constexpr double BarWidth = 0.9;

} // namespace

std::unique_ptr<CGeneralChart> CDrillDown::CountBars(const Drill& record, bool missingBar,
                                                     HostArray<double>& work) {
    const int points = static_cast<int>(record.Categories.size()) + (missingBar ? 1 : 0);
    auto chart = std::make_unique<CGeneralChart>(*this, 1, points);
    if (!chart->Allocated() || !work.Allocate(2 * static_cast<std::size_t>(points)))
        return nullptr;
    double* xy = work.get();
    std::memset(xy, 0xFF, 2 * static_cast<std::size_t>(points) * sizeof(double));
    chart->AllocXLabels(static_cast<short>(points + 1), XLabelWidth);

    // Bar i, from 1, is category i of the record: empty ones keep their places.
    double greatest = 0.0;
    int i = 0;
    auto bar = [&](double count, const std::string& label) {
        xy[i] = i + 1;
        xy[points + i] = count;
        if (count >= greatest)
            greatest = count;
        chart->SetXLabel(static_cast<short>(i + 1), i + 1, label);
        ++i;
    };
    for (const Categories& category : record.Categories)
        bar(category.Count, category.Name);
    if (missingBar)
        bar(record.MCount, GetResourceString(StrMissingRow));
    chart->CopySeries(0, xy, 2 * points);

    chart->SetYTitle(GetResourceString(ModuleBlocks().Wght.WeightOn != 0 ? StrWeightedCountAxis
                                                                         : StrCountAxis));
    chart->SetSubtitle(DrillString());
    chart->SetXTitle(ShortName(*this, record.Variable));
    chart->pointCounts[0] = points;
    chart->xMin = 0.0;
    chart->xMax = points + 1;
    chart->xStep = 1.0;
    ApplyCountAxis(*chart, greatest);
    chart->SetSeriesWidth(0, BarWidth);
    chart->seriesMode[0] = 0;
    return chart;
}

short CDrillDown::Histograms(DrillSet& records, bool reviews) {
    RescanIfNeeded();
    // Every chart and its work array live until the last variable is drawn.
    std::vector<std::unique_ptr<CGeneralChart>> charts;
    std::vector<std::unique_ptr<HostArray<double>>> work;
    for (const Drill& record : records) {
        // Counting may still change the categories, so they are counted before the bars are.
        if (record.Isset == 0)
            ReadBeforeDrill(0);
        auto& data = work.emplace_back(std::make_unique<HostArray<double>>(*this));
        auto& chart = charts.emplace_back(CountBars(record, CountMD == 1 && record.MCount != 0, *data));
        if (chart == nullptr)
            return 0;
        const std::string label = VariableLabel(*this, record.Variable);
        std::string title =
            reviews ? GetResourceString(StrReviewHistogramTitle) + label
                    : FormatText(GetResourceString(StrDrillHistogramTitle), label.c_str());
        Get8CharHash(title);
        chart->SetTitle(title);
        chart->DrawHistogram(1);
    }
    return 1;
}

short CDrillDown::DDNHistograms(HWND) {
    return Histograms(*DrillDowns, false);
}

short CDrillDown::RVHistograms(HWND) {
    return Histograms(*Reviews, true);
}

int CDrillDown::RV3DHistograms(short, HWND window) {
    const int nv = ModuleBlocks().Vmk.NVars;
    std::memset(AllReviews, 0, (2u * nv + 2) * sizeof(short));
    std::copy(RVCategorical, RVCategorical + NoRVCategorical, AllReviews);
    std::copy(RVContinuous, RVContinuous + NoRVContinuous, AllReviews + NoRVCategorical);
    const int reviews = GetDrillReviewsSize();
    const int chosen = Dialogs().DoubleVarListDialog(
        window, 0, GetResourceString(StrChoose3DLists), AllReviews, 1, reviews, 1, reviews,
        2 * reviews, Hist3DFirst, &NoHist3DFirst, Hist3DSecond, &NoHist3DSecond,
        GetResourceString(Str3DFirstList), GetResourceString(Str3DSecondList), 0);
    if (chosen == 0)
        return 0;
    for (int i = 0; i < NoHist3DFirst; ++i) {
        for (int j = 0; j < NoHist3DSecond; ++j) {
            const short a = Hist3DFirst[i];
            const short b = Hist3DSecond[j];
            CaseFilterXIndex = static_cast<int16_t>(a - 1);
            CaseFilterYIndex = static_cast<int16_t>(b - 1);
            const std::string first = ShortName(*this, a);
            const std::string second = ShortName(*this, b);
            std::string title =
                FormatText(GetResourceString(Str3DHistogramTitle), first.c_str(), second.c_str());
            std::string subtitle = DrillString();
            Histogram3D(4, static_cast<short>(a - 1), static_cast<short>(b - 1), 0, 0, nullptr,
                        nullptr, 0, title.data(), nullptr, subtitle.data(), nullptr, 0, nullptr,
                        CaseInDrillFloat);
        }
    }
    return 1;
}
