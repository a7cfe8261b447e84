#pragma once
// The working arrays of a scan: counts and moments of every slot (one chosen variable
// each), updated case by case in one pass, a batch of cases at a time.
//
// The mean and the sum of squared deviations are updated together for each value, with
// the weight as a frequency, so that no second pass is needed and no sum of squares of raw
// values, which loses all precision for values far from zero, is ever formed:
//
//     Divisor += w; N += 1; WeightedN += w; Min, Max;
//     Delta = (x - Mean) * w; Mean += Delta / Divisor; SS += (x - Mean) * Delta
//
// The divisor always equals the weighted count, so the weighted count serves as both, and
// Delta lives only for the length of one update.
//
// The arrays are laid out slot by slot, in groups of four, so that one case updates four
// slots with each vector instruction: a missing value is not a branch but a mask that keeps
// the slot's old state. Over a batch, the state of up to three groups stays in registers
// and the groups are updated side by side, case after case: each slot's mean waits on its
// previous value through a division, and three such chains keep the processor busy where
// one would leave it waiting.

#include <cstdint>
#include <vector>

#include "../host/framework/HostArray.h"

// What the slots being updated do with one case of a batch.
enum class CaseUse : uint8_t {
    Update,        // a missing value counts as missing, any other updates the slot
    CountMissing,  // the case counts as missing in every slot
    Skip,          // the case leaves no trace
};

// Cases handed to the moments at once, in file order: each one's values (laid out as a value
// buffer) and the weight it counts with.
struct CaseBatch {
    static constexpr int Capacity = 128;
    const double* rows[Capacity];
    double weights[Capacity];
    int count = 0;
};

class ScanMoments {
public:
    // Slots are handled four at a time.
    static constexpr int Lanes = 4;

    explicit ScanMoments(CAnalysisSupport& host) : m_block(host) {}

    // Allocates the arrays for `slots` slots and gives them their start values; false when
    // memory ran out.
    bool Allocate(int slots);

    // The slot's column in a case's values (its variable), its missing-data code, and
    // whether its values are tested against the code at all (a side that drops incomplete
    // cases as a whole needs no test per value).
    void SetSlot(int slot, short column, double code, bool test);

    // Updates slots [begin, end) with the batch's cases in order, each slot from its column
    // of a case's values, as use[i] says for case i: a missing value counts as missing, any
    // other updates the counts, range and moments.
    void Update(int begin, int end, const CaseBatch& cases, const CaseUse* use);

    // Hands the value and weight of each case of the batch last updated that was valid in
    // the slot to count(value, weight), in order.
    template <typename Count>
    void ForEachValidValue(const CaseBatch& cases, int slot, Count&& count) const {
        const int column = m_column[slot];
        const int64_t* valid = m_validLanes.data() + slot;
        for (int i = 0; i < cases.count; ++i, valid += m_paddedSlots)
            if (*valid != 0)
                count(cases.rows[i][column], cases.weights[i]);
    }

    // Adds, slot by slot, what a scan of the cases after this one's counted: counts and
    // ranges add up, means and sums of squared deviations follow the pairwise rule
    //     Mean += d * m / (n + m);  SS += SS' + d * d * n * m / (n + m),
    // with n and m the weighted counts and d the difference of the two means.
    void Merge(const ScanMoments& later, int slots);

    double Min(int s) const { return m_min[s]; }
    double Max(int s) const { return m_max[s]; }
    double Mean(int s) const { return m_mean[s]; }
    double SS(int s) const { return m_ss[s]; }
    double WeightedN(int s) const { return m_weightedN[s]; }
    double MCount(int s) const { return m_mcount[s]; }
    int32_t N(int s) const { return static_cast<int32_t>(m_n[s]); }
    int32_t MissingN(int s) const { return static_cast<int32_t>(m_missingN[s]); }

    // A variable without a valid value keeps these, and its Min is then above its Max.
    static constexpr double StartMin = 1.7e+308;
    static constexpr double StartMax = -1.7e+308;

private:
    template <int G>
    void UpdateGroups(int s0, int begin, int end, const CaseBatch& cases, const CaseUse* use);

    HostArray<double> m_block;
    // Counts are kept as doubles, exact up to 2^53, so that every lane of a slot is a double.
    double *m_min, *m_max, *m_mean, *m_ss, *m_weightedN, *m_mcount, *m_n, *m_missingN;
    // The values that count as missing in each slot, from m_missingLo to m_missingHi: the
    // values RealEqual to the missing code, or none when the slot is not tested.
    double *m_missingLo, *m_missingHi;
    // Column 0 of a case's values is never a variable's; unused lanes read it and drop it.
    std::vector<int> m_column;
    // Per case of the last batch, per slot, all ones where the case updated the slot.
    std::vector<int64_t> m_validLanes;
    std::size_t m_paddedSlots = 0;  // slots in whole groups
};
