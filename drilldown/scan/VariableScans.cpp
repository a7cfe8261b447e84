// The first look at a new list of variables: ReadDDNV for the drill-down variables over all
// cases, ReadRVV for the review variables over the current subset. Both fill, in one pass,
// every record's counts, range, moments and value categories.

#include <vector>

#include "../host/RealNumbers.h"
#include "CaseLoop.h"
#include "ScanMoments.h"
#include "SubsetTest.h"

// One side of the analysis as a first-look scan sees it.
struct CDrillDown::VariableSide {
    const short* categorical;
    int noCategorical;
    const short* continuous;
    int noContinuous;
    DrillSet* records;
    int16_t casewise;                               // MD or RVMD
    int (CDrillDown::*anyMissing)(const double*);   // SetMissingData or MDReviews
    bool countsValidCases;                          // ReadDDNV keeps ValidVar
    bool inSubsetOnly;                              // ReadRVV reads the current subset

    int Slots() const { return noCategorical + noContinuous; }
    short VariableOf(int slot) const {
        return slot < noCategorical ? categorical[slot] : continuous[slot - noCategorical];
    }
};

int CDrillDown::ReadDDNV(unsigned short) {
    ValidVar = 0;
    const VariableSide side{Categorical, NoCategorical, Continuous, NoContinuous,
                            DrillDowns.get(), MD, &CDrillDown::SetMissingData,
                            true, false};
    const LoopEnd end = ReadVariables(side);
    if (end == LoopEnd::BrokenOff)
        DrillDowns->clear();
    if (end != LoopEnd::Completed)
        return 0;
    SetNeatIntervals();
    ddstop();
    return 1;
}

int CDrillDown::ReadRVV(unsigned short) {
    const VariableSide side{RVCategorical, NoRVCategorical, RVContinuous, NoRVContinuous,
                            Reviews.get(), RVMD, &CDrillDown::MDReviews,
                            false, true};
    if (ReadVariables(side) != LoopEnd::Completed)
        return 0;
    SetReviewsIntervals();
    ddstop();
    return 1;
}

LoopEnd CDrillDown::ReadVariables(const VariableSide& side) {
    const int slots = side.Slots();
    ScanMoments m(*this);
    if (!m.Allocate(slots)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        return LoopEnd::NoMemory;
    }
    // Records do not move during a scan: look each slot's record up once.
    std::vector<Drill*> record(slots);
    for (int slot = 0; slot < slots; ++slot)
        record[slot] = &Mutable(*LookFor(side.VariableOf(slot), side.records));
    const SubsetTest subset = CompileSubsetTest();

    const LoopEnd end = RunCaseLoop([&](const double* values) {
        if (side.inSubsetOnly && subset.Excludes(values))
            return;
        const double w = DealWithWeights(0);
        if (side.casewise == 1 && (this->*side.anyMissing)(values)) {
            for (int slot = 0; slot < slots; ++slot)
                m.CountMissing(slot, w);
            return;
        }
        if (side.countsValidCases)
            ++ValidVar;
        for (int slot = 0; slot < slots; ++slot) {
            const short variable = side.VariableOf(slot);
            const double x = values[variable];
            if (side.casewise != 1) {
                double code;
                getmd5(variable, &code);
                if (RealEqual(x, code)) {
                    m.CountMissing(slot, w);
                    continue;
                }
            }
            if (slot < side.noCategorical)
                m.Update(slot, x, w, [&] { record[slot]->AddValue(x, 0, w, std::string()); });
            else
                m.Update(slot, x, w);
        }
    });
    if (end != LoopEnd::Completed)
        return end;

    for (int slot = 0; slot < slots; ++slot) {
        Drill& r = *record[slot];
        if (slot < side.noCategorical) {
            r.Isset = r.Method == MethodDistinctValues ? 1 : 0;
            NameValueCategories(*side.records, r.Variable);
        }
        r.SetDescriptives(m.Min[slot], m.Max[slot], m.Mean[slot], m.SS[slot], 0);
        r.MissingN = m.MissingN[slot];
        r.MCount = m.MCount[slot];
        r.N = m.N[slot];
        r.WeightedN = m.WeightedN[slot];
    }
    return LoopEnd::Completed;
}
