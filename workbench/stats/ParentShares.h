#pragma once
// The parent behind the child: beside each row of a frequency table of the drill-down or
// review variables, the share the row's category has in the level the subset was cut from
// (every drill step but the newest), and behind each bar of their histograms an outline of
// it, so that the user sees what the last step changed.
//
// The parent's cases are counted into a copy of the variable's record with the record's own
// rules (value categories by value, intervals by their limits, a value above the last
// interval in none), weighted as the analysis weighs them (SubsetContrast.h). A share is the
// category's weighted count over the parent's cases, missing ones included, as the module's
// percentages are; the missing-data row gets the missing cases' share. Before the first
// drill step there is no parent and nothing is added.

#include "drilldown/core/CDrillDown.h"
#include "workbench/data/DataFile.h"
#include "workbench/documents/Document.h"

namespace wb {

// Adds the column "Niveau précédent (%)" to `document` when it is output `output` (from 1)
// of the frequencies of the drill-down variables (`command` 9060) or of the review
// variables (9082): that output is the table of the record at that place of its set. To a
// histogram of the histograms commands (9061, 9083) it adds, per bar, the count the bar
// would have if the subset, all its cases counted, kept the level above's shares.
void addParentShares(Document& document, int command, int output, const CDrillDown& analysis,
                     const DataFile& file);

} // namespace wb
