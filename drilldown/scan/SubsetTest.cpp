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
// One step over a block; the kind is fixed for the whole loop so the loop body is branch-free.
template <typename Test>
void KeepWhere(const CaseBlock& block, short variable, uint8_t* inside, Test&& holds) {
    for (int i = 0; i < block.count; ++i)
        inside[i] &= static_cast<uint8_t>(holds(block.Row(i)[variable]));
}
} // namespace

void SubsetTest::Select(const CaseBlock& block, uint8_t* inside) const {
    for (int i = 0; i < block.count; ++i)
        inside[i] = static_cast<uint8_t>(block.Counts(i));
    for (const DrillStepTest& step : m_steps) {
        const double lower = step.lower;
        const double upper = step.upper;
        switch (step.kind) {
        case DrillStepTest::Kind::MissingRow:
            KeepWhere(block, step.variable, inside, [=](double x) { return RealEqual(x, lower); });
            break;
        case DrillStepTest::Kind::Value:
            KeepWhere(block, step.variable, inside, [=](double x) { return x == upper; });
            break;
        case DrillStepTest::Kind::LowerClosed:
            KeepWhere(block, step.variable, inside,
                      [=](double x) { return (lower <= x) & (x < upper); });
            break;
        case DrillStepTest::Kind::UpperClosed:
            KeepWhere(block, step.variable, inside,
                      [=](double x) { return (lower < x) & (x <= upper); });
            break;
        }
    }
}

CasewiseTest::CasewiseTest(CAnalysisSupport& host, const short* first, int firstCount,
                           const short* second, int secondCount) {
    for (const auto& [list, count] : {std::pair{first, firstCount}, std::pair{second, secondCount}}) {
        for (int i = 0; i < count; ++i) {
            double code;
            host.getmd5(list[i], &code);
            m_codes.emplace_back(list[i], code);
        }
    }
}

bool CasewiseTest::AnyMissing(const double* values) const {
    for (const auto& [variable, code] : m_codes)
        if (RealEqual(values[variable], code))
            return true;
    return false;
}
