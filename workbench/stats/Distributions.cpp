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

// The modified Lentz method for a continued fraction: each step folds in the next term
// a / (b + ...) and gives the factor by which the value changes.
class Lentz {
public:
    Lentz(double c, double d) : m_c(c), m_d(d) {}
    double step(double a, double b) {
        m_d = nonZero(b + a * m_d);
        m_c = nonZero(b + a / m_c);
        m_d = 1 / m_d;
        return m_c * m_d;
    }
    static double nonZero(double x) { return std::fabs(x) < Tiny ? Tiny : x; }

private:
    double m_c, m_d;
};

// Q(a, x) = 1 - P(a, x) by its continued fraction, for x >= a + 1.
double gammaFraction(double a, double x) {
    double b = x + 1 - a, h = 1 / b;
    Lentz lentz(1 / Tiny, h);
    for (int n = 1; n < MaxIterations; ++n) {
        b += 2;
        const double delta = lentz.step(-n * (n - a), b);
        h *= delta;
        if (std::fabs(delta - 1) < Epsilon)
            break;
    }
    return std::exp(-x + a * std::log(x) - std::lgamma(a)) * h;
}

// The continued fraction of I_x(a, b), for x < (a + 1) / (a + b + 2).
double betaFraction(double x, double a, double b) {
    const double qab = a + b, qap = a + 1, qam = a - 1;
    double h = 1 / Lentz::nonZero(1 - qab * x / qap);
    Lentz lentz(1, h);
    for (int m = 1; m < MaxIterations; ++m) {
        const int m2 = 2 * m;
        h *= lentz.step(m * (b - m) * x / ((qam + m2) * (a + m2)), 1);
        const double delta = lentz.step(-(a + m) * (qab + m) * x / ((a + m2) * (qap + m2)), 1);
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
