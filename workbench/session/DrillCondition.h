#pragma once
// The current subset of an analysis as a selection condition (SelectionCondition.h), so
// that a drill path can be carried into any later analysis: `drilldown dump --condition`
// prints it and the desktop copies it.
//
// Applied with the same file, the condition keeps exactly the cases the analysis keeps:
//   - the file's own selection, when it has one;
//   - each drill step, as the analysis tests a case against it: a category of values is
//     `V >= v and V <= v` (the analysis compares exactly), an interval `a < V and V <= b`
//     (`a <= V and V < b` with a fixed step), the missing-data row `missing(V)`; a step
//     whose limits hold the variable's missing code itself keeps the missing cases too,
//     as the analysis, which compares the code as a number, does;
//   - with casewise deletion ("Observations à VM ignorées"), `not missing(V)` for every
//     drill-down variable chosen.
// Numbers are written with 17 significant digits, so that they read back as the same
// doubles; a name that is not a plain word is written `#n`.

#include <string>

#include "drilldown/core/CDrillDown.h"
#include "workbench/data/DataFile.h"

namespace wb {

// "" when nothing narrows the file: no selection, no drill step, no casewise deletion.
// With `parentLevel`, the newest drill step is left out: the level the subset was cut from.
std::string drillPathCondition(const CDrillDown& analysis, const DataFile& file,
                               bool parentLevel = false);

} // namespace wb
