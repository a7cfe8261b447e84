#pragma once
// How a table shows its cells, the same in every renderer.
//
// Whole numbers: rounded to the nearest integer, no decimal point.
// Real numbers: six decimals, more below 1 so that six significant digits remain, then
// trailing zeros and a bare point dropped: 2.5, 1362.652, 33.333333, 0.000125.
// Either: from 1e15 on, and below 1e-6, the exponent form with six significant digits
// (1.5e+20, 1.23457e-07). Zero is "0", never "-0".
// A number in a text column is shown as a real number.

#include <string>

#include "workbench/documents/TableDocument.h"

namespace wb {

std::string numberText(double value, ColumnFormat format);
// Empty for an empty cell, the text of a text cell, numberText of a number.
std::string cellText(const TableCell& cell, ColumnFormat format);

} // namespace wb
