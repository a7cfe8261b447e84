// The tail probabilities against closed forms that hold for small degrees of freedom.

#include "workbench/stats/Distributions.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace {

TEST(Distributions, TailsAgreeWithTheirClosedForms) {
    const struct {
        const char* what;
        double (*computed)(double);
        double (*closed)(double);
    } cases[] = {
        {"chi-square, 1 df", [](double x) { return wb::chiSquareUpperTail(x, 1); },
         [](double x) { return std::erfc(std::sqrt(x / 2)); }},
        {"chi-square, 2 df", [](double x) { return wb::chiSquareUpperTail(x, 2); },
         [](double x) { return std::exp(-x / 2); }},
        {"chi-square, 6 df", [](double x) { return wb::chiSquareUpperTail(x, 6); },
         [](double x) { return std::exp(-x / 2) * (1 + x / 2 + x * x / 8); }},
        {"t, 1 df (Cauchy)", [](double t) { return wb::studentTwoSidedP(t, 1); },
         [](double t) { return 1 - 2 * std::atan(std::fabs(t)) / std::numbers::pi; }},
        {"t, 2 df", [](double t) { return wb::studentTwoSidedP(t, 2); },
         [](double t) { return 1 - std::fabs(t) / std::sqrt(2 + t * t); }},
    };
    for (const auto& c : cases)
        for (const double x : {0.001, 0.1, 0.5, 1.0, 2.5, 4.0, 7.9, 15.0, 40.0}) {
            const double expected = c.closed(x);
            EXPECT_NEAR(c.computed(x), expected, 1e-12 * std::max(expected, 1e-300) + 1e-15)
                << c.what << " at " << x;
        }
    EXPECT_EQ(wb::chiSquareUpperTail(0, 3), 1);
    EXPECT_EQ(wb::studentTwoSidedP(0, 7), 1);
}

} // namespace
