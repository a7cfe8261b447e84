#pragma once
// The tail probabilities that the tests of a subset against the rest need, from the
// regularised incomplete gamma and beta functions (continued fractions, as in the classic
// numerical recipes), to about 1e-12 relative.

namespace wb {

// P(X > x) for X chi-square with `df` degrees of freedom; 1 for x <= 0.
double chiSquareUpperTail(double x, double df);

// P(|T| > |t|) for T Student's t with `df` (real, from 1e-3) degrees of freedom.
double studentTwoSidedP(double t, double df);

// The regularised functions themselves: P(a, x) = γ(a, x) / Γ(a) and I_x(a, b).
double regularisedGammaP(double a, double x);
double regularisedBeta(double x, double a, double b);

} // namespace wb
