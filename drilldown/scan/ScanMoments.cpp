// The vector helpers here are internal and always inlined, so the calling convention for
// vectors, which differs with and without AVX, never matters.
#pragma GCC diagnostic ignored "-Wpsabi"

#include "ScanMoments.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "../host/RealNumbers.h"

namespace {

using Lane4 = double __attribute__((vector_size(32)));
using Mask4 = int64_t __attribute__((vector_size(32)));

[[gnu::always_inline]] inline Lane4 Load(const double* p) {
    Lane4 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
[[gnu::always_inline]] inline void Store(double* p, Lane4 v) { std::memcpy(p, &v, sizeof v); }
[[gnu::always_inline]] inline Mask4 LoadMask(const int64_t* p) {
    Mask4 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
[[gnu::always_inline]] inline void StoreMask(int64_t* p, Mask4 v) { std::memcpy(p, &v, sizeof v); }

[[gnu::always_inline]] inline Mask4 AllLanes(bool b) {
    const int64_t lane = b ? -1 : 0;
    return Mask4{lane, lane, lane, lane};
}

constexpr int ArrayCount = 10;

} // namespace

bool ScanMoments::Allocate(int slots) {
    // Whole groups of lanes, and at least one, so that a scan with no variable still has them.
    const std::size_t n = (std::max(slots, 1) + Lanes - 1) / Lanes * Lanes;
    if (!m_block.Allocate(ArrayCount * n))
        return false;
    double* next = m_block.get();
    for (double** array : {&m_min, &m_max, &m_mean, &m_ss, &m_weightedN, &m_mcount, &m_n,
                           &m_missingN, &m_missingLo, &m_missingHi}) {
        *array = next;
        next += n;
    }
    m_column.assign(n, 0);
    m_paddedSlots = n;
    m_validLanes.assign(CaseBatch::Capacity * n, 0);
    std::fill(m_min, m_min + n, StartMin);
    std::fill(m_max, m_max + n, StartMax);
    return true;
}

void ScanMoments::SetSlot(int slot, short column, double code, bool test) {
    m_column[slot] = column;
    const double none = std::numeric_limits<double>::quiet_NaN();
    const RealRange missing = test ? RealEqualRange(code) : RealRange{none, none};
    m_missingLo[slot] = missing.lo;
    m_missingHi[slot] = missing.hi;
}

void ScanMoments::Merge(const ScanMoments& later, int slots) {
    for (int s = 0; s < slots; ++s) {
        if (later.m_n[s] > 0 && m_n[s] == 0) {
            m_mean[s] = later.m_mean[s];
            m_ss[s] = later.m_ss[s];
        } else if (later.m_n[s] > 0) {
            const double n = m_weightedN[s];
            const double m = later.m_weightedN[s];
            const double d = later.m_mean[s] - m_mean[s];
            m_mean[s] += d * (m / (n + m));
            m_ss[s] += later.m_ss[s] + d * d * (n * m / (n + m));
        }
        m_weightedN[s] += later.m_weightedN[s];
        m_n[s] += later.m_n[s];
        m_missingN[s] += later.m_missingN[s];
        m_mcount[s] += later.m_mcount[s];
        m_min[s] = std::min(m_min[s], later.m_min[s]);
        m_max[s] = std::max(m_max[s], later.m_max[s]);
    }
}

// Up to three groups of four slots from slot s0, side by side, over the whole batch, with
// their state in registers. Every valid slot gets exactly the arithmetic of the update given
// in ScanMoments.h, in case order; a missing slot, or one outside [begin, end), computes the
// same and throws it away.
template <int G>
[[gnu::always_inline]] inline void ScanMoments::UpdateGroups(int s0, int begin, int end,
                                                             const CaseBatch& cases,
                                                             const CaseUse* use) {
    const Lane4 zero = {0, 0, 0, 0};
    const Lane4 one = {1, 1, 1, 1};
    Lane4 mean[G], weightedN[G], ss[G], min[G], max[G], n[G], missingN[G], mcount[G];
    Lane4 missingLo[G], missingHi[G];
    Mask4 inRange[G];
    const int* column[G];
    // Slots of consecutive variables, the usual choice, take their four values in one load.
    bool consecutive[G];
#pragma GCC unroll 3
    for (int g = 0; g < G; ++g) {
        const int s = s0 + g * Lanes;
        mean[g] = Load(m_mean + s);
        weightedN[g] = Load(m_weightedN + s);
        ss[g] = Load(m_ss + s);
        min[g] = Load(m_min + s);
        max[g] = Load(m_max + s);
        n[g] = Load(m_n + s);
        missingN[g] = Load(m_missingN + s);
        mcount[g] = Load(m_mcount + s);
        missingLo[g] = Load(m_missingLo + s);
        missingHi[g] = Load(m_missingHi + s);
        const Mask4 index = {s, s + 1, s + 2, s + 3};
        inRange[g] = (index >= begin) & (index < end);
        column[g] = m_column.data() + s;
        const int* c = column[g];
        consecutive[g] = c[1] == c[0] + 1 && c[2] == c[0] + 2 && c[3] == c[0] + 3;
    }
    int64_t* validLanes = m_validLanes.data() + s0;
    for (int i = 0; i < cases.count; ++i, validLanes += m_paddedSlots) {
        const double* row = cases.rows[i];
        const double w = cases.weights[i];
        const Mask4 updates = AllLanes(use[i] == CaseUse::Update);
        const Mask4 countsMissing = AllLanes(use[i] == CaseUse::CountMissing);
#pragma GCC unroll 3
        for (int g = 0; g < G; ++g) {
            const int* c = column[g];
            const Lane4 x = consecutive[g] ? Load(row + c[0])
                                           : Lane4{row[c[0]], row[c[1]], row[c[2]], row[c[3]]};
            const Mask4 missing = (x >= missingLo[g]) & (x <= missingHi[g]);
            const Mask4 valid = inRange[g] & updates & ~missing;
            const Mask4 counted = inRange[g] & ((updates & missing) | countsMissing);

            // The divisor of the mean is the weighted count after this value.
            const Lane4 divisor = weightedN[g] + w;
            const Lane4 delta = (x - mean[g]) * w;
            const Lane4 newMean = mean[g] + delta / divisor;
            const Lane4 newSS = ss[g] + (x - newMean) * delta;

            n[g] += valid ? one : zero;
            weightedN[g] = valid ? divisor : weightedN[g];
            min[g] = (valid & (x < min[g])) ? x : min[g];
            max[g] = (valid & (x > max[g])) ? x : max[g];
            mean[g] = valid ? newMean : mean[g];
            ss[g] = valid ? newSS : ss[g];
            missingN[g] += counted ? one : zero;
            mcount[g] += counted ? one * w : zero;
            int64_t* lanes = validLanes + g * Lanes;
            StoreMask(lanes, inRange[g] ? valid : LoadMask(lanes));
        }
    }
#pragma GCC unroll 3
    for (int g = 0; g < G; ++g) {
        const int s = s0 + g * Lanes;
        Store(m_mean + s, mean[g]);
        Store(m_weightedN + s, weightedN[g]);
        Store(m_ss + s, ss[g]);
        Store(m_min + s, min[g]);
        Store(m_max + s, max[g]);
        Store(m_n + s, n[g]);
        Store(m_missingN + s, missingN[g]);
        Store(m_mcount + s, mcount[g]);
    }
}

// Built for AVX-512, with its 32 vector registers, or AVX2 where the processor has them.
__attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
void ScanMoments::Update(int begin, int end, const CaseBatch& cases, const CaseUse* use) {
    constexpr int Side = 3 * Lanes;
    for (int s = begin / Lanes * Lanes; s < end; s += Side) {
        switch (std::min((end - s + Lanes - 1) / Lanes, 3)) {
        case 1:
            UpdateGroups<1>(s, begin, end, cases, use);
            break;
        case 2:
            UpdateGroups<2>(s, begin, end, cases, use);
            break;
        default:
            UpdateGroups<3>(s, begin, end, cases, use);
        }
    }
}
