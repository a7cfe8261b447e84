#include "ScanParts.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "../core/CDrillDown.h"

ScanSplit ScanSplit::ForThisMachine() {
    return ScanSplit{static_cast<int>(std::max(1u, std::thread::hardware_concurrency())), 100000};
}

int ScanSplit::PartsFor(int cases) const {
    return std::clamp(cases / std::max(MinCases, 1), 1, std::max(MaxParts, 1));
}

namespace {

// Values that may lie within the tolerance of a third one, so that the tolerant comparison
// gives an answer that depends on the order in which the cases came.
bool MayJoin(double a, double b) {
    return std::abs(a - b) <= 4 * RealTolerance * std::max(std::abs(a), std::abs(b));
}

} // namespace

bool MergeValueCategories(PartRecord& into, const PartRecord& later) {
    CategorySet& categories = into.record.Categories;
    if (!into.overflowed && !later.overflowed) {
        for (const Categories& category : later.record.Categories) {
            const auto [at, inserted] = categories.emplace(category);
            if (inserted)
                continue;
            if (at->Upper != category.Upper)
                return false;
            Mutable(*at).Count += category.Count;
        }
        if (categories.size() == MaxValueCategories)
            return false;
        into.overflowed = categories.size() > MaxValueCategories;
    }
    if (into.overflowed || later.overflowed) {
        into.overflowed = true;
        categories.clear();
        into.record.Method = MethodNeatIntervals;
        return true;
    }
    const auto close = std::adjacent_find(categories.begin(), categories.end(),
                                          [](const Categories& a, const Categories& b) {
                                              return MayJoin(a.Upper, b.Upper);
                                          });
    return close == categories.end();
}

void MergeIntervalCounts(Drill& into, const Drill& later) {
    auto from = later.Categories.begin();
    for (const Categories& category : into.Categories)
        Mutable(category).Count += (from++)->Count;
}
