// Category construction over the sets of records.

#include "../core/CDrillDown.h"

int CDrillDown::SetNeatIntervals() {
    // Every method other than distinct values gets neat limits here, whatever it is.
    for (const Drill& record : *DrillDowns)
        if (record.Method != MethodDistinctValues)
            Mutable(record).BuildNeatIntervals();
    return 1;
}

int CDrillDown::SetReviewsIntervals() {
    for (const Drill& record : *Reviews)
        if (record.Method == MethodNeatIntervals)
            Mutable(record).BuildNeatIntervals();
    return 1;
}

int CDrillDown::SetContinuousIntervals() {
    for (DrillSet* records : {DrillDowns.get(), Reviews.get()})
        for (const Drill& record : *records)
            if (record.Type == 1)
                Mutable(record).Categorise();
    return 1;
}

int CDrillDown::AddCategories(double value, short variable, double weight) {
    const auto record = LookFor(variable, DrillDowns.get());
    if (record != DrillDowns->end())
        Mutable(*record).AddToInterval(value, weight);
    return 1;
}
