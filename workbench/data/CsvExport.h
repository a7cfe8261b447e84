#pragma once
// Writing a data file as a CSV file and its dictionary, in the form DataFileLoader.h reads,
// so that loading what was written gives back the same file: values, missing codes,
// labels, formats, long names, case names, header text, weight and selection.
//
// The CSV file:
//   - the first row names the variables; a file with case names has a first column for
//     them, named CASE_NAME (CASE_NAME_2 and so on when a variable has that name);
//   - a missing value is an empty field, written "" when it is the only field of its row;
//   - a whole number of days in a Date variable is written YYYY-MM-DD (years 0 to 9999), a
//     whole number of seconds from 0 to 86399 in a Time variable HH:MM:SS; every other
//     value as the shortest number that reads back as the same double;
//   - a field is quoted when it holds a comma, a quote or a line break, begins or ends
//     with a blank, or begins with a byte order mark.
// The dictionary names every variable with its missing code, and gives its long name,
// labels (as [value, "text"] pairs) and format when it has them, and the header text,
// case-name column, weight and selection when the file has them.
//
// Each of the two is written to a temporary file beside it and renamed over it only when
// both are complete, so that a failure while writing leaves any older files as they were.

#include <string>

#include "workbench/data/DataFile.h"

namespace wb {

// A value of a Date or Time variable in the loader's text form (YYYY-MM-DD, HH:MM:SS), or
// empty when it has none that reads back as the same value.
std::string dateOrTimeText(DisplayFormat format, double value);

// Writes `csvPath` and `csvPath` + ".dict.json", replacing files of those names. Throws
// DataError "PATH: message" for a file the CSV form cannot hold (no variables, a name that
// is empty or given twice, a value or missing code that is not a finite number, text that
// is not UTF-8) and for a failure to write.
void exportCsv(const DataFile& file, const std::string& csvPath);

} // namespace wb
