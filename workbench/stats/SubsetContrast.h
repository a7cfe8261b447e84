#pragma once
// The current subset against the rest of the level it was cut from (the "parent": the
// cases of every drill step but the newest), for what no drill-down tool shows together:
//   1. where to drill next: for each drill-down variable still in the list, how far its
//      distribution in the subset departs from the rest's: weighted Cramér's V of the
//      variable against in/out of the subset, with the chi-square test of independence;
//   2. the subset against the rest: for each continuous review variable the weighted mean,
//      standard deviation and N on both sides, their difference, Welch's t with its
//      two-sided p-value and Hedges' g; for each categorical review variable the same
//      crosstab as in 1.
// Cases count as the analysis counts them: the file's selection, casewise deletion, each
// drill step as it tests a case (DrillCondition.h), and weights rounded to whole numbers
// while "Moments pondérés" is off; a case weighing 0 or less does not count. Weights are
// frequencies: N is the sum of the weights and the standard deviation divides by N - 1. A
// variable's missing values leave its own figures only. Categorical variables have a
// category per value; continuous ones the bins of the 3D histogram (GraphStatistics.h),
// cut over the parent level.
//
// Nothing here changes the analysis: it reads the file and the drill steps.

#include <string>
#include <vector>

#include "drilldown/core/CDrillDown.h"
#include "workbench/data/DataFile.h"

namespace wb {

// A variable's categories in the subset and in the rest; the test is NaN where it is not
// defined (fewer than two categories with cases, or an empty side).
struct CategoryContrast {
    int variable = 0;
    std::string name;
    std::vector<std::string> categories;
    std::vector<double> inSubset, inRest; // weighted counts, per category
    double chiSquare = 0;
    int degrees = 0;
    double pValue = 0;
    double cramersV = 0;
};

struct SideMoments {
    double n = 0; // sum of weights
    double mean = 0;
    double sd = 0;
};

struct MeanContrast {
    int variable = 0;
    std::string name;
    SideMoments subset, rest;
    double difference = 0; // subset's mean less the rest's
    double welchT = 0;
    double welchDf = 0;
    double pValue = 0;
    double hedgesG = 0;
};

struct SubsetContrast {
    bool hasParent = false; // false before the first drill step: nothing to set against
    std::vector<CategoryContrast> nextDrill; // by Cramér's V, strongest first
    std::vector<MeanContrast> reviewMeans;
    std::vector<CategoryContrast> reviewCategories;
};

SubsetContrast contrastSubset(const CDrillDown& analysis, const DataFile& file);

// A case of the parent level as it counts: its weight, and whether the subset holds it.
struct LevelCase {
    int caseNo;
    double weight;
    bool inSubset;
};
// The cases of the parent level, by the rules above; every counted case before any step.
std::vector<LevelCase> parentLevelCases(const CDrillDown& analysis, const DataFile& file);

// The contrast as text for a terminal, in the order above.
std::string contrastText(const SubsetContrast& contrast);

// The chi-square test and Cramér's V of a table of two columns, filled in `table`.
void testIndependence(CategoryContrast& table);

} // namespace wb
