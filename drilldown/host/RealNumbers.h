#pragma once
// The host's tests of real numbers.
//
// Equality is tolerant: two doubles are equal when they differ by no more than
// RealTolerance times the larger of their magnitudes, so that values which differ
// only by the rounding of a computation (0.1 + 0.2 and 0.3) compare equal, while
// any two values a user can type with up to twelve significant digits stay apart.
// The order tests are derived from equality so that exactly one of RealLess,
// RealEqual and RealGreater holds for any two valid numbers. NaN equals nothing
// and is less or greater than nothing.
//
// Every caller that needs exact comparison of doubles uses the plain operators.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

inline constexpr double RealTolerance = 1e-12;

// Tolerant equality of doubles, or lane by lane of GCC vectors of doubles (then a mask).
// It has no branch, so that a loop over many values stays vectorised.
template <typename T> [[gnu::always_inline]] inline auto RealEqualLanes(T a, T b) {
    const T absA = a < 0 ? -a : a;
    const T absB = b < 0 ? -b : b;
    const T scale = absA > absB ? absA : absB;
    const T diff = a - b;
    const T absDiff = diff < 0 ? -diff : diff;
    // An infinite value equals only itself, which a == b covers.
    return (a == b) | ((absDiff <= RealTolerance * scale) &
                       (scale <= std::numeric_limits<double>::max()));
}

inline bool RealEqual(double a, double b) { return RealEqualLanes(a, b); }
inline bool RealLess(double a, double b) { return (a < b) & !RealEqual(a, b); }
inline bool RealGreater(double a, double b) { return (a > b) & !RealEqual(a, b); }
inline bool RealLessEqual(double a, double b) { return (a < b) | RealEqual(a, b); }
inline bool RealGreaterEqual(double a, double b) { return (a > b) | RealEqual(a, b); }
// A usable number: finite, neither infinite nor NaN.
inline bool RealIsValid(const double* x) { return std::isfinite(*x); }

// The values RealEqual to c, as bounds: RealEqual(x, c) holds exactly when lo <= x <= hi.
// They are one stretch of numbers: moving x away from c widens the difference by a whole
// step of x and the allowance by a trillionth of one, so the test changes once on each side.
// NaN has no such values (both bounds NaN), zero has only the two zeros, an infinity itself.
struct RealRange {
    double lo, hi;
};

inline RealRange RealEqualRange(double c) {
    if (c == 0)
        return {-0.0, 0.0};
    if (!std::isfinite(c))
        return {c, c};
    if (c < 0) {
        const RealRange mirrored = RealEqualRange(-c);
        return {-mirrored.hi, -mirrored.lo};
    }
    // The last value still equal to c on the way to `outside`, found by halving over the bit
    // patterns, which run in the order of the positive doubles.
    auto lastEqual = [c](double outside) {
        auto inside = std::bit_cast<int64_t>(c);
        auto beyond = std::bit_cast<int64_t>(outside);
        while (inside - beyond != 1 && beyond - inside != 1) {
            const int64_t middle = inside + (beyond - inside) / 2;
            (RealEqual(std::bit_cast<double>(middle), c) ? inside : beyond) = middle;
        }
        return std::bit_cast<double>(inside);
    };
    // Four times the tolerance away is outside; next to a number so small that its step
    // exceeds the tolerance, so is its neighbour.
    const double infinity = std::numeric_limits<double>::infinity();
    return {lastEqual(std::min(c * (1 - 4 * RealTolerance), std::nextafter(c, 0.0))),
            lastEqual(std::max(c * (1 + 4 * RealTolerance), std::nextafter(c, infinity)))};
}
