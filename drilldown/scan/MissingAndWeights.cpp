// The three per-case decisions that every scan shares: the weight of a case, and whether it
// is missing in a chosen variable of either side.

#include <cmath>

#include "../core/CDrillDown.h"
#include "../host/RealNumbers.h"

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

namespace {
bool AnyMissing(CAnalysisSupport& host, const double* values, const short* list, int count) {
    for (int i = 0; i < count; ++i) {
        double code;
        host.getmd5(list[i], &code);
        if (RealEqual(values[list[i]], code))
            return true;
    }
    return false;
}
} // namespace

int CDrillDown::SetMissingData(const double* values) {
    return AnyMissing(*this, values, Categorical, NoCategorical) ||
           AnyMissing(*this, values, Continuous, NoContinuous);
}

int CDrillDown::MDReviews(const double* values) {
    return AnyMissing(*this, values, RVCategorical, NoRVCategorical) ||
           AnyMissing(*this, values, RVContinuous, NoRVContinuous);
}
