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

#include <cmath>
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
