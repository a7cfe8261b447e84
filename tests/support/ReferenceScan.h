#pragma once
// A straightforward, independent computation of what the scans must leave in the records:
// two passes over the cases of a data file, with none of the module's code.

#include <functional>
#include <map>
#include <vector>

#include "workbench/data/DataFile.h"

namespace ref {

struct Options {
    bool weightedMoments = false;  // WM
    bool casewise = false;         // MD or RVMD for the side being computed
    bool droppedLeaveNoTrace = false;  // a case dropped casewise is not even counted missing
};

// Counts and moments of one variable over the cases that pass a filter.
struct Stats {
    int n = 0;
    double weightedN = 0;
    int missingN = 0;
    double mcount = 0;
    double min = 1.7e+308;
    double max = -1.7e+308;
    double mean = 0;
    double ss = 0;
    std::map<double, double> valueCounts;  // weighted count per distinct valid value
};

// The weight a case counts with: the file's weight, rounded half away from zero unless
// weighted moments are on; 1 without a weight variable.
double caseWeight(const wb::DataFile& file, int caseNo, bool weightedMoments);

// True when the case is in the subset being computed.
using CaseFilter = std::function<bool(int caseNo)>;

// Statistics of each of `variables` over the cases that the file's selection keeps, that
// have a positive weight and pass `inSubset`. With `casewise`, a case missing in any of
// `casewiseVariables` counts as missing for every variable.
std::vector<Stats> compute(const wb::DataFile& file, const std::vector<int>& variables,
                           const std::vector<int>& casewiseVariables, const Options& options,
                           const CaseFilter& inSubset);

} // namespace ref
