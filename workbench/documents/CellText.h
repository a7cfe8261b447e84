#pragma once
// How a table shows its cells, the same in every renderer that a person reads.
//
// On screen and in pages, the real numbers of a column all show the same number of decimals,
// so that their decimal points line up: as many as the column's values need for four
// significant digits, but no more than a value needs to be exact, at most six (22.172752 and
// 1362.652 in one column show as 22.17 and 1362.65; 2.5 and 12 as 2.5 and 12.0).
//
// numberText, for files that programs read (CSV):
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

// The decimals of the real numbers of column `column`, by the rule above; 0 for a whole
// column.
int columnDecimals(const TableDocument& table, std::size_t column);
// A cell as a person reads it: a real number with `decimals` decimals (the exponent form as
// numberText for huge and tiny values), anything else as cellText.
std::string cellText(const TableCell& cell, ColumnFormat format, int decimals);

// A count or a share in a picture: whole numbers whole, others with two decimals at most,
// trailing zeros dropped; empty for a value that is not finite.
std::string shortNumber(double value);

} // namespace wb
