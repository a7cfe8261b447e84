#pragma once
// The test of a case against the drill steps, prepared once per scan.
//
// The current subset is the set of cases that lie in the pinned category of every record of
// DrillUps. The steps cannot change during a scan, so each is reduced beforehand to its
// variable and the bounds of its pinned category. A block of cases is then tested step by
// step with no branch per case: whether a case is in the subset is unpredictable, and a
// mispredicted branch per case costs more than the comparisons themselves.

#include <cstdint>
#include <vector>

#include "CaseLoop.h"
#include "ScanMoments.h"

struct DrillStepTest {
    enum class Kind { MissingRow, Value, UpperClosed, LowerClosed };
    Kind kind;
    short variable;
    double lower;  // the missing code for MissingRow
    double upper;

    bool Holds(double x) const;
};

class SubsetTest {
public:
    explicit SubsetTest(std::vector<DrillStepTest> steps) : m_steps(std::move(steps)) {}

    // True when the case lies outside the subset; the newest step is tested first.
    bool Excludes(const double* values) const {
        for (const DrillStepTest& step : m_steps)
            if (!step.Holds(values[step.variable]))
                return true;
        return false;
    }
    // inside[i] becomes 1 for each case of the block that counts and lies inside the subset,
    // else 0.
    void Select(const CaseBlock& block, uint8_t* inside) const;

private:
    std::vector<DrillStepTest> m_steps;
};

// Hands each case of the block that counts and that the subset keeps, with its weight, to
// `visit`.
template <typename Visit>
void VisitSubsetCases(const SubsetTest& subset, const CaseBlock& block, Visit&& visit) {
    uint8_t inside[CaseBlock::Capacity];
    subset.Select(block, inside);
    for (int i = 0; i < block.count; ++i)
        if (inside[i] != 0)
            visit(block.Row(i), block.weights[i]);
}

// Gathers the cases of the block that count and that the subset keeps, in order.
inline void GatherSubsetCases(const SubsetTest& subset, const CaseBlock& block, CaseBatch& cases) {
    static_assert(CaseBatch::Capacity >= CaseBlock::Capacity);
    cases.count = 0;
    VisitSubsetCases(subset, block, [&cases](const double* values, double w) {
        cases.rows[cases.count] = values;
        cases.weights[cases.count++] = w;
    });
}

// Walks the cases that the subset keeps, handing each with its weight to `visit`.
template <typename Visit>
LoopEnd CDrillDown::RunSubsetLoop(const SubsetTest& subset, Visit&& visit) {
    return RunCaseLoop([&](const CaseBlock& block) { VisitSubsetCases(subset, block, visit); });
}

// The test of a case for missing data in any variable of a list (casewise deletion), with
// the missing codes looked up once.
class CasewiseTest {
public:
    CasewiseTest(CAnalysisSupport& host, const short* first, int firstCount, const short* second,
                 int secondCount);
    bool AnyMissing(const double* values) const;

private:
    std::vector<std::pair<short, double>> m_codes;
};
