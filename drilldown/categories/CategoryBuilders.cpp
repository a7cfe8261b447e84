// How a record's values become categories: value categories grow during a scan, interval
// categories are built from limits before any case is counted.

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "../core/CDrillDown.h"
#include "../core/Drill.h"
#include "../host/framework/CAnalysisSupport.h"
#include "../host/RealNumbers.h"
#include "CategoryNames.h"

namespace {

// Trailing blanks, then trailing points, come off the text of a limit.
std::string TrimLimit(std::string text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.pop_back();
    while (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

std::string RawLimitText(double x) {
    char buffer[9] = {};
    WriteRealText(x, 0x84, 8, 8, buffer, 14);
    return buffer;
}

// The text of an interval limit: at most 8 characters, without trailing blanks or point.
std::string LimitText(double x) { return TrimLimit(RawLimitText(x)); }

} // namespace

int Drill::ClearCategories() {
    Categories.clear();
    Isset = 0;
    return 1;
}

int Drill::Categorise() {
    switch (Method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
        ClearCategories();
        break;
    case MethodExactIntervals:
        BuildExactIntervals();
        break;
    case MethodNeatIntervals:
        BuildNeatIntervals();
        break;
    case MethodFixedStep:
        BuildStepIntervals();
        break;
    case MethodUserLimits:
        BuildUserIntervals();
        break;
    default:
        break;
    }
    return 1;
}

int Drill::AddValue(double value, int16_t kind, double weight, const std::string& name) {
    // The bound is tested before the search: a full set does not survive the next value,
    // even one it already holds.
    if (Categories.size() >= MaxValueCategories) {
        Categories.clear();
        Method = MethodNeatIntervals;
        return 0;
    }
    // The first category in order whose Upper equals the value: those before it are all
    // RealLess than the value, so the first one not below it is the one to look at.
    const auto found = Categories.lower_bound(value);
    if (found != Categories.end() && RealEqual(found->Upper, value)) {
        Mutable(*found).Count += weight;
        return 2;
    }
    Categories.emplace(kind, weight, value, name, value);
    return 1;
}

int Drill::AddToInterval(double value, double weight) {
    // Method 3 holds lower <= x < upper, the others lower < x <= upper; a value below the
    // first interval lands in it, one above the last is not counted.
    const bool upperOpen = Method == MethodFixedStep;
    const auto it = std::find_if(Categories.begin(), Categories.end(), [&](const auto& c) {
        return upperOpen ? c.Upper > value : c.Upper >= value;
    });
    if (it != Categories.end())
        Mutable(*it).Count += weight;
    return 1;
}

void Drill::InsertInterval(double lower, double upper, double count, std::string name) {
    Categories.emplace(1, count, upper, std::move(name), lower);
}

// The common start of the exact and the neat builder: an empty set, nothing more for a
// variable without valid values (result 0), and one interval (Min - 1, Max] for a variable
// with a single value. Gives -1 when the range still has to be cut.
int Drill::StartRangeIntervals() {
    ClearCategories();
    if (RealLess(Max, Min))
        return 0;
    if (RealEqual(Min, Max)) {
        InsertInterval(Min - 1.0, Max, 0, TrimLimit("x=" + RawLimitText(Max)));
        return 1;
    }
    return -1;
}

// Intervals lower < x <= upper of `width` from `lower` on, while the upper limit does not
// pass `top`.
void Drill::InsertUpperClosedIntervals(double lower, double width, double top) {
    for (double upper = lower + width; RealLessEqual(upper, top); upper += width) {
        InsertInterval(lower, upper, 0, LimitText(lower) + "<x<=" + LimitText(upper));
        lower = upper;
    }
}

int Drill::BuildExactIntervals() {
    if (const int started = StartRangeIntervals(); started != -1)
        return started;
    if (ExactN < 1)
        return -1;
    // The centres of the first and the last interval fall on Min and Max.
    const double width = (Max - Min) / (ExactN - 1);
    InsertUpperClosedIntervals(Min - width * 0.5, width, Max + width * 0.5);
    return 1;
}

int Drill::BuildNeatIntervals() {
    if (const int started = StartRangeIntervals(); started != -1)
        return started;
    double lo = Min;
    double hi = Max;
    double width = (Max - Min) / NeatN;
    scling_double_QUA(&lo, &hi, &width, static_cast<short>(N), static_cast<short>(NeatN));
    InsertUpperClosedIntervals(lo, width, hi);
    return 1;
}

int Drill::BuildStepIntervals() {
    ClearCategories();
    if (RealEqual(Min, Max)) {
        // Upper equals the only value, so no case can be counted into it (x < Upper).
        InsertInterval(Min, Max, 0, LimitText(Max));
        return 1;
    }
    double lower = AtMinimum == 1 ? Min : Start;
    if (!(Step > 0) || !std::isfinite(lower) || (Max - lower) / Step > MaxStepIntervals)
        return 0;
    // The test is on the lower limit and exact, so the last interval reaches beyond Max.
    for (double upper = lower + Step; lower <= Max; upper += Step) {
        // At large magnitudes a small step is lost in the addition and the limit stands still.
        if (!(upper > lower)) {
            ClearCategories();
            return 0;
        }
        InsertInterval(lower, upper, 0, LimitText(lower) + "<=x<" + LimitText(upper));
        lower = upper;
    }
    return 1;
}

void CDrillDown::Recategorise(Drill& record) {
    if (record.Method != MethodFixedStep) {
        record.Categorise();
        return;
    }
    if (record.BuildStepIntervals() != 0)
        return;
    // The module's string table holds no text for this refusal, so it is written here.
    char text[400];
    std::snprintf(text, sizeof text,
                  "Les intervalles de %s ne peuvent pas être construits avec un pas de %.10g "
                  "à partir de %.10g : il faut un pas positif qui fasse avancer les limites et "
                  "donne au plus %.0f intervalles jusqu'au maximum %.10g.",
                  record.Name.c_str(), record.Step,
                  record.AtMinimum == 1 ? record.Min : record.Start, MaxStepIntervals,
                  record.Max);
    dsplst(0, text);
}

int Drill::BuildUserIntervals() {
    ClearCategories();
    if (NU == 0)
        return 0;
    const double first = UserInterv[0];
    const double last = UserInterv[NU - 1];
    // The two open ends are widened by the mean gap between the limits.
    const double widening = (last - first) / NU;
    // The counts are reset before any counting; the builder leaves 1 as the host does.
    InsertInterval(std::min(first, Min) - widening, first, 1.0, "x<=" + LimitText(first));
    for (int i = 1; i < NU; ++i)
        InsertInterval(UserInterv[i - 1], UserInterv[i], 1.0,
                       LimitText(UserInterv[i - 1]) + "<x<=" + LimitText(UserInterv[i]));
    InsertInterval(last, std::max(last, Max) + widening, 1.0, LimitText(last) + "<x");
    return 1;
}
