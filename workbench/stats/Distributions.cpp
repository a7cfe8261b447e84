#include "workbench/stats/Distributions.h"

#include <cmath>
#include <limits>

namespace wb {

namespace {

constexpr int MaxIterations = 10000;
constexpr double Epsilon = 1e-15;
constexpr double Tiny = 1e-300;

// P(a, x) by its series, for x < a + 1.
double gammaSeries(double a, double x) {
    double term = 1.0 / a, sum = term;
    for (int n = 1; n < MaxIterations; ++n) {
        term *= x / (a + n);
        sum += term;
        if (std::fabs(term) < std::fabs(sum) * Epsilon)
            break;
    }
    return sum * std::exp(-x + a * std::log(x) - std::lgamma(a));
}

// Q(a, x) = 1 - P(a, x) by its continued fraction (modified Lentz), for x >= a + 1.
double gammaFraction(double a, double x) {
    double b = x + 1 - a, c = 1 / Tiny, d = 1 / b, h = d;
    for (int n = 1; n < MaxIterations; ++n) {
        const double an = -n * (n - a);
        b += 2;
        d = an * d + b;
        d = std::fabs(d) < Tiny ? Tiny : d;
        c = b + an / c;
        c = std::fabs(c) < Tiny ? Tiny : c;
        d = 1 / d;
        const double delta = d * c;
        h *= delta;
        if (std::fabs(delta - 1) < Epsilon)
            break;
    }
    return std::exp(-x + a * std::log(x) - std::lgamma(a)) * h;
}

// The continued fraction of I_x(a, b), for x < (a + 1) / (a + b + 2).
double betaFraction(double x, double a, double b) {
    const double qab = a + b, qap = a + 1, qam = a - 1;
    double c = 1, d = 1 - qab * x / qap;
    d = std::fabs(d) < Tiny ? Tiny : d;
    d = 1 / d;
    double h = d;
    for (int m = 1; m < MaxIterations; ++m) {
        const int m2 = 2 * m;
        double aa = m * (b - m) * x / ((qam + m2) * (a + m2));
        d = 1 + aa * d;
        d = std::fabs(d) < Tiny ? Tiny : d;
        c = 1 + aa / c;
        c = std::fabs(c) < Tiny ? Tiny : c;
        d = 1 / d;
        h *= d * c;
        aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
        d = 1 + aa * d;
        d = std::fabs(d) < Tiny ? Tiny : d;
        c = 1 + aa / c;
        c = std::fabs(c) < Tiny ? Tiny : c;
        d = 1 / d;
        const double delta = d * c;
        h *= delta;
        if (std::fabs(delta - 1) < Epsilon)
            break;
    }
    return h;
}

} // namespace

double regularisedGammaP(double a, double x) {
    if (x <= 0)
        return 0;
    return x < a + 1 ? gammaSeries(a, x) : 1 - gammaFraction(a, x);
}

double chiSquareUpperTail(double x, double df) {
    if (!(x > 0))
        return 1;
    const double a = df / 2, half = x / 2;
    return half < a + 1 ? 1 - gammaSeries(a, half) : gammaFraction(a, half);
}

double regularisedBeta(double x, double a, double b) {
    if (x <= 0)
        return 0;
    if (x >= 1)
        return 1;
    const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                  a * std::log(x) + b * std::log1p(-x));
    if (x < (a + 1) / (a + b + 2))
        return front * betaFraction(x, a, b) / a;
    return 1 - front * betaFraction(1 - x, b, a) / b;
}

double studentTwoSidedP(double t, double df) {
    if (!std::isfinite(t))
        return std::isnan(t) ? std::numeric_limits<double>::quiet_NaN() : 0;
    return regularisedBeta(df / (df + t * t), df / 2, 0.5);
}

} // namespace wb
