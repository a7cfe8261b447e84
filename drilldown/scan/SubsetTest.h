#pragma once
// The test of a case against the drill steps, prepared once per scan.
//
// The current subset is the set of cases that lie in the pinned category of every record of
// DrillUps. The steps cannot change during a scan, so each is reduced beforehand to its
// variable and the bounds of its pinned category; testing a case is then a few comparisons
// per step instead of a walk through the record's categories.

#include <vector>

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
    bool Empty() const { return m_steps.empty(); }

private:
    std::vector<DrillStepTest> m_steps;
};
