#pragma once
// Putting together what the parts of a scan counted (CaseLoop.h). Each part counts into
// copies of the records; the copies of later parts are then merged into the first part's,
// in file order.

#include "../core/Drill.h"

// A copy of a record that one part of a scan counts values into.
struct PartRecord {
    explicit PartRecord(Drill copy) : record(std::move(copy)) {}

    // Counts a value as Drill::AddValue does, noting a set that overflowed.
    void AddValue(double value, int16_t kind, double weight) {
        if (record.AddValue(value, kind, weight, std::string()) == 0)
            overflowed = true;
    }

    Drill record;
    bool overflowed = false;  // a value came while the set was full
};

// Adds the value categories of a later part into `into`: counts add up where a value is in
// both, a new value is inserted. A set that overflowed in either part, or holds more values
// than a set may, turns the record to neat intervals with no categories, as one pass would.
// False when only one pass can give the result of the rules: two values close enough for
// the tolerant comparison to have joined them, or a set exactly full, which one more value
// in one pass would have overflowed.
bool MergeValueCategories(PartRecord& into, const PartRecord& later);

// Adds the counts of a later part into the same intervals of `into`.
void MergeIntervalCounts(Drill& into, const Drill& later);
