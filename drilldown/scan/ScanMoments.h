#pragma once
// The working arrays of a scan: counts and moments of every slot (one chosen variable
// each), updated case by case in one pass.
//
// The mean and the sum of squared deviations are updated together for each value, with
// the weight as a frequency, so that no second pass is needed and no sum of squares of raw
// values, which loses all precision for values far from zero, is ever formed.

#include <cstdint>

#include "../host/HostArray.h"

class ScanMoments {
public:
    explicit ScanMoments(CAnalysisSupport& host)
        : Min(host), Max(host), Mean(host), SS(host), WeightedN(host), MCount(host),
          Divisor(host), Delta(host), N(host), MissingN(host) {}

    // Allocates `slots` entries of every array and gives them their start values; false
    // when memory ran out (what was obtained is freed with the object).
    bool Allocate(int slots) {
        // At least one entry each, so that a scan with no variable still has its arrays.
        const std::size_t n = slots > 0 ? std::size_t(slots) : 1;
        if (!(Min.Allocate(n) && Max.Allocate(n) && Mean.Allocate(n) && SS.Allocate(n) &&
              WeightedN.Allocate(n) && MCount.Allocate(n) && Divisor.Allocate(n) &&
              Delta.Allocate(n) && N.Allocate(n) && MissingN.Allocate(n)))
            return false;
        for (std::size_t i = 0; i < n; ++i) {
            Min[i] = StartMin;
            Max[i] = StartMax;
        }
        return true;
    }

    void CountMissing(int slot, double weight) {
        MissingN[slot] += 1;
        MCount[slot] += weight;
    }

    // The counts, the range, then the mean and the sum of squares; Add is called between
    // the range and the moments, where a categorical slot counts its category.
    template <typename Add> void Update(int slot, double x, double weight, Add&& addCategory) {
        Divisor[slot] += weight;
        N[slot] += 1;
        WeightedN[slot] += weight;
        if (Min[slot] > x)
            Min[slot] = x;
        if (Max[slot] < x)
            Max[slot] = x;
        addCategory();
        Delta[slot] = (x - Mean[slot]) * weight;
        Mean[slot] += Delta[slot] / Divisor[slot];
        SS[slot] += (x - Mean[slot]) * Delta[slot];
    }
    void Update(int slot, double x, double weight) {
        Update(slot, x, weight, [] {});
    }

    // A variable without a valid value keeps these, and its Min is then above its Max.
    static constexpr double StartMin = 1.7e+308;
    static constexpr double StartMax = -1.7e+308;

    HostArray<double> Min, Max, Mean, SS, WeightedN, MCount, Divisor, Delta;
    HostArray<int32_t> N, MissingN;
};
