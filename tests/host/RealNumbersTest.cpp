// The bounds of the values tolerantly equal to a code must give RealEqual's answer for every
// value, above all for the few doubles on either side of each bound.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "drilldown/host/RealNumbers.h"

namespace {

bool InRange(const RealRange& range, double x) { return range.lo <= x && x <= range.hi; }

// x and the `steps` doubles on each side of it.
template <typename Check> void AroundValue(double x, int steps, Check&& check) {
    double below = x, above = x;
    check(x);
    for (int k = 0; k < steps; ++k) {
        below = std::nextafter(below, -HUGE_VAL);
        above = std::nextafter(above, HUGE_VAL);
        check(below);
        check(above);
    }
}

TEST(RealEqualRange, HoldsExactlyWhereRealEqualHolds) {
    constexpr double Max = std::numeric_limits<double>::max();
    constexpr double Inf = std::numeric_limits<double>::infinity();
    const double codes[] = {-99,   1,    0.1,  0.3,     123456.789, 9007199254740993.0,
                            1e300, Max,  -Max, 1e-300,  5e-324,     2.2250738585072014e-308,
                            0.0,   -0.0, Inf,  -Inf,    -1e-5,      std::nan("")};
    std::mt19937_64 random(3);
    for (const double code : codes) {
        SCOPED_TRACE(code);
        const RealRange range = RealEqualRange(code);
        auto agrees = [&](double x) {
            ASSERT_EQ(InRange(range, x), RealEqual(x, code)) << "x = " << x;
        };
        for (const double x : {range.lo, range.hi, code})
            if (!std::isnan(x))
                AroundValue(x, 3, agrees);
        // Values spread over the stretch between the bounds and a little beyond.
        std::uniform_real_distribution<double> spread(-2.0, 2.0);
        const double width = range.hi - range.lo;
        for (int k = 0; k < 200 && std::isfinite(width); ++k)
            agrees(code + spread(random) * width);
        for (const double x : {0.0, -1.0, 1.0, Inf, -Inf, std::nan("")})
            agrees(x);
    }
}

TEST(RealEqualRange, StretchesOverTheTolerance) {
    // Away from zero the stretch is about twice the tolerance wide, so it is neither a
    // single value nor wider than the rule allows.
    for (const double code : {1.0, -99.0, 0.1, 1e300}) {
        const RealRange range = RealEqualRange(code);
        EXPECT_NEAR((range.hi - range.lo) / std::abs(code), 2 * RealTolerance, 1e-15) << code;
    }
}

} // namespace
