#include "CategoryList.h"

// Both counts are built for AVX2 where the processor has it: their loops have no branch, so
// four values are compared per instruction.
__attribute__((target_clones("avx2", "default")))
std::size_t CountRealLess(const double* values, std::size_t n, double value) {
    std::size_t below = 0;
    for (std::size_t i = 0; i < n; ++i)
        below += RealLess(values[i], value) ? 1 : 0;
    return below;
}

__attribute__((target_clones("avx2", "default")))
std::size_t CountLess(const double* values, std::size_t n, double value) {
    std::size_t below = 0;
    for (std::size_t i = 0; i < n; ++i)
        below += values[i] < value ? 1 : 0;
    return below;
}
