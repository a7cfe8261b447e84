// The scans that bring the records into line with the current subset: ReadAfterDrill
// recomputes counts, moments and categories after the subset changed; ReadBeforeDrill fills
// the counts of interval categories when they are wanted.

#include <cmath>
#include <deque>
#include <iterator>
#include <vector>

#include "ScanMoments.h"
#include "ScanParts.h"
#include "SubsetTest.h"

namespace {

DrillStepTest::Kind StepKind(int32_t method) {
    switch (method) {
    case MethodDistinctValues:
    case MethodIntegerValues:
        return DrillStepTest::Kind::Value;
    case MethodFixedStep:
        return DrillStepTest::Kind::LowerClosed;
    default:
        return DrillStepTest::Kind::UpperClosed;
    }
}

bool IsValueMethod(int32_t method) {
    return method == MethodDistinctValues || method == MethodIntegerValues;
}

// Counts a valid value into the value categories of a record whose method has them; integer
// categories take whole values only.
[[gnu::always_inline]] inline void CountValue(PartRecord& counted, double x, double w) {
    const Drill& record = counted.record;
    if (record.Method == MethodDistinctValues ||
        (record.Method == MethodIntegerValues && RealEqual(std::floor(x), x)))
        counted.AddValue(x, record.Type, w);
}

// What one part of ReadAfterDrill counts. Parts lie on cache lines of their own, so that
// threads counting side by side do not take each other's lines away.
struct alignas(64) SelectionPart {
    explicit SelectionPart(CAnalysisSupport& host) : moments(host) {}
    ScanMoments moments;
    std::vector<PartRecord> records;  // every slot's record
    int cases = 0;                    // cases of the subset
};

// Copies of the scan's records for each part of a scan.
std::vector<std::vector<PartRecord>> PartCopies(const std::vector<Drill*>& slots, int parts) {
    std::vector<std::vector<PartRecord>> copies(parts);
    for (std::vector<PartRecord>& copy : copies)
        for (const Drill* record : slots)
            copy.emplace_back(*record);
    return copies;
}

// Moves what the merged first part counted into the scan's records.
void TakeCounts(const std::vector<Drill*>& slots, std::vector<PartRecord>& counted) {
    for (std::size_t slot = 0; slot < slots.size(); ++slot) {
        slots[slot]->Categories = std::move(counted[slot].record.Categories);
        slots[slot]->Method = counted[slot].record.Method;
    }
}

} // namespace

SubsetTest CDrillDown::CompileSubsetTest() {
    std::vector<DrillStepTest> steps;
    for (const Drill& record : *DrillUps) {
        if (record.DrilledItem == static_cast<int32_t>(record.Categories.size())) {
            double code;
            getmd5(record.Variable, &code);
            steps.push_back({DrillStepTest::Kind::MissingRow, record.Variable, code, code});
            continue;
        }
        const Categories& pinned = *std::next(record.Categories.begin(), record.DrilledItem);
        steps.push_back({StepKind(record.Method), record.Variable, pinned.Lower, pinned.Upper});
    }
    return SubsetTest(std::move(steps));
}

int CDrillDown::HasBeenDrilled(const double* values) {
    return CompileSubsetTest().Excludes(values) ? 1 : 0;
}

std::vector<Drill*> CDrillDown::ScanSlots() {
    std::vector<Drill*> slots;
    slots.reserve(DrillDowns->size() + Reviews->size());
    for (const Drill& record : *DrillDowns)
        slots.push_back(&Mutable(record));
    for (const Drill& record : *Reviews)
        slots.push_back(&Mutable(record));
    return slots;
}

int CDrillDown::ReadAfterDrill(unsigned short) {
    return ReadAfterDrillInParts(ScanPartCount());
}

