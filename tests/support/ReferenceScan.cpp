#include "ReferenceScan.h"

#include <algorithm>
#include <cmath>

namespace ref {

double caseWeight(const wb::DataFile& file, int caseNo, bool weightedMoments) {
    if (file.weightVariable() == 0)
        return 1.0;
    const double w = file.caseWeight(caseNo);
    return weightedMoments ? w : std::round(w);
}

std::vector<Stats> compute(const wb::DataFile& file, const std::vector<int>& variables,
                           const std::vector<int>& casewiseVariables, const Options& options,
                           const CaseFilter& inSubset) {
    std::vector<Stats> stats(variables.size());
    std::vector<std::vector<std::pair<double, double>>> values(variables.size());
    for (int c = 1; c <= file.caseCount(); ++c) {
        if (!file.isSelected(c) || !inSubset(c))
            continue;
        const double w = caseWeight(file, c, options.weightedMoments);
        if (w <= 0)
            continue;
        const bool dropped =
            options.casewise &&
            std::any_of(casewiseVariables.begin(), casewiseVariables.end(),
                        [&](int v) { return file.isMissing(v, file.value(c, v)); });
        if (dropped && options.droppedLeaveNoTrace)
            continue;
        for (std::size_t i = 0; i < variables.size(); ++i) {
            const double x = file.value(c, variables[i]);
            if (dropped || file.isMissing(variables[i], x)) {
                stats[i].missingN += 1;
                stats[i].mcount += w;
                continue;
            }
            values[i].emplace_back(x, w);
        }
    }
    for (std::size_t i = 0; i < variables.size(); ++i) {
        Stats& s = stats[i];
        double sum = 0;
        for (const auto& [x, w] : values[i]) {
            s.n += 1;
            s.weightedN += w;
            sum += w * x;
            s.min = std::min(s.min, x);
            s.max = std::max(s.max, x);
            s.valueCounts[x] += w;
        }
        if (s.n == 0)
            continue;
        s.mean = sum / s.weightedN;
        for (const auto& [x, w] : values[i])
            s.ss += w * (x - s.mean) * (x - s.mean);
    }
    return stats;
}

} // namespace ref
