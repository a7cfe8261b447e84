// The vector helpers here are internal and always inlined, so the calling convention for
// vectors, which differs with and without AVX, never matters.
#pragma GCC diagnostic ignored "-Wpsabi"

#include "ScanMoments.h"

#include <algorithm>
#include <cstring>

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

constexpr int ArrayCount = 11;

} // namespace

bool ScanMoments::Allocate(int slots) {
    // Whole groups of lanes, and at least one, so that a scan with no variable still has them.
    const std::size_t n = (std::max(slots, 1) + Lanes - 1) / Lanes * Lanes;
    if (!m_block.Allocate(ArrayCount * n))
        return false;
    double* next = m_block.get();
    for (double** array : {&m_min, &m_max, &m_mean, &m_ss, &m_weightedN, &m_mcount, &m_n,
                           &m_missingN, &m_code, &m_test, &m_valid}) {
        *array = next;
        next += n;
    }
    m_column.assign(n, 0);
    std::fill(m_min, m_min + n, StartMin);
    std::fill(m_max, m_max + n, StartMax);
    return true;
}

void ScanMoments::CountMissing(int begin, int end, double weight) {
    for (int s = begin; s < end; ++s) {
        m_missingN[s] += 1;
        m_mcount[s] += weight;
        m_valid[s] = 0;
    }
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

// Four slots per step, built for AVX2 where the processor has it. Every valid slot gets
// exactly the scalar arithmetic of the update above, in its order; a missing slot, or one
// outside [begin, end), computes the same and throws it away.
__attribute__((target_clones("avx2", "default")))
void ScanMoments::Update(int begin, int end, double w, const double* values) {
    const Lane4 zero = {0, 0, 0, 0};
    const Lane4 one = {1, 1, 1, 1};
    for (int s = begin / Lanes * Lanes; s < end; s += Lanes) {
        const Mask4 index = {s, s + 1, s + 2, s + 3};
        const Mask4 inRange = (index >= begin) & (index < end);
        const int* column = m_column.data() + s;
        const Lane4 x = {values[column[0]], values[column[1]], values[column[2]],
                         values[column[3]]};
        const Mask4 missing = (Load(m_test + s) != zero) & RealEqualLanes(x, Load(m_code + s));
        const Mask4 valid = inRange & ~missing;
        const Mask4 counted = inRange & missing;

        // The divisor of the mean is the weighted count after this value.
        const Lane4 oldMean = Load(m_mean + s);
        const Lane4 divisor = Load(m_weightedN + s) + w;
        const Lane4 delta = (x - oldMean) * w;
        const Lane4 mean = oldMean + delta / divisor;
        const Lane4 ss = Load(m_ss + s) + (x - mean) * delta;
        const Lane4 min = Load(m_min + s);
        const Lane4 max = Load(m_max + s);

        Store(m_n + s, Load(m_n + s) + (valid ? one : zero));
        Store(m_weightedN + s, valid ? divisor : Load(m_weightedN + s));
        Store(m_min + s, (valid & (x < min)) ? x : min);
        Store(m_max + s, (valid & (x > max)) ? x : max);
        Store(m_mean + s, valid ? mean : oldMean);
        Store(m_ss + s, valid ? ss : Load(m_ss + s));
        Store(m_missingN + s, Load(m_missingN + s) + (counted ? one : zero));
        Store(m_mcount + s, Load(m_mcount + s) + (counted ? one * w : zero));
        Store(m_valid + s, inRange ? (valid ? one : zero) : Load(m_valid + s));
    }
}