int CDrillDown::ReadAfterDrillInParts(int parts) {
    ValidVar = 0;
    const std::vector<Drill*> slots = ScanSlots();
    const int downs = static_cast<int>(DrillDowns->size());
    const int all = static_cast<int>(slots.size());
    std::deque<SelectionPart> part;
    for (int k = 0; k < parts; ++k) {
        if (!part.emplace_back(*this).moments.Allocate(all + 1)) {
            dsplst(0, GetResourceString(StrMemoryExhausted));
            return 0;
        }
    }
    for (int slot = 0; slot < all; ++slot) {
        // Half-counted value categories would mislead: even a broken-off scan leaves none.
        slots[slot]->Categories.clear();
        double code;
        getmd5(slots[slot]->Variable, &code);
        // Review values need no test when incomplete cases are dropped as a whole.
        for (SelectionPart& p : part)
            p.moments.SetSlot(slot, slots[slot]->Variable, code, slot < downs || RVMD != 1);
    }
    std::vector<std::vector<PartRecord>> copies = PartCopies(slots, parts);
    for (int k = 0; k < parts; ++k)
        part[k].records = std::move(copies[k]);
    const CasewiseTest incompleteDrill = DrillCasewiseTest();
    const CasewiseTest incompleteReview = ReviewCasewiseTest();
    const SubsetTest subset = CompileSubsetTest();
    // Only records with value categories count values; the others wait for ReadBeforeDrill.
    std::vector<int> valueSlots;
    for (int slot = 0; slot < all; ++slot)
        if (IsValueMethod(slots[slot]->Method))
            valueSlots.push_back(slot);

    const LoopEnd end = RunPartedLoop(parts, [&](int k, const CaseBlock& block) {
        SelectionPart& p = part[k];
        CaseBatch cases;
        GatherSubsetCases(subset, block, cases);
        p.cases += cases.count;
        CaseUse drillUse[CaseBatch::Capacity];
        CaseUse reviewUse[CaseBatch::Capacity];
        for (int i = 0; i < cases.count; ++i) {
            const double* values = cases.rows[i];
            drillUse[i] = MD == 1 && incompleteDrill.AnyMissing(values) ? CaseUse::CountMissing
                                                                         : CaseUse::Update;
            // A case dropped on the review side leaves no trace there, not even as missing.
            reviewUse[i] = RVMD == 1 && incompleteReview.AnyMissing(values) ? CaseUse::Skip
                                                                             : CaseUse::Update;
        }
        p.moments.Update(0, downs, cases, drillUse);
        p.moments.Update(downs, all, cases, reviewUse);
        for (const int slot : valueSlots)
            p.moments.ForEachValidValue(cases, slot, [&record = p.records[slot]](double x, double w) {
                CountValue(record, x, w);
            });
    });
    for (const SelectionPart& p : part)
        ValidVar += p.cases;
    if (end != LoopEnd::Completed)
        return 0;
    for (int k = 1; k < parts; ++k) {
        part[0].moments.Merge(part[k].moments, all);
        for (int slot = 0; slot < all; ++slot)
            if (IsValueMethod(slots[slot]->Method) &&
                !MergeValueCategories(part[0].records[slot], part[k].records[slot]))
                return ReadAfterDrillInParts(1);
    }
    TakeCounts(slots, part[0].records);

    for (int slot = 0; slot < all; ++slot) {
        Drill& record = *slots[slot];
        const bool review = slot >= downs;
        StoreScanResult(record, part[0].moments, slot);
        if (IsValueMethod(record.Method)) {
            record.Isset = 1;
            NameValueCategories(review ? *Reviews : *DrillDowns, record.Variable);
        } else {
            // Interval limits follow the new range; their counts wait for ReadBeforeDrill.
            record.Isset = 0;
            if (review)
                record.BuildNeatIntervals();
            else
                Recategorise(record);
        }
    }
    return 1;
}

int CDrillDown::ReadBeforeDrill(unsigned short) {
    return ReadBeforeDrillInParts(ScanPartCount());
}

