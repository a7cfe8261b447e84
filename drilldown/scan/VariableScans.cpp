// The first look at a new list of variables: ReadDDNV for the drill-down variables over all
// cases, ReadRVV for the review variables over the current subset. Both fill, in one pass,
// every record's counts, range, moments and value categories.

#include <vector>

#include "ScanMoments.h"
#include "SubsetTest.h"

// One side of the analysis as a first-look scan sees it.
struct CDrillDown::VariableSide {
    const short* categorical;
    int noCategorical;
    const short* continuous;
    int noContinuous;
    DrillSet* records;
    int16_t casewise;       // MD or RVMD: a case missing in one variable is dropped for all
    bool countsValidCases;  // ReadDDNV keeps ValidVar
    bool inSubsetOnly;      // ReadRVV reads the current subset

    int Slots() const { return noCategorical + noContinuous; }
    short VariableOf(int slot) const {
        return slot < noCategorical ? categorical[slot] : continuous[slot - noCategorical];
    }
};

int CDrillDown::ReadDDNV(unsigned short) {
    ValidVar = 0;
    const VariableSide side{Categorical, NoCategorical, Continuous, NoContinuous,
                            DrillDowns.get(), MD, true, false};
    const LoopEnd end = ReadVariables(side);
    // Breaking off is the one way to lose the records: they would hold half a pass.
    if (end == LoopEnd::BrokenOff)
        DrillDowns->clear();
    if (end != LoopEnd::Completed)
        return 0;
    SetNeatIntervals();
    return 1;
}

int CDrillDown::ReadRVV(unsigned short) {
    const VariableSide side{RVCategorical, NoRVCategorical, RVContinuous, NoRVContinuous,
                            Reviews.get(), RVMD, false, true};
    if (ReadVariables(side) != LoopEnd::Completed)
        return 0;
    SetReviewsIntervals();
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
    std::vector<short> variable(slots);
    for (int slot = 0; slot < slots; ++slot) {
        variable[slot] = side.VariableOf(slot);
        record[slot] = &Mutable(*LookFor(variable[slot], side.records));
        double code;
        getmd5(variable[slot], &code);
        // A side that drops incomplete cases as a whole needs no test per value.
        m.SetMissingTest(slot, code, side.casewise != 1);
    }
    const CasewiseTest incomplete(*this, side.categorical, side.noCategorical, side.continuous,
                                  side.noContinuous);
    // The first look at drill-down variables has no subset; review variables are read in it.
    const SubsetTest subset = side.inSubsetOnly ? CompileSubsetTest() : SubsetTest({});
    double* x = m.Values();

    const LoopEnd end = RunSubsetLoop(subset, [&](const double* values, double w) {
        if (side.casewise == 1 && incomplete.AnyMissing(values)) {
            m.CountMissing(0, slots, w);
            return;
        }
        if (side.countsValidCases)
            ++ValidVar;
        for (int slot = 0; slot < slots; ++slot)
            x[slot] = values[variable[slot]];
        m.Update(0, slots, w);
        for (int slot = 0; slot < side.noCategorical; ++slot)
            if (m.Valid(slot))
                record[slot]->AddValue(x[slot], 0, w, std::string());
    });
    if (end != LoopEnd::Completed)
        return end;

    for (int slot = 0; slot < slots; ++slot) {
        Drill& r = *record[slot];
        if (slot < side.noCategorical) {
            r.Isset = r.Method == MethodDistinctValues ? 1 : 0;
            NameValueCategories(*side.records, r.Variable);
        }
        StoreScanResult(r, m, slot);
    }
    return LoopEnd::Completed;
}

void CDrillDown::StoreScanResult(Drill& record, const ScanMoments& m, int slot) {
    record.SetDescriptives(m.Min(slot), m.Max(slot), m.Mean(slot), m.SS(slot), 0);
    record.MissingN = m.MissingN(slot);
    record.MCount = m.MCount(slot);
    record.N = m.N(slot);
    record.WeightedN = m.WeightedN(slot);
}
