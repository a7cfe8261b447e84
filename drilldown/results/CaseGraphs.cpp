// Graphs that the host draws from the cases themselves: box plots and the scatterplot matrix
// of the continuous review variables. The module hands over the variables and the case
// filter, which tells the host which cases lie in the current subset.

#include <iterator>
#include <string>

#include "../core/CDrillDown.h"
#include "../resources/StringIds.h"
#include "ResultText.h"

int16_t CaseFilterXIndex = 0;
int16_t CaseFilterYIndex = 0;

namespace {

// The box-plot styles in the order they are drawn, each with its flag.
struct BoxStyle {
    int16_t CDrillDown::*flag;
    unsigned short style;
};
constexpr BoxStyle BoxStyles[] = {
    {&CDrillDown::BoxMedianQuartiles, 52},
    {&CDrillDown::BoxMeanSeSd, 54},
    {&CDrillDown::BoxMeanSdSd196, 53},
    {&CDrillDown::BoxMeanSeSe196, 55},
};

// The scatterplot matrix changes its layout from this many variables on.
constexpr int LargeMatrix = 15;
constexpr unsigned short SmallMatrixMode = 204;
constexpr unsigned short LargeMatrixMode = 68;

// Whether the value lies in the step's category. These are the plain comparisons of doubles:
// the host hands over the values as the file holds them. Gives 1 in, 0 out, -1 for a method
// that tests nothing.
int InStep(const Drill& record, const Categories& c, double v) {
    switch (record.Method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
        return v == c.Upper ? 1 : 0;
    case MethodExactIntervals:
    case MethodNeatIntervals:
    case MethodUserLimits:
        return c.Lower < v && v <= c.Upper ? 1 : 0;
    case MethodFixedStep:
        return c.Lower <= v && v < c.Upper ? 1 : 0;
    default:
        return -1;
    }
}

} // namespace

int CaseInDrill(char*, long*, double* values, double* x, double* y) {
    CAnalysisContext* context = ModuleContext();
    const auto* drill =
        dynamic_cast<const CDrillDown*>(context != nullptr ? context->Current : nullptr);
    if (drill != nullptr && values != nullptr) {
        for (const Drill& record : *drill->GetDrillUps()) {
            // A step into the missing data lets no case through.
            if (record.DrilledItem < 0 ||
                record.DrilledItem >= static_cast<int32_t>(record.Categories.size()))
                return 1;
            const Categories& c = *std::next(record.Categories.begin(), record.DrilledItem);
            const int in = InStep(record, c, values[record.Variable - 1]);
            if (in < 0)
                break;
            if (in == 0)
                return 1;
        }
    }
    if (x != nullptr && y != nullptr && values != nullptr) {
        *x = values[CaseFilterXIndex];
        *y = values[CaseFilterYIndex];
    }
    return 0;
}

int CaseInDrillFloat(char* unused1, long* unused2, double* values, float* x, float* y) {
    double first = 0;
    double second = 0;
    if (CaseInDrill(unused1, unused2, values, &first, &second) == 1)
        return 1;
    if (x != nullptr)
        *x = static_cast<float>(first);
    if (y != nullptr)
        *y = static_cast<float>(second);
    return 0;
}

short CDrillDown::RVBoxWhiker(HWND) {
    if (BoxMedianQuartiles == 0 && BoxMeanSeSd == 0 && BoxMeanSdSd196 == 0 && BoxMeanSeSe196 == 0) {
        dsplst(0, GetResourceString(StrNoBoxPlotStyle));
        return 0;
    }
    RescanIfNeeded();
    std::string title = GetResourceString(StrBoxPlotTitle);
    for (const BoxStyle& box : BoxStyles) {
        if (this->*box.flag == 0)
            continue;
        std::string subtitle = DrillString();
        CategorizedVarBoxAndWhisker(box.style, title.data(), subtitle.data(), nullptr, nullptr, 0,
                                    NoRVContinuous, RVContinuous, nullptr, CaseInDrill);
    }
    return 1;
}

short CDrillDown::RVScatterPlot(HWND) {
    RescanIfNeeded();
    // The one output whose title holds the drill string's text rather than its token.
    std::string steps = DrillString();
    ExpandPossible8CharHash(steps);
    const std::string title = FormatText(GetResourceString(StrCorrelationsTitle), steps.c_str());
    const unsigned short mode = NoRVContinuous < LargeMatrix ? SmallMatrixMode : LargeMatrixMode;
    const int failed =
        CorrelationScatterplot(mode, 0, NoRVContinuous, RVContinuous, 0, nullptr, 0, nullptr,
                               nullptr, ModuleBlocks().B1.CaseName, CaseInDrill, title);
    return failed == 1 ? 0 : 1;
}
