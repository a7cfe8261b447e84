// The three per-case decisions that every scan shares: the weight of a case, and whether it
// is missing in a chosen variable of either side.

#include "../core/CDrillDown.h"
#include "SubsetTest.h"

double CDrillDown::DealWithWeights(unsigned short) {
    const Wght_com& weight = ModuleBlocks().Wght;
    return CaseWeight(weight.WeightOn != 0, weight.WeightValue, WM == 1);
}

// Built for AVX2 where the processor has it, where rounding a weight is one instruction.
__attribute__((target_clones("avx2", "default")))
void CountingWeights(const short* results, double* weights, int count, bool weighted,
                     bool weightedMoments) {
    for (int i = 0; i < count; ++i)
        weights[i] = results[i] == 0 ? CaseWeight(weighted, weights[i], weightedMoments) : 0.0;
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
