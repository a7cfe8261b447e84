// Neat scales: the properties the interval categories rely on, over chosen and random ranges.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "drilldown/host/RealNumbers.h"
#include "workbench/services/TextService.h"
#include "workbench/text/NeatScale.h"

namespace {

using Interval = std::pair<double, double>; // lower < x <= upper

// The intervals exactly as the module's neat builder makes them from a scale.
std::vector<Interval> moduleIntervals(const wb::Scale& scale) {
    std::vector<Interval> intervals;
    double lower = scale.lo;
    for (double upper = scale.lo + scale.step; RealLessEqual(upper, scale.hi);
         upper += scale.step) {
        intervals.emplace_back(lower, upper);
        lower = upper;
    }
    return intervals;
}

bool isNeatStep(double step) {
    const double power = std::pow(10.0, std::floor(std::log10(step)));
    const double mantissa = step / power;
    for (const double neat : {1.0, 2.0, 5.0, 10.0})
        if (std::fabs(mantissa - neat) <= 1e-9 * neat)
            return true;
    return false;
}

bool isWholeMultiple(double value, double step) {
    const double k = value / step;
    return std::fabs(k - std::round(k)) <= 1e-6;
}

void expectCoveringScale(double min, double max, int wanted) {
    SCOPED_TRACE(testing::Message()
                 << std::hexfloat << "min=" << min << " max=" << max << std::defaultfloat << " ("
                 << min << ".." << max << ") wanted=" << wanted);
    const wb::Scale scale = wb::neatScale(min, max, wanted);
    ASSERT_GT(scale.step, 0.0);
    EXPECT_TRUE(RealLess(scale.lo, min));
    EXPECT_GE(scale.hi, max);
    EXPECT_TRUE(isNeatStep(scale.step)) << scale.step;
    EXPECT_TRUE(isWholeMultiple(scale.lo, scale.step)) << scale.lo;
    EXPECT_TRUE(isWholeMultiple(scale.hi, scale.step)) << scale.hi;

    // The nearest neat step in log scale lies within a factor sqrt(2.5) of the step asked
    // for, unless it had to be widened to 1e-9 of the magnitude.
    const double span = max - min;
    const double asked = span / wanted;
    if (asked / 1.5812 >= 1e-9 * std::max(std::fabs(min), std::fabs(max))) {
        EXPECT_LE(scale.step, asked * 1.5812);
        EXPECT_GE(scale.step, asked / 1.5812);
    }

    const std::vector<Interval> intervals = moduleIntervals(scale);
    ASSERT_FALSE(intervals.empty());
    ASSERT_LE(intervals.size(), static_cast<std::size_t>(2 * wanted + 3));
    // The walk ends on hi up to the rounding of its additions: at most a few hundred
    // ulps of the magnitude, which is under 1e-9 of it, and the step is at least 1e-9 of it.
    EXPECT_LE(std::fabs(intervals.back().second - scale.hi), scale.step * 1e-3);
    EXPECT_GE(intervals.back().second, max);

    // Every value of the range, boundaries included, falls in exactly one interval under
    // the plain comparisons that count cases into them.
    std::vector<double> probes = {min, max, std::nextafter(max, min), std::nextafter(min, max)};
    for (int i = 1; i < 40; ++i)
        probes.push_back(min + span * i / 40.0);
    for (const Interval& interval : intervals)
        if (interval.second >= min && interval.second <= max)
            probes.push_back(interval.second);
    for (const double x : probes) {
        int holding = 0;
        for (const Interval& interval : intervals)
            holding += interval.first < x && x <= interval.second ? 1 : 0;
        EXPECT_EQ(holding, 1) << "x=" << x;
    }
}

const struct {
    double min;
    double max;
    int wanted;
    const char* comment;
} Ranges[] = {
    {0.0, 10.0, 10, "both ends on boundaries"},
    {0.3, 0.9, 10, "decimal boundaries that are not exact doubles"},
    {-5.0, -1.0, 4, "negative range"},
    {0.0, 1.0, 10, "ten additions of 0.1 fall short of 1"},
    {1e6, 1e6 + 7, 10, "large offset, small range"},
    {1.0, 1.0 + 1e-9, 10, "range below the resolution the step allows"},
    {-1e-9, 1e-9, 3, "tiny range around zero"},
    {0.0, 1.0, 1, "one interval wanted"},
    {2.0, 1000.0, 999, "the most intervals the dialog allows"},
};

TEST(NeatScale, CoversChosenRanges) {
    for (const auto& row : Ranges) {
        SCOPED_TRACE(row.comment);
        expectCoveringScale(row.min, row.max, row.wanted);
    }
}

TEST(NeatScale, CoversRandomRanges) {
    std::mt19937_64 random(20240611);
    std::uniform_real_distribution<double> exponent(-10.0, 10.0);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    std::uniform_int_distribution<int> wantedCounts(2, 60);
    std::uniform_int_distribution<int> boundary(-200, 200);
    for (int trial = 0; trial < 3000; ++trial) {
        const double magnitude = std::pow(10.0, exponent(random));
        double min = unit(random) * magnitude;
        double max = min + std::fabs(unit(random)) * magnitude *
                               std::pow(10.0, -6 * std::fabs(unit(random)));
        if (trial % 3 == 0) {
            // Ends on decimal boundaries, where rounding trouble hides.
            const double grid = std::pow(10.0, std::round(exponent(random) / 2));
            min = boundary(random) * grid / 10;
            max = min + (1 + std::abs(boundary(random))) * grid / 10;
        }
        if (max <= min)
            continue;
        expectCoveringScale(min, max, wantedCounts(random));
        if (HasFailure())
            return;
    }
}

// What the module may hand over when a record is odd; each must give a usable scale.
const struct {
    double lo;
    double hi;
    double step;
    short wanted;
    const char* comment;
} Degenerate[] = {
    {0.0, 0.0, 0.0, 10, "a single zero"},
    {-3.0, -3.0, 0.0, 10, "a single negative value"},
    {0.0, 10.0, std::numeric_limits<double>::infinity(), 0, "no intervals wanted"},
    {0.0, 10.0, 1.0, -4, "a negative count"},
    {10.0, 0.0, -1.0, 10, "maximum below minimum"},
};

TEST(NeatScale, DegenerateInputGivesAUsableScale) {
    // The documented exact answers first: one power of ten ending at a single value, the
    // unit interval for what is no number.
    const struct {
        double min, max, lo, hi, step;
    } exact[] = {{5, 5, 4, 5, 1}, {std::nan(""), 1, 0, 1, 1}, {0, INFINITY, 0, 1, 1}};
    for (const auto& row : exact) {
        const wb::Scale scale = wb::neatScale(row.min, row.max, 10);
        EXPECT_EQ(scale.lo, row.lo);
        EXPECT_EQ(scale.hi, row.hi);
        EXPECT_EQ(scale.step, row.step);
    }

    wb::TextService service;
    for (const auto& row : Degenerate) {
        SCOPED_TRACE(row.comment);
        double lo = row.lo, hi = row.hi, step = row.step;
        service.scling_double_QUA(&lo, &hi, &step, 1, row.wanted);
        const double min = std::min(row.lo, row.hi), max = std::max(row.lo, row.hi);
        EXPECT_LT(lo, min);
        EXPECT_GE(hi, max);
        ASSERT_GT(step, 0.0);
        const std::vector<Interval> intervals = moduleIntervals({lo, hi, step});
        EXPECT_GE(intervals.size(), 1u);
        EXPECT_LE(intervals.size(), 25u);
        EXPECT_GE(intervals.back().second, max);
    }
}

} // namespace
