#pragma once
// The missing code a variable gets when its file gives none: a number that no valid value
// of the variable takes, so that a missing value can be told from every valid one.
//
// The rule, shared by every loader: -99999999 when no value equals it (RealEqual), and
// otherwise twice the smallest value. Only a value at or below -99999999 can equal it, so
// twice the smallest value is negative and lies below every value of the variable.
//
// To use: add() every valid value of the variable (and every value that must stay apart
// from the missing code, such as the values of its labels), then ask code().

#include <cmath>
#include <limits>
#include <optional>

#include "drilldown/host/RealNumbers.h"

namespace wb {

inline constexpr double DefaultMissingCode = -99999999.0;

class MissingCodeChooser {
public:
    void add(double value) {
        m_smallest = value < m_smallest ? value : m_smallest;
        m_defaultTaken = m_defaultTaken || RealEqual(value, DefaultMissingCode);
    }

    // The code; none when twice the smallest value is not a finite number.
    std::optional<double> code() const {
        if (!m_defaultTaken)
            return DefaultMissingCode;
        const double code = 2 * m_smallest;
        if (!std::isfinite(code))
            return std::nullopt;
        return code;
    }

private:
    double m_smallest = std::numeric_limits<double>::infinity();
    bool m_defaultTaken = false;
};

} // namespace wb
