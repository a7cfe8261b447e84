// The first look at a new list of variables: ReadDDNV for the drill-down variables over all
// cases, ReadRVV for the review variables over the current subset. Both fill, in one pass
// (or in parts merged afterwards, CaseLoop.h), every record's counts, range, moments and
// value categories. A scan that does not end leaves the value categories as they were.

#include <deque>
#include <vector>

#include "ScanMoments.h"
#include "ScanParts.h"
#include "SubsetTest.h"

namespace {

// What one part of a first-look scan counts. Parts lie on cache lines of their own, so that
// threads counting side by side do not take each other's lines away.
struct alignas(64) VariablePart {
    explicit VariablePart(CAnalysisSupport& host) : moments(host) {}
    ScanMoments moments;
    std::vector<PartRecord> values;  // the categorical slots' records
    int completeCases = 0;           // cases not dropped as incomplete
};

} // namespace

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
    const LoopEnd end = ReadVariables(side, ScanPartCount());
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
    if (ReadVariables(side, ScanPartCount()) != LoopEnd::Completed)
        return 0;
    SetReviewsIntervals();
    return 1;
}

LoopEnd CDrillDown::ReadVariables(const VariableSide& side, int parts) {
    const int slots = side.Slots();
    std::deque<VariablePart> part;
    for (int k = 0; k < parts; ++k) {
        if (!part.emplace_back(*this).moments.Allocate(slots)) {
            dsplst(0, GetResourceString(StrMemoryExhausted));
            return LoopEnd::NoMemory;
        }
    }
    // Records do not move during a scan: look each slot's record up once.
    std::vector<Drill*> record(slots);
    for (int slot = 0; slot < slots; ++slot) {
        const short variable = side.VariableOf(slot);
        record[slot] = &Mutable(*LookFor(variable, side.records));
        double code;
        getmd5(variable, &code);
        // A side that drops incomplete cases as a whole needs no test per value.
        for (VariablePart& p : part)
            p.moments.SetSlot(slot, variable, code, side.casewise != 1);
    }
    // The first part goes on from the records' own value categories, later ones start empty.
    for (int k = 0; k < parts; ++k) {
        for (int slot = 0; slot < side.noCategorical; ++slot) {
            Drill copy = *record[slot];
            if (k > 0)
                copy.Categories.clear();
            part[k].values.emplace_back(std::move(copy));
        }
    }
    const CasewiseTest incomplete(*this, side.categorical, side.noCategorical, side.continuous,
                                  side.noContinuous);
    // The first look at drill-down variables has no subset; review variables are read in it.
    const SubsetTest subset = side.inSubsetOnly ? CompileSubsetTest() : SubsetTest({});

    const LoopEnd end = RunPartedLoop(parts, [&](int k, const CaseBlock& block) {
        VariablePart& p = part[k];
        CaseBatch cases;
        GatherSubsetCases(subset, block, cases);
        CaseUse use[CaseBatch::Capacity];
        for (int i = 0; i < cases.count; ++i) {
            const bool dropped = side.casewise == 1 && incomplete.AnyMissing(cases.rows[i]);
            use[i] = dropped ? CaseUse::CountMissing : CaseUse::Update;
            p.completeCases += !dropped;
        }
        p.moments.Update(0, slots, cases, use);
        for (int slot = 0; slot < side.noCategorical; ++slot)
            p.moments.ForEachValidValue(cases, slot, [&record = p.values[slot]](double x, double w) {
                record.AddValue(x, 0, w);
            });
    });
    if (side.countsValidCases) {
        ValidVar = 0;
        for (const VariablePart& p : part)
            ValidVar += p.completeCases;
    }
    if (end != LoopEnd::Completed)
        return end;
    for (int k = 1; k < parts; ++k) {
        part[0].moments.Merge(part[k].moments, slots);
        for (int slot = 0; slot < side.noCategorical; ++slot)
            if (!MergeValueCategories(part[0].values[slot], part[k].values[slot]))
                return ReadVariables(side, 1);
    }

    for (int slot = 0; slot < slots; ++slot) {
        Drill& r = *record[slot];
        if (slot < side.noCategorical) {
            Drill& counted = part[0].values[slot].record;
            r.Categories = std::move(counted.Categories);
            r.Method = counted.Method;
            r.Isset = r.Method == MethodDistinctValues ? 1 : 0;
            NameValueCategories(*side.records, r.Variable);
        }
        StoreScanResult(r, part[0].moments, slot);
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
