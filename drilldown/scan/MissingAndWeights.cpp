// The three per-case decisions that every scan shares: the weight of a case, and whether it
// is missing in a chosen variable of either side.

#include <cmath>

#include "../core/CDrillDown.h"
#include "SubsetTest.h"

double CDrillDown::DealWithWeights(unsigned short) {
    const Wght_com& weight = ModuleBlocks().Wght;
    if (weight.WeightOn == 0)
        return 1.0;
    const double w = weight.WeightValue;
    if (WM == 1)
        return w;
    // Unweighted moments round the weight to a whole number, halves away from zero.
    if (w < 0)
        return std::ceil(w - 0.5);
    if (w == 0)
        return 0.0;
    return std::floor(w + 0.5);
}

CasewiseTest CDrillDown::DrillCasewiseTest() {
    return CasewiseTest(*this, Categorical, NoCategorical, Continuous, NoContinuous);
}

CasewiseTest CDrillDown::ReviewCasewiseTest() {
    return CasewiseTest(*this, RVCategorical, NoRVCategorical, RVContinuous, NoRVContinuous);
}

int CDrillDown::SetMissingData(const double* values) {
    return DrillCasewiseTest().AnyMissing(values);
}

int CDrillDown::MDReviews(const double* values) { return ReviewCasewiseTest().AnyMissing(values); }
