#include "workbench/text/NeatScale.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "drilldown/host/RealNumbers.h"

namespace wb {

namespace {

constexpr double MinRelativeStep = 1e-9;
constexpr double MinStep = 1e-300;

// mantissa * 10^exponent. Powers of ten up to 10^22 are exact doubles, so dividing by one
// gives the correctly rounded 0.2 rather than 2 * 0.1.
double neatValue(int mantissa, int exponent) {
    if (exponent < 0 && exponent >= -22)
        return mantissa / std::pow(10.0, -exponent);
    return mantissa * std::pow(10.0, exponent);
}

// The neat value nearest `raw` on a log scale: the thresholds between 1, 2, 5 and 10 are
// the geometric means sqrt(2), sqrt(10) and sqrt(50).
double nearestNeat(double raw) {
    const int exponent = static_cast<int>(std::floor(std::log10(raw)));
    const double fraction = raw / neatValue(1, exponent);
    if (fraction < std::sqrt(2.0))
        return neatValue(1, exponent);
    if (fraction < std::sqrt(10.0))
        return neatValue(2, exponent);
    if (fraction < std::sqrt(50.0))
        return neatValue(5, exponent);
    return neatValue(1, exponent + 1);
}

// The smallest neat value not below `raw`.
double neatAtLeast(double raw) {
    const int exponent = static_cast<int>(std::floor(std::log10(raw)));
    for (const int mantissa : {1, 2, 5})
        if (neatValue(mantissa, exponent) >= raw)
            return neatValue(mantissa, exponent);
    return neatValue(1, exponent + 1);
}

// The last upper limit of the categories a caller builds by repeated addition.
double lastLimitReached(double lo, double hi, double step) {
    double last = lo;
    for (double upper = lo + step; RealLessEqual(upper, hi); upper += step)
        last = upper;
    return last;
}

} // namespace

Scale neatScale(double min, double max, int wanted) {
    if (!std::isfinite(min) || !std::isfinite(max))
        return {0.0, 1.0, 1.0};
    if (max < min)
        std::swap(min, max);
    const double span = max - min;
    if (!std::isfinite(span))
        return {min, max, max / 2 - min / 2};

    const double magnitude = std::max(std::fabs(min), std::fabs(max));
    double step = 1.0;
    if (span > 0)
        step = nearestNeat(span / std::max(wanted, 1));
    else if (magnitude > 0)
        step = neatValue(1, static_cast<int>(std::floor(std::log10(magnitude))));
    const double smallest = std::max(magnitude * MinRelativeStep, MinStep);
    if (!(step >= smallest))
        step = neatAtLeast(smallest);

    // Whole multiples of the step: the step exceeds 1e-9 of the magnitude, so these
    // loops run at most twice and the multipliers stay far below 2^53.
    double kLo = std::floor(min / step);
    while (!RealLess(kLo * step, min))
        kLo -= 1;
    double kHi = std::ceil(max / step);
    while (kHi * step < max)
        kHi += 1;
    const double lo = kLo * step;
    if (!std::isfinite(lo) || !std::isfinite(kHi * step))
        return {min, max, max / 2 - min / 2};

    // Rounding of the repeated addition can leave the last limit just below max, or stop
    // the walk a step early near zero, where the tolerant comparison is exact; one more
    // step on top cures either.
    for (;;) {
        const double hi = kHi * step;
        if (!std::isfinite(hi))
            return {min, max, max / 2 - min / 2};
        const double last = lastLimitReached(lo, hi, step);
        if (last >= max && std::fabs(last - hi) <= step / 2)
            return {lo, hi, step};
        kHi += 1;
    }
}

} // namespace wb
