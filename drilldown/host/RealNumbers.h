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
#include <cmath>

inline constexpr double RealTolerance = 1e-12;

inline bool RealEqual(double a, double b) {
    if (a == b)
        return true;
    const double scale = std::max(std::fabs(a), std::fabs(b));
    return std::fabs(a - b) <= RealTolerance * scale;
}
inline bool RealLess(double a, double b) { return a < b && !RealEqual(a, b); }
inline bool RealGreater(double a, double b) { return a > b && !RealEqual(a, b); }
inline bool RealLessEqual(double a, double b) { return a < b || RealEqual(a, b); }
inline bool RealGreaterEqual(double a, double b) { return a > b || RealEqual(a, b); }
// A usable number: finite, neither infinite nor NaN.
inline bool RealIsValid(const double* x) { return std::isfinite(*x); }
