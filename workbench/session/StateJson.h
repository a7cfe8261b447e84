#pragma once
// The state of a drill-down analysis as JSON: {"ValidVar", "DrillDowns", "DrillUps",
// "Reviews"}, each record with the fields of a Drill in their declared order and its
// categories. This is what golden files and macros compare.
//
// JSON has no infinity nor NaN: such a value (the moments of values near 1e308 overflow)
// is written as the string "Infinity", "-Infinity" or "NaN" rather than as null, which
// would read as "no value".

#include <nlohmann/json.hpp>

#include "drilldown/core/CDrillDown.h"

namespace wb {

nlohmann::ordered_json stateToJson(const CDrillDown& analysis);

// The state as indented text. Category names are the module's, cut to a fixed width that
// may split a character: bytes that are not UTF-8 become U+FFFD.
std::string stateText(const CDrillDown& analysis);

} // namespace wb