int CDrillDown::ReadBeforeDrillInParts(int parts) {
    RescanIfNeeded();
    const std::vector<Drill*> slots = ScanSlots();
    const int downs = static_cast<int>(DrillDowns->size());
    const int all = static_cast<int>(slots.size());
    for (Drill* record : slots)
        record->ResetCounts();
    std::vector<double> codes(all);
    for (int slot = 0; slot < all; ++slot)
        getmd5(slots[slot]->Variable, &codes[slot]);
    const CasewiseTest incompleteDrill = DrillCasewiseTest();
    const CasewiseTest incompleteReview = ReviewCasewiseTest();
    const SubsetTest subset = CompileSubsetTest();
    // Review records count every value into intervals, whatever their method.
    auto countsValues = [&](int slot) { return slot < downs && IsValueMethod(slots[slot]->Method); };
    std::vector<std::vector<PartRecord>> counted = PartCopies(slots, parts);

    // Counts the case's valid values of slots [begin, end) into their categories.
    auto countSlots = [&](std::vector<PartRecord>& records, int begin, int end,
                          const double* values, double w) {
        for (int slot = begin; slot < end; ++slot) {
            const double x = values[slots[slot]->Variable];
            if (RealEqual(x, codes[slot]))
                continue;
            if (countsValues(slot))
                CountValue(records[slot], x, w);
            else
                records[slot].record.AddToInterval(x, w);
        }
    };
    const LoopEnd end = RunPartedLoop(parts, [&](int k, const CaseBlock& block) {
        VisitSubsetCases(subset, block, [&](const double* values, double w) {
            if (!(MD == 1 && incompleteDrill.AnyMissing(values)))
                countSlots(counted[k], 0, downs, values, w);
            if (!(RVMD == 1 && incompleteReview.AnyMissing(values)))
                countSlots(counted[k], downs, all, values, w);
        });
    });
    if (end != LoopEnd::Completed)
        return 0;
    for (int k = 1; k < parts; ++k) {
        for (int slot = 0; slot < all; ++slot) {
            if (!countsValues(slot))
                MergeIntervalCounts(counted[0][slot].record, counted[k][slot].record);
            else if (!MergeValueCategories(counted[0][slot], counted[k][slot]))
                return ReadBeforeDrillInParts(1);
        }
    }
    TakeCounts(slots, counted[0]);

    for (int slot = 0; slot < all; ++slot) {
        Drill& record = *slots[slot];
        record.Isset = 1;
        if (slot < downs && IsValueMethod(record.Method))
            NameValueCategories(*DrillDowns, record.Variable);
    }
    return 1;
}

int CDrillDown::FillNeatIntervals() {
    std::vector<double> codes(NoContinuous);
    for (int j = 0; j < NoContinuous; ++j)
        getmd5(Continuous[j], &codes[j]);
    const CasewiseTest incomplete = DrillCasewiseTest();
    const LoopEnd end = RunCaseLoop([&](const CaseBlock& block) {
        for (int i = 0; i < block.count; ++i) {
            const double* values = block.Row(i);
            if (!block.Counts(i) || (MD == 1 && incomplete.AnyMissing(values)))
                continue;
            for (int j = 0; j < NoContinuous; ++j)
                if (MD == 1 || !RealEqual(values[Continuous[j]], codes[j]))
                    AddCategories(values[Continuous[j]], Continuous[j], block.weights[i]);
        }
    });
    if (end != LoopEnd::Completed)
        return 0;
    for (int j = 0; j < NoContinuous; ++j)
        SetIsset(Continuous[j], 1);
    return 1;
}

int CDrillDown::FillContinuousIntervals() {
    const CasewiseTest incomplete = DrillCasewiseTest();
    const LoopEnd end = RunSubsetLoop(CompileSubsetTest(), [&](const double* values, double w) {
        if (incomplete.AnyMissing(values))
            return;
        for (const Drill& record : *DrillDowns)
            if (record.Type == 1)
                Mutable(record).AddToInterval(values[record.Variable], w);
    });
    if (end != LoopEnd::Completed)
        return 0;
    for (const Drill& record : *DrillDowns)
        if (record.Type == 1)
            SetIsset(record.Variable, 1);
    return 1;
}
