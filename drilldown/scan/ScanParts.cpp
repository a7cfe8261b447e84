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

void PartRecord::AddUnseenValue(double value, int16_t kind, double weight, int code) {
    static const std::string noName;
    const int added = record.AddValue(value, kind, weight, noName);
    if (added == 0)
        overflowed = true;
    if (added != 2) {
        ++m_generation;
        m_countOfCode.fill(nullptr);
    }
    // A full set does not survive the next value, so nothing is remembered in it.
    const CategorySet& categories = record.Categories;
    if (added == 0 || categories.size() >= MaxValueCategories)
        return;
    const auto at = categories.lower_bound(value);
    if (code >= 0)
        m_countOfCode[code] = &Mutable(*at).Count;
    else
        m_seen[HashPlace(value)] = {value, m_generation,
                                    static_cast<std::uint32_t>(at - categories.begin())};
}

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
