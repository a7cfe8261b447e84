#pragma once
// The state of a drill-down analysis as JSON: {"ValidVar", "DrillDowns", "DrillUps",
// "Reviews"}, each record with the fields of a Drill in their declared order and its
// categories. This is what golden files and macros compare.

#include <nlohmann/json.hpp>

#include "drilldown/core/CDrillDown.h"

namespace wb {

nlohmann::ordered_json stateToJson(const CDrillDown& analysis);

} // namespace wb
