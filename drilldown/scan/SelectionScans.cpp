// The scans that bring the records into line with the current subset: ReadAfterDrill
// recomputes counts, moments and categories after the subset changed; ReadBeforeDrill fills
// the counts of interval categories when they are wanted.

#include <cmath>
#include <iterator>
#include <vector>

#include "ScanMoments.h"
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
void CountValue(Drill& record, double x, double w) {
    if (record.Method == MethodDistinctValues ||
        (record.Method == MethodIntegerValues && RealEqual(std::floor(x), x)))
        record.AddValue(x, record.Type, w, std::string());
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
    ValidVar = 0;
    const std::vector<Drill*> slots = ScanSlots();
    const int downs = static_cast<int>(DrillDowns->size());
    const int all = static_cast<int>(slots.size());
    ScanMoments m(*this);
    if (!m.Allocate(all + 1)) {
        dsplst(0, GetResourceString(StrMemoryExhausted));
        return 0;
    }
    for (int slot = 0; slot < all; ++slot) {
        slots[slot]->Categories.clear();
        double code;
        getmd5(slots[slot]->Variable, &code);
        // Review values need no test when incomplete cases are dropped as a whole.
        m.SetMissingTest(slot, code, slot < downs || RVMD != 1);
    }
    const CasewiseTest incompleteDrill = DrillCasewiseTest();
    const CasewiseTest incompleteReview = ReviewCasewiseTest();
    const SubsetTest subset = CompileSubsetTest();
    double* x = m.Values();

    const LoopEnd end = RunSubsetLoop(subset, [&](const double* values, double w) {
        const bool dropDrill = MD == 1 && incompleteDrill.AnyMissing(values);
        // A case dropped on the review side leaves no trace there, not even as missing.
        const bool dropReview = RVMD == 1 && incompleteReview.AnyMissing(values);
        ++ValidVar;
        for (int slot = 0; slot < all; ++slot)
            x[slot] = values[slots[slot]->Variable];
        if (dropDrill)
            m.CountMissing(0, downs, w);
        else
            m.Update(0, downs, w);
        if (!dropReview)
            m.Update(downs, all, w);
        for (int slot = 0; slot < all; ++slot) {
            const bool dropped = slot < downs ? dropDrill : dropReview;
            if (!dropped && m.Valid(slot))
                CountValue(*slots[slot], x[slot], w);
        }
    });
    if (end != LoopEnd::Completed) {
        // Half-counted value categories would mislead: a broken-off scan leaves none.
        for (Drill* record : slots)
            record->Categories.clear();
        return 0;
    }

    for (int slot = 0; slot < all; ++slot) {
        Drill& record = *slots[slot];
        const bool review = slot >= downs;
        StoreScanResult(record, m, slot);
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

    // Counts the case's valid values of slots [begin, end) into their categories.
    auto countSlots = [&](int begin, int end, const double* values, double w) {
        for (int slot = begin; slot < end; ++slot) {
            Drill& record = *slots[slot];
            const double x = values[record.Variable];
            if (RealEqual(x, codes[slot]))
                continue;
            // Review records count every value into intervals, whatever their method.
            if (slot < downs && IsValueMethod(record.Method))
                CountValue(record, x, w);
            else
                record.AddToInterval(x, w);
        }
    };
    const LoopEnd end = RunSubsetLoop(subset, [&](const double* values, double w) {
        if (!(MD == 1 && incompleteDrill.AnyMissing(values)))
            countSlots(0, downs, values, w);
        if (!(RVMD == 1 && incompleteReview.AnyMissing(values)))
            countSlots(downs, all, values, w);
    });
    if (end != LoopEnd::Completed)
        return 0;

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
            if (MD == 1 && incomplete.AnyMissing(values))
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
