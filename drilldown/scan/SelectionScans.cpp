// The scans that bring the records into line with the current subset: ReadAfterDrill
// recomputes counts, moments and categories after the subset changed; ReadBeforeDrill fills
// the counts of interval categories when they are wanted.

#include <cmath>
#include <iterator>
#include <vector>

#include "../host/RealNumbers.h"
#include "CaseLoop.h"
#include "ScanMoments.h"
#include "SubsetTest.h"

bool DrillStepTest::Holds(double x) const {
    switch (kind) {
    case Kind::MissingRow:
        return RealEqual(x, lower);
    case Kind::Value:
        return x == upper;
    case Kind::LowerClosed:
        return lower <= x && x < upper;
    case Kind::UpperClosed:
        break;
    }
    return lower < x && x <= upper;
}

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
    for (Drill* record : slots)
        record->Categories.clear();
    const SubsetTest subset = CompileSubsetTest();

    // Counts one valid value of a slot, with its value category where the method has them.
    auto update = [&](int slot, double x, double w) {
        Drill& record = *slots[slot];
        m.Update(slot, x, w, [&] {
            if (record.Method == MethodDistinctValues ||
                (record.Method == MethodIntegerValues && RealEqual(std::floor(x), x)))
                record.AddValue(x, record.Type, w, std::string());
        });
    };
    auto updateOrCountMissing = [&](int slot, const double* values, double w) {
        const short variable = slots[slot]->Variable;
        double code;
        getmd5(variable, &code);
        if (RealEqual(values[variable], code))
            m.CountMissing(slot, w);
        else
            update(slot, values[variable], w);
    };

    const LoopEnd end = RunCaseLoop([&](const double* values) {
        if (subset.Excludes(values))
            return;
        const bool dropDrill = MD == 1 && SetMissingData(values) == 1;
        const bool dropReview = RVMD == 1 && MDReviews(values) == 1;
        ++ValidVar;
        const double w = DealWithWeights(0);
        for (int slot = 0; slot < downs; ++slot) {
            if (dropDrill)
                m.CountMissing(slot, w);
            else
                updateOrCountMissing(slot, values, w);
        }
        // A case dropped on the review side leaves no trace there, not even as missing.
        if (dropReview)
            return;
        for (int slot = downs; slot < all; ++slot) {
            if (RVMD == 1)
                update(slot, values[slots[slot]->Variable], w);
            else
                updateOrCountMissing(slot, values, w);
        }
    });
    if (end != LoopEnd::Completed)
        return 0;

    for (int slot = 0; slot < all; ++slot) {
        Drill& record = *slots[slot];
        const bool review = slot >= downs;
        record.SetDescriptives(m.Min[slot], m.Max[slot], m.Mean[slot], m.SS[slot], 0);
        record.MissingN = m.MissingN[slot];
        record.MCount = m.MCount[slot];
        record.N = m.N[slot];
        record.WeightedN = m.WeightedN[slot];
        if (IsValueMethod(record.Method)) {
            record.Isset = 1;
            NameValueCategories(review ? *Reviews : *DrillDowns, record.Variable);
        } else {
            // Interval limits follow the new range; their counts wait for ReadBeforeDrill.
            record.Isset = 0;
            if (review)
                record.BuildNeatIntervals();
            else
                record.Categorise();
        }
    }
    ddstop();
    return 1;
}

int CDrillDown::ReadBeforeDrill(unsigned short) {
    RescanIfNeeded();
    const std::vector<Drill*> slots = ScanSlots();
    const int downs = static_cast<int>(DrillDowns->size());
    const int all = static_cast<int>(slots.size());
    for (Drill* record : slots)
        record->ResetCounts();
    const SubsetTest subset = CompileSubsetTest();

    const LoopEnd end = RunCaseLoop([&](const double* values) {
        if (subset.Excludes(values))
            return;
        const bool dropDrill = MD == 1 && SetMissingData(values) == 1;
        const bool dropReview = RVMD == 1 && MDReviews(values) == 1;
        const double w = DealWithWeights(0);
        for (int slot = dropDrill ? downs : 0; slot < (dropReview ? downs : all); ++slot) {
            Drill& record = *slots[slot];
            const double x = values[record.Variable];
            double code;
            getmd5(record.Variable, &code);
            if (RealEqual(x, code))
                continue;
            // Review records count every value into intervals, whatever their method.
            if (slot < downs && record.Method == MethodDistinctValues)
                record.AddValue(x, record.Type, w, std::string());
            else if (slot < downs && record.Method == MethodIntegerValues) {
                if (RealEqual(std::floor(x), x))
                    record.AddValue(x, record.Type, w, std::string());
            } else
                record.AddToInterval(x, w);
        }
    });
    if (end != LoopEnd::Completed)
        return 0;

    for (int slot = 0; slot < all; ++slot) {
        Drill& record = *slots[slot];
        record.Isset = 1;
        if (slot < downs && IsValueMethod(record.Method))
            NameValueCategories(*DrillDowns, record.Variable);
    }
    ddstop();
    return 1;
}

int CDrillDown::FillNeatIntervals() {
    const LoopEnd end = RunCaseLoop([&](const double* values) {
        if (MD == 1 && SetMissingData(values) == 1)
            return;
        const double w = DealWithWeights(0);
        for (int j = 0; j < NoContinuous; ++j) {
            const short variable = Continuous[j];
            double code;
            getmd5(variable, &code);
            if (MD == 1 || !RealEqual(values[variable], code))
                AddCategories(values[variable], variable, w);
        }
    });
    if (end != LoopEnd::Completed)
        return 0;
    for (int j = 0; j < NoContinuous; ++j)
        SetIsset(Continuous[j], 1);
    return 1;
}

int CDrillDown::FillContinuousIntervals() {
    const SubsetTest subset = CompileSubsetTest();
    const LoopEnd end = RunCaseLoop([&](const double* values) {
        if (SetMissingData(values) == 1 || subset.Excludes(values))
            return;
        const double w = DealWithWeights(0);
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
